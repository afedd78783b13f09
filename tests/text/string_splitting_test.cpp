// Splitting of strings.
#include <gtest/gtest.h>

#include <list>
#include <set>
#include <string>

#include "text/qm_stringutils.h"

namespace {

using pieces = std::list<std::string>;

TEST(Splitlines, at_line_feeds) {
    EXPECT_EQ(splitlines("a\nb\nc"), (pieces{"a", "b", "c"}));
    EXPECT_EQ(splitlines("one line"), (pieces{"one line"}));
}

TEST(Splitlines, last_line_feed_adds_no_piece) { EXPECT_EQ(splitlines("a\nb\n"), (pieces{"a", "b"})); }

TEST(Splitlines, empty_line_ends_the_split) {
    EXPECT_EQ(splitlines("a\n\nb"), (pieces{"a"}));
    EXPECT_EQ(splitlines("\na"), pieces{});
    EXPECT_EQ(splitlines(""), pieces{});
}

TEST(Splitlines, carriage_returns_stay) {
    EXPECT_EQ(splitlines("a\r\nb\r\n"), (pieces{"a\r", "b\r"}));
    EXPECT_EQ(splitlines("a\r\n\r\nb"), (pieces{"a\r", "\r", "b"}));
}

TEST(SplitOnAsciiws, pieces_without_blanks) {
    EXPECT_EQ(split_on_asciiws("  a\tb\n"), (pieces{"a", "b"}));
    EXPECT_EQ(split_on_asciiws("a\vb\rc d"), (pieces{"a", "b", "c", "d"}));
    EXPECT_EQ(split_on_asciiws("abc"), (pieces{"abc"}));
}

TEST(SplitOnAsciiws, nothing_but_blanks) {
    EXPECT_EQ(split_on_asciiws(""), pieces{});
    EXPECT_EQ(split_on_asciiws(" \t\r\n\v "), pieces{});
}

TEST(SplitOnAsciiws, form_feed_and_nul_do_not_separate) {
    EXPECT_EQ(split_on_asciiws("a\fb c"), (pieces{"a\fb", "c"}));
    EXPECT_EQ(split_on_asciiws(std::string("a\0b", 3)), (pieces{std::string("a\0b", 3)}));
    EXPECT_EQ(split_on_asciiws("a\xC2\xA0z"), (pieces{"a\xC2\xA0z"}));
}

TEST(SplitOnChar, one_piece_more_than_occurrences) {
    EXPECT_EQ(split_on_char(',', "a,,b,"), (pieces{"a", "", "b", ""}));
    EXPECT_EQ(split_on_char(',', "abc"), (pieces{"abc"}));
    EXPECT_EQ(split_on_char(',', ","), (pieces{"", ""}));
    EXPECT_EQ(split_on_char(',', ""), (pieces{""}));
}

TEST(SplitOnChar, any_byte_separates) {
    EXPECT_EQ(split_on_char('\0', std::string("a\0b", 3)), (pieces{"a", "b"}));
    EXPECT_EQ(split_on_char(' ', " a  b"), (pieces{"", "a", "", "b"}));
}

TEST(SplitSetOnChar, sorted_and_once_each) {
    EXPECT_EQ(split_set_on_char(',', "b,a,b"), (std::set<std::string>{"a", "b"}));
    EXPECT_EQ(split_set_on_char(',', "a,,a,"), (std::set<std::string>{"", "a"}));
    EXPECT_EQ(split_set_on_char(',', ""), (std::set<std::string>{""}));
}

}  // namespace
