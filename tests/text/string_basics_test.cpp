// Case, ends, size and trimming.
#include <gtest/gtest.h>

#include <string>

#include "text/qm_stringutils.h"
#include "text/reference.h"
#include "text/utf8_inputs.h"

namespace {

TEST(Makelower, maps_every_script) {
    EXPECT_EQ(makelower("ABC xyz 123"), "abc xyz 123");
    EXPECT_EQ(makelower("\xC3\x89T\xC3\x89"), "\xC3\xA9t\xC3\xA9");  // E acute
    EXPECT_EQ(makelower("\xCE\x91\xCE\xA3"), "\xCE\xB1\xCF\x83");    // Alpha, Sigma
    EXPECT_EQ(makelower("\xD0\x90\xD0\x81"), "\xD0\xB0\xD1\x91");    // A, Io
    EXPECT_EQ(makelower(""), "");
}

TEST(Makelower, lengths_may_change) { EXPECT_EQ(makelower("\xC5\xB8"), "\xC3\xBF"); }

TEST(Makeupper, maps_every_script) {
    EXPECT_EQ(makeupper("abc XYZ 123"), "ABC XYZ 123");
    EXPECT_EQ(makeupper("\xC3\xA9t\xC3\xA9"), "\xC3\x89T\xC3\x89");
    EXPECT_EQ(makeupper("stra\xC3\x9F"
                        "e"),
              "STRA\xC3\x9F"
              "E");
    EXPECT_EQ(makeupper("\xCF\x82"), "\xCE\xA3");  // final sigma
}

TEST(Makelower, bad_sequence_stops_the_program) { EXPECT_DEATH(makelower("a\xFF"), "wc != WEOF"); }
TEST(Makeupper, bad_sequence_stops_the_program) { EXPECT_DEATH(makeupper("a\xC3"), "wc != WEOF"); }

TEST(Endswith, must_be_longer) {
    EXPECT_TRUE(endswith("abc", "bc"));
    EXPECT_FALSE(endswith("abc", "abc"));
    EXPECT_FALSE(endswith("bc", "abc"));
    EXPECT_FALSE(endswith("abc", "ab"));
}

TEST(Endswith, empty_suffix) {
    EXPECT_TRUE(endswith("a", ""));
    EXPECT_FALSE(endswith("", ""));
}

TEST(Startswith, must_be_longer) {
    EXPECT_TRUE(startswith("abc", "ab"));
    EXPECT_FALSE(startswith("abc", "abc"));
    EXPECT_FALSE(startswith("ab", "abc"));
    EXPECT_FALSE(startswith("abc", "bc"));
}

TEST(Startswith, empty_prefix) {
    EXPECT_TRUE(startswith("a", ""));
    EXPECT_FALSE(startswith("", ""));
}

TEST(Utf8Size, counts_characters) {
    EXPECT_EQ(utf8_size(""), 0u);
    EXPECT_EQ(utf8_size("abc"), 3u);
    EXPECT_EQ(utf8_size("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), 4u);
    EXPECT_EQ(utf8_size(std::string("a\0b", 3)), 3u);
}

TEST(Utf8Size, stops_at_bad_sequence_and_counts_it) {
    EXPECT_EQ(utf8_size("A\xFF"
                        "B"),
              2u);
    EXPECT_EQ(utf8_size("\xE2\x82"), 1u);
    EXPECT_EQ(utf8_size("a\xEF\xBF\xBFzzz"), 2u);
}

TEST(Utf8Size, all_families_like_reference) {
    inputs::all_families([](const std::string& text) {
        ASSERT_EQ(utf8_size(text), reference::size(text)) << testing::PrintToString(text);
    });
}

std::string ltrimmed(std::string s) { return ltrim(s); }
std::string rtrimmed(std::string s) { return rtrim(s); }
std::string trimmed(std::string s) { return trim(s); }

TEST(Trim, each_side) {
    EXPECT_EQ(ltrimmed("  a b  "), "a b  ");
    EXPECT_EQ(rtrimmed("  a b  "), "  a b");
    EXPECT_EQ(trimmed("  a b  "), "a b");
}

TEST(Trim, every_blank) { EXPECT_EQ(trimmed("\t\n\v\f\r x \t\n\v\f\r"), "x"); }

TEST(Trim, blanks_alone_and_nothing) {
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(ltrimmed("   "), "");
    EXPECT_EQ(rtrimmed("   "), "");
    EXPECT_EQ(rtrimmed(""), "");
    EXPECT_EQ(ltrimmed(""), "");
}

TEST(Trim, other_bytes_stay) {
    EXPECT_EQ(trimmed("\xC2\xA0x\xC2\xA0"), "\xC2\xA0x\xC2\xA0");  // the no-break space
    EXPECT_EQ(trimmed("\x85x\x85"), "\x85x\x85");
    EXPECT_EQ(trimmed(std::string("\0x\x1F", 3)), std::string("\0x\x1F", 3));
}

TEST(Trim, works_in_place_and_returns_the_same_string) {
    std::string s = " a ";
    EXPECT_EQ(&ltrim(s), &s);
    EXPECT_EQ(s, "a ");
    EXPECT_EQ(&rtrim(s), &s);
    EXPECT_EQ(s, "a");
    EXPECT_EQ(&trim(s), &s);
}

}  // namespace
