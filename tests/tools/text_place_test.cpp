// Lines and columns.
#include "tools/host/text_place.h"

#include <gtest/gtest.h>

namespace {

using namespace host;

std::string at(std::string_view text, std::size_t offset) { return place_text("x", place_of(text, offset)); }

TEST(TextPlace, counts_from_one) { EXPECT_EQ(at("abc", 0), "x:1:1"); }

TEST(TextPlace, line_end_begins_a_new_line) {
    EXPECT_EQ(at("ab\ncd", 2), "x:1:3");
    EXPECT_EQ(at("ab\ncd", 3), "x:2:1");
    EXPECT_EQ(at("ab\ncd", 4), "x:2:2");
}

TEST(TextPlace, columns_are_characters) {
    EXPECT_EQ(at("\xC3\xA9\xF0\x9F\x98\x80x", 6), "x:1:3");
    EXPECT_EQ(place_text("x", place_of(WideView(NELVA_WIDE("\u00E9\U0001F600x")), 3)), "x:1:3");
}

TEST(TextPlace, offset_behind_the_text_is_its_end) { EXPECT_EQ(at("ab\n", 100), "x:2:1"); }

}  // namespace
