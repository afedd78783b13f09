// Token: the role string and its edits.
#include <gtest/gtest.h>

#include "speechtext/attribute_values.h"

namespace {

Token token(const std::string& role) {
    Token token;
    token.set_role(role);
    return token;
}

std::string replaced(const std::string& role, const std::string& item) {
    Token t = token(role);
    t.replace_role(item);
    return t.role();
}

std::string added(const std::string& role, const std::string& item) {
    Token t = token(role);
    t.add_role(item);
    return t.role();
}

std::string removed(const std::string& role, const std::string& item) {
    Token t = token(role);
    t.remove_role(item);
    return t.role();
}

std::string modified(const std::string& role, const std::string& edits) {
    Token t = token(role);
    t.modify_role(edits);
    return t.role();
}

}  // namespace

TEST(Token_set_role, takes_any_text) { EXPECT_EQ(token(" no: syntax,").role(), " no: syntax,"); }

TEST(Token_has_role, empty_role_string_has_none) {
    EXPECT_FALSE(token("").has_role("a:b"));
    EXPECT_FALSE(token("").has_role(""));
}

TEST(Token_has_role, all_values_in_any_order) {
    EXPECT_TRUE(token("a:b,c d:e").has_role("a:c,b"));
    EXPECT_TRUE(token("a:b,c d:e").has_role("d:e"));
    EXPECT_FALSE(token("a:b,c d:e").has_role("a:b,e"));
    EXPECT_FALSE(token("a:b,c d:e").has_role("e:b"));
}

TEST(Token_has_role, values_asked_for_twice_count_once) { EXPECT_TRUE(token("a:b").has_role("a:b,b")); }

TEST(Token_has_role, values_may_be_spread_over_items_of_one_name) {
    EXPECT_TRUE(token("a:b d:e a:c").has_role("a:b,c"));
}

TEST(Token_has_role, items_stand_between_any_ascii_blanks) {
    EXPECT_TRUE(token("x:1\ta:b\nc:d").has_role("a:b"));
    EXPECT_TRUE(token("x:1\ta:b\nc:d").has_role("c:d"));
}

TEST(Token_has_role, prefix_alone_does_not_count) {
    EXPECT_FALSE(token("a:").has_role("a:"));
    EXPECT_TRUE(token("a:b,").has_role("a:"));
}

TEST(Token_has_role, without_colon_looks_at_whole_items) {
    EXPECT_TRUE(token("a:b,c").has_role("a:b"));
    EXPECT_TRUE(token("a:b,c").has_role("c"));
    EXPECT_FALSE(token("a:b,c").has_role("b"));
}

TEST(Token_has_role, only_the_first_colon_divides) {
    EXPECT_TRUE(token("a:b:c").has_role("a:b:c"));
    EXPECT_FALSE(token("a:b:c").has_role("a:c"));
}

TEST(Token_get_role_content, value_list_of_the_first_item) {
    EXPECT_EQ(token("a:b,c d:e a:f").get_role_content("a"), "b,c");
    EXPECT_EQ(token("a:b,c d:e").get_role_content("d"), "e");
}

TEST(Token_get_role_content, empty_without_name_or_item) {
    EXPECT_EQ(token("a:b").get_role_content(""), "");
    EXPECT_EQ(token("").get_role_content("a"), "");
    EXPECT_EQ(token("a:b").get_role_content("b"), "");
    EXPECT_EQ(token("aa:b").get_role_content("a"), "");
}

TEST(Token_get_role_content, only_a_blank_separates) {
    EXPECT_EQ(token("x:1\ta:b").get_role_content("a"), "");
    EXPECT_EQ(token("a:b\tc:d e:f").get_role_content("a"), "b\tc:d");
}

TEST(Token_replace_role, replaces_the_item) {
    EXPECT_EQ(replaced("a:1 b:2 c:3", "b:x,y"), "a:1 b:x,y c:3");
    EXPECT_EQ(replaced("a:1 b:2", "a:9"), "a:9 b:2");
    EXPECT_EQ(replaced("a:1 b:2", "b:9"), "a:1 b:9");
}

TEST(Token_replace_role, only_the_first_item_of_a_name) { EXPECT_EQ(replaced("a:1 a:2", "a:3"), "a:3 a:2"); }

TEST(Token_replace_role, missing_item_is_appended) {
    EXPECT_EQ(replaced("", "a:1"), "a:1");
    EXPECT_EQ(replaced("b:2", "a:1"), "b:2 a:1");
}

TEST(Token_replace_role, without_values_removes_the_first_item_with_its_blank) {
    EXPECT_EQ(replaced("a:1 b:2", "a:"), "b:2");
    EXPECT_EQ(replaced("a:1", "a:"), "");
}

TEST(Token_replace_role, without_values_a_later_item_leaves_the_blank_in_front) {
    EXPECT_EQ(replaced("a:1 b:2 c:3", "b:"), "a:1  c:3");
    EXPECT_EQ(replaced("a:1 b:2", "b:"), "a:1 ");
}

TEST(Token_replace_role, without_values_a_missing_item_changes_nothing) { EXPECT_EQ(replaced("b:1", "a:"), "b:1"); }

TEST(Token_replace_role, needs_a_name_and_a_colon) {
    EXPECT_EQ(replaced("a:1", "x"), "a:1");
    EXPECT_EQ(replaced("a:1", ":y"), "a:1");
    EXPECT_EQ(replaced("a:1", ""), "a:1");
}

TEST(Token_replace_role, item_without_values_is_replaced) { EXPECT_EQ(replaced("a:", "a:b"), "a:b"); }

TEST(Token_add_role, to_the_empty_role_string) { EXPECT_EQ(added("", "a:b"), "a:b"); }

TEST(Token_add_role, behind_the_values_that_are_there) { EXPECT_EQ(added("a:b x:1", "a:c"), "a:b,c x:1"); }

TEST(Token_add_role, present_values_change_nothing) { EXPECT_EQ(added("a:b,c", "a:c,b"), "a:b,c"); }

TEST(Token_add_role, partly_present_values_are_listed_twice) { EXPECT_EQ(added("a:b", "a:b,c"), "a:b,b,c"); }

TEST(Token_add_role, needs_a_name_and_a_colon) {
    EXPECT_EQ(added("a:b", "x"), "a:b");
    EXPECT_EQ(added("a:b", ":x"), "a:b");
}

TEST(Token_add_role, item_behind_a_tab_is_not_found) { EXPECT_EQ(added("x:1\ta:b", "a:c"), "x:1\ta:b a:c"); }

TEST(Token_remove_role, first_middle_and_last_value) {
    EXPECT_EQ(removed("a:b,c,d", "a:b"), "a:c,d");
    EXPECT_EQ(removed("a:b,c,d", "a:c"), "a:b,d");
    EXPECT_EQ(removed("a:b,c,d", "a:d"), "a:b,c");
}

TEST(Token_remove_role, last_value_removes_the_item) {
    EXPECT_EQ(removed("a:b", "a:b"), "");
    EXPECT_EQ(removed("x:1 a:b", "a:b"), "x:1 ");
    EXPECT_EQ(removed("a:b x:1", "a:b"), "x:1");
}

TEST(Token_remove_role, neighbouring_values_in_order) { EXPECT_EQ(removed("a:b,c,d", "a:b,c"), "a:d"); }

TEST(Token_remove_role, values_apart_or_out_of_order_stay) {
    EXPECT_EQ(removed("a:b,c,d", "a:b,d"), "a:b,c,d");
    EXPECT_EQ(removed("a:b,c", "a:c,b"), "a:b,c");
}

TEST(Token_remove_role, value_at_the_start_goes_before_one_at_the_end) {
    EXPECT_EQ(removed("a:b,c,b", "a:b"), "a:c,b");
}

TEST(Token_remove_role, missing_value_changes_nothing) {
    EXPECT_EQ(removed("a:b", "a:c"), "a:b");
    EXPECT_EQ(removed("a:bc", "a:b"), "a:bc");
}

TEST(Token_remove_role, looks_into_the_first_item_only) { EXPECT_EQ(removed("a:b a:c", "a:c"), "a:b a:c"); }

TEST(Token_remove_role, needs_a_name_and_a_colon) {
    EXPECT_EQ(removed("x", "x"), "x");
    EXPECT_EQ(removed(":x", ":x"), ":x");
}

TEST(Token_remove_role, empty_value) { EXPECT_EQ(removed("a:,b", "a:"), "a:b"); }

TEST(Token_modify_role, applies_each_edit_in_order) {
    EXPECT_EQ(modified("a:c", "a:+b,-c,q"), "a:b");
    EXPECT_EQ(modified("pos:verb", "pos:+noun,-verb"), "pos:noun");
}

TEST(Token_modify_role, each_edit_sees_the_one_before) {
    EXPECT_EQ(modified("", "a:+b,+c,-b"), "a:c");
    EXPECT_EQ(modified("", "a:-b,+b"), "a:b");
}

TEST(Token_modify_role, edits_of_one_character_are_skipped) {
    EXPECT_EQ(modified("a:b", "a:+"), "a:b");
    EXPECT_EQ(modified("a:b", "a:-,+"), "a:b");
    EXPECT_EQ(modified("a:b", "a:"), "a:b");
}

TEST(Token_modify_role, needs_a_name_and_a_colon) {
    EXPECT_EQ(modified("a:b", "+c"), "a:b");
    EXPECT_EQ(modified("a:b", ":+c"), "a:b");
}
