// The tests and case mappings of one wide unit: chains of ranges, each row a block of letters. What stands in no row
// gets "no" or stays as it is.
#include "text/textencoding.h"

namespace {

constexpr bool between(unsigned short wc, unsigned short first, unsigned short last) {
    return wc >= first && wc <= last;
}

constexpr bool is_even(unsigned short wc) { return wc % 2 == 0; }
constexpr bool is_odd(unsigned short wc) { return wc % 2 != 0; }

constexpr unsigned short moved(unsigned short wc, int by) { return static_cast<unsigned short>(wc + by); }

}  // namespace

bool is_num_wchar(unsigned short wc) { return between(wc, 0x30, 0x39); }

bool is_alpha_wchar(unsigned short wc) {
    if (wc < 0x80) return between(wc, 0x41, 0x5A) || between(wc, 0x61, 0x7A);
    return (between(wc, 0xC0, 0x24F) && wc != 0xD7 && wc != 0xF7) ||  // Latin
           between(wc, 0x386, 0x3CE) ||                               // Greek
           between(wc, 0x400, 0x45F) ||                               // Cyrillic
           between(wc, 0x621, 0x659) || between(wc, 0x66E, 0x6D3) ||  // Arabic
           between(wc, 0x1100, 0x11FF) ||                             // Hangul jamo
           between(wc, 0x16A0, 0x16EA) ||                             // Runic
           between(wc, 0x3040, 0x30FF) ||                             // Kana
           between(wc, 0xAC00, 0xD7A3) ||                             // Hangul syllables
           between(wc, 0xF8D0, 0xF8E9);                               // private use
}

bool is_alnum_wchar(unsigned short wc) { return is_alpha_wchar(wc) || is_num_wchar(wc); }

bool is_word_wchar(unsigned short wc) {
    return is_alnum_wchar(wc) || wc == '\'' || wc == '-' || wc == ':' || wc == '_';
}

bool is_punct_wchar(unsigned short wc) {
    switch (wc) {
        case '!':
        case '"':
        case '\'':
        case '(':
        case ')':
        case ',':
        case '-':
        case '.':
        case '/':
        case ':':
        case ';':
        case '?':
        case 0xA0:
        case 0xA1:
        case 0xAD:
        case 0xBF:
        case 0x60C:
        case 0x61F:
        case 0x6D4:
        case 0x3001:
        case 0x3002:
        case 0xF8FD:
        case 0xF8FE:
        case 0xFF0C:
            return true;
        default:
            return false;
    }
}

bool is_whitespace_wchar(unsigned short wc) {
    if (wc < 0x80) return wc == 0 || between(wc, 0x09, 0x0D) || wc == 0x20;
    return wc == 0xA0 || between(wc, 0x16EB, 0x16ED) || between(wc, 0x2000, 0x2008) || wc == 0x200A || wc == 0x200B ||
           wc == 0x205F || wc == 0x2060 || wc == 0x3000 || wc == 0xFEFF;
}

bool is_uppercase_wchar(unsigned short wc) {
    if (wc < 0x80) return between(wc, 0x41, 0x5A);
    return (between(wc, 0xC0, 0xDE) && wc != 0xD7) ||     // Latin 1
           (between(wc, 0x100, 0x136) && is_even(wc)) ||  // Latin extended: pairs begin at even units,
           (between(wc, 0x139, 0x147) && is_odd(wc)) ||   // at odd ones,
           (between(wc, 0x14A, 0x176) && is_even(wc)) ||  // at even ones again
           wc == 0x178 || wc == 0x179 || wc == 0x17B || wc == 0x17D || wc == 0x386 ||
           (between(wc, 0x388, 0x3AB) && wc != 0x390) ||  // Greek
           between(wc, 0x400, 0x42F);                     // Cyrillic
}

bool is_lowercase_wchar(unsigned short wc) {
    if (wc < 0x80) return between(wc, 0x61, 0x7A);
    return (between(wc, 0xDF, 0xFF) && wc != 0xF7) ||    // Latin 1
           (between(wc, 0x101, 0x137) && is_odd(wc)) ||  // Latin extended: the second halves of the pairs
           (between(wc, 0x138, 0x148) && is_even(wc)) || (between(wc, 0x149, 0x177) && is_odd(wc)) || wc == 0x17A ||
           wc == 0x17C || wc == 0x17E || wc == 0x17F || (between(wc, 0x3AC, 0x3CE) && wc != 0x3B0) ||  // Greek
           between(wc, 0x430, 0x45F);                                                                  // Cyrillic
}

unsigned short to_uppercase_wchar(unsigned short wc) {
    if (wc < 0x80) return between(wc, 0x61, 0x7A) ? moved(wc, -0x20) : wc;
    if (between(wc, 0xE0, 0xFE) && wc != 0xF7) return moved(wc, -0x20);
    if (wc == 0xFF) return 0x178;
    if (between(wc, 0x101, 0x137) && is_odd(wc)) return moved(wc, -1);
    if (between(wc, 0x13A, 0x148) && is_even(wc)) return moved(wc, -1);
    if (between(wc, 0x14B, 0x177) && is_odd(wc)) return moved(wc, -1);
    if (between(wc, 0x17A, 0x17E) && is_even(wc)) return moved(wc, -1);
    if (wc == 0x3C2) return 0x3A3;  // the final sigma shares the capital of the other one
    if (between(wc, 0x3B1, 0x3CB)) return moved(wc, -0x20);
    if (wc == 0x3AC) return 0x386;
    if (between(wc, 0x3AD, 0x3AF)) return moved(wc, -37);
    if (wc == 0x3CC) return 0x38C;
    if (between(wc, 0x3CD, 0x3CE)) return moved(wc, -63);
    if (between(wc, 0x430, 0x44F)) return moved(wc, -0x20);
    if (between(wc, 0x450, 0x45F)) return moved(wc, -80);
    return wc;
}

unsigned short to_lowercase_wchar(unsigned short wc) {
    if (wc < 0x80) return between(wc, 0x41, 0x5A) ? moved(wc, 0x20) : wc;
    if (between(wc, 0xC0, 0xDE) && wc != 0xD7) return moved(wc, 0x20);
    if (between(wc, 0x100, 0x136) && is_even(wc)) return moved(wc, 1);
    if (between(wc, 0x139, 0x147) && is_odd(wc)) return moved(wc, 1);
    if (between(wc, 0x14A, 0x176) && is_even(wc)) return moved(wc, 1);
    if (wc == 0x178) return 0xFF;
    if (between(wc, 0x179, 0x17D) && is_odd(wc)) return moved(wc, 1);
    if (between(wc, 0x391, 0x3AB)) return moved(wc, 0x20);
    if (wc == 0x386) return 0x3AC;
    if (between(wc, 0x388, 0x38A)) return moved(wc, 37);
    if (wc == 0x38C) return 0x3CC;
    if (between(wc, 0x38E, 0x38F)) return moved(wc, 63);
    if (between(wc, 0x410, 0x42F)) return moved(wc, 0x20);
    if (between(wc, 0x400, 0x40F)) return moved(wc, 80);
    return wc;
}
