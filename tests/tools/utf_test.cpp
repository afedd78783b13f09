// Conversions that never fail, and comparing without case.
#include "tools/host/utf.h"

#include <gtest/gtest.h>

namespace {

using namespace host;

TEST(Utf, characters_of_each_length_go_both_ways) {
    const std::string bytes = "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(to_wide(bytes), NELVA_WIDE("A\u00E9\u20AC\U0001F600"));
    EXPECT_EQ(to_utf8(NELVA_WIDE("A\u00E9\u20AC\U0001F600")), bytes);
}

TEST(Utf, empty_text_is_empty) {
    EXPECT_EQ(to_wide(""), WideString());
    EXPECT_EQ(to_utf8(WideView()), "");
}

TEST(Utf, nul_is_a_character_like_others) {
    EXPECT_EQ(to_wide(std::string("a\0b", 3)), WideString({'a', 0, 'b'}));
    EXPECT_EQ(to_utf8(WideString({'a', 0, 'b'})), std::string("a\0b", 3));
}

TEST(Utf, lone_surrogate_becomes_replacement_character) {
    EXPECT_EQ(to_utf8(WideString({'a', static_cast<WCHAR>(0xD83D), 'b'})),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(to_utf8(WideString({static_cast<WCHAR>(0xDE00)})), "\xEF\xBF\xBD");
}

TEST(Utf, bad_byte_becomes_replacement_character) {
    EXPECT_EQ(to_wide("a\xFF"
                      "b"),
              WideString({'a', static_cast<WCHAR>(0xFFFD), 'b'}));
}

TEST(Utf, byte_order_mark_goes_only_from_the_front) {
    EXPECT_EQ(without_bom("\xEF\xBB\xBFhi"), "hi");
    EXPECT_EQ(without_bom("hi\xEF\xBB\xBF"), "hi\xEF\xBB\xBF");
    EXPECT_EQ(without_bom("\xEF\xBB"), "\xEF\xBB");
}

TEST(Utf, only_ascii_letters_have_case) {
    EXPECT_EQ(ascii_lower("AZ[\xC3\x89"), "az[\xC3\x89");
    EXPECT_TRUE(equal_ignoring_case("Rate", "rATE"));
    EXPECT_FALSE(equal_ignoring_case("rate", "rates"));
    EXPECT_FALSE(equal_ignoring_case("@", "`"));
}

}  // namespace
