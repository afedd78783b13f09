// Pitch periods left out and repeated. See stretch.h.
//
// Each step looks how late the output is: how many samples more it has than it should have at this place of the input.
// As long as that is less than half a pitch period the input is copied. Otherwise one period is left out or repeated.
// At speeds from 2 and below 0.5 there is such a step for each period, with a cross-fade as short as the speed asks
// for.
#include "tts_engine/stretch.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tts {
namespace {

constexpr double slowest = 0.05;
constexpr double fastest = 20;
constexpr std::size_t shortest_period = 55;  // 400 Hz
constexpr std::size_t look_ahead = 2 * longest_period;

// A cross-fade shorter than this may be heard as a step.
constexpr double shortest_fade = 32;

// A sound that has fallen far back is repeated no more often than this at a time.
constexpr double most_repeats = 40;

std::size_t whole(double count) { return static_cast<std::size_t>(std::max(count, 0.0)); }

}  // namespace

double Stretch::possible(double speed) { return std::clamp(speed, slowest, fastest); }

double Stretch::position_in(const Change& change, std::uint64_t sample) {
    return change.position + (static_cast<double>(sample) - static_cast<double>(change.sample)) / change.speed;
}

std::uint64_t Stretch::position(std::uint64_t more) const {
    return static_cast<std::uint64_t>(position_in(changes_.back(), put_ + more));
}

void Stretch::set_speed(double speed) {
    speed = possible(speed);
    if (speed == changes_.back().speed) return;
    const Change change{put_, position_in(changes_.back(), put_), speed};
    if (changes_.back().sample == put_)
        changes_.back() = change;
    else
        changes_.push_back(change);
    active_ = true;
}

void Stretch::reset() {
    changes_.erase(changes_.begin() + 1, changes_.end());
    changes_.front() = {0, 0, 1};
    input_.clear();
    next_ = 0;
    used_ = put_ = made_ = 0;
    active_ = false;
}

void Stretch::put(std::span<const std::int16_t> samples, std::vector<std::int16_t>& out) {
    put_ += samples.size();
    if (!active_) {
        out.insert(out.end(), samples.begin(), samples.end());
        used_ = made_ = put_;
        return;
    }
    input_.insert(input_.end(), samples.begin(), samples.end());
    work(put_, out);
    forget_used_input();
}

void Stretch::finish(std::vector<std::int16_t>& out) {
    if (active_) {
        const std::size_t before = out.size();
        const std::uint64_t end = put_;
        const std::uint64_t wanted = position();
        input_.resize(input_.size() + look_ahead);  // the sound ends in silence
        put_ += look_ahead;
        work(end, out);
        const std::size_t new_samples = out.size() - before;
        if (made_ > wanted) out.resize(out.size() - std::min<std::size_t>(made_ - wanted, new_samples));
        if (made_ < wanted) out.resize(out.size() + static_cast<std::size_t>(wanted - made_));
    }
    reset();
}

// The input sample where the speed that holds now ends; put_ if it is the last.
std::uint64_t Stretch::end_of_speed() const { return changes_.size() > 1 ? changes_[1].sample : put_; }

// Uses the input up to sample `limit`, as far as it can look ahead.
void Stretch::work(std::uint64_t limit, std::vector<std::int16_t>& out) {
    while (used_ < limit) {
        while (changes_.size() > 1 && changes_[1].sample <= used_) changes_.pop_front();
        const Change& now = changes_.front();
        const std::uint64_t end = std::min(limit, end_of_speed());
        if (now.speed == 1) {
            copy(end - used_, out);
            continue;
        }
        if (put_ - used_ < look_ahead) return;
        const double late = static_cast<double>(made_) - position_in(now, used_);
        const std::size_t period = pitch_period(std::span(input_).subspan(next_, look_ahead));
        const std::uint64_t copied = samples_to_copy(late, static_cast<double>(period));
        if (copied > 0)
            copy(std::min(copied, end - used_), out);
        else if (now.speed > 1)
            leave_out(late, period, out);
        else
            repeat(late, period, out);
    }
}

// How many samples can be copied before a period has to be left out or repeated.
std::uint64_t Stretch::samples_to_copy(double late, double period) const {
    const double speed = changes_.front().speed;
    const double gain = 1 - 1 / speed;  // how much later each copied sample makes the output
    const double limit = speed > 1 ? std::min(period / 2, period * (2 - speed) / speed)
                                   : std::max(-period / 2, period * (1 - 2 * speed) / speed);
    const double count = (limit - late) / gain;
    return count < 1 ? 0 : static_cast<std::uint64_t>(std::min(count, static_cast<double>(longest_period)));
}

void Stretch::copy(std::uint64_t count, std::vector<std::int16_t>& out) {
    say(0, static_cast<std::size_t>(count), out);
    next_ += static_cast<std::size_t>(count);
    used_ += count;
}

// Fades from the sound at `from` to that at `to`, places in the input.
void Stretch::cross_fade(std::size_t from, std::size_t to, std::size_t count, std::vector<std::int16_t>& out) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto whole = static_cast<int>(count);
        const auto part = static_cast<int>(i);
        out.push_back(static_cast<std::int16_t>((input_[from + i] * (whole - part) + input_[to + i] * part) / whole));
    }
    made_ += count;
}

// Leaves out a period, or as many as the shortest cross-fade needs, with a cross-fade so long that the output is in
// time after it; at most a period long.
void Stretch::leave_out(double late, std::size_t period, std::vector<std::int16_t>& out) {
    const double speed = changes_.front().speed;
    const auto length = static_cast<double>(period);
    const double periods = std::max(1.0, std::ceil((shortest_fade * (speed - 1) + late * speed) / length));
    const double left_out = std::min(periods * length, look_ahead - shortest_fade);
    const double longest = std::min(length, look_ahead - left_out);
    const std::size_t fade = whole(std::clamp((left_out - late * speed) / (speed - 1), shortest_fade, longest));
    cross_fade(next_, next_ + whole(left_out), fade, out);
    next_ += whole(left_out) + fade;
    used_ += whole(left_out) + fade;
}

// The same with a period that comes again, or as many times as the shortest cross-fade needs.
void Stretch::repeat(double late, std::size_t period, std::vector<std::int16_t>& out) {
    const double speed = changes_.front().speed;
    const auto length = static_cast<double>(period);
    const double times =
        std::clamp(std::ceil((shortest_fade * (1 - speed) / speed - late) / length), 1.0, most_repeats);
    const std::size_t fade = whole(std::clamp((times * length + late) * speed / (1 - speed), shortest_fade, length));
    say(0, period, out);
    for (double i = 1; i < times; ++i) {
        cross_fade(next_ + period, next_, fade, out);
        say(fade, period, out);
    }
    cross_fade(next_ + period, next_, fade, out);
    next_ += fade;
    used_ += fade;
}

// Appends the input from `first` up to `last`, counted from the next sample, which stays the next one.
void Stretch::say(std::size_t first, std::size_t last, std::vector<std::int16_t>& out) {
    const auto start = input_.begin() + static_cast<std::ptrdiff_t>(next_);
    out.insert(out.end(), start + static_cast<std::ptrdiff_t>(first), start + static_cast<std::ptrdiff_t>(last));
    made_ += last - first;
}

void Stretch::forget_used_input() {
    if (next_ < look_ahead) return;
    input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(next_));
    next_ = 0;
}

// ---- The pitch

namespace {

// How unlike a sound and itself one period later are, for a sample.
template <typename Sample>
double difference(const Sample* sound, std::size_t period) {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < period; ++i) sum += std::abs(static_cast<std::int32_t>(sound[i]) - sound[i + period]);
    return static_cast<double>(sum) / static_cast<double>(period);
}

// The shortest of the periods whose difference is the least.
template <typename Sample>
std::size_t best_period(const Sample* sound, std::size_t shortest, std::size_t longest) {
    std::size_t best = shortest;
    double least = difference(sound, shortest);
    for (std::size_t period = shortest + 1; period <= longest; ++period) {
        const double here = difference(sound, period);
        if (here >= least) continue;
        best = period;
        least = here;
    }
    return best;
}

}  // namespace

// First on every fifth sample, then around what was found there.
std::size_t pitch_period(std::span<const std::int16_t> sound) {
    constexpr std::size_t skip = 5;
    std::array<std::int32_t, look_ahead / skip> coarse;
    for (std::size_t i = 0; i < coarse.size(); ++i) {
        coarse[i] = 0;
        for (std::size_t k = 0; k < skip; ++k) coarse[i] += sound[i * skip + k];
    }
    const std::size_t found = skip * best_period(coarse.data(), shortest_period / skip, longest_period / skip);
    return best_period(sound.data(), std::max(shortest_period, found - skip), std::min(longest_period, found + skip));
}

}  // namespace tts
