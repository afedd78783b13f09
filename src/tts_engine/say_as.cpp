// Dates, times, numbers and addresses as text to speak. See say_as.h.
#include "tts_engine/say_as.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "tts_engine/ascii.h"
#include "tts_engine/english_numbers.h"

namespace tts {
namespace {

using Said = std::optional<std::string>;

constexpr const char* months[] = {"January", "February", "March",     "April",   "May",      "June",
                                  "July",    "August",   "September", "October", "November", "December"};

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_letter(char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }

bool is_part(char c) { return is_digit(c) || is_letter(c) || static_cast<unsigned char>(c) >= 0x80; }

bool is_english(std::string_view language) {
    const std::string tag = ascii_lower(language.substr(0, 3));
    return tag.empty() || tag == "en" || tag == "en-" || tag == "en_";
}

// Runs of digits or of letters, without what stands between.
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

// A whole number of at most 15 digits; `,` and blanks between groups of three do not count.
std::optional<std::uint64_t> whole_number(std::string_view text) {
    std::uint64_t number = 0;
    std::size_t digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (is_digit(text[i])) {
            number = number * 10 + static_cast<std::uint64_t>(text[i] - '0');
            if (++digits > 15) return std::nullopt;
        } else if ((text[i] != ',' && text[i] != ' ') || digits == 0 || i + 1 == text.size()) {
            return std::nullopt;
        }
    }
    if (digits == 0) return std::nullopt;
    return number;
}

// I to MMMCMXCIX, in either case; nothing for what is not written by the rules.
std::optional<std::uint64_t> roman_number(std::string_view text) {
    static constexpr std::pair<std::string_view, unsigned> signs[] = {
        {"m", 1000}, {"cm", 900}, {"d", 500}, {"cd", 400}, {"c", 100}, {"xc", 90}, {"l", 50},
        {"xl", 40},  {"x", 10},   {"ix", 9},  {"v", 5},    {"iv", 4},  {"i", 1}};
    if (text.size() > 15) return std::nullopt;
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

// ---- Dates

struct Date {
    std::optional<std::uint64_t> year;
    unsigned month = 0;
    unsigned day = 0;
};

unsigned month_of(std::string_view text) {
    const std::string name = ascii_lower(text);
    if (name.size() >= 3)
        for (unsigned i = 0; i < 12; ++i)
            if (ascii_lower(months[i]).compare(0, name.size(), name) == 0 || (i == 8 && name == "sept")) return i + 1;
    const auto number = number_of(text);
    return number && *number >= 1 && *number <= 12 ? static_cast<unsigned>(*number) : 0;
}

std::string guessed_format(const std::vector<std::string>& parts, bool month_first) {
    const auto is_year = [](const std::string& part) { return part.size() == 4 && all_digits(part); };
    const auto is_name = [](const std::string& part) { return !all_digits(part); };
    if (parts.size() == 3) {
        if (is_year(parts[0])) return "ymd";
        if (is_name(parts[0])) return "mdy";
        return is_name(parts[1]) || !month_first ? "dmy" : "mdy";
    }
    if (parts.size() == 2) {
        if (is_year(parts[0])) return "ym";
        if (is_year(parts[1])) return "my";
        if (is_name(parts[0])) return "md";
        return is_name(parts[1]) || !month_first ? "dm" : "md";
    }
    return parts.size() == 1 ? "y" : "";
}

bool is_format(std::string_view format) {
    for (const char* known : {"mdy", "dmy", "ymd", "ydm", "md", "dm", "ym", "my", "y", "m", "d"})
        if (format == known) return true;
    return false;
}

bool set_field(Date& date, char field, const std::string& part) {
    if (field == 'm') return (date.month = month_of(part)) != 0;
    const auto number = whole_number(part);
    if (!number) return false;
    if (field == 'd') {
        date.day = *number <= 31 ? static_cast<unsigned>(*number) : 0;
        return date.day != 0;
    }
    // Two digits are a year of this century or of the one before.
    date.year = part.size() == 2 ? *number + (*number < 50 ? 2000 : 1900) : *number;
    return *date.year <= 9999;
}

std::string english_date(const Date& date, bool day_first) {
    std::string said;
    if (date.month == 0 && date.day > 0) said = ordinal_words(date.day);
    if (date.month > 0 && date.day > 0) {
        said = day_first ? "the " + ordinal_words(date.day) + " of " + months[date.month - 1]
                         : months[date.month - 1] + (" " + ordinal_words(date.day));
    } else if (date.month > 0) {
        said = months[date.month - 1];
    }
    if (date.year) said += (said.empty() ? "" : " ") + year_words(*date.year);
    return said;
}

// The endings of English ordinals ("4th") are not parts of a date, and neither is a comma.
std::vector<std::string> date_parts(std::string_view text) {
    std::vector<std::string> parts;
    for (std::string& part : parts_of(text)) {
        const std::string word = ascii_lower(part);
        const bool ending =
            word == "st" || word == "nd" || word == "rd" || word == "th" || word == "of" || word == "the";
        if (!ending) parts.push_back(std::move(part));
    }
    return parts;
}

Said date(std::string_view format, std::string_view text, std::string_view language) {
    std::vector<std::string> parts = date_parts(text);
    std::string order = ascii_lower(format);
    if (order.size() == 3 && parts.size() == 1 && parts[0].size() == 8 && order == "ymd")
        parts = {parts[0].substr(0, 4), parts[0].substr(4, 2), parts[0].substr(6, 2)};
    if (!is_format(order))
        order = guessed_format(parts, ascii_lower(language) == "en-us" || ascii_lower(language) == "en");
    if (order.empty() || order.size() != parts.size()) return std::nullopt;
    Date date;
    for (std::size_t i = 0; i < parts.size(); ++i)
        if (!set_field(date, order[i], parts[i])) return std::nullopt;
    if (is_english(language)) return english_date(date, order.find('d') < order.find('m') && order[0] != 'y');
    for (std::string& part : parts)
        if (all_digits(part)) part = without_zeros(part);
    return joined(parts);
}

// ---- Times

// "am" and "pm" in all spellings; the hours, minutes and seconds stay.
std::string take_half_of_day(std::vector<std::string>& parts) {
    std::string letters;
    std::size_t kept = parts.size();
    while (kept > 0 && !all_digits(parts[kept - 1])) letters.insert(0, ascii_lower(parts[--kept]));
    if (letters != "am" && letters != "pm" && letters != "a" && letters != "p") return {};
    parts.resize(kept);
    return letters[0] == 'a' ? " A M" : " P M";
}

Said time(std::string_view text, std::string_view language) {
    std::vector<std::string> parts = parts_of(text);
    const std::string half = take_half_of_day(parts);
    if (parts.size() == 1 && parts[0].size() == 4 && all_digits(parts[0]))
        parts = {parts[0].substr(0, 2), parts[0].substr(2)};
    parts.erase(std::remove_if(parts.begin(), parts.end(),
                               [](const std::string& part) {
                                   const std::string unit = ascii_lower(part);
                                   return unit == "h" || unit == "m" || unit == "s" || unit == "min";
                               }),
                parts.end());
    if (parts.empty() || parts.size() > 3) return std::nullopt;
    std::uint64_t numbers[3] = {0, 0, 0};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto number = all_digits(parts[i]) ? whole_number(parts[i]) : std::nullopt;
        if (!number || *number > (i == 0 ? 24u : 59u)) return std::nullopt;
        numbers[i] = *number;
    }
    if (!is_english(language)) {
        for (std::string& part : parts) part = without_zeros(part);
        return joined(parts) + half;
    }
    std::string said = cardinal_words(numbers[0]);
    if (numbers[1] > 0)
        said += (numbers[1] < 10 ? " oh " : " ") + cardinal_words(numbers[1]);
    else if (half.empty())
        said += numbers[0] <= 12 ? " o'clock" : " hundred";
    if (parts.size() == 3) said += " and " + cardinal_words(numbers[2]) + (numbers[2] == 1 ? " second" : " seconds");
    return said + half;
}

// ---- Numbers

// Takes a sign off and gives its word.
std::string take_sign(std::string_view& text) {
    for (const std::string_view minus : {"-", "\xE2\x88\x92"}) {
        if (text.substr(0, minus.size()) != minus) continue;
        text.remove_prefix(minus.size());
        return "minus ";
    }
    if (text.substr(0, 1) != "+") return {};
    text.remove_prefix(1);
    return "plus ";
}

Said cardinal(std::string_view text, std::string_view language) {
    std::string_view rest = text;
    const std::string sign = take_sign(rest);
    const auto number = number_of(rest);
    if (!number) return std::nullopt;
    if (is_english(language)) return sign + cardinal_words(*number);
    return (sign.empty() ? "" : std::string(text.substr(0, text.size() - rest.size()))) + std::to_string(*number);
}

// What makes a number an ordinal for espeak-ng, in languages where it stands right behind.
const char* ordinal_ending(std::string_view language) {
    static constexpr std::pair<std::string_view, const char*> endings[] = {
        {"fr", "e"}, {"es", "º"}, {"it", "º"}, {"pt", "º"}, {"nl", "e"}};
    const std::string tag = ascii_lower(language.substr(0, 2));
    for (const auto& [known, ending] : endings)
        if (tag == known) return ending;
    return "";
}

Said ordinal(std::string_view text, std::string_view language) {
    auto number = number_of(text);
    // "21st", "3." and the like.
    std::size_t digits = text.size();
    while (digits > 0 && !is_digit(text[digits - 1])) --digits;
    if (!number && digits > 0) number = whole_number(text.substr(0, digits));
    if (!number) return std::nullopt;
    if (is_english(language)) return ordinal_words(*number);
    return std::to_string(*number) + ordinal_ending(language);
}

Said decimal(std::string_view text, std::string_view language) {
    if (!is_english(language)) return std::nullopt;
    std::string_view rest = text;
    std::string said = take_sign(rest);
    const bool percent = rest.ends_with('%');
    if (percent) rest.remove_suffix(1);
    const std::size_t point = rest.find('.');
    const auto whole = point == 0 ? std::optional<std::uint64_t>(0) : number_of(rest.substr(0, point));
    if (!whole) return std::nullopt;
    said += cardinal_words(*whole);
    if (point != std::string_view::npos) {
        if (!all_digits(rest.substr(point + 1))) return std::nullopt;
        said += " point " + digit_words(rest.substr(point + 1));
    }
    return said + (percent ? " percent" : "");
}

std::string share_words(std::uint64_t upper, std::uint64_t lower_part) {
    std::string name = lower_part == 2 ? "half" : lower_part == 4 ? "quarter" : ordinal_words(lower_part);
    if (upper != 1) name = lower_part == 2 ? "halves" : name + "s";
    return cardinal_words(upper) + " " + name;
}

// "3/4", "2 3/4", "2+3/4", and the fractions that are one character.
Said fraction(std::string_view text, std::string_view language) {
    static constexpr std::pair<std::string_view, std::string_view> signs[] = {{"½", "1/2"}, {"¼", "1/4"}, {"¾", "3/4"},
                                                                              {"⅓", "1/3"}, {"⅔", "2/3"}, {"⅛", "1/8"},
                                                                              {"⅜", "3/8"}, {"⅝", "5/8"}, {"⅞", "7/8"}};
    if (!is_english(language)) return std::nullopt;
    std::string plain(text);
    for (const auto& [sign, written] : signs)
        if (const std::size_t at = plain.find(sign); at != std::string::npos)
            plain.replace(at, sign.size(), " " + std::string(written));
    std::string_view rest = plain;
    const std::string minus = take_sign(rest);
    const std::vector<std::string> parts = parts_of(rest);
    if (parts.size() < 2 || parts.size() > 3 || rest.find('/') == std::string_view::npos) return std::nullopt;
    std::vector<std::uint64_t> numbers;
    for (const std::string& part : parts) {
        const auto number = all_digits(part) ? whole_number(part) : std::nullopt;
        if (!number) return std::nullopt;
        numbers.push_back(*number);
    }
    const std::uint64_t below = numbers.back();
    if (below < 2) return std::nullopt;
    const std::string share = share_words(numbers[numbers.size() - 2], below);
    return minus + (numbers.size() == 3 ? cardinal_words(numbers[0]) + " and " + share : share);
}

// ---- Telephone numbers and addresses

Said telephone(std::string_view text, std::string_view language) {
    const bool english = is_english(language);
    std::string said;
    for (const std::string& part : parts_of(text)) {
        if (!said.empty()) said += ", ";
        if (english && all_digits(part)) {
            said += digit_words(part);
        } else if (english && (ascii_lower(part) == "x" || ascii_lower(part) == "ext")) {
            said += "extension";
        } else {
            for (std::size_t i = 0; i < part.size(); ++i) {
                const bool inside = (static_cast<unsigned char>(part[i]) & 0xC0) == 0x80;
                if (i > 0 && !inside) said += ' ';
                said += part[i];
            }
        }
    }
    if (said.empty()) return std::nullopt;
    if (text.front() == '+') said.insert(0, english ? "plus " : "+ ");
    return said;
}

std::string address_word(std::string_view word, bool behind_name) {
    static constexpr std::pair<std::string_view, const char*> known[] = {
        {"ave", "Avenue"},    {"blvd", "Boulevard"}, {"rd", "Road"},      {"dr", "Drive"},     {"ln", "Lane"},
        {"ct", "Court"},      {"pl", "Place"},       {"sq", "Square"},    {"hwy", "Highway"},  {"pkwy", "Parkway"},
        {"apt", "Apartment"}, {"ste", "Suite"},      {"n", "North"},      {"s", "South"},      {"e", "East"},
        {"w", "West"},        {"ne", "Northeast"},   {"nw", "Northwest"}, {"se", "Southeast"}, {"sw", "Southwest"}};
    std::string plain = ascii_lower(word);
    if (plain.ends_with('.')) plain.pop_back();
    if (plain == "st") return behind_name ? "Street" : "Saint";
    for (const auto& [abbreviation, name] : known)
        if (plain == abbreviation) return name;
    if (all_digits(plain)) {
        if (plain.size() > 4 || plain[0] == '0') return digit_words(plain);
        return year_words(*whole_number(plain));
    }
    // Two capitals are a state, said by its letters.
    if (word.size() == 2 && is_letter(word[0]) && is_letter(word[1]) && word[0] < 'a' && word[1] < 'a')
        return {word[0], ' ', word[1]};
    return std::string(word);
}

Said address(std::string_view text, std::string_view language) {
    if (!is_english(language)) return std::nullopt;
    std::string said;
    bool behind_name = false;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t end = std::min(text.find_first_of(" \t\n,;-", i), text.size());
        const std::string_view word = text.substr(i, end - i);
        if (!word.empty()) {
            said += address_word(word, behind_name);
            behind_name = is_letter(word[0]);
        }
        if (end < text.size()) {
            said += text[end] == '-' ? ' ' : text[end];
            if (text[end] == ',' || text[end] == ';') behind_name = false;
        }
        i = end + 1;
    }
    return said;
}

}  // namespace

Said say_as_text(std::string_view kind, std::string_view format, std::string_view text, std::string_view language) {
    if (text.empty() || text.size() > 400) return std::nullopt;
    if (kind == "number" &&
        (format == "cardinal" || format == "ordinal" || format == "telephone" || format == "fraction"))
        kind = format;
    if (kind == "date") return date(format, text, language);
    if (kind == "time") return time(text, language);
    if (kind == "cardinal") return cardinal(text, language);
    if (kind == "ordinal") return ordinal(text, language);
    if (kind == "fraction") return fraction(text, language);
    if (kind == "number") return decimal(text, language);
    if (kind == "telephone") return telephone(text, language);
    if (kind == "address") return address(text, language);
    return std::nullopt;
}

}  // namespace tts
