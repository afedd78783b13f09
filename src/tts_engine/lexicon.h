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
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tts {

class Lexicon {
public:
    enum class Kind { ipa, alias };

    struct Pronunciation {
        Kind kind;
        std::string text;
    };

    // What is said, and for how many words; count is 0 if there is nothing.
    struct Match {
        std::size_t count = 0;
        const Pronunciation* pronunciation = nullptr;
    };

    // Adds a lexeme's graphemes. `language` may be empty; `exact` says that case counts.
    void add(const std::vector<std::string>& graphemes, const Pronunciation& pronunciation, std::string_view language,
             bool exact);

    // What is said for the first of `words`, or for the first few of them; they are written in `language`.
    Match find(std::span<const std::string> words, std::string_view language) const;

    // The most words that a grapheme has; 0 if there is none.
    std::size_t longest() const { return longest_; }

private:
    struct Entry {
        std::string language;  // up to the first hyphen, in small letters
        std::string exact;     // the words as written; empty if case does not count
        Pronunciation pronunciation;
    };

    const Pronunciation* match(const std::string& key, std::span<const std::string> words,
                               std::string_view language) const;

    std::unordered_map<std::string, std::vector<Entry>> entries_;  // by words in small letters
    std::unordered_map<std::string, std::size_t> longest_from_;    // by first word: the most words of a grapheme
    std::size_t longest_ = 0;
};

// The text of a lexicon's file, named in UTF-8, of at most 64 MB. Throws std::runtime_error that names the file.
std::string read_lexicon_text(const std::string& name);

// What the text says. Throws std::runtime_error that names `name` and the line.
Lexicon parse_lexicon(std::string_view text, const std::string& name);

}  // namespace tts

#endif
