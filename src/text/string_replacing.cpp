// Replacement of substrings in linear time, whatever the text and the wanted string: the new text is built aside, and
// the search (Knuth, Morris and Pratt) never goes back in the text.
#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

#include "text/qm_stringutils.h"

namespace {

class substring_search {
public:
    // `wanted` is not empty and outlives the search.
    explicit substring_search(const std::string& wanted) : wanted_(wanted), border_(wanted.size(), 0) {
        for (std::size_t i = 1; i < wanted.size(); ++i) border_[i] = extended(border_[i - 1], wanted[i]);
    }

    // The first occurrence that begins at or behind `from`, or npos.
    std::size_t find(const std::string& text, std::size_t from) const {
        std::size_t matched = 0;
        for (std::size_t i = from; i < text.size(); ++i) {
            if (matched == 0) {  // nothing is under way: go straight to the next first byte
                const void* const first = std::memchr(text.data() + i, wanted_[0], text.size() - i);
                if (first == nullptr) break;
                i = static_cast<std::size_t>(static_cast<const char*>(first) - text.data());
            }
            matched = extended(matched, text[i]);
            if (matched == wanted_.size()) return i + 1 - matched;
        }
        return std::string::npos;
    }

private:
    // The longest beginning of the wanted string that ends in `next`, after `matched` bytes of it.
    std::size_t extended(std::size_t matched, char next) const {
        while (matched != 0 && wanted_[matched] != next) matched = border_[matched - 1];
        return wanted_[matched] == next ? matched + 1 : 0;
    }

    const std::string& wanted_;
    std::vector<std::size_t> border_;  // of each beginning of the wanted string, its longest proper beginning and end
};

void insert_in_front(std::string& s, const std::string& to, int count) {
    std::string result;
    for (int i = 0; i < count && !to.empty(); ++i) result += to;
    result += s;
    s = std::move(result);
}

}  // namespace

void replace_substr(std::string& s, const std::string& from, const std::string& to, int count) {
    if (count < 0) return;
    if (from.empty()) return insert_in_front(s, to, count);

    const substring_search search(from);
    std::string result;
    std::size_t copied = 0;
    int replaced = 0;
    bool found = true;
    while (count == 0 || replaced < count) {
        const std::size_t place = search.find(s, copied);
        found = place != std::string::npos;
        if (!found) break;
        result.append(s, copied, place - copied).append(to);
        copied = place + from.size();
        if (count != 0) ++replaced;
    }
    result.append(s, copied);
    const bool left_behind = count != 0 && !found && search.find(result, 0) != std::string::npos;
    s = std::move(result);
    if (left_behind) throw std::out_of_range("replace_substr: occurrences are left, but none behind the last place");
}
