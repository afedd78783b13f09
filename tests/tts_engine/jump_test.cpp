// Jumps by sentences.
#include <limits>

#include "speech.h"

namespace {

const std::string document =
    "<speak version=\"1.0\" xml:lang=\"en\"><mark name=\"P0\"/>First one here. Second one here. Third one here. Fourth "
    "one "
    "here.</speak>";

// Speaks until a word or a mark, jumps, and hears the rest.
Speech jump_at(const std::string& text, const std::string& word, std::int32_t count, std::int32_t expected = 0) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, text.c_str(), -1.0f);
    Speech before;
    while (before.sample_of(word) == ~std::uint64_t{0}) {
        tts_wave* wave = tts_streamer_synth(streamer, 2205);
        if (wave == nullptr) break;
        take_record(before, *wave, text, 2205);
        tts_wave_delete(wave);
    }
    EXPECT_EQ(tts_streamer_jump(streamer, count), expected);
    Speech after;
    hear_rest(after, streamer, text);
    tts_streamer_stop(streamer);
    return after;
}

// The goal begins while the sound before it fades out: 5 ms.
constexpr long cross_fade = 110;

Texts sentences_after(const std::string& word, std::int32_t count) {
    return jump_at(document, word, count).sentences();
}

}  // namespace

TEST(Jump, forward) {
    EXPECT_EQ(sentences_after("First", 1), (Texts{"Second one here.", "Third one here.", "Fourth one here."}));
    EXPECT_EQ(sentences_after("First", 2), (Texts{"Third one here.", "Fourth one here."}));
}

TEST(Jump, back) {
    EXPECT_EQ(sentences_after("Third", -1), (Texts{"Second one here.", "Third one here.", "Fourth one here."}));
    EXPECT_EQ(sentences_after("Third", -2).size(), 4u);
}

TEST(Jump, nought_starts_the_sentence_again) {
    EXPECT_EQ(sentences_after("Second", 0), (Texts{"Second one here.", "Third one here.", "Fourth one here."}));
}

TEST(Jump, stops_at_both_ends) {
    EXPECT_EQ(sentences_after("Second", 100), Texts{"Fourth one here."});
    EXPECT_EQ(sentences_after("Second", -100).size(), 4u);
    EXPECT_EQ(sentences_after("Second", std::numeric_limits<std::int32_t>::max()), Texts{"Fourth one here."});
    EXPECT_EQ(sentences_after("Second", std::numeric_limits<std::int32_t>::min()).size(), 4u);
}

TEST(Jump, before_the_first_record_counts_from_the_first_sentence) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    EXPECT_EQ(tts_streamer_jump(streamer, 2), 0);
    Speech speech;
    hear_rest(speech, streamer, document);
    tts_streamer_stop(streamer);
    EXPECT_EQ(speech.words(), (Texts{"Third", "one", "here", "Fourth", "one", "here"}));
}

TEST(Jump, behind_the_end_speaks_again) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    Speech all;
    hear_rest(all, streamer, document);
    EXPECT_EQ(tts_streamer_jump(streamer, -1), 0);
    Speech again;
    hear_rest(again, streamer, document);
    tts_streamer_stop(streamer);
    EXPECT_EQ(again.sentences(), (Texts{"Third one here.", "Fourth one here."}));
}

TEST(Jump, fails_in_a_document_without_a_sentence) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, "<speak><break/></speak>", -1.0f);
    EXPECT_NE(tts_streamer_jump(streamer, 1), 0);
    EXPECT_STRNE(tts_errmsg(), "");
    tts_streamer_stop(streamer);
}

TEST(Jump, goal_sounds_as_if_spoken_from_the_start) {
    const Speech whole = speak(document);
    const Speech jumped = jump_at(document, "First", 2);
    const std::size_t from = whole.samples.size() - jumped.samples.size();
    EXPECT_TRUE(std::equal(jumped.samples.begin() + cross_fade, jumped.samples.end(),
                           whole.samples.begin() + static_cast<long>(from) + cross_fade));
}

TEST(Jump, attributes_hold_at_the_goal) {
    const std::string text =
        "<speak xml:lang=\"en\">First here. <prosody rate=\"2.00\">Second here. <lang xml:lang=\"de\">Zweitens hier. "
        "Drittens "
        "hier.</lang></prosody> Last here.</speak>";
    const Speech whole = speak(text);
    const Speech jumped = jump_at(text, "First", 3);
    EXPECT_EQ(jumped.sentences(), (Texts{"Drittens hier.", "Last here."}));
    const std::size_t from = whole.samples.size() - jumped.samples.size();
    EXPECT_TRUE(std::equal(jumped.samples.begin() + cross_fade, jumped.samples.end(),
                           whole.samples.begin() + static_cast<long>(from) + cross_fade));
}

TEST(Jump, pitch_mark_that_was_passed_over_is_given) {
    const std::string text =
        "<speak xml:lang=\"en\"><mark name=\"P0\"/>First here. <mark name=\"P7\"/><prosody pitch=\"+62%\">Second here. "
        "Third "
        "here.</prosody></speak>";
    EXPECT_EQ(jump_at(text, "First", 2).marks(), Texts{"P7"});
    // Back before it, the pitch is the one of the first mark again.
    EXPECT_EQ(jump_at(text, "Third", -2).marks(), (Texts{"P0", "P7"}));
}

TEST(Jump, bookmark_that_is_no_pitch_mark_is_not_given_again) {
    const std::string text =
        "<speak xml:lang=\"en\"><mark name=\"P5\"/>First here. <mark name=\"Page1\"/>Second here. Third here.</speak>";
    EXPECT_EQ(jump_at(text, "First", 2).marks(), Texts{"P5"});
}

TEST(Jump, many_times_does_no_harm) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    for (std::int32_t i = 0; i < 60; ++i) {
        tts_wave_delete(tts_streamer_synth(streamer, 2205));
        EXPECT_EQ(tts_streamer_jump(streamer, i * 7 % 9 - 4), 0);
    }
    EXPECT_EQ(tts_streamer_jump(streamer, -1000), 0);
    Speech speech;
    hear_rest(speech, streamer, document);
    tts_streamer_stop(streamer);
    EXPECT_EQ(speech.sentences().size(), 4u);
}

TEST(Jump, in_a_document_of_one_sentence_starts_it_again) {
    for (const std::int32_t count : {-2, -1, 0, 1, 2})
        EXPECT_EQ(jump_at("<speak>Only one here.</speak>", "one", count).words(), (Texts{"Only", "one", "here"}))
            << count;
}

TEST(Jump, takes_a_sentence_that_is_spoken_in_pieces_for_one) {
    std::string text = "<speak><s>First ";
    for (int i = 0; i < 100; ++i) text += "and then some ";
    text += "last</s><s>Second here.</s></speak>";
    EXPECT_EQ(jump_at(text, "last", 0).words().size(), 304u);  // 2, three a hundred times, 2
    EXPECT_EQ(jump_at(text, "last", -1).words().size(), 304u);
    EXPECT_EQ(jump_at(text, "then", 1).words(), (Texts{"Second", "here"}));
    EXPECT_EQ(jump_at(text, "last", 1).words(), (Texts{"Second", "here"}));
    EXPECT_EQ(jump_at(text, "Second", -1).words().size(), 304u);
}

TEST(Jump, goes_by_the_sentences_of_elements) {
    const std::string text = "<speak><p>One here <s>Two here</s> Three here</p><p><s>Four here</s></p></speak>";
    EXPECT_EQ(jump_at(text, "One", 1).sentences(), (Texts{"Two here", "Three here", "Four here"}));
    EXPECT_EQ(jump_at(text, "Four", -2).sentences(), (Texts{"Two here", "Three here", "Four here"}));
}

TEST(Jump, goes_by_sentences_where_the_markup_is_broken) {
    EXPECT_EQ(jump_at("<speak>One & here. Two </b>here. Three <x>here.", "One", 1).sentences(),
              (Texts{"Two </b>here.", "Three <x>here."}));
    EXPECT_EQ(jump_at("One here.</speak> Two here. <speak>Three here.", "Three", -1).sentences(),
              (Texts{"Two here.", "Three here."}));
}

TEST(Jump, bookmarks_of_the_goal_come_and_those_passed_over_do_not) {
    const std::string text =
        "<speak><mark name=\"Ba\"/>One <mark name=\"Bb\"/>here. <mark name=\"Bc\"/>Two here. <mark "
        "name=\"Bd\"/>Three <mark name=\"Be\"/>here.<mark name=\"Bf\"/></speak>";
    EXPECT_EQ(jump_at(text, "One", 2).marks(), (Texts{"Bd", "Be", "Bf"}));
    EXPECT_EQ(jump_at(text, "Three", -1).marks(), (Texts{"Bc", "Bd", "Be", "Bf"}));
    EXPECT_EQ(jump_at(text, "Three", 0).marks(), (Texts{"Bd", "Be", "Bf"}));
}

TEST(Jump, out_of_a_pause_counts_from_the_sentence_that_it_leads_to) {
    const std::string text = "<speak>One. <mark name=\"Bpause\"/><break time=\"5s\"/>Two. Three.</speak>";
    EXPECT_EQ(jump_at(text, "Bpause", 1).words(), Texts{"Three"});
    EXPECT_EQ(jump_at(text, "Bpause", -1).words(), (Texts{"One", "Two", "Three"}));
}

TEST(Jump, prosody_volume_and_pitch_hold_at_the_goal) {
    const std::string text =
        "<speak>One here. <prosody volume=\"25\" pitch=\"+50%\" range=\"low\">Two here. <emphasis>Three "
        "here.</emphasis></prosody> Four here.</speak>";
    const Speech whole = speak(text);
    for (const std::int32_t count : {1, 2, 3}) {
        const Speech jumped = jump_at(text, "One", count);
        EXPECT_TRUE(std::equal(jumped.samples.rbegin(), jumped.samples.rend() - cross_fade, whole.samples.rbegin()))
            << count;
        EXPECT_EQ(jumped.sentences().size(), 4u - static_cast<unsigned>(count));
    }
}
