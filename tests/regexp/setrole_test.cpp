// regexp::RE::setrole.
#include <gtest/gtest.h>

#include "regexp/rich_text.h"

using regexp::invalid_regexp_replacement;
using regexp::RE;
using regexp::RE_Options;

namespace {

std::string tagged(const std::string& pattern, const Speechtext& text, const std::string& roles, bool force = false) {
    return shown(RE::setrole(pattern, text, roles, force, RE_Options()));
}

const Speechtext sample = rich() << lang("en") << "1 kg 2 m";

}  // namespace

TEST(RE_setrole, tags_the_groups_of_all_matches) {
    EXPECT_EQ(tagged("(\\d) (\\w+)", sample, "n:num|n:unit"),
              "1 kg 2 m en{n:num}@0 en@1 en{n:unit}@2 en@4 en{n:num}@5 en@6 en{n:unit}@7 en@8");
}

TEST(RE_setrole, takes_a_compiled_pattern) {
    RE re("(\\d)");
    EXPECT_EQ(shown(RE::setrole(re, sample, "n:num", false)), "1 kg 2 m en{n:num}@0 en@1 en{n:num}@5 en@6");
}

TEST(RE_setrole, options_reach_the_pattern) {
    EXPECT_EQ(shown(RE::setrole("(KG)", sample, "u:u", false, RE_Options().set_caseless(true))),
              "1 kg 2 m en@0 en{u:u}@2 en@4");
}

TEST(RE_setrole, force_overrides_a_role) {
    const Speechtext text = rich() << role("en", "x") << "ab";
    EXPECT_EQ(tagged("(a)", text, "r"), "ab en{x}@0");
    EXPECT_EQ(tagged("(a)", text, "r", true), "ab en{r}@0 en{x}@1");
}

TEST(RE_setrole, groups_beyond_the_roles_are_not_used) {
    EXPECT_EQ(tagged("(\\d) (kg)", sample, "n:num"), "1 kg 2 m en{n:num}@0 en@1");
}

TEST(RE_setrole, more_roles_than_groups_match_nothing) { EXPECT_EQ(tagged("(\\d)", sample, "a|b"), "1 kg 2 m en@0"); }

TEST(RE_setrole, six_roles_are_the_most) {
    const Speechtext text = rich() << lang("en") << "abcdef";
    EXPECT_EQ(tagged("(a)(b)(c)(d)(e)(f)", text, "1|2|3|4|5|6"),
              "abcdef en{1}@0 en{2}@1 en{3}@2 en{4}@3 en{5}@4 en{6}@5 en@6");
}

TEST(RE_setrole, seven_roles_throw_before_anything_is_sought) {
    try {
        tagged("never", sample, "1|2|3|4|5|6|7");
        FAIL();
    } catch (const invalid_regexp_replacement& error) {
        EXPECT_STREQ(error.what(), "Too many roles in RE::setrole");
    }
}

TEST(RE_setrole, no_roles_give_a_copy) { EXPECT_EQ(tagged("(\\d)", sample, ""), "1 kg 2 m en@0"); }

TEST(RE_setrole, bar_at_the_start_gives_group_one_an_empty_role) {
    EXPECT_EQ(tagged("(1) (kg)", sample, "|u"), "1 kg 2 m en@0 en{u}@2 en@4");
}

TEST(RE_setrole, bar_at_the_end_asks_for_a_group_more) {
    EXPECT_EQ(tagged("(1) (kg)", sample, "n|"), "1 kg 2 m en{n}@0 en@1");
    EXPECT_EQ(tagged("(1) kg", sample, "n|"), "1 kg 2 m en@0");
}

TEST(RE_setrole, group_that_took_no_part_gets_none) {
    EXPECT_EQ(tagged("(1)|(kg)", sample, "a|b"), "1 kg 2 m en{a}@0 en@1 en{b}@2 en@4");
}

TEST(RE_setrole, attributeless_text_throws) { EXPECT_THROW(tagged("(a)", Speechtext("a"), "r"), std::logic_error); }

TEST(RE_setrole, attributeless_text_without_a_match_is_copied) { EXPECT_EQ(tagged("(b)", Speechtext("a"), "r"), "a"); }
