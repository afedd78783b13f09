// Small helpers on NUL-terminated wide strings (WCHAR, 16 bits), the same functions in both builds.
//
// They stand where the C library's wide functions cannot: off Windows wchar_t has 32 bits, and on Windows the
// printf family of the C run-time differs from one version to the next.

#ifndef NELVA_PLATFORM_WIDE_H
#define NELVA_PLATFORM_WIDE_H

#include <cstddef>
#include <initializer_list>

#ifdef _WIN32
using NelvaWideChar = wchar_t;
#else
using NelvaWideChar = char16_t;
#endif

// The units before the terminating NUL; 0 for a null pointer.
std::size_t wide_length(const NelvaWideChar* text);

// True when both hold the same units. A null pointer equals a null pointer only.
bool wide_equal(const NelvaWideChar* left, const NelvaWideChar* right);

// Writes `format` to `target` with each "%ls" replaced by the next insertion and "%%" by one percent sign; every
// other unit stands as it is. A null insertion, and one that is missing, reads "(null)".
//
// Gives the units written without the terminating NUL, or -1 when text and NUL do not fit into `size` units; then
// `target` holds as much as fits, terminated (nothing is written when `size` is 0).
int wide_format(NelvaWideChar* target, std::size_t size, const NelvaWideChar* format,
                std::initializer_list<const NelvaWideChar*> insertions);

#endif
