// _wtol. The same tests run against the stand-in and against the system's C run-time.

#include <gtest/gtest.h>

#include "platform/win32.h"

TEST(WideToLong, digits_up_to_the_first_that_is_none) {
    EXPECT_EQ(_wtol(NELVA_WIDE("42")), 42);
    EXPECT_EQ(_wtol(NELVA_WIDE("42abc")), 42);
    EXPECT_EQ(_wtol(NELVA_WIDE("000012")), 12);
    EXPECT_EQ(_wtol(NELVA_WIDE("1.9")), 1);
    EXPECT_EQ(_wtol(NELVA_WIDE("0x10")), 0);
}

TEST(WideToLong, sign_directly_in_front) {
    EXPECT_EQ(_wtol(NELVA_WIDE("-7")), -7);
    EXPECT_EQ(_wtol(NELVA_WIDE("+7")), 7);
    EXPECT_EQ(_wtol(NELVA_WIDE("- 7")), 0);
    EXPECT_EQ(_wtol(NELVA_WIDE("+-7")), 0);
}

TEST(WideToLong, white_space_in_front) {
    EXPECT_EQ(_wtol(NELVA_WIDE(" \t\n\v\f\r-7")), -7);
    EXPECT_EQ(_wtol(NELVA_WIDE("\u00A0\u2003\u2028\u3000"
                               "5")),
              5);
    EXPECT_EQ(_wtol(NELVA_WIDE("\u200B"
                               "5")),
              0);
}

TEST(WideToLong, nothing_numeric_is_zero) {
    EXPECT_EQ(_wtol(NELVA_WIDE("")), 0);
    EXPECT_EQ(_wtol(NELVA_WIDE("chapter 1")), 0);
    EXPECT_EQ(_wtol(NELVA_WIDE("-")), 0);
}

TEST(WideToLong, beyond_32_bits_is_the_nearest_that_fits) {
    EXPECT_EQ(_wtol(NELVA_WIDE("2147483647")), 2147483647);
    EXPECT_EQ(_wtol(NELVA_WIDE("2147483648")), 2147483647);
    EXPECT_EQ(_wtol(NELVA_WIDE("-2147483648")), -2147483647 - 1);
    EXPECT_EQ(_wtol(NELVA_WIDE("-2147483649")), -2147483647 - 1);
    EXPECT_EQ(_wtol(NELVA_WIDE("99999999999999999999999999")), 2147483647);
    EXPECT_EQ(_wtol(NELVA_WIDE("-99999999999999999999999999")), -2147483647 - 1);
}

TEST(WideToLong, decimal_digits_of_other_scripts_count) {
    EXPECT_EQ(_wtol(NELVA_WIDE("\u0661\u0662")), 12);
    EXPECT_EQ(_wtol(NELVA_WIDE("\uFF15"
                               "6")),
              56);
    EXPECT_EQ(_wtol(NELVA_WIDE("\u0967\u0E53\u1810")), 130);
}

TEST(WideToLong, characters_around_a_script_s_digits_do_not_count) {
    EXPECT_EQ(_wtol(NELVA_WIDE("1\u065F"
                               "2")),
              1);
    EXPECT_EQ(_wtol(NELVA_WIDE("1\u066A"
                               "2")),
              1);
    EXPECT_EQ(_wtol(NELVA_WIDE("1:2")), 1);
    EXPECT_EQ(_wtol(NELVA_WIDE("1/2")), 1);
}
