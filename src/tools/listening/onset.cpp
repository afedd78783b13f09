// Comparing the loudness and colour of two sounds, frame by frame. See onset.h.
#include "tools/listening/onset.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace listening {
namespace {

constexpr int audible = 100;
constexpr unsigned frames_a_second = 200;
constexpr unsigned frame_count = 24;  // 120 ms
constexpr unsigned steps_a_second = 500;
constexpr double cost_of_reach = 0.3;  // of a place as far away as it may be

// Loudness of a frame, of its steps and of the steps' steps: how much of it is low, middle and high.
using Frame = std::array<double, 3>;

double octaves(double squares, std::size_t count) {
    return std::log2(1 + std::sqrt(squares / static_cast<double>(count)) / 16);
}

Frame frame_at(std::span<const std::int16_t> samples, std::size_t first, std::size_t size) {
    Frame sums{};
    for (std::size_t i = first; i < first + size; ++i) {
        const double sample = samples[i];
        const double step = sample - samples[i - 1];
        const double bend = step - (samples[i - 1] - samples[i - 2]);
        sums[0] += sample * sample;
        sums[1] += step * step;
        sums[2] += bend * bend;
    }
    for (double& sum : sums) sum = octaves(sum, size);
    return sums;
}

double difference(const Frame& one, const Frame& other) {
    double sum = 0;
    for (std::size_t i = 0; i < one.size(); ++i) sum += std::abs(one[i] - other[i]);
    return sum / static_cast<double>(one.size());
}

}  // namespace

std::size_t first_audible(std::span<const std::int16_t> samples) {
    const auto found =
        std::find_if(samples.begin(), samples.end(), [](int sample) { return std::abs(sample) >= audible; });
    return static_cast<std::size_t>(found - samples.begin());
}

Onset find_onset(std::span<const std::int16_t> whole, std::span<const std::int16_t> alone, std::size_t near,
                 std::size_t reach, unsigned rate) {
    const std::size_t hop = rate / frames_a_second;
    const std::size_t length = hop * (frame_count + 1);
    const std::size_t first = std::max<std::size_t>(first_audible(alone), 2);
    Onset best{near, 1e9};
    double least = 1e9;
    if (first + length > alone.size()) return best;
    std::vector<Frame> wanted;
    for (unsigned i = 0; i < frame_count; ++i) wanted.push_back(frame_at(alone, first + i * hop, 2 * hop));
    const std::size_t begin = std::max<std::size_t>(near - std::min(near, reach), 2);
    for (std::size_t at = begin; at <= near + reach && at + length <= whole.size(); at += rate / steps_a_second) {
        double sum = 0;
        for (unsigned i = 0; i < frame_count; ++i) sum += difference(wanted[i], frame_at(whole, at + i * hop, 2 * hop));
        const double away = static_cast<double>(at > near ? at - near : near - at) / static_cast<double>(reach);
        if (sum / frame_count + away * cost_of_reach >= least) continue;
        best = {at, sum / frame_count};
        least = best.difference + away * cost_of_reach;
    }
    return best;
}

std::size_t closure_before(std::span<const std::int16_t> samples, std::size_t onset, unsigned rate) {
    const std::size_t hop = rate / frames_a_second;
    if (onset + 8 * hop > samples.size()) return onset;
    const double bright = frame_at(samples, std::max<std::size_t>(onset, 2), 8 * hop)[1];
    std::size_t first = onset;
    while (first >= 2 + hop && onset - first < rate / 10 && frame_at(samples, first - hop, hop)[1] < bright - 0.5)
        first -= hop;
    return first;
}

}  // namespace listening
