// Trimming silence and changing the rate, measured with tones.
#include "tts_engine/output_stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "tts_engine/resampler.h"

namespace {

using Samples = std::vector<std::int16_t>;

constexpr double amplitude = 16000;

Samples tone(double frequency, std::size_t count, double rate = tts::espeak_rate) {
    Samples result;
    for (std::size_t i = 0; i < count; ++i) {
        const double phase = 2 * std::numbers::pi * frequency * static_cast<double>(i) / rate;
        result.push_back(static_cast<std::int16_t>(std::lround(amplitude * std::sin(phase))));
    }
    return result;
}

Samples resampled(const Samples& samples, unsigned rate, std::size_t piece = 1000) {
    tts::Resampler resampler(rate);
    Samples result;
    for (std::size_t i = 0; i < samples.size(); i += piece)
        resampler.push(std::span(samples).subspan(i, std::min(piece, samples.size() - i)), result);
    resampler.finish(result);
    return result;
}

// Loudness against the tone's, in dB, without the ends, where a tone that begins at once is not a pure one.
double level(const Samples& samples) {
    const std::size_t edge = samples.size() / 10;
    double sum = 0;
    for (std::size_t i = edge; i < samples.size() - edge; ++i) sum += static_cast<double>(samples[i]) * samples[i];
    const double mean = sum / static_cast<double>(samples.size() - 2 * edge);
    return 10 * std::log10(std::max(mean, 1e-9) / (amplitude * amplitude / 2));
}

// The same for the difference of two.
double level_of_difference(const Samples& a, const Samples& b) {
    Samples difference;
    for (std::size_t i = 0; i < a.size(); ++i) difference.push_back(static_cast<std::int16_t>(a[i] - b[i]));
    return level(difference);
}

}  // namespace

TEST(Resampler, what_the_rate_cannot_hold_is_not_folded_back) {
    for (const unsigned rate : {16000u, 8000u})
        for (double frequency = rate / 2.0 + 50; frequency < 11000; frequency += 250)
            EXPECT_LT(level(resampled(tone(frequency, 22050), rate)), -60) << frequency << " Hz at " << rate;
}

TEST(Resampler, what_the_rate_holds_is_kept_in_place) {
    for (const unsigned rate : {16000u, 8000u})
        for (const double share : {0.05, 0.2, 0.5, 0.8}) {
            const double frequency = share * rate / 2;
            const Samples result = resampled(tone(frequency, 22050), rate);
            ASSERT_EQ(result.size(), rate);
            EXPECT_LT(level_of_difference(result, tone(frequency, rate, rate)), -60) << frequency << " Hz at " << rate;
        }
}

TEST(Resampler, pieces_of_any_size_give_the_same) {
    std::mt19937 random(1);
    Samples noise;
    for (int i = 0; i < 5000; ++i) noise.push_back(static_cast<std::int16_t>(random()));
    for (const std::size_t piece : {1u, 7u, 512u, 5000u})
        EXPECT_EQ(resampled(noise, 16000, piece), resampled(noise, 16000, 1323)) << piece;
}

TEST(Resampler, looks_less_than_ten_milliseconds_ahead) {
    tts::Resampler resampler(8000);
    Samples result;
    resampler.push(tone(440, 2205), result);  // 100 ms
    EXPECT_GE(result.size(), 720u);           // 90 ms
}

TEST(Resampler, length_is_what_position_says) {
    for (const unsigned rate : {22050u, 16000u, 8000u})
        for (const std::size_t count : {0u, 1u, 2u, 3u, 100u, 12345u}) {
            tts::Resampler resampler(rate);
            Samples result;
            resampler.push(tone(440, count), result);
            EXPECT_EQ(resampler.position(), count * rate / 22050);
            resampler.finish(result);
            EXPECT_EQ(result.size(), count * rate / 22050);
        }
}

TEST(Resampler, sounds_do_not_touch_each_other) {
    const Samples sound = tone(440, 3000);
    tts::Resampler resampler(16000);
    Samples first, second;
    resampler.push(sound, first);
    resampler.finish(first);
    resampler.push(sound, second);
    resampler.finish(second);
    EXPECT_EQ(first, second);
}

TEST(Resampler, loudest_samples_do_not_wrap_around) {
    Samples square(3000);
    for (std::size_t i = 0; i < square.size(); ++i) square[i] = i / 50 % 2 == 0 ? 32767 : -32768;
    const Samples result = resampled(square, 8000);
    for (std::size_t i = 2; i + 2 < result.size(); ++i)
        EXPECT_FALSE(result[i - 1] > 30000 && result[i + 1] > 30000 && result[i] < 0) << i;
}

TEST(OutputStage, silence_around_a_piece_goes_and_inside_it_stays) {
    tts::OutputStage stage(22050);
    stage.begin_piece();
    stage.add(Samples{0, 0, 0}, 1);
    EXPECT_EQ(stage.made(), 0u);
    stage.add(Samples{0, 5, 0, 0}, 1);
    EXPECT_EQ(stage.made(), 3u);  // what is held back counts until the piece ends
    EXPECT_EQ(stage.ready().size(), 1u);
    stage.add(Samples{0, 6, 0}, 1);
    stage.end_piece();
    EXPECT_EQ(stage.made(), 5u);
    EXPECT_EQ(Samples(stage.ready().begin(), stage.ready().end()), (Samples{5, 0, 0, 0, 6}));
}

TEST(OutputStage, silence_without_end_comes_out) {
    tts::OutputStage stage(22050);
    stage.begin_piece();
    stage.add(Samples{1}, 1);
    for (int i = 0; i < 200; ++i) stage.add(Samples(1000, 0), 1);
    EXPECT_GT(stage.ready().size(), 100000u);
}

TEST(OutputStage, gain_is_applied_and_limited) {
    tts::OutputStage stage(22050);
    stage.begin_piece();
    stage.add(Samples{100, -20000, 20000}, 2);
    EXPECT_EQ(Samples(stage.ready().begin(), stage.ready().end()), (Samples{200, -32768, 32767}));
}

TEST(OutputStage, positions_go_on_over_sounds_and_what_is_taken) {
    tts::OutputStage stage(8000);
    stage.begin_piece();
    Samples sound = tone(440, 22052);  // a tone begins with a silent sample
    sound.back() = 1;                  // so that it is not cut
    stage.add(sound, 1);
    stage.end_piece();
    stage.end_sound();
    EXPECT_EQ(stage.made(), 8000u);
    EXPECT_EQ(stage.ready().size(), 8000u);
    stage.take(3000);
    stage.add_silence(22050);
    stage.end_sound();
    EXPECT_EQ(stage.made(), 16000u);
    EXPECT_EQ(stage.taken(), 3000u);
    EXPECT_EQ(stage.ready().size(), 13000u);
    stage.forget();
    EXPECT_EQ(stage.made(), 3000u);
    EXPECT_TRUE(stage.ready().empty());
}
