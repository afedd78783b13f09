// The character classes over all 65,536 units, against the ranges written down as data.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text/textencoding.h"

namespace {

struct range {
    unsigned int first;
    unsigned int last;
    unsigned int step = 1;
};
using ranges = std::vector<range>;

std::vector<bool> members(const ranges& in, const std::vector<unsigned int>& except = {}) {
    std::vector<bool> set(0x10000, false);
    for (const range& r : in) {
        for (unsigned int unit = r.first; unit <= r.last; unit += r.step) set[unit] = true;
    }
    for (const unsigned int unit : except) set[unit] = false;
    return set;
}

void expect_class(bool (*test)(unsigned short), const std::vector<bool>& wanted) {
    for (unsigned int unit = 0; unit < 0x10000; ++unit) {
        ASSERT_EQ(test(static_cast<unsigned short>(unit)), wanted[unit]) << "unit " << std::hex << unit;
    }
}

const ranges digits = {{0x30, 0x39}};
const ranges letters = {{0x41, 0x5A},     {0x61, 0x7A},     {0xC0, 0x24F},    {0x386, 0x3CE},
                        {0x400, 0x45F},   {0x621, 0x659},   {0x66E, 0x6D3},   {0x1100, 0x11FF},
                        {0x16A0, 0x16EA}, {0x3040, 0x30FF}, {0xAC00, 0xD7A3}, {0xF8D0, 0xF8E9}};
const std::vector<unsigned int> times_and_divide = {0xD7, 0xF7};

ranges operator+(ranges a, const ranges& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST(CharacterClass, num) { expect_class(is_num_wchar, members(digits)); }

TEST(CharacterClass, alpha) { expect_class(is_alpha_wchar, members(letters, times_and_divide)); }

TEST(CharacterClass, alnum) { expect_class(is_alnum_wchar, members(letters + digits, times_and_divide)); }

TEST(CharacterClass, word) {
    const ranges joiners = {{0x27, 0x27}, {0x2D, 0x2D}, {0x3A, 0x3A}, {0x5F, 0x5F}};
    expect_class(is_word_wchar, members(letters + digits + joiners, times_and_divide));
}

TEST(CharacterClass, punct) {
    expect_class(is_punct_wchar, members({{0x21, 0x22},
                                          {0x27, 0x29},
                                          {0x2C, 0x2F},
                                          {0x3A, 0x3B},
                                          {0x3F, 0x3F},
                                          {0xA0, 0xA1},
                                          {0xAD, 0xAD},
                                          {0xBF, 0xBF},
                                          {0x60C, 0x60C},
                                          {0x61F, 0x61F},
                                          {0x6D4, 0x6D4},
                                          {0x3001, 0x3002},
                                          {0xF8FD, 0xF8FE},
                                          {0xFF0C, 0xFF0C}}));
}

TEST(CharacterClass, whitespace) {
    expect_class(is_whitespace_wchar, members({{0x00, 0x00},
                                               {0x09, 0x0D},
                                               {0x20, 0x20},
                                               {0xA0, 0xA0},
                                               {0x16EB, 0x16ED},
                                               {0x2000, 0x2008},
                                               {0x200A, 0x200B},
                                               {0x205F, 0x2060},
                                               {0x3000, 0x3000},
                                               {0xFEFF, 0xFEFF}}));
}

TEST(CharacterClass, uppercase) {
    expect_class(is_uppercase_wchar, members({{0x41, 0x5A},
                                              {0xC0, 0xDE},
                                              {0x100, 0x136, 2},
                                              {0x139, 0x147, 2},
                                              {0x14A, 0x176, 2},
                                              {0x178, 0x179},
                                              {0x17B, 0x17D, 2},
                                              {0x386, 0x386},
                                              {0x388, 0x3AB},
                                              {0x400, 0x42F}},
                                             {0xD7, 0x390}));
}

TEST(CharacterClass, lowercase) {
    expect_class(is_lowercase_wchar, members({{0x61, 0x7A},
                                              {0xDF, 0xFF},
                                              {0x101, 0x137, 2},
                                              {0x138, 0x148, 2},
                                              {0x149, 0x177, 2},
                                              {0x17A, 0x17E, 2},
                                              {0x17F, 0x17F},
                                              {0x3AC, 0x3CE},
                                              {0x430, 0x45F}},
                                             {0xF7, 0x3B0}));
}

TEST(CharacterClass, nul_is_whitespace_u2009_is_not) {
    EXPECT_TRUE(is_whitespace_wchar(0));
    EXPECT_FALSE(is_whitespace_wchar(0x2009));
    EXPECT_TRUE(is_whitespace_wchar(0x2008));
    EXPECT_TRUE(is_whitespace_wchar(0x200A));
}

TEST(CharacterClass, no_break_space_is_whitespace_and_punctuation) {
    EXPECT_TRUE(is_whitespace_wchar(0xA0));
    EXPECT_TRUE(is_punct_wchar(0xA0));
    EXPECT_TRUE(is_punct_wchar(0xAD));
}

TEST(CharacterClass, word_joiners_are_punctuation_but_underscore_is_not) {
    for (const char c : std::string("'-:")) {
        EXPECT_TRUE(is_word_wchar(static_cast<unsigned short>(c)) && is_punct_wchar(static_cast<unsigned short>(c)));
    }
    EXPECT_TRUE(is_word_wchar('_'));
    EXPECT_FALSE(is_punct_wchar('_'));
}

TEST(CharacterClass, signs_are_no_punctuation) {
    for (const char c : std::string("#$%&*+<=>@[\\]^`{|}~")) {
        EXPECT_FALSE(is_punct_wchar(static_cast<unsigned short>(c))) << c;
    }
}

TEST(CharacterClass, arabic_digits_are_in_no_class) {
    for (unsigned short unit = 0x660; unit <= 0x669; ++unit) {
        EXPECT_FALSE(is_word_wchar(unit) || is_punct_wchar(unit) || is_whitespace_wchar(unit));
        EXPECT_FALSE(is_uppercase_wchar(unit) || is_lowercase_wchar(unit));
    }
}

TEST(CharacterClass, unassigned_capital_sigma_place_is_uppercase) { EXPECT_TRUE(is_uppercase_wchar(0x3A2)); }

// A row of a mapping's table: `by` is added to the units of the range.
struct shift {
    range units;
    int by;
};

std::vector<unsigned int> mapping(const std::vector<shift>& rows, const std::vector<unsigned int>& except) {
    std::vector<unsigned int> map(0x10000);
    for (unsigned int unit = 0; unit < 0x10000; ++unit) map[unit] = unit;
    for (const shift& row : rows) {
        for (unsigned int unit = row.units.first; unit <= row.units.last; unit += row.units.step) {
            map[unit] = unit + static_cast<unsigned int>(row.by);
        }
    }
    for (const unsigned int unit : except) map[unit] = unit;
    return map;
}

void expect_mapping(unsigned short (*f)(unsigned short), const std::vector<unsigned int>& wanted) {
    for (unsigned int unit = 0; unit < 0x10000; ++unit) {
        ASSERT_EQ(f(static_cast<unsigned short>(unit)), wanted[unit]) << "unit " << std::hex << unit;
    }
}

TEST(CaseMapping, to_uppercase) {
    // 0x3C2 lies in the range of the row before it here; the later row decides.
    expect_mapping(to_uppercase_wchar, mapping({{{0x61, 0x7A}, -0x20},
                                                {{0xE0, 0xFE}, -0x20},
                                                {{0xFF, 0xFF}, 0x178 - 0xFF},
                                                {{0x101, 0x137, 2}, -1},
                                                {{0x13A, 0x148, 2}, -1},
                                                {{0x14B, 0x177, 2}, -1},
                                                {{0x17A, 0x17E, 2}, -1},
                                                {{0x3B1, 0x3CB}, -0x20},
                                                {{0x3C2, 0x3C2}, 0x3A3 - 0x3C2},
                                                {{0x3AC, 0x3AC}, 0x386 - 0x3AC},
                                                {{0x3AD, 0x3AF}, -37},
                                                {{0x3CC, 0x3CC}, 0x38C - 0x3CC},
                                                {{0x3CD, 0x3CE}, -63},
                                                {{0x430, 0x44F}, -0x20},
                                                {{0x450, 0x45F}, -80}},
                                               {0xF7}));
}

TEST(CaseMapping, to_lowercase) {
    expect_mapping(to_lowercase_wchar, mapping({{{0x41, 0x5A}, 0x20},
                                                {{0xC0, 0xDE}, 0x20},
                                                {{0x100, 0x136, 2}, 1},
                                                {{0x139, 0x147, 2}, 1},
                                                {{0x14A, 0x176, 2}, 1},
                                                {{0x178, 0x178}, 0xFF - 0x178},
                                                {{0x179, 0x17D, 2}, 1},
                                                {{0x391, 0x3AB}, 0x20},
                                                {{0x386, 0x386}, 0x3AC - 0x386},
                                                {{0x388, 0x38A}, 37},
                                                {{0x38C, 0x38C}, 0x3CC - 0x38C},
                                                {{0x38E, 0x38F}, 63},
                                                {{0x410, 0x42F}, 0x20},
                                                {{0x400, 0x40F}, 80}},
                                               {0xD7}));
}

TEST(CaseMapping, sharp_s_and_dotless_i) {
    EXPECT_EQ(to_uppercase_wchar(0xDF), 0xDF);
    EXPECT_EQ(to_uppercase_wchar(0x131), 0x130);
    EXPECT_EQ(to_lowercase_wchar(0x130), 0x131);
}

TEST(CaseMapping, lowercase_without_partner) {
    EXPECT_TRUE(is_lowercase_wchar(0x138) && is_lowercase_wchar(0x149));
    EXPECT_EQ(to_uppercase_wchar(0x138), 0x138);
    EXPECT_EQ(to_lowercase_wchar(0x149), 0x149);
}

TEST(CaseMapping, sigma_is_no_inverse) {
    EXPECT_EQ(to_lowercase_wchar(0x3A2), 0x3C2);
    EXPECT_EQ(to_uppercase_wchar(0x3C2), 0x3A3);
    EXPECT_EQ(to_uppercase_wchar(0x3C3), 0x3A3);
    EXPECT_EQ(to_lowercase_wchar(0x3A3), 0x3C3);
}

}  // namespace
