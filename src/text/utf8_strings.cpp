// The codec over whole strings: conversion, the search for a class of characters, and the transformation.
#include <array>

#include "text/failed_assertion.h"
#include "text/textencoding.h"
#include "text/utf8_unit.h"

std::string wstring_to_utf8(const wide_string& text) {
    // A unit takes at most 3 bytes, so this capacity is never full, and one more for the terminator.
    std::string bytes(3 * text.size() + 1, '\0');
    const std::ptrdiff_t written = wide_to_utf8(bytes.data(), bytes.size(), text.data(), text.size());
    bytes.resize(written < 0 ? 0 : static_cast<std::size_t>(written));
    return bytes;
}

wide_string wstring_from_utf8(const std::string& text) {
    wide_string units(text.size(), 0);
    const std::ptrdiff_t written = wide_from_utf8(units.data(), units.size(), text.data(), text.size());
    units.resize(written < 0 ? 0 : static_cast<std::size_t>(written));
    return units;
}

namespace {

// What may be read at `p` of a text that ends at its 0 byte: the 0 itself, or the bytes in front of it, at most one
// character's. A sequence cut by the 0 fails for want of bytes, as it would if the 0 were read as a continuation byte.
std::size_t available_before_nul(const char* p) {
    std::size_t count = 1;
    while (count < 4 && p[count - 1] != 0 && p[count] != 0) ++count;
    return count;
}

}  // namespace

const char* skip_matching_utf8(const char* p, bool (*test)(unsigned short), bool wanted, const char* end) {
    for (;;) {
        const char* const before = p;
        const std::size_t available = end == nullptr ? available_before_nul(p) : static_cast<std::size_t>(end - p);
        const unsigned short wc = getwc_utf8(&p, available);
        if (wc == 0 || wc == wide_eof || test(wc) != wanted) return before;
    }
}

std::string strtransform_utf8(const char* bytes, std::size_t size, unsigned short (*f)(unsigned short)) {
    std::string result;
    result.reserve(size);
    // Short stretches are collected here first: an append to the string for each character would cost more than the
    // rest.
    std::array<char, 512> stretch;
    std::size_t used = 0;
    const char* const end = bytes + size;
    while (bytes != end) {
        const unsigned short wc = text_detail::decode_unit(&bytes, static_cast<std::size_t>(end - bytes));
        if (wc == wide_eof) failed_assertion("wc != WEOF", "textencoding", 572, "strtransform_utf8");
        const int octets = text_detail::encode_unit(stretch.data() + used, f(wc), stretch.size() - used);
        if (octets < 0) failed_assertion("octets_out >= 0", "textencoding", 577, "strtransform_utf8");
        used += static_cast<std::size_t>(octets);
        if (used + 5 > stretch.size()) {
            result.append(stretch.data(), used);
            used = 0;
        }
    }
    result.append(stretch.data(), used);
    return result;
}

std::string strtransform_utf8(const std::string& text, unsigned short (*f)(unsigned short)) {
    return strtransform_utf8(text.data(), text.size(), f);
}
