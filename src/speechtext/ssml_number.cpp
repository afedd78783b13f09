#include "speechtext/ssml_number.h"

#include <array>
#include <charconv>
#include <cmath>

std::string fixed_number(double value, int precision, NumberSign sign) {
    // 309 digits in front of the point is the most that a double has.
    std::array<char, 400> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, precision).ptr;
    std::string out = sign == NumberSign::always && !std::signbit(value) ? "+" : "";
    return out.append(digits.begin(), end);
}
