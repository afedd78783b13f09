// What a blank is to the string utilities: isspace of the C locale, whatever the process's locale is.
#pragma once

namespace text_detail {

// Takes the byte as a plain char. From 0x80 up none is a blank, however char is signed.
constexpr bool is_ascii_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

}  // namespace text_detail
