// A user's lexicon: how words are said that espeak-ng says wrongly.
//
// The file is a Pronunciation Lexicon of the W3C (PLS 1.0), in any encoding that expat reads:
//
//     <lexicon version="1.0" xmlns="http://www.w3.org/2005/01/pronunciation-lexicon"
//              xmlns:n="urn:nelva:lexicon" alphabet="ipa" xml:lang="en">
//       <lexeme><grapheme>Nguyen</grapheme><phoneme>wɪn</phoneme></lexeme>
//       <lexeme><grapheme>W3C</grapheme><alias>World Wide Web Consortium</alias></lexeme>
//       <lexeme n:case="exact"><grapheme>US</grapheme><alias>United States</alias></lexeme>
//     </lexicon>
//
// What holds where PLS leaves a choice:
//
//   - A grapheme may be several words, up to 32; the longest that fits is taken. Punctuation at both ends of words and
//     the blanks between them do not count. A grapheme of punctuation alone matches nothing.
//   - A grapheme of more than 2,000 bytes matches nothing; a pronunciation of more than 20,000 does not count.
//   - Case does not count, but for lexemes, or all of a lexicon, marked case="exact" (urn:nelva:lexicon).
//   - Of several lexemes with the same grapheme the first that fits counts.
//   - Of several pronunciations of a lexeme, phonemes and aliases alike, the one marked prefer="true" counts, else the
//     first. Phonemes of an alphabet other than ipa do not count.
//   - xml:lang of the lexicon, or of a lexeme, must agree with the language of the text up to the first hyphen. Without
//     one it holds for every language.
//   - An alias is read as text and not looked up again.
//   - Elements and attributes of other namespaces are passed over.
//
// A lexicon that is not well-formed, or no lexicon, or that declares entities of its own, is refused as a whole.
#ifndef TTS_ENGINE_LEXICON_H
#define TTS_ENGINE_LEXICON_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tts_engine/string_table.h"

namespace tts {

class Lexicon {
public:
    enum class Kind : std::uint8_t { ipa, alias };

    struct Pronunciation {
        Kind kind;
        std::string_view text;  // holds as long as the lexicon
    };

    // What is said, and for how many words; count is 0 if there is nothing.
    struct Match {
        std::size_t count = 0;
        const Pronunciation* pronunciation = nullptr;
    };

    // Adds what is said for the graphemes that are added from now on, up to the next call.
    void add_pronunciation(Kind kind, std::string_view text);

    // Adds a grapheme. `language`, up to the first hyphen and in small letters, may be empty; `exact` says that case
    // counts.
    void add_grapheme(std::string_view grapheme, std::string_view language, bool exact);

    // What is said for the first of `words`, or for the first few of them; they are written in `language`.
    Match find(std::span<const std::string> words, std::string_view language) const;

    // The most words that a grapheme has; 0 if there is none.
    std::size_t longest() const { return longest_; }

private:
    const Pronunciation* match(std::string_view written, std::string_view language) const;

    // An entry's key: the words in small letters, the language up to the first hyphen, and the words as written if case
    // counts, with zeros between. Of equal ones the first counts.
    StringTable entries_;
    std::vector<std::uint32_t> said_;  // by entry: which pronunciation
    std::vector<Pronunciation> pronunciations_;
    StringArena texts_;                       // of the pronunciations
    StringTable firsts_;                      // the first words of graphemes of several, in small letters
    std::vector<std::uint8_t> longest_from_;  // by these: the most words of such a grapheme
    std::size_t longest_ = 0;
    std::string key_;  // of the grapheme that is added
};

// What the text of a lexicon says. Throws std::runtime_error that names `name` and the line, also if it is larger than
// what a lexicon may have (docs/voice-files.md): a file must not keep speech waiting for long.
Lexicon parse_lexicon(std::string_view text, const std::string& name);

// The most bytes that a lexicon's file may have.
constexpr std::size_t largest_lexicon = std::size_t{24} << 20;

}  // namespace tts

#endif
