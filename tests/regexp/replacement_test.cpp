// class replacement, and the making of lists of edits.
#include <gtest/gtest.h>

#include <limits>

#include "regexp/replacer.h"
#include "regexp/rich_text.h"

namespace {

using Edits = std::list<replacement>;

replacement edit(int start, std::size_t length, const std::string& repl) { return replacement(start, length, repl); }

// Adds the edit to the list with these flags; a copy would lose them.
void add(Edits& edits, const replacement& edit, bool marks, bool breaks) {
    edits.push_back(edit);
    edits.back().preserves_marks(marks);
    edits.back().preserves_breaks(breaks);
}

const Speechtext sample = rich() << lang("en") << "ab" << mark("m") << "c" << pause("p") << "de";

}  // namespace

TEST(replacement, from_a_string) {
    const replacement r(2, 3, std::string("new"));
    EXPECT_EQ(r.start(), 2);
    EXPECT_EQ(r.length(), 3u);
    EXPECT_EQ(r.repl(), "new");
    EXPECT_FALSE(r.is_speechtext());
    EXPECT_EQ(r.replattrs_length(), 0u);
    EXPECT_TRUE(r.replattrs_begin() == r.replattrs_end());
}

TEST(replacement, from_a_speechtext_holds_a_copy) {
    Speechtext text = rich() << lang("en") << "new" << mark("m");
    const replacement r(2, 3, text);
    text += "er";
    EXPECT_EQ(r.repl(), "new");
    EXPECT_TRUE(r.is_speechtext());
    EXPECT_EQ(r.replattrs_length(), 2u);
    EXPECT_EQ(r.replattrs_end() - r.replattrs_begin(), 2);
}

TEST(replacement, flags_default_to_marks_alone) {
    const replacement r(0, 1, std::string());
    EXPECT_EQ(r.flags, 1u);
    EXPECT_TRUE(r.preserves_marks());
    EXPECT_FALSE(r.preserves_breaks());
}

TEST(replacement, flags_are_set_and_cleared_one_by_one) {
    replacement r(0, 1, std::string());
    r.preserves_breaks(true);
    EXPECT_EQ(r.flags, 3u);
    r.preserves_marks(false);
    EXPECT_EQ(r.flags, 2u);
    r.preserves_breaks(false);
    EXPECT_EQ(r.flags, 0u);
}

TEST(replacement, copy_is_deep_and_has_the_default_flags) {
    replacement r(2, 3, rich() << mark("m") << "new");
    r.preserves_marks(false);
    r.preserves_breaks(true);
    const replacement copy(r);
    EXPECT_EQ(copy.flags, 1u);
    EXPECT_EQ(copy.start(), 2);
    EXPECT_EQ(copy.length(), 3u);
    EXPECT_EQ(shown(*copy.repl_text), "new <m>@0");
    EXPECT_NE(copy.repl_text, r.repl_text);
}

TEST(replacement, assignment_does_as_copying) {
    replacement r(2, 3, rich() << mark("m") << "new");
    r.preserves_breaks(true);
    replacement other(0, 0, std::string("old"));
    other = r;
    EXPECT_EQ(other.flags, 1u);
    EXPECT_EQ(other.repl(), "new");
    EXPECT_EQ(other.repl_string, nullptr);
    EXPECT_EQ(other.start(), 2);
}

TEST(replacement, order_by_start_length_and_new_bytes) {
    EXPECT_TRUE(edit(1, 9, "xx") < edit(2, 0, ""));
    EXPECT_TRUE(edit(-1, 9, "xx") < edit(0, 0, ""));
    EXPECT_TRUE(edit(2, 0, "xx") < edit(2, 1, ""));
    EXPECT_TRUE(edit(2, 1, "") < edit(2, 1, "x"));
    EXPECT_FALSE(edit(2, 1, "y") < edit(2, 1, "x"));
    EXPECT_FALSE(edit(2, 1, "x") < edit(2, 1, "y"));
}

TEST(replacement_to_debugstr, insertion_shows_no_flags) {
    EXPECT_EQ(edit(4, 0, "new").to_debugstr(), "insert before [4]: string \"new\"");
}

TEST(replacement_to_debugstr, one_byte_and_more) {
    EXPECT_EQ(edit(4, 1, "").to_debugstr(), "replace [4]: string \"\" (with marks preserved)");
    EXPECT_EQ(edit(2, 3, "new").to_debugstr(), "replace [2..4]: string \"new\" (with marks preserved)");
}

TEST(replacement_to_debugstr, flags) {
    replacement r(4, 1, std::string("x"));
    r.preserves_breaks(true);
    EXPECT_EQ(r.to_debugstr(), "replace [4]: string \"x\" (with marks+breaks preserved)");
    r.preserves_marks(false);
    EXPECT_EQ(r.to_debugstr(), "replace [4]: string \"x\" (with breaks preserved)");
    r.preserves_breaks(false);
    EXPECT_EQ(r.to_debugstr(), "replace [4]: string \"x\"");
}

TEST(replacement_to_debugstr, rich_text_shows_its_debug_form) {
    const Speechtext text = rich() << lang("en") << "new" << mark("m");
    const replacement r(0, 0, text);
    EXPECT_EQ(r.to_debugstr(), "insert before [0]: text \"" + text.to_debugstr() + "\"");
}

TEST(replacements_to_debugstr, joins_with_comma_and_blank) {
    EXPECT_EQ(replacements_to_debugstr({}), "");
    EXPECT_EQ(replacements_to_debugstr({edit(1, 0, "a"), edit(0, 0, "b")}),
              "insert before [1]: string \"a\", insert before [0]: string \"b\"");
}

TEST(do_replacements, of_a_string) {
    EXPECT_EQ(do_replacements(std::string("abcdef"), {edit(1, 2, "X"), edit(4, 0, "Y"), edit(5, 1, "")}), "aXdYe");
    EXPECT_EQ(do_replacements(std::string("abc"), {}), "abc");
    EXPECT_EQ(do_replacement(std::string("abc"), edit(3, 0, "X")), "abcX");
}

TEST(do_replacements, rich_text_in_a_string_gives_its_bytes) {
    EXPECT_EQ(do_replacement(std::string("abc"), replacement(1, 1, rich() << mark("m") << "X")), "aXc");
}

TEST(do_replacements, overlapping_edits_count_from_the_end_of_the_first) {
    EXPECT_EQ(do_replacements(std::string("abcdef"), {edit(1, 3, "X"), edit(2, 2, "Y")}), "aXY");
    EXPECT_EQ(do_replacements(std::string("abcdef"), {edit(1, 3, "X"), edit(2, 1, "Y")}), "aXYf");
    EXPECT_EQ(do_replacements(std::string("ab"), {edit(0, 2, ""), edit(0, 2, ""), edit(0, 2, "X")}), "X");
}

TEST(do_replacements, equal_starts_keep_their_order_if_start_never_falls) {
    EXPECT_EQ(do_replacements(std::string("abcdef"), {edit(2, 1, "A"), edit(2, 0, "B")}), "abABdef");
}

TEST(do_replacements, falling_list_is_sorted) {
    EXPECT_EQ(do_replacements(std::string("abcdef"), {edit(3, 1, "C"), edit(2, 1, "A"), edit(2, 0, "B")}), "abBACef");
}

TEST(do_replacements, negative_start_lands_at_the_front) {
    EXPECT_EQ(do_replacements(std::string("abc"), {edit(1, 1, "X"), edit(-1, 0, "Y")}), "YaXc");
    EXPECT_EQ(do_replacements(std::string("abc"), {edit(-1, 0, "Y")}), "Yabc");
}

TEST(do_replacements, edits_behind_the_end_take_place_at_the_end) {
    EXPECT_EQ(do_replacements(std::string("abc"), {edit(9, 2, "X"), edit(20, 0, "Y")}), "abcXY");
    EXPECT_EQ(shown(do_replacements(sample, {edit(9, 2, "X")})), "abcdeX en@0 <m>@2 ~p@3");
}

TEST(do_replacements, absurd_lengths_reserve_nothing) {
    const std::size_t most = static_cast<std::size_t>(-1);
    EXPECT_EQ(do_replacements(std::string("abc"), {edit(0, most / 2, "X")}), "X");
    EXPECT_EQ(do_replacements(std::string("abc"), {edit(1, most, "X")}), "aXabc");
    EXPECT_EQ(do_replacements(sample, {edit(0, most / 2, "X")}).as_string(), "X");
}

TEST(do_replacements, mark_in_the_range_moves_to_the_front_of_the_new_text) {
    EXPECT_EQ(shown(do_replacements(sample, {edit(1, 3, "X")})), "aXe en@0 <m>@1");
}

TEST(do_replacements, flags_decide_on_marks_and_breaks) {
    Edits edits;
    add(edits, edit(1, 3, "X"), false, false);
    EXPECT_EQ(shown(do_replacements(sample, edits)), "aXe en@0");
    edits.back().preserves_breaks(true);
    EXPECT_EQ(shown(do_replacements(sample, edits)), "aXe en@0 ~p@1");
    edits.back().preserves_marks(true);
    EXPECT_EQ(shown(do_replacements(sample, edits)), "aXe en@0 <m>@1 ~p@1");
}

TEST(do_replacement, copy_of_the_edit_loses_its_flags) {
    replacement r(1, 3, std::string("X"));
    r.preserves_breaks(true);
    r.preserves_marks(false);
    EXPECT_EQ(shown(do_replacement(sample, r)), "aXe en@0 <m>@1");
}

TEST(do_replacements, sorted_list_runs_with_default_flags) {
    Edits edits;
    add(edits, edit(4, 1, "Y"), false, true);
    add(edits, edit(1, 3, "X"), false, true);
    EXPECT_EQ(shown(do_replacements(sample, edits)), "aXY en@0 <m>@1");
    edits.reverse();
    EXPECT_EQ(shown(do_replacements(sample, edits)), "aXY en@0 ~p@1");
}

TEST(do_replacements, insertion_leaves_records_at_its_place_in_front) {
    EXPECT_EQ(shown(do_replacements(sample, {edit(2, 0, "X")})), "abXcde en@0 <m>@2 ~p@4");
}

TEST(do_replacements, text_attributes_of_the_range_are_in_force_behind_it) {
    const Speechtext text = rich() << lang("en") << "ab" << lang("de") << "cd";
    EXPECT_EQ(shown(do_replacements(text, {edit(1, 2, "X")})), "aXd en@0 de@2");
}

TEST(do_replacements, record_right_behind_the_range_wins_against_the_restored_one) {
    const Speechtext text = rich() << lang("en") << "a" << lang("fr") << "b" << lang("de") << "c";
    EXPECT_EQ(shown(do_replacements(text, {edit(0, 2, "X")})), "Xc en@0 de@1");
}

TEST(do_replacements, record_right_behind_the_range_keeps_its_place) {
    const Speechtext text = rich() << lang("en") << "ab" << mark("m") << "c";
    EXPECT_EQ(shown(do_replacements(text, {edit(0, 2, "XYZ")})), "XYZc en@0 <m>@3");
}

TEST(do_replacements, records_of_the_new_text_stand_between_preserved_and_restored) {
    const replacement rich_edit(1, 3, rich() << lang("fr") << "X" << mark("n") << "Y");
    EXPECT_EQ(shown(do_replacements(sample, {rich_edit})), "aXYe en@0 <m>@1 fr@1 <n>@2 en@3");
}

TEST(do_replacements, mark_that_the_new_text_brings_stands_once) {
    const replacement rich_edit(1, 3, rich() << "X" << mark("m"));
    EXPECT_EQ(shown(do_replacements(sample, {rich_edit})), "aXe en@0 <m>@2");
}

TEST(do_replacements, mark_in_front_that_the_new_text_brings_goes_even_without_preserving) {
    Edits edits;
    add(edits, replacement(3, 0, rich() << "X" << mark("m")), false, false);
    EXPECT_EQ(shown(do_replacements(sample, edits)), "abcXde en@0 ~p@3 <m>@4");
}

TEST(do_replacements, mark_identity_ignores_invisible) {
    SpeechtextMark hidden = mark("m");
    hidden.invisible(true);
    EXPECT_EQ(shown(do_replacements(sample, {replacement(1, 2, rich() << "X" << hidden)})), "aXde en@0 <m?>@2 ~p@2");
}

TEST(do_replacements, break_that_the_new_text_brings_stands_once_if_breaks_are_preserved) {
    Edits edits;
    add(edits, replacement(1, 3, rich() << "X" << pause("p")), true, true);
    EXPECT_EQ(shown(do_replacements(sample, edits)), "aXe en@0 <m>@1 ~p@2");
}

TEST(do_replacements, break_in_front_stays_although_the_new_text_brings_it) {
    Edits edits;
    add(edits, replacement(3, 1, rich() << "X" << pause("p")), true, true);
    EXPECT_EQ(shown(do_replacements(sample, edits)), "abcXe en@0 <m>@2 ~p@3 ~p@4");
}

// Such attributes are unequal to their own copies, so nothing ever is a repetition of them.
TEST(do_replacements, attributes_with_a_factor_that_is_no_number_are_restored_behind_each_edit) {
    SpeechtextTextAttrs odd = lang("en");
    odd.prosody.rate_value = std::numeric_limits<float>::quiet_NaN();
    const Speechtext text = rich() << odd << "abc";
    EXPECT_EQ(shown(do_replacements(text, {edit(1, 0, "X"), edit(2, 1, "Y")})), "aXbY en@0 en@2 en@4");
}
