// Measuring on samples alone.
#include "tools/listening/sound.h"

#include <gtest/gtest.h>

using namespace listening;

TEST(Sound, parts_at_the_first_difference) {
    EXPECT_EQ(first_difference({1, 2, 3}, {1, 2, 4}), 2u);
    EXPECT_EQ(first_difference({1, 2, 3}, {1, 2}), 2u);
    EXPECT_EQ(first_difference({1, 2}, {1, 2}), 2u);
    EXPECT_EQ(first_difference({}, {1}), 0u);
}

TEST(Sound, is_heard_from_one_hundred_on) {
    EXPECT_EQ(sounding_spans({0, 99, -99}, 1), (std::vector<Span>{}));
    EXPECT_EQ(sounding_spans({0, 100, -32768, 0}, 1), (std::vector<Span>{{1, 3}}));
}

TEST(Sound, goes_on_over_gaps_shorter_than_the_given_one) {
    const Samples samples = {500, 0, 0, 500, 0, 0, 0, 500};
    EXPECT_EQ(sounding_spans(samples, 3), (std::vector<Span>{{0, 4}, {7, 8}}));
    EXPECT_EQ(sounding_within(samples, {0, 8}, 3), 5u);
    EXPECT_EQ(sounding_within(samples, {2, 8}, 3), 3u);
}

TEST(Sound, pauses_between_sounds_alone_count) {
    EXPECT_EQ(longest_pause({0, 0, 0, 0, 500, 0, 0, 500, 0, 500, 0, 0, 0}), 2u);
    EXPECT_EQ(longest_pause({0, 0, 0}), 0u);
}

TEST(Sound, steepest_step_is_inside_the_range) {
    const Samples samples = {0, 1000, 900, 905, 5};
    EXPECT_EQ(steepest_step(samples, {0, 5}), 1000);
    EXPECT_EQ(steepest_step(samples, {1, 4}), 100);
    EXPECT_EQ(steepest_step(samples, {2, 100}), 900);
    EXPECT_EQ(steepest_step({-32768, 32767}, {0, 2}), 65535);
    EXPECT_EQ(steepest_step(samples, {9, 12}), 0);
}
