// The output queue: what is held, what goes through, and in which order it reaches the site.
#include "sapi/tts_sapi_outqueue.h"

#include "support/test_object.h"
#ifndef _WIN32
#include "platform/testing.h"
#endif

namespace {

using Lines = std::vector<std::string>;

struct Queue : TestObject {
    HRESULT viseme(ULONGLONG offset, LPARAM number) {
        SPEVENT event = sapi_event(SPEI_VISEME, offset, 0, number);
        return TTS_SAPI_outqueue_put_event(self, &event);
    }
    HRESULT word(ULONGLONG offset) {
        SPEVENT event = sapi_event(SPEI_WORD_BOUNDARY, offset, 3, 7);
        return TTS_SAPI_outqueue_put_event(self, &event);
    }
    HRESULT bookmark(ULONGLONG offset, const std::string& name) {
        SPEVENT event = bookmark_event(offset, name);
        return TTS_SAPI_outqueue_put_event(self, &event);
    }
    HRESULT audio(std::size_t bytes) {
        const std::vector<unsigned char> data(bytes, 1);
        return TTS_SAPI_outqueue_put_audio(self, data.data(), bytes);
    }
    ~Queue() { TTS_SAPI_outqueue_free(self); }
};

TEST(Outqueue, audio_with_no_viseme_held_goes_straight_to_the_site) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    EXPECT_EQ(q.audio(100), S_OK);
    EXPECT_EQ(q.site.log, Lines{"write 100"});
    EXPECT_EQ(q.self->audio_buf, nullptr);
    EXPECT_EQ(q.self->event_buf, nullptr);
}

TEST(Outqueue, events_but_visemes_go_straight_to_the_site) {
    Queue q;
    EXPECT_EQ(q.word(10), S_OK);
    EXPECT_EQ(q.bookmark(20, "here"), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 5 at 10: 3 7", "event 4 at 20: 0 here"}));
    EXPECT_EQ(q.self->event_buf, nullptr);
}

TEST(Outqueue, viseme_waits_for_the_next_and_takes_duration_and_number_from_it) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    EXPECT_EQ(q.viseme(0, 3), S_OK);
    EXPECT_TRUE(q.site.log.empty());
    EXPECT_EQ(q.viseme(3200, 5), S_OK);
    // 3200 bytes of 32000 a second are 100 ms: 100 in the upper and 5 in the lower 16 bits.
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: " + std::to_string((100 << 16) | 5) + " 3"}));
    EXPECT_EQ(q.self->event_count, 1u);
}

TEST(Outqueue, viseme_before_silence_gets_next_zero) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    q.viseme(3200, 0);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: " + std::to_string(100 << 16) + " 3"}));
}

TEST(Outqueue, next_viseme_number_is_cut_to_its_low_byte) {
    Queue q;
    q.self->bytes_per_sec = 1000;
    q.viseme(0, 3);
    q.viseme(2, 0x1205);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: " + std::to_string((2 << 16) | 5) + " 3"}));
}

TEST(Outqueue, audio_behind_a_held_viseme_is_held_and_leaves_behind_it) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    EXPECT_EQ(q.audio(1600), S_OK);
    EXPECT_EQ(q.audio(1600), S_OK);
    EXPECT_TRUE(q.site.log.empty());
    EXPECT_EQ(q.self->audio_len, 3200u);
    EXPECT_EQ(q.self->audio_size, 16000u);
    EXPECT_EQ(q.viseme(3200, 5), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: " + std::to_string((100 << 16) | 5) + " 3", "write 3200"}));
    EXPECT_EQ(q.self->audio_len, 0u);
}

TEST(Outqueue, last_viseme_gets_its_duration_from_the_audio_held_behind_it) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    q.audio(6400);
    EXPECT_EQ(TTS_SAPI_outqueue_flush(q.self), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: " + std::to_string(200 << 16) + " 3", "write 6400"}));
}

TEST(Outqueue, more_than_half_a_second_releases_the_viseme_and_then_passes_through) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    EXPECT_EQ(q.audio(16000), S_OK);
    EXPECT_TRUE(q.site.log.empty());
    EXPECT_EQ(q.audio(2), S_OK);
    EXPECT_EQ(q.audio(4), S_OK);
    EXPECT_EQ(q.site.log,
              (Lines{"event 8 at 0: " + std::to_string(500 << 16) + " 3", "write 16000", "write 2", "write 4"}));
}

TEST(Outqueue, unknown_rate_releases_the_viseme_with_the_first_audio_and_duration_zero) {
    Queue q;
    q.viseme(0, 3);
    EXPECT_EQ(q.audio(2), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: 0 3", "write 2"}));
    EXPECT_EQ(q.self->audio_size, 0u);
}

TEST(Outqueue, unknown_rate_gives_duration_zero_between_visemes) {
    Queue q;
    q.viseme(0, 3);
    q.viseme(4000, 5);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: 5 3"}));
}

TEST(Outqueue, unknown_rate_gives_two_hundred_when_audio_is_held) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    q.audio(64);
    q.self->bytes_per_sec = 0;
    EXPECT_EQ(TTS_SAPI_outqueue_flush_events(q.self), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: " + std::to_string(200 << 16) + " 3"}));
}

TEST(Outqueue, word_and_bookmark_overtake_a_held_viseme_and_its_audio) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    q.audio(320);
    EXPECT_EQ(q.word(40), S_OK);
    EXPECT_EQ(q.bookmark(50, "b"), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 5 at 40: 3 7", "event 4 at 50: 0 b"}));
    EXPECT_EQ(q.self->event_count, 1u);
    EXPECT_EQ(q.self->audio_len, 320u);
}

TEST(Outqueue, durations_wrap_at_sixteen_bits) {
    Queue q;
    q.self->bytes_per_sec = 1000;
    q.viseme(0, 3);
    q.viseme(65537, 0);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: " + std::to_string(1 << 16) + " 3"}));
}

TEST(Outqueue, offset_that_falls_back_wraps_as_unsigned) {
    Queue q;
    q.self->bytes_per_sec = 1000;
    q.viseme(10, 3);
    q.viseme(9, 5);
    // 2^64 - 1 bytes: times 1000 is 2^64 - 1000, divided by 1000 is 18446744073709550, whose low 16 bits are counted.
    const std::uint64_t duration = (0 - std::uint64_t{1000}) / 1000 & 0xFFFF;
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 10: " + std::to_string((duration << 16) | 5) + " 3"}));
}

TEST(Outqueue, nothing_held_flushes_to_nothing) {
    Queue q;
    EXPECT_EQ(TTS_SAPI_outqueue_flush_events(q.self), S_OK);
    EXPECT_EQ(TTS_SAPI_outqueue_flush(q.self), S_OK);
    EXPECT_TRUE(q.site.log.empty());
}

TEST(Outqueue, audio_of_no_bytes_behind_a_viseme_releases_it) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    EXPECT_EQ(q.audio(0), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: 0 3", "write 0"}));
}

TEST(Outqueue, success_codes_of_write_are_handed_on) {
    Queue q;
    q.site.results["Write"] = {0, SP_AUDIO_STOPPED};
    EXPECT_EQ(q.audio(2), SP_AUDIO_STOPPED);
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 1);
    q.audio(2);
    EXPECT_EQ(TTS_SAPI_outqueue_flush(q.self), SP_AUDIO_STOPPED);
}

TEST(Outqueue, failing_write_gives_its_failure_and_the_bytes_count_as_gone) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.site.results["Write"] = {0, E_FAIL};
    q.viseme(0, 3);
    q.audio(2);
    EXPECT_EQ(TTS_SAPI_outqueue_flush(q.self), E_FAIL);
    EXPECT_EQ(q.self->audio_len, 0u);
}

TEST(Outqueue, failing_event_gives_its_failure_and_is_cleared) {
    Queue q;
    q.site.results["AddEvents"] = {0, E_ABORT};
    SPEVENT event = bookmark_event(0, "x");
    EXPECT_EQ(TTS_SAPI_outqueue_put_event(q.self, &event), E_ABORT);
    EXPECT_EQ(event.eEventId, SPEI_UNDEFINED);
    EXPECT_EQ(event.elParamType, SPET_LPARAM_IS_UNDEFINED);
}

TEST(Outqueue, failing_delivery_of_the_held_viseme_loses_it_and_clears_the_new_event) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    q.audio(2);
    q.site.results["AddEvents"] = {0, E_ABORT};
    SPEVENT next = sapi_event(SPEI_VISEME, 2, 0, 5);
    EXPECT_EQ(TTS_SAPI_outqueue_put_event(q.self, &next), E_ABORT);
    EXPECT_EQ(next.eEventId, SPEI_UNDEFINED);
    EXPECT_EQ(q.self->event_count, 0u);
    EXPECT_EQ(q.self->audio_len, 2u);
}

TEST(Outqueue, failing_event_in_a_flush_drops_the_audio) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    q.audio(2);
    q.site.results["AddEvents"] = {0, E_ABORT};
    EXPECT_EQ(TTS_SAPI_outqueue_flush(q.self), E_ABORT);
    EXPECT_EQ(q.self->audio_len, 0u);
    EXPECT_EQ(q.site.calls["Write"], 0);
}

TEST(Outqueue, event_behind_a_failed_flush_still_goes_out_and_its_result_counts) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    q.audio(2);
    q.site.results["Write"] = {0, E_FAIL};
    EXPECT_EQ(q.viseme(2, 5), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: 5 3", "write 2", "event 8 at 2: 0 5"}));
    EXPECT_EQ(q.self->event_count, 0u);
}

TEST(Outqueue, full_event_buffer_releases_the_held_viseme_by_any_event) {
    Queue q;
    q.self->bytes_per_sec = 1000;
    q.viseme(0, 3);
    q.self->event_size = 2;
    EXPECT_EQ(q.word(7), S_OK);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: " + std::to_string(7 << 16) + " 3", "event 5 at 7: 3 7"}));
}

TEST(Outqueue, flush_keeps_a_parameter_that_is_set) {
    Queue q;
    q.self->bytes_per_sec = 1000;
    SPEVENT event = sapi_event(SPEI_VISEME, 0, 77, 3);
    TTS_SAPI_outqueue_put_event(q.self, &event);
    TTS_SAPI_outqueue_flush(q.self);
    EXPECT_EQ(q.site.log, (Lines{"event 8 at 0: 77 3"}));
}

TEST(Outqueue, free_drops_what_is_held_with_no_call_of_the_site) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    q.audio(2);
    TTS_SAPI_outqueue_free(q.self);
    EXPECT_TRUE(q.site.log.empty());
    EXPECT_EQ(q.self->audio_buf, nullptr);
    EXPECT_EQ(q.self->event_buf, nullptr);
    EXPECT_EQ(q.self->event_count + q.self->event_size + q.self->audio_len + q.self->audio_size, 0u);
    EXPECT_EQ(q.self->bytes_per_sec, 32000u);
}

TEST(Outqueue, event_buffer_has_twenty_slots_from_the_first_viseme_on) {
    Queue q;
    EXPECT_EQ(q.self->event_size, 0u);
    q.viseme(0, 3);
    EXPECT_EQ(q.self->event_size, 20u);
    EXPECT_EQ(q.self->event_count, 1u);
}

TEST(Outqueue, clear_events_keeps_the_buffer) {
    Queue q;
    q.viseme(0, 3);
    TTS_SAPI_outqueue_clear_events(q.self);
    EXPECT_EQ(q.self->event_count, 0u);
    EXPECT_NE(q.self->event_buf, nullptr);
}

}  // namespace

// Where only the stand-ins can be made to fail.
#ifndef _WIN32

TEST(Outqueue, viseme_without_memory_is_cleared_and_audio_still_passes) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    SPEVENT event = sapi_event(SPEI_VISEME, 0, 0, 3);
    platform_testing::fail_allocation(1);
    EXPECT_EQ(TTS_SAPI_outqueue_put_event(q.self, &event), E_OUTOFMEMORY);
    EXPECT_TRUE(platform_testing::allow_allocations());
    EXPECT_EQ(event.eEventId, SPEI_UNDEFINED);
    EXPECT_EQ(q.self->event_count, 0u);
    EXPECT_EQ(q.audio(2), S_OK);
    EXPECT_EQ(q.site.log, Lines{"write 2"});
}

TEST(Outqueue, audio_without_memory_is_not_taken_and_the_viseme_stays_held) {
    Queue q;
    q.self->bytes_per_sec = 32000;
    q.viseme(0, 3);
    platform_testing::fail_allocation(1);
    EXPECT_EQ(q.audio(2), E_OUTOFMEMORY);
    EXPECT_TRUE(platform_testing::allow_allocations());
    EXPECT_EQ(q.self->audio_len, 0u);
    EXPECT_EQ(q.self->event_count, 1u);
    EXPECT_TRUE(q.site.log.empty());
}

TEST(Outqueue, bookmarks_string_is_freed_whatever_becomes_of_it) {
    for (const HRESULT result : {S_OK, E_ABORT}) {
        Queue q;
        q.site.results["AddEvents"] = {0, result};
        const long before = platform_testing::live_cotask_blocks();
        EXPECT_EQ(q.bookmark(0, "x"), result);
        EXPECT_EQ(platform_testing::live_cotask_blocks(), before);
    }
}

TEST(Outqueue, bookmark_behind_a_viseme_that_cannot_be_delivered_is_freed) {
    Queue q;
    q.viseme(0, 3);
    q.self->event_size = 2;
    q.site.results["AddEvents"] = {0, E_ABORT};
    const long before = platform_testing::live_cotask_blocks();
    EXPECT_EQ(q.bookmark(0, "x"), E_ABORT);
    EXPECT_EQ(q.site.calls["AddEvents"], 1);
    EXPECT_EQ(platform_testing::live_cotask_blocks(), before);
}

#endif
