// Keys as actions that an engine asks for.
#include "tools/host/live_controls.h"

#include <gtest/gtest.h>

namespace {

using namespace host;

TEST(LiveControls, changes_are_told_once) {
    LiveControls controls(0, 100);
    controls.press(Key::slower);
    controls.press(Key::quieter);
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_RATE | SPVES_VOLUME));
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_CONTINUE));
    EXPECT_EQ(controls.rate(), -1);
    EXPECT_EQ(controls.volume(), 90);
}

TEST(LiveControls, rate_and_volume_stay_in_sapis_range) {
    LiveControls controls(9, 15);
    for (int i = 0; i < 3; ++i) controls.press(Key::faster);
    for (int i = 0; i < 3; ++i) controls.press(Key::quieter);
    EXPECT_EQ(controls.rate(), 10);
    EXPECT_EQ(controls.volume(), 0);
    for (int i = 0; i < 30; ++i) controls.press(Key::slower);
    for (int i = 0; i < 30; ++i) controls.press(Key::louder);
    EXPECT_EQ(controls.rate(), -10);
    EXPECT_EQ(controls.volume(), 100);
}

TEST(LiveControls, skips_add_up_until_they_are_made) {
    LiveControls controls(0, 100);
    controls.press(Key::sentence_before);
    controls.press(Key::sentence_before);
    controls.press(Key::next_sentence);
    EXPECT_EQ(controls.skip(), -1);
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_SKIP));
    controls.complete_skip();
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_CONTINUE));
}

TEST(LiveControls, there_and_back_is_no_skip) {
    LiveControls controls(0, 100);
    controls.press(Key::next_sentence);
    controls.press(Key::sentence_before);
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_CONTINUE));
}

TEST(LiveControls, stop_stays) {
    LiveControls controls(0, 100);
    EXPECT_FALSE(controls.is_stopped());
    controls.press(Key::stop);
    EXPECT_TRUE(controls.is_stopped());
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_ABORT));
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_ABORT));
}

}  // namespace
