// The synthesiser's events on their way to SAPI's.
#include "engine/nelva_sapi_object.h"
#include "support/test_object.h"
#ifndef _WIN32
#include "platform/testing.h"
#endif

namespace {

using Lines = std::vector<std::string>;
constexpr std::uint64_t everything = 0x1B0;

tts_wave_event wave_event(std::uint32_t type, const char* label, std::uint32_t begin, std::uint32_t end,
                          std::uint32_t sample) {
    tts_wave_event event = {};
    event.type = type;
    event.label = label;
    event.text_begin = begin;
    event.text_end = end;
    event.sample_offset = sample;
    return event;
}
tts_wave_event word(std::uint32_t begin, std::uint32_t end, std::uint32_t sample = 0) {
    return wave_event(TTS_EVENT_WORD, nullptr, begin, end, sample);
}
tts_wave_event mark(const char* label) { return wave_event(TTS_EVENT_MARK, label, 0, 0, 0); }
tts_wave_event viseme(const char* label) { return wave_event(TTS_EVENT_VISEME, label, 0, 0, 0); }

struct Events : TestObject {
    std::vector<std::uint32_t> map = {0, 10, 20, 30, 40};  // four bytes of document and its end
    std::uint64_t base = 0;

    Events() { self->sonic = sonicCreateStream(22050, 1); }
    HRESULT handle(std::vector<tts_wave_event> events, std::uint64_t mask = everything) {
        return NELVA_SAPI_handle_events(self, base, events.data(), static_cast<std::int32_t>(events.size()), mask,
                                        map.empty() ? nullptr : map.data(), map.empty() ? 0 : map.size() - 1);
    }
};

TEST(HandleEvents, word_gives_length_and_start_in_the_hosts_text) {
    Events e;
    EXPECT_EQ(e.handle({word(1, 3)}), S_OK);
    EXPECT_EQ(e.site.log, Lines{"event 5 at 0: 20 10"});
    EXPECT_EQ(e.site.events[0].elParamType, SPET_LPARAM_IS_UNDEFINED);
    EXPECT_EQ(e.site.events[0].ulStreamNum, 0u);
}

TEST(HandleEvents, sentence_gives_length_and_start_in_the_hosts_text) {
    Events e;
    EXPECT_EQ(e.handle({wave_event(TTS_EVENT_SENTENCE, nullptr, 0, 4, 0)}), S_OK);
    EXPECT_EQ(e.site.log, Lines{"event 7 at 0: 40 0"});
}

TEST(HandleEvents, offsets_behind_the_document_take_the_end_entry) {
    Events e;
    e.handle({word(2, 4000000000u)});
    EXPECT_EQ(e.site.log, Lines{"event 5 at 0: 20 20"});
}

TEST(HandleEvents, end_that_maps_below_its_begin_wraps_around) {
    Events e;
    e.map = {50, 10};
    e.handle({word(0, 1)});
    EXPECT_EQ(e.site.events[0].wParam, static_cast<WPARAM>(-40));
}

TEST(HandleEvents, without_a_map_positions_are_zero) {
    Events e;
    e.map.clear();
    e.handle({word(1, 3)});
    EXPECT_EQ(e.site.log, Lines{"event 5 at 0: 0 0"});
}

TEST(HandleEvents, stream_offset_is_base_plus_two_bytes_a_sample) {
    Events e;
    e.base = 1000;
    e.handle({word(0, 1, 7)});
    EXPECT_EQ(e.site.events[0].ullAudioStreamOffset, 1014u);
}

TEST(HandleEvents, stream_offset_shrinks_with_the_speed) {
    Events e;
    e.base = 100;
    e.self->sapi_rate = 3.0f;
    e.handle({word(0, 1, 2205)});
    EXPECT_EQ(e.site.events[0].ullAudioStreamOffset, 1570u);
}

TEST(HandleEvents, stream_offset_counts_both_speed_factors) {
    Events e;
    e.self->sapi_rate = 2.0f;
    e.self->extra_rate = 2.0f;
    e.handle({word(0, 1, 400)});
    EXPECT_EQ(e.site.events[0].ullAudioStreamOffset, 200u);
}

TEST(HandleEvents, stream_offset_beyond_32_bits_of_bytes_is_kept) {
    Events e;
    e.handle({word(0, 1, 0x80000000u)});
    EXPECT_EQ(e.site.events[0].ullAudioStreamOffset, 0x100000000u);
}

TEST(HandleEvents, scaled_place_is_cut_to_32_bits) {
    Events e;
    e.self->sapi_rate = 0.25f;
    e.handle({word(0, 1, 0x40000000u)});  // 4 times 2^30 samples is 2^32
    EXPECT_EQ(e.site.events[0].ullAudioStreamOffset, 0u);
}

TEST(HandleEvents, factor_that_is_not_positive_is_an_invalid_argument) {
    Events e;
    for (const float rate : {0.0f, -0.05f, std::numeric_limits<float>::quiet_NaN()}) {
        e.self->sapi_rate = rate;
        EXPECT_EQ(e.handle({word(0, 1)}), E_INVALIDARG);
        EXPECT_EQ(e.handle({}), S_OK);
    }
    e.self->sapi_rate = 1.0f;
    e.self->extra_rate = 0.0f;
    EXPECT_EQ(e.handle({word(0, 1)}), E_INVALIDARG);
    EXPECT_TRUE(e.site.log.empty());
}

TEST(HandleEvents, even_an_event_that_is_passed_over_needs_a_positive_factor) {
    Events e;
    e.self->sapi_rate = -1.0f;
    EXPECT_EQ(e.handle({wave_event(0, nullptr, 0, 0, 0)}), E_INVALIDARG);
}

TEST(HandleEvents, bookmark_carries_its_name_and_number) {
    Events e;
    EXPECT_EQ(e.handle({mark("B42nd")}), S_OK);
    EXPECT_EQ(e.site.log, Lines{"event 4 at 0: 42 42nd"});
    EXPECT_EQ(e.site.events[0].elParamType, SPET_LPARAM_IS_STRING);
}

TEST(HandleEvents, bookmark_number_is_signed_and_widened) {
    Events e;
    e.handle({mark("B-7")});
    EXPECT_EQ(e.site.events[0].wParam, static_cast<WPARAM>(static_cast<std::int64_t>(-7)));
}

TEST(HandleEvents, bookmark_of_the_prefix_alone_is_empty) {
    Events e;
    e.handle({mark("B")});
    EXPECT_EQ(e.site.log, Lines{"event 4 at 0: 0 "});
}

TEST(HandleEvents, bookmark_with_characters_beyond_ascii_is_converted) {
    Events e;
    struct Reader : FakeSite {
        WideString name;
        HRESULT STDMETHODCALLTYPE AddEvents(const SPEVENT* list, ULONG) override {
            name = reinterpret_cast<LPCWSTR>(list[0].lParam);
            return S_OK;
        }
    } reader;
    e.self->site = &reader;
    e.handle({mark("B\xC3\xA9\xF0\x9F\x98\x80")});
    EXPECT_EQ(reader.name, (WideString{0xE9, 0xD83D, 0xDE00}));
}

TEST(HandleEvents, bookmark_that_is_not_utf8_is_empty) {
    Events e;
    e.handle({mark("B12\xFF")});
    EXPECT_EQ(e.site.log, Lines{"event 4 at 0: 0 "});
}

TEST(HandleEvents, mark_without_label_or_with_another_prefix_makes_no_event) {
    Events e;
    EXPECT_EQ(e.handle({mark(nullptr), mark(""), mark("x"), mark("b1"), mark("p5")}), S_OK);
    EXPECT_TRUE(e.site.log.empty());
    EXPECT_EQ(sonicGetPitch(e.self->sonic), 1.0f);
}

TEST(HandleEvents, pitch_mark_counts_tenths_of_an_octave) {
    Events e;
    const std::pair<const char*, float> rows[] = {{"P10", 2.0f}, {"P-10", 0.5f},  {"P0", 1.0f},  {"P20", 4.0f},
                                                  {"P", 1.0f},   {"P+10x", 2.0f}, {"Pten", 1.0f}};
    for (const auto& [label, pitch] : rows) {
        EXPECT_EQ(e.handle({mark(label)}), S_OK);
        EXPECT_EQ(sonicGetPitch(e.self->sonic), pitch) << label;
    }
    EXPECT_TRUE(e.site.log.empty());
}

TEST(HandleEvents, pitch_mark_works_with_no_interest_at_all) {
    Events e;
    e.handle({mark("P10"), word(0, 1), mark("Bx"), viseme("a")}, 0);
    EXPECT_EQ(sonicGetPitch(e.self->sonic), 2.0f);
    EXPECT_TRUE(e.site.log.empty());
}

TEST(HandleEvents, pitch_mark_without_a_sonic_stream_does_nothing) {
    TestObject object;
    const tts_wave_event event = mark("P5");
    EXPECT_EQ(NELVA_SAPI_handle_events(object.self, 0, &event, 1, everything, nullptr, 0), S_OK);
}

TEST(HandleEvents, pitch_marks_with_any_number_leave_a_stream_that_works) {
    Events e;
    std::vector<short> samples(2205, 1000);
    for (const char* label : {"P99999999999999999999", "P-99999999999999999999", "P400", "P-400", "P5", "P-5"}) {
        e.handle({mark(label)});
        EXPECT_EQ(sonicWriteShortToStream(e.self->sonic, samples.data(), 2205), 1) << label;
    }
    EXPECT_EQ(sonicFlushStream(e.self->sonic), 1);
}

TEST(HandleEvents, viseme_gives_its_number) {
    Events e;
    e.self->bytes_per_sec = 1000;
    e.handle({viseme("a"), viseme("sil")});
    TTS_SAPI_outqueue_flush(e.self);
    EXPECT_EQ(e.site.log, (Lines{"event 8 at 0: 0 1", "event 8 at 0: 0 0"}));
}

TEST(HandleEvents, viseme_with_an_unknown_label_makes_no_event) {
    Events e;
    e.handle({viseme("zz"), viseme(nullptr), viseme("x")});
    TTS_SAPI_outqueue_flush(e.self);
    EXPECT_TRUE(e.site.log.empty());
}

TEST(HandleEvents, other_types_are_passed_over) {
    Events e;
    for (const std::uint32_t type : {0u, 5u, 6u, 0xFFFFFFFFu}) e.handle({wave_event(type, "B1", 0, 1, 0)});
    EXPECT_TRUE(e.site.log.empty());
}

TEST(HandleEvents, each_of_the_16_interests_gives_exactly_its_events) {
    const std::uint64_t bits[] = {0x10, 0x20, 0x80, 0x100};
    for (unsigned combination = 0; combination < 16; ++combination) {
        Events e;
        std::uint64_t mask = 0;
        for (unsigned i = 0; i < 4; ++i) mask |= combination & (1u << i) ? bits[i] : 0;
        e.handle({mark("Bx"), word(0, 1), wave_event(TTS_EVENT_SENTENCE, nullptr, 0, 1, 0), viseme("a")}, mask);
        TTS_SAPI_outqueue_flush(e.self);
        Lines expected;
        if (mask & 0x10) expected.push_back("event 4 at 0: 0 x");
        if (mask & 0x20) expected.push_back("event 5 at 0: 10 0");
        if (mask & 0x80) expected.push_back("event 7 at 0: 10 0");
        if (mask & 0x100) expected.push_back("event 8 at 0: 0 1");
        EXPECT_EQ(e.site.log, expected) << mask;
    }
}

TEST(HandleEvents, foreign_interest_bits_give_nothing) {
    Events e;
    e.handle({mark("Bx"), word(0, 1), viseme("a")}, ~everything);
    TTS_SAPI_outqueue_flush(e.self);
    EXPECT_TRUE(e.site.log.empty());
}

TEST(HandleEvents, failure_of_the_queue_ends_the_walk) {
    Events e;
    e.site.results["AddEvents"] = {2, E_ABORT};
    EXPECT_EQ(e.handle({word(0, 1), word(1, 2), word(2, 3)}), E_ABORT);
    EXPECT_EQ(e.site.calls["AddEvents"], 2);
}

TEST(HandleEvents, success_code_of_the_queue_neither_stops_nor_comes_back) {
    Events e;
    e.site.results["AddEvents"] = {0, SP_AUDIO_STOPPED};
    EXPECT_EQ(e.handle({word(0, 1), word(1, 2)}), S_OK);
    EXPECT_EQ(e.site.calls["AddEvents"], 2);
}

TEST(HandleEvents, negative_count_and_null_events_are_none) {
    Events e;
    const tts_wave_event event = word(0, 1);
    EXPECT_EQ(NELVA_SAPI_handle_events(e.self, 0, &event, -1, everything, nullptr, 0), S_OK);
    EXPECT_EQ(NELVA_SAPI_handle_events(e.self, 0, nullptr, 1, everything, nullptr, 0), S_OK);
    EXPECT_TRUE(e.site.log.empty());
}

#ifndef _WIN32

TEST(HandleEvents, bookmark_without_memory_is_lost_without_a_word) {
    Events e;
    platform_testing::fail_allocation(1);
    EXPECT_EQ(e.handle({mark("Blost"), mark("Bkept"), mark("P10")}), S_OK);
    EXPECT_TRUE(platform_testing::allow_allocations());
    EXPECT_EQ(e.site.log, Lines{"event 4 at 0: 0 kept"});
    EXPECT_EQ(sonicGetPitch(e.self->sonic), 2.0f);
}

#endif

}  // namespace
