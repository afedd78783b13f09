// IPA as a language's phonemes spell it.
#include "tts_engine/ipa.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// A language of few phonemes: long i only, an affricate, tones, a variety of a.
tts::IpaTable few() {
    tts::IpaTable table;
    table.add("h", "h");
    table.add("l", "l");
    table.add("t", "t");
    table.add("ʃ", "S");
    table.add("tʃ", "tS");
    table.add("ə", "@2");
    table.add("ə", "@");
    table.add("iː", "i:");
    table.add("ɡ", "g");
    table.add("n", "n");
    table.add("j", "j");
    table.add("a\u0308", "a");
    table.add("35", "35");
    return table;
}

std::string spelled(const std::string& ipa) { return tts::ipa_to_espeak(ipa, few()); }

}  // namespace

TEST(Ipa, phonemes_stress_and_words) { EXPECT_EQ(spelled("həˈliː ˌtə"), "h|@|'|l|i:| ,|t|@|"); }

TEST(Ipa, shortest_mnemonic_of_the_same_symbols_counts) { EXPECT_EQ(spelled("ə"), "@|"); }

TEST(Ipa, longest_phoneme_counts_but_not_across_a_syllables_border) {
    EXPECT_EQ(spelled("tʃ"), "tS|");
    EXPECT_EQ(spelled("t.ʃ"), "t|S|");
}

TEST(Ipa, ties_ligatures_and_keyboard_letters) {
    EXPECT_EQ(spelled("t͡ʃ"), "tS|");
    EXPECT_EQ(spelled("ʧ"), "tS|");
    EXPECT_EQ(spelled("'gi:"), "'|g|i:|");
}

TEST(Ipa, variety_of_a_letter_stands_for_it) {
    EXPECT_EQ(spelled("i"), "i:|");
    EXPECT_EQ(spelled("a"), "a|");
}

TEST(Ipa, nearest_phonemes_stand_for_what_is_missing) {
    EXPECT_EQ(spelled("ɲ"), "n|j|");  // two for one
    EXPECT_EQ(spelled("ɫ"), "l|");
    EXPECT_EQ(spelled("ɔ"), "");  // o, ɒ and ɑ are missing too
}

TEST(Ipa, tone_letters_are_levels) { EXPECT_EQ(spelled("li˧˥"), "l|i:|35|"); }

TEST(Ipa, unknown_is_dropped_and_nothing_is_left_of_nothing) {
    EXPECT_EQ(spelled("h\xFF♥ʰə̃"), "h|@|");
    EXPECT_EQ(spelled(""), "");
    EXPECT_EQ(spelled("ˈˌ ♥"), "");
    EXPECT_EQ(spelled("[[_^_t]]"), "t|");  // what means something to espeak-ng
}

TEST(Ipa, words_without_end_are_cut) {
    std::string long_word, expected;
    for (int i = 0; i < 100; ++i) long_word += "h";
    for (int i = 0; i < 100; ++i) expected += i > 0 && i % 40 == 0 ? " h|" : "h|";
    EXPECT_EQ(spelled(long_word), expected);
}
