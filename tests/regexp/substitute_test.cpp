// regexp::RE::sub, sub1 and substitute_match.
#include <gtest/gtest.h>

#include <chrono>
#include <limits>

#include "regexp/rich_text.h"

using regexp::invalid_regexp_replacement;
using regexp::RE;
using regexp::RE_Options;

namespace {

std::string sub(const std::string& pattern, const std::string& rewrite, std::string text,
                const RE_Options& options = RE_Options()) {
    const std::string result = RE::sub(pattern, rewrite, &text, options) ? "" : "no: ";
    return result + text;
}

std::string sub1(const std::string& pattern, const std::string& rewrite, std::string text,
                 const RE_Options& options = RE_Options()) {
    const std::string result = RE::sub1(pattern, rewrite, &text, options) ? "" : "no: ";
    return result + text;
}

std::string sub(const std::string& pattern, const std::string& rewrite, Speechtext text,
                const RE_Options& options = RE_Options()) {
    const std::string result = RE::sub(pattern, rewrite, &text, options) ? "" : "no: ";
    return result + shown(text);
}

const Speechtext sample = rich() << lang("en") << "ab" << mark("m") << "c" << pause("p") << "de";
const RE_Options bytewise = RE_Options().set_utf8(false);

}  // namespace

TEST(RE_sub, replaces_each_match) {
    EXPECT_EQ(sub("o", "0", std::string("foo boo")), "f00 b00");
    EXPECT_EQ(sub("(\\w+)ing", "\\1ed", std::string("walking, talking")), "walked, talked");
}

TEST(RE_sub, no_match_changes_nothing) {
    EXPECT_EQ(sub("x", "y", std::string("abc")), "no: abc");
    EXPECT_EQ(sub("x", "y", sample), "no: abcde en@0 <m>@2 ~p@3");
}

TEST(RE_sub, matches_are_found_in_the_unchanged_text) { EXPECT_EQ(sub("ab?", "aab", std::string("aab")), "aabaab"); }

TEST(RE_sub, later_matches_see_what_stands_in_front) {
    EXPECT_EQ(sub("(?<=a)b|a", "x", std::string("ab")), "xx");
    EXPECT_EQ(sub("^a", "x", std::string("aa")), "xa");
}

TEST(RE_sub, empty_match_then_a_longer_one_at_the_same_place) {
    EXPECT_EQ(sub("a*", "-", std::string("baaa")), "-b--");
}

TEST(RE_sub, empty_match_on_an_empty_text) {
    EXPECT_EQ(sub("x*", "-", std::string()), "-");
    EXPECT_EQ(sub("x*", "-", Speechtext()), "-");
}

TEST(RE_sub, empty_match_moves_on_by_a_character) {
    EXPECT_EQ(sub("x*", "-", std::string("\xC3\xA9")), "-\xC3\xA9-");
    EXPECT_EQ(sub("x*", "-", std::string("\xC3\xA9"), bytewise), "-\xC3-\xA9-");
}

TEST(RE_sub, options_reach_the_pattern) {
    EXPECT_EQ(sub("A", "x", std::string("aA"), RE_Options().set_caseless(true)), "xx");
    EXPECT_EQ(sub("^.$", "x", std::string("\xC3\xA9")), "x");
}

TEST(RE_sub, invalid_utf8_has_no_match_unless_bytewise) {
    EXPECT_EQ(sub("a", "x", std::string("a\xFF")), "no: a\xFF");
    EXPECT_EQ(sub("a", "x", std::string("a\xFF"), bytewise), "x\xFF");
}

TEST(RE_sub, stopping_inside_a_character_ends_the_search) {
    EXPECT_EQ(sub("\\C", "x", std::string("a\xC3\xA9z")), "xx\xA9z");
}

TEST(RE_sub, fifteen_groups_are_the_most) {
    EXPECT_EQ(sub("(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)(l)(m)(n)(o)", "\\9", std::string("abcdefghijklmno")), "i");
    EXPECT_EQ(sub("(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)(l)(m)(n)(o)(p)", "x", std::string("abcdefghijklmnop")),
              "no: abcdefghijklmnop");
}

TEST(RE_sub, overflow_of_groups_keeps_the_edits_made_before) {
    EXPECT_EQ(sub("x|(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)(l)(m)(n)(o)(p)", "-", std::string("xabcdefghijklmnopx")),
              "-abcdefghijklmnopx");
}

TEST(RE_sub, bad_pattern_throws_pcres_message) {
    std::string text = "abc";
    try {
        RE::sub("(", "x", &text, RE_Options());
        FAIL();
    } catch (const invalid_regexp_replacement& error) {
        EXPECT_STREQ(error.what(), "Error compiling regular expression: missing )");
    }
}

TEST(RE_sub, bad_rewrite_throws_at_the_first_match_and_leaves_the_text) {
    std::string text = "aab";
    EXPECT_FALSE(RE::sub("x", "\\9", &text, RE_Options()));
    EXPECT_THROW(RE::sub("a|(b)", "<\\u0041\\1>", &text, RE_Options()), invalid_regexp_replacement);
    EXPECT_EQ(text, "aab");
    Speechtext rich_text = sample;
    EXPECT_THROW(RE::sub("a", "\\{", &rich_text, RE_Options()), invalid_regexp_replacement);
    EXPECT_EQ(shown(rich_text), "abcde en@0 <m>@2 ~p@3");
}

TEST(RE_sub, group_at_the_end_that_took_no_part_is_a_bad_reference) {
    std::string text = "a";
    EXPECT_THROW(RE::sub("a(x)?", "\\1", &text, RE_Options()), invalid_regexp_replacement);
    EXPECT_EQ(sub("(x)?(a)", "<\\1\\2>", std::string("a")), "<a>");
}

TEST(RE_sub, text_may_be_its_own_rewrite) {
    std::string text = "a";
    EXPECT_TRUE(RE::sub("a", text, &text, RE_Options()));
    EXPECT_EQ(text, "a");
}

TEST(RE_sub, mark_inside_survives_by_default_and_a_break_does_not) {
    EXPECT_EQ(sub("bcd", "X", sample), "aXe en@0 <m>@1");
    EXPECT_EQ(sub("bcd", "X", sample, RE_Options().set_preserve_marks(false)), "aXe en@0");
    EXPECT_EQ(sub("bcd", "X", sample, RE_Options().set_preserve_breaks(true)), "aXe en@0 <m>@1 ~p@1");
}

TEST(RE_sub, mark_carried_by_a_group_stands_once_in_its_place) {
    EXPECT_EQ(sub("(bcd)", "[\\1]", sample), "a[bcd]e en@0 <m>@3 ~p@4");
}

TEST(RE_sub, text_attributes_in_the_range_are_in_force_behind_it) {
    const Speechtext text = rich() << lang("en") << "ab" << lang("de") << "cd";
    EXPECT_EQ(sub("bc", "X", text), "aXd en@0 de@2");
}

TEST(RE_sub, new_text_stands_under_the_attributes_at_its_start) {
    const Speechtext text = rich() << lang("en") << "a" << lang("de") << "b" << lang("fr") << "c";
    EXPECT_EQ(sub("[abc]", "x", text), "xxx en@0 de@1 fr@2");
}

TEST(RE_sub, insert_raw_marks_what_is_inserted) {
    EXPECT_EQ(sub("b", "<x/>", sample, RE_Options().set_insert_raw(true)), "a<x/>cde en@0 en!@1 en@5 <m>@5 ~p@6");
}

TEST(RE_sub, rewriting_a_text_without_records) {
    EXPECT_EQ(sub("b", "\\{break:time=1s\\}", Speechtext("abc")), "ac ~,1s@1");
}

TEST(RE_sub1, replaces_group_one_of_each_match) {
    EXPECT_EQ(sub1("(a)b", "x", "abab"), "xbxb");
    EXPECT_EQ(sub1("a(b)?c", "-\\0-", "abc"), "a-abc-c");
}

TEST(RE_sub1, goes_on_behind_the_group) { EXPECT_EQ(sub1("(a)[ab]", "x", "aab"), "xxb"); }

TEST(RE_sub1, group_that_took_no_part_lands_at_the_front_and_ends_the_search) {
    EXPECT_EQ(sub1("(x)?b", "-", "ab b"), "-ab b");
    EXPECT_EQ(sub1("(a)|b", "-", "abab"), "--bab");
}

TEST(RE_sub1, group_that_took_no_part_brings_back_the_default_flags) {
    Speechtext text = sample;
    EXPECT_TRUE(RE::sub1("(b.)|d", "X", &text, RE_Options().set_preserve_marks(false).set_preserve_breaks(true)));
    EXPECT_EQ(shown(text), "XaXde en@0 <m>@2 ~p@3");
}

TEST(RE_sub1, pattern_without_a_group_is_as_one_that_took_no_part) { EXPECT_EQ(sub1("b", "-", "ab"), "-ab"); }

TEST(RE_sub1, empty_group_inside_a_match_that_is_not_empty_ends) { EXPECT_EQ(sub1("()a", "-", "aab"), "-a-ab"); }

TEST(RE_sub1, group_in_front_of_the_match_ends) { EXPECT_EQ(sub1("(?<=(a))b", "x", "abab"), "xbxb"); }

TEST(RE_sub1, groups_that_lead_to_each_other_end) { EXPECT_EQ(sub1("(?|(z)|(?<=(x)...)y)", "-", "x z y"), "- - y"); }

TEST(RE_sub, attributes_with_a_factor_that_is_no_number_are_never_repetitions) {
    SpeechtextTextAttrs odd = lang("en");
    odd.prosody.volume_value = std::numeric_limits<float>::quiet_NaN();
    // Those in force, those that the new text begins under, and those restored behind it.
    EXPECT_EQ(sub("b", "X", rich() << odd << "abc"), "aXc en@0 en@1 en@2");
}

TEST(RE_sub1, of_a_speechtext) {
    Speechtext text = sample;
    EXPECT_TRUE(RE::sub1("b(c)", "X", &text, RE_Options()));
    EXPECT_EQ(shown(text), "abXde en@0 <m>@2 ~p@3");
}

TEST(RE_substitute_match, nothing_to_do_without_a_text) {
    EXPECT_FALSE(RE::substitute_match("(", 0, "x", nullptr, nullptr, RE_Options()));
}

TEST(RE_substitute_match, any_group) {
    std::string text = "abcabc";
    EXPECT_TRUE(RE::substitute_match("a(b)(c)", 2, "x", &text, nullptr, RE_Options()));
    EXPECT_EQ(text, "abxabx");
    EXPECT_TRUE(RE::substitute_match("a", 99, "y", &text, nullptr, RE_Options()));
    EXPECT_EQ(text, "yabxabx");
    EXPECT_TRUE(RE::substitute_match("a", -1, "z", &text, nullptr, RE_Options()));
    EXPECT_EQ(text, "zyabxabx");
}

TEST(RE_sub, takes_linear_time) {
    const std::size_t n = 1 << 18;  // checked at each call, this reads 34 GB
    const auto start = std::chrono::steady_clock::now();
    std::string text(n, 'a');
    EXPECT_TRUE(RE::sub("a", "b", &text, RE_Options()));
    EXPECT_EQ(text, std::string(n, 'b'));
    Speechtext rich_text = rich() << lang("en") << std::string(n / 4, 'a');
    for (std::size_t i = 0; i < n / 4; ++i) rich_text = std::move(rich_text) << mark(std::to_string(i)) << "a";
    EXPECT_TRUE(RE::sub("(a)", "\\1b", &rich_text, RE_Options()));
    EXPECT_EQ(rich_text.size(), n);
    EXPECT_EQ(rich_text.attrsvec_size(), n / 4 + 1);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 15.0);
}
