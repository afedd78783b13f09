// Numbers as English words.
#ifndef TTS_ENGINE_ENGLISH_NUMBERS_H
#define TTS_ENGINE_ENGLISH_NUMBERS_H

#include <cstdint>
#include <string>
#include <string_view>

namespace tts {

constexpr std::uint64_t largest_in_words = 999'999'999'999'999;

// "twelve", "one thousand two hundred thirty four"; up to `largest_in_words`.
std::string cardinal_words(std::uint64_t number);

// "twelfth", "one thousand two hundred thirty fourth".
std::string ordinal_words(std::uint64_t number);

// A year as it is read: "twenty twenty one", "nineteen oh five", "two thousand five"; also house numbers.
std::string year_words(std::uint64_t year);

// Each digit, with blanks between; other characters are passed over.
std::string digit_words(std::string_view digits);

}  // namespace tts

#endif
