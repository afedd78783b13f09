// The records: kinds, equality, order, identity, cloning.
#include "speechtext/attributes.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <set>

#include "speechtext/texts.h"

namespace {

SpeechtextMark invisible(SpeechtextMark mark) {
    mark.invisible(true);
    return mark;
}

TEST(SpeechtextAttrs, kinds_of_the_three_classes) {
    const SpeechtextMark a_mark = mark("m");
    EXPECT_TRUE(a_mark.is_mark());
    EXPECT_FALSE(a_mark.is_break() || a_mark.is_contentattrs() || a_mark.is_context_dependent());
    const SpeechtextBreak a_break = pause("1ms");
    EXPECT_TRUE(a_break.is_break() && a_break.is_context_dependent());
    EXPECT_FALSE(a_break.is_mark() || a_break.is_contentattrs());
    const SpeechtextTextAttrs attrs;
    EXPECT_TRUE(attrs.is_contentattrs());
    EXPECT_FALSE(attrs.is_mark() || attrs.is_break() || attrs.is_context_dependent());
}

TEST(SpeechtextAttrs, different_classes_are_unequal_and_unordered) {
    const SpeechtextMark a_mark = mark("");
    const SpeechtextBreak a_break = pause("");
    const SpeechtextTextAttrs attrs;
    EXPECT_FALSE(a_mark == a_break);
    EXPECT_FALSE(a_break == a_mark);
    EXPECT_FALSE(a_mark < a_break);
    EXPECT_FALSE(a_break < a_mark);
    EXPECT_TRUE(a_mark != attrs);
    EXPECT_FALSE(attrs == a_break);
}

TEST(SpeechtextAttrs, operators_reach_the_class_through_the_base) {
    const SpeechtextMark a = mark("a"), same = mark("a"), b = mark("b");
    const SpeechtextAttrs& base = a;
    EXPECT_TRUE(base == same);
    EXPECT_TRUE(same == base);
    EXPECT_FALSE(base != same);
    EXPECT_TRUE(base != b);
}

TEST(SpeechtextMark, fields_and_defaults) {
    SpeechtextMark a(5, "name");
    EXPECT_EQ(a.instance, 5U);
    EXPECT_EQ(a.id(), "name");
    EXPECT_FALSE(a.invisible());
    a.invisible(true);
    EXPECT_TRUE(a.invisible());
    EXPECT_TRUE(SpeechtextMark(a).invisible());
}

TEST(SpeechtextMark, equality_looks_at_id_instance_and_invisible) {
    EXPECT_EQ(mark("a", 1), mark("a", 1));
    EXPECT_NE(mark("a", 1), mark("b", 1));
    EXPECT_NE(mark("a", 1), mark("a", 2));
    EXPECT_NE(mark("a", 1), invisible(mark("a", 1)));
}

TEST(SpeechtextMark, order_is_id_then_instance_then_invisible) {
    EXPECT_TRUE(mark("a", 9) < mark("b", 1));
    EXPECT_FALSE(mark("b", 1) < mark("a", 9));
    EXPECT_TRUE(invisible(mark("a", 1)) < mark("a", 2));
    EXPECT_FALSE(mark("a", 2) < invisible(mark("a", 1)));
    EXPECT_TRUE(mark("a", 1) < invisible(mark("a", 1)));
    EXPECT_FALSE(invisible(mark("a", 1)) < mark("a", 1));
    EXPECT_FALSE(mark("a", 1) < mark("a", 1));
}

TEST(SpeechtextMark, identity_ignores_invisible) {
    const SpeechtextMark seen = mark("a", 1), unseen = invisible(mark("a", 1));
    EXPECT_FALSE(seen.compare_mark_identity_less(unseen));
    EXPECT_FALSE(unseen.compare_mark_identity_less(seen));
    EXPECT_TRUE(mark("a", 9).compare_mark_identity_less(mark("b", 1)));
    EXPECT_TRUE(mark("a", 1).compare_mark_identity_less(mark("a", 2)));
    EXPECT_FALSE(mark("a", 2).compare_mark_identity_less(mark("a", 1)));
    EXPECT_FALSE(mark("b", 1).compare_mark_identity_less(mark("a", 2)));
}

TEST(SpeechtextMark, set_by_identity_holds_a_mark_made_invisible_once) {
    std::set<SpeechtextMark, Compare_SpeechtextMark_identity_less> marks;
    marks.insert(mark("a", 1));
    marks.insert(invisible(mark("a", 1)));
    marks.insert(mark("a", 2));
    EXPECT_EQ(marks.size(), 2U);
}

TEST(SpeechtextMark, equal_marks_share_their_hash) {
    EXPECT_EQ(mark("a", 1).hash(), mark("a", 1).hash());
    EXPECT_NE(mark("a", 1).hash(), mark("a", 2).hash());
}

TEST(SpeechtextBreak, strings_are_taken_as_they_are) {
    const SpeechtextBreak a(3, "no such word", "-5 parsecs");
    EXPECT_EQ(a.instance, 3U);
    EXPECT_EQ(a.strength(), "no such word");
    EXPECT_EQ(a.time(), "-5 parsecs");
}

TEST(SpeechtextBreak, equality_looks_at_all_fields) {
    EXPECT_EQ(SpeechtextBreak(1, "s", "t"), SpeechtextBreak(1, "s", "t"));
    EXPECT_NE(SpeechtextBreak(1, "s", "t"), SpeechtextBreak(2, "s", "t"));
    EXPECT_NE(SpeechtextBreak(1, "s", "t"), SpeechtextBreak(1, "x", "t"));
    EXPECT_NE(SpeechtextBreak(1, "s", "t"), SpeechtextBreak(1, "s", "x"));
}

TEST(SpeechtextBreak, order_is_instance_then_strength_then_time) {
    EXPECT_TRUE(SpeechtextBreak(1, "z", "z") < SpeechtextBreak(2, "a", "a"));
    EXPECT_FALSE(SpeechtextBreak(2, "a", "a") < SpeechtextBreak(1, "z", "z"));
    EXPECT_TRUE(SpeechtextBreak(1, "a", "z") < SpeechtextBreak(1, "b", "a"));
    EXPECT_FALSE(SpeechtextBreak(1, "b", "a") < SpeechtextBreak(1, "a", "z"));
    EXPECT_TRUE(SpeechtextBreak(1, "a", "a") < SpeechtextBreak(1, "a", "b"));
    EXPECT_FALSE(SpeechtextBreak(1, "a", "a") < SpeechtextBreak(1, "a", "a"));
}

TEST(SpeechtextBreak, set_tells_all_fields_apart) {
    std::set<SpeechtextBreak> breaks;
    breaks.insert(pause("1ms", 1));
    breaks.insert(pause("1ms", 2));
    breaks.insert(pause("2ms", 1));
    breaks.insert(pause("1ms", 1));
    EXPECT_EQ(breaks.size(), 3U);
}

TEST(SpeechtextTextAttrs, defaults_are_equal_and_not_raw) {
    const SpeechtextTextAttrs a, b;
    EXPECT_EQ(a, b);
    EXPECT_FALSE(a.raw);
    EXPECT_EQ(a.language, "");
}

TEST(SpeechtextTextAttrs, set_language_takes_both_kinds_of_string) {
    SpeechtextTextAttrs attrs;
    attrs.set_language("en");
    EXPECT_EQ(attrs.language, "en");
    attrs.set_language(std::string("de"));
    EXPECT_EQ(attrs.language, "de");
}

template <typename Change>
void expect_unequal_after(Change change) {
    const SpeechtextTextAttrs a;
    SpeechtextTextAttrs b;
    change(b);
    EXPECT_NE(a, b);
    EXPECT_EQ(b, SpeechtextTextAttrs(b));
}

TEST(SpeechtextTextAttrs, equality_looks_at_every_value) {
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.audio.source = "x"; });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.emphasis.level = "x"; });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.lexicon.entries.emplace_back("x", "y"); });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.prosody.rate = "x"; });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.say_as.set_format("x"); });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.location.sentence = 1; });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.token.label = "x"; });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.transcription.phonemes = "x"; });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.voice.name = "x"; });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.language = "x"; });
    expect_unequal_after([](SpeechtextTextAttrs& a) { a.raw = true; });
}

TEST(SpeechtextTextAttrs, difference_in_audio_speed_alone_is_none) {
    SpeechtextTextAttrs a, b;
    a.audio.speed = 2.0F;
    EXPECT_EQ(a, b);
}

TEST(SpeechtextTextAttrs, not_a_number_equals_the_same_object_only) {
    SpeechtextTextAttrs a;
    a.prosody.pitch_value = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(a == a);
    EXPECT_FALSE(a == SpeechtextTextAttrs(a));
}

TEST(SpeechtextAttrs, clone_is_an_equal_object_of_the_same_class) {
    SpeechtextTextAttrs attrs = attrs_of("en");
    attrs.lexicon.entries.emplace_back("uri", "type");
    const std::unique_ptr<SpeechtextTextAttrs> attrs_copy(attrs.clone());
    EXPECT_EQ(*attrs_copy, attrs);
    const std::unique_ptr<SpeechtextAttrs> mark_copy(invisible(mark("m", 2)).clone());
    EXPECT_EQ(*mark_copy, invisible(mark("m", 2)));
    const std::unique_ptr<SpeechtextAttrs> break_copy(SpeechtextBreak(1, "s", "t").clone());
    EXPECT_EQ(*break_copy, SpeechtextBreak(1, "s", "t"));
}

TEST(SpeechtextTextAttrs, copies_are_deep) {
    SpeechtextTextAttrs a = attrs_of("en");
    a.lexicon.entries.emplace_back("uri", "type");
    SpeechtextTextAttrs b;
    b = a;
    b.lexicon.entries.front().first = "other";
    b.language[0] = 'x';
    EXPECT_EQ(a.lexicon.entries.front().first, "uri");
    EXPECT_EQ(a.language, "en");
}

}  // namespace
