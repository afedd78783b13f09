// Between what espeak-ng computes and what a record holds: silence is trimmed, sound made louder and faster, and
// brought to the voice's rate.
//
// Speech comes in pieces, each what espeak-ng gets at a time. It puts about 12 ms of silence in front of a piece and
// some behind it, exact zeros, which are left out; how long a pause is decides the caller, who adds it. Silence inside
// a piece stays.
//
// A sound begins with the first sample and ends with end_sound(), where all of it can be had. Positions are samples of
// the output, counted from the first of all.
#ifndef TTS_ENGINE_OUTPUT_STAGE_H
#define TTS_ENGINE_OUTPUT_STAGE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "tts_engine/resampler.h"
#include "tts_engine/stretch.h"

namespace tts {

class OutputStage {
public:
    explicit OutputStage(unsigned rate) : rate_(rate), resampler_(rate) {}

    unsigned rate() const { return rate_; }

    // A piece begins and ends. What it ends with of silence is dropped, and made() may fall back by that.
    void begin_piece();
    void end_piece();

    // How fast the samples are played that come from now on in this piece (stretch.h); 1 at its start. Positions of
    // what is faster or slower are reckoned, and made() may fall back when it changes or the piece ends.
    void set_speed(double speed);

    // Adds samples of a piece at 22,050 Hz, amplified.
    void add(std::span<const std::int16_t> samples, float gain);

    // Adds silence, in samples at 22,050 Hz.
    void add_silence(std::uint64_t count);

    void end_sound();

    // Drops what is not taken yet.
    void forget();

    // The position of the next sample that is added.
    std::uint64_t made() const;

    // The position of the next sample that is taken.
    std::uint64_t taken() const { return taken_; }

    // What can be taken, and taking from its front.
    std::span<const std::int16_t> ready() const { return std::span(ready_).subspan(first_ready_); }
    void take(std::size_t count);

private:
    // Silence that may turn out to be the end of a piece is held back up to this many samples (about half a second).
    static constexpr std::size_t most_held = 11025;

    void release_held();
    void put(std::span<const std::int16_t> samples);
    void pass_stretched();

    unsigned rate_;
    Resampler resampler_;
    bool at_start_ = true;    // no sound of the piece has come
    std::uint64_t held_ = 0;  // samples of silence held back
    std::vector<std::int16_t> amplified_;
    Stretch stretch_;
    double speed_ = 1;
    std::uint64_t stretch_start_ = 0;  // samples that the resampler had at the last change of speed
    std::uint64_t stretched_in_ = 0;   // samples that went to be stretched since
    std::vector<std::int16_t> stretched_;
    std::vector<std::int16_t> ready_;
    std::size_t first_ready_ = 0;  // what stands before it is taken
    std::uint64_t taken_ = 0;
    std::uint64_t sound_start_ = 0;  // position of the sound's first sample
};

}  // namespace tts

#endif
