// Viseme labels and their numbers.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "engine/nelva_sapi.h"

namespace {

TEST(VisemeNumber, each_label_has_its_number) {
    const std::pair<const char*, int> rows[] = {
        {"@", 8},  {"a", 1},  {"B", 18}, {"e", 4},  {"E", 5},  {"f", 18}, {"J", 16}, {"i", 6},  {"O", 3},
        {"k", 20}, {"S", 16}, {"o", 3},  {"T", 17}, {"p", 21}, {"r", 13}, {"s", 15}, {"t", 19}, {"u", 7},
    };
    for (const auto& [label, number] : rows) EXPECT_EQ(NELVA_SAPI_viseme_number(label), number) << label;
}

TEST(VisemeNumber, silence_is_zero) { EXPECT_EQ(NELVA_SAPI_viseme_number("sil"), 0); }

TEST(VisemeNumber, null_label_has_none) { EXPECT_EQ(NELVA_SAPI_viseme_number(nullptr), -1); }

TEST(VisemeNumber, empty_label_has_none) { EXPECT_EQ(NELVA_SAPI_viseme_number(""), -1); }

TEST(VisemeNumber, labels_of_more_bytes_have_none) {
    for (const char* label : {"aa", "si", "sill", "Sil", "SIL", "@ "}) EXPECT_EQ(NELVA_SAPI_viseme_number(label), -1);
}

TEST(VisemeNumber, all_other_single_bytes_have_none) {
    const std::string known = "@aBeEfJiOkSoTprstu";
    for (int c = 1; c < 256; ++c) {
        const char label[] = {static_cast<char>(c), '\0'};
        if (known.find(label[0]) != std::string::npos) continue;
        EXPECT_EQ(NELVA_SAPI_viseme_number(label), -1) << c;
    }
}

TEST(VisemeNumber, six_numbers_are_never_given) {
    const std::set<int> never = {2, 9, 10, 11, 12, 14};
    for (int c = 1; c < 256; ++c) {
        const char label[] = {static_cast<char>(c), '\0'};
        EXPECT_EQ(never.count(NELVA_SAPI_viseme_number(label)), 0u) << c;
    }
}

}  // namespace
