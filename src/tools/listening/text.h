// Written text as a person counts it: characters, words, sentences. None of this is the synthesiser's own code, so that
// a mistake there is no mistake here.
#ifndef NELVA_TOOLS_LISTENING_TEXT_H
#define NELVA_TOOLS_LISTENING_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace listening {

// UTF-8, cut into characters. A byte that begins no character is one by itself.
std::vector<std::string> characters_of(std::string_view text);
char32_t code_of(std::string_view character);
std::size_t letter_count(std::string_view text);  // characters that are no punctuation, mark or joiner

bool is_blank(char32_t c);
bool separates_words(char32_t c);  // blanks, and the Ethiopic wordspace
bool is_punctuation(char32_t c);
bool is_han(char32_t c);
bool is_kana(char32_t c);
bool is_digit(char32_t c);  // 0 to 9

// A word at its place in the text. Punctuation at both ends is not part of it, and what is punctuation alone is no
// word. In Han, Hiragana and Katakana each character is a word.
struct Token {
    std::size_t begin, end;  // bytes
    std::string text;
};
std::vector<Token> tokens_of(std::string_view text);

// The text cut after each end of a sentence, and at the ends of lines. Blanks at the ends are dropped.
std::vector<std::string> sentences_of(std::string_view text);

// The text as it is written into a document.
std::string escaped(std::string_view text);

// A document around `body`, which is markup, and the number of bytes before it.
struct Document {
    std::string text;
    std::size_t body;
};
Document document_of(const std::string& language, const std::string& body);

}  // namespace listening

#endif
