// Comparisons that ignore the case of ASCII letters and nothing else, whatever the process's locale.

#ifndef NELVA_FRAGMENTS_ASCII_CASE_H
#define NELVA_FRAGMENTS_ASCII_CASE_H

#include <algorithm>
#include <string_view>

namespace fragments_detail {

inline char ascii_lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

inline bool ascii_equal_ignoring_case(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return ascii_lower(x) == ascii_lower(y); });
}

inline bool ascii_starts_with_ignoring_case(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && ascii_equal_ignoring_case(text.substr(0, start.size()), start);
}

}  // namespace fragments_detail

#endif
