// UTF-16 to UTF-8 and back with the results of current Windows.
//
// Both directions walk the source once and take blocks of 16 ASCII characters at a time where they stand; everything
// else goes character by character. A surrogate without its partner is one U+FFFD. Among ill-formed UTF-8, a lead byte
// takes along all continuation bytes that follow it up to its length, and also a second byte that makes the sequence
// too long, a surrogate or too large; together they are one U+FFFD. A byte that is no lead byte is one by itself.

#include "platform/native/text.h"

#include <climits>
#include <cstdint>
#include <string>

#include "platform/native/internal.h"
#include "platform/testing.h"

namespace {

constexpr std::size_t block = 16;

platform_native::Countdown conversion_failure;

// ---- UTF-16 to UTF-8 ----

bool is_high_surrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool is_low_surrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }
bool is_surrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }

bool is_ascii_block(const char16_t* source) {
    std::uint64_t words[block / 4];
    std::memcpy(words, source, sizeof words);
    return ((words[0] | words[1] | words[2] | words[3]) & 0xFF80FF80FF80FF80u) == 0;
}

bool is_pair(const char16_t* source, const char16_t* end) {
    return end - source >= 2 && is_high_surrogate(source[0]) && is_low_surrogate(source[1]);
}

char32_t character_of_pair(const char16_t* pair) { return 0x10000 + ((pair[0] & 0x3FFu) << 10) + (pair[1] & 0x3FFu); }

// The character at `source`, which moves behind it. A lone surrogate reads as U+FFFD.
char32_t take_utf16(const char16_t*& source, const char16_t* end) {
    const char16_t* const start = source++;
    if (!is_surrogate(*start)) return *start;
    if (!is_pair(start, end)) return 0xFFFD;
    ++source;
    return character_of_pair(start);
}

std::size_t utf8_size(char32_t character) {
    return character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
}

char continuation(char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); }

char* put_four_bytes(char* target, char32_t character) {
    target[0] = static_cast<char>(0xF0 | character >> 18);
    target[1] = continuation(character >> 12);
    target[2] = continuation(character >> 6);
    target[3] = continuation(character);
    return target + 4;
}

char* put_utf8(char* target, char32_t character) {
    switch (utf8_size(character)) {
        case 1:
            target[0] = static_cast<char>(character);
            return target + 1;
        case 2:
            target[0] = static_cast<char>(0xC0 | character >> 6);
            target[1] = continuation(character);
            return target + 2;
        case 3:
            target[0] = static_cast<char>(0xE0 | character >> 12);
            target[1] = continuation(character >> 6);
            target[2] = continuation(character);
            return target + 3;
        default:
            return put_four_bytes(target, character);
    }
}

std::size_t measure_utf8(const char16_t* source, const char16_t* end) {
    std::size_t size = 0;
    while (source != end) {
        if (*source < 0x80) {
            for (; static_cast<std::size_t>(end - source) >= block && is_ascii_block(source); source += block)
                size += block;
            if (source == end) break;
        }
        size += utf8_size(take_utf16(source, end));
    }
    return size;
}

// Gives the end of what was written, or null when a character does not fit in front of `limit`.
char* encode_utf8(const char16_t* source, const char16_t* end, char* target, const char* limit) {
    while (source != end) {
        if (*source < 0x80) {
            while (static_cast<std::size_t>(end - source) >= block &&
                   static_cast<std::size_t>(limit - target) >= block && is_ascii_block(source)) {
                for (std::size_t i = 0; i < block; ++i) target[i] = static_cast<char>(source[i]);
                source += block;
                target += block;
            }
            if (source == end) break;
        }
        // Pairs come in rows.
        for (; is_pair(source, end) && limit - target >= 4; source += 2) {
            target = put_four_bytes(target, character_of_pair(source));
        }
        if (source == end) break;
        const char32_t character = take_utf16(source, end);
        if (static_cast<std::size_t>(limit - target) < utf8_size(character)) return nullptr;
        target = put_utf8(target, character);
    }
    return target;
}

bool has_lone_surrogate(const char16_t* source, const char16_t* end) {
    while (source != end) {
        const char16_t unit = *source;
        const char16_t* const start = source;
        take_utf16(source, end);
        if (is_surrogate(unit) && source - start == 1) return true;
    }
    return false;
}

// ---- UTF-8 to UTF-16 ----

constexpr char32_t ill_formed = 0xFFFFFFFF;

bool is_ascii_block(const unsigned char* source) {
    std::uint64_t words[block / 8];
    std::memcpy(words, source, sizeof words);
    return ((words[0] | words[1]) & 0x8080808080808080u) == 0;
}

std::size_t sequence_length(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 1;
}

// Whether a lead byte and its first continuation byte can begin a character.
bool is_possible_start(char32_t bits, std::size_t length) {
    if (length == 3) return bits >= 0x800 >> 6 && (bits < 0xD800 >> 6 || bits > 0xDFFF >> 6);
    return length != 4 || (bits >= 0x10000 >> 12 && bits <= 0x10FFFF >> 12);
}

// The character at `source`, which moves behind it, or behind what counts as one ill-formed piece.
char32_t take_utf8(const unsigned char*& source, const unsigned char* end) {
    const unsigned char lead = *source++;
    if (lead < 0x80) return lead;
    const std::size_t length = sequence_length(lead);
    if (length == 1) return ill_formed;
    char32_t bits = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (source == end || (*source & 0xC0) != 0x80) return ill_formed;
        bits = bits << 6 | (*source++ & 0x3Fu);
        if (i == 1 && !is_possible_start(bits, length)) return ill_formed;
    }
    return bits;
}

std::size_t utf16_size(char32_t character) { return character >= 0x10000 && character != ill_formed ? 2 : 1; }

char16_t* put_utf16(char16_t* target, char32_t character) {
    if (character == ill_formed) character = 0xFFFD;
    if (character < 0x10000) {
        *target++ = static_cast<char16_t>(character);
        return target;
    }
    *target++ = static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
    *target++ = static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    return target;
}

std::size_t measure_utf16(const unsigned char* source, const unsigned char* end) {
    std::size_t size = 0;
    while (source != end) {
        if (*source < 0x80) {
            for (; static_cast<std::size_t>(end - source) >= block && is_ascii_block(source); source += block)
                size += block;
            if (source == end) break;
        }
        size += utf16_size(take_utf8(source, end));
    }
    return size;
}

char16_t* decode_utf8(const unsigned char* source, const unsigned char* end, char16_t* target, const char16_t* limit) {
    while (source != end) {
        if (*source < 0x80) {
            while (static_cast<std::size_t>(end - source) >= block &&
                   static_cast<std::size_t>(limit - target) >= block && is_ascii_block(source)) {
                for (std::size_t i = 0; i < block; ++i) target[i] = source[i];
                source += block;
                target += block;
            }
            if (source == end) break;
        }
        const char32_t character = take_utf8(source, end);
        if (static_cast<std::size_t>(limit - target) < utf16_size(character)) return nullptr;
        target = put_utf16(target, character);
    }
    return target;
}

bool has_ill_formed(const unsigned char* source, const unsigned char* end) {
    while (source != end)
        if (take_utf8(source, end) == ill_formed) return true;
    return false;
}

// ---- Both ----

// What either function refuses before it looks at the text; 0 when there is nothing to refuse.
LONG argument_error(UINT code_page, const void* source, int count, const void* target, int size) {
    if (code_page != CP_UTF8 || source == nullptr || count == 0 || size < 0) return ERROR_INVALID_PARAMETER;
    if (size > 0 && (target == nullptr || target == source)) return ERROR_INVALID_PARAMETER;
    if (conversion_failure.due()) return ERROR_NOT_ENOUGH_MEMORY;
    return 0;
}

int refuse(LONG error) { return platform_native::fail(error, 0); }

int as_count(std::size_t size) { return size > INT_MAX ? refuse(ERROR_INVALID_PARAMETER) : static_cast<int>(size); }

template <typename Unit>
int count_written(const Unit* start, const Unit* end) {
    return end == nullptr ? refuse(ERROR_INSUFFICIENT_BUFFER) : static_cast<int>(end - start);
}

}  // namespace

int WideCharToMultiByte(UINT code_page, DWORD flags, LPCWCH source, int count, LPSTR target, int size,
                        LPCCH default_char, LPBOOL used_default_char) {
    if (const LONG error = argument_error(code_page, source, count, target, size)) return refuse(error);
    if (default_char != nullptr || used_default_char != nullptr) return refuse(ERROR_INVALID_PARAMETER);
    if ((flags & ~WC_ERR_INVALID_CHARS) != 0) return refuse(ERROR_INVALID_FLAGS);
    const std::size_t length =
        count > 0 ? static_cast<std::size_t>(count) : std::char_traits<WCHAR>::length(source) + 1;
    const LPCWCH end = source + length;
    if (flags != 0 && has_lone_surrogate(source, end)) return refuse(ERROR_NO_UNICODE_TRANSLATION);
    if (size == 0) return as_count(measure_utf8(source, end));
    return count_written(target, encode_utf8(source, end, target, target + size));
}

int MultiByteToWideChar(UINT code_page, DWORD flags, LPCCH source, int count, LPWSTR target, int size) {
    if (const LONG error = argument_error(code_page, source, count, target, size)) return refuse(error);
    if ((flags & ~MB_ERR_INVALID_CHARS) != 0) return refuse(ERROR_INVALID_FLAGS);
    const auto* const start = reinterpret_cast<const unsigned char*>(source);
    const unsigned char* const end = start + (count > 0 ? static_cast<std::size_t>(count) : std::strlen(source) + 1);
    if (flags != 0 && has_ill_formed(start, end)) return refuse(ERROR_NO_UNICODE_TRANSLATION);
    if (size == 0) return as_count(measure_utf16(start, end));
    return count_written(target, decode_utf8(start, end, target, target + size));
}

namespace platform_native {

std::string narrow(std::u16string_view text) {
    const char16_t* const end = text.data() + text.size();
    std::string out(measure_utf8(text.data(), end), '\0');
    encode_utf8(text.data(), end, out.data(), out.data() + out.size());
    return out;
}

std::string narrow(LPCWSTR text) { return text == nullptr ? std::string() : narrow(std::u16string_view(text)); }

std::u16string widen(std::string_view text) {
    const auto* const start = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* const end = start + text.size();
    std::u16string out(measure_utf16(start, end), u'\0');
    decode_utf8(start, end, out.data(), out.data() + out.size());
    return out;
}

void reset_text() { conversion_failure.arm(0); }

}  // namespace platform_native

namespace platform_testing {

void fail_conversion(long nth) { conversion_failure.arm(nth); }

}  // namespace platform_testing
