// SAPI's XML as fragments: shapes are "action@offset:text"; the actions are 0 speak, 1 silence, 2 pronounce,
// 3 bookmark, 4 spell out, 5 section, 6 unknown tag.
#include "tools/host/sapi_xml.h"

#include <gtest/gtest.h>

#include "fragment_view.h"
#include "tools/host/hresult.h"
#include "tools/host/phonemes.h"

namespace {

using namespace host;
using Shapes = std::vector<std::string>;

SpeechInput parse(std::string_view xml) { return input_from_sapi_xml(to_wide(xml), 0x409, "x"); }

Shapes shapes_of(std::string_view xml) { return shapes(parse(xml).fragments); }

// The state in which the letter x stands in the text.
SPVSTATE state_of_x(const SpeechInput& input) {
    for (const SPVTEXTFRAG& each : records(input.fragments)) {
        if (holds_host_text(each.State.eAction) && text_of(each) == "x") return each.State;
    }
    ADD_FAILURE() << "no fragment x";
    return {};
}

SPVSTATE state_of_x(std::string_view xml) { return state_of_x(parse(xml)); }

std::string message_of(std::string_view xml) {
    try {
        parse(xml);
    } catch (const HostError& error) {
        EXPECT_EQ(error.code(), sperr_xml_bad_syntax);
        const std::string message = error.what();
        return message.substr(0, message.find(": 0x80045042"));
    }
    return "no error";
}

TEST(SapiXml, text_without_markup_is_one_neutral_fragment) {
    EXPECT_EQ(shapes_of("Hello."), Shapes{"0@0:Hello."});
    const SPVSTATE state = state_of_x("x");
    EXPECT_EQ(state.LangID, 0x409);
    EXPECT_EQ(state.Volume, 100u);
}

TEST(SapiXml, empty_text_has_no_fragments) { EXPECT_TRUE(shapes_of("").empty()); }

TEST(SapiXml, offsets_count_utf16_units_of_the_source) {
    EXPECT_EQ(shapes_of("\xF0\x9F\x98\x80<emph>a</emph>b"), (Shapes{"0@0:\xF0\x9F\x98\x80", "0@8:a", "0@16:b"}));
}

// ---- Entities ----

TEST(SapiXml, entity_ends_its_fragment_so_that_offsets_stay_right) {
    EXPECT_EQ(shapes_of("Tom &amp; Jerry"), (Shapes{"0@0:Tom &", "0@9: Jerry"}));
}

TEST(SapiXml, the_five_entities_and_numbers) {
    EXPECT_EQ(shapes_of("&lt;&gt;&quot;&apos;&#65;&#x42; "),
              (Shapes{"0@0:<", "0@4:>", "0@8:\"", "0@14:'", "0@20:A", "0@25:B", "0@31: "}));
}

TEST(SapiXml, entity_outside_the_first_plane_is_a_pair) {
    const SpeechInput input = parse("&#x1F600;x");
    EXPECT_EQ(shapes(input.fragments), (Shapes{"0@0:\xF0\x9F\x98\x80", "0@9:x"}));
    EXPECT_EQ(input.fragments.first()->ulTextLen, 2u);
}

TEST(SapiXml, entity_at_the_end_is_followed_by_the_true_end) {
    EXPECT_EQ(shapes_of("a&amp;"), (Shapes{"0@0:a&", "0@6:(null)"}));
    EXPECT_EQ(shapes_of("<emph>a&amp;</emph>"), (Shapes{"0@6:a&", "0@12:(null)"}));
}

TEST(SapiXml, bad_entities_are_refused) {
    EXPECT_EQ(message_of("AT&T"), "x:1:3: '&' is not an entity here: write '&amp;'");
    EXPECT_EQ(message_of("a &nbsp; b"), "x:1:3: there is no entity '&nbsp;': for the character itself write '&amp;'");
    for (const char* bad : {"&#0;", "&#xD800;", "&#x110000;", "&#;", "&#x;", "&#12a;", "&#99999999999;", "&;"})
        EXPECT_NE(message_of(bad).find("there is no entity"), std::string::npos) << bad;
}

// ---- State ----

TEST(SapiXml, volume_is_the_level_within_0_to_100) {
    EXPECT_EQ(state_of_x("<volume level=\"80\">x</volume>").Volume, 80u);
    EXPECT_EQ(state_of_x("<volume level=\"180\">x</volume>").Volume, 100u);
    EXPECT_EQ(state_of_x("<volume level=\"-1\">x</volume>").Volume, 0u);
    EXPECT_EQ(state_of_x("<volume level='50'><volume level='20'>x</volume></volume>").Volume, 20u);
}

TEST(SapiXml, relative_rates_add_up_and_absolute_ones_replace) {
    EXPECT_EQ(state_of_x("<rate speed='+3'><rate speed='4'>x</rate></rate>").RateAdj, 7);
    EXPECT_EQ(state_of_x("<rate speed='3'><rate speed='-5'>x</rate></rate>").RateAdj, -2);
    EXPECT_EQ(state_of_x("<rate speed='3'><rate absspeed='-5'>x</rate></rate>").RateAdj, -5);
}

TEST(SapiXml, rates_stay_within_ten_at_each_step) {
    EXPECT_EQ(state_of_x("<rate speed='8'><rate speed='8'>x</rate></rate>").RateAdj, 10);
    EXPECT_EQ(state_of_x("<rate speed='8'><rate speed='8'><rate speed='-3'>x</rate></rate></rate>").RateAdj, 7);
    EXPECT_EQ(state_of_x("<rate absspeed='-99999999999999999999'>x</rate>").RateAdj, -10);
}

TEST(SapiXml, absolute_rate_goes_before_a_relative_one_of_the_same_tag) {
    EXPECT_EQ(state_of_x("<rate speed='1' absspeed='5'>x</rate>").RateAdj, 6);
}

TEST(SapiXml, pitch_has_middle_and_range) {
    const SPVSTATE state =
        state_of_x("<pitch middle='-3' range='2'><pitch absmiddle='4' absrange='-5'>x</pitch></pitch>");
    EXPECT_EQ(state.PitchAdj.MiddleAdj, 4);
    EXPECT_EQ(state.PitchAdj.RangeAdj, -5);
    EXPECT_EQ(state_of_x("<pitch middle='-3'><pitch middle='-30'>x</pitch></pitch>").PitchAdj.MiddleAdj, -10);
}

TEST(SapiXml, language_id_is_hexadecimal) {
    EXPECT_EQ(state_of_x("<lang langid='407'>x</lang>").LangID, 0x407);
    EXPECT_EQ(state_of_x("<lang langid='C0A'>x</lang>").LangID, 0xC0A);
}

TEST(SapiXml, emphasis_spelling_and_part_of_speech) {
    EXPECT_EQ(state_of_x("<emph>x</emph>").EmphAdj, 1);
    EXPECT_EQ(state_of_x("<spell>x</spell>").eAction, SPVA_SpellOut);
    EXPECT_EQ(state_of_x("<partofsp part='Noun'>x</partofsp>").ePartOfSpeech, SPPS_Noun);
    EXPECT_EQ(state_of_x("<partofsp part='interjection'>x</partofsp>").ePartOfSpeech, SPPS_Interjection);
}

TEST(SapiXml, context_category_is_kept_as_written) {
    const SpeechInput input = parse("<context id='date_MDY'>x</context>");
    EXPECT_EQ(to_utf8(state_of_x(input).Context.pCategory), "date_MDY");
}

TEST(SapiXml, pronunciation_gives_phoneme_ids) {
    // SAPI's American English: h is 26, eh 21, stress mark 1 is 8, l 31, ow 35.
    const SpeechInput input = parse("<pron sym=\"h eh 1 l OW ??\">x</pron>");
    EXPECT_EQ(state_of_x(input).eAction, SPVA_Pronounce);
    EXPECT_EQ(WideString(state_of_x(input).pPhoneIds), (WideString{26, 21, 8, 31, 35}));
}

TEST(SapiXml, empty_pronunciation_speaks_no_text) {
    EXPECT_EQ(shapes_of("a<pron sym='h'/>b"), (Shapes{"0@0:a", "2@1:(null)", "0@16:b"}));
}

TEST(SapiXml, phoneme_ids_begin_with_one_and_end_with_49) {
    EXPECT_EQ(phoneme_ids(NELVA_WIDE("- zh")), (WideString{1, 49}));
    EXPECT_EQ(phoneme_ids(NELVA_WIDE("  ")), WideString());
}

TEST(SapiXml, state_ends_with_its_element) {
    const SpeechInput input = parse("<rate speed='5'><emph>a</emph></rate>x");
    EXPECT_EQ(state_of_x(input).RateAdj, 0);
    EXPECT_EQ(state_of_x(input).EmphAdj, 0);
}

TEST(SapiXml, empty_setting_holds_up_to_the_end_of_the_element_around_it) {
    EXPECT_EQ(state_of_x("<volume level='30'/>x").Volume, 30u);
    EXPECT_EQ(state_of_x("<rate speed='2'/><rate speed='3'/>x").RateAdj, 5);
    EXPECT_EQ(state_of_x("<emph><pitch middle='2'/>a</emph>x").PitchAdj.MiddleAdj, 0);
    EXPECT_EQ(state_of_x("<lang langid='407'/>x").LangID, 0x407);
}

TEST(SapiXml, empty_pair_of_tags_acts_on_nothing) {
    EXPECT_EQ(state_of_x("<volume level='30'></volume>x").Volume, 100u);
    EXPECT_EQ(state_of_x("<emph/>x").EmphAdj, 0);
}

TEST(SapiXml, voice_and_root_keep_their_text) {
    EXPECT_EQ(shapes_of("<sapi><voice required='Gender=Female'>a</voice></sapi>"), Shapes{"0@38:a"});
}

TEST(SapiXml, names_have_no_case) { EXPECT_EQ(state_of_x("<RATE Speed='3'>x</Rate>").RateAdj, 3); }

// ---- Fragments of their own ----

TEST(SapiXml, silence_has_its_milliseconds) {
    const SpeechInput input = parse("a<silence msec=\"500\"/>b");
    EXPECT_EQ(shapes(input.fragments), (Shapes{"0@0:a", "1@1:(null)", "0@22:b"}));
    EXPECT_EQ(records(input.fragments)[1].State.SilenceMSecs, 500u);
    EXPECT_EQ(records(input.fragments)[2].State.SilenceMSecs, 0u);
}

TEST(SapiXml, bookmark_text_is_the_mark) {
    EXPECT_EQ(shapes_of("a<bookmark mark=\"x &lt; y\"/>b"), (Shapes{"0@0:a", "3@17:x < y", "0@28:b"}));
}

TEST(SapiXml, silence_and_bookmark_carry_the_state_around_them) {
    const SpeechInput input = parse("<rate speed='4'><bookmark mark='m'></bookmark></rate>");
    EXPECT_EQ(input.fragments.first()->State.RateAdj, 4);
    EXPECT_EQ(input.fragments.first()->State.eAction, SPVA_Bookmark);
}

TEST(SapiXml, paragraphs_and_sentences_begin_with_a_section) {
    EXPECT_EQ(shapes_of("<p><s>a</s></p>"), (Shapes{"5@0:(null)", "5@3:(null)", "0@6:a"}));
    EXPECT_EQ(shapes_of("<sent>a</sent>"), (Shapes{"5@0:(null)", "0@6:a"}));
    EXPECT_EQ(shapes_of("<section>a</section>"), (Shapes{"5@0:(null)", "0@9:a"}));
}

TEST(SapiXml, unknown_tags_are_fragments_as_written) {
    EXPECT_EQ(shapes_of("<Sub alias='x>y'  >a</Sub >b<br />"),
              (Shapes{"6@0:<Sub alias='x>y'  >", "0@19:a", "6@20:</Sub >", "0@27:b", "6@28:<br />"}));
}

TEST(SapiXml, unknown_tag_carries_the_state_around_it) {
    const SpeechInput input = parse("<spell><br/></spell>");
    EXPECT_EQ(shapes(input.fragments), Shapes{"6@7:<br/>"});
}

TEST(SapiXml, comments_instructions_and_document_types_are_passed_over) {
    EXPECT_EQ(shapes_of("<?xml version='1.0'?>a<!-- <b> & -->b<!DOCTYPE a [<!ENTITY b '>'>]>c"),
              (Shapes{"0@21:a", "0@36:b", "0@67:c"}));
}

TEST(SapiXml, cdata_is_text) {
    EXPECT_EQ(shapes_of("a<![CDATA[<b> & ]]]>c"), (Shapes{"0@0:a", "0@10:<b> & ]", "0@20:c"}));
    EXPECT_TRUE(shapes_of("<![CDATA[]]>").empty());
}

// ---- Mistakes ----

TEST(SapiXml, elements_close_in_order) {
    EXPECT_EQ(message_of("<emph>a"), "x:1:1: '<emph>' is not closed");
    EXPECT_EQ(message_of("a</emph>"), "x:1:2: '</emph>' closes nothing");
    EXPECT_EQ(message_of("<emph><b>a</emph></b>"), "x:1:11: '</emph>' stands where '</b>' is expected");
}

TEST(SapiXml, place_is_line_and_column_in_characters) {
    EXPECT_EQ(message_of("\xF0\x9F\x98\x80\n\xC3\xA9</b>"), "x:2:2: '</b>' closes nothing");
}

TEST(SapiXml, tags_are_well_formed) {
    EXPECT_EQ(message_of("1 < 2"), "x:1:4: '<' is not a tag here: write '&lt;'");
    EXPECT_EQ(message_of("<emph"), "x:1:1: the tag 'emph' does not end with '>'");
    EXPECT_EQ(message_of("<emph a>"), "x:1:7: the attribute 'a' has no value");
    EXPECT_EQ(message_of("<rate speed=5>"), "x:1:13: the value of 'speed' needs quotes");
    EXPECT_EQ(message_of("<rate speed='5>"), "x:1:13: the value of 'speed' has no closing quote");
    EXPECT_EQ(message_of("<a b='1'c='2'/>"), "x:1:9: a blank, '/>' or '>' is expected here");
    EXPECT_EQ(message_of("<a b='1' B='2'/>").find("x:1:15: the attribute 'b' is given twice"), 0u);
    EXPECT_EQ(message_of("<a b='<'/>"), "x:1:7: '<' is not allowed in a value: write '&lt;'");
    EXPECT_EQ(message_of("<a></a b='1'>"), "x:1:8: '>' is expected here");
    EXPECT_EQ(message_of("<!-- x"), "x:1:1: the comment does not end with '-->'");
    EXPECT_EQ(message_of("<?x"), "x:1:1: the processing instruction does not end with '?>'");
    EXPECT_EQ(message_of("<![CDATA[x"), "x:1:1: the CDATA section does not end with ']]>'");
    EXPECT_EQ(message_of("<!DOCTYPE"), "x:1:1: '<!' does not end with '>'");
}

TEST(SapiXml, needed_attributes_are_named) {
    EXPECT_EQ(message_of("<silence/>"), "x:1:1: '<silence>' needs msec=\"...\"");
    EXPECT_EQ(message_of("<bookmark/>"), "x:1:1: '<bookmark>' needs mark=\"...\"");
    EXPECT_EQ(message_of("<volume>x</volume>"), "x:1:1: '<volume>' needs level=\"...\"");
    EXPECT_EQ(message_of("<rate/>"), "x:1:1: '<rate>' needs speed=\"...\" or absspeed=\"...\"");
    EXPECT_EQ(message_of("<pitch/>"), "x:1:1: '<pitch>' needs middle=\"...\" or absmiddle=\"...\"");
    EXPECT_EQ(message_of("<lang/>"), "x:1:1: '<lang>' needs langid=\"...\"");
    EXPECT_EQ(message_of("<context/>"), "x:1:1: '<context>' needs id=\"...\"");
    EXPECT_EQ(message_of("<partofsp/>"), "x:1:1: '<partofsp>' needs part=\"...\"");
    EXPECT_EQ(message_of("<pron/>"), "x:1:1: '<pron>' needs sym=\"...\"");
}

TEST(SapiXml, bad_values_are_shown) {
    EXPECT_EQ(message_of("<rate speed='fast'/>"), "x:1:14: 'fast' is not a whole number");
    EXPECT_EQ(message_of("<rate speed=''/>"), "x:1:14: '' is not a whole number");
    EXPECT_EQ(message_of("<rate speed='+'/>"), "x:1:14: '+' is not a whole number");
    EXPECT_EQ(message_of("<rate speed='1.5'/>"), "x:1:14: '1.5' is not a whole number");
    EXPECT_EQ(message_of("<silence msec='-5'/>"), "x:1:16: silence cannot last less than 0 ms");
    EXPECT_EQ(message_of("<lang langid='en'/>"), "x:1:15: 'en' is not a language id of up to four hexadecimal digits");
    EXPECT_EQ(message_of("<partofsp part='x'/>").find("x:1:17: part is one of"), 0u);
}

TEST(SapiXml, blanks_around_a_number_do_not_matter) { EXPECT_EQ(state_of_x("<rate speed=' 5 '>x</rate>").RateAdj, 5); }

TEST(SapiXml, silence_and_bookmark_have_no_content) {
    EXPECT_EQ(message_of("<silence msec='5'>x</silence>"),
              "x:1:19: '<silence>' has to be empty: write '/>' at its end");
    EXPECT_EQ(message_of("<bookmark mark='5'><emph/></bookmark>"),
              "x:1:20: '<bookmark>' has to be empty: write '/>' at its end");
}

// ---- Size ----

TEST(SapiXml, deep_nesting_and_many_attributes_cost_linear_time) {
    std::string deep;
    for (int i = 0; i < 100'000; ++i) deep += "<b>";
    for (int i = 0; i < 100'000; ++i) deep += "</b>";
    EXPECT_EQ(parse(deep).fragments.size(), 200'000u);
    std::string wide = "<b";
    for (int i = 0; i < 100'000; ++i) wide += " a" + std::to_string(i) + "=''";
    EXPECT_EQ(parse(wide + "/>").fragments.size(), 1u);
}

TEST(SapiXml, host_text_is_the_source) {
    EXPECT_EQ(to_utf8(parse("<emph>ab</emph>").text.cut(6, 2)), "ab");
    EXPECT_EQ(to_utf8(parse("<emph>ab</emph>").text.cut(0, 6)), "<emph>");
}

}  // namespace
