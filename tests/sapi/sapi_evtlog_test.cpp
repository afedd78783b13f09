// Entries in the event log.

#include "sapi/sapi_evtlog.h"

#include <gtest/gtest.h>

TEST(EventIds, numbers_with_the_severity_error) {
    EXPECT_EQ(EVENT_DATA_MISSING, 0xCFFF0101u);
    EXPECT_EQ(EVENT_ENVIRONMENT, 0xCFFF0102u);
    EXPECT_EQ(EVENT_ENGINE_CREATE, 0xCFFF0201u);
    EXPECT_EQ(EVENT_STREAMER_START, 0xCFFF0202u);
    EXPECT_EQ(EVENT_VOICE_LOAD, 0xCFFF0204u);
    EXPECT_EQ(EVENT_CATEGORY_SYSTEM, 1);
    EXPECT_EQ(EVENT_CATEGORY_SYNTHESISER, 2);
    EXPECT_EQ(EVENTLOG_ERROR_TYPE, 1);
}

#ifndef _WIN32

#include "platform/testing.h"

namespace {

using platform_testing::LogEntry;

class EventLogEntry : public ::testing::Test {
protected:
    EventLogEntry() {
        platform_testing::reset();
        platform_testing::capture_log();
    }
    // The log is closed again for every entry.
    ~EventLogEntry() override {
        EXPECT_EQ(platform_testing::live_log_handles(), 0);
        platform_testing::reset();
    }

    LogEntry only_entry() {
        const auto entries = platform_testing::captured_log();
        EXPECT_EQ(entries.size(), 1u);
        return entries.empty() ? LogEntry() : entries[0];
    }
};

}  // namespace

TEST_F(EventLogEntry, plain_entry_has_no_string) {
    EXPECT_NE(log_event(1, 1, 0xCFFF0102), 0);
    const LogEntry entry = only_entry();
    EXPECT_EQ(entry.source, u"Quillmark NELVA SAPI (OEM)");
    EXPECT_EQ(entry.type, 1);
    EXPECT_EQ(entry.category, 1);
    EXPECT_EQ(entry.event_id, 0xCFFF0102u);
    EXPECT_TRUE(entry.strings.empty());
    EXPECT_FALSE(entry.wide);
}

TEST_F(EventLogEntry, narrow_entry_has_its_one_string) {
    EXPECT_NE(log_eventA(1, 1, 0xCFFF0101, "Attributes\\Language"), 0);
    const LogEntry entry = only_entry();
    EXPECT_EQ(entry.source, u"Quillmark NELVA SAPI (OEM)");
    EXPECT_EQ(entry.category, 1);
    EXPECT_EQ(entry.event_id, 0xCFFF0101u);
    EXPECT_EQ(entry.strings, std::vector<std::string>{"Attributes\\Language"});
    EXPECT_FALSE(entry.wide);
}

TEST_F(EventLogEntry, wide_entry_has_its_one_string) {
    EXPECT_NE(log_eventW(2, 2, 0xCFFF0204, u"caf\u00E9"), 0);
    const LogEntry entry = only_entry();
    EXPECT_EQ(entry.source, u"Quillmark NELVA SAPI (OEM)");
    EXPECT_EQ(entry.type, 2);
    EXPECT_EQ(entry.category, 2);
    EXPECT_EQ(entry.event_id, 0xCFFF0204u);
    EXPECT_EQ(entry.strings, std::vector<std::string>{"caf\xC3\xA9"});
    EXPECT_TRUE(entry.wide);
}

TEST_F(EventLogEntry, further_arguments_are_not_sent) {
    log_eventA(1, 1, 7, "one", "two");
    EXPECT_EQ(only_entry().strings, std::vector<std::string>{"one"});
}

TEST_F(EventLogEntry, log_that_does_not_open_gives_zero) {
    platform_testing::fail_log_open(true);
    EXPECT_EQ(log_event(1, 1, 7), 0);
    EXPECT_EQ(log_eventA(1, 1, 7, "x"), 0);
    EXPECT_EQ(log_eventW(1, 1, 7, u"x"), 0);
    EXPECT_TRUE(platform_testing::captured_log().empty());
}

TEST_F(EventLogEntry, report_that_fails_is_the_result_and_the_log_is_closed) {
    platform_testing::fail_log_report(true);
    EXPECT_EQ(log_event(1, 1, 7), 0);
    EXPECT_EQ(log_eventA(1, 1, 7, "x"), 0);
    EXPECT_EQ(log_eventW(1, 1, 7, u"x"), 0);
    EXPECT_EQ(platform_testing::live_log_handles(), 0);
}

TEST_F(EventLogEntry, each_entry_opens_the_log_for_itself) {
    platform_testing::fail_log_open(true);
    EXPECT_EQ(log_event(1, 1, 7), 0);
    platform_testing::fail_log_open(false);
    EXPECT_NE(log_event(1, 1, 8), 0);
    EXPECT_EQ(only_entry().event_id, 8u);
}

#else

// The system takes entries of a source that nobody registered.
TEST(EventLogEntry, system_takes_all_three_kinds) {
    EXPECT_NE(log_event(1, 1, 0xCFFF0102), 0);
    EXPECT_NE(log_eventA(1, 1, 0xCFFF0101, "Attributes"), 0);
    EXPECT_NE(log_eventW(1, 1, 0xCFFF0102, L"text"), 0);
}

#endif
