// Speak from end to end, with a scripted synthesiser behind the server and a fake site in front of it.
#include <cmath>
#include <limits>

#include "support/server.h"

namespace {

using Lines = std::vector<std::string>;

tts_wave_event event_at(std::uint32_t sample, std::uint32_t type, const char* label, std::uint32_t begin,
                        std::uint32_t end) {
    tts_wave_event event = {};
    event.type = type;
    event.label = label;
    event.text_begin = begin;
    event.text_end = end;
    event.sample_offset = sample;
    return event;
}

std::string calls_of_streamer(const std::string& log) {
    const std::size_t at = log.find("tts_dict_cleanup");
    return at == std::string::npos ? "" : log.substr(at);
}

TEST(Speak, without_a_token_is_uninitialized_and_leaves_the_site_alone) {
    ServerObject object;
    FakeSite site;
    const WAVEFORMATEX format = pcm_format(22050);
    EXPECT_EQ(object.engine->Speak(0, SPDFID_WaveFormatEx, &format, nullptr, &site), SPERR_UNINITIALIZED);
    EXPECT_EQ(site.references(), 0);
    EXPECT_TRUE(site.calls.empty());
}

TEST(Speak, calls_the_synthesiser_in_order) {
    SpeakingObject o;
    scripted_add_wave(10, 5, nullptr, 0);
    EXPECT_EQ(o.speak("Hi"), S_OK);
    EXPECT_EQ(calls_of_streamer(scripted_log()),
              "tts_dict_cleanup\ntts_streamer_start -1.000000\ntts_streamer_synth 2205\ntts_wave_delete\n"
              "tts_streamer_synth 2205\ntts_streamer_stop\n");
}

TEST(Speak, hands_the_document_over) {
    SpeakingObject o;
    EXPECT_EQ(o.speak("Hi"), S_OK);
    EXPECT_STREQ(scripted_document(),
                 "<speak version=\"1.0\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"en\">"
                 "<mark name=\"P0\"/>Hi</speak>");
}

TEST(Speak, document_without_audio_ends_well) {
    SpeakingObject o;
    EXPECT_EQ(o.speak(""), S_OK);
    EXPECT_EQ(o.site.references(), 0);
    EXPECT_TRUE(o.site.audio.empty());
}

TEST(Speak, null_fragment_list_gives_the_empty_document) {
    SpeakingObject o;
    EXPECT_EQ(o.speak(static_cast<const SPVTEXTFRAG*>(nullptr)), S_OK);
    EXPECT_STREQ(scripted_document(), "");
}

TEST(Speak, samples_reach_the_site_unchanged_at_neutral_settings) {
    SpeakingObject o;
    std::vector<std::int16_t> samples;
    for (int i = 0; i < 5000; ++i) samples.push_back(static_cast<std::int16_t>(i * 7 - 17000));
    scripted_add_samples(samples.data(), 5000, nullptr, 0);
    EXPECT_EQ(o.speak(), S_OK);
    ASSERT_GE(o.site.audio.size(), 10000u);
    EXPECT_EQ(std::memcmp(o.site.audio.data(), samples.data(), 10000), 0);
}

TEST(Speak, null_site_plays_one_chunk_to_nobody) {
    SpeakingObject o;
    scripted_add_wave(10, 5, nullptr, 0);
    scripted_set_rounds(3);
    const Fragment fragment("Hi");
    EXPECT_EQ(o.object.engine->Speak(0, SPDFID_WaveFormatEx, &o.format, &fragment.record, nullptr), S_OK);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_SYNTH), 1u);
    EXPECT_EQ(scripted_count(SCRIPTED_WAVE_DELETE), 1u);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_STOP), 1u);
}

TEST(Speak, host_is_polled_once_a_chunk_and_not_at_the_end) {
    SpeakingObject o;
    scripted_add_wave(10, 5, nullptr, 0);
    scripted_set_rounds(4);
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.calls["GetActions"], 4);
    EXPECT_EQ(o.site.calls["GetEventInterest"], 1);
}

TEST(Speak, events_come_in_front_of_their_chunks_audio_with_growing_offsets) {
    SpeakingObject o;
    const std::string head =
        "<speak version=\"1.0\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"en\">"
        "<mark name=\"P0\"/>";
    const auto at = static_cast<std::uint32_t>(head.size());
    const tts_wave_event word = event_at(4, TTS_EVENT_WORD, nullptr, at, at + 2);
    scripted_add_wave(10, 5, &word, 1);
    scripted_set_rounds(2);
    EXPECT_EQ(o.speak("Hi"), S_OK);
    EXPECT_EQ(o.site.log, (Lines{"event 5 at 8: 2 0", "write 20", "event 5 at 28: 2 0", "write 20"}));
}

TEST(Speak, abort_plays_the_chunk_in_hand_without_its_events) {
    SpeakingObject o;
    const tts_wave_event word = event_at(0, TTS_EVENT_WORD, nullptr, 0, 1);
    scripted_add_wave(10, 5, &word, 1);
    scripted_set_rounds(5);
    o.site.actions = {0, SPVES_ABORT};
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_SYNTH), 2u);
    EXPECT_EQ(o.site.log, (Lines{"event 5 at 0: 0 0", "write 20", "write 20"}));
}

TEST(Speak, abort_drops_what_the_queue_holds) {
    SpeakingObject o;
    const tts_wave_event viseme = event_at(0, TTS_EVENT_VISEME, "a", 0, 0);
    scripted_add_wave(10, 5, &viseme, 1);
    scripted_add_wave(10, 5, nullptr, 0);
    o.site.actions = {0, SPVES_ABORT};
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_TRUE(o.site.log.empty());
}

TEST(Speak, end_of_the_text_delivers_what_the_queue_holds) {
    SpeakingObject o;
    const tts_wave_event viseme = event_at(0, TTS_EVENT_VISEME, "a", 0, 0);
    scripted_add_wave(2205, 5, &viseme, 1);
    EXPECT_EQ(o.speak(), S_OK);
    // 4410 bytes at 44,100 bytes a second are 100 ms.
    EXPECT_EQ(o.site.log, (Lines{"event 8 at 0: " + std::to_string(100 << 16) + " 1", "write 4410"}));
}

TEST(Speak, format_that_is_not_pcm_leaves_durations_unknown) {
    SpeakingObject o;
    o.format.wFormatTag = 2;
    const tts_wave_event viseme = event_at(0, TTS_EVENT_VISEME, "a", 0, 0);
    scripted_add_wave(2205, 5, &viseme, 1);
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.log, (Lines{"event 8 at 0: 0 1", "write 4410"}));
}

TEST(Speak, durations_count_in_the_hosts_bytes_per_second) {
    SpeakingObject o;
    o.format = pcm_format(11025);
    const tts_wave_event viseme = event_at(0, TTS_EVENT_VISEME, "a", 0, 0);
    scripted_add_wave(2205, 5, &viseme, 1);
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.log[0], "event 8 at 0: " + std::to_string(200 << 16) + " 1");
}

TEST(Speak, stopped_audio_ends_the_call_after_the_chunk_with_its_code) {
    SpeakingObject o;
    scripted_add_wave(10, 5, nullptr, 0);
    scripted_set_rounds(5);
    o.site.results["Write"] = {0, SP_AUDIO_STOPPED};
    EXPECT_EQ(o.speak(), SP_AUDIO_STOPPED);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_SYNTH), 1u);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_STOP), 1u);
}

TEST(Speak, stopped_audio_gives_the_last_code_of_the_queue) {
    SpeakingObject o;
    scripted_add_wave(70000, 5, nullptr, 0);  // more than one read of 65,536 samples
    o.site.results["Write"] = {1, SP_AUDIO_STOPPED};
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.log, (Lines{"write 131072", "write 8928"}));
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_SYNTH), 1u);
}

TEST(Speak, failing_write_ends_the_call_with_its_failure) {
    SpeakingObject o;
    scripted_add_wave(10, 5, nullptr, 0);
    scripted_set_rounds(5);
    o.site.results["Write"] = {2, E_ABORT};
    EXPECT_EQ(o.speak(), E_ABORT);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_SYNTH), 2u);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_STOP), 1u);
    EXPECT_EQ(scripted_count(SCRIPTED_WAVE_DELETE), 2u);
}

TEST(Speak, samples_left_in_sonic_by_a_failure_open_the_next_call) {
    SpeakingObject o;
    scripted_add_wave(70000, 5, nullptr, 0);  // 4464 more than one read takes
    o.site.results["Write"] = {1, E_ABORT};
    EXPECT_EQ(o.speak(), E_ABORT);
    o.site.audio.clear();
    o.site.log.clear();
    scripted_reset();
    scripted_add_wave(36, 7, nullptr, 0);
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.log, Lines{"write 9000"});
    EXPECT_EQ(o.site.audio.front(), 5);
    EXPECT_EQ(o.site.audio[8926], 5);
    EXPECT_EQ(o.site.audio[8928], 7);
}

TEST(Speak, code_of_the_last_flush_is_the_result) {
    SpeakingObject o;
    const tts_wave_event viseme = event_at(0, TTS_EVENT_VISEME, "a", 0, 0);
    scripted_add_wave(10, 5, &viseme, 1);
    o.site.results["Write"] = {1, SP_AUDIO_STOPPED};
    EXPECT_EQ(o.speak(), SP_AUDIO_STOPPED);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_SYNTH), 2u);
}

TEST(Speak, chunks_are_as_long_for_voices_of_other_rates) {
    for (const char* vox : {"v-16i-mf", "v8v"}) {
        FakeToken token;
        token.set("voxPath", vox);
        ServerObject object;
        FakeSite site;
        scripted_reset();
        ASSERT_EQ(object.set_token(&token), S_OK);
        const WAVEFORMATEX format = pcm_format(8000);
        EXPECT_EQ(object.engine->Speak(0, SPDFID_WaveFormatEx, &format, nullptr, &site), S_OK);
        EXPECT_EQ(calls_of_streamer(scripted_log()),
                  "tts_dict_cleanup\ntts_streamer_start -1.000000\ntts_streamer_synth 2205\ntts_streamer_stop\n");
    }
}

TEST(Speak, flags_and_format_id_play_no_part) {
    SpeakingObject o;
    scripted_add_wave(10, 5, nullptr, 0);
    const Fragment fragment("Hi");
    EXPECT_EQ(o.object.engine->Speak(0xFFFFFFFF, GUID_NULL, &o.format, &fragment.record, &o.site), S_OK);
    EXPECT_EQ(o.site.log, Lines{"write 20"});
}

TEST(Speak, rate_and_volume_are_not_asked_for_without_an_action) {
    SpeakingObject o;
    scripted_add_wave(10, 5, nullptr, 0);
    o.site.rate = 10;
    o.site.volume = 0;
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.calls["GetRate"] + o.site.calls["GetVolume"], 0);
    EXPECT_EQ(o.site.audio.front(), 5);
}

TEST(Speak, failing_event_ends_the_call_with_its_failure_and_no_audio) {
    SpeakingObject o;
    const tts_wave_event word = event_at(0, TTS_EVENT_WORD, nullptr, 0, 1);
    scripted_add_wave(10, 5, &word, 1);
    o.site.results["AddEvents"] = {0, E_ABORT};
    EXPECT_EQ(o.speak(), E_ABORT);
    EXPECT_EQ(o.site.calls["Write"], 0);
}

TEST(Speak, failing_interest_speaks_without_events) {
    SpeakingObject o;
    const tts_wave_event word = event_at(0, TTS_EVENT_WORD, nullptr, 0, 1);
    scripted_add_wave(10, 5, &word, 1);
    o.site.results["GetEventInterest"] = {0, E_FAIL};
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.log, (Lines{"write 20"}));
}

TEST(Speak, failing_start_is_logged_with_the_synthesisers_message) {
    SpeakingObject o;
    scripted_set_message("no such thing");
    scripted_fail(SCRIPTED_STREAMER_START, 1, 0);
    EXPECT_EQ(o.speak(), SPERR_TTS_ENGINE_EXCEPTION);
    expect_only_entry(0xCFFF0202u, 2, "no such thing");
    EXPECT_EQ(o.site.references(), 0);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_STOP), 0u);
}

TEST(Speak, text_that_cannot_be_converted_is_logged_and_leaves_the_site_alone) {
    SpeakingObject o;
    Fragment fragment("Hi");
    fragment.record.ulTextLen = 0x80000000;  // more than the rich text counts
    scripted_reset();
    EXPECT_EQ(o.speak(&fragment.record), SPERR_TTS_ENGINE_EXCEPTION);
    expect_only_entry(0xCFFF0102u, 1, "(none)");
    EXPECT_EQ(o.site.references(), 0);
    EXPECT_TRUE(o.site.calls.empty());
    EXPECT_STREQ(scripted_log(), "");
}

TEST(Speak, text_without_memory_to_convert_it_is_logged_and_leaves_the_site_alone) {
    SpeakingObject o;
    const Fragment fragment("Hi");
    server::fail_allocation(1, true);
    const HRESULT hr = o.speak(&fragment.record);
    EXPECT_TRUE(server::stop_failing());
    EXPECT_EQ(hr, E_OUTOFMEMORY);
    expect_only_entry(0xCFFF0102u, 1, "(none)");
    EXPECT_TRUE(o.site.calls.empty());
}

TEST(Speak, failing_stop_is_ignored) {
    SpeakingObject o;
    scripted_fail(SCRIPTED_STREAMER_STOP, 1, 0);
    EXPECT_EQ(o.speak(), S_OK);
}

TEST(Speak, lexicon_is_reloaded_for_each_call) {
    FakeToken token;
    token.set("lexPath", "my.pls");
    ServerObject object;
    FakeSite site;
    scripted_reset();
    ASSERT_EQ(object.set_token(&token), S_OK);
    const WAVEFORMATEX format = pcm_format(22050);
    object.engine->Speak(0, SPDFID_WaveFormatEx, &format, nullptr, &site);
    object.engine->Speak(0, SPDFID_WaveFormatEx, &format, nullptr, &site);
    const std::string once =
        "tts_dict_cleanup\ntts_dict_load my.pls\ntts_streamer_start -1.000000\ntts_streamer_synth 2205\n"
        "tts_streamer_stop\n";
    EXPECT_EQ(calls_of_streamer(scripted_log()), once + once);
}

TEST(Speak, lexicon_that_does_not_load_is_no_error) {
    FakeToken token;
    token.set("lexPath", "my.pls");
    ServerObject object;
    FakeSite site;
    scripted_reset();
    ASSERT_EQ(object.set_token(&token), S_OK);
    scripted_fail(SCRIPTED_DICT_LOAD, 1, 1);
    const WAVEFORMATEX format = pcm_format(22050);
    EXPECT_EQ(object.engine->Speak(0, SPDFID_WaveFormatEx, &format, nullptr, &site), S_OK);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_START), 1u);
}

TEST(Speak, empty_lexicon_path_loads_nothing) {
    FakeToken token;
    token.set("lexPath", "");
    ServerObject object;
    FakeSite site;
    scripted_reset();
    ASSERT_EQ(object.set_token(&token), S_OK);
    const WAVEFORMATEX format = pcm_format(22050);
    EXPECT_EQ(object.engine->Speak(0, SPDFID_WaveFormatEx, &format, nullptr, &site), S_OK);
    EXPECT_EQ(scripted_count(SCRIPTED_DICT_CLEANUP), 1u);
    EXPECT_EQ(scripted_count(SCRIPTED_DICT_LOAD), 0u);
}

TEST(Speak, object_whose_voice_did_not_load_gives_an_engine_exception_unlogged) {
    FakeToken token;
    ServerObject object;
    FakeSite site;
    scripted_reset();
    scripted_fail(SCRIPTED_LOAD_VOICE, 1, 0);
    EXPECT_EQ(object.set_token(&token), SPERR_TTS_ENGINE_EXCEPTION);
    server::take_log();
    const WAVEFORMATEX format = pcm_format(22050);
    const Fragment fragment("Hi");
    EXPECT_EQ(object.engine->Speak(0, SPDFID_WaveFormatEx, &format, &fragment.record, &site),
              SPERR_TTS_ENGINE_EXCEPTION);
    EXPECT_TRUE(server::take_log().empty());
    EXPECT_NE(std::string(scripted_log()).find("tts_dict_cleanup null\n"), std::string::npos);
}

TEST(Speak, object_whose_attributes_were_bad_gives_an_engine_exception) {
    FakeToken token;
    token.attributes.values.erase("Name");
    ServerObject object;
    FakeSite site;
    scripted_reset();
    EXPECT_EQ(object.set_token(&token), SPERR_NOT_FOUND);
    const WAVEFORMATEX format = pcm_format(22050);
    Fragment fragment("Hi");
    fragment.record.State.LangID = 0;  // asks for the voice's own language, which there is none of
    EXPECT_EQ(object.engine->Speak(0, SPDFID_WaveFormatEx, &format, &fragment.record, &site),
              SPERR_TTS_ENGINE_EXCEPTION);
    EXPECT_EQ(site.references(), 0);
}

TEST(Speak, skip_still_plays_the_chunk_in_hand) {
    SpeakingObject o;
    const tts_wave_event word = event_at(0, TTS_EVENT_WORD, nullptr, 0, 1);
    scripted_add_wave(10, 5, &word, 1);
    o.site.actions = {SPVES_SKIP};
    o.site.skip_count = 2;
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.log, (Lines{"skipped 2", "event 5 at 0: 0 0", "write 20"}));
}

TEST(Speak, rate_halves_the_audio_and_scales_the_events) {
    SpeakingObject o;
    const tts_wave_event word = event_at(2000, TTS_EVENT_WORD, nullptr, 0, 1);
    scripted_add_wave(2205, 1000, &word, 1);
    scripted_set_rounds(10);
    o.site.actions = {SPVES_RATE};
    o.site.rate = 5;  // twice as fast
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.events[0].ullAudioStreamOffset, 2000u);
    EXPECT_NEAR(static_cast<double>(o.site.audio.size()), 22050.0, 2205.0);
}

TEST(Speak, next_call_starts_with_neutral_factors_but_sonics_old_speed) {
    SpeakingObject o;
    const tts_wave_event word = event_at(2000, TTS_EVENT_WORD, nullptr, 0, 1);
    scripted_add_wave(2205, 1000, &word, 1);
    scripted_set_rounds(10);
    o.site.actions = {SPVES_RATE};
    o.site.rate = 5;
    EXPECT_EQ(o.speak(), S_OK);
    o.site.audio.clear();
    o.site.events.clear();
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.events[0].ullAudioStreamOffset, 4000u);
    EXPECT_NEAR(static_cast<double>(o.site.audio.size()), 22050.0, 2205.0);
}

TEST(Speak, volume_zero_is_silence) {
    SpeakingObject o;
    scripted_add_wave(2205, 1000, nullptr, 0);
    o.site.actions = {SPVES_VOLUME};
    o.site.volume = 0;
    EXPECT_EQ(o.speak(), S_OK);
    ASSERT_GE(o.site.audio.size(), 4410u);
    for (const unsigned char byte : o.site.audio) EXPECT_EQ(byte, 0);
}

TEST(Speak, rate_of_minus_fifteen_fails_with_the_next_event) {
    SpeakingObject o;
    const tts_wave_event word = event_at(0, TTS_EVENT_WORD, nullptr, 0, 1);
    scripted_add_wave(2205, 1000, &word, 1);
    o.site.actions = {SPVES_RATE};
    o.site.rate = -15;
    EXPECT_EQ(o.speak(), E_INVALIDARG);
}

TEST(Speak, rates_far_out_of_range_neither_hang_nor_crash) {
    for (const LONG rate : {LONG{-2147483647} - 1, LONG{-15}, LONG{-14}, LONG{1000}, LONG{2147483647}}) {
        SpeakingObject o;
        scripted_add_wave(2205, 1000, nullptr, 0);
        scripted_set_rounds(20);
        o.site.actions = {SPVES_RATE};
        o.site.rate = rate;
        EXPECT_EQ(o.speak(), S_OK) << rate;
        EXPECT_EQ(o.site.references(), 0);
    }
}

TEST(Speak, pitch_that_rises_while_another_is_in_the_buffers_does_not_stop_the_host) {
    SpeakingObject o;
    const tts_wave_event low = event_at(0, TTS_EVENT_MARK, "P-5", 0, 0);
    const tts_wave_event high = event_at(0, TTS_EVENT_MARK, "P5", 0, 0);
    scripted_add_wave(2205, 1000, &low, 1);
    scripted_add_wave(2205, 1000, &high, 1);
    scripted_set_rounds(20);
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_GT(o.site.audio.size(), 80000u);
}

TEST(Speak, pitches_of_any_number_neither_hang_nor_crash) {
    SpeakingObject o;
    for (const char* label : {"P1000000", "P-1000000", "P99999999999", "P-60", "P60", "P", "P0"}) {
        const tts_wave_event mark = event_at(0, TTS_EVENT_MARK, label, 0, 0);
        scripted_add_wave(2205, 1000, &mark, 1);
    }
    scripted_set_rounds(3);
    EXPECT_EQ(o.speak(), S_OK);
}

TEST(Speak, wave_without_samples_is_passed_over) {
    SpeakingObject o;
    scripted_add_wave(0, 0, nullptr, 0);
    scripted_add_wave(10, 5, nullptr, 0);
    EXPECT_EQ(o.speak(), S_OK);
    EXPECT_EQ(o.site.audio.size(), 20u);
}

TEST(Speak, each_of_the_16_interests_gives_exactly_its_events) {
    const tts_wave_event events[] = {
        event_at(0, TTS_EVENT_MARK, "Bx", 0, 0), event_at(0, TTS_EVENT_WORD, nullptr, 0, 1),
        event_at(0, TTS_EVENT_SENTENCE, nullptr, 0, 1), event_at(0, TTS_EVENT_VISEME, "a", 0, 0)};
    const std::pair<ULONGLONG, int> kinds[] = {{0x10, 4}, {0x20, 5}, {0x80, 7}, {0x100, 8}};
    for (unsigned combination = 0; combination < 16; ++combination) {
        SpeakingObject o;
        scripted_add_wave(10, 5, events, 4);
        std::vector<int> expected;
        o.site.interest = 0;
        for (unsigned i = 0; i < 4; ++i) {
            if (!(combination & (1u << i))) continue;
            o.site.interest |= kinds[i].first;
            expected.push_back(kinds[i].second);
        }
        EXPECT_EQ(o.speak(), S_OK);
        std::vector<int> got;
        for (const SPEVENT& event : o.site.events) got.push_back(event.eEventId);
        EXPECT_EQ(got, expected) << combination;
    }
}

TEST(Speak, site_is_held_during_the_call_and_released_behind_it) {
    struct HoldingSite : FakeSite {
        int seen = 0;
        HRESULT STDMETHODCALLTYPE Write(const void*, ULONG size, ULONG* written) override {
            seen = references();
            *written = size;
            return S_OK;
        }
    } site;
    SpeakingObject o;
    scripted_add_wave(10, 5, nullptr, 0);
    const Fragment fragment("Hi");
    EXPECT_EQ(o.object.engine->Speak(0, SPDFID_WaveFormatEx, &o.format, &fragment.record, &site), S_OK);
    EXPECT_EQ(site.seen, 1);
    EXPECT_EQ(site.references(), 0);
}

TEST(Speak, two_thousand_calls_leave_memory_where_it_was_after_ten) {
    SpeakingObject o;
    const tts_wave_event events[] = {
        event_at(0, TTS_EVENT_MARK, "Bmark", 0, 0), event_at(0, TTS_EVENT_MARK, "P3", 0, 0),
        event_at(5, TTS_EVENT_WORD, nullptr, 90, 95), event_at(8, TTS_EVENT_VISEME, "a", 0, 0)};
    scripted_add_wave(300, 5, events, 4);
    scripted_set_rounds(3);
    server::live_blocks();
    for (int i = 0; i < 10; ++i) ASSERT_EQ(o.speak("One of many."), S_OK);
    const long before = server::live_blocks();
    for (int i = 10; i < 2000; ++i) {
        ASSERT_EQ(o.speak("One of many."), S_OK);
        o.site.audio.clear();
        o.site.log.clear();
        o.site.events.clear();
        o.site.bookmarks.clear();
    }
    EXPECT_EQ(server::live_blocks(), before);
}

}  // namespace
