// The values of prosody and break attributes, in the forms of SSML 1.0 and 1.1.
#ifndef TTS_ENGINE_PROSODY_H
#define TTS_ENGINE_PROSODY_H

#include <cstdint>
#include <optional>
#include <string>

namespace tts {

// Each gives the new factor, from the one in force (1 is the voice's own); nothing if the value means nothing.
//
//   rate     "1.40" and "140%" are absolute; "+40%" and "-10%" relative; x-slow slow medium fast x-fast default
//   pitch    "+100%" "-3st" relative, "200Hz" absolute and "+20Hz" relative to a voice of `voice_pitch_hz`; x-low low
//            medium high x-high default
//   range    as pitch; a range of 50 Hz is the voice's own
//   volume   "50" absolute on 0 to 100; "+10" adds, "+10%" relative; "-6.0dB" relative; silent x-soft soft medium loud
//            x-loud default
constexpr double voice_range_hz = 50;
std::optional<float> rate_from(const std::string& value, float now);
std::optional<float> pitch_from(const std::string& value, float now, double voice_pitch_hz);
std::optional<float> range_from(const std::string& value, float now);
std::optional<float> volume_from(const std::string& value, float now);

// What a level of emphasis multiplies; "moderate" is meant where none is named, and "none" leaves all as it is.
struct Emphasis {
    float rate;
    float pitch;
    float range;
    float volume;
};
Emphasis emphasis_from(const std::string& level);

// A break's length: `time` ("250ms", "1.5s", "0") if there is one, otherwise `strength`; both empty is a medium break.
std::uint32_t break_milliseconds(const std::string& time, const std::string& strength);

// What the document's writer puts into `pitch` when the factor goes from `before` to `after`.
std::string written_pitch(float before, float after);

}  // namespace tts

#endif
