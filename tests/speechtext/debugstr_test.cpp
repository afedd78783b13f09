// The one-line forms of values, records and whole texts.
#include <gtest/gtest.h>

#include "speechtext/texts.h"

namespace {

TEST(AudioDebugstr, without_and_with_an_instance) {
    Audio audio;
    audio.source = "bell.wav";
    EXPECT_EQ(audio.to_string(), "-");
    audio.set_instance(4000000000U);
    EXPECT_EQ(audio.to_string(), "#4000000000:bell.wav");
}

TEST(AudioDebugstr, is_cut_at_199_bytes) {
    Audio audio;
    audio.set_instance(7);
    audio.source = std::string(300, 'x');
    EXPECT_EQ(audio.to_string(), "#7:" + std::string(196, 'x'));
    audio.source = std::string("ab\0cd", 5);
    EXPECT_EQ(audio.to_string(), "#7:ab");
}

TEST(EmphasisDebugstr, is_the_level) {
    Emphasis emphasis;
    EXPECT_EQ(emphasis.to_string(), "");
    emphasis.set_emphasis("moderate");
    EXPECT_EQ(emphasis.to_string(), "moderate");
}

TEST(ProsodyDebugstr, default_is_a_dash) {
    EXPECT_EQ(Prosody().to_string(), "-");
    Prosody absolute;
    absolute.set_prosody_absolute(0, 1.0F, 2.0F, 3.0F);
    EXPECT_EQ(absolute.to_string(), "-");
}

TEST(ProsodyDebugstr, all_default_is_one_word) {
    Prosody prosody;
    prosody.set_prosody(3, "", "", "default", "", "default", "default", false);
    EXPECT_EQ(prosody.to_string(), "[3]default");
    prosody.range = "r";
    EXPECT_EQ(prosody.to_string(), "[3]cont=,dur=,pit=default,ran=r,rat=default,vol=default");
}

TEST(ProsodyDebugstr, otherwise_all_six_strings) {
    Prosody prosody;
    prosody.set_prosody(12, "c", "d", "p", "a", "r", "v", false);
    EXPECT_EQ(prosody.to_string(), "[12]cont=c,dur=d,pit=p,ran=a,rat=r,vol=v");
    Prosody absolute;
    absolute.set_prosody_absolute(1, 1.0F, 1.0F, 1.0F);
    EXPECT_EQ(absolute.to_string(), "[1]cont=,dur=,pit=(absolute),ran=,rat=(absolute),vol=(absolute)");
}

TEST(SayAsDebugstr, has_detail_format_and_interpretation) {
    SayAs say_as;
    EXPECT_EQ(say_as.to_string(), ",,");
    say_as.set_format("mdy");
    say_as.set_interpret_as("date");
    EXPECT_EQ(say_as.to_string(), ",mdy,date");
}

TEST(TextlocationDebugstr, has_both_numbers) {
    EXPECT_EQ(Textlocation().to_string(), "#0:0");
    EXPECT_EQ(Textlocation(3, 4000000000U).to_string(), "#3:4000000000");
}

TEST(TokenDebugstr, quotes_its_label_if_there_is_one) {
    Token token;
    EXPECT_EQ(token.to_string(), "#0()");
    token.set_role("a:b");
    EXPECT_EQ(token.to_string(), "#0(a:b)");
    token.label = "label";
    token.instance = 9;
    EXPECT_EQ(token.to_string(), "#9\"label\"(a:b)");
}

TEST(TranscriptionDebugstr, has_the_qualifier_if_there_is_one) {
    Transcription transcription;
    transcription.phonemes = "a";
    EXPECT_EQ(transcription.to_string(), "-");
    transcription.set_instance(2);
    EXPECT_EQ(transcription.to_string(), "[2]ipa:a");
    transcription.qualifier = "q";
    EXPECT_EQ(transcription.to_string(), "[2]ipa<q>:a");
}

TEST(VoiceinfoDebugstr, tells_unset_names_as_question_marks) {
    Voiceinfo voice;
    EXPECT_EQ(voice.to_string(), "age -1 gender ? name ? variant -1");
    voice.age = 30;
    voice.gender = "female";
    voice.name = "Ann";
    voice.variant = 2;
    EXPECT_EQ(voice.to_string(), "age 30 gender female name Ann variant 2");
}

TEST(VoiceinfoDebugstr, is_cut_at_99_bytes) {
    Voiceinfo voice;
    voice.name = std::string(200, 'n');
    EXPECT_EQ(voice.to_string(), "age -1 gender ? name " + std::string(78, 'n'));
}

TEST(RecordDebugstr, of_marks_and_breaks) {
    SpeechtextMark a_mark = mark("m");
    EXPECT_EQ(a_mark.to_debugstr(), "mark:m");
    a_mark.invisible(true);
    EXPECT_EQ(a_mark.to_debugstr(), "mark(invisible):m");
    EXPECT_EQ(SpeechtextBreak(1, "weak", "5ms").to_debugstr(), "break(weak,5ms)");
    EXPECT_EQ(SpeechtextBreak(1, "", "").to_debugstr(), "break(,)");
}

const char default_values[] =
    "#0:0 audio(-) emphasis() prosody(-) say-as(,,) token(#0()) transcription(-) "
    "voice(age -1 gender ? name ? variant -1)";

TEST(RecordDebugstr, of_text_attributes_in_full) {
    EXPECT_EQ(attrs_of("en").to_debugstr(), std::string("attrs lang:en ") + default_values);
    EXPECT_EQ(raw_attrs("en").to_debugstr(), std::string("attrs lang:en (raw) ") + default_values);
}

TEST(RecordDebugstr, relative_to_an_equal_record_is_empty) {
    SpeechtextTextAttrs fast = attrs_of("en");
    fast.audio.speed = 2.0F;
    EXPECT_EQ(fast.to_debugstr_rel(attrs_of("en")), "");
}

TEST(RecordDebugstr, relative_tells_each_field_that_differs) {
    const SpeechtextTextAttrs before = attrs_of("en");
    SpeechtextTextAttrs now = before;
    now.language = "de";
    EXPECT_EQ(now.to_debugstr_rel(before), "attrs language(de)");
    now.raw = true;
    now.location = Textlocation(1, 2);
    now.audio.set_instance(3);
    now.emphasis.set_emphasis("strong");
    now.prosody.instance = 4;
    now.say_as.set_interpret_as("date");
    now.token.instance = 5;
    now.transcription.set_instance(6);
    now.voice.age = 7;
    EXPECT_EQ(now.to_debugstr_rel(before),
              "attrs language(de) (RAW) #1:2 audio(#3:) emphasis(strong) prosody([4]cont=,dur=,pit=,ran=,rat=,vol=) "
              "say-as(,,date) token(#5()) transcription([6]ipa:) voice(age 7 gender ? name ? variant -1)");
}

TEST(RecordDebugstr, end_of_raw_text_is_followed_by_a_blank) {
    EXPECT_EQ(attrs_of("en").to_debugstr_rel(raw_attrs("en")), "attrs (not-raw) ");
    EXPECT_EQ(at_location(attrs_of("en"), 1, 0).to_debugstr_rel(raw_attrs("en")), "attrs (not-raw)  #1:0");
}

TEST(RecordDebugstr, difference_in_lexicon_alone_is_the_bare_word) {
    SpeechtextTextAttrs now = attrs_of("en");
    now.lexicon.entries.emplace_back("u", "t");
    EXPECT_EQ(now.to_debugstr_rel(attrs_of("en")), "attrs");
    EXPECT_EQ(now.to_debugstr(), attrs_of("en").to_debugstr());
}

TEST(SpeechtextDebugstr, without_records_is_the_text) {
    EXPECT_EQ(Speechtext().to_debugstr(), "");
    EXPECT_EQ(plain("abc").to_debugstr(), "abc");
}

TEST(SpeechtextDebugstr, has_records_inline_and_attributes_relative) {
    Speechtext text;
    text += attrs_of("en");
    text += std::string("ab");
    text += mark("m");
    text += attrs_of("de");
    text += 'c';
    text += pause("5ms");
    EXPECT_EQ(text.to_debugstr(),
              std::string("(attrs lang:en ") + default_values + ")ab<mark:m>(attrs language(de))c<break(,5ms)>");
}

TEST(SpeechtextDebugstr, equal_attributes_in_a_row_print_nothing) {
    Speechtext text;
    text += attrs_of("en");
    text += 'a';
    text += attrs_of("de");
    text += attrs_of("en");
    text += 'b';
    EXPECT_EQ(text.to_debugstr(), std::string("(attrs lang:en ") + default_values + ")ab");
}

TEST(SpeechtextDebugstr, position_behind_the_end_is_reported) {
    Speechtext text = plain("abc");
    text.append_attrs(5, mark("m"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(text.to_debugstr(), "abc<mark:m>");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Corrupt Speechtext: found position 5 but string length is 3\n");
}

TEST(SpeechtextDebugstr, position_at_the_end_is_fine) {
    Speechtext text = plain("abc");
    text.append_attrs(3, mark("m"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(text.to_debugstr(), "abc<mark:m>");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
