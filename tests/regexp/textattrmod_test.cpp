// Edits of text attributes, by way of token roles and of an attribute of our own.
#include <gtest/gtest.h>

#include "regexp/replacer.h"
#include "regexp/rich_text.h"

using regexp::Match;
using Mod = textattrmod<std::string>;

namespace {

Mod mod(const Speechtext& text, std::size_t start, std::size_t length, const std::string& value, bool force = false) {
    return Mod(text, Match(text.as_string().data() + start, length), value, force);
}

struct Range {
    std::size_t start;
    std::size_t length;
    std::string role;
    bool force = false;
};

std::string tagged(const Speechtext& text, const std::vector<Range>& ranges) {
    std::list<Mod> mods;
    for (const Range& range : ranges) mods.push_back(mod(text, range.start, range.length, range.role, range.force));
    return shown(do_setroles(text, mods));
}

}  // namespace

TEST(textattrmod, range_is_the_matchs) {
    const Speechtext text("abcdef");
    const Mod m(text, Match(text.data() + 2, 3), "r", true);
    EXPECT_EQ(m.start, 2);
    EXPECT_EQ(m.length, 3u);
    EXPECT_EQ(m.value, "r");
    EXPECT_TRUE(m.force);
}

TEST(do_setroles, empty_list_gives_a_copy) {
    EXPECT_EQ(tagged(rich() << lang("en") << "ab" << mark("m"), {}), "ab en@0 <m>@2");
}

TEST(do_setroles, range_inside_a_run) {
    EXPECT_EQ(tagged(rich() << lang("en") << "abcdef", {{2, 3, "r"}}), "abcdef en@0 en{r}@2 en@5");
}

TEST(do_setrole, is_a_list_of_one) {
    const Speechtext text = rich() << lang("en") << "abcdef";
    EXPECT_EQ(shown(do_setrole(text, mod(text, 2, 3, "r"))), "abcdef en@0 en{r}@2 en@5");
    EXPECT_EQ(shown(text), "abcdef en@0");
}

TEST(do_setroles, several_ranges) {
    EXPECT_EQ(tagged(rich() << lang("en") << "abcdef", {{0, 1, "r"}, {2, 1, "s"}, {4, 2, "t"}}),
              "abcdef en{r}@0 en@1 en{s}@2 en@3 en{t}@4 en@6");
}

TEST(do_setroles, range_that_starts_at_a_record_replaces_it) {
    EXPECT_EQ(tagged(rich() << lang("en") << "ab" << lang("de") << "cdef", {{2, 2, "r"}}), "abcdef en@0 de{r}@2 de@4");
}

TEST(do_setroles, range_that_starts_at_an_audio_insert_keeps_it) {
    SpeechtextTextAttrs audio = lang("de");
    audio.audio.set_instance(1);
    EXPECT_EQ(tagged(rich() << lang("en") << "ab" << audio << "cdef", {{2, 2, "r"}}),
              "abcdef en@0 de#1@2 de{r}#1@2 de#1@4");
}

TEST(do_setroles, record_inside_is_updated_at_its_place) {
    EXPECT_EQ(tagged(rich() << lang("en") << "abc" << lang("de") << "def", {{1, 4, "r"}}),
              "abcdef en@0 en{r}@1 de{r}@3 de@5");
}

TEST(do_setroles, record_at_the_end_is_outside) {
    EXPECT_EQ(tagged(rich() << lang("en") << "abc" << role("de", "x") << "def", {{1, 2, "r"}}),
              "abcdef en@0 en{r}@1 de{x}@3");
}

TEST(do_setroles, marks_and_breaks_stay) {
    EXPECT_EQ(tagged(rich() << lang("en") << "a" << mark("m") << "b" << pause("p") << "c" << mark("n"), {{1, 2, "r"}}),
              "abc en@0 <m>@1 en{r}@1 ~p@2 en@3 <n>@3");
}

TEST(do_setroles, role_in_force_at_the_start_is_a_conflict) {
    EXPECT_EQ(tagged(rich() << role("en", "x") << "abcdef", {{2, 3, "r"}}), "abcdef en{x}@0");
    EXPECT_EQ(tagged(rich() << role("en", "r") << "abcdef", {{2, 3, "r"}}), "abcdef en{r}@0");
}

TEST(do_setroles, role_inside_is_a_conflict_for_the_whole_edit) {
    EXPECT_EQ(tagged(rich() << lang("en") << "abc" << role("de", "x") << "def", {{1, 4, "r"}}), "abcdef en@0 de{x}@3");
}

TEST(do_setroles, force_overrides_conflicts) {
    EXPECT_EQ(tagged(rich() << lang("en") << "abc" << role("de", "x") << "def", {{1, 4, "r", true}}),
              "abcdef en@0 en{r}@1 de{r}@3 de{x}@5");
}

TEST(do_setroles, forced_same_value_changes_nothing) {
    EXPECT_EQ(tagged(rich() << role("en", "r") << "abcdef", {{2, 2, "r", true}}), "abcdef en{r}@0");
}

TEST(do_setroles, range_without_length_leaves_no_trace) {
    EXPECT_EQ(tagged(rich() << lang("en") << "abcdef", {{2, 0, "r"}}), "abcdef en@0");
}

TEST(do_setroles, attributeless_text_throws) {
    const Speechtext text = rich() << "ab" << mark("m") << "cd";
    for (const bool force : {false, true}) {
        try {
            do_setrole(text, mod(text, 1, 2, "r", force));
            FAIL();
        } catch (const std::logic_error& error) {
            EXPECT_STREQ(error.what(), "Cannot tag attribute-less text");
        }
    }
}

TEST(do_setroles, edit_that_conflicts_does_not_throw) {
    EXPECT_EQ(tagged(rich() << "ab" << role("de", "x") << "cd", {{0, 4, "r"}}), "abcd de{x}@2");
}

TEST(do_setroles, records_inside_come_again_for_an_edit_with_none_in_between) {
    EXPECT_EQ(tagged(rich() << lang("en") << "ab" << mark("m") << "cdef", {{1, 2, "r"}, {3, 2, "s"}}),
              "abcdef en@0 en{r}@1 <m>@2 en{s}@3 <m>@2 en@5");
}

TEST(do_setroles, edit_behind_one_that_was_not_made_starts_from_the_older_attributes) {
    EXPECT_EQ(tagged(rich() << lang("en") << "abc" << role("de", "x") << "defgh", {{1, 3, "r"}, {6, 1, "s"}}),
              "abcdefgh en@0 de{x}@3 en{s}@6 de{s}@3 de{x}@7");
}

TEST(do_textattrmods, any_attribute) {
    const Speechtext text = rich() << lang("en") << "abc" << lang("de") << "def";
    const auto is_german = [](const SpeechtextTextAttrs* attrs, const std::string&) { return attrs->language == "de"; };
    const auto set_language = [](SpeechtextTextAttrs* attrs, const std::string& value) { attrs->set_language(value); };
    const std::list<Mod> mods = {mod(text, 0, 1, "fr"), mod(text, 2, 2, "it"), mod(text, 5, 1, "es", true)};
    EXPECT_EQ(shown(Mod::do_textattrmods(text, mods, is_german, set_language)), "abcdef fr@0 en@1 de@3 es@5 de@6");
}

TEST(do_textattrmod, check_and_update_get_the_value) {
    const Speechtext text = rich() << lang("en") << "abc";
    const auto same = [](const SpeechtextTextAttrs* attrs, const std::string& value) {
        return attrs->language == value;
    };
    const auto set_language = [](SpeechtextTextAttrs* attrs, const std::string& value) { attrs->set_language(value); };
    EXPECT_EQ(shown(Mod::do_textattrmod(text, mod(text, 1, 1, "en"), same, set_language)), "abc en@0");
    EXPECT_EQ(shown(Mod::do_textattrmod(text, mod(text, 1, 1, "de"), same, set_language)), "abc en@0 de@1 en@2");
}
