// Word and sentence events.
#include "speech.h"

namespace {

Texts words_of(const std::string& body) { return speak(document_of(body)).words(); }

}  // namespace

TEST(Words, each_word_is_cut_out_without_punctuation) {
    EXPECT_EQ(words_of("Hi é😀 there, Dr. Smith."), (Texts{"Hi", "é😀", "there", "Dr", "Smith"}));
}

TEST(Words, number_is_one_however_many_are_said) {
    EXPECT_EQ(words_of("It cost $12.50 on 3/4/2021, or 1,000 and 3.14 at 5:30."),
              (Texts{"It", "cost", "$12.50", "on", "3/4/2021", "or", "1,000", "and", "3.14", "at", "5:30"}));
}

TEST(Words, percent_sign_belongs_to_its_number) {
    EXPECT_EQ(words_of("About 50%, or 3.5%. Not % alone"), (Texts{"About", "50%", "or", "3.5%", "Not", "alone"}));
}

TEST(Words, abbreviations_and_apostrophes_stay_whole) {
    EXPECT_EQ(words_of("The U.S. isn't e.g. well-known; the dogs' \"rock 'n' roll\"."),
              (Texts{"The", "U.S", "isn't", "e.g", "well-known", "the", "dogs", "rock", "n", "roll"}));
}

TEST(Words, said_as_one_by_the_synthesiser_come_one_by_one) {
    const Speech speech = speak(document_of("One of the many, because of the."));
    EXPECT_EQ(speech.words(), (Texts{"One", "of", "the", "many", "because", "of", "the"}));
    EXPECT_LT(speech.sample_of("of"), speech.sample_of("the"));
    EXPECT_LT(speech.sample_of("the"), speech.sample_of("many"));
}

TEST(Words, entity_takes_all_its_bytes) {
    EXPECT_EQ(words_of("A&amp;B likes &quot;fish &#x26; chips&quot; &#233;t&eacute; ever."),
              (Texts{"A&amp;B", "likes", "fish", "chips", "&#233;t&eacute", "ever"}));
}

TEST(Words, entity_of_the_documents_own_is_one_however_many_it_stands_for) {
    const Speech speech = speak(
        "<!DOCTYPE speak [<!ENTITY x \"hello big world. And more\"><!ENTITY y \"日本\">]>"
        "<speak>Say &x; there, &x;&y;z.</speak>");
    EXPECT_EQ(speech.words(), (Texts{"Say", "&x;", "there", "&x;", "&y;", "z"}));
    EXPECT_EQ(speech.sentences().size(), 1u);
}

TEST(Words, punctuation_alone_is_no_word) {
    EXPECT_EQ(words_of("Wait - what ... now?!"), (Texts{"Wait", "what", "now"}));
}

TEST(Words, blanks_of_every_kind_part_them) {
    EXPECT_EQ(words_of("one\ttwo\r\nthree\xC2\xA0"
                       "four\xE3\x80\x80"
                       "five"),
              (Texts{"one", "two", "three", "four", "five"}));
}

TEST(Words, border_of_a_fragment_ends_one) {
    const Speech speech =
        speak(document_of("Every<mark name=\"P0\"/>word<mark name=\"P0\"/>alone<mark name=\"P0\"/>."));
    EXPECT_EQ(speech.words(), (Texts{"Every", "word", "alone"}));
    EXPECT_TRUE(speech.samples == speak(document_of("Every word alone.")).samples);
}

TEST(Words, bookmark_inside_one_does_not_part_it) {
    const Speech speech = speak("<speak>mean<mark name=\"B1\"/>while it rains</speak>");
    EXPECT_EQ(speech.words(), (Texts{"mean<mark name=\"B1\"/>while", "it", "rains"}));
    EXPECT_TRUE(speech.samples == speak("<speak>meanwhile it rains</speak>").samples);
}

TEST(Words, in_scripts_without_blanks_never_cut_a_character) {
    const TestVoice voice("zh-22i");
    EXPECT_EQ(speak(voice, "<speak>你好，世界。</speak>").words(), (Texts{"你", "好", "世", "界"}));
}

TEST(Words, begin_where_they_sound) {
    const Speech speech = speak("<speak>One. <break time=\"2s\"/> Two.</speak>");
    const std::uint64_t two = speech.sample_of("Two");
    ASSERT_LT(two, speech.samples.size());
    // The pause before it is silent, and it is loud behind its start.
    EXPECT_EQ(speech.loudness(two - 22050, two), 0);
    EXPECT_GT(speech.loudness(two, two + 4410), 300);
}

TEST(Words, long_text_has_each_in_order) {
    std::string body;
    Texts expected;
    for (int i = 0; i < 300; ++i) {
        expected.push_back("word" + std::to_string(i));
        body += expected.back() + " ";
    }
    EXPECT_EQ(words_of(body), expected);
}

TEST(Sentences, span_from_first_character_to_full_stop) {
    const Speech speech = speak(document_of("  Hi é😀 there, Dr. Smith.  Is it 3.14?\nYes!  "));
    EXPECT_EQ(speech.sentences(), (Texts{"Hi é😀 there, Dr. Smith.", "Is it 3.14?", "Yes!"}));
}

TEST(Sentences, event_comes_before_the_first_word) {
    const Speech speech = speak("<speak>Yes. No.</speak>");
    Texts order;
    for (const HeardEvent& event : speech.events)
        if (event.type == TTS_EVENT_SENTENCE || event.type == TTS_EVENT_WORD) order.push_back(event.text);
    EXPECT_EQ(order, (Texts{"Yes.", "Yes", "No.", "No"}));
}

TEST(Sentences, elements_p_and_s_bound_them) {
    EXPECT_EQ(speak("<speak><p><s>one two</s><s>three</s></p><p>four</p>five</speak>").sentences(),
              (Texts{"one two", "three", "four", "five"}));
}

TEST(Sentences, are_cut_by_the_rules_of_their_language) {
    EXPECT_EQ(speak("<speak xml:lang=\"de\">Am 3. Mai kam er. Ja.</speak>").sentences(),
              (Texts{"Am 3. Mai kam er.", "Ja."}));
    const TestVoice voice("de-22i");
    EXPECT_EQ(speak(voice, "<speak>Am 3. Mai kam er. Ja.</speak>").sentences(), (Texts{"Am 3. Mai kam er.", "Ja."}));
}

TEST(Sentences, without_an_end_are_cut_and_announced_once) {
    std::string body;
    for (int i = 0; i < 500; ++i) body += "and ";
    const Speech speech = speak("<speak>" + body + "</speak>");
    EXPECT_EQ(speech.sentences().size(), 1u);
    EXPECT_EQ(speech.words(), Texts(500, "and"));
}
