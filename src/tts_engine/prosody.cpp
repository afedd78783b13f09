// Reading attribute values. See prosody.h.
#include "tts_engine/prosody.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "tts_engine/ascii.h"

namespace tts {
namespace {

struct Number {
    double value;
    bool is_signed;
    std::string_view unit;
};

// A decimal number and what stands behind it, independent of the locale.
std::optional<Number> number_from(std::string_view text) {
    text = trimmed(text);
    Number number{};
    if (text.empty()) return std::nullopt;
    const bool minus = text[0] == '-';
    number.is_signed = minus || text[0] == '+';
    if (number.is_signed) text.remove_prefix(1);
    if (text.empty() || !((text[0] >= '0' && text[0] <= '9') || text[0] == '.')) return std::nullopt;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number.value, std::chars_format::fixed);
    if (error != std::errc()) return std::nullopt;
    if (minus) number.value = -number.value;
    number.unit = trimmed(text.substr(static_cast<std::size_t>(end - text.data())));
    return number;
}

std::optional<float> word_from(std::string_view value,
                               std::initializer_list<std::pair<std::string_view, float>> words) {
    value = trimmed(value);
    for (const auto& [word, factor] : words)
        if (value == word) return factor;
    return std::nullopt;
}

// No rate comes to 0, however often it is taken down.
constexpr double slowest_rate = 0.01;

// Factors stay in a range in which nothing overflows later.
std::optional<float> bounded(double factor) {
    if (!std::isfinite(factor)) return std::nullopt;
    return static_cast<float>(std::clamp(factor, 0.0, 100.0));
}

}  // namespace

std::optional<float> rate_from(const std::string& value, float now) {
    const auto number = number_from(value);
    if (!number)
        return word_from(
            value, {{"x-slow", 0.6f}, {"slow", 0.8f}, {"medium", 1}, {"fast", 1.2f}, {"x-fast", 1.4f}, {"default", 1}});
    double factor = 0;
    if (number->unit == "%")
        factor = number->is_signed ? now * (1 + number->value / 100) : number->value / 100;
    else if (number->unit.empty())
        factor = number->value;
    if (!(factor > 0)) return std::nullopt;
    return bounded(std::max(factor, slowest_rate));
}

namespace {

// Pitch and range alike; `own` is the voice's in Hz.
std::optional<float> frequency_from(const std::string& value, float now, double own) {
    const auto number = number_from(value);
    if (!number)
        return word_from(
            value, {{"x-low", 0.6f}, {"low", 0.8f}, {"medium", 1}, {"high", 1.2f}, {"x-high", 1.4f}, {"default", 1}});
    if (number->unit == "%") return bounded(number->is_signed ? now * (1 + number->value / 100) : number->value / 100);
    if (number->unit == "st") return bounded(now * std::exp2(number->value / 12));
    // In SSML 1.0 a change may stand without its unit.
    if (number->unit != "Hz" && !(number->unit.empty() && number->is_signed)) return std::nullopt;
    return bounded(number->value / own + (number->is_signed ? now : 0));
}

}  // namespace

std::optional<float> pitch_from(const std::string& value, float now, double voice_pitch_hz) {
    return frequency_from(value, now, voice_pitch_hz);
}

std::optional<float> range_from(const std::string& value, float now) {
    return frequency_from(value, now, voice_range_hz);
}

Emphasis emphasis_from(const std::string& level) {
    if (level == "strong") return {0.85f, 1.1f, 1.5f, 1.5f};
    if (level == "reduced") return {1.1f, 0.95f, 0.6f, 0.7f};
    if (level == "none") return {1, 1, 1, 1};
    return {0.93f, 1.05f, 1.25f, 1.25f};
}

std::optional<float> volume_from(const std::string& value, float now) {
    const auto number = number_from(value);
    if (!number)
        return word_from(value, {{"silent", 0},
                                 {"x-soft", 0.2f},
                                 {"soft", 0.5f},
                                 {"medium", 1},
                                 {"loud", 1.5f},
                                 {"x-loud", 2},
                                 {"default", 1}});
    if (number->unit == "dB") return bounded(now * std::pow(10.0, number->value / 20));
    if (number->unit == "%" && number->is_signed) return bounded(now * (1 + number->value / 100));
    if (number->unit != "%" && !number->unit.empty()) return std::nullopt;
    return bounded(number->value / 100 + (number->is_signed ? now : 0));
}

std::uint32_t break_milliseconds(const std::string& time, const std::string& strength) {
    constexpr double most = 4294967295.0;
    const auto number = number_from(time);
    if (number && number->value == 0 && number->unit.empty()) return 0;
    if (number && number->value >= 0 && (number->unit == "ms" || number->unit == "s"))
        return static_cast<std::uint32_t>(std::min(number->value * (number->unit == "s" ? 1000 : 1), most));
    static constexpr std::pair<std::string_view, std::uint32_t> strengths[] = {
        {"none", 0}, {"x-weak", 100}, {"weak", 200}, {"medium", 400}, {"strong", 700}, {"x-strong", 1200}};
    for (const auto& [word, milliseconds] : strengths)
        if (strength == word) return milliseconds;
    return 400;
}

std::string written_pitch(float before, float after) {
    if (std::round(100 * after) == 100) return "default";
    const float change = (after - before) / before;
    char text[100];
    std::snprintf(text, sizeof text, "%+.0f%%", 100 * static_cast<double>(change));
    return text;
}

}  // namespace tts
