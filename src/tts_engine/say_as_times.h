// The dates and times of day of say-as; see say_as.h for what is said.
#ifndef TTS_ENGINE_SAY_AS_TIMES_H
#define TTS_ENGINE_SAY_AS_TIMES_H

#include <optional>
#include <string>
#include <string_view>

namespace tts {

// Nothing for a text that is no date in this format, or no time.
std::optional<std::string> say_date(std::string_view format, std::string_view text, std::string_view language);
std::optional<std::string> say_time(std::string_view text, std::string_view language);

}  // namespace tts

#endif
