// Bytes of a terminal as keys.
#include "tools/host/keys.h"

#include <gtest/gtest.h>

namespace {

using namespace host;
using Keys = std::vector<Key>;

TEST(Keys, arrows_in_both_modes_of_a_terminal) {
    EXPECT_EQ(keys_in("\x1b[C\x1b[D\x1b[A\x1b[B"),
              (Keys{Key::next_sentence, Key::sentence_before, Key::faster, Key::slower}));
    EXPECT_EQ(keys_in("\x1bOC\x1bOD\x1bOA\x1bOB"),
              (Keys{Key::next_sentence, Key::sentence_before, Key::faster, Key::slower}));
}

TEST(Keys, letters_and_signs) {
    EXPECT_EQ(keys_in("npfs+=-"), (Keys{Key::next_sentence, Key::sentence_before, Key::faster, Key::slower, Key::louder,
                                        Key::louder, Key::quieter}));
}

TEST(Keys, space_q_and_escape_stop) {
    EXPECT_EQ(keys_in(" "), Keys{Key::stop});
    EXPECT_EQ(keys_in("q"), Keys{Key::stop});
    EXPECT_EQ(keys_in("\x1b"), Keys{Key::stop});
}

TEST(Keys, other_bytes_mean_nothing) { EXPECT_EQ(keys_in("\n\xC3\xA9zQ\x7F"), Keys{}); }

// Home, Delete, F5, Ctrl-Right: none of them is Escape and some letters.
TEST(Keys, sequences_of_other_keys_are_passed_over_whole) {
    EXPECT_EQ(keys_in("\x1b[H\x1b[3~\x1b[15~\x1b[1;5Cn"), Keys{Key::next_sentence});
}

TEST(Keys, sequence_that_is_cut_off_is_escape) { EXPECT_EQ(keys_in("n\x1b["), (Keys{Key::next_sentence, Key::stop})); }

TEST(Keys, without_a_terminal_there_are_none) {
#ifndef _WIN32
    // The tests' own terminal, if there is one, is not asked: standard input is not free, standard error no terminal.
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(open_terminal_keys(false)->take(), Keys{});
    ::testing::internal::GetCapturedStderr();
#endif
}

}  // namespace
