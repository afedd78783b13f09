// Sixty-four bytes of UTF-8 at a time, as bit masks: the fast path of the passes over long text.
//
// A block of 64 bytes is turned into eight masks of 64 bits, its bit planes: bit i of plane k is bit k of byte i. From
// there each question about the bytes is Boolean logic that answers for all of them at once, and a question about
// neighbours is a shift by one. Loading the planes is the only step that knows the machine; SSE2, which every x86-64
// has, does it with a shift and a movemask for each plane. The passes answer with these masks for blocks that hold
// nothing unusual, and go character by character through the others.
//
// A block is meant to begin at a character. One cut off at its end is no fault: whole_bytes() tells where it begins,
// and the next block starts there.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__) && !defined(NELVA_TEXT_PORTABLE)
#include <emmintrin.h>
#define NELVA_TEXT_SSE2 1
#endif

namespace text_detail {

inline constexpr std::size_t block_size = 64;

// Bit i stands for byte i of the block.
using byte_mask = std::uint64_t;

struct bit_planes {
    byte_mask bit[8];
};

// Does this character go into XML as it is, as one byte?
constexpr bool is_plain(unsigned int c) {
    const bool kept = (c >= 0x20 && c < 0x80) || c == '\t' || c == '\n' || c == '\r';
    return kept && c != '"' && c != '&' && c != '\'' && c != '<' && c != '>';
}

// Eight bytes, the first in the lowest bits, on any machine. Compilers make one load of it.
inline std::uint64_t load_eight(const char* bytes) {
    std::uint64_t word = 0;
    for (int i = 0; i < 8; ++i) word |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << 8 * i;
    return word;
}

inline bit_planes planes_portable(const char* block) {
    bit_planes planes{};
    for (int word = 0; word < 8; ++word) {
        const std::uint64_t bytes = load_eight(block + 8 * word);
        for (int k = 0; k < 8; ++k) {
            // The multiplication moves the lowest bit of byte i to bit 56 + i; nothing else reaches the top byte.
            const std::uint64_t gathered = (bytes >> k & 0x0101010101010101) * 0x0102040810204080 >> 56;
            planes.bit[k] |= gathered << 8 * word;
        }
    }
    return planes;
}

// The bytes that do not go into XML as they are, or may not: all that are not is_plain().
inline byte_mask not_plain_portable(const char* block) {
    const bit_planes p = planes_portable(block);
    const auto& b = p.bit;
    const byte_mask control = ~(b[7] | b[6] | b[5]);
    const byte_mask kept = ~b[4] & b[3] & ((~b[2] & (b[1] ^ b[0])) | (b[2] & ~b[1] & b[0]));  // 9, A, D of a row
    const byte_mask row_2 = ~(b[7] | b[6]) & b[5] & ~b[4];
    const byte_mask row_3 = ~(b[7] | b[6]) & b[5] & b[4];
    const byte_mask quotes = row_2 & ~b[3] & b[1] & ((b[2]) | ~b[0]);  // 22, 26, 27
    const byte_mask angles = row_3 & b[3] & b[2] & ~b[0];              // 3C, 3E
    return b[7] | (control & ~kept) | quotes | angles;
}

inline byte_mask high_bits_portable(const char* block) { return planes_portable(block).bit[7]; }

#ifdef NELVA_TEXT_SSE2

inline __m128i load_16(const char* bytes) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)); }

inline byte_mask movemask(__m128i bytes) { return static_cast<unsigned int>(_mm_movemask_epi8(bytes)); }

// The masks that `test` gives for each 16 bytes, put together.
template <class Test>
inline byte_mask mask_of(const char* block, Test test) {
    return test(load_16(block)) | test(load_16(block + 16)) << 16 | test(load_16(block + 32)) << 32 |
           test(load_16(block + 48)) << 48;
}

inline bit_planes planes_of(const char* block) {
    bit_planes planes{};
    for (int quarter = 0; quarter < 4; ++quarter) {
        __m128i bytes = load_16(block + 16 * quarter);
        for (int k = 7; k >= 0; --k) {
            planes.bit[k] |= movemask(bytes) << 16 * quarter;
            bytes = _mm_add_epi8(bytes, bytes);  // the next bit becomes the highest
        }
    }
    return planes;
}

inline byte_mask high_bits(const char* block) { return mask_of(block, movemask); }

inline byte_mask not_plain_of_16(__m128i bytes) {
    const auto equals = [&](char wanted) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted)); };
    const auto equals_but = [&](char ignored, char wanted) {
        return _mm_cmpeq_epi8(_mm_and_si128(bytes, _mm_set1_epi8(static_cast<char>(~ignored))), _mm_set1_epi8(wanted));
    };
    // Signed, so that bytes from 0x80 up are below 0x20 as well.
    const __m128i low = _mm_cmplt_epi8(bytes, _mm_set1_epi8(0x20));
    const __m128i kept = _mm_or_si128(_mm_or_si128(equals('\t'), equals('\n')), equals('\r'));
    const __m128i quotes = _mm_or_si128(equals('"'), equals_but(1, '&'));  // & and '
    const __m128i angles = equals_but(2, '<');                             // < and >
    return movemask(_mm_or_si128(_mm_andnot_si128(kept, low), _mm_or_si128(quotes, angles)));
}

inline byte_mask not_plain(const char* block) { return mask_of(block, not_plain_of_16); }

#else

inline bit_planes planes_of(const char* block) { return planes_portable(block); }
inline byte_mask high_bits(const char* block) { return high_bits_portable(block); }
inline byte_mask not_plain(const char* block) { return not_plain_portable(block); }

#endif

// The bytes of a block by their part in a character. A lead byte stands in each mask up to its length.
struct utf8_forms {
    byte_mask continuation;
    byte_mask lead2;  // C0 and above
    byte_mask lead3;  // E0 and above
    byte_mask lead4;  // F0 and above
    byte_mask none;   // F8 and above: begins no form
};

inline utf8_forms forms_of(const bit_planes& planes) {
    const auto& b = planes.bit;
    utf8_forms forms{};
    forms.continuation = b[7] & ~b[6];
    forms.lead2 = b[7] & b[6];
    forms.lead3 = forms.lead2 & b[5];
    forms.lead4 = forms.lead3 & b[4];
    forms.none = forms.lead4 & b[3];
    return forms;
}

// 0 if the block is made of whole forms, apart from one cut off at its end. Otherwise some bits at or behind a fault.
inline byte_mask malformed(const utf8_forms& forms) {
    const byte_mask wanted = forms.lead2 << 1 | forms.lead3 << 2 | forms.lead4 << 3;
    return (wanted ^ forms.continuation) | forms.none;
}

// Of a block that is not malformed, the bytes in front of a form cut off at its end: 61 to 64.
inline std::size_t whole_bytes(const utf8_forms& forms) {
    const byte_mask last = byte_mask{1} << 63;
    const byte_mask cut = (forms.lead2 & last) | (forms.lead3 & (last >> 1)) | (forms.lead4 & (last >> 2));
    return cut == 0 ? block_size : static_cast<std::size_t>(std::countr_zero(cut));
}

// In a form of three or four bytes, the byte whose low nibble is the highest of the unit: the lead of the shorter form,
// the first continuation byte of the longer. The six and six bits below it are in the next two bytes, so both forms are
// judged alike.
inline byte_mask nibble_bytes(const utf8_forms& forms) { return (forms.lead3 & ~forms.lead4) | forms.lead4 << 1; }

// Some bit for each unit 0xFFFF of a block that is not malformed, where it lies in the block whole.
inline byte_mask ffff_units(const bit_planes& planes, const utf8_forms& forms) {
    const auto& b = planes.bit;
    const byte_mask nibble_f = nibble_bytes(forms) & b[3] & b[2] & b[1] & b[0];
    const byte_mask all_six = b[5] & b[4] & b[3] & b[2] & b[1] & b[0];
    return ((nibble_f << 1) & all_six) << 1 & all_six;
}

// Some bit for each multi-byte character of a block that is not malformed whose unit is below 0x80, a surrogate, 0xFFFE
// or 0xFFFF, where it lies in the block whole. One that is cut off may have a bit.
inline byte_mask rewritten_units(const bit_planes& planes, const utf8_forms& forms) {
    const auto& b = planes.bit;
    const byte_mask nibble = nibble_bytes(forms);
    const byte_mask five_zero = ~(b[5] | b[4] | b[3] | b[2] | b[1]);
    const byte_mask five_one = b[5] & b[4] & b[3] & b[2] & b[1];
    const byte_mask below_80_in_two = forms.lead2 & ~forms.lead3 & ~(b[4] | b[3] | b[2] | b[1]);
    const byte_mask below_80 = (nibble & ~(b[3] | b[2] | b[1] | b[0])) << 1 & five_zero;
    const byte_mask surrogate = (nibble & b[3] & b[2] & ~b[1] & b[0]) << 1 & b[5];
    const byte_mask top = ((nibble & b[3] & b[2] & b[1] & b[0]) << 1 & five_one & b[0]) << 1 & five_one;
    return below_80_in_two | below_80 | surrogate | top;
}

}  // namespace text_detail
