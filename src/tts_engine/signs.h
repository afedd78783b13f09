// Signs that are said by their names: which characters these are, and what is said.
//
// A sign is a punctuation mark or a symbol. Within prose espeak-ng deals with it: a comma is a short pause. Where text
// is spelled, and in a document without letters and digits, each sign is said by its name and is a word of its own. In
// spelling a blank is, too.
#ifndef TTS_ENGINE_SIGNS_H
#define TTS_ENGINE_SIGNS_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tts_engine/sentence.h"

namespace tts {

bool is_sign(char32_t c);

// Whether a blank is a character that breaks lines or columns. Blanks next to one are the layout of a document and are
// not spelled.
bool is_layout(char32_t c);

// The characters of a text that are said by their names, in order. A sign goes with what combines with it: accents,
// variation selectors, the rest of an emoji that is several characters. Blanks without width, which stand for nothing
// in the document, are not named.
std::vector<Token> named_signs(const std::vector<Character>& text, const std::vector<Run>& runs);

// The characters `first` up to, not including, `last` of a text that have a name: signs, letters, digits, and marks
// that belong to none of these.
std::vector<Token> named_characters(const std::vector<Character>& text, std::uint32_t first, std::uint32_t last);

// Returns the name of one or more characters of UTF-8 as phonemes, by their mnemonics; empty if there is none.
using SignName = std::function<std::string(const std::string&)>;

// What is said for one of named_signs() or named_characters(): the name of the whole, else those of its parts. A part
// without a name is said by the name of the sign that means the same in Latin script, else by its code point.
std::string say_sign(std::u32string_view sign, const SignName& name);

}  // namespace tts

#endif
