// Windows' conversions between UTF-16 and UTF-8, for builds without Windows. Only code page 65001 is known.

#ifndef NELVA_PLATFORM_NATIVE_TEXT_H
#define NELVA_PLATFORM_NATIVE_TEXT_H

#include "platform/native/types.h"

#define CP_UTF8 65001
#define WC_ERR_INVALID_CHARS 0x0080
#define MB_ERR_INVALID_CHARS 0x0008

// Converts `count` units, or with a negative count everything up to and with the terminating NUL, and gives the number
// of bytes. With a `size` of 0 it only measures. It gives 0 for
//   - a null source, a count of 0, a null target with a size above 0, a target that is the source, a negative size, or
//     anything given for the default character (ERROR_INVALID_PARAMETER);
//   - flags other than WC_ERR_INVALID_CHARS (ERROR_INVALID_FLAGS);
//   - a target that is too small (ERROR_INSUFFICIENT_BUFFER); the characters that fit are written;
//   - with WC_ERR_INVALID_CHARS, a lone surrogate (ERROR_NO_UNICODE_TRANSLATION).
// Without that flag each lone surrogate becomes U+FFFD, the bytes EF BF BD. Linear, and fast for long runs of ASCII.
int WideCharToMultiByte(UINT code_page, DWORD flags, LPCWCH source, int count, LPSTR target, int size,
                        LPCCH default_char, LPBOOL used_default_char);

// The other way, with the same rules for count, size and errors. Without MB_ERR_INVALID_CHARS each ill-formed piece
// becomes one U+FFFD (text.cpp tells how Windows cuts them); with it, any is ERROR_NO_UNICODE_TRANSLATION.
int MultiByteToWideChar(UINT code_page, DWORD flags, LPCCH source, int count, LPWSTR target, int size);

// The leading decimal number of a wide string: white space, a sign, digits. What follows is not looked at, nothing
// numeric gives 0, and a number beyond 32 bits gives the nearest that fits.
LONG _wtol(const WCHAR* text);

#endif
