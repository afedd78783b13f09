// A hash table of short sorted lists. See word_index.h.
#include "tools/lexicon/word_index.h"

#include <algorithm>

#include "tools/lexicon/search.h"

namespace lexicon {

void WordIndex::add(std::string_view word, std::size_t lexeme) {
    std::vector<std::size_t>& list = lexemes_[fold_case(word)];
    const auto at = std::lower_bound(list.begin(), list.end(), lexeme);
    if (at == list.end() || *at != lexeme) list.insert(at, lexeme);
}

void WordIndex::remove(std::string_view word, std::size_t lexeme) {
    const auto found = lexemes_.find(fold_case(word));
    if (found == lexemes_.end()) return;
    std::vector<std::size_t>& list = found->second;
    const auto at = std::lower_bound(list.begin(), list.end(), lexeme);
    if (at != list.end() && *at == lexeme) list.erase(at);
    if (list.empty()) lexemes_.erase(found);
}

const std::vector<std::size_t>& WordIndex::find(std::string_view word) const {
    static const std::vector<std::size_t> none;
    const auto found = lexemes_.find(fold_case(word));
    return found == lexemes_.end() ? none : found->second;
}

}  // namespace lexicon
