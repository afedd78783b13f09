// Dates and times as text to speak. See say_as_times.h.
#include "tts_engine/say_as_times.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "tts_engine/ascii.h"
#include "tts_engine/english_numbers.h"
#include "tts_engine/say_as_parts.h"

namespace tts {
namespace {

constexpr const char* months[] = {"January", "February", "March",     "April",   "May",      "June",
                                  "July",    "August",   "September", "October", "November", "December"};

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

}  // namespace

std::optional<std::string> say_date(std::string_view format, std::string_view text, std::string_view language) {
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

namespace {

// "am" and "pm" in all spellings; the hours, minutes and seconds stay.
std::string take_half_of_day(std::vector<std::string>& parts) {
    std::string letters;
    std::size_t kept = parts.size();
    while (kept > 0 && !all_digits(parts[kept - 1])) letters.insert(0, ascii_lower(parts[--kept]));
    if (letters != "am" && letters != "pm" && letters != "a" && letters != "p") return {};
    parts.resize(kept);
    return letters[0] == 'a' ? " A M" : " P M";
}

}  // namespace

std::optional<std::string> say_time(std::string_view text, std::string_view language) {
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

}  // namespace tts
