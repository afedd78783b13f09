// Positions in runs, against the same written out.

#include "fragments/host_positions.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace fragments_detail;

using Positions = std::vector<std::uint32_t>;

}  // namespace

TEST(HostPositions, empty_ones_hold_the_end) {
    HostPositions positions;
    EXPECT_EQ(positions.to_vector(), Positions{0});
    positions.set_end(7);
    EXPECT_EQ(positions.to_vector(), Positions{7});
}

TEST(HostPositions, each_length_of_character) {
    HostPositions positions;
    positions.add_characters(10, 2, 1);
    positions.add_characters(20, 2, 2);
    positions.add_characters(30, 2, 3);
    positions.add_characters(40, 2, 4);
    positions.add_bytes(50, 5);
    positions.set_end(60);
    EXPECT_EQ(positions.to_vector(), (Positions{10, 11, 20, 20, 21, 21, 30, 30, 30, 31, 31, 31, 40,
                                                40, 40, 40, 42, 42, 42, 42, 50, 50, 50, 50, 50, 60}));
}

TEST(HostPositions, none_added_changes_nothing) {
    HostPositions positions;
    positions.add_characters(1, 0, 1);
    positions.add_bytes(2, 0);
    EXPECT_EQ(positions.to_vector(), Positions{0});
}

TEST(HostPositions, runs_that_do_not_go_on_stay_apart) {
    HostPositions positions;
    positions.add_characters(1, 2, 1);
    positions.add_characters(3, 1, 1);
    positions.add_characters(9, 1, 1);
    positions.add_bytes(9, 1);
    positions.add_bytes(9, 1);
    positions.add_bytes(8, 1);
    EXPECT_EQ(positions.to_vector(), (Positions{1, 2, 3, 9, 9, 9, 8, 0}));
}

TEST(HostPositions, positions_wrap) {
    HostPositions positions;
    positions.add_characters(0xFFFFFFFE, 2, 4);
    positions.add_characters(2, 1, 4);
    EXPECT_EQ(positions.to_vector(),
              (Positions{0xFFFFFFFE, 0xFFFFFFFE, 0xFFFFFFFE, 0xFFFFFFFE, 0, 0, 0, 0, 2, 2, 2, 2, 0}));
}

TEST(HostPositions, restoring_takes_back_runs_and_what_was_joined) {
    HostPositions positions;
    const HostPositions::Savepoint nothing = positions.save();
    positions.add_characters(1, 1, 1);
    const HostPositions::Savepoint one = positions.save();
    positions.add_characters(2, 1, 1);
    positions.add_characters(3, 1, 2);
    positions.restore(one);
    EXPECT_EQ(positions.to_vector(), (Positions{1, 0}));
    positions.restore(nothing);
    EXPECT_EQ(positions.to_vector(), Positions{0});
}

TEST(HostPositionCursor, stays_at_the_end) {
    HostPositions positions;
    positions.add_characters(1, 1, 1);
    positions.set_end(5);
    HostPositionCursor cursor(positions);
    EXPECT_EQ(cursor.next(), 1u);
    cursor.skip_one();
    EXPECT_EQ(cursor.next(), 5u);
    cursor.skip_one();
    Positions taken(3, 99);
    cursor.take(taken.data(), 3);
    EXPECT_EQ(taken, (Positions{5, 5, 5}));
    EXPECT_EQ(cursor.end(), 5u);
}

TEST(HostPositionCursor, reads_in_any_steps_what_is_written_out) {
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        HostPositions positions;
        for (unsigned int i = random() % 8; i > 0; --i) {
            const std::uint32_t first = random() % 3 == 0 ? static_cast<std::uint32_t>(random()) : 100;
            const std::size_t count = random() % 3 == 0 ? random() % 70 : random() % 4;
            const auto bytes = static_cast<unsigned int>(random() % 5);
            if (bytes == 0) positions.add_bytes(first, count);
            if (bytes != 0) positions.add_characters(first, count, bytes);
        }
        const Positions all = positions.to_vector();
        HostPositionCursor cursor(positions);
        std::size_t at = 0;
        while (at < all.size() + 5) {
            ASSERT_EQ(cursor.next(), at < all.size() ? all[at] : all.back());
            const std::size_t step = random() % 12;
            Positions taken(step + 1, 12345);
            cursor.take(taken.data(), step);
            for (std::size_t k = 0; k < step; ++k) ASSERT_EQ(taken[k], all[std::min(at + k, all.size() - 1)]);
            ASSERT_EQ(taken[step], 12345u) << "written behind the end";
            at += step;
            if (random() % 2 == 0) {
                cursor.skip_one();
                ++at;
            }
        }
    }
}
