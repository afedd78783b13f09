// UTF-16 to UTF-8 in long runs, with the position of the character that each byte belongs to.

#ifndef NELVA_FRAGMENTS_UTF16_TEXT_H
#define NELVA_FRAGMENTS_UTF16_TEXT_H

#include <cstddef>
#include <cstdint>

#include "platform/win32.h"

class Speechtext;

namespace fragments_detail {

class HostPositions;

// The units of the character at `units`, of which `remaining` (at least 1) are left: 2 for a surrogate pair, else 1.
std::size_t utf16_character_length(const WCHAR* units, std::size_t remaining);

// How many of `count` units to take at a time, at most `most` (2 or more), so that no pair is cut.
std::size_t whole_characters(const WCHAR* units, std::size_t count, std::size_t most);

// What is thrown at a text that does not fit into signed 32 bits.
[[noreturn]] void throw_too_long();

// Appends `size` bytes to *text. Throws std::length_error when the text would no longer fit into signed 32 bits.
void append_bytes(Speechtext* text, const char* bytes, std::size_t size);

// Appends one character of `length` units, by the platform's own answer for it, and to *positions `position` for each
// of its bytes. Gives the units that are done: `length`, or 1 where the platform gives no bytes and nothing is
// appended.
std::size_t append_character(const WCHAR* units, std::size_t length, std::uint32_t position, Speechtext* text,
                             HostPositions* positions);

// Appends `count` units to *text as UTF-8 and to *positions the position of each byte's character, where that of
// the first unit is `first_position`. The result is that of converting each character alone:
// lone surrogates become what the platform makes of them, and a unit for which it gives no bytes is left out.
void append_utf16(const WCHAR* units, std::size_t count, std::uint32_t first_position, Speechtext* text,
                  HostPositions* positions);

}  // namespace fragments_detail

#endif
