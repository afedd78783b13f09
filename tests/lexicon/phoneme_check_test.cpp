// What somebody who types phonemes is told.
#include "tools/lexicon/phoneme_check.h"

#include <gtest/gtest.h>

namespace {

using namespace lexicon;
using Verdict = PhonemeCheck::Verdict;

TEST(PhonemeCheck, ipa_is_fine) {
    for (const char* text :
         {"həˈloʊ", "ˌɪntəˈnæʃənəl", "tʰa", "t͡ʃɛk", "ɑ̃", "n̩", "a.ɪ", "xwe˥˩", "kʷa ˈba", "ʘa", "ɡoːl"})
        EXPECT_EQ(check_phonemes(text).verdict, Verdict::fine) << text << ": " << check_phonemes(text).message;
}

TEST(PhonemeCheck, nothing_yet_asks_for_sounds) {
    EXPECT_EQ(check_phonemes("").verdict, Verdict::empty);
    EXPECT_EQ(check_phonemes("  ").verdict, Verdict::empty);
    EXPECT_FALSE(check_phonemes("").is_usable());
}

TEST(PhonemeCheck, signs_of_the_keyboard_are_accepted_with_the_right_one) {
    const PhonemeCheck check = check_phonemes("hə'loʊ");
    EXPECT_EQ(check.verdict, Verdict::accepted);
    EXPECT_EQ(check.message, "OK. For ' (character 3) IPA has ˈ.");
    EXPECT_EQ(check.offset, 3u);
    EXPECT_EQ(check.length, 1u);
    EXPECT_TRUE(check.is_usable());
    EXPECT_EQ(check_phonemes("gol").message, "OK. For g (character 1) IPA has ɡ.");
    EXPECT_EQ(check_phonemes("la:").message, "OK. For : (character 3) IPA has ː.");
}

TEST(PhonemeCheck, other_characters_are_named_with_their_place) {
    const PhonemeCheck check = check_phonemes("hə&loʊ");
    EXPECT_EQ(check.verdict, Verdict::wrong);
    EXPECT_EQ(check.message, "& (character 3) is not an IPA sign.");
    EXPECT_EQ(check.offset, 3u);
    EXPECT_EQ(check_phonemes("hEl").message, "E (character 2) is not an IPA sign. IPA has no capital letters.");
    EXPECT_EQ(check_phonemes("a,b").message, ", (character 2) is not an IPA sign. Is ˌ meant?");
    EXPECT_EQ(check_phonemes("a😀").message, "😀 (character 2) is not an IPA sign.");
    EXPECT_EQ(check_phonemes("h3").verdict, Verdict::wrong);
    EXPECT_EQ(check_phonemes("a\xFF").verdict, Verdict::wrong);
}

TEST(PhonemeCheck, marks_need_their_sound) {
    EXPECT_EQ(check_phonemes("ːa").message, "ː (character 1) needs a sound in front of it.");
    EXPECT_EQ(check_phonemes("a ʰ").message, "ʰ (character 3) needs a sound in front of it.");
    EXPECT_EQ(check_phonemes("\u0303").message, "◌\u0303 (character 1) needs a sound in front of it.");
    EXPECT_EQ(check_phonemes("aˈ").message, "A sound is missing behind the stress mark.");
    EXPECT_EQ(check_phonemes("ˈ a").message, "The blank (character 2) cannot follow a stress mark.");
    EXPECT_EQ(check_phonemes("t͡").message, "A sound is missing behind the tie.");
    EXPECT_EQ(check_phonemes("t͡.a").message, ". (character 3) cannot follow a tie, which joins two sounds.");
}

TEST(PhonemeCheck, there_must_be_a_sound) {
    EXPECT_EQ(check_phonemes(". |").message, "There is no sound in it yet.");
    EXPECT_EQ(check_phonemes("˥").verdict, Verdict::wrong);
}

}  // namespace
