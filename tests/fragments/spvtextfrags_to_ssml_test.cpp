// From fragments to document and map, in the two buffers that the caller frees.

#include "fragments/spvtextfrags_to_ssml.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "fragments/fragment_list.h"

namespace {

const std::string head = "<speak version=\"1.0\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"en\">";

struct Converted {
    HRESULT result;
    std::string ssml;
    std::vector<std::uint32_t> map;

    // The part of the map that belongs to the first occurrence of `piece` in the document.
    std::vector<std::uint32_t> map_of(const std::string& piece) const {
        const auto at = static_cast<std::ptrdiff_t>(ssml.find(piece));
        return {map.begin() + at, map.begin() + at + static_cast<std::ptrdiff_t>(piece.size())};
    }
};

Converted convert(const FragmentList& list, const char* language = "en") {
    char* ssml = nullptr;
    std::uint32_t* map = nullptr;
    Converted converted{spvtextfrags_to_ssml(list.first(), &ssml, &map, language), "", {}};
    if (ssml != nullptr) converted.ssml = ssml;
    if (map != nullptr) converted.map.assign(map, map + converted.ssml.size() + 1);
    free(ssml);
    free(map);
    return converted;
}

using Positions = std::vector<std::uint32_t>;

}  // namespace

TEST(SpvtextfragsToSsml, mark_prefixes_of_the_engine) {
    EXPECT_STREQ(spvtextfrags_to_ssml_opts_impl.bookmark_prefix, "B");
    EXPECT_STREQ(spvtextfrags_to_ssml_opts_impl.pitch_prefix, "P");
    EXPECT_EQ(spvtextfrags_to_ssml_opts_impl.sentence_prefix, nullptr);
    EXPECT_EQ(spvtextfrags_to_ssml_opts_impl.word_prefix, nullptr);
}

TEST(SpvtextfragsToSsml, empty_list_gives_an_empty_document_and_a_map_of_one_entry) {
    const Converted converted = convert(FragmentList());
    EXPECT_EQ(converted.result, 0);
    EXPECT_EQ(converted.ssml, "");
    EXPECT_EQ(converted.map, Positions{0});
}

TEST(SpvtextfragsToSsml, one_fragment) {
    FragmentList list;
    list.speak(NELVA_WIDE("Hi"), 5);
    const Converted converted = convert(list);
    EXPECT_EQ(converted.result, 0);
    EXPECT_EQ(converted.ssml, head + "<mark name=\"P0\"/>Hi</speak>");
    EXPECT_EQ(converted.map_of(head), Positions(head.size(), 5));
    EXPECT_EQ(converted.map_of("<mark name=\"P0\"/>"), Positions(17, 5));
    EXPECT_EQ(converted.map_of("Hi"), (Positions{5, 6}));
    EXPECT_EQ(converted.map_of("</speak>"), Positions(8, 7));
    EXPECT_EQ(converted.map.back(), 7u);
}

TEST(SpvtextfragsToSsml, language_is_that_of_the_voice) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    EXPECT_NE(convert(list, "cs").ssml.find("xml:lang=\"cs\""), std::string::npos);
    EXPECT_NE(convert(list, nullptr).ssml.find("xml:lang=\"\""), std::string::npos);
}

TEST(SpvtextfragsToSsml, special_characters_take_one_position_each) {
    FragmentList list;
    list.speak(NELVA_WIDE("a<b&"), 10);
    const Converted converted = convert(list);
    EXPECT_EQ(converted.ssml, head + "<mark name=\"P0\"/>a&lt;b&amp;</speak>");
    EXPECT_EQ(converted.map_of("a&lt;b&amp;"), (Positions{10, 11, 11, 11, 11, 12, 13, 13, 13, 13, 13}));
}

TEST(SpvtextfragsToSsml, character_of_several_bytes_keeps_its_position) {
    FragmentList list;
    list.speak(NELVA_WIDE("\u00E9\U0001F600x"), 0);
    EXPECT_EQ(convert(list).map_of("\xC3\xA9\xF0\x9F\x98\x80x<"), (Positions{0, 0, 1, 1, 1, 1, 3, 4}));
}

TEST(SpvtextfragsToSsml, tags_between_fragments_take_the_position_of_the_text_behind) {
    FragmentList list;
    list.speak(NELVA_WIDE("one"), 0);
    list.bookmark(NELVA_WIDE("here"), 3);
    list.speak(NELVA_WIDE("two"), 40);
    const Converted converted = convert(list);
    const std::string marks = "<mark name=\"P0\"/><mark name=\"Bhere\"/><mark name=\"P0\"/>";
    EXPECT_EQ(converted.ssml, head + "<mark name=\"P0\"/>one" + marks + "two</speak>");
    EXPECT_EQ(converted.map_of("one" + marks).back(), 40u);
    EXPECT_EQ(converted.map_of("two"), (Positions{40, 41, 42}));
}

TEST(SpvtextfragsToSsml, raw_tags_consume_no_position) {
    FragmentList list;
    list.raw(NELVA_WIDE("<emphasis>"), 0);
    list.speak(NELVA_WIDE("yes"), 10);
    list.raw(NELVA_WIDE("</emphasis>"), 13);
    list.speak(NELVA_WIDE("no"), 24);
    const Converted converted = convert(list);
    EXPECT_EQ(converted.map_of("yes"), (Positions{10, 11, 12}));
    EXPECT_EQ(converted.map_of("no</"), (Positions{24, 25, 26, 26}));
}

TEST(SpvtextfragsToSsml, text_between_raw_tags_makes_the_rest_run_ahead) {
    FragmentList list;
    list.raw(NELVA_WIDE("<s>y</s>"), 0);
    list.speak(NELVA_WIDE("abc"), 8);
    const Converted converted = convert(list);
    // "y" takes the entry of "a"; "c" finds only the end entry.
    EXPECT_EQ(converted.map_of("y"), Positions{8});
    EXPECT_EQ(converted.map_of("abc"), (Positions{9, 10, 11}));
    EXPECT_EQ(converted.map.back(), 11u);
}

TEST(SpvtextfragsToSsml, control_character_makes_the_rest_lag) {
    FragmentList list;
    list.speak(NELVA_WIDE("a\x01"
                          "bc"),
               0);
    const Converted converted = convert(list);
    EXPECT_EQ(converted.map_of("abc</speak>"), (Positions{0, 1, 2, 3, 3, 3, 3, 3, 3, 3, 3}));
    EXPECT_EQ(converted.map.back(), 4u);
}

TEST(SpvtextfragsToSsml, text_too_long_is_the_engines_exception_and_leaves_nothing) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).ulTextLen = 0x80000000;
    char something = 0;
    std::uint32_t number = 0;
    char* ssml = &something;
    std::uint32_t* map = &number;
    EXPECT_EQ(spvtextfrags_to_ssml(list.first(), &ssml, &map, "en"), SPERR_TTS_ENGINE_EXCEPTION);
    EXPECT_EQ(ssml, nullptr);
    EXPECT_EQ(map, nullptr);
}
