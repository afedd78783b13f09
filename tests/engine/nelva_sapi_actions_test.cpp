// The host's actions between two chunks.
#include "engine/nelva_sapi_object.h"
#include "support/test_object.h"

namespace {

struct Actions : TestObject {
    int handle(DWORD bits) {
        site.actions = {bits};
        return NELVA_SAPI_handle_actions(self, nullptr);
    }
    Actions() { self->sonic = sonicCreateStream(22050, 1); }
};

TEST(HandleActions, without_a_site_the_loop_stops) {
    Actions a;
    a.self->site = nullptr;
    EXPECT_EQ(NELVA_SAPI_handle_actions(a.self, nullptr), 0);
}

TEST(HandleActions, no_bit_goes_on_and_asks_nothing) {
    Actions a;
    EXPECT_EQ(a.handle(0), 1);
    EXPECT_EQ(a.site.calls["GetRate"] + a.site.calls["GetVolume"] + a.site.calls["GetSkipInfo"], 0);
}

TEST(HandleActions, abort_stops) {
    Actions a;
    EXPECT_EQ(a.handle(SPVES_ABORT), 0);
}

TEST(HandleActions, abort_still_serves_the_other_bits) {
    Actions a;
    a.site.rate = 10;
    a.site.volume = 50;
    EXPECT_EQ(a.handle(SPVES_ABORT | SPVES_RATE | SPVES_VOLUME | SPVES_SKIP), 0);
    EXPECT_FLOAT_EQ(a.self->sapi_rate, 3.0f);
    EXPECT_FLOAT_EQ(a.self->sapi_volume, 0.5f);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_JUMP), 1u);
}

TEST(HandleActions, rate_steps_are_asymmetric) {
    Actions a;
    const std::pair<LONG, float> rows[] = {{-10, 0.3f}, {-1, 0.93f}, {0, 1.0f}, {1, 1.2f}, {10, 3.0f}};
    for (const auto& [rate, factor] : rows) {
        a.site.rate = rate;
        a.handle(SPVES_RATE);
        EXPECT_EQ(a.self->sapi_rate, factor) << rate;
        EXPECT_EQ(sonicGetSpeed(a.self->sonic), factor) << rate;
    }
}

TEST(HandleActions, rate_goes_to_sonic_times_the_second_factor) {
    Actions a;
    a.self->extra_rate = 2.0f;
    a.site.rate = 5;
    a.handle(SPVES_RATE);
    EXPECT_EQ(a.self->sapi_rate, 2.0f);
    EXPECT_EQ(sonicGetSpeed(a.self->sonic), 4.0f);
}

TEST(HandleActions, rate_of_minus_fifteen_is_below_zero) {
    Actions a;
    a.site.rate = -15;
    EXPECT_EQ(a.handle(SPVES_RATE), 1);
    EXPECT_LT(a.self->sapi_rate, 0.0f);
}

TEST(HandleActions, volume_is_a_percentage) {
    Actions a;
    const std::pair<USHORT, float> rows[] = {{0, 0.0f}, {1, 0.01f}, {50, 0.5f}, {100, 1.0f}, {65535, 655.35f}};
    for (const auto& [volume, factor] : rows) {
        a.site.volume = volume;
        a.handle(SPVES_VOLUME);
        EXPECT_EQ(a.self->sapi_volume, factor) << volume;
    }
}

TEST(HandleActions, volume_zero_reaches_sonic_as_silence) {
    Actions a;
    a.site.volume = 0;
    a.handle(SPVES_VOLUME);
    EXPECT_EQ(sonicGetVolume(a.self->sonic), 0.0f);
}

TEST(HandleActions, rate_and_volume_work_without_a_sonic_stream) {
    TestObject a;
    a.site.actions = {SPVES_RATE | SPVES_VOLUME};
    a.site.rate = 5;
    a.site.volume = 20;
    EXPECT_EQ(NELVA_SAPI_handle_actions(a.self, nullptr), 1);
    EXPECT_EQ(a.self->sapi_rate, 2.0f);
    EXPECT_EQ(a.self->sapi_volume, 0.2f);
}

TEST(HandleActions, failing_get_rate_and_get_volume_are_passed_over) {
    Actions a;
    a.site.rate = 5;
    a.site.volume = 20;
    a.site.results = {{"GetRate", {0, E_FAIL}}, {"GetVolume", {0, E_FAIL}}};
    EXPECT_EQ(a.handle(SPVES_RATE | SPVES_VOLUME), 1);
    EXPECT_EQ(a.self->sapi_rate, 1.0f);
    EXPECT_EQ(a.self->sapi_volume, 1.0f);
}

TEST(HandleActions, skip_of_sentences_jumps_and_is_completed_with_its_count) {
    Actions a;
    for (const LONG count : {3, -2, 0}) {
        a.site.skip_count = count;
        a.site.log.clear();
        EXPECT_EQ(a.handle(SPVES_SKIP), 1);
        EXPECT_EQ(a.site.log, std::vector<std::string>{"skipped " + std::to_string(count)});
    }
    EXPECT_STREQ(scripted_log(), "tts_streamer_jump 3\ntts_streamer_jump -2\ntts_streamer_jump 0\n");
}

TEST(HandleActions, skip_that_the_synthesiser_refuses_is_not_completed) {
    Actions a;
    scripted_set_jump_result(1);
    EXPECT_EQ(a.handle(SPVES_SKIP), 1);
    EXPECT_EQ(a.site.calls["CompleteSkip"], 0);
}

TEST(HandleActions, skip_of_another_type_is_neither_made_nor_completed) {
    Actions a;
    for (const int type : {0, 2, 3}) {
        a.site.skip_type = type;
        EXPECT_EQ(a.handle(SPVES_SKIP), 1);
    }
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_JUMP), 0u);
    EXPECT_EQ(a.site.calls["CompleteSkip"], 0);
}

TEST(HandleActions, failing_skip_info_is_passed_over) {
    Actions a;
    a.site.results["GetSkipInfo"] = {0, E_FAIL};
    EXPECT_EQ(a.handle(SPVES_SKIP), 1);
    EXPECT_EQ(scripted_count(SCRIPTED_STREAMER_JUMP), 0u);
}

TEST(HandleActions, unknown_bits_do_nothing) {
    Actions a;
    EXPECT_EQ(a.handle(0xFFFFFFF0u), 1);
    EXPECT_EQ(a.site.calls["GetRate"] + a.site.calls["GetVolume"] + a.site.calls["GetSkipInfo"], 0);
}

TEST(HandleActions, absurd_rates_and_volumes_change_factors_and_nothing_else) {
    Actions a;
    for (const LONG rate : {LONG{-2147483647} - 1, LONG{2147483647}}) {
        a.site.rate = rate;
        EXPECT_EQ(a.handle(SPVES_RATE), 1);
    }
    EXPECT_EQ(a.self->sapi_rate, static_cast<float>(2147483648.0 * 0.2 + 1.0));
}

}  // namespace
