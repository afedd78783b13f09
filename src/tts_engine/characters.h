// Characters: decoding UTF-8 and the classes that cutting text into sentences and words asks for.
#ifndef TTS_ENGINE_CHARACTERS_H
#define TTS_ENGINE_CHARACTERS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace tts {

struct Decoded {
    char32_t code;       // 0 if the bytes are no character
    std::size_t length;  // how many bytes it takes; 1 for a byte that is none
};

// The character at the start of `bytes`, which are not empty. Overlong forms, surrogates and what lies above U+10FFFF
// are no characters.
Decoded decode_utf8(std::string_view bytes);

void append_utf8(std::string& text, char32_t code);

// The start of `text` of at most `most` bytes, cut between characters. Of what is not UTF-8, `most` bytes.
std::string_view first_characters(std::string_view text, std::size_t most);

bool is_blank(char32_t c);        // white space of any script, the zero width space, and signs that part words (፡)
bool is_punctuation(char32_t c);  // Unicode's categories P*, not symbols such as $ and +
bool is_symbol(char32_t c);       // Unicode's categories S*
bool is_opening(char32_t c);      // brackets and quotes that stand in front of a word
bool is_closing(char32_t c);      // brackets and quotes that stand behind a word, also " and '
bool is_lower(char32_t c);
bool is_cased(char32_t c);  // a capital or small letter
char32_t to_lower(char32_t c);
bool is_alnum(char32_t c);
bool is_full_stop(char32_t c);   // . and its kin, which need a look at what follows
bool is_strong_end(char32_t c);  // ! ? and their kin
bool is_wide_end(char32_t c);    // the ends of scripts that put no blank behind a sentence
bool is_unspaced(char32_t c);    // of a script whose single characters count as words: Han, Hiragana, Katakana
bool is_combining(char32_t c);   // belongs to the character before it

// Whether a reader takes two neighbours for one character: combining marks, joined emoji, flags, syllables of Hangul.
bool is_one_character(char32_t before, char32_t next);

}  // namespace tts

#endif
