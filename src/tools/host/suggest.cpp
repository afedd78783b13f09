// Edit distance, three rows at a time. Two neighbours that changed places, the commonest slip, count as one edit.
#include "tools/host/suggest.h"

#include <algorithm>
#include <numeric>

#include "tools/host/utf.h"

namespace host {

namespace {

std::size_t edits_between(const std::string& from, const std::string& to) {
    std::vector<std::size_t> before(to.size() + 1), above(to.size() + 1), row(to.size() + 1);
    std::iota(above.begin(), above.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        row[0] = i;
        for (std::size_t k = 1; k <= to.size(); ++k) {
            const std::size_t changed = above[k - 1] + (from[i - 1] == to[k - 1] ? 0 : 1);
            row[k] = std::min({changed, above[k] + 1, row[k - 1] + 1});
            if (i > 1 && k > 1 && from[i - 1] == to[k - 2] && from[i - 2] == to[k - 1])
                row[k] = std::min(row[k], before[k - 2] + 1);
        }
        before.swap(above);
        above.swap(row);
    }
    return above.back();
}

}  // namespace

std::string closest_name(const std::string& typed, const std::vector<std::string>& known) {
    std::string nearest;
    std::size_t fewest = std::string::npos;
    for (const std::string& name : known) {
        const std::size_t allowed = std::max<std::size_t>(1, name.size() / 3);
        // A length that differs by more needs no comparison, which keeps huge input cheap.
        if (typed.size() > name.size() + allowed || name.size() > typed.size() + allowed) continue;
        const std::size_t edits = edits_between(ascii_lower(typed), ascii_lower(name));
        if (edits > allowed || edits >= fewest) continue;
        fewest = edits;
        nearest = name;
    }
    return nearest;
}

}  // namespace host
