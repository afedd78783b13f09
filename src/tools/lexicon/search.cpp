// Search by folded text. See search.h.
#include "tools/lexicon/search.h"

#include <algorithm>
#include <utility>

#include "text/textencoding.h"
#include "tools/lexicon/encoding.h"

namespace lexicon {

std::string fold_case(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte < 0x80) {
            result.push_back(static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte + 32 : byte));
            ++at;
            continue;
        }
        const char32_t c = next_character(text, &at);
        if (c > 0x10FFFF) continue;
        append_character(&result, c < 0x10000 ? to_lowercase_wchar(static_cast<unsigned short>(c)) : c);
    }
    return result;
}

std::vector<Word> search_words(std::vector<Word> words, std::string_view query) {
    const std::string wanted = fold_case(collapse_blanks(query));
    std::vector<std::pair<std::string, std::size_t>> found;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string key = fold_case(words[i].text.word);
        if (key.find(wanted) != key.npos || fold_case(words[i].text.said).find(wanted) != std::string::npos)
            found.emplace_back(std::move(key), i);
    }
    std::sort(found.begin(), found.end());
    std::vector<Word> result;
    result.reserve(found.size());
    for (const auto& entry : found) result.push_back(std::move(words[entry.second]));
    return result;
}

}  // namespace lexicon
