// Which lexemes of a lexicon have a word, by the word without its case: a look-up costs no walk through the lexicon.
#ifndef NELVA_TOOLS_LEXICON_WORD_INDEX_H
#define NELVA_TOOLS_LEXICON_WORD_INDEX_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lexicon {

class WordIndex {
public:
    // A lexeme is there once for a word, however often it is added.
    void add(std::string_view word, std::size_t lexeme);
    void remove(std::string_view word, std::size_t lexeme);

    // The lexemes with this word or one that differs from it in case alone, in their order.
    const std::vector<std::size_t>& find(std::string_view word) const;

private:
    std::unordered_map<std::string, std::vector<std::size_t>> lexemes_;  // by folded word, in rising order
};

}  // namespace lexicon

#endif
