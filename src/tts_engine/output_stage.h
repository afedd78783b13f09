// Between what espeak-ng computes and what a record holds: silence is trimmed, sound made louder and faster, and
// brought to the voice's rate.
//
// Speech comes in pieces, each what espeak-ng gets at a time. It puts about 12 ms of silence in front of a piece and
// some behind it, exact zeros, which are left out; the caller decides how long a pause is and adds it. Silence inside
// a piece stays.
//
// Nothing here makes a step in the sound. A gain changes within 5 ms, a speed by the pitch period (stretch.h), and
// where sound is cut, by forget() or because espeak-ng ends it at once, it fades out (smooth.h).
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
#include "tts_engine/smooth.h"
#include "tts_engine/stretch.h"

namespace tts {

class OutputStage {
public:
    explicit OutputStage(unsigned rate) : rate_(rate), resampler_(rate), jump_end_(rate) {}

    unsigned rate() const { return rate_; }

    // A piece begins and ends. What it ends with of silence is dropped, and made() may fall back by that.
    void begin_piece();
    void end_piece();

    // How fast the samples are played that come from now on in this piece (stretch.h); 1 at its start.
    void set_speed(double speed);

    // Adds samples of a piece at 22,050 Hz, amplified. Where the gain is another than before, it changes within 5 ms.
    void add(std::span<const std::int16_t> samples, float gain);

    // Adds silence, in samples at 22,050 Hz.
    void add_silence(std::uint64_t count);

    void end_sound();

    // Drops what is not taken yet. What was taken last fades out into the sound that comes.
    void forget();

    // Nothing comes any more: what still fades out becomes a sound of its own.
    void end_all();

    // The position of the next sample that is added.
    std::uint64_t made() const;

    // The position of the next sample that is taken.
    std::uint64_t taken() const { return taken_; }

    // What can be taken, and taking from its front.
    std::span<const std::int16_t> ready() const { return std::span(ready_).subspan(first_ready_); }
    void take(std::size_t count);

private:
    // Silence that may turn out to be the end of a piece is held back up to this many samples (5 s). espeak-ng's pauses
    // are shorter, and it computes that much silence in less than a millisecond.
    static constexpr std::size_t most_held = 5 * espeak_rate;

    void release_held();
    void put(std::span<const std::int16_t> samples);
    void pass_on();
    void end_cut_sound();
    void note_last(std::span<const std::int16_t> samples);

    unsigned rate_;
    Resampler resampler_;
    bool at_start_ = true;    // no sound of the piece has come
    std::uint64_t held_ = 0;  // samples of silence held back
    Gain gain_;
    std::vector<std::int16_t> amplified_;
    Stretch stretch_;
    double speed_ = 1;
    std::vector<std::int16_t> stretched_;
    std::uint64_t stretch_start_ = 0;  // samples that the resampler had when the piece began
    std::vector<std::int16_t> last_;   // the last samples that the resampler got
    CutEnd jump_end_;                  // of what was taken before forget(), at rate()
    std::vector<std::int16_t> ready_;
    std::size_t first_ready_ = 0;  // what is before it is taken; the last of that is kept for forget()
    std::uint64_t taken_ = 0;
    std::uint64_t sound_start_ = 0;  // position of the sound's first sample
};

}  // namespace tts

#endif
