// Everything fails once and then for good, at every position in turn: the documented result, nothing leaked, no
// reference held, and the next call works.
#include <functional>
#include <set>

#include "support/server.h"

namespace {

tts_wave_event event_of(std::uint32_t type, const char* label) {
    tts_wave_event event = {};
    event.type = type;
    event.label = label;
    event.text_begin = 90;
    event.text_end = 95;
    event.sample_offset = 3;
    return event;
}

// Two kinds of chunks: one with every event, one with audio alone, so that visemes are held and completed.
void script_all_events() {
    const tts_wave_event events[] = {event_of(TTS_EVENT_SENTENCE, nullptr), event_of(TTS_EVENT_MARK, "P3"),
                                     event_of(TTS_EVENT_MARK, "Bhere"),     event_of(TTS_EVENT_WORD, nullptr),
                                     event_of(TTS_EVENT_VISEME, "a"),       event_of(TTS_EVENT_VISEME, "sil")};
    scripted_add_wave(2205, 900, events, 6);
    scripted_add_wave(2205, -900, nullptr, 0);
    scripted_set_rounds(3);
}

// A list with every kind of fragment.
class EveryFragment {
public:
    EveryFragment() {
        fragments_[1].record.State.SilenceMSecs = 250;
        fragments_[4].record.State.PitchAdj.MiddleAdj = -4;
        fragments_[4].record.State.RateAdj = 3;
        fragments_[7].record.State.LangID = 0x407;
        fragments_[7].record.State.Volume = 40;
        fragments_[8].record.State.Context.pCategory = NELVA_WIDE("date_mdy");
        for (std::size_t i = 0; i + 1 < std::size(fragments_); ++i)
            fragments_[i].record.pNext = &fragments_[i + 1].record;
    }
    const SPVTEXTFRAG* list() const { return &fragments_[0].record; }

private:
    Fragment fragments_[10] = {
        Fragment("Hello, "),
        Fragment("", SPVA_Silence),
        Fragment("here", SPVA_Bookmark),
        Fragment("<w>", SPVA_ParseUnknownTag),
        Fragment("world", SPVA_Pronounce),
        Fragment("</w> tail", SPVA_ParseUnknownTag),
        Fragment("", SPVA_Section),
        Fragment("spell", SPVA_SpellOut),
        Fragment(" 3/4/2021 & more."),
        Fragment("unknown", static_cast<SPVACTIONS>(9)),
    };
};

// The state that must be back after every call.
struct Baseline {
    long blocks;
    std::size_t handles;
};

class Torture : public ::testing::Test {
protected:
    SpeakingObject o_;
    EveryFragment fragments_;
    Baseline before_ = {};

    void SetUp() override {
        script_all_events();
        server::live_blocks();
        ASSERT_EQ(speak(), S_OK);  // makes what serves all later calls
        warm_exceptions_up();
        server::take_log();
        before_ = {server::live_blocks(), scripted_live()};
    }

    HRESULT speak() {
        o_.site.actions = {SPVES_SKIP, SPVES_RATE | SPVES_VOLUME, 0, SPVES_SKIP};
        return o_.speak(fragments_.list());
    }

    // The language's run-time sets a thread up with the first exception that is thrown on it, and keeps that.
    void warm_exceptions_up() {
        HRESULT hr = S_OK;
        for (long nth = 1; hr == S_OK && nth < 100; ++nth) {
            server::fail_allocation(nth, false);
            hr = speak();
            server::stop_failing();
        }
        ASSERT_EQ(hr, E_OUTOFMEMORY);
        ASSERT_EQ(speak(), S_OK);
        forget();
    }

    void expect_clean(const std::string& what) {
        server::take_log();  // what it keeps was allocated by the server too
        EXPECT_EQ(server::live_blocks(), before_.blocks) << what;
        EXPECT_EQ(scripted_live(), before_.handles) << what;
        EXPECT_EQ(o_.site.references(), 0) << what;
        EXPECT_EQ(speak(), S_OK) << "the next call after " << what;
        EXPECT_EQ(server::live_blocks(), before_.blocks) << what;
        forget();
    }

    // What the fakes keep grows with each call.
    void forget() {
        o_.site.log.clear();
        o_.site.audio.clear();
        o_.site.events.clear();
        o_.site.bookmarks.clear();
        o_.site.calls.clear();
        o_.site.results.clear();
    }

    void site_call_fails(const std::string& method, const std::set<HRESULT>& allowed, int calls) {
        for (int nth = 0; nth <= calls; ++nth) {
            o_.site.results[method] = {nth, E_ABORT};
            const HRESULT hr = speak();
            EXPECT_EQ(allowed.count(hr), 1u) << method << " " << nth << ": " << hr;
            o_.site.results.clear();
            expect_clean(method + " " + std::to_string(nth));
        }
    }
};

TEST_F(Torture, each_allocation_fails_once_and_then_for_good) {
    for (const bool for_good : {false, true}) {
        bool met = true;
        for (long nth = 1; met; ++nth) {
            ASSERT_LT(nth, 5000);
            server::fail_allocation(nth, for_good);
            const HRESULT hr = speak();
            met = server::stop_failing();
            // A bookmark's string may be lost without a word; everything else is short of memory or went on without
            // what it could not have.
            EXPECT_TRUE(hr == S_OK || hr == E_OUTOFMEMORY || hr == SPERR_TTS_ENGINE_EXCEPTION) << nth << ": " << hr;
            EXPECT_TRUE(met || hr == S_OK) << nth;
            expect_clean("allocation " + std::to_string(nth));
        }
    }
}

TEST_F(Torture, get_event_interest_fails) { site_call_fails("GetEventInterest", {S_OK}, 1); }

TEST_F(Torture, add_events_fails) { site_call_fails("AddEvents", {E_ABORT, S_OK}, 20); }

TEST_F(Torture, write_fails) { site_call_fails("Write", {E_ABORT, S_OK}, 12); }

TEST_F(Torture, get_rate_fails) { site_call_fails("GetRate", {S_OK}, 1); }

TEST_F(Torture, get_volume_fails) { site_call_fails("GetVolume", {S_OK}, 1); }

TEST_F(Torture, get_skip_info_fails) { site_call_fails("GetSkipInfo", {S_OK}, 2); }

TEST_F(Torture, complete_skip_fails) { site_call_fails("CompleteSkip", {S_OK}, 2); }

TEST_F(Torture, each_synthesiser_call_fails_once_and_then_for_good) {
    for (const bool for_good : {false, true}) {
        for (int call = 0; call < SCRIPTED_CALLS; ++call) {
            for (std::uint32_t nth = 1; nth <= 8; ++nth) {
                scripted_reset();
                script_all_events();
                scripted_fail(static_cast<scripted_call>(call), nth, for_good);
                const bool starts = call != SCRIPTED_STREAMER_START || nth > 1;
                EXPECT_EQ(speak(), starts ? S_OK : SPERR_TTS_ENGINE_EXCEPTION) << call << " " << nth;
                scripted_reset();
                script_all_events();
                expect_clean("synthesiser call " + std::to_string(call));
            }
        }
    }
}

TEST(TortureSetup, each_allocation_fails_once_and_then_for_good) {
    for (const bool for_good : {false, true}) {
        bool met = true;
        for (long nth = 1; met; ++nth) {
            ASSERT_LT(nth, 200);
            FakeToken token;
            token.set("lexPath", "my.pls");
            scripted_reset();
            const long blocks = server::live_blocks();
            const std::size_t handles = scripted_live();
            {
                ServerObject object;
                server::fail_allocation(nth, for_good);
                const HRESULT hr = object.set_token(&token);
                met = server::stop_failing();
                EXPECT_TRUE(hr == S_OK || hr == E_OUTOFMEMORY || hr == SPERR_NOT_FOUND ||
                            hr == SPERR_TTS_ENGINE_EXCEPTION)
                    << nth << ": " << hr;
                EXPECT_TRUE(met || hr == S_OK) << nth;
                EXPECT_EQ(token.attributes.references(), 0);
            }
            server::take_log();
            EXPECT_EQ(token.references(), 0);
            EXPECT_EQ(server::live_blocks(), blocks) << nth;
            EXPECT_EQ(scripted_live(), handles) << nth;
        }
    }
}

TEST(TortureSetup, each_token_value_fails) {
    const std::pair<const char*, HRESULT> rows[] = {
        {"libPath", SPERR_TTS_ENGINE_EXCEPTION}, {"voxPath", SPERR_TTS_ENGINE_EXCEPTION}, {"lexPath", S_OK}};
    for (const auto& [name, expected] : rows) {
        FakeToken token;
        token.failures[name] = E_ACCESSDENIED;
        scripted_reset();
        {
            ServerObject object;
            EXPECT_EQ(object.set_token(&token), expected) << name;
        }
        EXPECT_EQ(token.references(), 0);
    }
}

TEST(TortureSetup, first_speak_without_memory_works_the_next_time) {
    for (const bool for_good : {false, true}) {
        bool met = true;
        for (long nth = 1; met; ++nth) {
            ASSERT_LT(nth, 500);
            server::take_log();
            const long blocks = server::live_blocks();
            {
                SpeakingObject o;
                scripted_add_wave(2205, 900, nullptr, 0);
                server::fail_allocation(nth, for_good);
                const HRESULT hr = o.speak("Hi");
                met = server::stop_failing();
                EXPECT_TRUE(hr == S_OK || hr == E_OUTOFMEMORY || hr == SPERR_TTS_ENGINE_EXCEPTION) << nth;
                EXPECT_EQ(o.speak("Hi"), S_OK) << nth;
            }
            server::take_log();
            EXPECT_EQ(server::live_blocks(), blocks) << nth;
        }
    }
}

}  // namespace
