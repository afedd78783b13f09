// Numbers out of text, as atoi and atof read them in the C locale but defined for every input. atof itself would follow
// the process's locale in what a decimal point is.
#include <algorithm>
#include <charconv>
#include <limits>

#include "text/ascii_blank.h"
#include "text/qm_stringutils.h"

namespace {

const char* skip_blanks(const char* p, const char* end) {
    while (p != end && text_detail::is_ascii_blank(*p)) ++p;
    return p;
}

// Behind one sign at `p`, if there is one. Stores whether it is a minus.
const char* skip_sign(const char* p, const char* end, bool* negative) {
    *negative = p != end && *p == '-';
    return p != end && (*p == '-' || *p == '+') ? p + 1 : p;
}

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

constexpr bool is_hex_digit(char c) { return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

}  // namespace

int str2int(const std::string& text) {
    const char* const end = text.data() + text.size();
    bool negative = false;
    const char* p = skip_sign(skip_blanks(text.data(), end), end, &negative);

    constexpr long long int_max = std::numeric_limits<int>::max();
    const long long limit = negative ? int_max + 1 : int_max;
    long long value = 0;
    for (; p != end && is_digit(*p) && value < limit; ++p) value = 10 * value + (*p - '0');
    if (value > limit) value = limit;
    return static_cast<int>(negative ? -value : value);
}

int str2int(const std::string* text) { return text == nullptr ? 0 : str2int(*text); }

namespace {

// "0x" and at least one hexadecimal digit, perhaps behind a point. Without a digit the number is the 0 alone.
bool begins_hexadecimal(const char* p, const char* end) {
    if (end - p < 3 || p[0] != '0' || (p[1] | 0x20) != 'x') return false;
    if (is_hex_digit(p[2])) return true;
    return end - p > 3 && p[2] == '.' && is_hex_digit(p[3]);
}

// from_chars takes "p+-3" for an exponent, which it is not: the number ends in front of it.
const char* hexadecimal_end(const char* p, const char* end) {
    const char* const digits_end = std::find_if_not(p, end, [](char c) { return c == '.' || is_hex_digit(c); });
    const bool two_signs = end - digits_end > 2 && digits_end[1] == '+' && digits_end[2] == '-';
    return two_signs ? digits_end : end;
}

// Of a number out of the range of double: whether it is too large, rather than too small. What decides is the exponent
// told, and where there is none or it is of the other sign, how far the first digit that is not 0 stands from the
// point.
bool is_too_large(const char* p, const char* end, bool hexadecimal) {
    const char exponent_sign = hexadecimal ? 'p' : 'e';
    long long scale = 0;  // of the first digit that is not 0, counted in digits
    bool point = false;
    bool significant = false;
    for (; p != end; ++p) {
        if (*p == '.' && !point) {
            point = true;
        } else if (hexadecimal ? is_hex_digit(*p) : is_digit(*p)) {
            significant = significant || *p != '0';
            if (significant && !point) ++scale;
            if (!significant && point) --scale;
        } else {
            break;
        }
    }
    long long exponent = 0;
    if (p != end && (*p | 0x20) == exponent_sign) {
        ++p;
        bool negative = false;
        p = skip_sign(p, end, &negative);
        constexpr long long enough = std::numeric_limits<long long>::max() / 16;
        for (; p != end && is_digit(*p) && exponent < enough; ++p) exponent = 10 * exponent + (*p - '0');
        if (negative) exponent = -exponent;
    }
    return (hexadecimal ? 4 * scale : scale) + exponent > 0;
}

double number_with_points(const std::string& text) {
    const char* end = text.data() + text.size();
    bool negative = false;
    const char* p = skip_sign(skip_blanks(text.data(), end), end, &negative);
    if (p == end || *p == '-') return 0;  // from_chars would take a second sign

    const bool hexadecimal = begins_hexadecimal(p, end);
    if (hexadecimal) {
        p += 2;
        end = hexadecimal_end(p, end);
    }
    double value = 0;
    const std::chars_format format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
    const std::from_chars_result result = std::from_chars(p, end, value, format);
    if (result.ec == std::errc::invalid_argument) return 0;
    if (result.ec == std::errc::result_out_of_range) {
        value = is_too_large(p, end, hexadecimal) ? std::numeric_limits<double>::infinity() : 0;
    }
    return negative ? -value : value;
}

}  // namespace

double str2float(const std::string& text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) return number_with_points(text);
    std::string with_point = text;
    with_point[comma] = '.';
    return number_with_points(with_point);
}

double str2float(const std::string* text) { return text == nullptr ? 0 : str2float(*text); }
