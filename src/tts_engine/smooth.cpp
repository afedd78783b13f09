// Gains that move and ends that fade. See smooth.h.
#include "tts_engine/smooth.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tts {
namespace {

// A sample as loud as this or less is no step: 60 dB below the loudest.
constexpr int next_to_silence = 32;

// From 0 to 1 as `part` does, without a corner at either end.
double eased(double part) { return (1 - std::cos(std::numbers::pi * part)) / 2; }

std::int16_t limited(long sample) { return static_cast<std::int16_t>(std::clamp(sample, -32768L, 32767L)); }

std::int16_t scaled(std::int16_t sample, float gain) { return limited(std::lround(static_cast<float>(sample) * gain)); }

}  // namespace

void Gain::set(float gain) {
    start_ = goal_ = gain;
    done_ = length_ = 0;
}

void Gain::move_to(float gain, std::size_t samples) {
    start_ = now();
    goal_ = gain;
    done_ = 0;
    length_ = samples;
}

float Gain::now() const {
    if (done_ >= length_) return goal_;
    const double part = eased(static_cast<double>(done_) / static_cast<double>(length_));
    return static_cast<float>(start_ + part * (static_cast<double>(goal_) - start_));
}

void Gain::skip(std::uint64_t samples) {
    done_ += static_cast<std::size_t>(std::min<std::uint64_t>(samples, length_ - done_));
}

void Gain::apply(std::span<const std::int16_t> samples, std::vector<std::int16_t>& out) {
    std::size_t i = 0;
    for (; i < samples.size() && done_ < length_; ++i, ++done_) out.push_back(scaled(samples[i], now()));
    for (; i < samples.size(); ++i) out.push_back(scaled(samples[i], goal_));
}

void CutEnd::begin(std::span<const std::int16_t> last) {
    std::vector<std::int16_t> end;
    const bool is_silent = last.empty() || std::abs(last.back()) <= next_to_silence;
    const std::size_t count = is_silent ? 0 : std::min(last.size(), size_);
    for (std::size_t i = 0; i < count; ++i) end.push_back(last[last.size() - 1 - i]);
    end_ = std::move(end);
    next_ = 0;
}

// How much of the next sample is the end's.
double CutEnd::share() const {
    return 1 - eased(static_cast<double>(next_ + 1) / static_cast<double>(end_.size() + 1));
}

void CutEnd::mix_into(std::span<std::int16_t> samples) {
    for (std::size_t i = 0; i < samples.size() && next_ < end_.size(); ++i, ++next_)
        samples[i] = limited(std::lround(end_[next_] * share() + samples[i] * (1 - share())));
}

void CutEnd::finish(std::vector<std::int16_t>& out) {
    for (; next_ < end_.size(); ++next_) out.push_back(limited(std::lround(end_[next_] * share())));
}

}  // namespace tts
