// UTF-8 and 16-bit wide units: codec, character classes, cleaning, XML encoding.
//
// All text of the system is UTF-8 in std::string or in a range of bytes. Whatever looks at characters decodes them
// with this codec into wide units: unsigned shorts. The codec is limited to 16 bits on purpose:
//
//   - a four-byte sequence keeps the low 16 bits of its code point: U+1F600 decodes to 0xF600, U+10041 to 0x41 'A';
//   - there are no surrogate pairs: a surrogate is a unit like any other, both ways (ED A0 80 is 0xD800);
//   - overlong forms pass (C0 80 is 0).
//
// A bad sequence is a lead byte without its continuation bytes, a continuation byte without a lead, or a byte from F8
// up. It decodes to `wide_eof` and sets `errno` to `wide_bad_sequence`, on every platform to the same number. A genuine
// U+FFFF cannot be told from it, except by errno.
//
// Nothing here depends on the process's locale, and nothing is shared: every operation works on its arguments only
// (errno is per thread). Sizes are in bytes unless said otherwise. A null pointer will do for an empty range.
//
//     std::string text = clean_utf8(from_outside);           // never stops the program
//     text = strtransform_utf8(text, to_lowercase_wchar);    // would stop it on a bad sequence
//     document += encode_xml_utf8(text, 0);
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

#include "text/wide_string.h"

// What stands for a bad sequence and for the end of the input. (The C library owns the name WEOF.)
inline constexpr unsigned short wide_eof = 0xFFFF;

// The errno of a bad sequence, whatever EILSEQ is on the platform.
inline constexpr int wide_bad_sequence = 42;

// ---- One character ------------------------------------------------------------------------------------------------

// Decodes the character at *cursor, of which `available` bytes may be read. Returns its unit and moves *cursor behind
// it. On failure returns wide_eof, sets errno, and leaves *cursor
//   - where it was, if `available` is 0;
//   - behind the lead byte, if that cannot begin a character or `available` is too small for its form;
//   - behind the whole form, if one of its continuation bytes is none: C3 41 also loses the 'A'.
unsigned short getwc_utf8(const char** cursor, std::size_t available);

// The next unit of the file. wide_eof at the end of the file, within a sequence too (errno stays as the C library left
// it), and for a bad sequence (errno is set), of which as many bytes are consumed as its lead byte asks for.
unsigned short getwc_utf8file(std::FILE* file);

// Encodes `wc` at `out`, which has room for `room` bytes. Returns the number of bytes, 1 to 3, or -1 if they do not
// fit; then nothing is written. wide_eof is encoded like any unit: EF BF BF.
int putwc_utf8(char* out, unsigned short wc, std::size_t room);

// Writes `wc` to the file as UTF-8. Returns it, or wide_eof if it could not be written.
unsigned short putwc_utf8file(std::FILE* file, unsigned short wc);

// ---- Buffers ------------------------------------------------------------------------------------------------------

// These three walk until the input is used up or the output is full, and end alike. With room left they write a
// terminating 0, which is not counted, and return the count. When the output is full the input at the cursor decides:
// the count if it is 0 there, otherwise 0. It is looked at even when the input is used up, so the input must be
// terminated, or readable one step further, unless out_size is 0.

// Returns the bytes written; 0 as told above; -1 if a unit did not fit into what was left of the output.
std::ptrdiff_t wide_to_utf8(char* out, std::size_t out_size, const unsigned short* in, std::size_t in_count);

// Sizes of the output are in units. Returns the units written; 0 as told above; -1 on a bad sequence.
std::ptrdiff_t wide_from_utf8(unsigned short* out, std::size_t out_size, const char* in, std::size_t in_size);

// Maps every character through `f`, without allocation. The walk stops at a 0 byte of the input, too. Returns the bytes
// written; 0 as told above; -1 if a character did not fit into what was left of the output; -2 on a bad sequence.
std::ptrdiff_t copy_and_transform_mbs(char* out, std::size_t out_size, const char* in, std::size_t in_size,
                                      unsigned short (*f)(unsigned short));

// ---- Strings ------------------------------------------------------------------------------------------------------

// 0 units come out as 0 bytes, surrogates as three bytes each.
std::string wstring_to_utf8(const wide_string& text);

// The empty string if `text` holds a bad sequence, or EF BF BF, anywhere.
wide_string wstring_from_utf8(const std::string& text);

// The start of the first character from `p` on for which test(unit) differs from `wanted`, or which is 0 or bad, or
// `end`. With a null `end` the text ends at its 0 byte, and nothing behind that is read.
//
//     skip_matching_utf8(p, is_alpha_wchar, true, end)    // "abc1": the place of the '1'
const char* skip_matching_utf8(const char* p, bool (*test)(unsigned short), bool wanted, const char* end);

// The text with every character mapped through `f`; `f` is called once for each, in order. A four-byte character
// becomes the three-byte form of its low 16 bits at most. A bad sequence (or EF BF BF) is an error of the caller, who
// must clean the text first: it stops the program in every build type, with
//
//     textencoding:572: strtransform_utf8: Assertion `wc != WEOF' failed.
std::string strtransform_utf8(const char* bytes, std::size_t size, unsigned short (*f)(unsigned short));
std::string strtransform_utf8(const std::string& text, unsigned short (*f)(unsigned short));

// ---- Character classes --------------------------------------------------------------------------------------------

// Tests and case mappings of one unit, by fixed ranges over Latin, Greek, Cyrillic, Arabic, Runic, Hangul and Kana.
// The ranges are meant as they are, gaps and asymmetries included; they are not Unicode's tables.

bool is_num_wchar(unsigned short wc);         // ASCII digits alone
bool is_alpha_wchar(unsigned short wc);       // letters; also private-use 0xF8D0 to 0xF8E9
bool is_alnum_wchar(unsigned short wc);       // one of the two
bool is_word_wchar(unsigned short wc);        // is_alnum_wchar, or one of ' - : _
bool is_punct_wchar(unsigned short wc);       // stops, quotes, brackets ( ); not _, nor signs such as + < $ %
bool is_whitespace_wchar(unsigned short wc);  // 0 too; U+00A0, which is also punctuation; not U+2009
bool is_uppercase_wchar(unsigned short wc);   // up to Cyrillic 0x42F
bool is_lowercase_wchar(unsigned short wc);   // up to Cyrillic 0x45F

// The unit itself where no rule applies. They are no inverses of each other: 0x3C2, the final sigma, has 0x3A3 as its
// capital, whose small letter is 0x3C3.
unsigned short to_uppercase_wchar(unsigned short wc);
unsigned short to_lowercase_wchar(unsigned short wc);

// ---- Cleaning -----------------------------------------------------------------------------------------------------

// The text without its bad sequences. One byte is taken out a step and the bytes behind it are decoded anew, so a good
// character behind a bad lead byte stays: 41 C3 42 gives "AB". EF BF BF goes, too, in three steps. The number of bytes
// taken out is stored in *removed unless that is null.
std::string clean_utf8(const std::string& text, std::size_t* removed = nullptr);

// The text with each Hangul syllable, U+AC00 to U+D7A3, as its two or three conjoining jamo. Unlike in clean_utf8, a
// bad sequence is lost whole and with the byte behind it, which is meant so: C3 41 42 43 gives "C". Clean first if you
// care.
std::string decompose_utf8(const std::string& text);

// ---- XML ----------------------------------------------------------------------------------------------------------

namespace encode_xml_opt {
// Characters from U+0080 up as entities, "&#xE9;", of their 16-bit unit.
inline constexpr int entity_encode_high = 1;
// An XML declaration and CR LF in front.
inline constexpr int generate_header = 2;
}  // namespace encode_xml_opt

// The text as XML character data, fit for attribute values too. `flags` are encode_xml_opt's, combined by OR. The five
// characters " & ' < > become their named entities; tab, LF and CR stay, VT and FF become a blank, other control
// characters below 0x20, bad sequences, surrogates, U+FFFE and U+FFFF vanish; all else stays as its own bytes. The unit
// decides, so a four-byte character whose low 16 bits are one of these shares its fate: U+1003C is written "&lt;",
// U+10041 "A". Nothing fails on content.
//
//     encode_xml_utf8("a<b", 0)    // a&lt;b
std::string encode_xml_utf8(const std::string& text, int flags);
std::string encode_xml_utf8_bytes(const char* bytes, std::size_t length, int flags);

// Appends to *out what encode_xml_utf8_bytes returns, header included if asked for. `bytes` must not lie in *out.
// Growth is amortised over many calls. After an exception (out of memory) *out may hold a part of the result.
void append_encoded_xml_utf8(std::string* out, const char* bytes, std::size_t length, int flags);

// How many bytes in front are ASCII that the encoding leaves as it is. Asked again and again for what lies behind the
// stretch and one more byte, it takes linear time in all.
std::size_t plain_xml_length(const char* bytes, std::size_t length);
