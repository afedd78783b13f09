// Gains that move and ends that fade.
#include "tts_engine/smooth.h"

#include <gtest/gtest.h>

namespace {

using Samples = std::vector<std::int16_t>;

Samples applied(tts::Gain& gain, const Samples& samples) {
    Samples result;
    gain.apply(samples, result);
    return result;
}

}  // namespace

TEST(Gain, is_applied_and_limited) {
    tts::Gain gain;
    gain.set(2);
    EXPECT_EQ(applied(gain, {100, -20000, 20000}), (Samples{200, -32768, 32767}));
}

TEST(Gain, moves_along_half_a_cosine) {
    tts::Gain gain;
    gain.move_to(0, 4);
    // 1 - (1 - cos(pi * i / 4)) / 2
    EXPECT_EQ(applied(gain, Samples(6, 10000)), (Samples{10000, 8536, 5000, 1464, 0, 0}));
}

TEST(Gain, a_new_goal_starts_from_where_it_is) {
    tts::Gain gain;
    gain.move_to(0, 4);
    EXPECT_EQ(applied(gain, Samples(2, 10000)), (Samples{10000, 8536}));
    gain.move_to(1, 2);  // from one half
    EXPECT_EQ(applied(gain, Samples(3, 10000)), (Samples{5000, 7500, 10000}));
    EXPECT_TRUE(gain.is_one());
}

TEST(Gain, silence_counts_as_time) {
    tts::Gain gain;
    gain.move_to(0, 4);
    gain.skip(2);
    EXPECT_EQ(applied(gain, Samples(1, 10000)), (Samples{5000}));
    gain.skip(1000);
    EXPECT_EQ(applied(gain, Samples(1, 10000)), (Samples{0}));
}

TEST(CutEnd, is_the_last_sound_backwards_as_it_fades) {
    tts::CutEnd end(800);  // 5 ms are 4 samples
    end.begin(Samples{9, 9, 1000, 2000, 3000, 4000});
    Samples rest;
    end.finish(rest);
    // Fading by 1 - (1 - cos(pi * i / 5)) / 2 = 0.9045, 0.6545, 0.3455, 0.0955
    EXPECT_EQ(rest, (Samples{3618, 1964, 691, 95}));
}

TEST(CutEnd, fades_into_what_comes_next) {
    tts::CutEnd end(800);
    end.begin(Samples{1000, 2000, 3000, 4000});
    Samples one{100};
    Samples two{32000, 0};
    Samples three{5, 5};
    end.mix_into(one);
    end.mix_into(two);
    end.mix_into(three);
    // 4000 * 0.9045 + 100 * 0.0955, 3000 * 0.6545 + 32000 * 0.3455, 2000 * 0.3455, 1000 * 0.0955 + 5 * 0.9045
    EXPECT_EQ(one, (Samples{3628}));
    EXPECT_EQ(two, (Samples{13019, 691}));
    EXPECT_EQ(three, (Samples{100, 5}));
}

TEST(CutEnd, of_a_sound_that_ends_next_to_silence_is_nothing) {
    tts::CutEnd end(800);
    end.begin(Samples{4000, 32});
    Samples rest;
    end.finish(rest);
    EXPECT_EQ(rest, Samples{});
    end.begin({});
    end.finish(rest);
    EXPECT_EQ(rest, Samples{});
}

TEST(CutEnd, of_a_short_sound_is_as_short) {
    tts::CutEnd end(800);
    end.begin(Samples{1000});
    Samples rest;
    end.finish(rest);
    EXPECT_EQ(rest, (Samples{500}));
}
