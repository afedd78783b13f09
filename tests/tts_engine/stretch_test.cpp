// Leaving out and repeating pitch periods, measured with tones.
#include "tts_engine/stretch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace {

using Samples = std::vector<std::int16_t>;

constexpr double rate = 22050;

// A tone with one overtone, so that it has a steep side.
Samples voiced(double frequency, std::size_t count) {
    Samples result;
    for (std::size_t i = 0; i < count; ++i) {
        const double phase = 2 * std::numbers::pi * frequency * static_cast<double>(i) / rate;
        result.push_back(
            static_cast<std::int16_t>(std::lround(8000 * (std::sin(phase) + 0.5 * std::sin(2 * phase + 1)))));
    }
    return result;
}

int steepest(const Samples& samples) {
    int result = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) result = std::max(result, std::abs(samples[i] - samples[i - 1]));
    return result;
}

// In pieces of one size; without the end, where the sound is cut.
Samples stretched(const Samples& samples, double speed, std::size_t piece = 256) {
    tts::Stretch stretch;
    stretch.set_speed(speed);
    Samples result;
    for (std::size_t i = 0; i < samples.size(); i += piece)
        stretch.put(std::span(samples).subspan(i, std::min(piece, samples.size() - i)), result);
    return result;
}

const double speeds[] = {0.05, 0.13, 0.3, 0.5, 0.8, 0.97, 1.03, 1.4, 1.99, 2, 3.4, 7, 20};

}  // namespace

TEST(Stretch, speed_one_passes_samples_on_at_once) {
    tts::Stretch stretch;
    Samples result;
    stretch.put(Samples{1, 2, 3}, result);
    EXPECT_EQ(result, (Samples{1, 2, 3}));
    EXPECT_FALSE(stretch.is_active());
}

TEST(Stretch, output_is_as_long_as_position_says) {
    for (const double speed : speeds)
        for (const std::size_t count : {0u, 1u, 100u, 700u, 20000u}) {
            tts::Stretch stretch;
            Samples result;
            stretch.set_speed(speed);
            stretch.put(voiced(120, count), result);
            EXPECT_EQ(stretch.position(), static_cast<std::uint64_t>(static_cast<double>(count) / speed));
            stretch.finish(result);
            EXPECT_EQ(result.size(), static_cast<std::uint64_t>(static_cast<double>(count) / speed)) << speed;
        }
}

// Whatever is not out yet was put within the last 31 ms, or belongs to the pitch period in hand (14 ms at most).
TEST(Stretch, sound_keeps_to_its_position) {
    for (const double speed : speeds)
        for (const double frequency : {70.0, 120.0, 390.0}) {
            const Samples result = stretched(voiced(frequency, 44100), speed);
            const double certain = (44100 - 2.0 * tts::longest_period) / speed;
            EXPECT_GT(static_cast<double>(result.size()), certain - tts::longest_period) << speed << " " << frequency;
            EXPECT_LT(static_cast<double>(result.size()), 44100 / speed + tts::longest_period)
                << speed << " " << frequency;
        }
}

TEST(Stretch, no_step_is_steeper_than_the_sound) {
    for (const double speed : {0.05, 0.3, 0.5, 0.8, 0.97, 1.03, 1.4, 2.0, 3.4})
        for (const double frequency : {70.0, 120.0, 390.0}) {
            const Samples sound = voiced(frequency, 22050);
            EXPECT_LE(steepest(stretched(sound, speed)), steepest(sound) * 1.02) << speed << " " << frequency;
        }
}

// Its output was already more than there should be of all of it.
TEST(Stretch, the_end_of_fast_sound_takes_nothing_back) {
    for (std::size_t count = 600; count < 1400; ++count) {
        tts::Stretch stretch;
        Samples result;
        stretch.set_speed(1.3);
        stretch.put(voiced(120, count), result);
        const std::size_t out = result.size();
        Samples rest;
        stretch.finish(rest);
        EXPECT_LT(rest.size(), count);
        EXPECT_NEAR(static_cast<double>(out + rest.size()), static_cast<double>(count) / 1.3, tts::longest_period);
    }
    // Slow sound in which a period was just said many times, then a fast end that is short.
    for (const std::size_t count : {5u, 50u, 200u}) {
        tts::Stretch stretch;
        Samples all;
        stretch.set_speed(1.5);
        stretch.put(voiced(80, 3000), all);
        stretch.set_speed(20);
        stretch.put(voiced(80, count), all);
        Samples rest;
        stretch.finish(rest);
        EXPECT_LT(rest.size(), 3000u) << count;
    }
}

TEST(Stretch, the_pitch_stays) {
    for (const double speed : {0.2, 0.7, 1.5, 4.0})
        for (const double frequency : {80.0, 150.0, 300.0}) {
            const Samples result = stretched(voiced(frequency, 44100), speed);
            int upward = 0;
            for (std::size_t i = 1; i < result.size(); ++i) upward += result[i - 1] < 0 && result[i] >= 0;
            const double seconds = static_cast<double>(result.size()) / rate;
            EXPECT_NEAR(upward / seconds, frequency, frequency * 0.03) << speed;
        }
}

TEST(Stretch, a_change_of_speed_is_no_step_and_keeps_positions) {
    std::mt19937 random(1);
    for (int i = 0; i < 50; ++i) {
        tts::Stretch stretch;
        Samples result;
        const Samples sound = voiced(80 + random() % 200, 60000);
        double wanted = 0;
        std::size_t at = 0;
        while (at < 50000) {
            const double speed = random() % 3 == 0 ? 1 : std::exp((static_cast<int>(random() % 400) - 200) / 100.0);
            const std::size_t count = random() % 6000;
            stretch.set_speed(speed);
            stretch.put(std::span(sound).subspan(at, count), result);
            at += count;
            wanted += static_cast<double>(count) / speed;
            ASSERT_NEAR(static_cast<double>(stretch.position()), wanted, 1.01) << i;
        }
        // A cross-fade is 32 samples or longer, and between two samples of +-12000 at most.
        EXPECT_LE(steepest(result), steepest(sound) + 24000 / 32) << i;
        stretch.finish(result);
        EXPECT_NEAR(static_cast<double>(result.size()), wanted, tts::longest_period) << i;
        EXPECT_FALSE(stretch.is_active());
    }
}

TEST(Stretch, pieces_of_any_size_give_the_same) {
    std::mt19937 random(1);
    Samples noise;
    for (int i = 0; i < 8000; ++i) noise.push_back(static_cast<std::int16_t>(random()));
    for (const double speed : {0.3, 0.9, 1.1, 3.0}) {
        const Samples usual = stretched(noise, speed);
        for (const std::size_t piece : {1u, 1000u, 8000u}) EXPECT_EQ(stretched(noise, speed, piece), usual) << speed;
    }
}

TEST(Stretch, silence_and_the_loudest_sound_have_a_period) {
    EXPECT_GE(tts::pitch_period(Samples(2 * tts::longest_period, 0)), 55u);
    EXPECT_LE(tts::pitch_period(Samples(2 * tts::longest_period, 0)), tts::longest_period);
    Samples square(2 * tts::longest_period);
    for (std::size_t i = 0; i < square.size(); ++i) square[i] = i / 100 % 2 == 0 ? 32767 : -32768;
    EXPECT_EQ(tts::pitch_period(square), 200u);
}

TEST(Stretch, what_is_forgotten_leaves_nothing) {
    tts::Stretch stretch;
    Samples result;
    stretch.set_speed(3);
    stretch.put(voiced(100, 500), result);
    stretch.reset();
    EXPECT_EQ(stretch.position(), 0u);
    result.clear();
    stretch.put(Samples{7}, result);
    EXPECT_EQ(result, (Samples{7}));
}
