// Numbers and pieces of text. See say_as_parts.h.
#include "tts_engine/say_as_parts.h"

#include <algorithm>
#include <utility>

#include "tts_engine/ascii.h"

namespace tts {
namespace {

constexpr std::size_t most_digits = 15;

bool is_part(char c) { return is_digit(c) || is_letter(c) || static_cast<unsigned char>(c) >= 0x80; }

// I to MMMCMXCIX, in either case; nothing for what is not written by the rules.
std::optional<std::uint64_t> roman_number(std::string_view text) {
    constexpr std::size_t longest = 15;  // 3888 is MMMDCCCLXXXVIII
    static constexpr std::pair<std::string_view, unsigned> signs[] = {
        {"m", 1000}, {"cm", 900}, {"d", 500}, {"cd", 400}, {"c", 100}, {"xc", 90}, {"l", 50},
        {"xl", 40},  {"x", 10},   {"ix", 9},  {"v", 5},    {"iv", 4},  {"i", 1}};
    if (text.size() > longest) return std::nullopt;
    const std::string wanted = ascii_lower(text);
    std::string_view rest = wanted;
    std::uint64_t number = 0;
    for (const auto& [sign, value] : signs) {
        while (number < 3999 && rest.substr(0, sign.size()) == sign) {
            number += value;
            rest.remove_prefix(sign.size());
        }
    }
    if (!rest.empty() || number == 0 || number > 3999) return std::nullopt;
    // Only the number's one right spelling counts.
    std::string written;
    std::uint64_t left = number;
    for (const auto& [sign, value] : signs)
        for (; left >= value; left -= value) written += sign;
    if (written != wanted) return std::nullopt;
    return number;
}

}  // namespace

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_letter(char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }

bool is_english(std::string_view language) {
    const std::string tag = ascii_lower(language.substr(0, 3));
    return tag.empty() || tag == "en" || tag == "en-" || tag == "en_";
}

std::vector<std::string> parts_of(std::string_view text) {
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t begin = i;
        const bool digits = is_digit(text[i]);
        while (i < text.size() && is_part(text[i]) && is_digit(text[i]) == digits) ++i;
        if (i > begin) parts.emplace_back(text.substr(begin, i - begin));
        if (i < text.size() && !is_part(text[i])) ++i;
    }
    return parts;
}

bool all_digits(std::string_view text) { return !text.empty() && std::all_of(text.begin(), text.end(), is_digit); }

std::optional<std::uint64_t> whole_number(std::string_view text) {
    std::uint64_t number = 0;
    std::size_t digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (is_digit(text[i])) {
            number = number * 10 + static_cast<std::uint64_t>(text[i] - '0');
            if (++digits > most_digits) return std::nullopt;
        } else if ((text[i] != ',' && text[i] != ' ') || digits == 0 || i + 1 == text.size()) {
            return std::nullopt;
        }
    }
    if (digits == 0) return std::nullopt;
    return number;
}

std::optional<std::uint64_t> number_of(std::string_view text) {
    if (const auto number = whole_number(text)) return number;
    return roman_number(text);
}

std::string joined(const std::vector<std::string>& parts) {
    std::string result;
    for (const std::string& part : parts) result += (result.empty() ? "" : " ") + part;
    return result;
}

std::string without_zeros(const std::string& digits) {
    const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size() - 1);
    return digits.substr(first);
}

}  // namespace tts
