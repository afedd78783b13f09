// What keeps sound without steps where it changes or breaks off: a gain that moves instead of jumping, and an end where
// sound was cut.
#ifndef TTS_ENGINE_SMOOTH_H
#define TTS_ENGINE_SMOOTH_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tts {

// How long a gain takes to change, and a cut sound to end.
constexpr unsigned smooth_milliseconds = 5;

// A factor for samples.
class Gain {
public:
    // The factor at once, for sound that begins.
    void set(float gain);

    // The factor that is reached `samples` samples later, along half a wave of a cosine.
    void move_to(float gain, std::size_t samples);

    // The factor that is wanted, and whether samples stay as they are.
    float goal() const { return goal_; }
    bool is_one() const { return goal_ == 1 && done_ >= length_; }

    // Appends the samples, multiplied and limited to 16 bits.
    void apply(std::span<const std::int16_t> samples, std::vector<std::int16_t>& out);

    // Passes over samples that are silent.
    void skip(std::uint64_t samples);

private:
    float now() const;

    float start_ = 1;
    float goal_ = 1;
    std::size_t done_ = 0;    // samples since the start of the change
    std::size_t length_ = 0;  // of the change, in samples; 0 if there is none
};

// The end of a sound that was cut: its last 5 ms backwards, while they fade out. So the sound goes on from the level
// where it was, and no steeper than it was. What comes next fades in while it fades out.
class CutEnd {
public:
    explicit CutEnd(unsigned rate) : size_(rate * smooth_milliseconds / 1000) {}

    // How many samples before a cut it looks at.
    std::size_t size() const { return size_; }

    // The sound that ends with `last` was cut here; what is left of an earlier end goes. Nothing is to be done if its
    // last sample is next to silence, or if there is none.
    void begin(std::span<const std::int16_t> last);

    // Fades from what is left of the end to these samples, which come next.
    void mix_into(std::span<std::int16_t> samples);

    // Appends what is left of it, since nothing comes next.
    void finish(std::vector<std::int16_t>& out);

private:
    double share() const;

    std::size_t size_;
    std::vector<std::int16_t> end_;  // does not fade yet
    std::size_t next_ = 0;
};

}  // namespace tts

#endif
