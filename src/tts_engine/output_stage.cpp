// Trimming and converting. See output_stage.h.
#include "tts_engine/output_stage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tts {
namespace {

bool is_sound(std::int16_t sample) { return sample != 0; }

// How many samples a change of the gain takes before they are played at a speed.
std::size_t whole_change(double speed) {
    return static_cast<std::size_t>(std::max(speed, 1.0) * espeak_rate * smooth_milliseconds / 1000);
}

}  // namespace

void OutputStage::begin_piece() { at_start_ = true; }

void OutputStage::end_piece() {
    held_ = 0;
    stretch_.finish(stretched_);
    pass_on();
    if (!at_start_) end_cut_sound();
    stretch_start_ = resampler_.taken();
    speed_ = 1;
    at_start_ = true;
}

// espeak-ng may end a piece in the middle of a wave.
void OutputStage::end_cut_sound() {
    CutEnd end(espeak_rate);
    end.begin(last_);
    end.finish(stretched_);
    pass_on();
}

void OutputStage::set_speed(double speed) {
    speed = Stretch::possible(speed);
    if (speed == speed_) return;
    release_held();
    stretch_.set_speed(speed);
    speed_ = speed;
}

void OutputStage::put(std::span<const std::int16_t> samples) {
    stretch_.put(samples, stretched_);
    pass_on();
}

// From the stretcher to where it can be taken.
void OutputStage::pass_on() {
    note_last(stretched_);
    const std::size_t before = ready_.size();
    resampler_.push(stretched_, ready_);
    jump_end_.mix_into(std::span(ready_).subspan(before));
    stretched_.clear();
}

void OutputStage::note_last(std::span<const std::int16_t> samples) {
    constexpr std::size_t most = espeak_rate * smooth_milliseconds / 1000;
    if (samples.size() > most) samples = samples.last(most);
    const std::size_t kept = std::min(last_.size(), most - samples.size());
    last_.erase(last_.begin(), last_.end() - static_cast<std::ptrdiff_t>(kept));
    last_.insert(last_.end(), samples.begin(), samples.end());
}

void OutputStage::add(std::span<const std::int16_t> samples, float gain) {
    if (at_start_) {
        const auto first = std::find_if(samples.begin(), samples.end(), is_sound);
        samples = samples.subspan(static_cast<std::size_t>(first - samples.begin()));
        if (samples.empty()) return;
        at_start_ = false;
        gain_.set(gain);
    }
    // A change is at least 5 ms long in the output, and in what is to be stretched.
    if (gain != gain_.goal()) gain_.move_to(gain, whole_change(speed_));
    const auto last = std::find_if(samples.rbegin(), samples.rend(), is_sound);
    const auto quiet = static_cast<std::size_t>(last - samples.rbegin());
    const auto loud = samples.first(samples.size() - quiet);
    if (!loud.empty()) {
        release_held();
        if (gain_.is_one()) {
            put(loud);
        } else {
            amplified_.clear();
            gain_.apply(loud, amplified_);
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

void OutputStage::release_held() {
    gain_.skip(held_);
    add_silence(std::exchange(held_, 0));
}

void OutputStage::end_sound() {
    end_piece();
    const std::uint64_t end = sound_start_ + resampler_.position();
    const std::size_t before = ready_.size();
    resampler_.finish(ready_);
    jump_end_.mix_into(std::span(ready_).subspan(std::min(before, ready_.size())));
    stretch_start_ = 0;
    sound_start_ = end;
    last_.clear();
}

void OutputStage::end_all() {
    const std::size_t before = ready_.size();
    jump_end_.finish(ready_);
    sound_start_ += ready_.size() - before;
}

void OutputStage::forget() {
    jump_end_.begin(std::span(ready_).first(first_ready_));
    resampler_.reset();
    stretch_.reset();
    stretched_.clear();
    last_.clear();
    speed_ = 1;
    stretch_start_ = held_ = 0;
    at_start_ = true;
    ready_.resize(first_ready_);
    sound_start_ = taken_;
}

std::uint64_t OutputStage::made() const {
    return sound_start_ + resampler_.position_of(stretch_start_ + stretch_.position(held_));
}

void OutputStage::take(std::size_t count) {
    first_ready_ += count;
    taken_ += count;
    const std::size_t kept = std::min(first_ready_, jump_end_.size());
    if (first_ready_ - kept < ready_.size() / 2) return;
    ready_.erase(ready_.begin(), ready_.begin() + static_cast<std::ptrdiff_t>(first_ready_ - kept));
    first_ready_ = kept;
}

}  // namespace tts
