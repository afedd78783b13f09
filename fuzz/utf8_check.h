// Is a text UTF-8 as the world knows it: no overlong form, no surrogate, nothing above U+10FFFF? The library's codec is
// laxer, so that this is written apart from it.
#pragma once

#include <cstddef>
#include <string_view>

// The length of the character at the start, 0 if it is none.
inline std::size_t strict_utf8_length(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
    }
    if (lead == 0xE0 && byte(1) < 0xA0) return 0;
    if (lead == 0xED && byte(1) > 0x9F) return 0;
    if (lead == 0xF0 && byte(1) < 0x90) return 0;
    if (lead == 0xF4 && byte(1) > 0x8F) return 0;
    return length;
}

inline bool is_strict_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = strict_utf8_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}
