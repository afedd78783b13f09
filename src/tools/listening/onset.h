// Where a sound that was spoken alone begins inside a longer one.
//
// A word's place in a sentence is found without the synthesiser's own events: the end of the sentence, from the word
// on, is spoken alone, and its first tenths of a second are looked for in the sound of the whole sentence. Loudness and
// colour of both are compared, not single samples, so that neither the phase nor a little melody matters.
#ifndef NELVA_TOOLS_LISTENING_ONSET_H
#define NELVA_TOOLS_LISTENING_ONSET_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace listening {

struct Onset {
    std::size_t sample;  // of the longer sound
    double difference;   // 0 for the same sound; the average of the logarithms' differences, in octaves of loudness
};

// Up to this difference two sounds count as the same.
constexpr double same_sound = 0.5;

// The first sample above the last bits of a fading sound; the size if there is none.
std::size_t first_audible(std::span<const std::int16_t> samples);

// Looks for the first audible 120 ms of `alone` in `whole`, from `reach` samples before `near` to as many after it;
// what is nearer is preferred. `rate` is in samples a second. If one of them is too short, the difference is huge.
Onset find_onset(std::span<const std::int16_t> whole, std::span<const std::int16_t> alone, std::size_t near,
                 std::size_t reach, unsigned rate);

// Where the closure of a stop before `onset` begins: the quiet or humming time before its burst, which a word that is
// spoken alone does not have. At most 100 ms; `onset` itself if the sound before it is as bright as the sound after.
std::size_t closure_before(std::span<const std::int16_t> samples, std::size_t onset, unsigned rate);

}  // namespace listening

#endif
