// The wide string type, through the operations that a string class builds on its traits.
#include <gtest/gtest.h>

#include "text/wide_string.h"

namespace {

const wide_string abc = {'a', 'b', 'c'};

TEST(WideString, size_and_units) {
    EXPECT_EQ(abc.size(), 3u);
    EXPECT_EQ(abc[1], 'b');
}

TEST(WideString, ends_in_a_nul_unit) {
    EXPECT_EQ(abc[3], 0);
    EXPECT_EQ(wide_string()[0], 0);
}

TEST(WideString, from_terminated_units) {
    const unsigned short units[] = {0x3B1, 0x3B2, 0, 0x3B3};
    EXPECT_EQ(wide_string(units), (wide_string{0x3B1, 0x3B2}));
}

TEST(WideString, ordered_by_unit_value) {
    EXPECT_LT((wide_string{0x7FFF}), (wide_string{0x8000}));
    EXPECT_LT((wide_string{'a'}), abc);
    EXPECT_NE(abc, (wide_string{'a', 'b', 'd'}));
}

TEST(WideString, find) {
    EXPECT_EQ(abc.find(static_cast<unsigned short>('c')), 2u);
    EXPECT_EQ(abc.find(static_cast<unsigned short>('x')), wide_string::npos);
    EXPECT_EQ(abc.find(wide_string{'b', 'c'}), 1u);
}

TEST(WideString, insert_and_erase_move_both_ways) {
    wide_string text = abc;
    text.insert(0, 1, 'x');
    EXPECT_EQ(text, (wide_string{'x', 'a', 'b', 'c'}));
    text.erase(1, 2);
    EXPECT_EQ(text, (wide_string{'x', 'c'}));
}

TEST(WideString, grows_and_fills) {
    wide_string text(3, 0xFFFF);
    text += abc;
    text.append(100, 'z');
    EXPECT_EQ(text.size(), 106u);
    EXPECT_EQ(text[2], 0xFFFF);
    EXPECT_EQ(text[5], 'c');
    EXPECT_EQ(text[105], 'z');
}

TEST(WideString, eof_is_no_unit) {
    EXPECT_NE(wide_char_traits::to_int_type(0xFFFF), wide_char_traits::eof());
    EXPECT_EQ(wide_char_traits::not_eof(wide_char_traits::eof()), 0u);
    EXPECT_EQ(wide_char_traits::not_eof(0xFFFF), 0xFFFFu);
}

}  // namespace
