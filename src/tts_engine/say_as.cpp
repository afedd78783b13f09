// Numbers, telephone numbers and addresses as text to speak; dates and times are in say_as_times.cpp. See say_as.h.
#include "tts_engine/say_as.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "tts_engine/ascii.h"
#include "tts_engine/english_numbers.h"
#include "tts_engine/say_as_parts.h"
#include "tts_engine/say_as_times.h"

namespace tts {
namespace {

using Said = std::optional<std::string>;

// Longer text is no number, date or address.
constexpr std::size_t longest_text = 400;

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
    if (text.empty() || text.size() > longest_text) return std::nullopt;
    if (kind == "number" &&
        (format == "cardinal" || format == "ordinal" || format == "telephone" || format == "fraction"))
        kind = format;
    if (kind == "date") return say_date(format, text, language);
    if (kind == "time") return say_time(text, language);
    if (kind == "cardinal") return cardinal(text, language);
    if (kind == "ordinal") return ordinal(text, language);
    if (kind == "fraction") return fraction(text, language);
    if (kind == "number") return decimal(text, language);
    if (kind == "telephone") return telephone(text, language);
    if (kind == "address") return address(text, language);
    return std::nullopt;
}

}  // namespace tts
