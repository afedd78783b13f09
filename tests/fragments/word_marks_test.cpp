// Word and sentence marks, with prefixes that the engine itself leaves out.

#include "fragments/word_marks.h"

#include <gtest/gtest.h>

#include "fragments/fragment_list.h"

namespace {

using Positions = std::vector<std::uint32_t>;

constexpr spvtextfrags_to_ssml_opts words_only = {"B", "P", nullptr, "W"};
constexpr spvtextfrags_to_ssml_opts sentences_only = {"B", "P", "S", nullptr};
constexpr spvtextfrags_to_ssml_opts both = {"B", "P", "S", "W"};

// The records behind the first fragment's pitch mark and attributes.
std::string marks_of(const FragmentList& list, const spvtextfrags_to_ssml_opts& opts) {
    const std::string records = walk(list, opts).records();
    const std::string start = "P0@0 {}@0";
    EXPECT_EQ(records.substr(0, start.size()), start);
    return records.size() > start.size() ? records.substr(start.size() + 1) : "";
}

std::string marks_of(const Wide& text, const spvtextfrags_to_ssml_opts& opts, ULONG source_offset = 0) {
    FragmentList list;
    list.speak(text, source_offset);
    return marks_of(list, opts);
}

}  // namespace

// ---- Words ----

TEST(WordMarks, words_are_named_by_start_and_length) {
    FragmentList list;
    list.speak(NELVA_WIDE("Hi you"));
    const Walked walked = walk(list, words_only);
    EXPECT_EQ(walked.text.as_string(), "Hi you");
    EXPECT_EQ(walked.records(), "P0@0 {}@0 W0_2@0 W3_3@3");
    EXPECT_EQ(walked.positions, (Positions{0, 1, 2, 3, 4, 5, 6}));
}

TEST(WordMarks, no_words_make_no_marks) {
    EXPECT_EQ(marks_of(Wide(), both), "");
    EXPECT_EQ(marks_of(NELVA_WIDE(" ... "), both), "");
}

TEST(WordMarks, names_hold_host_positions_and_places_are_bytes) {
    EXPECT_EQ(marks_of(NELVA_WIDE("\u00E9\u00E9 \u00E9"), words_only, 100), "W100_2@0 W103_1@5");
}

TEST(WordMarks, instances_count_on_behind_all_other_marks) {
    FragmentList list;
    list.speak(NELVA_WIDE("a b"));
    list.bookmark(NELVA_WIDE("x"));
    const Walked walked = walk(list, words_only);
    ASSERT_EQ(walked.records(), "P0@0 {}@0 W0_1@0 W2_1@2 P0@3 Bx@3");
    EXPECT_EQ(walked.mark(5)->instance, 3u);
    EXPECT_EQ(walked.mark(2)->instance, 4u);
    EXPECT_EQ(walked.mark(3)->instance, 5u);
}

TEST(WordMarks, letters_and_digits_begin_a_word) {
    EXPECT_EQ(marks_of(NELVA_WIDE("12 x3"), words_only), "W0_2@0 W3_2@3");
    EXPECT_EQ(marks_of(NELVA_WIDE("-a 'b"), words_only), "W1_1@1 W4_1@4");
}

TEST(WordMarks, apostrophe_hyphen_colon_and_underscore_go_on_with_one) {
    EXPECT_EQ(marks_of(NELVA_WIDE("it's x-y a:b c_d e."), words_only), "W0_4@0 W5_3@5 W9_3@9 W13_3@13 W17_1@17");
}

TEST(WordMarks, open_word_is_closed_with_the_host_end) {
    FragmentList list;
    list.speak(NELVA_WIDE("ab"), 5);
    list.speak(Wide(), 50);
    EXPECT_EQ(marks_of(list, words_only), "W5_45@0 P0@2");
}

TEST(WordMarks, word_stays_open_across_a_bookmark) {
    FragmentList list;
    list.speak(NELVA_WIDE("Hel"), 0);
    list.bookmark(NELVA_WIDE("m"));
    list.speak(NELVA_WIDE("lo x"), 3);
    EXPECT_EQ(marks_of(list, words_only), "W0_5@0 P0@3 Bm@3 P0@3 W6_1@6");
}

TEST(WordMarks, word_stays_open_across_a_break_and_raw_markup) {
    FragmentList list;
    list.speak(NELVA_WIDE("ab"), 0);
    list.add(SPVA_Silence, Wide());
    list.raw(NELVA_WIDE("<x/>c d"), 2);
    list.speak(NELVA_WIDE("e"), 9);
    EXPECT_EQ(marks_of(list, words_only), "W0_10@0 P0@2 ~0ms@2 P0@2 {raw}@2 {}@6 P0@9");
}

TEST(WordMarks, length_follows_the_host_positions_even_backwards) {
    FragmentList list;
    list.speak(NELVA_WIDE("ab"), 100);
    list.speak(NELVA_WIDE(" "), 10);
    EXPECT_EQ(marks_of(list, words_only), "W100_-90@0 P0@2");
}

TEST(WordMarks, surrogate_pair_is_classed_by_its_low_bits) {
    // U+1F600: 0x3D << 10 | 0x200, cut to 0xF600, is no letter; U+10041: 0 << 10 | 0x41 is one.
    EXPECT_EQ(marks_of(NELVA_WIDE("a\U0001F600b"), words_only), "W0_1@0 W3_1@5");
    EXPECT_EQ(marks_of(NELVA_WIDE(" \U00010041\u00E9 "), words_only), "W1_3@1");
}

TEST(WordMarks, class_unit) {
    const Wide units = {0xD83D, 0xDE00, 0xDBFF, 0xDFFF};
    EXPECT_EQ(character_class_unit(&units[0], 2), 0xF600);
    EXPECT_EQ(character_class_unit(&units[2], 2), 0xFFFF);
    EXPECT_EQ(character_class_unit(&units[0], 1), 0xD83D);
}

TEST(WordMarks, lone_surrogate_ends_a_word) {
    EXPECT_EQ(marks_of(Wide{'a', 0xD800, 'b'}, words_only), "W0_1@0 W2_1@4");
}

TEST(WordMarks, positions_from_2_31_on_open_nothing) {
    EXPECT_EQ(marks_of(NELVA_WIDE("ab c. d"), both, 0x80000000), "");
    EXPECT_EQ(marks_of(NELVA_WIDE("a b"), words_only, 0x7FFFFFFF), "W2147483647_1@0");
}

TEST(WordMarks, length_across_2_31_wraps) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"), 0);
    list.speak(NELVA_WIDE(" "), 0x80000001);
    EXPECT_EQ(marks_of(list, words_only), "W0_-2147483647@0 P0@1");
}

// ---- Sentences ----

TEST(SentenceMarks, sentence_marks_come_first_at_one_byte) {
    FragmentList list;
    list.speak(NELVA_WIDE("Hi you. Bye"));
    const Walked walked = walk(list, both);
    ASSERT_EQ(walked.records(), "P0@0 {}@0 S0_7@0 W0_2@0 W3_3@3 S8_3@8 W8_3@8");
    // Numbered as they were closed: Hi, you, the first sentence, then Bye before its sentence.
    EXPECT_EQ(walked.mark(3)->instance, 2u);
    EXPECT_EQ(walked.mark(4)->instance, 3u);
    EXPECT_EQ(walked.mark(2)->instance, 4u);
    EXPECT_EQ(walked.mark(6)->instance, 5u);
    EXPECT_EQ(walked.mark(5)->instance, 6u);
}

TEST(SentenceMarks, without_a_word_prefix_there_are_only_sentences) {
    EXPECT_EQ(marks_of(NELVA_WIDE("Hi you. Bye"), sentences_only), "S0_7@0 S8_3@8");
}

TEST(SentenceMarks, full_stop_in_front_of_a_letter_ends_nothing) {
    EXPECT_EQ(marks_of(NELVA_WIDE("a.b c"), sentences_only), "S0_5@0");
}

TEST(SentenceMarks, each_of_the_four_ends_one_in_front_of_white_space) {
    EXPECT_EQ(marks_of(NELVA_WIDE("a! b? c: d. e"), sentences_only), "S0_2@0 S3_2@3 S6_2@6 S9_2@9 S12_1@12");
}

TEST(SentenceMarks, other_punctuation_ends_none) {
    EXPECT_EQ(marks_of(NELVA_WIDE("a, b; c.) d"), sentences_only), "S0_11@0");
}

TEST(SentenceMarks, nul_is_white_space_and_thin_space_is_not) {
    EXPECT_EQ(marks_of(Wide(NELVA_WIDE("a.\0b"), 4), sentences_only), "S0_2@0 S3_1@3");
    EXPECT_EQ(marks_of(NELVA_WIDE("a.\u2009b"), sentences_only), "S0_4@0");
}

TEST(SentenceMarks, only_the_first_white_space_counts) {
    EXPECT_EQ(marks_of(NELVA_WIDE("a.  b"), sentences_only), "S0_2@0 S4_1@4");
}

TEST(SentenceMarks, begins_with_a_word_only) {
    EXPECT_EQ(marks_of(NELVA_WIDE("\"(a. b"), sentences_only), "S2_2@2 S5_1@5");
}

TEST(SentenceMarks, last_character_counts_across_fragments) {
    FragmentList list;
    list.speak(NELVA_WIDE("a."), 0);
    list.speak(NELVA_WIDE(" b"), 2);
    EXPECT_EQ(marks_of(list, sentences_only), "S0_2@0 P0@2 S3_1@3");
}

TEST(SentenceMarks, letter_s_decides_which_marks_come_first) {
    EXPECT_EQ(marks_of(NELVA_WIDE("a b"), {"B", "P", "X", "Sw"}), "Sw0_1@0 X0_3@0 Sw2_1@2");
}

TEST(SentenceMarks, prefixes_without_s_go_by_place_and_closing) {
    // All in one list, which falls at the sentence's start and so is sorted: equal places keep the order of closing.
    EXPECT_EQ(marks_of(NELVA_WIDE("a b"), {"B", "P", "X", "W"}), "W0_1@0 X0_3@0 W2_1@2");
}

TEST(SentenceMarks, many_words_take_their_places) {
    const Wide sentence = NELVA_WIDE("ab c. ");
    Wide text;
    std::string expected;
    for (int i = 0; i < 2000; ++i) {
        const int at = 6 * i;
        text += sentence;
        for (const auto& [start, length] : {std::pair(at, 5), std::pair(at, 2), std::pair(at + 3, 1)}) {
            expected += length == 5 ? "S" : "W";
            expected += std::to_string(start) + "_" + std::to_string(length) + "@" + std::to_string(start) + " ";
        }
    }
    EXPECT_EQ(marks_of(text, both) + " ", expected);
}
