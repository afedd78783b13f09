// UTF-16 that is ASCII, as bytes: by far the most common text, and converted without asking the platform.

#ifndef NELVA_FRAGMENTS_ASCII_UNITS_H
#define NELVA_FRAGMENTS_ASCII_UNITS_H

#include <cstddef>
#include <cstring>

#include "platform/win32.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "text/byte_block.h"

namespace fragments_detail {

inline bool is_ascii(WCHAR unit) { return unit < 0x80; }

// Narrows units to bytes while they are ASCII; gives the number done.
inline std::size_t narrow_ascii(const WCHAR* units, std::size_t count, char* bytes) {
    std::size_t i = 0;
#ifdef __SSE2__
    const __m128i beyond_ascii = _mm_set1_epi16(static_cast<short>(0xFF80));
    for (; count - i >= 16; i += 16) {
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + i));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + i + 8));
        const __m128i beyond = _mm_and_si128(_mm_or_si128(low, high), beyond_ascii);
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyond, _mm_setzero_si128())) != 0xFFFF) break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes + i), _mm_packus_epi16(low, high));
    }
    // A short fragment's word is all in here.
    for (; count - i >= 4; i += 4) {
        const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(units + i));
        const __m128i beyond = _mm_and_si128(four, beyond_ascii);
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyond, _mm_setzero_si128())) != 0xFFFF) break;
        const int narrowed = _mm_cvtsi128_si32(_mm_packus_epi16(four, four));
        std::memcpy(bytes + i, &narrowed, 4);
    }
#endif
    for (; i < count && is_ascii(units[i]); ++i) bytes[i] = static_cast<char>(units[i]);
    return i;
}

// Narrows `count` units to bytes if all of them go into XML as they are, one byte each. Gives whether they do; if not,
// the bytes are anything. The units are tested in registers: to read bytes right behind writing them in other portions
// costs more than all the rest.
inline bool narrow_plain(const WCHAR* units, std::size_t count, char* bytes) {
#ifdef NELVA_TEXT_SSE2
    text_detail::byte_mask others = 0;
    // Saturation makes something that is not plain of every unit that is not ASCII.
    if (count >= 8) {
        const auto narrow_8 = [&](std::size_t i) {
            const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + i));
            const __m128i narrowed = _mm_packus_epi16(eight, eight);
            others |= text_detail::not_plain_of_16(narrowed);
            _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes + i), narrowed);
        };
        for (std::size_t i = 0; i + 8 < count; i += 8) narrow_8(i);
        narrow_8(count - 8);
        return others == 0;
    }
    if (count >= 4) {
        const auto load_4 = [&](std::size_t i) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(units + i)); };
        const __m128i narrowed = _mm_packus_epi16(_mm_unpacklo_epi64(load_4(0), load_4(count - 4)), load_4(0));
        others = text_detail::not_plain_of_16(narrowed) & 0xFF;
        const int first = _mm_cvtsi128_si32(narrowed);
        const int last = _mm_cvtsi128_si32(_mm_srli_si128(narrowed, 4));
        std::memcpy(bytes, &first, sizeof first);
        std::memcpy(bytes + count - 4, &last, sizeof last);
        return others == 0;
    }
#endif
    bool plain = true;
    for (std::size_t i = 0; i < count; ++i) {
        plain = plain && text_detail::is_plain(units[i]);
        bytes[i] = static_cast<char>(units[i]);
    }
    return plain;
}

}  // namespace fragments_detail

#endif
