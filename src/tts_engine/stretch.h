// Speech made faster or slower than espeak-ng can, while its pitch stays.
//
// espeak-ng speaks 80 to 450 words a minute, and all of a text at one rate. For other rates whole pitch periods of its
// sound are left out or repeated, and each border is a cross-fade between two periods that are alike. So there is never
// a step, at a change of speed either: the sound goes on at the sample where it is, and only the next periods are left
// out or repeated more or less often.
//
// Where a sample of the input comes in the output is known beforehand: the output has position() samples for what was
// put, calculated from the speeds alone. The sound itself keeps to that within about one pitch period.
#ifndef TTS_ENGINE_STRETCH_H
#define TTS_ENGINE_STRETCH_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace tts {

class Stretch {
public:
    // The nearest speed that there is: 0.05 to 20.
    static double possible(double speed);

    // The speed of the samples that are put from now on. At 1 samples pass as they are.
    void set_speed(double speed);

    // Takes samples and appends to `out` the output that is certain. It looks 31 ms ahead at speeds other than 1.
    void put(std::span<const std::int16_t> samples, std::vector<std::int16_t>& out);

    // All of the sound was put: appends the rest, so that all of the output together has position() samples; a few more
    // if they are out already. What is put then is another sound, at speed 1.
    void finish(std::vector<std::int16_t>& out);

    // Forgets what was put; the speed is 1.
    void reset();

    // How many samples of output belong to what was put since the last finish() or reset(), and `more` samples.
    std::uint64_t position(std::uint64_t more = 0) const;

    // Whether there is anything to do but to pass samples on.
    bool is_active() const { return active_; }

private:
    // From an input sample on one speed holds, and this is the output sample that belongs to it.
    struct Change {
        std::uint64_t sample;
        double position;
        double speed;
    };

    static double position_in(const Change& change, std::uint64_t sample);
    std::uint64_t end_of_speed() const;
    void work(std::uint64_t limit, std::vector<std::int16_t>& out);
    void copy(std::uint64_t count, std::vector<std::int16_t>& out);
    std::uint64_t samples_to_copy(double late, double period) const;
    void say(std::size_t first, std::size_t last, std::vector<std::int16_t>& out);
    void leave_out(double late, std::size_t period, std::vector<std::int16_t>& out);
    void repeat(double late, std::size_t period, std::vector<std::int16_t>& out);
    void cross_fade(std::size_t from, std::size_t to, std::size_t count, std::vector<std::int16_t>& out);
    void forget_used_input();

    std::deque<Change> changes_{{0, 0, 1}};  // the first holds at the next sample of input to be used
    std::vector<std::int16_t> input_;        // what may still be looked at
    std::size_t next_ = 0;                   // of it, the next sample to be used
    std::uint64_t used_ = 0;                 // samples of input before that one
    std::uint64_t put_ = 0;                  // samples of input in all
    std::uint64_t made_ = 0;                 // samples of output
    bool active_ = false;
};

// The pitch period at the start of a sound, in samples; a likely one for a sound without pitch. The sound is at least
// 2 * longest_period samples.
constexpr std::size_t longest_period = 339;  // 65 Hz
std::size_t pitch_period(std::span<const std::int16_t> sound);

}  // namespace tts

#endif
