// The event log's stand-in.

#ifndef _WIN32

#include <gtest/gtest.h>

#include "platform/testing.h"

namespace {

class EventLog : public ::testing::Test {
protected:
    EventLog() {
        platform_testing::reset();
        platform_testing::capture_log();
    }
    ~EventLog() override {
        EXPECT_EQ(platform_testing::live_log_handles(), 0);
        platform_testing::reset();
    }
};

DWORD last_error_of(BOOL result) {
    EXPECT_EQ(result, FALSE);
    return GetLastError();
}

}  // namespace

TEST_F(EventLog, narrow_entry_reaches_the_sink_whole) {
    HANDLE log = OpenEventLogW(nullptr, u"Source \u00E9");
    LPCSTR strings[] = {"Attributes\\Name"};
    EXPECT_NE(ReportEventA(log, EVENTLOG_ERROR_TYPE, 2, 0xCFFF0101, nullptr, 1, 0, strings, nullptr), FALSE);
    EXPECT_NE(CloseEventLog(log), FALSE);
    const auto entries = platform_testing::captured_log();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].source, u"Source \u00E9");
    EXPECT_EQ(entries[0].type, 1);
    EXPECT_EQ(entries[0].category, 2);
    EXPECT_EQ(entries[0].event_id, 0xCFFF0101u);
    EXPECT_FALSE(entries[0].wide);
    EXPECT_EQ(entries[0].strings, std::vector<std::string>{"Attributes\\Name"});
}

TEST_F(EventLog, wide_entry_arrives_as_utf8) {
    HANDLE log = OpenEventLogW(nullptr, u"s");
    LPCWSTR strings[] = {u"caf\u00E9", u"\U0001F600"};
    EXPECT_NE(ReportEventW(log, EVENTLOG_WARNING_TYPE, 1, 7, nullptr, 2, 0, strings, nullptr), FALSE);
    CloseEventLog(log);
    const auto entries = platform_testing::captured_log();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_TRUE(entries[0].wide);
    EXPECT_EQ(entries[0].strings, (std::vector<std::string>{"caf\xC3\xA9", "\xF0\x9F\x98\x80"}));
}

TEST_F(EventLog, entry_without_strings) {
    HANDLE log = OpenEventLogW(nullptr, u"s");
    EXPECT_NE(ReportEventA(log, 1, 1, 7, nullptr, 0, 0, nullptr, nullptr), FALSE);
    CloseEventLog(log);
    EXPECT_TRUE(platform_testing::captured_log().at(0).strings.empty());
    EXPECT_TRUE(platform_testing::captured_log().empty());
}

TEST_F(EventLog, null_string_is_refused) {
    HANDLE log = OpenEventLogW(nullptr, u"s");
    LPCSTR strings[] = {nullptr};
    EXPECT_EQ(last_error_of(ReportEventA(log, 1, 1, 7, nullptr, 1, 0, strings, nullptr)), 87u);
    EXPECT_EQ(last_error_of(ReportEventA(log, 1, 1, 7, nullptr, 1, 0, nullptr, nullptr)), 87u);
    CloseEventLog(log);
    EXPECT_TRUE(platform_testing::captured_log().empty());
}

TEST_F(EventLog, closed_or_foreign_handle_is_refused) {
    HANDLE log = OpenEventLogW(nullptr, u"s");
    CloseEventLog(log);
    int other = 0;
    EXPECT_EQ(last_error_of(ReportEventA(&other, 1, 1, 7, nullptr, 0, 0, nullptr, nullptr)), 6u);
    EXPECT_EQ(last_error_of(CloseEventLog(log)), 6u);
}

TEST_F(EventLog, other_machine_or_no_source_is_not_opened) {
    EXPECT_EQ(OpenEventLogW(u"server", u"s"), nullptr);
    EXPECT_EQ(OpenEventLogW(nullptr, nullptr), nullptr);
    EXPECT_EQ(OpenEventLogW(nullptr, u""), nullptr);
}

TEST_F(EventLog, opening_fails_on_request) {
    platform_testing::fail_log_open(true);
    EXPECT_EQ(OpenEventLogW(nullptr, u"s"), nullptr);
    platform_testing::fail_log_open(false);
    HANDLE log = OpenEventLogW(nullptr, u"s");
    EXPECT_NE(log, nullptr);
    CloseEventLog(log);
}

TEST_F(EventLog, reporting_fails_on_request) {
    HANDLE log = OpenEventLogW(nullptr, u"s");
    platform_testing::fail_log_report(true);
    EXPECT_EQ(ReportEventA(log, 1, 1, 7, nullptr, 0, 0, nullptr, nullptr), FALSE);
    EXPECT_TRUE(platform_testing::captured_log().empty());
    CloseEventLog(log);
}

TEST_F(EventLog, sink_decides_what_the_report_gives) {
    platform_testing::set_log_sink([](const platform_testing::LogEntry& entry) { return entry.event_id == 1; });
    HANDLE log = OpenEventLogW(nullptr, u"s");
    EXPECT_NE(ReportEventA(log, 1, 1, 1, nullptr, 0, 0, nullptr, nullptr), FALSE);
    EXPECT_EQ(ReportEventA(log, 1, 1, 2, nullptr, 0, 0, nullptr, nullptr), FALSE);
    CloseEventLog(log);
}

TEST_F(EventLog, open_handles_are_counted) {
    HANDLE log = OpenEventLogW(nullptr, u"s");
    EXPECT_EQ(platform_testing::live_log_handles(), 1);
    CloseEventLog(log);
    EXPECT_EQ(platform_testing::live_log_handles(), 0);
}

#endif
