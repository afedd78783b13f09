// Canonical composition (Unicode's NFC), character by character, and the characters that no one hears.
//
// Text comes decomposed from file names and PDFs: "é" as "e" and U+0301. espeak-ng's dictionaries and people's lexicons
// have the composed form, so text is composed as it arrives. utf8proc has the tables. Two things differ from NFC:
//
//   - U+09DC, U+09DD and U+09DF of Bengali are composed, which NFC takes apart: espeak-ng's dictionaries have them.
//   - Signs stay as they are (NFC makes a semicolon of the Greek question mark U+037E).
//
// Marks are put in order and composed within a letter and its next 30 marks. Marks after these stay as they are, so the
// work for a character is bounded.
#ifndef TTS_ENGINE_COMPOSITION_H
#define TTS_ENGINE_COMPOSITION_H

#include <array>
#include <cstddef>
#include <string>

namespace tts {

// Characters below this are composed and visible. Callers compare with it first, so that most text costs nothing.
constexpr char32_t first_to_compose = 0xAD;

// A letter with its marks.
struct Cluster {
    static constexpr std::size_t longest = 32;
    std::array<char32_t, longest> codes{};
    std::size_t size = 0;
};

// What a character may do to the text before it.
enum class Joining : unsigned char {
    none,
    joins,   // it is a mark, or the next part of a Korean syllable
    differs  // another character, or several, is its composed form
};
Joining joining_of(char32_t code);

// Whether a character that marks follow comes before this one: it has combining class 0.
bool is_starter(char32_t code);

// Puts `code` after the cluster and composes. The cluster has room for one more.
void compose(Cluster& cluster, char32_t code);

// The characters that `code` is composed of where that differs from `code`.
Cluster composed_form(char32_t code);

// The cluster at the end of a text of `size` characters; `code_at` returns one of them. Empty if the text has no letter
// in its last 31 characters.
template <typename CodeAt>
Cluster cluster_at_end(std::size_t size, CodeAt code_at) {
    std::size_t first = size;
    while (first > 0 && size - first + 1 < Cluster::longest) {
        if (!is_starter(code_at(--first))) continue;
        Cluster cluster;
        for (std::size_t i = first; i < size; ++i) cluster.codes[cluster.size++] = code_at(i);
        return cluster;
    }
    return {};
}

// Appends a character to composed text, which is composed again.
void append_composed(std::u32string& text, char32_t code);

// A soft hyphen, a direction mark, a joiner, a variation selector, a byte order mark: it changes how text looks and is
// no letter, blank or sign.
bool is_invisible(char32_t code);

// Whether espeak-ng reads an invisible character after `before`: the zero width non-joiner of Persian, the joiner in
// Malayalam and between emoji. Elsewhere these part words, or are spoken as blanks.
bool is_invisible_but_read(char32_t code, char32_t before);

}  // namespace tts

#endif
