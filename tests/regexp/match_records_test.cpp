// regexp::Match: the records of a match, and the text attributes in force at its start.
#include <gtest/gtest.h>

#include "regexp/rich_text.h"

using regexp::Match;
using regexp::RE;

namespace {

// The first group of the first match, with the iterator that the scan gives it.
Match found(const std::string& pattern, const Speechtext& text) {
    Match input(text), group;
    EXPECT_TRUE(RE(pattern).FindAndConsume(&input, &group));
    return group;
}

// A piece of the text that holds no iterator.
Match piece(const Speechtext& text, std::size_t from, std::size_t n) {
    Match match(text.data() + from, n);
    match.text = &text;
    return match;
}

std::string language_of(const SpeechtextTextAttrs* attrs) { return attrs ? attrs->language : "none"; }

SpeechtextTextAttrs with_audio(const std::string& language) {
    SpeechtextTextAttrs attrs = lang(language);
    attrs.audio.set_instance(1);
    return attrs;
}

std::string copied(const Match& match) {
    Speechtext dest = rich() << "XYZ";
    match.copy_attrs_to_text(dest);
    return shown(dest);
}

const Speechtext sample = rich() << lang("en") << "ab" << mark("a") << "cd" << mark("b") << "e" << lang("de") << "f"
                                 << mark("c") << "g";

}  // namespace

TEST(Match_as_speechtext, plain_piece_is_bare_text) { EXPECT_EQ(shown(Match("abc").as_speechtext()), "abc"); }

TEST(Match_as_speechtext, inside_a_run_starts_with_the_carried_record) {
    const Speechtext text = rich() << lang("en") << "abc" << mark("m") << "def" << lang("de") << "ghi";
    EXPECT_EQ(shown(found("(cde)", text).as_speechtext()), "cde en@0 <m>@1");
}

TEST(Match_as_speechtext, record_at_the_end_is_left_out) {
    const Speechtext text = rich() << lang("en") << "abc" << mark("m") << "def" << lang("de") << "ghi";
    EXPECT_EQ(shown(found("(cdef)", text).as_speechtext()), "cdef en@0 <m>@1");
}

TEST(Match_as_speechtext, record_at_the_start_takes_over) {
    const Speechtext text = rich() << with_audio("en") << "abc" << lang("de") << "ghi";
    EXPECT_EQ(shown(found("(gh)", text).as_speechtext()), "gh de@0");
}

TEST(Match_as_speechtext, behind_the_last_record_carries_it) {
    const Speechtext text = rich() << lang("en") << "abc def";
    EXPECT_EQ(shown(found("(def)", text).as_speechtext()), "def en@0");
}

TEST(Match_as_speechtext, without_text_attributes_in_front_earlier_records_go_negative) {
    const Speechtext text = rich() << "x" << mark("a") << "bc" << mark("b") << "d";
    EXPECT_EQ(shown(found("(cd)", text).as_speechtext()), "cd <a>@-1 <b>@1");
}

TEST(Match_as_speechtext, iterator_at_a_first_record_behind_the_start_adds_it_at_the_start) {
    const Speechtext text = rich() << "a" << lang("en") << "bc";
    EXPECT_EQ(shown(found("(a)", text).as_speechtext()), "a en@0");
}

TEST(Match_as_speechtext, text_without_records) {
    const Speechtext text = rich() << "abc";
    EXPECT_EQ(shown(found("(b)", text).as_speechtext()), "b");
    EXPECT_EQ(shown(piece(text, 1, 1).as_speechtext()), "b");
}

TEST(Match_as_speechtext, whole_text_loses_its_trailing_records) {
    const Speechtext text = rich() << lang("en") << "a" << mark("m") << "bc" << mark("n");
    EXPECT_EQ(shown(Match(text).as_speechtext()), "abc en@0 <m>@1");
}

TEST(Match_as_speechtext, without_iterator_carries_the_record_in_force) {
    EXPECT_EQ(shown(piece(sample, 3, 4).as_speechtext()), "defg en@0 <b>@1 de@2 <c>@3");
}

TEST(Match_as_speechtext, without_iterator_an_audio_insert_in_front_comes_along) {
    const Speechtext text = rich() << with_audio("en") << "ab" << lang("de") << "cd";
    EXPECT_EQ(shown(piece(text, 2, 2).as_speechtext()), "cd en#1@0 de@0");
}

TEST(Match_as_speechtext, without_iterator_a_piece_in_front_of_all_records_has_none) {
    const Speechtext text = rich() << "a" << lang("en") << "bc";
    EXPECT_EQ(shown(piece(text, 0, 1).as_speechtext()), "a");
}

TEST(Match_as_speechtext, empty_piece_carries_the_attributes_in_force) {
    EXPECT_EQ(shown(piece(sample, 3, 0).as_speechtext()), " en@0");
    EXPECT_EQ(shown(found("(?=d)()", sample).as_speechtext()), " en@0");
}

TEST(Match_copy_attrs_to_text, brings_text_attributes_of_the_start_and_marks_of_the_range) {
    EXPECT_EQ(copied(found("(cdef)", sample)), "XYZ en@0 <a>@0 <b>@0");
}

TEST(Match_copy_attrs_to_text, record_at_the_start_takes_over) { EXPECT_EQ(copied(found("(f)", sample)), "XYZ de@0"); }

TEST(Match_copy_attrs_to_text, without_text_attributes_in_front_brings_earlier_marks) {
    const Speechtext text = rich() << "x" << mark("a") << "bc" << mark("b") << "d";
    EXPECT_EQ(copied(found("(cd)", text)), "XYZ <a>@0 <b>@0");
}

TEST(Match_copy_attrs_to_text, behind_the_last_record_carries_it) {
    const Speechtext text = rich() << lang("en") << "abc def";
    EXPECT_EQ(copied(found("(def)", text)), "XYZ en@0");
}

TEST(Match_copy_attrs_to_text, without_iterator_loses_marks_at_the_start_and_brings_later_text_attributes) {
    EXPECT_EQ(copied(piece(sample, 2, 4)), "XYZ en@0 <b>@0 de@0");
}

TEST(Match_copy_attrs_to_text, without_text_adds_nothing) { EXPECT_EQ(copied(Match("abc")), "XYZ"); }

TEST(Match_copy_attrs_to_text, into_its_own_text) {
    Speechtext text = rich() << lang("en") << "a" << mark("a") << "b";
    Match(text).copy_attrs_to_text(text);
    EXPECT_EQ(shown(text), "ab en@0 <a>@1 <a>@0");
}

TEST(Match_textattrs, null_without_text) { EXPECT_EQ(Match("abc").textattrs(), nullptr); }

TEST(Match_textattrs, record_at_the_start_is_found) {
    EXPECT_EQ(language_of(found("(f)", sample).textattrs()), "de");
    EXPECT_EQ(language_of(Match(sample).textattrs()), "en");
}

TEST(Match_textattrs, later_of_two_records_at_the_start_wins) {
    const Speechtext text = rich() << "ab" << with_audio("en") << lang("de") << "cd";
    EXPECT_EQ(language_of(found("(c)", text).textattrs()), "de");
}

TEST(Match_textattrs, mark_at_the_start_does_not_hide_text_attributes_behind_it) {
    const Speechtext text = rich() << lang("en") << "ab" << mark("m") << lang("de") << "cd";
    EXPECT_EQ(language_of(found("(c)", text).textattrs()), "de");
}

TEST(Match_textattrs, inside_a_run_with_a_record_behind_is_the_one_in_force) {
    EXPECT_EQ(language_of(found("(d)", sample).textattrs()), "en");
}

TEST(Match_textattrs, mark_at_the_start_as_last_record) {
    const Speechtext text = rich() << lang("en") << "ab" << mark("m") << "cd";
    EXPECT_EQ(language_of(found("(c)", text).textattrs()), "en");
}

TEST(Match_textattrs, behind_the_last_record_is_null) {
    const Speechtext text = rich() << lang("en") << "abc def";
    EXPECT_EQ(found("(def)", text).textattrs(), nullptr);
}

TEST(Match_textattrs, in_front_of_the_first_record_is_null) {
    const Speechtext text = rich() << "a" << lang("en") << "bc";
    EXPECT_EQ(found("(a)", text).textattrs(), nullptr);
}

TEST(Match_textattrs, without_text_attributes_in_front_is_null) {
    const Speechtext text = rich() << "a" << mark("m") << "bc" << mark("n") << "d";
    EXPECT_EQ(found("(c)", text).textattrs(), nullptr);
}

TEST(Match_textattrs, points_into_the_text) { EXPECT_EQ(Match(sample).textattrs(), sample.attrs_begin()->attrs); }

TEST(Match_textattrs, group_in_front_of_an_earlier_group_argument_walks_back) {
    const Speechtext text = rich() << lang("en") << "a" << lang("de") << "b" << lang("fr") << "cd";
    Match input(text), later, earlier;
    ASSERT_TRUE(RE("(?=..(c))(a)").FindAndConsume(&input, &later, &earlier));
    EXPECT_EQ(language_of(later.textattrs()), "fr");
    EXPECT_EQ(language_of(earlier.textattrs()), "en");
    EXPECT_EQ((*earlier.attrsiter)->position, 2);
}

TEST(Match_has_role, asks_the_text_attributes_in_force) {
    const Speechtext text = rich() << role("en", "pos:noun") << "a" << role("en", "pos:verb") << "b" << mark("m");
    EXPECT_TRUE(found("(a)", text).has_role("pos:noun"));
    EXPECT_FALSE(found("(a)", text).has_role("pos:verb"));
    EXPECT_TRUE(found("(b)", text).has_role("pos:verb"));
}

TEST(Match_has_role, without_text_attributes_is_false) {
    const Speechtext text = rich() << "ab";
    EXPECT_FALSE(Match("ab").has_role("pos:noun"));
    EXPECT_FALSE(found("(b)", text).has_role("pos:noun"));
}
