// The members of Speechtext that take a regexp::Match.
#include <gtest/gtest.h>

#include "regexp/rich_text.h"

using regexp::Match;

namespace {

const Speechtext sample = rich() << lang("en") << "ab" << mark("m") << "cd" << mark("end");

}  // namespace

TEST(Speechtext_match, made_from_a_string) {
    const Speechtext text(std::string("abc"));
    EXPECT_EQ(shown(text), "abc");
    EXPECT_EQ(shown(Speechtext("abc")), "abc");
}

TEST(Speechtext_match, made_from_a_match_over_a_whole_text_drops_trailing_records) {
    EXPECT_EQ(shown(Speechtext(Match(sample))), "abcd en@0 <m>@2");
}

TEST(Speechtext_match, assigned_from_a_match) {
    Speechtext text = rich() << lang("de") << "old" << mark("old");
    text = Match(sample);
    EXPECT_EQ(shown(text), "abcd en@0 <m>@2");
}

TEST(Speechtext_match, assigned_from_a_match_of_itself) {
    Speechtext text = sample;
    text = Match(text);
    EXPECT_EQ(shown(text), "abcd en@0 <m>@2");
}

TEST(Speechtext_match, startswith_compares_bytes) {
    EXPECT_TRUE(sample.startswith(Match("ab")));
    EXPECT_TRUE(sample.startswith(Match("abcd")));
    EXPECT_FALSE(sample.startswith(Match("b")));
    EXPECT_FALSE(sample.startswith(Match("abcde")));
}

TEST(Speechtext_match, endswith_compares_bytes) {
    EXPECT_TRUE(sample.endswith(Match("cd")));
    EXPECT_TRUE(sample.endswith(Match("abcd")));
    EXPECT_FALSE(sample.endswith(Match("c")));
    EXPECT_FALSE(sample.endswith(Match("xabcd")));
}

TEST(Speechtext_match, empty_match_is_at_every_start_and_end) {
    EXPECT_TRUE(sample.startswith(Match()));
    EXPECT_TRUE(sample.endswith(Match("")));
    EXPECT_TRUE(Speechtext().startswith(Match()));
    EXPECT_TRUE(Speechtext().endswith(Match()));
}

TEST(Speechtext_match, startswith_takes_strings_and_texts) {
    EXPECT_TRUE(sample.startswith("a"));
    EXPECT_TRUE(sample.startswith(rich() << mark("other") << "ab"));
}

TEST(Speechtext_match, with_attrs_from_a_match_puts_its_records_at_the_start) {
    Speechtext text = rich() << lang("de") << "XY" << mark("own");
    Match input(sample), group;
    ASSERT_TRUE(regexp::RE("(cd)").FindAndConsume(&input, &group));
    EXPECT_EQ(shown(text.with_attrs_from(group)), "XY en@0 <m>@0");
    EXPECT_EQ(shown(text), "XY de@0 <own>@2");
}

TEST(Speechtext_match, with_attrs_from_a_text_takes_all_but_its_end) {
    EXPECT_EQ(shown(Speechtext("XY").with_attrs_from(sample)), "XY en@0 <m>@0");
}

TEST(Speechtext_match, with_attrs_from_a_plain_match_has_none) {
    EXPECT_EQ(shown(Speechtext(sample).with_attrs_from(Match("z"))), "abcd");
}
