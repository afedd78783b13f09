// The map from document bytes to host positions.

#include <gtest/gtest.h>

#include "fragments/spvtextfrags_to_ssml.h"

namespace {

using Positions = std::vector<std::uint32_t>;

Positions posmap(const std::string& ssml, const Positions& positions) {
    Positions map;
    build_ssml_sapi_posmap(&map, ssml, positions);
    return map;
}

Positions repeated(std::size_t count, std::uint32_t position) { return Positions(count, position); }

Positions operator+(Positions a, const Positions& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace

TEST(Posmap, empty_document_holds_the_end_entry) { EXPECT_EQ(posmap("", {7}), Positions{7}); }

TEST(Posmap, earlier_contents_of_the_map_are_overwritten) {
    Positions map(100, 42);
    build_ssml_sapi_posmap(&map, "ab", {1, 2, 3});
    EXPECT_EQ(map, (Positions{1, 2, 3}));
}

TEST(Posmap, text_bytes_take_one_entry_each) { EXPECT_EQ(posmap("abc", {5, 6, 7, 8}), (Positions{5, 6, 7, 8})); }

TEST(Posmap, tag_at_the_start_takes_the_first_entry) {
    EXPECT_EQ(posmap("<s>ab", {5, 6, 7}), (Positions{5, 5, 5, 5, 6, 7}));
}

TEST(Posmap, tag_in_the_middle_takes_the_position_of_the_byte_behind_it) {
    EXPECT_EQ(posmap("a<b/>c", {10, 20, 30}), (Positions{10, 20, 20, 20, 20, 20, 30}));
}

TEST(Posmap, tag_behind_the_last_byte_takes_the_end_entry) {
    EXPECT_EQ(posmap("a</p>", {3, 9}), (Positions{3, 9, 9, 9, 9, 9}));
}

TEST(Posmap, neighbouring_tags_take_the_same_position) {
    EXPECT_EQ(posmap("<p><s>x", {4, 5}), (repeated(7, 4) + Positions{5}));
}

TEST(Posmap, greater_than_between_quotes_does_not_end_a_tag) {
    EXPECT_EQ(posmap("<mark name=\"a>b\"/>x", {1, 2}), (repeated(19, 1) + Positions{2}));
}

TEST(Posmap, greater_than_between_apostrophes_does_not_end_a_tag) {
    EXPECT_EQ(posmap("<m n='>'/>x", {1, 2}), (repeated(11, 1) + Positions{2}));
}

TEST(Posmap, apostrophe_between_quotes_opens_nothing) {
    // Were a second quote opened, the tag would run to the end and y would take 1.
    EXPECT_EQ(posmap("<m n=\"it's\">xy", {1, 2, 3}), (repeated(13, 1) + Positions{2, 3}));
}

TEST(Posmap, quote_between_apostrophes_opens_nothing) {
    EXPECT_EQ(posmap("<m n='\"'>xy", {1, 2, 3}), (repeated(10, 1) + Positions{2, 3}));
}

TEST(Posmap, quote_may_open_again_in_the_same_tag) {
    EXPECT_EQ(posmap("<m a=\"1\" b='>'>x", {1, 2}), (repeated(16, 1) + Positions{2}));
}

TEST(Posmap, tag_ends_at_the_same_byte_wherever_its_quotes_stand) {
    // Each quote, the ">" in it and the end once at every offset of a block and across its border.
    for (std::size_t padding = 0; padding < 40; ++padding) {
        const std::string tag = "<m" + std::string(padding, ' ') + "a=\"'>\" b='\">'/>";
        EXPECT_EQ(posmap(tag + "xy", {1, 2, 3}), (repeated(tag.size() + 1, 1) + Positions{2, 3})) << padding;
        EXPECT_EQ(posmap(tag + std::string(40, 'x'), {7}), repeated(tag.size() + 41, 7)) << padding;
    }
}

TEST(Posmap, quote_that_is_open_across_blocks_hides_every_greater_than) {
    const std::string tag = "<m n=\"" + std::string(50, '>') + "\"/>";
    EXPECT_EQ(posmap(tag + std::string(20, 'x'), {4}), repeated(tag.size() + 21, 4));
}

TEST(Posmap, unterminated_tag_runs_to_the_end) { EXPECT_EQ(posmap("a<b", {1, 2}), (Positions{1, 2, 2, 2})); }

TEST(Posmap, unterminated_quote_runs_to_the_end) {
    EXPECT_EQ(posmap("<b c=\">xy", {1, 2, 3}), (repeated(9, 1) + Positions{3}));
}

TEST(Posmap, entity_is_one_text_byte) { EXPECT_EQ(posmap("&amp;x", {1, 2, 3}), (Positions{1, 1, 1, 1, 1, 2, 3})); }

TEST(Posmap, neighbouring_entities_are_one_text_byte_each) {
    EXPECT_EQ(posmap("&lt;&gt;", {1, 2, 3}), (repeated(4, 1) + repeated(4, 2) + Positions{3}));
}

TEST(Posmap, unterminated_entity_stops_at_the_end) { EXPECT_EQ(posmap("x&am", {1, 2, 3}), (Positions{1, 2, 2, 2, 3})); }

TEST(Posmap, lone_ampersand_at_the_end_is_one_text_byte) { EXPECT_EQ(posmap("&", {1, 2}), (Positions{1, 2})); }

TEST(Posmap, entity_swallows_a_tag_up_to_the_semicolon) {
    EXPECT_EQ(posmap("&<b>;x", {1, 2, 3}), (repeated(5, 1) + Positions{2, 3}));
}

TEST(Posmap, tag_swallows_an_entity) { EXPECT_EQ(posmap("<a&b;>x", {1, 2}), (repeated(7, 1) + Positions{2})); }

TEST(Posmap, greater_than_and_quotes_outside_tags_are_text) {
    EXPECT_EQ(posmap(">\"'", {1, 2, 3, 4}), (Positions{1, 2, 3, 4}));
}

TEST(Posmap, bytes_of_one_character_keep_their_common_position) {
    EXPECT_EQ(posmap("\xC3\xA9\x61", {0, 0, 1, 2}), (Positions{0, 0, 1, 2}));
}

TEST(Posmap, nul_is_a_text_byte) { EXPECT_EQ(posmap(std::string("a\0b", 3), {1, 2, 3, 4}), (Positions{1, 2, 3, 4})); }

TEST(Posmap, dropped_character_makes_the_rest_lag_but_not_the_end) {
    // Three text bytes, of which the writer dropped the first: "b" and "c" lag by one, the end entry is right.
    EXPECT_EQ(posmap("bc", {0, 1, 2, 3}), (Positions{0, 1, 3}));
}

TEST(Posmap, text_behind_the_last_entry_holds_the_end_position) {
    EXPECT_EQ(posmap("abcd", {5, 6}), (Positions{5, 6, 6, 6, 6}));
}

TEST(Posmap, tags_and_entities_behind_the_last_entry_hold_the_end_position) {
    EXPECT_EQ(posmap("ab<c>&d;", {5, 6}), Positions{5} + repeated(8, 6));
}

TEST(Posmap, without_positions_all_is_zero) { EXPECT_EQ(posmap("a<b>&c;", {}), repeated(8, 0)); }

TEST(Posmap, markup_is_found_at_every_offset_of_a_long_run) {
    for (std::size_t at = 0; at < 70; ++at) {
        for (const std::string markup : {"<b>", "&b;"}) {
            const std::string ssml = std::string(at, 'x') + markup + std::string(70 - at, 'y');
            Positions positions;
            for (std::uint32_t k = 0; k < 80; ++k) positions.push_back(1000 + k);
            Positions expected(positions.begin(), positions.begin() + static_cast<std::ptrdiff_t>(at));
            expected = expected + repeated(3, 1000 + static_cast<std::uint32_t>(at));
            const std::size_t next = markup[0] == '&' ? at + 1 : at;
            for (std::size_t k = 0; k < 70 - at; ++k) expected.push_back(positions[next + k]);
            expected.push_back(positions.back());
            EXPECT_EQ(posmap(ssml, positions), expected) << markup << " at " << at;
        }
    }
}
