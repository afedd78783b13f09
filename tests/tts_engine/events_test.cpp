// Marks, visemes and the records that carry events.
#include <algorithm>
#include <set>

#include "speech.h"

TEST(Marks, come_in_order_with_the_words) {
    const Speech speech = speak(
        "<speak><mark name=\"Ba\"/>One <mark name=\"Bb\"/>two<mark name=\"Bc\"/><mark name=\"Bd\"/> three.<mark "
        "name=\"Be\"/></speak>");
    Texts order;
    for (const HeardEvent& event : speech.events) {
        if (event.type == TTS_EVENT_MARK) order.push_back(event.label);
        if (event.type == TTS_EVENT_WORD) order.push_back(event.text);
    }
    EXPECT_EQ(order, (Texts{"Ba", "One", "Bb", "two", "Bc", "Bd", "three", "Be"}));
    EXPECT_EQ(speech.sample_of("Ba"), 0u);
    EXPECT_EQ(speech.sample_of("Bb"), speech.sample_of("two"));
    EXPECT_EQ(speech.sample_of("Bc"), speech.sample_of("three"));
}

TEST(Marks, do_not_change_the_audio) {
    const Speech plain = speak("<speak>This is one sentence. Here is more.</speak>");
    const Speech marked = speak(
        "<speak>This <mark name=\"B1\"/>is one<mark name=\"B2\"/> sentence.<mark name=\"B3\"/> Here is more.</speak>");
    EXPECT_TRUE(marked.samples == plain.samples);
    EXPECT_EQ(marked.marks(), (Texts{"B1", "B2", "B3"}));
}

TEST(Marks, behind_each_of_many_sentences_all_arrive) {
    std::string body;
    Texts expected;
    for (int i = 0; i < 20; ++i) {
        expected.push_back("B" + std::to_string(i));
        body += "Number " + std::to_string(i) + ".<mark name=\"" + expected.back() + "\"/> ";
    }
    const Speech speech = speak("<speak>" + body + "</speak>");
    EXPECT_EQ(speech.marks(), expected);
    EXPECT_EQ(speech.words().size(), 40u);
}

TEST(Marks, name_comes_back_as_meant) {
    EXPECT_EQ(speak("<speak><mark name='B it&apos;s &amp; \"q\"'/>Hi<mark name=\"Bé😀\"/></speak>").marks(),
              (Texts{"B it's & \"q\"", "Bé😀"}));
}

TEST(Marks, without_a_name_have_an_empty_label) { EXPECT_EQ(speak("<speak><mark/>Hi</speak>").marks(), Texts{""}); }

TEST(Marks, attribute_with_an_undeclared_prefix_is_no_error) {
    EXPECT_EQ(speak("<speak><mark name=\"B1\" qm:invisible=\"true\"/>Hi</speak>").marks(), Texts{"B1"});
}

TEST(Marks, alone_in_a_document_arrive_without_audio) {
    const Speech speech = speak("<speak><mark name=\"Bonly\"/></speak>");
    EXPECT_EQ(speech.marks(), Texts{"Bonly"});
    EXPECT_TRUE(speech.samples.empty());
}

TEST(Marks, new_pitch_starts_a_record) {
    const TestVoice voice;
    const std::string document = document_of("One two three <mark name=\"P10\"/>four five six");
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    bool found = false;
    while (tts_wave* wave = tts_streamer_synth(streamer, 2205)) {
        for (std::uint32_t i = 0; i < wave->event_count; ++i) {
            const tts_wave_event& event = wave->events[i];
            if (event.type != TTS_EVENT_MARK || std::string(event.label) != "P10") continue;
            found = true;
            EXPECT_EQ(event.sample_offset, 0u);
        }
        tts_wave_delete(wave);
    }
    tts_streamer_stop(streamer);
    EXPECT_TRUE(found);
}

TEST(Marks, whose_name_begins_with_p_and_is_no_number_start_no_record) {
    const TestVoice voice;
    const auto sizes_with = [&](const std::string& name) {
        return speak(voice, document_of("One two three <mark name=\"" + name + "\"/>four five six")).record_sizes;
    };
    const auto usual = sizes_with("Bpage");
    for (const char* name : {"Page1", "P", "P-", "P1a", "Price 5"}) EXPECT_EQ(sizes_with(name), usual) << name;
    EXPECT_NE(sizes_with("P10"), usual);
}

TEST(Marks, whose_name_begins_with_p_arrive_without_audio_if_they_are_no_number) {
    EXPECT_EQ(speak("<speak><mark name=\"Page1\"/><mark name=\"P1\"/></speak>").marks(), Texts{"Page1"});
}

TEST(Visemes, begin_and_end_with_silence) {
    const Texts visemes = speak("<speak>Hello. Good bye</speak>").visemes();
    ASSERT_GT(visemes.size(), 4u);
    EXPECT_EQ(visemes.front(), "sil");
    EXPECT_EQ(visemes.back(), "sil");
}

TEST(Visemes, follow_the_sounds) {
    // m i (a pause closes the mouth)
    EXPECT_EQ(speak("<speak>Me.</speak>").visemes(), (Texts{"sil", "p", "i", "sil"}));
    // f a t @ ("father": voiced th and the vowel of schwa)
    EXPECT_EQ(speak("<speak>Father.</speak>").visemes(), (Texts{"sil", "f", "a", "T", "@", "sil"}));
}

TEST(Visemes, have_labels_that_are_known_in_every_language) {
    const std::set<std::string> known{"sil", "@", "B", "E", "J", "O", "S", "T", "a", "e",
                                      "f",   "i", "k", "o", "p", "r", "s", "t", "u"};
    const std::pair<const char*, const char*> texts[] = {
        {"en-us-22i", "The quick brown fox judges a thing of vision and beige joy."},
        {"de-22i", "Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich."},
        {"fr-22i", "Portez ce vieux whisky au juge blond qui fume."},
        {"es-22i", "El pingüino Wenceslao hizo kilómetros bajo exhaustiva lluvia."},
        {"ru-22i", "Съешь же ещё этих мягких французских булок."},
        {"ar-22i", "صِف خَلقَ خَودِ كَمِثلِ الشَمسِ إِذ بَزَغَت"},
        {"hi-22i", "ऋषियों को सताने वाले दुष्ट राक्षसों के राजा"},
        {"zh-22i", "视野无限广，窗外有蓝天。"},
    };
    for (const auto& [name, text] : texts) {
        const TestVoice voice(name);
        const Texts visemes = speak(voice, "<speak>" + std::string(text) + "</speak>").visemes();
        EXPECT_GT(visemes.size(), 10u) << name;
        for (const std::string& label : visemes) EXPECT_EQ(known.count(label), 1u) << name << ": " << label;
    }
}

TEST(Records, hold_at_most_what_was_asked_for) {
    const TestVoice voice;
    const std::string document = "<speak>One sentence. And <break time=\"500ms\"/> another one.</speak>";
    const Speech usual = speak(voice, document, 2205);
    for (const std::uint32_t asked : {1u, 7u, 441u, 100000u}) {
        const Speech speech = speak(voice, document, asked);  // checks each record
        EXPECT_TRUE(speech.samples == usual.samples) << asked;
        EXPECT_EQ(speech.events, usual.events) << asked;
    }
}

TEST(Records, of_stretched_speech_do_not_depend_on_what_was_asked_for) {
    const TestVoice voice;
    const std::string document =
        "<speak><prosody rate=\"0.2\">One sentence.</prosody> And <prosody rate=\"4\">another one "
        "here.</prosody></speak>";
    const Speech usual = speak(voice, document, 2205);
    for (const std::uint32_t asked : {1u, 441u, 100000u}) {
        const Speech speech = speak(voice, document, asked);
        EXPECT_TRUE(speech.samples == usual.samples) << asked;
        EXPECT_EQ(speech.events, usual.events) << asked;
    }
}

TEST(Records, of_no_samples_asked_for_still_bring_the_text_to_its_end) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, "<speak>Hi.</speak>", -1.0f);
    int records = 0;
    while (tts_wave* wave = tts_streamer_synth(streamer, 0)) {
        tts_wave_delete(wave);
        ASSERT_LT(++records, 100);
    }
    tts_streamer_stop(streamer);
    EXPECT_GT(records, 0);
}

TEST(Records, end_stays_the_end) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, "<speak>Hi.</speak>", -1.0f);
    while (tts_wave* wave = tts_streamer_synth(streamer, 2205)) tts_wave_delete(wave);
    EXPECT_EQ(tts_streamer_synth(streamer, 2205), nullptr);
    EXPECT_EQ(tts_streamer_synth(streamer, 2205), nullptr);
    tts_streamer_stop(streamer);
}
