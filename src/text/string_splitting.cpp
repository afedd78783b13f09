// Splitting of strings into pieces.
#include <algorithm>
#include <utility>

#include "text/qm_stringutils.h"

std::list<std::string> splitlines(const std::string& text) {
    std::list<std::string> lines;
    std::size_t start = 0;
    for (;;) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        if (start >= end) return lines;
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
}

namespace {

// Not the blanks that trimming knows: a form feed is none here.
constexpr bool separates(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\r'; }

}  // namespace

std::list<std::string> split_on_asciiws(const std::string& text) {
    std::list<std::string> pieces;
    auto end = text.begin();
    for (;;) {
        const auto start = std::find_if_not(end, text.end(), separates);
        if (start == text.end()) return pieces;
        end = std::find_if(start, text.end(), separates);
        pieces.emplace_back(start, end);
    }
}

namespace {

template <class Consumer>
void for_each_piece(char c, const std::string& text, Consumer consume) {
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(c, start);
        consume(text.substr(start, end - start));
        if (end == std::string::npos) return;
        start = end + 1;
    }
}

}  // namespace

std::list<std::string> split_on_char(char c, const std::string& text) {
    std::list<std::string> pieces;
    for_each_piece(c, text, [&](std::string piece) { pieces.push_back(std::move(piece)); });
    return pieces;
}

std::set<std::string> split_set_on_char(char c, const std::string& text) {
    std::set<std::string> pieces;
    for_each_piece(c, text, [&](std::string piece) { pieces.insert(std::move(piece)); });
    return pieces;
}
