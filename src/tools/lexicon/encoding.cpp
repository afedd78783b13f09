// The five encodings that expat reads by itself. See encoding.h.
#include "tools/lexicon/encoding.h"

#include <cstdint>
#include <cstdio>

#include "tools/host/utf.h"

namespace lexicon {
namespace {

constexpr char32_t no_character = 0xFFFFFFFF;

bool is_continuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// How many bytes the character with this first byte takes; 0 for a byte that starts none.
std::size_t sequence_length(unsigned char first) {
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first <= 0xDF) return 2;
    if (first >= 0xE0 && first <= 0xEF) return 3;
    if (first >= 0xF0 && first <= 0xF4) return 4;
    return 0;
}

bool is_scalar(char32_t c, std::size_t length) {
    static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return c >= smallest[length] && c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

void append_unit16(std::string* out, unsigned unit, bool little) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    out->push_back(little ? low : high);
    out->push_back(little ? high : low);
}

void append_utf16(std::string* out, char32_t c, bool little) {
    if (c < 0x10000) return append_unit16(out, static_cast<unsigned>(c), little);
    c -= 0x10000;
    append_unit16(out, 0xD800 + static_cast<unsigned>(c >> 10), little);
    append_unit16(out, 0xDC00 + static_cast<unsigned>(c & 0x3FF), little);
}

void append_reference(std::string* out, char32_t c) {
    char text[16];
    std::snprintf(text, sizeof text, "&#x%X;", static_cast<unsigned>(c));
    *out += text;
}

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

char32_t next_character(std::string_view text, std::size_t* at) {
    const auto first = static_cast<unsigned char>(text[*at]);
    const std::size_t length = sequence_length(first);
    if (length == 0 || *at + length > text.size()) {
        ++*at;
        return no_character;
    }
    static constexpr unsigned masks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t c = first & masks[length];
    bool good = true;
    for (std::size_t i = 1; i < length; ++i) {
        good = good && is_continuation(text[*at + i]);
        c = c << 6 | (static_cast<unsigned char>(text[*at + i]) & 0x3F);
    }
    good = good && is_scalar(c, length);
    *at += good ? length : 1;
    return good ? c : no_character;
}

void append_character(std::string* out, char32_t c) {
    const auto byte = [out](char32_t value) { out->push_back(static_cast<char>(static_cast<unsigned char>(value))); };
    if (c < 0x80) return byte(c);
    if (c < 0x800) {
        byte(0xC0 | c >> 6);
    } else if (c < 0x10000) {
        byte(0xE0 | c >> 12);
        byte(0x80 | (c >> 6 & 0x3F));
    } else {
        byte(0xF0 | c >> 18);
        byte(0x80 | (c >> 12 & 0x3F));
        byte(0x80 | (c >> 6 & 0x3F));
    }
    byte(0x80 | (c & 0x3F));
}

std::string Encoding::encode(std::string_view text) const {
    if (charset == Charset::utf8) return std::string(text);
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = next_character(text, &at);
        if (unit() == 2) {
            append_utf16(&result, c, charset == Charset::utf16le);
        } else if (c < (charset == Charset::latin1 ? 0x100u : 0x80u)) {
            result.push_back(static_cast<char>(static_cast<unsigned char>(c)));
        } else {
            append_reference(&result, c);
        }
    }
    return result;
}

char Encoding::ascii_at(std::string_view bytes, std::size_t at) const {
    const bool wide = unit() == 2;
    const char c = bytes[charset == Charset::utf16be ? at + 1 : at];
    const char other = wide ? bytes[charset == Charset::utf16be ? at : at + 1] : '\0';
    return other == '\0' && static_cast<unsigned char>(c) < 0x80 ? c : '\0';
}

Encoding detect_encoding(std::string_view bytes, std::string_view declared) {
    using namespace std::string_view_literals;
    if (bytes.starts_with("\xFF\xFE"sv) || bytes.starts_with("<\0"sv)) return {Charset::utf16le};
    if (bytes.starts_with("\xFE\xFF"sv) || bytes.starts_with("\0<"sv)) return {Charset::utf16be};
    if (host::equal_ignoring_case(declared, "iso-8859-1")) return {Charset::latin1};
    if (host::equal_ignoring_case(declared, "us-ascii")) return {Charset::ascii};
    return {Charset::utf8};
}

std::string escape(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result.push_back(c);
        }
    }
    return result;
}

std::string collapse_blanks(std::string_view text) {
    std::string result;
    bool blank = false;
    for (const char c : text) {
        if (is_blank(c)) {
            blank = true;
            continue;
        }
        if (blank && !result.empty()) result.push_back(' ');
        blank = false;
        result.push_back(c);
    }
    return result;
}

bool is_xml_text(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = next_character(text, &at);
        if (c < 0x20 && !is_blank(static_cast<char>(c))) return false;
        if (c == 0xFFFE || c == 0xFFFF || c == no_character) return false;
    }
    return true;
}

}  // namespace lexicon
