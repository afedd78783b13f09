// White space and breaks put in order.
#include <gtest/gtest.h>

#include "speechtext/texts.h"

namespace {

Speechtext text_with(const std::string& bytes, std::initializer_list<std::pair<int, const SpeechtextAttrs*>> records) {
    Speechtext text = plain(bytes);
    for (const auto& [position, record] : records) text.append_attrs(position, *record);
    return text;
}

const SpeechtextTextAttrs a = attrs_of("A"), b = attrs_of("B");
const SpeechtextMark m = mark("m"), n = mark("n");
const SpeechtextBreak stop = pause("1ms");

std::string adjusted(const std::string& bytes) { return plain(bytes).adjust_whitespace().as_string(); }

TEST(AdjustWhitespace, empty_text_stays) {
    EXPECT_EQ(adjusted(""), "");
    EXPECT_EQ(adjusted("  \n"), "");
}

TEST(AdjustWhitespace, leading_blanks_go_and_one_trailing_blank_stays) {
    EXPECT_EQ(adjusted("  a"), "a");
    EXPECT_EQ(adjusted("a  "), "a ");
}

TEST(AdjustWhitespace, run_shrinks_to_its_first_character) {
    EXPECT_EQ(adjusted("a \t b"), "a b");
    EXPECT_EQ(adjusted("a\t b"), "a\tb");
    EXPECT_EQ(adjusted("a\xC2\xA0 b\n\n\nc"),
              "a\xC2\xA0"
              "b\nc");
}

TEST(AdjustWhitespace, nul_is_white_space_and_u2009_is_not) {
    EXPECT_EQ(adjusted(std::string("a\0 b", 4)), std::string("a\0b", 3));
    EXPECT_EQ(adjusted("a \xE2\x80\x89 b"), "a \xE2\x80\x89 b");
}

TEST(AdjustWhitespace, record_in_white_space_moves_to_the_next_word) {
    const Speechtext text = text_with("  a \t b", {{1, &m}, {4, &n}, {5, &a}});
    const Speechtext result = text.adjust_whitespace();
    EXPECT_EQ(result.as_string(), "a b");
    EXPECT_EQ(records_of(result), "0:<m> 2:<n> 2:A");
}

TEST(AdjustWhitespace, record_directly_behind_a_word_stays_there) {
    EXPECT_EQ(records_of(text_with("a  b", {{1, &m}}).adjust_whitespace()), "1:<m>");
}

TEST(AdjustWhitespace, record_in_trailing_white_space_lands_at_the_end) {
    EXPECT_EQ(records_of(text_with("a  ", {{2, &m}, {3, &n}}).adjust_whitespace()), "2:<m> 2:<n>");
}

TEST(AdjustWhitespace, merging_rule_applies_to_records_that_meet) {
    const Speechtext text = text_with("x  y", {{0, &a}, {2, &b}, {3, &a}, {3, &m}});
    EXPECT_EQ(records_of(text.adjust_whitespace()), "0:A 2:A 2:<m>");
    const Speechtext marks = text_with("x   y", {{2, &m}, {3, &m}});
    EXPECT_EQ(records_of(marks.adjust_whitespace()), "2:<m>");
}

std::string message_of(const std::string& bytes) {
    testing::internal::CaptureStderr();
    plain(bytes).adjust_whitespace();
    return testing::internal::GetCapturedStderr();
}

TEST(AdjustWhitespace, garbage_is_dropped_and_counted) {
    EXPECT_EQ(message_of("good"), "");
    EXPECT_EQ(message_of("a\xFF"), "Speechtext::adjust_whitespace(): 1 byte of non-utf8 garbage dropped!\n");
    EXPECT_EQ(message_of("\xFFz\xC3"), "Speechtext::adjust_whitespace(): 2 bytes of non-utf8 garbage dropped!\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(adjusted("a\xC3\x41 \xE2\x82"), "aA ");
    testing::internal::GetCapturedStderr();
}

// The record is taken as soon as the byte is dropped, although "bc" in front of it is still unread.
TEST(AdjustWhitespace, invalid_byte_places_the_next_record_too_early) {
    testing::internal::CaptureStderr();
    const Speechtext result = text_with(
                                  "a\xFF"
                                  "bcd",
                                  {{4, &m}})
                                  .adjust_whitespace();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(result.as_string(), "abcd");
    EXPECT_EQ(records_of(result), "1:<m>");
}

TEST(AdjustWhitespace, invalid_byte_leaves_the_state_as_it_was) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(adjusted("a\xFF b"), "a b");
    EXPECT_EQ(adjusted("a \xFF b"), "a b");
    testing::internal::GetCapturedStderr();
}

TEST(AdjustWhitespace, record_inside_a_character_moves_behind_it) {
    EXPECT_EQ(records_of(text_with("\xC3\xA9x", {{1, &m}}).adjust_whitespace()), "2:<m>");
}

// --- breaks ---

std::string breaks_of(Speechtext text) {
    text.adjust_breaks();
    return records_of(text);
}

TEST(AdjustBreaks, empty_text_stays) { EXPECT_EQ(breaks_of(Speechtext()), ""); }

TEST(AdjustBreaks, moves_behind_punctuation_that_follows) {
    EXPECT_EQ(breaks_of(text_with("a. x", {{1, &stop}})), "2:|1ms|");
    EXPECT_EQ(breaks_of(text_with("a , x", {{1, &stop}})), "3:|1ms|");
    EXPECT_EQ(breaks_of(text_with("a . , ! x", {{1, &stop}})), "7:|1ms|");
}

TEST(AdjustBreaks, stays_without_punctuation) {
    EXPECT_EQ(breaks_of(text_with("a  x.", {{1, &stop}})), "1:|1ms|");
    EXPECT_EQ(breaks_of(text_with("a", {{1, &stop}})), "1:|1ms|");
}

TEST(AdjustBreaks, opening_brackets_stop_it_and_closing_ones_do_not) {
    EXPECT_EQ(breaks_of(text_with("a (x", {{1, &stop}})), "1:|1ms|");
    EXPECT_EQ(breaks_of(text_with("a.(!", {{1, &stop}})), "2:|1ms|");
    EXPECT_EQ(breaks_of(text_with("a [.", {{1, &stop}})), "1:|1ms|");
    EXPECT_EQ(breaks_of(text_with("a) x", {{1, &stop}})), "2:|1ms|");
}

TEST(AdjustBreaks, characters_of_several_bytes) {
    EXPECT_EQ(breaks_of(text_with("a\xE3\x80\x82x", {{1, &stop}})), "4:|1ms|");
    // A no-break space is punctuation as well.
    EXPECT_EQ(breaks_of(text_with("a\xC2\xA0x", {{1, &stop}})), "3:|1ms|");
}

TEST(AdjustBreaks, next_record_ends_the_way) {
    EXPECT_EQ(breaks_of(text_with("a..x", {{1, &stop}, {2, &m}})), "2:|1ms| 2:<m>");
    EXPECT_EQ(breaks_of(text_with("a\xE3\x80\x82x", {{1, &stop}, {2, &m}})), "1:|1ms| 2:<m>");
}

TEST(AdjustBreaks, invalid_byte_ends_the_way) { EXPECT_EQ(breaks_of(text_with("a.\xFF.", {{1, &stop}})), "2:|1ms|"); }

TEST(AdjustBreaks, other_records_stay) { EXPECT_EQ(breaks_of(text_with("a.x", {{1, &m}, {1, &a}})), "1:<m> 1:A"); }

// A break moved to the place of an equal one is lost in a copy, also in the one that is written as SSML.
TEST(AdjustBreaks, copy_of_an_adjusted_text_may_lose_a_break) {
    Speechtext text = text_with("a.x", {{0, &a}, {1, &stop}, {2, &stop}});
    text.adjust_breaks();
    EXPECT_EQ(records_of(text), "0:A 2:|1ms| 2:|1ms|");
    EXPECT_EQ(records_of(Speechtext(text)), "0:A 2:|1ms|");
    EXPECT_EQ(records_of(Speechtext(std::move(text))), "0:A 2:|1ms|");
}

}  // namespace
