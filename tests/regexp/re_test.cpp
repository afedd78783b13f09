// regexp::RE: compiling, copying, search, match, QuoteMeta.
#include <gtest/gtest.h>

#include "regexp/rich_text.h"

using regexp::Match;
using regexp::RE;
using regexp::RE_Options;

namespace {

bool finds(RE& re, const std::string& text) {
    Match input(text);
    return re.FindAndConsume(&input);
}

const RE_Options caseless = RE_Options().set_caseless(true);

}  // namespace

TEST(RE, default_options_are_utf8) {
    RE re("^.$");
    EXPECT_TRUE(finds(re, "\xC3\xA9"));
    EXPECT_FALSE(finds(re, "ab"));
}

TEST(RE, honours_options_and_does_not_keep_them) {
    RE re("abc", RE_Options().set_caseless(true).set_preserve_breaks(true));
    EXPECT_TRUE(finds(re, "ABC"));
    EXPECT_FALSE(re.options.caseless());
    EXPECT_TRUE(re.options.utf8());
    EXPECT_FALSE(re.options.preserve_breaks());
}

TEST(RE, bad_pattern_never_matches) {
    RE re("(");
    EXPECT_FALSE(finds(re, "("));
    EXPECT_NE(re.re.error(), "");
}

TEST(RE, copy_matches_alike) {
    RE re("AB", caseless);
    Match input("abab");
    ASSERT_TRUE(re.FindAndConsume(&input));
    RE copy(re);
    EXPECT_TRUE(copy.FindAndConsume(&input));
    EXPECT_EQ(input.size(), 0);
}

TEST(RE, assigned_pattern_is_used_in_a_running_scan) {
    RE re("a");
    Match input("aabb");
    ASSERT_TRUE(re.FindAndConsume(&input));
    ASSERT_TRUE(re.FindAndConsume(&input));
    re = RE("B", caseless);
    ASSERT_TRUE(re.FindAndConsume(&input));
    EXPECT_TRUE(re.FindAndConsume(&input));
    RE& same = re;
    re = same;
    EXPECT_TRUE(finds(re, "b"));
}

TEST(RE_search, finds_somewhere) {
    EXPECT_TRUE(RE::search("b+", std::string("abbc"), RE_Options()));
    EXPECT_FALSE(RE::search("d", std::string("abbc"), RE_Options()));
}

TEST(RE_match, takes_the_whole_text) {
    EXPECT_TRUE(RE::match("ab+c", std::string("abbc"), RE_Options()));
    EXPECT_FALSE(RE::match("b+", std::string("abbc"), RE_Options()));
    EXPECT_TRUE(RE::match("a|ab", std::string("ab"), RE_Options()));
}

TEST(RE_search, every_form) {
    const Speechtext text = rich() << lang("en") << "abc";
    EXPECT_TRUE(RE::search("b", std::string("abc"), RE_Options()));
    EXPECT_TRUE(RE::search(std::string("b"), std::string("abc"), RE_Options()));
    EXPECT_TRUE(RE::search("b", text, RE_Options()));
    EXPECT_TRUE(RE::search(std::string("b"), text, RE_Options()));
    EXPECT_FALSE(RE::search("x", text, RE_Options()));
}

TEST(RE_match, every_form) {
    const Speechtext text = rich() << lang("en") << "abc";
    EXPECT_TRUE(RE::match("abc", std::string("abc"), RE_Options()));
    EXPECT_TRUE(RE::match(std::string("abc"), std::string("abc"), RE_Options()));
    EXPECT_TRUE(RE::match("abc", text, RE_Options()));
    EXPECT_TRUE(RE::match(std::string("abc"), text, RE_Options()));
    EXPECT_FALSE(RE::match("ab", text, RE_Options()));
}

TEST(RE_search, honours_the_options) {
    EXPECT_TRUE(RE::search("B", std::string("abc"), caseless));
    EXPECT_FALSE(RE::search("B", std::string("abc"), RE_Options()));
    EXPECT_TRUE(RE::match("ABC", std::string("abc"), caseless));
}

TEST(RE_search, bad_pattern_is_no_match) {
    EXPECT_FALSE(RE::search("(", std::string("("), RE_Options()));
    EXPECT_FALSE(RE::match("(", std::string("("), RE_Options()));
}

TEST(RE_search, invalid_utf8_is_no_match_unless_bytewise) {
    EXPECT_FALSE(RE::search("a", std::string("a\xFF"), RE_Options()));
    EXPECT_TRUE(RE::search("a", std::string("a\xFF"), RE_Options().set_utf8(false)));
}

TEST(RE_search, long_text_needs_no_stack) {
    EXPECT_TRUE(RE::match("(?:a|b)*", std::string(100000, 'b'), RE_Options()));
}

TEST(QuoteMeta, punctuation_gets_a_backslash) {
    EXPECT_EQ(RE::QuoteMeta(std::string("1.5-2.0?")), "1\\.5\\-2\\.0\\?");
    EXPECT_EQ(RE::QuoteMeta(std::string("\\\n\t\x7F")), "\\\\\\\n\\\t\\\x7F");
}

TEST(QuoteMeta, letters_digits_underscore_and_blank_stay) {
    EXPECT_EQ(RE::QuoteMeta(std::string("azAZ09_ ")), "azAZ09_ ");
}

TEST(QuoteMeta, nul_becomes_a_zero_escape) { EXPECT_EQ(RE::QuoteMeta(std::string("a\0b", 3)), "a\\0b"); }

// Kept: "\0" and an octal digit are one number to PCRE.
TEST(QuoteMeta, digit_behind_nul_extends_it) {
    const std::string nul_one("\0001", 2);
    EXPECT_EQ(RE::QuoteMeta(nul_one), "\\01");
    EXPECT_FALSE(RE::match(RE::QuoteMeta(nul_one), nul_one, RE_Options()));
    EXPECT_TRUE(RE::match(RE::QuoteMeta(nul_one), std::string("\001"), RE_Options()));
}

TEST(QuoteMeta, bytes_with_the_top_bit_stay) {
    EXPECT_EQ(RE::QuoteMeta(std::string("\xC3\xA9\x80\xFF")), "\xC3\xA9\x80\xFF");
}

TEST(QuoteMeta, takes_string_pieces_and_matches) {
    EXPECT_EQ(RE::QuoteMeta(pcrecpp::StringPiece("a.b")), "a\\.b");
    EXPECT_EQ(RE::QuoteMeta(Match("a.b", 2)), "a\\.");
    EXPECT_EQ(RE::QuoteMeta(Match()), "");
}

TEST(QuoteMeta, takes_literals_up_to_their_nul) {
    EXPECT_EQ(RE::QuoteMeta("a.b c"), "a\\.b c");
    EXPECT_EQ(RE::QuoteMeta("a\0b"), "a");
    char own[] = "1+1";
    EXPECT_EQ(RE::QuoteMeta(own), "1\\+1");
    EXPECT_EQ(RE::QuoteMeta(static_cast<const char*>(nullptr)), "");
}

TEST(QuoteMeta, quoted_text_matches_itself) {
    std::string all;
    for (int byte = 1; byte < 0x80; ++byte) all += static_cast<char>(byte);
    EXPECT_TRUE(RE::match(RE::QuoteMeta(all), all, RE_Options()));
}
