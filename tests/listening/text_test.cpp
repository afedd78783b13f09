// Words and sentences as a person counts them.
#include "tools/listening/text.h"

#include <gtest/gtest.h>

using namespace listening;

namespace {

std::vector<std::string> words_of(const std::string& text) {
    std::vector<std::string> words;
    for (const Token& token : tokens_of(text)) {
        EXPECT_EQ(text.substr(token.begin, token.end - token.begin), token.text);
        words.push_back(token.text);
    }
    return words;
}

using Texts = std::vector<std::string>;

}  // namespace

TEST(ListeningText, words_are_between_blanks_without_punctuation_at_their_ends) {
    EXPECT_EQ(words_of(" \"Don't\" (well-known), 3.14! -- e.g."), (Texts{"Don't", "well-known", "3.14", "e.g"}));
    EXPECT_EQ(words_of("$12.50 +5"), (Texts{"$12.50", "+5"}));
    EXPECT_EQ(words_of("... - ?"), Texts{});
}

TEST(ListeningText, ethiopic_wordspace_separates_words) {
    EXPECT_EQ(words_of("የሰው፡ልጅ፡ሁሉ።"), (Texts{"የሰው", "ልጅ", "ሁሉ"}));
}

TEST(ListeningText, han_and_kana_are_a_word_each) {
    EXPECT_EQ(words_of("人は、A型。"), (Texts{"人", "は", "A", "型"}));
    EXPECT_EQ(words_of("コーヒー"), (Texts{"コー", "ヒー"}));
}

TEST(ListeningText, sentences_end_at_stops_before_a_blank_and_at_lines) {
    EXPECT_EQ(sentences_of("One 3.5 two. Three!\nfour\n\n"), (Texts{"One 3.5 two.", "Three!", "four"}));
    EXPECT_EQ(sentences_of("人は。型！"), (Texts{"人は。", "型！"}));
    EXPECT_EQ(sentences_of("ሁሉ።፡ልጅ"), (Texts{"ሁሉ።", "፡ልጅ"}));
}

TEST(ListeningText, letters_are_neither_punctuation_nor_marks) {
    EXPECT_EQ(letter_count("a-b'"), 2u);
    EXPECT_EQ(letter_count("e\xCC\x81"), 1u);
    EXPECT_EQ(letter_count("हिन्दी"), 3u);
}

TEST(ListeningText, markup_is_escaped_and_the_body_is_found) {
    const Document document = document_of("en", escaped("a<b&c>"));
    EXPECT_EQ(document.text.substr(document.body), "a&lt;b&amp;c&gt;</speak>");
}
