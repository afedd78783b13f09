// Small free functions over UTF-8 strings. Their forms for rich text stand in speechtext/speechtext.h.
//
// None depends on the process's locale: blanks are ASCII's, a decimal point is a point (or the first comma). All take
// linear time.
#pragma once

#include <concepts>
#include <cstddef>
#include <list>
#include <set>
#include <string>

// ---- Case ---------------------------------------------------------------------------------------------------------

// strtransform_utf8 with to_lowercase_wchar or to_uppercase_wchar (text/textencoding.h). A bad sequence stops the
// program: clean the text first.
std::string makelower(const std::string& text);
std::string makeupper(const std::string& text);

// ---- Ends and size ------------------------------------------------------------------------------------------------

// Strict tests: `s` must be longer than what is looked for, so no string ends or starts with itself.
//
//     endswith("abc", "bc")     // true
//     endswith("abc", "abc")    // false
//     startswith("", "")        // false
bool endswith(const std::string& s, const std::string& suffix);
bool startswith(const std::string& s, const std::string& prefix);

// The number of characters up to the end or to the first bad sequence (or EF BF BF), which is itself counted as one.
std::size_t utf8_size(const std::string& text);

// ---- Trimming -----------------------------------------------------------------------------------------------------

// Take leading, trailing or both kinds of blanks off in place and return `s`. Blanks are the bytes 0x09 to 0x0D and
// 0x20; no byte from 0x80 up is one, so a non-breaking space stays.
std::string& ltrim(std::string& s);
std::string& rtrim(std::string& s);
std::string& trim(std::string& s);

// ---- Numbers ------------------------------------------------------------------------------------------------------

// The decimal number that the text begins with, behind blanks and one sign; 0 if there is none. "12abc" is 12. A number
// beyond the range of int gives the end of the range on its side, INT_MAX or INT_MIN. A null pointer reads as an empty
// text.
int str2int(const std::string& text);
int str2int(const std::string* text);
// For literals, which could otherwise be a string as well as a regexp::Match (see speechtext/speechtext.h). Templates,
// so that a plain nullptr keeps meaning the pointer above.
template <std::same_as<char> Char>
int str2int(const Char* text) {
    return text == nullptr ? 0 : str2int(std::string(text));
}

// What the C library's atof gives in the C locale, with the first comma of the text taken for a point, whatever the
// process's locale: "3,5" is 3.5, "1,5,7" is 1.5. Blanks, a sign, an exponent, hexadecimal ("0x1.8p1" is 3), "inf" and
// "nan" are understood. 0 if there is no number; a signed infinity or zero where the number is too large or too small
// for a double. A null pointer reads as an empty text.
double str2float(const std::string& text);
double str2float(const std::string* text);
template <std::same_as<char> Char>
double str2float(const Char* text) {
    return text == nullptr ? 0 : str2float(std::string(text));
}

// ---- Replacing ----------------------------------------------------------------------------------------------------

// Replaces occurrences of `from` by `to` in place, from left to right, without looking for new ones in inserted text.
//
//   count 0      all of them.
//   count > 0    at most `count`. When fewer stand there and the result holds `from` all the same (a `to` that contains
//                it, or a `from` put together at a seam), std::out_of_range is thrown with all replacements done. This
//                is kept as it is.
//   count < 0    nothing is done.
//
// An empty `from` stands everywhere, so there is no last occurrence: with count 0 nothing is replaced; with count > 0
// each replacement is made at the place behind the one before, so `to` is put in front of `s` `count` times.
//
//     replace_substr("aaa", "a", "b", 2)    // bba
//     replace_substr("aXa", "a", "a", 5)    // throws
void replace_substr(std::string& s, const std::string& from, const std::string& to, int count);

// ---- Splitting ----------------------------------------------------------------------------------------------------

// The lines of the text, without their line feeds but with a carriage return before one. The first empty line ends the
// split: "a\n\nb" gives "a" alone.
std::list<std::string> splitlines(const std::string& text);

// The non-empty pieces between the bytes 0x09, 0x0A, 0x0B, 0x0D and 0x20. A form feed does not separate.
std::list<std::string> split_on_asciiws(const std::string& text);

// All pieces between the occurrences of `c`, one more than there are occurrences; empty ones stay. An empty text gives
// one empty piece.
//
//     split_on_char(',', "a,,b,")    // "a", "", "b", ""
std::list<std::string> split_on_char(char c, const std::string& text);

// The same pieces, sorted and each once.
std::set<std::string> split_set_on_char(char c, const std::string& text);
