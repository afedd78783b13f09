// Voice files: what makes a voice, in a few lines of text.
//
//     # English, as spoken in the United States
//     language = en-us
//     variant  = f2
//     rate     = 175
//
// Each line is empty, a comment (#) or `key = value`. Blanks around key and value do not count. Keys, each at most
// once:
//
//     language  a language of espeak-ng; needed
//     variant   a voice variant of espeak-ng (m1 to m8, f1 to f5, ...); none
//     rate      words a minute, 80 to 450; 175
//     pitch     0 to 99; 50
//     range     how far the melody goes, 0 to 99; 50
//     volume    percent, 0 to 200; 100
//
//     sentence-pause  silence behind a sentence, in ms at the voice's own rate, 0 to 5000; 250
//     paragraph-pause  the same between paragraphs, if it is longer; 500
//     comma-pause     behind , ; : and dashes where what espeak-ng gets at a time ends, likewise; 100
//
//     scripts          switch: words of another script are spoken with that script's language; own: by the voice;
//     switch script-Cyrl ...  the language for one script, by its code of ISO 15924 (scripts.h has all), or own
//
// espeak-ng's own silence around each sentence is left out. A sentence that ends without punctuation has its pause only
// if another follows. Faster speech has shorter pauses.
//
// The file's name ends in the rate of its audio: 22i is 22,050 Hz, 16i-mf 16,000 and 8v 8,000.
#ifndef TTS_ENGINE_VOICE_FILE_H
#define TTS_ENGINE_VOICE_FILE_H

#include <string>

#include "tts_engine/scripts.h"

namespace tts {

struct VoiceSettings {
    std::string language;
    std::string variant;
    int rate = 175;
    int pitch = 50;
    int range = 50;
    int volume = 100;
    int sentence_pause = 250;
    int comma_pause = 100;
    int paragraph_pause = 500;
    ScriptSettings scripts;
};

// Reads a voice file, named in UTF-8. Throws std::runtime_error that names file and line.
VoiceSettings read_voice_file(const std::string& name);

// Reads its text; `name` is for messages.
VoiceSettings parse_voice_file(const std::string& text, const std::string& name);

}  // namespace tts

#endif
