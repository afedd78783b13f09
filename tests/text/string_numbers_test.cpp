// Numbers out of text.
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "text/qm_stringutils.h"

namespace {

constexpr int int_max = std::numeric_limits<int>::max();
constexpr int int_min = std::numeric_limits<int>::min();

TEST(Str2int, number_at_the_front) {
    EXPECT_EQ(str2int("12abc"), 12);
    EXPECT_EQ(str2int("007"), 7);
    EXPECT_EQ(str2int("12 34"), 12);
    EXPECT_EQ(str2int(std::string("1\0"
                                  "2",
                                  3)),
              1);
}

TEST(Str2int, no_number_is_zero) {
    for (const char* text : {"abc", "", " ", "-", "+", "+-5", "- 5", "x12"}) EXPECT_EQ(str2int(text), 0) << text;
}

TEST(Str2int, blanks_and_sign) {
    EXPECT_EQ(str2int(" \t\n\v\f\r-42"), -42);
    EXPECT_EQ(str2int("+42"), 42);
    EXPECT_EQ(str2int("\xA0"
                      "42"),
              0);
}

TEST(Str2int, ends_of_the_range) {
    EXPECT_EQ(str2int("2147483647"), int_max);
    EXPECT_EQ(str2int("-2147483648"), int_min);
}

TEST(Str2int, beyond_the_range_is_its_end) {
    EXPECT_EQ(str2int("2147483648"), int_max);
    EXPECT_EQ(str2int("-2147483649"), int_min);
    EXPECT_EQ(str2int(std::string(1000, '9')), int_max);
    EXPECT_EQ(str2int("-" + std::string(1000, '9')), int_min);
}

TEST(Str2int, pointer_form) {
    const std::string text = "12";
    EXPECT_EQ(str2int(&text), 12);
    EXPECT_EQ(str2int(static_cast<const std::string*>(nullptr)), 0);
    EXPECT_EQ(str2int(nullptr), 0);
}

TEST(Str2int, characters_end_at_their_nul) {
    const char nul_inside[] = {'1', '2', '\0', '3', '\0'};
    EXPECT_EQ(str2int(nul_inside), 12);
    char own[] = "-7 apples";
    EXPECT_EQ(str2int(own), -7);
    EXPECT_EQ(str2int(static_cast<const char*>(nullptr)), 0);
}

TEST(Str2float, point_and_comma) {
    EXPECT_EQ(str2float("3.5"), 3.5);
    EXPECT_EQ(str2float("3,5"), 3.5);
    EXPECT_EQ(str2float("1,5,7"), 1.5);
    EXPECT_EQ(str2float("1.5,7"), 1.5);
    EXPECT_EQ(str2float(",5"), 0.5);
}

TEST(Str2float, forms_of_numbers) {
    EXPECT_EQ(str2float("12"), 12);
    EXPECT_EQ(str2float("-12.25xyz"), -12.25);
    EXPECT_EQ(str2float("  +.5"), 0.5);
    EXPECT_EQ(str2float("5."), 5);
    EXPECT_EQ(str2float("1e3"), 1000);
    EXPECT_EQ(str2float("25E-2"), 0.25);
    EXPECT_EQ(str2float("1e"), 1);
    EXPECT_EQ(str2float("1e+"), 1);
    EXPECT_EQ(str2float(std::string("1\0"
                                    "2",
                                    3)),
              1);
}

TEST(Str2float, hexadecimal) {
    EXPECT_EQ(str2float("0x1.8p1"), 3);
    EXPECT_EQ(str2float("-0XfF"), -255);
    EXPECT_EQ(str2float("0x,8"), 0.5);
    EXPECT_EQ(str2float("0x10p+-3"), 16);
}

TEST(Str2float, zero_of_an_unfinished_hexadecimal) {
    EXPECT_EQ(str2float("0x"), 0);
    EXPECT_EQ(str2float("0x.p1"), 0);
    EXPECT_EQ(str2float("0xg"), 0);
}

TEST(Str2float, no_number_is_positive_zero) {
    for (const char* text : {"", " ", "abc", "-", "+-5", "--5", "- 5", ".", "-.", "e5"}) {
        EXPECT_EQ(str2float(text), 0) << text;
        EXPECT_FALSE(std::signbit(str2float(text))) << text;
    }
}

TEST(Str2float, negative_zero) { EXPECT_TRUE(std::signbit(str2float("-0"))); }

TEST(Str2float, infinity_and_nan) {
    EXPECT_EQ(str2float("inf"), HUGE_VAL);
    EXPECT_EQ(str2float("-Infinity!"), -HUGE_VAL);
    EXPECT_TRUE(std::isnan(str2float("nan")));
}

TEST(Str2float, too_large_is_infinity) {
    EXPECT_EQ(str2float("1e999"), HUGE_VAL);
    EXPECT_EQ(str2float("-1e999"), -HUGE_VAL);
    EXPECT_EQ(str2float("1e99999999999999999999"), HUGE_VAL);
    EXPECT_EQ(str2float(std::string(400, '9')), HUGE_VAL);
    EXPECT_EQ(str2float("0x1p2000"), HUGE_VAL);
    EXPECT_EQ(str2float(std::string(400, '9') + "e 7"), HUGE_VAL);
}

TEST(Str2float, too_small_is_zero) {
    EXPECT_EQ(str2float("1e-999"), 0);
    EXPECT_TRUE(std::signbit(str2float("-1e-999")));
    EXPECT_EQ(str2float("1e-99999999999999999999"), 0);
    EXPECT_EQ(str2float("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(str2float("0x1p-2000"), 0);
    EXPECT_EQ(str2float("0." + std::string(400, '0') + "1e 999"), 0);
}

TEST(Str2float, long_digits_with_exponent_come_back_into_range) {
    EXPECT_EQ(str2float("1" + std::string(400, '0') + "e-400"), 1);
    EXPECT_EQ(str2float("0." + std::string(400, '0') + "1e401"), 1);
}

TEST(Str2float, pointer_form) {
    const std::string text = "3,5";
    EXPECT_EQ(str2float(&text), 3.5);
    EXPECT_EQ(str2float(static_cast<const std::string*>(nullptr)), 0);
    EXPECT_EQ(str2float(nullptr), 0);
}

TEST(Str2float, process_locale_does_not_matter) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    const bool with_comma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    const double point = str2float("3.5");
    const double comma = str2float("3,5");
    std::setlocale(LC_NUMERIC, before.c_str());
    if (!with_comma) GTEST_SKIP() << "no locale with a decimal comma is installed";
    EXPECT_EQ(point, 3.5);
    EXPECT_EQ(comma, 3.5);
}

#ifndef _WIN32
// The C library's own function, which reads the same here as the test runs in the C locale.
TEST(Str2float, like_atof_for_random_text) {
    const std::string alphabet = "0123456789.e+-xXpP 0099afin";
    std::mt19937 random(3);
    for (int i = 0; i < 200000; ++i) {
        std::string text;
        for (unsigned int length = random() % 14; length != 0; --length) text += alphabet[random() % alphabet.size()];
        const double found = str2float(text);
        const double expected = std::atof(text.c_str());
        ASSERT_TRUE(found == expected || (std::isnan(found) && std::isnan(expected))) << text;
        ASSERT_EQ(std::signbit(found), std::signbit(expected)) << text;
    }
}
#endif

}  // namespace
