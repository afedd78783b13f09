// Numbers are those of printf in the C locale, in every locale.
#include "speechtext/ssml_number.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>

namespace {

std::string printed(double value, int precision, NumberSign sign) {
    // The library that mingw-w64 brings drops the sign of what is not a number; it is shown as everywhere else.
    if (std::isnan(value)) return std::signbit(value) ? "-nan" : sign == NumberSign::always ? "+nan" : "nan";
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, sign == NumberSign::always ? "%+.*f" : "%.*f", precision, value);
    return buffer;
}

void expect_as_printf(double value) {
    for (const int precision : {0, 1, 2}) {
        for (const NumberSign sign : {NumberSign::when_negative, NumberSign::always}) {
            ASSERT_EQ(fixed_number(value, precision, sign), printed(value, precision, sign)) << std::hexfloat << value;
        }
    }
}

TEST(FixedNumber, examples) {
    EXPECT_EQ(fixed_number(1.4F, 2, NumberSign::when_negative), "1.40");
    EXPECT_EQ(fixed_number(100, 0, NumberSign::always), "+100");
    EXPECT_EQ(fixed_number(-6.02, 1, NumberSign::always), "-6.0");
    EXPECT_EQ(fixed_number(-0.2, 0, NumberSign::always), "-0");
}

TEST(FixedNumber, exact_halves_round_to_even) {
    EXPECT_EQ(fixed_number(0.5, 0, NumberSign::always), "+0");
    EXPECT_EQ(fixed_number(1.5, 0, NumberSign::always), "+2");
    EXPECT_EQ(fixed_number(2.5, 0, NumberSign::always), "+2");
    EXPECT_EQ(fixed_number(0.125, 2, NumberSign::when_negative), "0.12");
}

TEST(FixedNumber, infinities_and_not_a_number) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(fixed_number(infinity, 0, NumberSign::always), "+inf");
    EXPECT_EQ(fixed_number(-infinity, 0, NumberSign::always), "-inf");
    EXPECT_EQ(fixed_number(nan, 2, NumberSign::when_negative), "nan");
    EXPECT_EQ(fixed_number(-nan, 2, NumberSign::when_negative), "-nan");
    EXPECT_EQ(fixed_number(nan, 1, NumberSign::always), "+nan");
}

TEST(FixedNumber, is_as_printf_for_all_hundredths) {
    for (int i = -2000; i <= 2000; ++i) expect_as_printf(static_cast<double>(static_cast<float>(i) / 100.0F));
    for (int i = -2000; i <= 2000; ++i) expect_as_printf(i / 8.0);
}

TEST(FixedNumber, is_as_printf_for_random_floats_and_doubles) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 50000; ++i) {
        const std::uint64_t bits = random();
        expect_as_printf(static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits))));
        expect_as_printf(std::bit_cast<double>(bits));
    }
}

TEST(FixedNumber, keeps_the_point_in_a_locale_with_a_comma) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    bool found = false;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de-DE", "German"}) {
        found = found || std::setlocale(LC_ALL, name);
    }
    const std::string number = fixed_number(1.4, 2, NumberSign::when_negative);
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(number, "1.40");
    if (!found) GTEST_SKIP() << "no locale with a decimal comma here";
}

}  // namespace
