// Trimming and converting. See output_stage.h.
#include "tts_engine/output_stage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tts {
namespace {

std::int16_t scaled(std::int16_t sample, float gain) {
    return static_cast<std::int16_t>(std::clamp(std::lround(static_cast<float>(sample) * gain), -32768L, 32767L));
}

bool is_sound(std::int16_t sample) { return sample != 0; }

}  // namespace

void OutputStage::begin_piece() { at_start_ = true; }

void OutputStage::end_piece() {
    held_ = 0;
    set_speed(1);
}

void OutputStage::set_speed(double speed) {
    speed = Stretch::possible(speed);
    if (speed == speed_) return;
    release_held();
    stretch_.set_speed(speed, stretched_);
    pass_stretched();
    speed_ = speed;
    stretch_start_ = resampler_.taken();
    stretched_in_ = 0;
}

void OutputStage::pass_stretched() {
    resampler_.push(stretched_, ready_);
    stretched_.clear();
}

void OutputStage::put(std::span<const std::int16_t> samples) {
    if (!stretch_.is_active()) return resampler_.push(samples, ready_);
    stretched_in_ += samples.size();
    stretch_.put(samples.data(), samples.size(), stretched_);
    pass_stretched();
}

void OutputStage::add(std::span<const std::int16_t> samples, float gain) {
    if (at_start_) {
        const auto first = std::find_if(samples.begin(), samples.end(), is_sound);
        samples = samples.subspan(static_cast<std::size_t>(first - samples.begin()));
        if (samples.empty()) return;
        at_start_ = false;
    }
    const auto last = std::find_if(samples.rbegin(), samples.rend(), is_sound);
    const auto quiet = static_cast<std::size_t>(last - samples.rbegin());
    const auto loud = samples.first(samples.size() - quiet);
    if (!loud.empty()) {
        release_held();
        if (gain == 1) {
            put(loud);
        } else {
            amplified_.clear();
            for (const std::int16_t sample : loud) amplified_.push_back(scaled(sample, gain));
            put(amplified_);
        }
    }
    held_ += quiet;
    if (held_ > most_held) release_held();
}

void OutputStage::add_silence(std::uint64_t count) {
    static constexpr std::array<std::int16_t, 512> silence{};
    while (count > 0) {
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(count, silence.size()));
        put({silence.data(), size});
        count -= size;
    }
}

void OutputStage::release_held() { add_silence(std::exchange(held_, 0)); }

void OutputStage::end_sound() {
    end_piece();
    const std::uint64_t end = made();
    resampler_.finish(ready_);
    stretch_start_ = 0;
    sound_start_ = end;
}

void OutputStage::forget() {
    resampler_.reset();
    stretch_.reset();
    speed_ = 1;
    stretch_start_ = stretched_in_ = held_ = 0;
    at_start_ = true;
    ready_.clear();
    first_ready_ = 0;
    sound_start_ = taken_;
}

std::uint64_t OutputStage::made() const {
    std::uint64_t sample = resampler_.taken() + held_;
    if (stretch_.is_active())
        sample = stretch_start_ + static_cast<std::uint64_t>(static_cast<double>(stretched_in_ + held_) / speed_);
    return sound_start_ + resampler_.position_of(sample);
}

void OutputStage::take(std::size_t count) {
    first_ready_ += count;
    taken_ += count;
    if (first_ready_ < ready_.size() / 2) return;
    ready_.erase(ready_.begin(), ready_.begin() + static_cast<std::ptrdiff_t>(first_ready_));
    first_ready_ = 0;
}

}  // namespace tts
