// Elements whose text is one thing: something else is said for it, or it is one word.
#include "speech.h"

namespace {

Texts words_of(const std::string& body) { return speak(document_of(body)).words(); }

}  // namespace

TEST(Sub, alias_is_spoken_and_the_written_word_has_the_event) {
    const Speech speech = speak(document_of("The <sub alias=\"World Wide Web Consortium\">W3C</sub> met."));
    EXPECT_EQ(speech.words(), (Texts{"The", "W3C", "met"}));
    EXPECT_TRUE(speech.samples == speak(document_of("The World Wide Web Consortium met.")).samples);
}

TEST(Sub, several_written_words_each_have_their_event) {
    const Speech speech = speak(document_of("Say <sub alias=\"what you see here\">one two</sub> now."));
    EXPECT_EQ(speech.words(), (Texts{"Say", "one", "two", "now"}));
    EXPECT_LT(speech.sample_of("one"), speech.sample_of("two"));
    EXPECT_LT(speech.sample_of("two"), speech.sample_of("now"));
}

TEST(Sub, sign_that_is_no_word_becomes_one) {
    EXPECT_EQ(words_of("Rock <sub alias=\"and\">+-</sub> roll"), (Texts{"Rock", "+-", "roll"}));
}

TEST(Sub, without_text_is_spoken_too) {
    const Speech speech = speak(document_of("One <sub alias=\"two\"/> three."));
    EXPECT_EQ(speech.words(), (Texts{"One", "three"}));
    EXPECT_TRUE(speech.samples == speak(document_of("One two three.")).samples);
    EXPECT_TRUE(speak("<speak><sub alias=\"two\"/></speak>").sentences().empty());
    EXPECT_GT(speak("<speak><sub alias=\"two\"/></speak>").seconds(), 0.1);
}

TEST(Sub, full_stop_in_it_ends_no_sentence) {
    EXPECT_EQ(speak(document_of("Meet <sub alias=\"Mister Z\">Z. A.</sub> Now. And go.")).sentences(),
              (Texts{"Meet <sub alias=\"Mister Z\">Z. A.</sub> Now.", "And go."}));
}

TEST(Sub, not_closed_is_spoken_as_written) {
    const Speech speech = speak(document_of("Say <sub alias=\"nothing\">one two"));
    EXPECT_EQ(speech.words(), (Texts{"Say", "one", "two"}));
    EXPECT_TRUE(speech.samples == speak(document_of("Say one two")).samples);
}

TEST(Sub, without_alias_is_spoken_as_written) {
    EXPECT_TRUE(speak(document_of("Say <sub>one</sub> now.")).samples == speak(document_of("Say one now.")).samples);
    EXPECT_TRUE(speak(document_of("Say <sub alias=\"\">one</sub> now.")).samples ==
                speak(document_of("Say one now.")).samples);
}

TEST(Sub, over_two_sentences_is_spoken_as_written) {
    EXPECT_TRUE(speak("<speak><sub alias=\"x\"><s>One.</s><s>Two.</s></sub></speak>").samples ==
                speak("<speak><s>One.</s><s>Two.</s></speak>").samples);
}

TEST(Sub, marks_and_pauses_inside_stay) {
    const Speech speech =
        speak(document_of("A <sub alias=\"be\">bee<mark name=\"B1\"/><break time=\"1s\"/> see</sub> dee."));
    EXPECT_EQ(speech.words(), (Texts{"A", "bee", "see", "dee"}));
    EXPECT_EQ(speech.marks(), (Texts{"P0", "B1"}));
    EXPECT_GT(speech.sample_of("dee") - speech.sample_of("bee"), 22050u);
}

TEST(Sub, long_and_never_closed_does_not_hold_up_the_sentences) {
    std::string body = "<sub alias=\"x\">";
    for (int i = 0; i < 50; ++i) body += "This is a sentence of ten words or so, maybe. ";
    EXPECT_GT(speak(document_of(body)).sentences().size(), 40u);
}

TEST(Phoneme, ipa_is_spoken_and_the_written_word_has_the_event) {
    const Speech speech = speak(document_of("A <phoneme alphabet=\"ipa\" ph=\"təˈmeɪtoʊ\">xxx</phoneme> please."));
    EXPECT_EQ(speech.words(), (Texts{"A", "xxx", "please"}));
    // The mouth closes for m and opens for e.
    const Texts visemes = speech.visemes();
    const Texts middle{"p", "e"};
    EXPECT_NE(std::search(visemes.begin(), visemes.end(), middle.begin(), middle.end()), visemes.end());
    const double seconds = speech.seconds();
    EXPECT_NEAR(seconds, speak(document_of("A tomato please.")).seconds(), 0.1 * seconds);
}

TEST(Phoneme, symbols_without_meaning_are_never_spoken_as_letters) {
    EXPECT_TRUE(speak(document_of("<phoneme ph=\"%%hi7\">x</phoneme>")).samples ==
                speak(document_of("<phoneme ph=\"hi\">x</phoneme>")).samples);
    // Nothing is left to say: the text is spoken.
    EXPECT_TRUE(speak(document_of("One <phoneme ph=\"%%7\">two</phoneme>.")).samples ==
                speak(document_of("One two.")).samples);
}

TEST(Phoneme, of_another_alphabet_is_spoken_as_written) {
    EXPECT_TRUE(speak(document_of("One <phoneme alphabet=\"x-other\" ph=\"t\">two</phoneme>.")).samples ==
                speak(document_of("One two.")).samples);
}

TEST(Phoneme, without_text_is_spoken_too) {
    EXPECT_GT(speak("<speak><phoneme ph=\"həˈloʊ\"/></speak>").seconds(), 0.2);
}

TEST(Phoneme, holds_in_the_language_around) {
    const TestVoice voice("de-22i");
    const Speech speech = speak(voice, "<speak><phoneme ph=\"ˈaʊ\">x</phoneme></speak>");
    EXPECT_EQ(speech.visemes(), (Texts{"sil", "a", "sil"}));
}

TEST(Token, content_is_one_word) {
    EXPECT_EQ(words_of("In <token>New York</token> and <w>San Jose</w>."),
              (Texts{"In", "New York", "and", "San Jose"}));
    EXPECT_EQ(words_of("So <w role=\"x:y\"> etc. </w> it is"), (Texts{"So", "etc.", "it", "is"}));
}

TEST(Token, sounds_as_its_text) {
    EXPECT_TRUE(speak(document_of("In <w>New York</w> now.")).samples ==
                speak(document_of("In New York now.")).samples);
}

TEST(Token, of_nothing_is_none) { EXPECT_EQ(words_of("One <w></w><w> </w><w/> two"), (Texts{"One", "two"})); }

TEST(Token, around_an_element_without_text_is_no_word) {
    EXPECT_EQ(words_of("<w><phoneme ph=\"hi\"/></w> one <w><sub alias=\"two\"/>x</w>"), (Texts{"one", "x"}));
}

TEST(Token, parts_a_script_without_blanks) {
    const TestVoice voice("zh-22i");
    EXPECT_EQ(speak(voice, "<speak><w>你好</w>世<w>界</w></speak>").words(), (Texts{"你好", "世", "界"}));
}

TEST(Emphasis, levels_are_ordered_by_loudness) {
    const auto loudness = [](const std::string& level) {
        return speak(document_of("<emphasis" + level + ">This is important to us.</emphasis>")).loudness();
    };
    const double none = loudness(" level=\"none\"");
    EXPECT_NEAR(none, speak(document_of("This is important to us.")).loudness(), 0.001);
    EXPECT_LT(loudness(" level=\"reduced\""), 0.9 * none);
    EXPECT_GT(loudness(" level=\"moderate\""), 1.1 * none);
    EXPECT_EQ(loudness(""), loudness(" level=\"moderate\""));
    EXPECT_GT(loudness(" level=\"strong\""), 1.1 * loudness(""));
}

TEST(Emphasis, strong_takes_longer) {
    EXPECT_GT(speak("<speak><emphasis level=\"strong\">This is important.</emphasis></speak>").seconds(),
              1.08 * speak("<speak>This is important.</speak>").seconds());
}

TEST(Emphasis, nested_without_end_has_bounds) {
    std::string body;
    for (int i = 0; i < 3000; ++i) body += i % 2 == 0 ? "<emphasis level=\"strong\">" : "<emphasis level=\"reduced\">";
    for (int i = 0; i < 3000; ++i) body += "<emphasis level=\"strong\">";
    EXPECT_EQ(speak(document_of(body + "One two")).words(), (Texts{"One", "two"}));
}

TEST(Audio, fallback_is_spoken_and_its_description_is_not) {
    const Speech speech = speak(
        document_of("One <audio src=\"x.wav\"><desc>a bell <mark name=\"B1\"/></desc>two <b>three</b></audio> four."));
    EXPECT_EQ(speech.words(), (Texts{"One", "two", "three", "four"}));
    EXPECT_TRUE(speech.samples == speak(document_of("One two three four.")).samples);
}

TEST(Audio, description_that_is_not_closed_ends_with_what_comes_next) {
    EXPECT_EQ(words_of("<audio><desc>a bell</audio> one"), Texts{"one"});
    EXPECT_EQ(words_of("<audio><desc>a bell <b>one</b></audio> two"), (Texts{"one", "two"}));
}

TEST(Audio, empty_is_nothing) {
    EXPECT_TRUE(speak(document_of("One <audio src=\"x.wav\"/>two.")).samples == speak(document_of("One two.")).samples);
}
