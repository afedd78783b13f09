// What the kinds of say-as take their text apart with.
#ifndef TTS_ENGINE_SAY_AS_PARTS_H
#define TTS_ENGINE_SAY_AS_PARTS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tts {

bool is_digit(char c);
bool is_letter(char c);                  // of ASCII
bool all_digits(std::string_view text);  // and not empty

bool is_english(std::string_view language);  // also of an empty tag

// Runs of digits or of letters, without what stands between.
std::vector<std::string> parts_of(std::string_view text);

// A whole number of at most 15 digits; `,` and blanks inside it do not count.
std::optional<std::uint64_t> whole_number(std::string_view text);

// The same, or a Roman number from I to MMMCMXCIX in either case, written by the rules.
std::optional<std::uint64_t> number_of(std::string_view text);

// With blanks between.
std::string joined(const std::vector<std::string>& parts);

// Digits without the zeros in front; one digit stays.
std::string without_zeros(const std::string& digits);

}  // namespace tts

#endif
