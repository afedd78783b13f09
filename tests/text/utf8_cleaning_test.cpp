// Removal of bad sequences and decomposition of Hangul.
#include <gtest/gtest.h>

#include <string>

#include "text/reference.h"
#include "text/textencoding.h"
#include "text/utf8_inputs.h"

namespace {

struct cleaned {
    std::string text;
    std::size_t removed;
    bool operator==(const cleaned&) const = default;
};

cleaned clean(const std::string& text) {
    cleaned result{"", 99};
    result.text = clean_utf8(text, &result.removed);
    return result;
}

TEST(CleanUtf8, good_text_stays) {
    EXPECT_EQ(clean("plain"), (cleaned{"plain", 0}));
    EXPECT_EQ(clean("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), (cleaned{"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", 0}));
    EXPECT_EQ(clean(""), (cleaned{"", 0}));
}

TEST(CleanUtf8, bad_byte_goes) {
    EXPECT_EQ(clean("A\xFF"
                    "B"),
              (cleaned{"AB", 1}));
}

TEST(CleanUtf8, good_character_behind_bad_lead_stays) {
    EXPECT_EQ(clean("\xC3"
                    "A"),
              (cleaned{"A", 1}));
    EXPECT_EQ(clean("\xE2\xC3\xA9"), (cleaned{"\xC3\xA9", 1}));
}

TEST(CleanUtf8, cut_sequence_goes_byte_by_byte) {
    EXPECT_EQ(clean("A\xF0\x9F\x98"), (cleaned{"A", 3}));
    EXPECT_EQ(clean("\xE2\x82"
                    "A"),
              (cleaned{"A", 2}));
}

TEST(CleanUtf8, ffff_goes_in_three_steps) {
    EXPECT_EQ(clean("A\xEF\xBF\xBF"
                    "B"),
              (cleaned{"AB", 3}));
    EXPECT_EQ(clean("\xF0\x9F\xBF\xBF"), (cleaned{"", 4}));  // U+1FFFF, whose low 16 bits are FFFF
}

TEST(CleanUtf8, overlong_surrogate_and_nul_stay) {
    const std::string text("\xC0\x80\xED\xA0\x80\0", 6);
    EXPECT_EQ(clean(text), (cleaned{text, 0}));
}

TEST(CleanUtf8, null_pointer_stores_nothing) {
    EXPECT_EQ(clean_utf8("A\xFF"
                         "B",
                         nullptr),
              "AB");
}

TEST(CleanUtf8, bad_byte_at_every_place_of_long_text) {
    for (std::size_t place = 0; place <= 200; ++place) {
        const std::string front(place, 'x');
        const std::string back(200 - place, 'y');
        ASSERT_EQ(clean(front + "\x80" + back), (cleaned{front + back, 1}));
    }
}

TEST(CleanUtf8, all_families_like_reference) {
    inputs::all_families([](const std::string& text) {
        cleaned expected{"", 0};
        expected.text = reference::clean(text, &expected.removed);
        ASSERT_TRUE(clean(text) == expected) << testing::PrintToString(text);
    });
}

TEST(DecomposeUtf8, syllables_become_jamo) {
    EXPECT_EQ(decompose_utf8("\xEA\xB0\x80"), "\xE1\x84\x80\xE1\x85\xA1");              // AC00: 1100 1161
    EXPECT_EQ(decompose_utf8("\xEA\xB0\x81"), "\xE1\x84\x80\xE1\x85\xA1\xE1\x86\xA8");  // AC01: 1100 1161 11A8
    EXPECT_EQ(decompose_utf8("\xED\x9E\xA3"), "\xE1\x84\x92\xE1\x85\xB5\xE1\x87\x82");  // D7A3: 1112 1175 11C2
}

TEST(DecomposeUtf8, beside_the_syllables_nothing_changes) {
    EXPECT_EQ(decompose_utf8("\xEA\xAF\xBF\xED\x9E\xA4"), "\xEA\xAF\xBF\xED\x9E\xA4");  // ABFF, D7A4
    EXPECT_EQ(decompose_utf8("a\xC3\xA9\xF0\x9F\x98\x80"), "a\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(decompose_utf8(""), "");
}

TEST(DecomposeUtf8, between_other_characters) {
    EXPECT_EQ(decompose_utf8("a\xEA\xB0\x80z"), "a\xE1\x84\x80\xE1\x85\xA1z");
}

TEST(DecomposeUtf8, four_bytes_with_low_bits_of_a_syllable) {
    EXPECT_EQ(decompose_utf8("\xF0\x9A\xB0\x80"), "\xE1\x84\x80\xE1\x85\xA1");  // U+1AC00
}

TEST(DecomposeUtf8, bad_sequence_takes_the_next_byte_with_it) {
    EXPECT_EQ(decompose_utf8("\xC3"
                             "A"),
              "");
    EXPECT_EQ(decompose_utf8("\xC3"
                             "AB"),
              "");
    EXPECT_EQ(decompose_utf8("\xC3"
                             "ABC"),
              "C");
    EXPECT_EQ(decompose_utf8("x\xFFyz"), "xz");
    EXPECT_EQ(decompose_utf8("\xE2\x82"), "");
    EXPECT_EQ(decompose_utf8("x\xFF"), "x");
}

TEST(DecomposeUtf8, ffff_is_bad) { EXPECT_EQ(decompose_utf8("a\xEF\xBF\xBFyz"), "az"); }

TEST(DecomposeUtf8, all_families_like_reference) {
    inputs::all_families([](const std::string& text) {
        ASSERT_EQ(decompose_utf8(text), reference::decompose(text)) << testing::PrintToString(text);
    });
}

}  // namespace
