// The elements one by one: their attributes, their formats, and what they bring into force.
#include <gtest/gtest.h>

#include <limits>

#include "speechtext/ssml_encoder.h"
#include "speechtext/texts.h"

struct SsmlEncoderTestAccess {
    explicit SsmlEncoderTestAccess(const std::string& version) : encoder(version) { encoder.push("speak"); }

    std::string mark(const SpeechtextMark& mark) {
        return written([&] { encoder.add_ssml_mark(mark); });
    }
    std::string pause(const SpeechtextBreak& pause) {
        return written([&] { encoder.add_ssml_break(pause); });
    }
    std::string p(const SpeechtextTextAttrs& ta) {
        return written([&] { encoder.add_ssml_start_p(ta); });
    }
    std::string s(const SpeechtextTextAttrs& ta) {
        return written([&] { encoder.add_ssml_start_s(ta); });
    }
    std::string voice(const SpeechtextTextAttrs& ta) {
        return written([&] { encoder.add_ssml_start_voice(ta); });
    }
    std::string prosody(const SpeechtextTextAttrs& ta) {
        return written([&] { encoder.add_ssml_start_prosody(ta); });
    }
    std::string legacy(const SpeechtextTextAttrs& ta) {
        return written([&] { encoder.add_ssml_start_prosody_legacy(ta); });
    }
    std::string close() {
        return written([&] { encoder.close_top(); });
    }
    void text(const std::string& bytes) { encoder.ssml += bytes; }
    std::size_t open() const { return encoder.open_elements.size(); }
    const Prosody& prosody_in_force() const { return encoder.current.prosody; }
    const Voiceinfo& voice_in_force() const { return encoder.current.voice; }
    const Textlocation& location_in_force() const { return encoder.current.location; }
    const std::string& language_in_force() const { return encoder.current.language; }

private:
    template <typename Action>
    std::string written(Action action) {
        const std::size_t before = encoder.ssml.size();
        action();
        return encoder.ssml.substr(before);
    }

    SpeechtextSsmlEncoder encoder;
};

namespace {

SpeechtextTextAttrs factors(float pitch, float rate, float volume) {
    SpeechtextTextAttrs attrs;
    attrs.prosody.set_prosody_absolute(0, pitch, rate, volume);
    return attrs;
}

SpeechtextTextAttrs pitch(float factor) { return factors(factor, 1.0F, 1.0F); }
SpeechtextTextAttrs rate(float factor) { return factors(1.0F, factor, 1.0F); }
SpeechtextTextAttrs volume(float factor) { return factors(1.0F, 1.0F, factor); }

using Access = SsmlEncoderTestAccess;

// What goes out for the second prosody when the first is in force.
std::string between(const char* version, const SpeechtextTextAttrs& before, const SpeechtextTextAttrs& now) {
    Access encoder(version);
    encoder.prosody(before);
    return encoder.prosody(now);
}

// --- marks and breaks ---

TEST(SsmlMark, has_a_name_and_may_be_invisible) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.mark(SpeechtextMark(1, "m")), "<mark name=\"m\"/>");
    EXPECT_EQ(encoder.mark(SpeechtextMark(1, "")), "<mark/>");
    SpeechtextMark invisible(1, "m");
    invisible.invisible(true);
    EXPECT_EQ(encoder.mark(invisible), "<mark name=\"m\" qm:invisible=\"true\"/>");
}

TEST(SsmlMark, after_another_has_its_own_name_and_visibility) {
    Access encoder("1.0");
    SpeechtextMark invisible(3, "m");
    invisible.invisible(true);
    EXPECT_EQ(encoder.mark(SpeechtextMark(1, "m")), "<mark name=\"m\"/>");
    EXPECT_EQ(encoder.mark(SpeechtextMark(2, "m")), "<mark name=\"m\"/>");
    EXPECT_EQ(encoder.mark(invisible), "<mark name=\"m\" qm:invisible=\"true\"/>");
    EXPECT_EQ(encoder.mark(SpeechtextMark(4, "m")), "<mark name=\"m\"/>");
    EXPECT_EQ(encoder.mark(SpeechtextMark(5, "")), "<mark/>");
    EXPECT_EQ(encoder.mark(SpeechtextMark(6, "n")), "<mark name=\"n\"/>");
}

TEST(SsmlMark, name_is_not_escaped) {
    EXPECT_EQ(Access("1.0").mark(SpeechtextMark(1, "a\"<&b")), "<mark name=\"a\"<&b\"/>");
}

TEST(SsmlBreak, has_strength_and_time_if_they_are_there) {
    Access encoder("1.0");
    encoder.text("a");
    EXPECT_EQ(encoder.pause(SpeechtextBreak(1, "weak", "5ms")), "<break strength=\"weak\" time=\"5ms\"/>");
    encoder.text("b");
    EXPECT_EQ(encoder.pause(SpeechtextBreak(1, "weak", "")), "<break strength=\"weak\"/>");
    encoder.text("c");
    EXPECT_EQ(encoder.pause(SpeechtextBreak(1, "", "")), "<break/>");
}

TEST(SsmlBreak, second_in_a_row_is_dropped_whatever_it_says) {
    Access encoder("1.0");
    encoder.text("a");
    EXPECT_EQ(encoder.pause(SpeechtextBreak(1, "", "")), "<break/>");
    EXPECT_EQ(encoder.pause(SpeechtextBreak(2, "strong", "9s")), "");
    EXPECT_EQ(encoder.mark(SpeechtextMark(1, "")), "<mark/>");
    EXPECT_EQ(encoder.pause(SpeechtextBreak(2, "strong", "")), "<break strength=\"strong\"/>");
}

TEST(SsmlBreak, first_in_an_empty_document_is_dropped) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.pause(SpeechtextBreak(1, "", "5ms")), "");
    Speechtext text;
    text += SpeechtextBreak(1, "", "5ms");
    EXPECT_EQ(text.to_ssml(), "");
}

// --- p and s ---

TEST(SsmlParagraph, opens_no_sentence) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.p(at_location(attrs_of(""), 2, 3)), "<p>");
    EXPECT_EQ(encoder.location_in_force(), Textlocation(2, 0));
    EXPECT_EQ(encoder.open(), 2U);
}

TEST(SsmlParagraph, does_nothing_while_one_is_open_or_without_a_number) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.p(at_location(attrs_of("de"), 0, 1)), "");
    encoder.p(at_location(attrs_of(""), 1, 0));
    EXPECT_EQ(encoder.p(at_location(attrs_of(""), 2, 0)), "");
    EXPECT_EQ(encoder.open(), 2U);
}

TEST(SsmlParagraph, tells_a_changed_language) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.p(at_location(attrs_of("de"), 1, 0)), "<p xml:lang=\"de\">");
    EXPECT_EQ(encoder.language_in_force(), "de");
    EXPECT_EQ(encoder.close(), "</p>");
    EXPECT_EQ(encoder.language_in_force(), "");
}

TEST(SsmlSentence, opens_once_and_sets_the_location) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.s(at_location(attrs_of(""), 1, 0)), "");
    EXPECT_EQ(encoder.s(at_location(attrs_of("de"), 1, 2)), "<s xml:lang=\"de\">");
    EXPECT_EQ(encoder.location_in_force(), Textlocation(1, 2));
    EXPECT_EQ(encoder.s(at_location(attrs_of("de"), 1, 3)), "");
}

// --- voice ---

TEST(SsmlVoice, attributes_stand_in_order) {
    SpeechtextTextAttrs ta = attrs_of("de");
    ta.voice.gender = "female";
    ta.voice.age = 66;
    ta.voice.variant = 65;
    ta.voice.name = "Ann";
    EXPECT_EQ(Access("1.0").voice(ta),
              "<voice xml:lang=\"de\" gender=\"female\" age=\"B\" variant=\"A\" name=\"Ann\">");
}

TEST(SsmlVoice, numbers_go_out_as_the_character_of_their_low_byte) {
    SpeechtextTextAttrs ta;
    ta.voice.age = 0x141;
    ta.voice.variant = 0;
    EXPECT_EQ(Access("1.0").voice(ta), std::string("<voice age=\"A\" variant=\"\0\">", 27));
}

TEST(SsmlVoice, emptied_gender_is_told_and_emptied_name_is_not) {
    Access encoder("1.0");
    SpeechtextTextAttrs ta;
    ta.voice.gender = "male";
    ta.voice.name = "Bob";
    encoder.voice(ta);
    EXPECT_EQ(encoder.voice(SpeechtextTextAttrs()), "<voice gender=\"\">");
}

TEST(SsmlVoice, change_without_an_attribute_writes_nothing_and_counts) {
    Access encoder("1.0");
    SpeechtextTextAttrs ta;
    ta.voice.age = 65;
    ta.voice.name = "Bob";
    encoder.voice(ta);
    EXPECT_EQ(encoder.voice(SpeechtextTextAttrs()), "");
    EXPECT_EQ(encoder.open(), 2U);
    EXPECT_EQ(encoder.voice_in_force(), Voiceinfo());
    EXPECT_EQ(encoder.voice(ta), "<voice age=\"A\" name=\"Bob\">");
}

TEST(SsmlVoice, without_a_difference_writes_nothing) { EXPECT_EQ(Access("1.0").voice(SpeechtextTextAttrs()), ""); }

// --- prosody ---

TEST(SsmlProsody, equal_prosody_does_nothing) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.prosody(SpeechtextTextAttrs()), "");
    EXPECT_EQ(encoder.open(), 1U);
}

TEST(SsmlProsody, change_of_strings_alone_writes_nothing_and_counts) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.prosody(factors(1.0F, 1.0F, 1.0F)), "");
    EXPECT_EQ(encoder.open(), 1U);
    EXPECT_EQ(encoder.prosody_in_force().rate, "(absolute)");
}

TEST(SsmlProsody, attributes_stand_in_order) {
    EXPECT_EQ(Access("1.0").prosody(factors(2.0F, 1.5F, 0.5F)),
              "<prosody pitch=\"+100%\" rate=\"1.50\" volume=\"50\">");
}

TEST(SsmlProsody, pitch_is_relative_to_what_is_in_force) {
    EXPECT_EQ(between("1.0", pitch(1.0F), pitch(0.5F)), "<prosody pitch=\"-50%\">");
    EXPECT_EQ(between("1.1", pitch(2.0F), pitch(3.0F)), "<prosody pitch=\"+50%\">");
    EXPECT_EQ(between("1.0", pitch(4.0F), pitch(0.0F)), "<prosody pitch=\"-100%\">");
}

TEST(SsmlProsody, pitch_near_1_is_the_default) {
    EXPECT_EQ(between("1.0", pitch(2.0F), pitch(1.0F)), "<prosody pitch=\"default\">");
    EXPECT_EQ(between("1.0", pitch(1.0F), pitch(1.004F)), "<prosody pitch=\"default\">");
    EXPECT_EQ(between("1.0", pitch(1.0F), pitch(1.006F)), "<prosody pitch=\"+1%\">");
}

TEST(SsmlProsody, pitch_from_nothing_is_without_bounds) {
    EXPECT_EQ(between("1.0", pitch(0.0F), pitch(2.0F)), "<prosody pitch=\"+inf%\">");
}

TEST(SsmlProsody, rate_is_a_factor_in_1_0_and_a_percentage_in_1_1) {
    EXPECT_EQ(between("1.0", rate(1.0F), rate(1.4F)), "<prosody rate=\"1.40\">");
    EXPECT_EQ(between("1.1", rate(1.0F), rate(1.4F)), "<prosody rate=\"140%\">");
    EXPECT_EQ(between("1.0", rate(1.0F), rate(-0.5F)), "<prosody rate=\"-0.50\">");
}

TEST(SsmlProsody, rate_back_to_1_is_told_as_a_number) {
    EXPECT_EQ(between("1.0", rate(1.4F), rate(1.0F)), "<prosody rate=\"1.00\">");
    EXPECT_EQ(between("1.1", rate(1.4F), rate(1.0F)), "<prosody rate=\"100%\">");
}

// The word goes out near 0.01 and nowhere else.
TEST(SsmlProsody, rate_near_a_hundredth_is_the_default) {
    EXPECT_EQ(between("1.0", rate(1.0F), rate(0.01F)), "<prosody rate=\"default\">");
    EXPECT_EQ(between("1.1", rate(1.0F), rate(0.014F)), "<prosody rate=\"default\">");
    EXPECT_EQ(between("1.0", rate(1.0F), rate(0.02F)), "<prosody rate=\"0.02\">");
    EXPECT_EQ(between("1.0", rate(1.0F), rate(0.004F)), "<prosody rate=\"0.00\">");
}

TEST(SsmlProsody, volume_is_a_number_in_1_0) {
    EXPECT_EQ(between("1.0", volume(1.0F), volume(0.5F)), "<prosody volume=\"50\">");
    EXPECT_EQ(between("1.0", volume(0.0F), volume(0.5F)), "<prosody volume=\"50\">");
    EXPECT_EQ(between("1.0", volume(1.0F), volume(0.001F)), "<prosody volume=\"0\">");
}

TEST(SsmlProsody, volume_is_in_decibels_in_1_1) {
    EXPECT_EQ(between("1.1", volume(1.0F), volume(0.5F)), "<prosody volume=\"-6.0dB\">");
    EXPECT_EQ(between("1.1", volume(0.5F), volume(2.0F)), "<prosody volume=\"+12.0dB\">");
    EXPECT_EQ(between("1.1", volume(1.0F), volume(0.001F)), "<prosody volume=\"-60.0dB\">");
}

TEST(SsmlProsody, volume_words_in_both_versions) {
    for (const char* version : {"1.0", "1.1"}) {
        EXPECT_EQ(between(version, volume(0.5F), volume(1.0F)), "<prosody volume=\"default\">");
        EXPECT_EQ(between(version, volume(1.0F), volume(0.0F)), "<prosody volume=\"silent\">");
        EXPECT_EQ(between(version, volume(1.0F), volume(0.0009F)), "<prosody volume=\"silent\">");
        EXPECT_EQ(between(version, volume(1.0F), volume(-1.0F)), "<prosody volume=\"silent\">");
        EXPECT_EQ(between(version, volume(0.0F), volume(1.0F)), "<prosody volume=\"default\">");
    }
}

TEST(SsmlProsody, volume_up_from_silence_starts_from_the_default) {
    Access encoder("1.1");
    EXPECT_EQ(encoder.prosody(volume(0.0F)), "<prosody volume=\"silent\">");
    EXPECT_EQ(encoder.prosody(volume(0.5F)), "<prosody volume=\"default\"><prosody volume=\"-6.0dB\">");
    EXPECT_EQ(encoder.open(), 4U);
    EXPECT_EQ(encoder.close() + encoder.close(), "</prosody></prosody>");
    EXPECT_EQ(encoder.prosody_in_force().volume_value, 0.0F);
}

TEST(SsmlProsody, volume_counts_as_inaudible_below_a_twentieth) {
    EXPECT_EQ(between("1.1", volume(0.04F), volume(0.5F)), "<prosody volume=\"default\"><prosody volume=\"-6.0dB\">");
    EXPECT_EQ(between("1.1", volume(0.05F), volume(0.5F)), "<prosody volume=\"+20.0dB\">");
}

TEST(SsmlProsody, lead_in_stands_outside_the_other_attributes) {
    EXPECT_EQ(between("1.1", volume(0.0F), factors(2.0F, 1.0F, 0.5F)),
              "<prosody volume=\"default\"><prosody pitch=\"+100%\" volume=\"-6.0dB\">");
}

TEST(SsmlProsody, not_a_number_differs_each_time) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(between("1.0", rate(nan), rate(nan)), "<prosody rate=\"nan\">");
    EXPECT_EQ(between("1.1", rate(1.0F), rate(nan)), "<prosody rate=\"nan%\">");
}

TEST(SsmlProsody, silence_under_a_language_element) {
    Speechtext text;
    text += factors(1.0F, 1.0F, 0.0F);
    text += 'a';
    SpeechtextTextAttrs silent_de = factors(1.0F, 1.0F, 0.0F);
    silent_de.set_language("de");
    text += silent_de;
    text += 'b';
    SpeechtextTextAttrs half_de = factors(1.0F, 1.0F, 0.5F);
    half_de.set_language("de");
    text += half_de;
    text += 'c';
    SpeechtextSsmlEncoder encoder("1.1");
    encoder.set_text(text);
    EXPECT_EQ(
        encoder.get_ssml(),
        "<speak version=\"1.1\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"\">"
        "<prosody volume=\"silent\">a<lang xml:lang=\"de\">b<prosody volume=\"default\"><prosody volume=\"-6.0dB\">c"
        "</prosody></prosody></lang></prosody></speak>");
}

// --- the older form ---

TEST(SsmlProsodyLegacy, tells_all_three_against_the_default) {
    Access encoder("1.0");
    EXPECT_EQ(encoder.legacy(factors(0.5F, 1.4F, 0.995F)), "<prosody rate=\"+40%\" volume=\"default\" pitch=\"-50%\">");
    EXPECT_EQ(encoder.open(), 2U);
    EXPECT_EQ(encoder.prosody_in_force().pitch_value, 0.5F);
}

TEST(SsmlProsodyLegacy, is_written_without_a_change_as_well) {
    EXPECT_EQ(Access("1.0").legacy(SpeechtextTextAttrs()),
              "<prosody rate=\"default\" volume=\"default\" pitch=\"default\">");
}

// 1.01 in single precision lies less than 0.01 above 1.
TEST(SsmlProsodyLegacy, threshold_is_a_hundredth_of_the_float_difference) {
    EXPECT_EQ(Access("1.0").legacy(factors(1.01F, 1.02F, 2.0F)),
              "<prosody rate=\"+2%\" volume=\"+100%\" pitch=\"default\">");
}

}  // namespace
