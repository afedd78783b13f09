// Numbers as English words. See english_numbers.h.
#include "tts_engine/english_numbers.h"

#include <utility>

namespace tts {
namespace {

constexpr const char* small[] = {"zero",     "one",     "two",     "three",     "four",     "five",    "six",
                                 "seven",    "eight",   "nine",    "ten",       "eleven",   "twelve",  "thirteen",
                                 "fourteen", "fifteen", "sixteen", "seventeen", "eighteen", "nineteen"};
constexpr const char* tens[] = {"", "", "twenty", "thirty", "forty", "fifty", "sixty", "seventy", "eighty", "ninety"};

constexpr std::pair<std::uint64_t, const char*> powers[] = {{1'000'000'000'000, "trillion"},
                                                            {1'000'000'000, "billion"},
                                                            {1'000'000, "million"},
                                                            {1'000, "thousand"},
                                                            {100, "hundred"}};

void add(std::string& words, std::string_view word) {
    if (!words.empty()) words += ' ';
    words += word;
}

// The last word of a cardinal as that of an ordinal.
std::string ordinal_of(const std::string& word) {
    static constexpr std::pair<std::string_view, const char*> irregular[] = {
        {"one", "first"},    {"two", "second"}, {"three", "third"},   {"five", "fifth"},
        {"eight", "eighth"}, {"nine", "ninth"}, {"twelve", "twelfth"}};
    for (const auto& [cardinal, ordinal] : irregular)
        if (word == cardinal) return ordinal;
    if (word.back() == 'y') return word.substr(0, word.size() - 1) + "ieth";
    return word + "th";
}

}  // namespace

std::string cardinal_words(std::uint64_t number) {
    if (number < 20) return small[number];
    std::string words;
    for (const auto& [power, name] : powers) {
        if (number < power) continue;
        add(words, cardinal_words(number / power));
        add(words, name);
        number %= power;
    }
    if (number >= 20) {
        add(words, tens[number / 10]);
        number %= 10;
    }
    if (number > 0) add(words, small[number]);
    return words;
}

std::string ordinal_words(std::uint64_t number) {
    std::string words = cardinal_words(number);
    const std::size_t blank = words.rfind(' ');
    const std::size_t last = blank == std::string::npos ? 0 : blank + 1;
    return words.substr(0, last) + ordinal_of(words.substr(last));
}

std::string year_words(std::uint64_t year) {
    const std::uint64_t hundreds = year / 100;
    const std::uint64_t rest = year % 100;
    if (year < 100 || year > 9999 || (rest < 10 && hundreds % 10 == 0)) return cardinal_words(year);
    if (rest == 0) return cardinal_words(hundreds) + " hundred";
    return cardinal_words(hundreds) + (rest < 10 ? " oh " : " ") + cardinal_words(rest);
}

std::string digit_words(std::string_view digits) {
    std::string words;
    for (const char c : digits)
        if (c >= '0' && c <= '9') add(words, small[c - '0']);
    return words;
}

}  // namespace tts
