// Whole-string conversions over the platform's call, which counts in `int`.
#include "tools/host/utf.h"

#include <algorithm>
#include <stdexcept>

namespace host {

namespace {

constexpr std::size_t most_bytes = std::size_t{1} << 30;
constexpr std::size_t most_units = most_bytes / 2;  // a unit takes at most three bytes

int checked_count(std::size_t size, std::size_t most) {
    if (size > most) throw std::length_error("the text is too long");
    return static_cast<int>(size);
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::string to_utf8(WideView text) {
    if (text.empty()) return {};
    const int count = checked_count(text.size(), most_units);
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), count, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), count, result.data(), size, nullptr, nullptr);
    return result;
}

WideString to_wide(std::string_view text) {
    if (text.empty()) return {};
    const int count = checked_count(text.size(), most_bytes);
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), count, nullptr, 0);
    WideString result(static_cast<std::size_t>(size), WCHAR{0});
    MultiByteToWideChar(CP_UTF8, 0, text.data(), count, result.data(), size);
    return result;
}

std::string_view without_bom(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.substr(0, mark.size()) == mark ? text.substr(mark.size()) : text;
}

std::string ascii_lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

bool equal_ignoring_case(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace host
