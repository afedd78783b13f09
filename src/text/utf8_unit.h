// getwc_utf8 and putwc_utf8 as inline functions, for the loops of this folder. textencoding.h tells what they do.
#pragma once

#include <cerrno>
#include <cstddef>

#include "text/textencoding.h"

namespace text_detail {

inline unsigned short bad_sequence() {
    errno = wide_bad_sequence;
    return wide_eof;
}

// Decodes the form of `count` bytes whose lead byte has been read. All its bytes are consumed before any is tested.
template <int count>
inline unsigned short decode_form(unsigned char lead, const char** cursor, std::size_t available) {
    if (available < count) return bad_sequence();
    unsigned int unit = lead;  // its upper bits fall off at the cut to 16
    bool good = true;
    for (int i = 1; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(*(*cursor)++);
        good = good && (byte & 0xC0) == 0x80;
        unit = unit << 6 | (byte & 0x3F);
    }
    return good ? static_cast<unsigned short>(unit) : bad_sequence();
}

inline unsigned short decode_unit(const char** cursor, std::size_t available) {
    if (available == 0) return bad_sequence();
    const auto lead = static_cast<unsigned char>(*(*cursor)++);
    if (lead < 0x80) return lead;
    if (lead < 0xC0) return bad_sequence();  // a continuation byte without a lead
    if (lead < 0xE0) return decode_form<2>(lead & 0x1F, cursor, available);
    if (lead < 0xF0) return decode_form<3>(lead, cursor, available);
    if (lead < 0xF8) return decode_form<4>(lead, cursor, available);
    return bad_sequence();  // begins no form
}

inline int encode_unit(char* out, unsigned short wc, std::size_t room) {
    const auto tail = [wc](int shift) { return static_cast<char>(0x80 | (wc >> shift & 0x3F)); };
    if (wc < 0x80) {
        if (room < 1) return -1;
        out[0] = static_cast<char>(wc);
        return 1;
    }
    if (wc < 0x800) {
        if (room < 2) return -1;
        out[0] = static_cast<char>(0xC0 | wc >> 6);
        out[1] = tail(0);
        return 2;
    }
    if (room < 3) return -1;
    out[0] = static_cast<char>(0xE0 | wc >> 12);
    out[1] = tail(6);
    out[2] = tail(0);
    return 3;
}

}  // namespace text_detail
