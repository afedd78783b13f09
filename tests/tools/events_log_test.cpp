// The lines of the events file, with keys in their order.
#include "tools/host/events_log.h"

#include <gtest/gtest.h>

#include "temporary_folder.h"

namespace {

using namespace host;

const HostText& sample() {
    // H0 i1 blank2 \u00E93 pair4-5 blank6 x7
    static const HostText text(NELVA_WIDE("Hi \u00E9\U0001F600 x"));
    return text;
}

SPEVENT event_of(SPEVENTENUM id, ULONGLONG offset, WPARAM wparam, LPARAM lparam) {
    SPEVENT event{};
    event.eEventId = id;
    event.ullAudioStreamOffset = offset;
    event.wParam = wparam;
    event.lParam = lparam;
    return event;
}

TEST(EventsLog, word_has_its_range_and_its_text) {
    EXPECT_EQ(event_line(event_of(SPEI_WORD_BOUNDARY, 4410, 3, 3), sample()),
              "{\"event\":\"word\",\"stream_offset\":4410,\"text_offset\":3,\"text_length\":3,"
              "\"text\":\"\xC3\xA9\xF0\x9F\x98\x80\"}");
}

TEST(EventsLog, sentence_is_like_a_word) {
    EXPECT_EQ(event_line(event_of(SPEI_SENTENCE_BOUNDARY, 0, 2, 0), sample()),
              R"({"event":"sentence","stream_offset":0,"text_offset":0,"text_length":2,"text":"Hi"})");
}

TEST(EventsLog, bookmark_has_its_name) {
    WCHAR name[] = {'a', '"', 0};
    SPEVENT event = event_of(SPEI_TTS_BOOKMARK, 2, 0, reinterpret_cast<LPARAM>(name));
    event.elParamType = SPET_LPARAM_IS_STRING;
    EXPECT_EQ(event_line(event, sample()), R"({"event":"bookmark","stream_offset":2,"name":"a\""})");
}

TEST(EventsLog, bookmark_without_a_string_has_an_empty_name) {
    EXPECT_EQ(event_line(event_of(SPEI_TTS_BOOKMARK, 2, 0, 0), sample()),
              R"({"event":"bookmark","stream_offset":2,"name":""})");
}

TEST(EventsLog, viseme_has_number_next_and_duration) {
    // The low word of wParam is the next viseme, the one above it the duration.
    EXPECT_EQ(event_line(event_of(SPEI_VISEME, 6, 100u << 16 | 5u, 21), sample()),
              R"({"event":"viseme","stream_offset":6,"viseme":21,"next":5,"duration_ms":100})");
}

TEST(EventsLog, other_events_are_shown_by_number) {
    EXPECT_EQ(event_line(event_of(SPEI_TTS_PRIVATE, 6, 1, 2), sample()),
              R"({"event":"other","stream_offset":6,"id":15})");
}

TEST(EventsLog, audio_is_its_byte_count) { EXPECT_EQ(write_line(4410), R"({"write":4410})"); }

TEST(EventsLog, range_that_ends_before_it_begins_has_no_text) {
    EXPECT_EQ(event_line(event_of(SPEI_WORD_BOUNDARY, 0, static_cast<WPARAM>(-2), 2), sample()),
              R"({"event":"word","stream_offset":0,"text_offset":2,"text_length":18446744073709551614,"text":""})");
}

TEST(EventsLog, range_through_half_a_pair_is_still_utf8) {
    EXPECT_EQ(event_line(event_of(SPEI_WORD_BOUNDARY, 0, 1, 4), sample()),
              "{\"event\":\"word\",\"stream_offset\":0,\"text_offset\":4,\"text_length\":1,\"text\":\"\xEF\xBF\xBD\"}");
}

TEST(EventsLog, line_ends_and_controls_are_escaped) {
    EXPECT_EQ(event_line(event_of(SPEI_WORD_BOUNDARY, 0, 3, 0), HostText(WideString{'\n', 0, '\\'})),
              R"({"event":"word","stream_offset":0,"text_offset":0,"text_length":3,"text":"\n\u0000\\"})");
}

TEST(EventsLog, file_has_one_line_for_each_in_order) {
    const TemporaryFolder folder;
    EventsLog log(OutputFile(folder.file("e")), sample());
    EXPECT_EQ(log.event(event_of(SPEI_WORD_BOUNDARY, 0, 2, 0)), S_OK);
    EXPECT_EQ(log.audio("abcd", 4), S_OK);
    log.finish();
    EXPECT_EQ(read_file(folder.file("e")),
              "{\"event\":\"word\",\"stream_offset\":0,\"text_offset\":0,\"text_length\":2,\"text\":\"Hi\"}\n"
              "{\"write\":4}\n");
}

}  // namespace
