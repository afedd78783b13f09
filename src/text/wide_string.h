// The string of 16-bit wide units that the UTF-8 codec reads and writes.
//
// A wide unit is an unsigned short, whatever wchar_t is on the platform. std::basic_string wants character traits for
// it; the standard promises none for unsigned short (libstdc++ has a generic fallback, newer libc++ has removed it), so
// they stand here. A string class rather than a vector, because it keeps a 0 unit behind the last one: wide_to_utf8
// reads the unit at its cursor even when the count is used up.
//
//     wide_string greek;
//     greek.push_back(0x3B1);
//     greek.size();   // 1
//     greek[1];       // 0, the terminator
#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cwchar>
#include <ios>
#include <string>

struct wide_char_traits {
    using char_type = unsigned short;
    using int_type = unsigned int;  // wider than a unit, so that eof() is none of them
    using off_type = std::streamoff;
    using pos_type = std::streampos;
    using state_type = std::mbstate_t;
    using comparison_category = std::strong_ordering;

    static constexpr void assign(char_type& to, const char_type& from) noexcept { to = from; }
    static constexpr bool eq(char_type a, char_type b) noexcept { return a == b; }
    static constexpr bool lt(char_type a, char_type b) noexcept { return a < b; }

    static constexpr int compare(const char_type* a, const char_type* b, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
        }
        return 0;
    }
    static constexpr std::size_t length(const char_type* units) {
        std::size_t count = 0;
        while (units[count] != 0) ++count;
        return count;
    }
    static constexpr const char_type* find(const char_type* units, std::size_t count, const char_type& wanted) {
        const char_type* const found = std::find(units, units + count, wanted);
        return found == units + count ? nullptr : found;
    }
    static constexpr char_type* move(char_type* to, const char_type* from, std::size_t count) {
        if (to < from) {
            std::copy(from, from + count, to);
        } else if (to > from) {
            std::copy_backward(from, from + count, to + count);
        }
        return to;
    }
    static constexpr char_type* copy(char_type* to, const char_type* from, std::size_t count) {
        std::copy(from, from + count, to);
        return to;
    }
    static constexpr char_type* assign(char_type* to, std::size_t count, char_type unit) {
        std::fill(to, to + count, unit);
        return to;
    }

    static constexpr char_type to_char_type(int_type value) noexcept { return static_cast<char_type>(value); }
    static constexpr int_type to_int_type(char_type unit) noexcept { return unit; }
    static constexpr bool eq_int_type(int_type a, int_type b) noexcept { return a == b; }
    static constexpr int_type eof() noexcept { return 0xFFFFFFFF; }
    static constexpr int_type not_eof(int_type value) noexcept { return value == eof() ? 0 : value; }
};

using wide_string = std::basic_string<unsigned short, wide_char_traits>;
