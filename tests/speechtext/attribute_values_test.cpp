// The value classes: defaults, setters, equality field by field.
#include "speechtext/attribute_values.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(Audio, default_is_no_audio_at_normal_speed_and_volume) {
    const Audio audio;
    EXPECT_EQ(audio.instance(), 0U);
    EXPECT_EQ(audio.source, "");
    EXPECT_EQ(audio.speed, 1.0F);
    EXPECT_EQ(audio.volume, 1.0F);
}

TEST(Audio, equality_looks_at_instance_and_source) {
    Audio a, b;
    a.set_instance(1);
    EXPECT_NE(a, b);
    b.set_instance(1);
    EXPECT_EQ(a, b);
    b.source = "bell.wav";
    EXPECT_NE(a, b);
}

TEST(Audio, equality_ignores_speed_and_volume) {
    Audio a, b;
    a.speed = 2.0F;
    a.volume = 0.5F;
    EXPECT_EQ(a, b);
}

TEST(Emphasis, setter_assigns_the_level) {
    Emphasis emphasis;
    EXPECT_EQ(emphasis.level, "");
    emphasis.set_emphasis("moderate");
    EXPECT_EQ(emphasis.level, "moderate");
    EXPECT_NE(emphasis, Emphasis());
}

TEST(Lexiconinfo, equality_looks_at_every_entry) {
    Lexiconinfo a, b;
    EXPECT_EQ(a, b);
    a.entries.emplace_back("uri", "type");
    EXPECT_NE(a, b);
    b.entries.emplace_back("uri", "other");
    EXPECT_NE(a, b);
    b.entries.front().second = "type";
    EXPECT_EQ(a, b);
}

TEST(Prosody, default_is_neutral_and_empty) {
    const Prosody prosody;
    EXPECT_EQ(prosody.instance, 0U);
    EXPECT_EQ(prosody.contour + prosody.duration + prosody.pitch + prosody.range + prosody.rate + prosody.volume, "");
    EXPECT_EQ(prosody.pitch_computed(), 1.0F);
    EXPECT_EQ(prosody.rate_computed(), 1.0F);
    EXPECT_EQ(prosody.volume_computed(), 1.0F);
}

TEST(Prosody, set_absolute_stores_factors_and_names_them_absolute) {
    Prosody prosody;
    prosody.set_prosody_absolute(7, 1.5F, -0.25F, 3.0F);
    EXPECT_EQ(prosody.instance, 7U);
    EXPECT_EQ(prosody.pitch_value, 1.5F);
    EXPECT_EQ(prosody.rate_value, -0.25F);
    EXPECT_EQ(prosody.volume_value, 3.0F);
    EXPECT_EQ(prosody.pitch, "(absolute)");
    EXPECT_EQ(prosody.rate, "(absolute)");
    EXPECT_EQ(prosody.volume, "(absolute)");
}

TEST(Prosody, set_absolute_leaves_contour_duration_and_range) {
    Prosody prosody;
    prosody.contour = "c";
    prosody.duration = "d";
    prosody.range = "r";
    prosody.set_prosody_absolute(0, 1.0F, 1.0F, 1.0F);
    EXPECT_EQ(prosody.contour + prosody.duration + prosody.range, "cdr");
}

template <typename Value, typename Change>
void expect_changed(Change change) {
    Value a, b;
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    change(b);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
}

TEST(Prosody, equality_looks_at_all_ten_fields) {
    expect_changed<Prosody>([](Prosody& p) { p.instance = 1; });
    expect_changed<Prosody>([](Prosody& p) { p.contour = "x"; });
    expect_changed<Prosody>([](Prosody& p) { p.duration = "x"; });
    expect_changed<Prosody>([](Prosody& p) { p.pitch_value = 2.0F; });
    expect_changed<Prosody>([](Prosody& p) { p.pitch = "x"; });
    expect_changed<Prosody>([](Prosody& p) { p.range = "x"; });
    expect_changed<Prosody>([](Prosody& p) { p.rate_value = 2.0F; });
    expect_changed<Prosody>([](Prosody& p) { p.rate = "x"; });
    expect_changed<Prosody>([](Prosody& p) { p.volume_value = 2.0F; });
    expect_changed<Prosody>([](Prosody& p) { p.volume = "x"; });
}

TEST(Prosody, not_a_number_is_unequal_to_its_copy_and_itself) {
    Prosody prosody;
    prosody.rate_value = std::numeric_limits<float>::quiet_NaN();
    const Prosody copy = prosody;
    EXPECT_NE(prosody, copy);
    EXPECT_NE(prosody, prosody);
}

TEST(SayAs, setters_assign_and_all_strings_are_compared) {
    SayAs say_as;
    EXPECT_EQ(say_as.detail() + say_as.format() + say_as.interpret_as(), "");
    say_as.set_format("mdy");
    EXPECT_NE(say_as, SayAs());
    say_as.set_interpret_as("date");
    EXPECT_EQ(say_as.format(), "mdy");
    EXPECT_EQ(say_as.interpret_as(), "date");
    expect_changed<SayAs>([](SayAs& s) { s.set_interpret_as("x"); });
}

TEST(Textlocation, default_is_nowhere) {
    EXPECT_EQ(Textlocation(), Textlocation(0, 0));
    EXPECT_FALSE(Textlocation().sentence_set());
    EXPECT_TRUE(Textlocation(0, 1).sentence_set());
}

TEST(Textlocation, set_sentence_leaves_the_paragraph) {
    Textlocation location(3, 4);
    location.set_sentence(Textlocation(8, 9));
    EXPECT_EQ(location, Textlocation(3, 9));
}

TEST(Textlocation, same_sentence_needs_the_same_paragraph) {
    EXPECT_TRUE(Textlocation::same_paragraph(Textlocation(1, 1), Textlocation(1, 2)));
    EXPECT_FALSE(Textlocation::same_paragraph(Textlocation(1, 1), Textlocation(2, 1)));
    EXPECT_TRUE(Textlocation::same_sentence(Textlocation(1, 2), Textlocation(1, 2)));
    EXPECT_FALSE(Textlocation::same_sentence(Textlocation(1, 2), Textlocation(2, 2)));
    EXPECT_FALSE(Textlocation::same_sentence(Textlocation(1, 2), Textlocation(1, 3)));
}

TEST(Textlocation, equality_looks_at_both_numbers) {
    EXPECT_NE(Textlocation(1, 2), Textlocation(1, 3));
    EXPECT_NE(Textlocation(1, 2), Textlocation(2, 2));
}

TEST(Token, equality_looks_at_instance_role_and_label) {
    expect_changed<Token>([](Token& t) { t.instance = 1; });
    expect_changed<Token>([](Token& t) { t.label = "x"; });
    EXPECT_EQ(Token().role(), "");
}

TEST(Transcription, default_alphabet_is_ipa) {
    const Transcription transcription;
    EXPECT_EQ(transcription.alphabet, "ipa");
    EXPECT_EQ(transcription.instance(), 0U);
    EXPECT_EQ(transcription.phonemes + transcription.qualifier, "");
}

TEST(Transcription, equality_looks_at_all_fields) {
    expect_changed<Transcription>([](Transcription& t) { t.set_instance(1); });
    expect_changed<Transcription>([](Transcription& t) { t.alphabet = "x"; });
    expect_changed<Transcription>([](Transcription& t) { t.phonemes = "x"; });
    expect_changed<Transcription>([](Transcription& t) { t.qualifier = "x"; });
}

TEST(Voiceinfo, default_numbers_are_unset) {
    const Voiceinfo voice;
    EXPECT_EQ(voice.age, -1);
    EXPECT_EQ(voice.variant, -1);
    EXPECT_EQ(voice.gender + voice.name, "");
}

TEST(Voiceinfo, equality_looks_at_all_fields) {
    expect_changed<Voiceinfo>([](Voiceinfo& v) { v.age = 0; });
    expect_changed<Voiceinfo>([](Voiceinfo& v) { v.gender = "x"; });
    expect_changed<Voiceinfo>([](Voiceinfo& v) { v.name = "x"; });
    expect_changed<Voiceinfo>([](Voiceinfo& v) { v.variant = 0; });
}

}  // namespace
