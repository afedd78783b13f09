// _wtol with the results of Windows' C run-time: its white space, and decimal digits of many scripts.

#include "platform/native/text.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace {

bool is_space(WCHAR unit) {
    return (unit >= 0x0009 && unit <= 0x000D) || unit == 0x0020 || unit == 0x00A0 || unit == 0x1680 ||
           (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F ||
           unit == 0x3000;
}

// The zeros of the scripts whose digits count; the other nine follow each.
constexpr WCHAR zeros[] = {0x0030, 0x0660, 0x06F0, 0x0966, 0x09E6, 0x0A66, 0x0AE6, 0x0B66, 0x0C66,
                           0x0CE6, 0x0D66, 0x0E50, 0x0ED0, 0x0F20, 0x1040, 0x17E0, 0x1810, 0xFF10};

// The digit's value, or -1.
int digit_value(WCHAR unit) {
    const WCHAR* const behind = std::upper_bound(std::begin(zeros), std::end(zeros), unit);
    if (behind == std::begin(zeros)) return -1;
    const int value = unit - behind[-1];
    return value <= 9 ? value : -1;
}

}  // namespace

LONG _wtol(const WCHAR* text) {
    if (text == nullptr) return 0;
    while (is_space(*text)) ++text;
    const bool negative = *text == u'-';
    if (*text == u'-' || *text == u'+') ++text;
    const std::int64_t limit = negative ? -std::int64_t{INT32_MIN} : INT32_MAX;
    std::int64_t value = 0;
    for (int digit = digit_value(*text); digit >= 0; digit = digit_value(*++text))
        value = std::min(value * 10 + digit, limit);
    return static_cast<LONG>(negative ? -value : value);
}
