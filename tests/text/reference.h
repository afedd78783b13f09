// The passes over UTF-8 as the rules tell them, character by character and with no regard to speed. The tests hold the
// fast ones against these over many inputs; what these give is tested by hand elsewhere.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace reference {

inline unsigned int byte_at(const std::string& text, std::size_t place) {
    return static_cast<unsigned char>(text[place]);
}

// The unit at *place, or 0xFFFF; moves *place as getwc_utf8 moves its cursor.
inline unsigned int decode(const std::string& text, std::size_t* place) {
    const std::size_t available = text.size() - *place;
    if (available == 0) return 0xFFFF;
    const unsigned int lead = byte_at(text, (*place)++);
    const unsigned int top = lead >> 4;
    if (top <= 7) return lead;
    if (top <= 11 || (top == 15 && (lead & 8) != 0)) return 0xFFFF;
    const std::size_t length = top == 15 ? 4 : top == 14 ? 3 : 2;
    if (available < length) return 0xFFFF;
    unsigned int value = length == 2 ? lead & 0x1F : length == 3 ? lead & 0x0F : lead & 0x07;
    bool good = true;
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned int byte = byte_at(text, (*place)++);
        if (byte >> 6 != 2) good = false;
        value = value * 64 + byte % 64;
    }
    return good ? value % 0x10000 : 0xFFFF;
}

inline std::string encode(unsigned int unit) {
    std::string bytes;
    if (unit < 0x80) {
        bytes += static_cast<char>(unit);
    } else if (unit < 0x800) {
        bytes += static_cast<char>(0xC0 + unit / 64);
        bytes += static_cast<char>(0x80 + unit % 64);
    } else {
        bytes += static_cast<char>(0xE0 + unit / 4096);
        bytes += static_cast<char>(0x80 + unit / 64 % 64);
        bytes += static_cast<char>(0x80 + unit % 64);
    }
    return bytes;
}

inline std::string clean(const std::string& text, std::size_t* removed) {
    std::string result;
    *removed = 0;
    std::size_t place = 0;
    while (place < text.size()) {
        const std::size_t start = place;
        if (decode(text, &place) == 0xFFFF) {
            ++*removed;
            place = start + 1;
        } else {
            result.append(text, start, place - start);
        }
    }
    return result;
}

inline std::string decompose(const std::string& text) {
    std::string result;
    std::size_t place = 0;
    while (place < text.size()) {
        const std::size_t start = place;
        const unsigned int unit = decode(text, &place);
        if (unit == 0xFFFF) {
            ++place;
        } else if (unit >= 0xAC00 && unit <= 0xD7A3) {
            const unsigned int s = unit - 0xAC00;
            const unsigned int t = s % 28;
            result += encode(0x1100 + s / 588) + encode(0x1161 + (s - t) % 588 / 28);
            if (t != 0) result += encode(0x11A7 + t);
        } else {
            result.append(text, start, place - start);
        }
    }
    return result;
}

inline std::string xml_of_unit(unsigned int unit, const std::string& own_bytes, bool high_as_entity) {
    if (unit == 0x22) return "&quot;";
    if (unit == 0x26) return "&amp;";
    if (unit == 0x27) return "&apos;";
    if (unit == 0x3C) return "&lt;";
    if (unit == 0x3E) return "&gt;";
    if (unit == 0x09 || unit == 0x0A || unit == 0x0D) return std::string(1, static_cast<char>(unit));
    if (unit == 0x0B || unit == 0x0C) return " ";
    if (unit < 0x20 || unit == 0xFFFF) return "";
    if (unit <= 0x7F) return std::string(1, static_cast<char>(unit));
    if ((unit >= 0xD800 && unit <= 0xDFFF) || unit == 0xFFFE) return "";
    if (!high_as_entity) return own_bytes;
    char entity[16];
    std::snprintf(entity, sizeof entity, "&#x%X;", unit);
    return entity;
}

inline std::string encode_xml(const std::string& text, int flags) {
    std::string result;
    if ((flags & 2) != 0) result = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";
    std::size_t place = 0;
    while (place < text.size()) {
        const std::size_t start = place;
        const unsigned int unit = decode(text, &place);
        result += xml_of_unit(unit, text.substr(start, place - start), (flags & 1) != 0);
    }
    return result;
}

inline std::size_t size(const std::string& text) {
    std::size_t count = 0;
    std::size_t place = 0;
    while (place < text.size()) {
        ++count;
        if (decode(text, &place) == 0xFFFF) break;
    }
    return count;
}

}  // namespace reference
