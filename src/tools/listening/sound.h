// What can be measured on samples alone: where there is sound, where two sounds part, how steep the steps are.
//
// All places are samples from the first; ranges are half-open. Nothing here knows a synthesiser.
#ifndef NELVA_TOOLS_LISTENING_SOUND_H
#define NELVA_TOOLS_LISTENING_SOUND_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace listening {

using Samples = std::vector<std::int16_t>;

struct Span {
    std::size_t begin, end;
    bool operator==(const Span&) const = default;
};

// A sample this far from zero is heard; below it are the last bits of a fading sound.
constexpr int audible = 100;

// The first sample that differs, or where the shorter one ends; the size if both are the same.
std::size_t first_difference(const Samples& a, const Samples& b);

// The spans that are heard. A silence shorter than `gap` belongs to the sound around it.
std::vector<Span> sounding_spans(const Samples& samples, std::size_t gap);

// How many samples from `begin` to `end` lie in spans that are heard, with gaps of `gap`.
std::size_t sounding_within(const Samples& samples, Span where, std::size_t gap);

// The longest silence between the first sound and the last one. 0 if there is none.
std::size_t longest_pause(const Samples& samples);

// The largest difference between neighbours in the range, which is cut to the samples that there are.
int steepest_step(const Samples& samples, Span where);

}  // namespace listening

#endif
