// Parts of a sentence in other scripts are spoken with the languages of those scripts.
//
// Letters decide; all other characters belong to the letter before them, but what has no blank between itself and the
// next letter belongs to that one: opening brackets and quotes, and all that begins a word. Where something else is
// said for some characters, the first letter of what is said decides for them. A single Greek or Latin letter keeps the
// language around it, as in formulas: espeak-ng has names for these in each language.
#ifndef TTS_ENGINE_SCRIPT_RUNS_H
#define TTS_ENGINE_SCRIPT_RUNS_H

#include <cstdint>
#include <functional>

#include "tts_engine/scripts.h"
#include "tts_engine/sentence.h"

namespace tts {

// The number of the language that speaks a script inside text of a language, which is given by its number; that same
// number if nothing changes.
using ScriptNumber = std::function<std::uint16_t(Script script, std::uint16_t language)>;

// Splits the sentence's runs where the language changes. The work is linear in the sentence's length.
void split_by_script(Sentence& sentence, const ScriptNumber& number_of);

}  // namespace tts

#endif
