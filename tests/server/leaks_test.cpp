// Behind each test of this program: no object or lock of the server lives, no block of it, and no handle or wave of the
// synthesiser.
#include "support/server.h"

namespace {

class LeakCheck : public ::testing::EmptyTestEventListener {
    // What is made once for the whole process must not count for the first test that comes to it: the language's
    // run-time keeps something for each thread on which an exception was thrown.
    void OnTestProgramStart(const ::testing::UnitTest&) override {
        SpeakingObject o;
        Fragment fragment("x");
        fragment.record.ulTextLen = 0x80000000;
        o.speak(&fragment.record);
        forget_log();
    }
    void OnTestStart(const ::testing::TestInfo&) override {
        forget_log();
        blocks_ = server::live_blocks();
    }
    void OnTestEnd(const ::testing::TestInfo& test) override {
        forget_log();
        EXPECT_EQ(server::live_blocks(), blocks_) << "blocks left by " << test.name();
        EXPECT_EQ(server::can_unload_now(), S_OK) << "objects or locks left by " << test.name();
        EXPECT_EQ(scripted_live(), 0u) << "handles of the synthesiser left by " << test.name();
    }
    // What the linked server's log keeps was allocated while the server ran.
    static void forget_log() {
        server::take_log();
        server::take_message_boxes();
    }

    long blocks_ = 0;
};

[[maybe_unused]] const bool appended = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new LeakCheck);
    return true;
}();

}  // namespace
