// UTF-8 and UTF-16 for the tools: whole strings, through the platform's own conversion.
//
// Neither direction fails on bad text: an ill-formed sequence or a lone surrogate becomes U+FFFD. So everything that
// a tool prints or writes is well-formed UTF-8, whatever went in.
#ifndef NELVA_TOOLS_HOST_UTF_H
#define NELVA_TOOLS_HOST_UTF_H

#include <string>
#include <string_view>

#include "platform/win32.h"

namespace host {

using WideString = std::basic_string<WCHAR>;
using WideView = std::basic_string_view<WCHAR>;

// Throws std::bad_alloc, and std::length_error for text that is too long for the
// platform's call (more than 1 GiB of UTF-8 or 2^29 units of UTF-16).
std::string to_utf8(WideView text);
WideString to_wide(std::string_view text);

// The same without the byte order mark that some editors put in front of a file.
std::string_view without_bom(std::string_view text);

// ASCII letters in lower case, all other bytes as they are.
std::string ascii_lower(std::string_view text);

// True when both differ at most in the case of ASCII letters.
bool equal_ignoring_case(std::string_view left, std::string_view right);

}  // namespace host

#endif
