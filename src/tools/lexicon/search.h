// Finding words in a list of them.
#ifndef NELVA_TOOLS_LEXICON_SEARCH_H
#define NELVA_TOOLS_LEXICON_SEARCH_H

#include <string>
#include <string_view>
#include <vector>

#include "tools/lexicon/document.h"

namespace lexicon {

// The text without differences of case, character by character.
std::string fold_case(std::string_view text);

// Those words that hold the query in their spelling or in what is said, case ignored, ordered by spelling; all of them
// for an empty query. Words of equal spelling keep the file's order.
std::vector<Word> search_words(std::vector<Word> words, std::string_view query);

}  // namespace lexicon

#endif
