// The SSML document as a whole: header, what closes and opens at each record, flushing, end.
#include "speechtext/ssml_encoder.h"

#include <gtest/gtest.h>

#include <limits>

#include "speechtext/texts.h"

namespace {

std::string root(const std::string& version, const std::string& language) {
    return "<speak version=\"" + version + "\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"" + language +
           "\">";
}

// The document of an English text in version 1.0, without its root element.
std::string body(const Speechtext& text) {
    const std::string document = text.to_ssml(), start = root("1.0", "en"), end = "</speak>";
    EXPECT_EQ(document.substr(0, start.size()), start);
    if (document.size() < start.size() + end.size()) return "(no root)";
    EXPECT_EQ(document.substr(document.size() - end.size()), end);
    return document.substr(start.size(), document.size() - start.size() - end.size());
}

std::string body_1_1(const Speechtext& text) {
    SpeechtextSsmlEncoder encoder("1.1");
    encoder.set_text(text);
    const std::string document = encoder.get_ssml(), start = root("1.1", "en"), end = "</speak>";
    EXPECT_EQ(document.substr(0, start.size()), start);
    return document.substr(start.size(), document.size() - start.size() - end.size());
}

class Builder {
public:
    Builder& operator()(const SpeechtextAttrs& record) {
        text += record;
        return *this;
    }
    Builder& operator()(const std::string& bytes) {
        text += bytes;
        return *this;
    }
    operator const Speechtext&() const { return text; }

private:
    Speechtext text;
};

const SpeechtextTextAttrs en = attrs_of("en");
const SpeechtextTextAttrs de = attrs_of("de");
const SpeechtextTextAttrs fast = with_rate(en, 1.4F);
const SpeechtextTextAttrs ann = with_voice(en, "Ann");
const SpeechtextTextAttrs raw = raw_attrs("en");

SpeechtextTextAttrs date(SpeechtextTextAttrs attrs) {
    attrs.say_as.set_interpret_as("date");
    return attrs;
}

// --- header and plain text ---

TEST(SsmlDocument, of_an_empty_text_is_empty) { EXPECT_EQ(Speechtext().to_ssml(), ""); }

TEST(SsmlDocument, without_text_attributes_has_no_root) {
    const Speechtext text = Builder()("a<b")(mark("m"))(pause("5ms"))("c");
    EXPECT_EQ(text.to_ssml(), "a&lt;b<mark name=\"m\"/><break time=\"5ms\"/>c");
}

TEST(SsmlDocument, root_stands_even_around_nothing) {
    EXPECT_EQ(Speechtext(Builder()(en)).to_ssml(), root("1.0", "en") + "</speak>");
}

TEST(SsmlDocument, neutral_text_with_its_pitch_mark) {
    SpeechtextTextAttrs neutral = en;
    neutral.prosody.set_prosody_absolute(0, 1.0F, 1.0F, 1.0F);
    const Speechtext text = Builder()(mark("P0"))(neutral)("Hi");
    EXPECT_EQ(text.to_ssml(), root("1.0", "en") + "<mark name=\"P0\"/>Hi</speak>");
}

TEST(SsmlDocument, root_takes_the_language_of_the_first_text_attributes) {
    const Speechtext text = Builder()("x")(mark("m"))(de)("y");
    EXPECT_EQ(text.to_ssml(), root("1.0", "de") + "x<mark name=\"m\"/>y</speak>");
}

TEST(SsmlDocument, voice_of_the_first_text_attributes_opens_at_once) {
    EXPECT_EQ(body(Builder()("x")(ann)("y")), "<voice name=\"Ann\">xy</voice>");
}

TEST(SsmlDocument, text_is_encoded_and_control_characters_go) {
    EXPECT_EQ(body(Builder()(en)("a<&>\"'\x01z\xC3\xA9")), "a&lt;&amp;&gt;&quot;&apos;z\xC3\xA9");
}

TEST(SsmlDocument, text_between_marks_is_encoded_run_by_run) {
    // A plain stretch of many runs, one with an ampersand every 6 bytes, and one without a plain byte.
    std::string bytes(150, 'x');
    for (int i = 0; i < 20; ++i) bytes += "words&";
    bytes += std::string(70, '<') + std::string(150, 'y');
    for (std::size_t step = 1; step < 9; ++step) {
        Builder text;
        std::string expected;
        text(en);
        for (std::size_t i = 0; i < bytes.size(); i += step) {
            text(bytes.substr(i, step))(mark("m"));
            for (char c : bytes.substr(i, step)) expected += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
            expected += "<mark name=\"m\"/>";
        }
        EXPECT_EQ(body(text), expected) << step;
    }
}

TEST(SsmlDocument, raw_run_between_plain_ones_is_not_encoded) {
    const Speechtext text = Builder()(en)("a")(raw)("<x y='&amp;'/>")(en)("b")(mark("m"))("c<");
    EXPECT_EQ(body(text), "a<x y='&amp;'/>b<mark name=\"m\"/>c&lt;");
}

TEST(SsmlDocument, attribute_values_are_not_encoded) {
    EXPECT_EQ(Speechtext(Builder()(attrs_of("a\"<&"))).to_ssml(), root("1.0", "a\"<&") + "</speak>");
    SpeechtextTextAttrs odd = en;
    odd.say_as.set_interpret_as("<\"&");
    EXPECT_EQ(body(Builder()(odd)("x")), "<say-as interpret-as=\"<\"&\">x</say-as>");
}

TEST(SsmlDocument, other_properties_are_not_written) {
    SpeechtextTextAttrs attrs = en;
    attrs.audio.set_instance(1);
    attrs.audio.source = "a.wav";
    attrs.emphasis.set_emphasis("moderate");
    attrs.lexicon.entries.emplace_back("u", "t");
    attrs.token.set_role("a:b");
    attrs.transcription.set_instance(1);
    attrs.transcription.phonemes = "a";
    EXPECT_EQ(body(Builder()(attrs)("x")), "x");
}

TEST(SsmlDocument, positions_outside_the_text_write_what_text_there_is) {
    Speechtext text = Builder()(en)("ab");
    text.append_attrs(100, mark("m"));
    EXPECT_EQ(body(text), "ab<mark name=\"m\"/>");
    Speechtext negative = Builder()("ab");
    negative.append_attrs(-5, mark("m"));
    EXPECT_EQ(negative.to_ssml(), "<mark name=\"m\"/>ab");
}

// The encoder writes a copy, which goes through the merging rule again: the second break is a repetition by then.
TEST(SsmlDocument, is_that_of_a_copy) {
    Speechtext text = Builder()(en)("a")(date(en))("b");
    // As a pass may leave it: records that say the same at two places.
    text.attrs.push_back({2, date(en).clone()});
    text += std::string("c");
    EXPECT_EQ(body(text), "a<say-as interpret-as=\"date\">bc</say-as>");
}

TEST(SsmlDocument, is_that_of_a_copy_also_behind_later_appends) {
    Speechtext text = Builder()(date(en))("a");
    text.attrs.push_back({1, date(en).clone()});
    text += mark("m");
    text += std::string("b");
    EXPECT_EQ(body(text), "<say-as interpret-as=\"date\">a<mark name=\"m\"/>b</say-as>");
}

TEST(SsmlDocument, is_that_of_a_copy_after_a_change_in_place) {
    Speechtext text = Builder()(date(en))("a")(date(de))("b");
    static_cast<SpeechtextTextAttrs*>(text.attrs.back().attrs)->set_language("en");
    EXPECT_EQ(body(text), "<say-as interpret-as=\"date\">ab</say-as>");
}

// --- prosody, voice, language, say-as ---

TEST(SsmlDocument, changed_rate_opens_and_closes_against_the_outside) {
    EXPECT_EQ(body(Builder()(en)("a")(fast)("b")(en)("c")), "a<prosody rate=\"1.40\">b</prosody>c");
}

TEST(SsmlDocument, prosody_of_successive_records_never_nests) {
    EXPECT_EQ(body(Builder()(fast)("a")(with_rate(en, 0.5F))("b")),
              "<prosody rate=\"1.40\">a</prosody><prosody rate=\"0.50\">b</prosody>");
}

TEST(SsmlDocument, language_opens_a_voice_element_and_stays_open) {
    EXPECT_EQ(body(Builder()(en)("a")(de)("b")(en)("c")),
              "a<voice xml:lang=\"de\">b<voice xml:lang=\"en\">c</voice></voice>");
}

TEST(SsmlDocument, language_opens_a_lang_element_in_1_1) {
    EXPECT_EQ(body_1_1(Builder()(en)("a")(de)("b")(en)("c")),
              "a<lang xml:lang=\"de\">b<lang xml:lang=\"en\">c</lang></lang>");
}

TEST(SsmlDocument, language_element_shields_what_lies_under_it) {
    const SpeechtextTextAttrs fast_de = with_rate(de, 1.4F);
    EXPECT_EQ(body(Builder()(fast)("a")(fast_de)("b")(de)("c")),
              "<prosody rate=\"1.40\">a<voice xml:lang=\"de\">b<prosody rate=\"1.00\">c</prosody></voice></prosody>");
}

TEST(SsmlDocument, bare_language_voice_closes_when_the_voice_changes) {
    const Builder text = Builder()(en)("a")(de)("b")(with_voice(de, "Ann"))("c");
    EXPECT_EQ(body(text), "a<voice xml:lang=\"de\">b</voice><voice xml:lang=\"de\" name=\"Ann\">c</voice>");
    EXPECT_EQ(body_1_1(text), "a<lang xml:lang=\"de\">b<voice name=\"Ann\">c</voice></lang>");
}

TEST(SsmlDocument, voice_opens_outside_prosody) {
    EXPECT_EQ(body(Builder()(en)("a")(with_rate(ann, 1.4F))("b")(en)("c")),
              "a<voice name=\"Ann\"><prosody rate=\"1.40\">b</prosody></voice>c");
}

TEST(SsmlDocument, say_as_with_and_without_format) {
    SpeechtextTextAttrs mdy = date(en);
    mdy.say_as.set_format("mdy");
    EXPECT_EQ(body(Builder()(mdy)("1/2")), "<say-as interpret-as=\"date\" format=\"mdy\">1/2</say-as>");
    SpeechtextTextAttrs format_only = en;
    format_only.say_as.set_format("mdy");
    EXPECT_EQ(body(Builder()(format_only)("1/2")), "1/2");
}

TEST(SsmlDocument, equal_say_as_on_two_records_gives_two_elements) {
    SpeechtextTextAttrs other = date(en);
    other.emphasis.set_emphasis("moderate");
    EXPECT_EQ(body(Builder()(date(en))("1")(other)("2")),
              "<say-as interpret-as=\"date\">1</say-as><say-as interpret-as=\"date\">2</say-as>");
}

TEST(SsmlDocument, mark_before_a_say_as_change_falls_into_the_old_element) {
    EXPECT_EQ(body(Builder()(date(en))("1")(mark("m"))(en)("x")),
              "<say-as interpret-as=\"date\">1<mark name=\"m\"/></say-as>x");
}

// --- paragraphs and sentences ---

TEST(SsmlDocument, sentences_and_paragraphs_open_from_their_numbers) {
    EXPECT_EQ(body(Builder()(at_location(en, 1, 1))("a")(at_location(en, 1, 2))("b")(at_location(en, 2, 1))("c")),
              "<p><s>a</s><s>b</s></p><p><s>c</s></p>");
}

TEST(SsmlDocument, paragraph_without_sentence_and_sentence_without_paragraph) {
    EXPECT_EQ(body(Builder()(en)("a")(at_location(en, 1, 0))("b")(en)("c")), "a<p>b</p>c");
    EXPECT_EQ(body(Builder()(en)("a")(at_location(en, 0, 1))("b")(en)("c")), "a<s>b</s>c");
}

TEST(SsmlDocument, paragraph_outlives_the_end_of_its_sentence) {
    EXPECT_EQ(body(Builder()(at_location(en, 1, 1))("a")(at_location(en, 1, 0))("b")), "<p><s>a</s>b</p>");
}

TEST(SsmlDocument, new_sentence_unwinds_all_that_opened_in_the_old_one) {
    const SpeechtextTextAttrs inner = at_location(with_rate(de, 1.4F), 1, 1);
    EXPECT_EQ(body(Builder()(at_location(en, 1, 1))("a")(inner)("b")(at_location(en, 1, 2))("c")),
              "<p><s>a<prosody rate=\"1.40\"><voice xml:lang=\"de\">b</voice></prosody></s><s>c</s></p>");
}

TEST(SsmlDocument, language_goes_onto_the_paragraph_or_sentence) {
    EXPECT_EQ(body(Builder()(en)("a")(at_location(de, 1, 1))("b")(en)("c")), "a<p xml:lang=\"de\"><s>b</s></p>c");
    EXPECT_EQ(body(Builder()(at_location(en, 1, 1))("a")(at_location(de, 1, 2))("b")),
              "<p><s>a</s><s xml:lang=\"de\">b</s></p>");
}

TEST(SsmlDocument, change_inside_a_sentence_opens_inside_it) {
    EXPECT_EQ(body(Builder()(at_location(en, 1, 1))("a")(at_location(fast, 1, 1))("b")),
              "<p><s>a<prosody rate=\"1.40\">b</prosody></s></p>");
}

// --- the look-ahead ---

TEST(SsmlDocument, prosody_of_a_whole_paragraph_stands_outside_it) {
    EXPECT_EQ(body(Builder()(at_location(fast, 1, 1))("a")(at_location(fast, 1, 2))("b")(at_location(en, 2, 1))("c")),
              "<prosody rate=\"1.40\"><p><s>a</s><s>b</s></p></prosody><p><s>c</s></p>");
}

TEST(SsmlDocument, voice_of_a_whole_paragraph_stands_outside_it) {
    EXPECT_EQ(body(Builder()(en)("x")(at_location(ann, 1, 1))("a")(mark("m"))(at_location(ann, 1, 2))("b")),
              "x<voice name=\"Ann\"><p><s>a<mark name=\"m\"/></s><s>b</s></p></voice>");
}

TEST(SsmlDocument, voice_of_a_whole_sentence_stands_between) {
    EXPECT_EQ(body(Builder()(en)("x")(at_location(ann, 1, 1))("a")(at_location(en, 1, 2))("b")),
              "x<p><voice name=\"Ann\"><s>a</s></voice><s>b</s></p>");
}

TEST(SsmlDocument, voice_of_part_of_a_sentence_stands_inside_it) {
    EXPECT_EQ(body(Builder()(en)("x")(at_location(ann, 1, 1))("a")(at_location(en, 1, 1))("b")),
              "x<p><s><voice name=\"Ann\">a</voice>b</s></p>");
}

TEST(SsmlDocument, prosody_of_a_whole_sentence_stands_between) {
    EXPECT_EQ(body(Builder()(at_location(fast, 1, 1))("a")(at_location(en, 1, 2))("b")),
              "<p><prosody rate=\"1.40\"><s>a</s></prosody><s>b</s></p>");
}

// It is the voice's span that decides for the prosody, in both directions.
TEST(SsmlDocument, prosody_of_part_of_a_sentence_stands_outside_it_if_the_voice_lasts) {
    EXPECT_EQ(body(Builder()(at_location(fast, 1, 1))("a")(at_location(en, 1, 1))("b")),
              "<p><prosody rate=\"1.40\"><s>a<prosody rate=\"1.00\">b</prosody></s></prosody></p>");
}

TEST(SsmlDocument, prosody_of_a_whole_sentence_stands_inside_it_if_the_voice_does_not_last) {
    EXPECT_EQ(body(Builder()(at_location(fast, 1, 1))("a")(at_location(with_rate(ann, 1.4F), 1, 1))("b")(
                  at_location(en, 1, 2))("c")),
              "<p><s><prosody rate=\"1.40\">a<voice name=\"Ann\">b</voice></prosody></s><s>c</s></p>");
}

TEST(SsmlDocument, prosody_that_is_no_number_never_lasts_for_a_paragraph) {
    const SpeechtextTextAttrs odd = with_rate(en, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(body(Builder()(at_location(odd, 1, 1))("a")),
              "<p><prosody rate=\"nan\"><s><prosody rate=\"nan\">a</prosody></s></prosody></p>");
}

// --- raw text ---

TEST(SsmlRaw, is_copied_through_also_unbalanced) {
    EXPECT_EQ(body(Builder()(raw)("<emphasis>a & b</x>")(en)("<")), "<emphasis>a & b</x>&lt;");
    EXPECT_EQ(body(Builder()(en)("<")(raw)("<a>\x01")), "&lt;<a>\x01");
}

TEST(SsmlRaw, mark_inside_an_atomic_element_moves_in_front_of_it) {
    EXPECT_EQ(body(Builder()(raw)("a <sub alias=\"x\">")(mark("m"))("b</sub>")(mark("n"))("c")),
              "a <mark name=\"m\"/><sub alias=\"x\">b</sub><mark name=\"n\"/>c");
}

TEST(SsmlRaw, marks_keep_their_order_in_front) {
    EXPECT_EQ(body(Builder()(raw)("<phoneme ph='a'>")(mark("1"))("b")(pause("5ms"))(mark("2"))("c</phoneme>")),
              "<mark name=\"1\"/><break time=\"5ms\"/><mark name=\"2\"/><phoneme ph='a'>bc</phoneme>");
}

TEST(SsmlRaw, all_six_elements_are_atomic) {
    for (const std::string name : {"desc", "phoneme", "say-as", "sub"}) {
        EXPECT_EQ(body(Builder()(raw)("<" + name + ">")(mark("m"))("x")), "<mark name=\"m\"/><" + name + ">x");
    }
    for (const std::string name : {"token", "w"}) {
        const Speechtext text = Builder()(raw)("<" + name + ">")(mark("m"))("x");
        EXPECT_EQ(text.to_ssml(), root("1.1", "en") + "<mark name=\"m\"/><" + name + ">x</speak>");
    }
}

TEST(SsmlRaw, other_elements_and_other_case_are_not) {
    EXPECT_EQ(body(Builder()(raw)("<emphasis>")(mark("m"))("x")), "<emphasis><mark name=\"m\"/>x");
    EXPECT_EQ(body(Builder()(raw)("<SUB>")(mark("m"))("x")), "<SUB><mark name=\"m\"/>x");
}

TEST(SsmlRaw, self_closing_tag_does_not_count) {
    EXPECT_EQ(body(Builder()(raw)("<phoneme ph=\"a\"/>")(mark("m"))("x")), "<phoneme ph=\"a\"/><mark name=\"m\"/>x");
}

TEST(SsmlRaw, tag_with_a_slash_in_an_attribute_does_not_count) {
    EXPECT_EQ(body(Builder()(raw)("<sub alias=\"a/b\">")(mark("m"))("x")), "<sub alias=\"a/b\"><mark name=\"m\"/>x");
}

TEST(SsmlRaw, nested_atomic_elements_count) {
    EXPECT_EQ(body(Builder()(raw)("<sub><desc></desc>")(mark("1"))("</sub>")(mark("2"))("x")),
              "<mark name=\"1\"/><sub><desc></desc></sub><mark name=\"2\"/>x");
}

TEST(SsmlRaw, closing_tag_too_many_is_ignored) {
    EXPECT_EQ(body(Builder()(raw)("</sub></w><sub>")(mark("m"))("x")), "</sub></w><mark name=\"m\"/><sub>x");
}

TEST(SsmlRaw, element_stays_open_over_ordinary_text) {
    EXPECT_EQ(body(Builder()(raw)("<sub>")(en)("a<sub>")(mark("1"))("b")(raw)("</sub>")(mark("2"))("c")),
              "<mark name=\"1\"/><sub>a&lt;sub&gt;b</sub><mark name=\"2\"/>c");
}

TEST(SsmlRaw, second_element_has_a_place_of_its_own) {
    EXPECT_EQ(body(Builder()(raw)("<sub>")(mark("1"))("a</sub> <desc>")(mark("2"))("b</desc>")(mark("3"))("c")),
              "<mark name=\"1\"/><sub>a</sub> <mark name=\"2\"/><desc>b</desc><mark name=\"3\"/>c");
}

// A stretch ends at a record, and a tag that reaches over its end is none.
TEST(SsmlRaw, tag_cut_by_a_mark_does_not_count) {
    EXPECT_EQ(body(Builder()(raw)("<sub alias=")(mark("m"))("\"x\">")(mark("n"))("y")),
              "<sub alias=<mark name=\"m\"/>\"x\"><mark name=\"n\"/>y");
}

TEST(SsmlRaw, stretch_that_is_not_utf8_holds_no_tags) {
    EXPECT_EQ(body(Builder()(raw)("<sub>\xFF")(mark("m"))("x")), "<sub>\xFF<mark name=\"m\"/>x");
    EXPECT_EQ(body(Builder()(raw)("<sub>\xC3\xA9")(mark("m"))("x")), "<mark name=\"m\"/><sub>\xC3\xA9x");
}

TEST(SsmlRaw, second_break_in_a_row_stays_inside_the_open_element) {
    EXPECT_EQ(body(Builder()(raw)("<sub>")(pause("1ms"))(pause("2ms"))("x")),
              "<break time=\"1ms\"/><sub><break time=\"2ms\"/>x");
    EXPECT_EQ(body(Builder()(raw)("<sub>")(pause("1ms"))(mark("m"))(pause("2ms"))("x")),
              "<break time=\"1ms\"/><mark name=\"m\"/><break time=\"2ms\"/><sub>x");
}

// --- the version ---

std::string version_of(const Speechtext& text) { return text.to_ssml().substr(16, 3); }

TEST(SsmlVersion, of_text_without_raw_is_1_0) { EXPECT_EQ(version_of(Builder()(en)("<w> <lang >")), "1.0"); }

TEST(SsmlVersion, raw_tags_of_1_1_in_any_case) {
    for (const std::string tag : {"<w>", "<lang ", "<lookup\t", "<TOKEN>", "<W ", "<LaNg>"}) {
        EXPECT_EQ(version_of(Builder()(raw)("x" + tag)), "1.1") << tag;
    }
}

TEST(SsmlVersion, other_raw_text_is_1_0) {
    for (const std::string tag : {"<w\n", "</w>", "<w/>", "<ww>", "< w>", "<languages>", "<sub>", "w>", "<w"}) {
        EXPECT_EQ(version_of(Builder()(raw)(tag)), "1.0") << tag;
    }
}

TEST(SsmlVersion, text_in_front_of_raw_text_counts) { EXPECT_EQ(version_of(Builder()(en)("<w>")(raw)("x")), "1.1"); }

TEST(SsmlVersion, text_behind_raw_text_does_not_count) {
    EXPECT_EQ(version_of(Builder()(raw)("x")(en)("<w>")), "1.0");
    EXPECT_EQ(version_of(Builder()(raw)("x")(en)("<w>")(raw)("y")), "1.1");
}

TEST(SsmlVersion, tag_over_the_end_of_raw_text_does_not_count) {
    EXPECT_EQ(version_of(Builder()(raw)("<w")(en)("> ")), "1.0");
}

// Each step inside raw text takes the text so far once more, one behind the other: "w <" twice holds "<w ".
TEST(SsmlVersion, tag_may_lie_across_two_steps) {
    EXPECT_EQ(version_of(Builder()(raw)("w <")), "1.0");
    EXPECT_EQ(version_of(Builder()(raw)("w <")(mark("m"))), "1.1");
}

// The steps at 1, 2, 3 and 3 make ">", "><", "><w" and "><w": only the last joint closes a "<w>".
TEST(SsmlVersion, tag_may_lie_across_the_joint_of_short_steps) {
    EXPECT_EQ(version_of(Builder()(raw)(">")(mark("1"))("<")(mark("2"))("w")(mark("3"))(en)("x")), "1.1");
    EXPECT_EQ(version_of(Builder()(raw)(">")(mark("1"))("<")(mark("2"))("w")(en)("x")), "1.0");
}

TEST(SsmlVersion, encoder_takes_it_as_given) {
    SpeechtextSsmlEncoder encoder("1.1");
    encoder.set_text(Builder()(en)("a"));
    EXPECT_EQ(encoder.get_ssml(), root("1.1", "en") + "a</speak>");
}

// --- time ---

TEST(SsmlTime, many_marks_in_an_open_raw_element_are_linear) {
    Speechtext text;
    text += raw;
    text += "<sub>" + std::string(1000000, 'x');
    for (unsigned int i = 0; i < 100000; ++i) text += mark("m", i);
    const std::string document = text.to_ssml();
    EXPECT_EQ(document.size(), root("1.0", "en").size() + 5 + 1000000 + 100000 * 16 + 8);
}

TEST(SsmlTime, unfinished_raw_tags_are_linear) {
    std::string bytes;
    for (int i = 0; i < 1000000; ++i) bytes += "<sub";
    const Speechtext text = Builder()(raw)(bytes)(mark("m"));
    EXPECT_EQ(body(text), bytes + "<mark name=\"m\"/>");
}

TEST(SsmlTime, long_raw_tag_name_is_linear) {
    const std::string bytes = "<" + std::string(3000000, 'a') + "/x<sub>";
    EXPECT_EQ(body(Builder()(raw)(bytes)(mark("m"))("y")).substr(bytes.size() - 5), "<mark name=\"m\"/><sub>y");
}

TEST(SsmlTime, many_raw_steps_are_linear) {
    Speechtext text;
    text += raw;
    for (unsigned int i = 0; i < 100000; ++i) {
        text += std::string("<emphasis>");
        text += mark("m", i);
    }
    EXPECT_EQ(version_of(text), "1.0");
}

TEST(SsmlTime, looking_ahead_over_a_long_paragraph_is_linear) {
    Speechtext text;
    for (unsigned int i = 1; i <= 40000; ++i) {
        text += at_location(with_rate(en, i % 2 ? 1.4F : 0.5F), 1, i);
        text += 'x';
    }
    const std::string document = text.to_ssml();
    EXPECT_EQ(document.substr(root("1.0", "en").size(), 62),
              "<p><prosody rate=\"1.40\"><s>x</s></prosody><prosody rate=\"0.50\"");
}

}  // namespace
