// An input of lines with a rest, so that a corpus can be written and read by hand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class InputLines {
public:
    InputLines(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    // The next line, without its line feed; empty behind the last one. Line feeds of the rest stay.
    std::string_view line() { return until('\n', &rest_); }
    std::string_view rest() const { return rest_; }

    // Takes what stands in front of the separator, or all, off the text.
    static std::string_view until(char separator, std::string_view* text) {
        const std::size_t end = text->find(separator);
        const std::string_view piece = text->substr(0, end);
        *text = end == std::string_view::npos ? std::string_view() : text->substr(end + 1);
        return piece;
    }

private:
    std::string_view rest_;
};
