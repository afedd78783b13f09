// regexp::Match: making, copying, comparing and cutting.
#include <gtest/gtest.h>

#include <memory>

#include "regexp/rich_text.h"

using regexp::Match;

namespace {

// What the operation writes to the standard error stream.
template <class Operation>
std::string errors_of(Operation operation) {
    ::testing::internal::CaptureStderr();
    operation();
    return ::testing::internal::GetCapturedStderr();
}

const char up_to_message[] = "Using up_to with match outside of this match!\n";
const char starting_from_message[] = "Using starting_from with match outside of this match!\n";

}  // namespace

TEST(Match, default_is_empty_without_text) {
    const Match match;
    EXPECT_EQ(match.size(), 0);
    EXPECT_EQ(match.as_string(), "");
    EXPECT_FALSE(match.is_speechtext());
    EXPECT_EQ(match.attrsiter, nullptr);
}

TEST(Match, made_from_strings_has_no_text) {
    const std::string string("abc\0d", 5);
    EXPECT_EQ(Match("abc").as_string(), "abc");
    EXPECT_EQ(Match("abcdef", 3).as_string(), "abc");
    EXPECT_EQ(Match(string).as_string(), string);
    EXPECT_EQ(Match(string).data(), string.data());
    EXPECT_FALSE(Match(string).is_speechtext());
}

TEST(Match, made_from_a_speechtext_covers_it_and_holds_no_iterator) {
    const Speechtext text = rich() << lang("en") << "abc";
    const Match match(text);
    EXPECT_EQ(match.data(), text.as_string().data());
    EXPECT_EQ(match.size(), 3);
    EXPECT_EQ(match.text, &text);
    EXPECT_EQ(match.attrsiter, nullptr);
}

TEST(Match, copy_of_a_match_without_iterator_stands_at_the_first_record) {
    const Speechtext text = rich() << lang("en") << "abc";
    const Match match(text);
    const Match copy(match);
    ASSERT_NE(copy.attrsiter, nullptr);
    EXPECT_EQ(*copy.attrsiter, text.attrs_begin());
    EXPECT_EQ(copy.text, &text);
    EXPECT_EQ(copy.data(), match.data());
}

TEST(Match, copy_has_an_iterator_of_its_own) {
    const Speechtext text = rich() << lang("en") << "abc" << mark("m");
    Match match(text);
    const Match::iterator second = text.attrs_begin() + 1;
    match.set_attrsiter(&second);
    const Match copy(match);
    EXPECT_NE(copy.attrsiter, match.attrsiter);
    EXPECT_EQ(*copy.attrsiter, second);
}

TEST(Match, copy_of_a_match_without_text_has_no_iterator) {
    const Match match("abc");
    EXPECT_EQ(Match(match).attrsiter, nullptr);
}

TEST(Match, assignment_does_as_copying) {
    const Speechtext text = rich() << lang("en") << "abc";
    Match match("x");
    match = Match(text);
    EXPECT_EQ(match.text, &text);
    ASSERT_NE(match.attrsiter, nullptr);
    EXPECT_EQ(*match.attrsiter, text.attrs_begin());
    match = Match("y");
    EXPECT_FALSE(match.is_speechtext());
    EXPECT_EQ(match.attrsiter, nullptr);
}

TEST(Match, assignment_to_itself_changes_nothing) {
    const Speechtext text = rich() << lang("en") << "abc";
    Match match(text);
    Match& same = match;
    match = same;
    EXPECT_EQ(match.attrsiter, nullptr);
    EXPECT_EQ(match.as_string(), "abc");
}

TEST(Match, get_attrsitercopy_is_null_without_text) { EXPECT_EQ(Match("abc").get_attrsitercopy(), nullptr); }

TEST(Match, get_attrsitercopy_without_iterator_stands_at_the_first_record) {
    const Speechtext text = rich() << "abc" << mark("m");
    const std::unique_ptr<Match::iterator> it(Match(text).get_attrsitercopy());
    ASSERT_NE(it, nullptr);
    EXPECT_EQ(*it, text.attrs_begin());
}

TEST(Match, set_attrsiter_copies_replaces_and_clears) {
    const Speechtext text = rich() << "abc" << mark("m") << mark("n");
    Match match(text);
    Match::iterator it = text.attrs_begin();
    match.set_attrsiter(&it);
    ++it;
    EXPECT_EQ(*match.attrsiter, text.attrs_begin());
    match.set_attrsiter(&it);
    EXPECT_EQ(*match.attrsiter, text.attrs_begin() + 1);
    match.set_attrsiter(nullptr);
    EXPECT_EQ(match.attrsiter, nullptr);
}

TEST(Match, set_attrsiter_takes_its_own_iterator) {
    const Speechtext text = rich() << "abc" << mark("m");
    Match match(text);
    const Match::iterator it = text.attrs_end();
    match.set_attrsiter(&it);
    match.set_attrsiter(match.attrsiter);
    EXPECT_EQ(*match.attrsiter, text.attrs_end());
}

TEST(Match, equality_looks_at_bytes_only) {
    const Speechtext text = rich() << lang("en") << "abc";
    EXPECT_TRUE(Match(text) == Match("abc"));
    EXPECT_FALSE(Match(text) != Match("abc"));
    EXPECT_TRUE(Match("abc") != Match("abd"));
    EXPECT_TRUE(Match("abc") != Match("ab"));
}

TEST(Match, equality_of_empty_pieces) {
    EXPECT_TRUE(Match() == Match(""));
    EXPECT_TRUE(Match() == Match());
    EXPECT_TRUE(Match() != Match("a"));
}

TEST(Match, up_to_gives_the_part_in_front) {
    const std::string string("abcdef");
    const Match all(string);
    EXPECT_EQ(all.up_to(Match(string.data() + 2, 1)).as_string(), "ab");
    EXPECT_EQ(all.up_to(Match(string.data(), 1)).as_string(), "");
}

TEST(Match, up_to_the_very_end_gives_all) {
    const std::string string("abcdef");
    EXPECT_EQ(Match(string).up_to(Match(string.data() + 6, 0u)).as_string(), "abcdef");
}

TEST(Match, up_to_one_byte_behind_is_reported_and_empty) {
    const std::string string("abcdef");
    const Match front(string.data(), 3);
    Match result("x");
    EXPECT_EQ(errors_of([&] { result = front.up_to(Match(string.data() + 4, 1)); }), up_to_message);
    EXPECT_EQ(result.size(), 0);
    EXPECT_FALSE(result.is_speechtext());
}

TEST(Match, up_to_a_match_in_front_is_reported) {
    const std::string string("abcdef");
    const Match back(string.data() + 3, 3);
    EXPECT_EQ(errors_of([&] { back.up_to(Match(string)); }), up_to_message);
}

TEST(Match, up_to_a_piece_without_bytes_is_reported) {
    EXPECT_EQ(errors_of([] { Match("abc").up_to(Match()); }), up_to_message);
    EXPECT_EQ(errors_of([] { Match().up_to(Match()); }), "");
}

TEST(Match, up_to_keeps_text_and_iterator_of_this_match) {
    const Speechtext text = rich() << lang("en") << "abc" << mark("m");
    Match all(text);
    const Match::iterator second = text.attrs_begin() + 1;
    all.set_attrsiter(&second);
    const Match part = all.up_to(Match(text.data() + 1, 1));
    EXPECT_EQ(part.text, &text);
    EXPECT_EQ(*part.attrsiter, second);
    EXPECT_NE(part.attrsiter, all.attrsiter);
}

TEST(Match, up_to_does_not_compare_texts) {
    const Speechtext text = rich() << lang("en") << "abc";
    const Match part = Match(text).up_to(Match(text.data() + 2, 1));
    EXPECT_EQ(part.as_string(), "ab");
    EXPECT_EQ(part.text, &text);
}

TEST(Match, starting_from_gives_the_rest) {
    const std::string string("abcdef");
    const Match front(string.data(), 4);
    EXPECT_EQ(front.starting_from(Match(string.data() + 2, 1)).as_string(), "cd");
    EXPECT_EQ(front.starting_from(Match(string.data() + 4, 1)).as_string(), "");
}

TEST(Match, starting_from_a_match_in_front_starts_there) {
    const std::string string("abcdef");
    const Match middle(string.data() + 2, 2);
    EXPECT_EQ(middle.starting_from(Match(string)).as_string(), "abcd");
}

TEST(Match, starting_from_behind_the_end_is_reported_and_empty) {
    const std::string string("abcdef");
    const Match front(string.data(), 3);
    Match result("x");
    EXPECT_EQ(errors_of([&] { result = front.starting_from(Match(string.data() + 4, 1)); }), starting_from_message);
    EXPECT_EQ(result.size(), 0);
}

TEST(Match, starting_from_a_match_of_another_text_is_reported) {
    const Speechtext text = rich() << "abc";
    const Speechtext other = rich() << "abc";
    const Match all(text);
    EXPECT_EQ(errors_of([&] { all.starting_from(Match(text.data(), 1)); }), starting_from_message);
    EXPECT_EQ(errors_of([&] { all.starting_from(Match(other)); }), starting_from_message);
}

TEST(Match, starting_from_a_piece_without_bytes_is_reported) {
    EXPECT_EQ(errors_of([] { Match("abc").starting_from(Match()); }), starting_from_message);
    EXPECT_EQ(errors_of([] { Match().starting_from(Match()); }), "");
}

TEST(Match, starting_from_takes_the_iterator_of_the_other_match) {
    const Speechtext text = rich() << lang("en") << "abc" << mark("m");
    const Match all(text);
    Match last(text);
    last.remove_prefix(2);
    const Match::iterator second = text.attrs_begin() + 1;
    last.set_attrsiter(&second);
    const Match part = all.starting_from(last);
    EXPECT_EQ(part.as_string(), "c");
    EXPECT_EQ(part.text, &text);
    EXPECT_EQ(*part.attrsiter, second);
}

TEST(Match, starting_from_without_text_takes_no_text_over) {
    const Speechtext text = rich() << "abc";
    const Match bare(text.data(), 3);
    const Match part = bare.starting_from(Match(text));
    EXPECT_EQ(part.as_string(), "abc");
    EXPECT_FALSE(part.is_speechtext());
    EXPECT_EQ(part.attrsiter, nullptr);
}
