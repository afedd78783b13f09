// The progress line.
#include "tools/host/progress.h"

#include <gtest/gtest.h>

#include "temporary_folder.h"
#include "tools/host/files.h"

namespace {

using namespace host;

SPEVENT event_of(SPEVENTENUM id, WPARAM length, LPARAM offset) {
    SPEVENT event{};
    event.eEventId = id;
    event.wParam = length;
    event.lParam = offset;
    return event;
}

class ProgressLine : public ::testing::Test {
protected:
    Progress make(std::uint32_t bytes_per_second) {
        return Progress(terminal.get(), text, bytes_per_second, [this] { return now; });
    }
    std::string drawn() {
        std::fflush(terminal.get());
        return read_file(folder.file("tty"));
    }

    const TemporaryFolder folder;
    OutputFile terminal{folder.file("tty")};
    HostText text{NELVA_WIDE("Hello\nworld")};
    double now = 100;
};

TEST_F(ProgressLine, tells_sentence_seconds_speed_and_word) {
    Progress progress = make(1000);
    progress.event(event_of(SPEI_SENTENCE_BOUNDARY, 11, 0));
    progress.event(event_of(SPEI_WORD_BOUNDARY, 5, 0));
    progress.audio("", 3000);
    now = 102;
    EXPECT_EQ(progress.line(), "sentence 1, 3.0 s, 1.5 times real time: Hello");
}

TEST_F(ProgressLine, without_a_format_there_are_no_seconds) {
    Progress progress = make(0);
    progress.audio("", 3000);
    now = 102;
    EXPECT_EQ(progress.line(), "sentence 0");
}

TEST_F(ProgressLine, word_stays_on_its_line_and_short) {
    Progress progress = make(0);
    progress.event(event_of(SPEI_WORD_BOUNDARY, 11, 0));
    EXPECT_EQ(progress.line(), "sentence 0: Hello world");
    text = HostText(WideString(100, 'x'));
    progress.event(event_of(SPEI_WORD_BOUNDARY, 100, 0));
    EXPECT_EQ(progress.line(), "sentence 0: " + std::string(40, 'x'));
}

TEST_F(ProgressLine, is_drawn_at_most_ten_times_a_second) {
    Progress progress = make(1000);
    now += 0.05;
    progress.audio("", 100);
    EXPECT_EQ(drawn(), "");
    now += 0.05001;
    progress.audio("", 100);
    progress.audio("", 100);
    EXPECT_EQ(drawn(), "\r\x1b[Ksentence 0, 0.2 s, 2.0 times real time");
}

TEST_F(ProgressLine, end_shows_the_totals_and_ends_the_line) {
    Progress progress = make(1000);
    progress.event(event_of(SPEI_WORD_BOUNDARY, 5, 0));
    progress.audio("", 1000);
    now += 0.05;
    progress.finish();
    EXPECT_EQ(drawn(), "\r\x1b[Ksentence 0, 1.0 s, 20.0 times real time\n");
}

TEST_F(ProgressLine, file_is_no_terminal) { EXPECT_FALSE(is_terminal(terminal.get())); }

}  // namespace
