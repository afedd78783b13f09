// Speech made faster or slower than espeak-ng can.
//
// espeak-ng speaks 80 to 450 words a minute. Beyond that its sound is stretched by Sonic, which keeps the pitch. Sound
// of one speed is a stretch of its own; between two the sound is whole.
#ifndef TTS_ENGINE_STRETCH_H
#define TTS_ENGINE_STRETCH_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

struct sonicStreamStruct;

namespace tts {

class Stretch {
public:
    Stretch() = default;

    // The nearest speed that there is: 0.05 to 20.
    static double possible(double speed);

    // The speed of what comes from now on, as far as possible; 1 passes samples on as they are. What is held back of
    // the samples before goes to `out`.
    void set_speed(double speed, std::vector<std::int16_t>& out);

    // Takes samples and appends to `out` what has become of them and those before. Throws std::bad_alloc.
    void put(const std::int16_t* samples, std::size_t count, std::vector<std::int16_t>& out);

    // Appends what is held back.
    void flush(std::vector<std::int16_t>& out);

    // Drops what is held back; the speed is 1.
    void reset();

    bool is_active() const { return speed_ != 1; }

private:
    struct Destroy {
        void operator()(sonicStreamStruct* stream) const;
    };

    void feed(std::vector<std::int16_t>& out);
    void drain(std::vector<std::int16_t>& out);

    std::unique_ptr<sonicStreamStruct, Destroy> stream_;
    std::vector<std::int16_t> held_;  // not yet given to Sonic
    double speed_ = 1;
};

}  // namespace tts

#endif
