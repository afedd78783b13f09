// Which language speaks words of another script.
//
// An English voice cannot read Russian words: espeak-ng spells them letter by letter. So each script has a language
// that speaks it where the text around is in a language that does not use it. A voice file may name another language
// for a script (`script-Cyrl = uk`), or leave it to the voice (`script-Cyrl = own`), or all of them (`scripts = own`).
#ifndef TTS_ENGINE_SCRIPTS_H
#define TTS_ENGINE_SCRIPTS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tts {

// A script by its code of ISO 15924, with the language that speaks it if nothing else is said.
struct ScriptDefault {
    std::string_view code;
    std::string_view language;
};

// Scripts are numbered by their place here.
inline constexpr ScriptDefault script_defaults[] = {
    {"Latn", "en"},  {"Cyrl", "ru"}, {"Grek", "el"}, {"Armn", "hy"}, {"Geor", "ka"}, {"Hebr", "he"}, {"Arab", "ar"},
    {"Ethi", "am"},  {"Deva", "hi"}, {"Beng", "bn"}, {"Guru", "pa"}, {"Gujr", "gu"}, {"Orya", "or"}, {"Taml", "ta"},
    {"Telu", "te"},  {"Knda", "kn"}, {"Mlym", "ml"}, {"Sinh", "si"}, {"Thai", "th"}, {"Mymr", "my"}, {"Hani", "cmn"},
    {"Bopo", "cmn"}, {"Hira", "ja"}, {"Kana", "ja"}, {"Hang", "ko"}};

inline constexpr std::size_t script_count = sizeof script_defaults / sizeof script_defaults[0];
using Script = std::size_t;
inline constexpr Script no_script = script_count;
inline constexpr Script latin_script = 0;
inline constexpr Script greek_script = 2;

// What a voice file says about scripts.
struct ScriptSettings {
    static constexpr std::string_view own = "own";  // in place of a language: the voice itself

    bool others_spoken = true;                                  // false: only the scripts in `languages`
    std::map<std::string, std::string, std::less<>> languages;  // by code
};

// The script of a letter; no_script for all that is no letter, is used with many scripts, or has no language here.
Script script_of(char32_t c);

class ScriptLanguages {
public:
    // `voice` is the language tag of the voice.
    ScriptLanguages(std::string voice, ScriptSettings settings);

    // The tag of the language that speaks a script inside text in `language`; empty if the text's own does. It does for
    // scripts that it is written in, and where espeak-ng turns to English for Latin letters by itself. The voice's own
    // language comes before the table. Valid as long as this is.
    std::string_view language_for(Script script, std::string_view language) const;

private:
    std::string_view table(Script script, std::string_view language) const;

    std::string voice_;
    ScriptSettings settings_;
};

// Whether a language is written in a script. Languages that are not known are written in Latin letters.
bool uses_script(std::string_view language, Script script);

}  // namespace tts

#endif
