// From phonemes to the labels of mouth shapes.
#ifndef TTS_ENGINE_VISEMES_H
#define TTS_ENGINE_VISEMES_H

#include <string_view>

namespace tts {

// The label of the mouth shape for a phoneme's IPA name, whatever the language: "sil" for a pause (the empty name), one
// of @ a e E i o O u B f J k p r s S t T, or null for a phoneme that keeps the shape before it (a glottal stop, a
// tone) or is no sound (a change to another language). Stress, length and other modifiers are passed over. The labels
// live forever.
const char* viseme_of(std::string_view ipa);

}  // namespace tts

#endif
