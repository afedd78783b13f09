// From a stretch of a sentence to what espeak-ng gets to speak.
#ifndef TTS_ENGINE_UTTERANCE_H
#define TTS_ENGINE_UTTERANCE_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tts_engine/espeak/espeak_engine.h"
#include "tts_engine/sentence.h"
#include "tts_engine/voice_file.h"

namespace tts {

struct Utterance {
    std::string text;  // plain clauses with espeak-ng's embedded commands; empty if nothing is to be said
    std::vector<std::uint32_t> source;  // for each code point of the text the character of the sentence it comes from
    std::vector<PitchChange> pitches;   // the first at 0
    int rate = 0;                       // in words a minute
    bool end_pause = true;
    bool phonemes = false;  // [[...]] in the text holds phonemes by their mnemonics
    bool replaced = false;  // something else is said for a part of what is written
};

// What an utterance asks about single words.
class Pronouncer {
public:
    virtual ~Pronouncer() = default;

    // What is said for the first of these words of the text, or the first few, if that is something else. They are one
    // word and those that follow it, at most most_words() of them.
    struct Said {
        std::size_t count;  // of words
        Spoken::Kind kind;
        std::string text;
    };
    virtual std::optional<Said> words(std::span<const std::string> written, std::uint16_t language) = 0;

    // 0 if there is nothing to ask for.
    virtual std::size_t most_words() const = 0;

    // How a sign (signs.h) is said, by espeak-ng's mnemonics; empty if the voice cannot say it.
    virtual std::string sign(std::u32string_view sign, std::uint16_t language) = 0;

    // IPA by espeak-ng's mnemonics; empty if nothing of it can be said.
    virtual std::string mnemonics(std::string_view ipa, std::uint16_t language) = 0;
};

// Characters `first` up to, not including, `last` of the sentence. Where something else is said for some of them, its
// characters come, evenly, from those.
Utterance make_utterance(const Sentence& sentence, std::uint32_t first, std::uint32_t last, const VoiceSettings& voice,
                         Pronouncer& pronouncer);

// espeak-ng speaks all of an utterance at one rate; where another is wanted, or one that it cannot, the sound is made
// this much faster.
double stretch_of(const VoiceSettings& voice, const Attributes& attributes, int rate);

// The attributes in force at a character of a sentence with text.
const Attributes& attributes_at(const Sentence& sentence, std::uint32_t character);

}  // namespace tts

#endif
