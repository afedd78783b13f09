// Helpers on wide strings.

#include <gtest/gtest.h>

#include <string>

#include "platform/win32.h"

namespace {

using Wide = std::basic_string<WCHAR>;

}  // namespace

TEST(WideLength, counts_units_up_to_the_nul) {
    EXPECT_EQ(wide_length(NELVA_WIDE("")), 0u);
    EXPECT_EQ(wide_length(NELVA_WIDE("abc")), 3u);
    EXPECT_EQ(wide_length(NELVA_WIDE("\U0001F600")), 2u);
    EXPECT_EQ(wide_length(NELVA_WIDE("ab\0cd")), 2u);
    EXPECT_EQ(wide_length(nullptr), 0u);
}

TEST(WideEqual, same_units_only) {
    EXPECT_TRUE(wide_equal(NELVA_WIDE("EngineProperties"), NELVA_WIDE("EngineProperties")));
    EXPECT_FALSE(wide_equal(NELVA_WIDE("EngineProperties"), NELVA_WIDE("engineproperties")));
    EXPECT_FALSE(wide_equal(NELVA_WIDE("ab"), NELVA_WIDE("abc")));
    EXPECT_FALSE(wide_equal(NELVA_WIDE("abc"), NELVA_WIDE("ab")));
    EXPECT_TRUE(wide_equal(NELVA_WIDE(""), NELVA_WIDE("")));
}

TEST(WideEqual, null_equals_null_only) {
    EXPECT_TRUE(wide_equal(nullptr, nullptr));
    EXPECT_FALSE(wide_equal(nullptr, NELVA_WIDE("")));
    EXPECT_FALSE(wide_equal(NELVA_WIDE(""), nullptr));
}

TEST(WideFormat, insertions_in_order) {
    WCHAR out[40];
    EXPECT_EQ(wide_format(out, 40, NELVA_WIDE("\"%ls\" --lex \"%ls\""), {NELVA_WIDE("a b"), NELVA_WIDE("\u00E9")}), 15);
    EXPECT_EQ(Wide(out), NELVA_WIDE("\"a b\" --lex \"\u00E9\""));
}

TEST(WideFormat, percent_signs_that_insert_nothing) {
    WCHAR out[40];
    EXPECT_EQ(wide_format(out, 40, NELVA_WIDE("100%% %d %l %"), {}), 12);
    EXPECT_EQ(Wide(out), NELVA_WIDE("100% %d %l %"));
}

TEST(WideFormat, insertion_is_not_read_as_a_format) {
    WCHAR out[40];
    EXPECT_EQ(wide_format(out, 40, NELVA_WIDE("<%ls>"), {NELVA_WIDE("%ls%%")}), 7);
    EXPECT_EQ(Wide(out), NELVA_WIDE("<%ls%%>"));
}

TEST(WideFormat, missing_or_null_insertion_reads_null) {
    WCHAR out[40];
    EXPECT_EQ(wide_format(out, 40, NELVA_WIDE("%ls %ls"), {nullptr}), 13);
    EXPECT_EQ(Wide(out), NELVA_WIDE("(null) (null)"));
}

TEST(WideFormat, exact_room_is_text_and_nul) {
    WCHAR out[6] = {'x', 'x', 'x', 'x', 'x', 'x'};
    EXPECT_EQ(wide_format(out, 5, NELVA_WIDE("a%lsd"), {NELVA_WIDE("bc")}), 4);
    EXPECT_EQ(Wide(out), NELVA_WIDE("abcd"));
    EXPECT_EQ(out[5], 'x');
}

TEST(WideFormat, too_little_room_cuts_and_gives_minus_one) {
    WCHAR out[5] = {'x', 'x', 'x', 'x', 'x'};
    EXPECT_EQ(wide_format(out, 4, NELVA_WIDE("a%lsd"), {NELVA_WIDE("bc")}), -1);
    EXPECT_EQ(Wide(out), NELVA_WIDE("abc"));
    EXPECT_EQ(out[4], 'x');
    EXPECT_EQ(wide_format(out, 0, NELVA_WIDE("a"), {}), -1);
}
