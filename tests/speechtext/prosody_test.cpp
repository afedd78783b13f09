// Texts of the prosody and audio vocabulary and the factors that they come to.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "speechtext/attribute_values.h"

namespace {

Prosody with_factors(float pitch, float rate, float volume) {
    Prosody prosody;
    prosody.pitch_value = pitch;
    prosody.rate_value = rate;
    prosody.volume_value = volume;
    return prosody;
}

float pitch_after(float before, const std::string& pitch) {
    Prosody prosody = with_factors(before, 1.0F, 1.0F);
    prosody.set_prosody(1, "", "", pitch, "", "", "", false);
    EXPECT_EQ(prosody.pitch, pitch);
    return prosody.pitch_computed();
}

float rate_after(float before, const std::string& rate, bool percent_is_relative = false) {
    Prosody prosody = with_factors(1.0F, before, 1.0F);
    prosody.set_prosody(1, "", "", "", "", rate, "", percent_is_relative);
    EXPECT_EQ(prosody.rate, rate);
    return prosody.rate_computed();
}

float volume_after(float before, const std::string& volume) {
    Prosody prosody = with_factors(1.0F, 1.0F, before);
    prosody.set_prosody(1, "", "", "", "", "", volume, false);
    EXPECT_EQ(prosody.volume, volume);
    return prosody.volume_computed();
}

TEST(SetProsody, stores_all_strings_and_the_instance) {
    Prosody prosody;
    prosody.set_prosody(7, "c", "d", "p", "a", "r", "v", false);
    EXPECT_EQ(prosody.instance, 7U);
    EXPECT_EQ(prosody.contour + prosody.duration + prosody.pitch + prosody.range + prosody.rate + prosody.volume,
              "cdparv");
    EXPECT_EQ(prosody.pitch_value, 1.0F);
    EXPECT_EQ(prosody.rate_value, 1.0F);
    EXPECT_EQ(prosody.volume_value, 1.0F);
}

TEST(SetProsody, empty_texts_empty_the_strings_and_keep_the_factors) {
    Prosody prosody;
    prosody.set_prosody(1, "c", "d", "high", "a", "fast", "loud", false);
    prosody.set_prosody(2, "", "", "", "", "", "", true);
    EXPECT_EQ(prosody.contour + prosody.duration + prosody.pitch + prosody.range + prosody.rate + prosody.volume, "");
    EXPECT_EQ(prosody.pitch_value, 1.2F);
    EXPECT_EQ(prosody.rate_value, 1.2F);
    EXPECT_EQ(prosody.volume_value, 1.5F);
}

TEST(SetProsody, negative_factors_become_0_even_without_a_text) {
    Prosody prosody = with_factors(-1.0F, -2.0F, -3.0F);
    prosody.set_prosody(1, "", "", "", "", "", "", false);
    EXPECT_EQ(prosody.pitch_value, 0.0F);
    EXPECT_EQ(prosody.rate_value, 0.0F);
    EXPECT_EQ(prosody.volume_value, 0.0F);
}

TEST(SetProsody, nested_settings_compose_on_a_copy) {
    Prosody outer;
    outer.set_prosody(1, "", "", "+50%", "", "50%", "50", true);
    Prosody inner = outer;
    inner.set_prosody(2, "", "", "+50%", "", "-50%", "+25", true);
    EXPECT_EQ(inner.pitch_value, 2.25F);
    EXPECT_EQ(inner.rate_value, 0.75F);
    EXPECT_EQ(inner.volume_value, 0.75F);
}

TEST(SetProsodyPitch, signed_percentage_is_relative) {
    EXPECT_EQ(pitch_after(1.0F, "+50%"), 1.5F);
    EXPECT_EQ(pitch_after(2.0F, "-25%"), 1.5F);
    EXPECT_EQ(pitch_after(1.0F, "-100%"), 0.0F);
    EXPECT_EQ(pitch_after(1.0F, "-200%"), 0.0F);
}

TEST(SetProsodyPitch, percentage_is_reckoned_in_double_of_the_float_value) {
    const double before = static_cast<double>(1.3F), value = static_cast<double>(12.7F);
    EXPECT_EQ(pitch_after(1.3F, "+12.7%"), static_cast<float>(before + before * value / 100.0));
}

TEST(SetProsodyPitch, semitones) {
    EXPECT_EQ(pitch_after(1.0F, "+12st"), 2.0F);
    EXPECT_EQ(pitch_after(1.0F, "-12st"), 0.5F);
    EXPECT_EQ(pitch_after(3.0F, "+24st"), 12.0F);
}

TEST(SetProsodyPitch, words) {
    EXPECT_EQ(pitch_after(9.0F, "x-low"), 0.6F);
    EXPECT_EQ(pitch_after(9.0F, "low"), 0.8F);
    EXPECT_EQ(pitch_after(9.0F, "medium"), 1.0F);
    EXPECT_EQ(pitch_after(9.0F, "high"), 1.2F);
    EXPECT_EQ(pitch_after(9.0F, "x-high"), 1.4F);
    EXPECT_EQ(pitch_after(9.0F, "default"), 1.0F);
}

TEST(SetProsodyPitch, all_else_leaves_the_factor) {
    for (const std::string text : {"200Hz", "+10Hz", "-10", "50%", "12st", "HIGH", "loud", "%", "+"}) {
        EXPECT_EQ(pitch_after(1.25F, text), 1.25F) << text;
    }
}

TEST(SetProsodyRate, signed_percentage_is_relative) {
    EXPECT_EQ(rate_after(2.0F, "+50%"), 3.0F);
    EXPECT_EQ(rate_after(2.0F, "-50%"), 1.0F);
    EXPECT_EQ(rate_after(2.0F, "-100%"), 2.0F);
    EXPECT_EQ(rate_after(2.0F, "-300%"), 2.0F);
}

TEST(SetProsodyRate, percentage_without_sign_depends_on_the_caller) {
    EXPECT_EQ(rate_after(2.0F, "50%", false), 0.5F);
    EXPECT_EQ(rate_after(2.0F, "50%", true), 3.0F);
}

TEST(SetProsodyRate, relative_change_is_a_float_product) {
    EXPECT_EQ(rate_after(1.3F, "+7.7%"), 1.3F * static_cast<float>((100.0 + 7.7) / 100.0));
}

TEST(SetProsodyRate, other_number_is_the_factor_also_with_a_sign) {
    EXPECT_EQ(rate_after(9.0F, "2"), 2.0F);
    EXPECT_EQ(rate_after(9.0F, "+2"), 2.0F);
    EXPECT_EQ(rate_after(9.0F, "+0.5"), 0.5F);
    EXPECT_EQ(rate_after(9.0F, "-1"), 0.0F);
    EXPECT_EQ(rate_after(9.0F, "3x"), 3.0F);
    EXPECT_EQ(rate_after(9.0F, "+"), 0.0F);
}

TEST(SetProsodyRate, words) {
    EXPECT_EQ(rate_after(9.0F, "x-slow"), 0.6F);
    EXPECT_EQ(rate_after(9.0F, "slow"), 0.8F);
    EXPECT_EQ(rate_after(9.0F, "medium"), 1.0F);
    EXPECT_EQ(rate_after(9.0F, "fast"), 1.2F);
    EXPECT_EQ(rate_after(9.0F, "x-fast"), 1.4F);
    EXPECT_EQ(rate_after(9.0F, "default"), 1.0F);
}

TEST(SetProsodyRate, all_else_leaves_the_factor) {
    for (const std::string text : {".5", " 2", "quick", "%", "Fast"}) EXPECT_EQ(rate_after(1.25F, text), 1.25F) << text;
}

TEST(SetProsodyVolume, decibels_multiply) {
    EXPECT_NEAR(volume_after(1.0F, "+6dB"), 1.9953F, 0.0001F);
    EXPECT_NEAR(volume_after(2.0F, "-20dB"), 0.2F, 0.000001F);
    EXPECT_EQ(volume_after(0.5F, "+0dB"), 0.5F);
}

TEST(SetProsodyVolume, decibels_are_rounded_at_each_step) {
    const float exponent = static_cast<float>(static_cast<double>(7.3F) / 20 * 2.3025851249694824);
    EXPECT_EQ(volume_after(1.7F, "+7.3dB"), 1.7F * expf(exponent));
}

TEST(SetProsodyVolume, other_signed_number_is_added) {
    EXPECT_EQ(volume_after(0.5F, "+25"), 0.75F);
    EXPECT_EQ(volume_after(0.5F, "-25%"), 0.25F);
    EXPECT_EQ(volume_after(0.5F, "-90"), 0.0F);
    EXPECT_EQ(volume_after(0.5F, "+10"), static_cast<float>(0.5 + 0.1));
}

TEST(SetProsodyVolume, number_without_sign_is_a_percentage) {
    EXPECT_EQ(volume_after(9.0F, "50"), 0.5F);
    EXPECT_EQ(volume_after(9.0F, "6dB"), static_cast<float>(0.06));
}

TEST(SetProsodyVolume, words) {
    EXPECT_EQ(volume_after(9.0F, "silent"), 0.0F);
    EXPECT_EQ(volume_after(9.0F, "x-soft"), 0.2F);
    EXPECT_EQ(volume_after(9.0F, "soft"), 0.5F);
    EXPECT_EQ(volume_after(9.0F, "medium"), 1.0F);
    EXPECT_EQ(volume_after(9.0F, "loud"), 1.5F);
    EXPECT_EQ(volume_after(9.0F, "x-loud"), 2.0F);
    EXPECT_EQ(volume_after(9.0F, "default"), 1.0F);
}

TEST(SetProsodyVolume, all_else_leaves_the_factor) {
    for (const std::string text : {"noisy", ".5", "dB"}) EXPECT_EQ(volume_after(1.25F, text), 1.25F) << text;
}

TEST(SetProsody, comma_ends_a_number) {
    EXPECT_EQ(rate_after(9.0F, "1,5"), 1.0F);
    EXPECT_EQ(volume_after(9.0F, "50,9"), 0.5F);
}

TEST(AudioSetSpeed, is_a_percentage_and_never_0_or_below) {
    Audio audio;
    const auto speed_of = [&audio](const std::string& text) {
        audio.speed = 9.0F;
        audio.set_speed(text);
        return audio.speed;
    };
    EXPECT_EQ(speed_of("150%"), 1.5F);
    EXPECT_EQ(speed_of("+50"), 0.5F);
    EXPECT_EQ(speed_of("0"), 1.0F);
    EXPECT_EQ(speed_of("-10%"), 1.0F);
    EXPECT_EQ(speed_of(""), 1.0F);
    EXPECT_EQ(speed_of("fast"), 1.0F);
    EXPECT_EQ(speed_of("nan"), 1.0F);
}

TEST(AudioSetVolume, signed_decibels_replace) {
    Audio audio;
    audio.volume = 9.0F;
    audio.set_volume("+20dB");
    EXPECT_NEAR(audio.volume, 10.0F, 0.00001F);
    audio.set_volume("-20");
    EXPECT_NEAR(audio.volume, 0.1F, 0.0000001F);
    audio.set_volume("-");
    EXPECT_EQ(audio.volume, 1.0F);
}

TEST(AudioSetVolume, second_sign_belongs_to_the_number) {
    Audio audio;
    audio.set_volume("--20dB");
    EXPECT_NEAR(audio.volume, 10.0F, 0.00001F);
}

TEST(AudioSetVolume, text_without_a_sign_changes_nothing) {
    Audio audio;
    audio.volume = 0.25F;
    audio.set_volume("6dB");
    EXPECT_EQ(audio.volume, 0.25F);
    audio.set_volume("");
    EXPECT_EQ(audio.volume, 0.25F);
}

}  // namespace
