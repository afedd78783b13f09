// From espeak-ng's 22,050 samples a second to a voice's rate.
//
// libsamplerate's band-limited converter does it: what the lower rate cannot hold is 100 dB down, not folded back. It
// looks about 6 ms ahead and adds no delay: sample n of the output is the sound at n / rate.
#ifndef TTS_ENGINE_RESAMPLER_H
#define TTS_ENGINE_RESAMPLER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct SRC_STATE_tag;

namespace tts {

constexpr unsigned espeak_rate = 22050;

class Resampler {
public:
    // `rate` is what comes out: 22050, 16000 or 8000. At 22050 samples pass as they are.
    explicit Resampler(unsigned rate);
    ~Resampler();
    Resampler(const Resampler&) = delete;
    Resampler& operator=(const Resampler&) = delete;

    // Takes samples and appends what can be said of the output.
    void push(std::span<const std::int16_t> samples, std::vector<std::int16_t>& output);

    // The sound ends: appends the rest, so that all of the output together has position() samples. What is pushed then
    // is another sound.
    void finish(std::vector<std::int16_t>& output);

    // Forgets what was pushed.
    void reset();

    // How many samples of the sound were pushed, and where in the output one of them stands.
    std::uint64_t taken() const { return taken_; }
    std::uint64_t position_of(std::uint64_t sample) const { return sample * rate_ / espeak_rate; }
    std::uint64_t position() const { return position_of(taken_); }

private:
    void convert(const float* samples, std::size_t count, bool last, std::vector<std::int16_t>& output);

    struct Closer {
        void operator()(SRC_STATE_tag* state) const;
    };
    unsigned rate_;
    std::unique_ptr<SRC_STATE_tag, Closer> state_;
    std::uint64_t taken_ = 0;
    std::uint64_t given_ = 0;
};

}  // namespace tts

#endif
