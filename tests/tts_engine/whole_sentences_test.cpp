// The event of a sentence covers all of it, however it is cut for espeak-ng.
#include "speech.h"
#include "tts_engine/document.h"

namespace {

// A sentence of about `size` characters, with a comma now and then or without.
std::string sentence_of(std::size_t size, bool commas, const std::string& word = "word") {
    std::string text = "First";
    for (std::size_t i = 0; text.size() < size; ++i) text += (commas && i % 10 == 9 ? ", " : " ") + word;
    return text + " last.";
}

// The ranges of all sentences of a document, without speaking it.
Texts sentences_of(const std::string& text) {
    tts::Document document(text);
    tts::Sentence sentence;
    Texts result;
    while (document.next(sentence)) {
        if (!sentence.begins || !sentence.has_text()) continue;
        const std::uint32_t begin = sentence.text.front().begin;
        result.push_back(text.substr(begin, sentence.whole_end - begin));
    }
    return result;
}

}  // namespace

TEST(WholeSentences, event_covers_all_pieces) {
    const std::string one = sentence_of(700, true);
    const std::string two = sentence_of(1500, false);
    const Speech speech = speak("<speak>Short. " + one + " " + two + " Short again.</speak>");
    EXPECT_EQ(speech.sentences(), (Texts{"Short.", one, two, "Short again."}));
}

TEST(WholeSentences, of_all_lengths_up_to_the_bound_are_covered) {
    for (const bool commas : {false, true})
        for (std::size_t size = 100; size < 3900; size += 37) {
            const std::string sentence = sentence_of(size, commas);
            EXPECT_EQ(sentences_of("<speak>" + sentence + " Next one.</speak>"), (Texts{sentence, "Next one."}))
                << size;
            EXPECT_EQ(sentences_of(sentence), Texts{sentence}) << size;
        }
}

TEST(WholeSentences, end_with_their_element_or_an_empty_line) {
    const std::string text = sentence_of(1000, true);
    EXPECT_EQ(sentences_of("<speak><s>" + text + "</s><s>" + text + "</s></speak>"), (Texts{text, text}));
    const std::string heading = text.substr(0, text.size() - 1);
    EXPECT_EQ(sentences_of(heading + "\n\n" + text), (Texts{heading, text}));
}

TEST(WholeSentences, of_other_scripts_are_covered) {
    std::string text;
    for (int i = 0; i < 1500; ++i) text += "日本";
    text += "。";
    EXPECT_EQ(sentences_of("<speak>" + text + text + "</speak>"), (Texts{text, text}));
}

TEST(WholeSentences, with_tags_and_entities_inside_are_covered) {
    std::string text = "Start";
    for (int i = 0; i < 200; ++i) text += " <mark name=\"B" + std::to_string(i) + "\"/>so &amp; <b>on</b>";
    text += " end.";
    EXPECT_EQ(sentences_of("<speak>" + text + " Next one.</speak>"), (Texts{text, "Next one."}));
    EXPECT_EQ(sentences_of("not & well-formed. " + text + " Next one."),
              (Texts{"not & well-formed.", text, "Next one."}));
}

TEST(WholeSentences, beyond_the_bound_are_covered_up_to_it) {
    const std::string text = sentence_of(20000, true);
    const Texts sentences = sentences_of("<speak>" + text + " Next one.</speak>");
    ASSERT_EQ(sentences.size(), 2u);
    EXPECT_EQ(sentences[0], text.substr(0, sentences[0].size()));
    // As many whole pieces as 4,000 characters hold; none has more than 700.
    EXPECT_LE(sentences[0].size(), 4000u);
    EXPECT_GT(sentences[0].size(), 3300u);
    EXPECT_EQ(sentences[1], "Next one.");
}

TEST(WholeSentences, bound_does_not_depend_on_where_the_sentence_is_in_the_document) {
    const std::string text = sentence_of(20000, true);
    const std::string covered = sentences_of(text)[0];
    for (std::size_t before = 1; before < 9000; before += 531) {
        const std::string start = sentence_of(before, false);
        EXPECT_EQ(sentences_of(start + " " + text)[1], covered) << before;
    }
}

TEST(WholeSentences, end_is_looked_for_in_a_bounded_part_of_the_document) {
    // One sentence, whose text is followed by marks without text.
    std::string document = "<speak>" + sentence_of(600, false);
    document.pop_back();
    for (int i = 0; i < 100000; ++i) document += "<mark/>";
    tts::Document reader(document);
    tts::Sentence sentence;
    ASSERT_TRUE(reader.next(sentence));
    EXPECT_FALSE(sentence.ends);
    EXPECT_EQ(sentence.whole_end, sentence.text.back().end);
}

TEST(WholeSentences, endless_marks_are_no_way_around_the_bound) {
    std::string document = "<speak>x";
    for (int i = 0; i < 300000; ++i) document += "\xCC\x81";
    tts::Document reader(document);
    tts::Sentence sentence;
    ASSERT_TRUE(reader.next(sentence));
    EXPECT_LE(sentence.text.size(), 800u);
    EXPECT_LE(sentence.whole_end, 7u + 1u + 2u * 4000u);
}

TEST(WholeSentences, jump_back_has_the_same_event) {
    const std::string one = sentence_of(900, true);
    const std::string document = "<speak>" + one + " Second one.</speak>";
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    tts_wave_delete(tts_streamer_synth(streamer, 2205));
    EXPECT_EQ(tts_streamer_jump(streamer, 1), 0);
    tts_wave_delete(tts_streamer_synth(streamer, 2205));
    EXPECT_EQ(tts_streamer_jump(streamer, -1), 0);
    Speech speech;
    hear_rest(speech, streamer, document);
    EXPECT_EQ(tts_streamer_stop(streamer), 0);
    EXPECT_EQ(speech.sentences(), (Texts{one, "Second one."}));
}
