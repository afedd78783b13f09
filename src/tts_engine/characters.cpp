// Character classes over the tables that espeak-ng brings. See characters.h.
#include "tts_engine/characters.h"

#include <ucd/ucd.h>

namespace tts {
namespace {

bool is_continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Signs that are written between words instead of a blank: Ethiopic, runic, Aegean, Ugaritic, Old Persian, Phoenician,
// cuneiform, and the raised dot of inscriptions.
bool is_word_separator(char32_t c) {
    return c == 0x1361 || (c >= 0x16EB && c <= 0x16ED) || c == 0x2E31 || (c >= 0x10100 && c <= 0x10101) ||
           c == 0x1039F || c == 0x103D0 || c == 0x1091F || c == 0x12470;
}

}  // namespace

Decoded decode_utf8(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {0, 1};
    char32_t code = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!is_continuation(bytes[i])) return {0, 1};
        code = code << 6 | (static_cast<unsigned char>(bytes[i]) & 0x3F);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (overlong || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return {0, 1};
    return {code, length};
}

void append_utf8(std::string& text, char32_t code) {
    const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

std::string_view first_characters(std::string_view text, std::size_t most) {
    if (text.size() <= most) return text;
    std::size_t size = most;
    while (size > 0 && most - size < 3 && is_continuation(text[size])) --size;
    return text.substr(0, is_continuation(text[size]) ? most : size);
}

bool is_blank(char32_t c) {
    if (c <= 0x20) return true;
    if (c < 0x85) return c == 0x7F;
    return c == 0x85 || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200B) || c == 0x2028 || c == 0x2029 ||
           c == 0x202F || c == 0x205F || c == 0x3000 || is_word_separator(c);
}

bool is_punctuation(char32_t c) { return ucd_lookup_category_group(c) == UCD_CATEGORY_GROUP_P; }

bool is_symbol(char32_t c) { return ucd_lookup_category_group(c) == UCD_CATEGORY_GROUP_S; }

bool is_opening(char32_t c) {
    const ucd_category category = ucd_lookup_category(c);
    return category == UCD_CATEGORY_Ps || category == UCD_CATEGORY_Pi || c == 0xBF || c == 0xA1;
}

bool is_closing(char32_t c) {
    const ucd_category category = ucd_lookup_category(c);
    return category == UCD_CATEGORY_Pe || category == UCD_CATEGORY_Pf || c == U'"' || c == U'\'';
}

bool is_lower(char32_t c) { return ucd_islower(c) != 0; }

bool is_cased(char32_t c) { return ucd_islower(c) != 0 || ucd_isupper(c) != 0; }

char32_t to_lower(char32_t c) { return ucd_tolower(c); }

bool is_alnum(char32_t c) { return ucd_isalnum(c) != 0; }

bool is_full_stop(char32_t c) { return c == U'.' || c == 0x2026; }

bool is_strong_end(char32_t c) {
    return c == U'!' || c == U'?' || c == 0x37E || c == 0x589 || c == 0x61F || c == 0x6D4 || c == 0x964 || c == 0x965 ||
           c == 0x104A || c == 0x104B || c == 0x1362 || c == 0x1367 || c == 0x17D4 || c == 0x203C ||
           (c >= 0x2047 && c <= 0x2049);
}

bool is_wide_end(char32_t c) { return c == 0x3002 || c == 0xFF01 || c == 0xFF0E || c == 0xFF1F || c == 0xFF61; }

bool is_unspaced(char32_t c) {
    return (c >= 0x3041 && c <= 0x30FF && c != 0x30FB) || (c >= 0x3400 && c <= 0x4DBF) ||
           (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFF66 && c <= 0xFF9D) ||
           (c >= 0x20000 && c <= 0x3FFFF);
}

bool is_one_character(char32_t before, char32_t next) {
    const auto is_joiner = [](char32_t c) { return c == 0x200C || c == 0x200D; };
    const auto is_modifier = [](char32_t c) {
        return (c >= 0x1F3FB && c <= 0x1F3FF) || (c >= 0xE0020 && c <= 0xE007F);
    };
    const auto is_flag = [](char32_t c) { return c >= 0x1F1E6 && c <= 0x1F1FF; };
    const auto is_vowel_or_tail = [](char32_t c) { return c >= 0x1160 && c <= 0x11FF; };
    return is_combining(next) || is_joiner(next) || is_modifier(next) || is_vowel_or_tail(next) || is_joiner(before) ||
           (is_flag(before) && is_flag(next));
}

bool is_combining(char32_t c) {
    return ucd_lookup_category_group(c) == UCD_CATEGORY_GROUP_M || c == 0x200D || c == 0x30FC;
}

}  // namespace tts
