// Voices of every rate, and the silence around sentences.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>

#include "speech.h"
#include "test_file.h"

namespace {

const char* const text = "One two three. Four, <mark name=\"here\"/>five? Six!";

// How many samples at the front, or the back, are silent.
std::size_t silent_start(const Speech& speech) {
    std::size_t i = 0;
    while (i < speech.samples.size() && speech.samples[i] == 0) ++i;
    return i;
}

std::size_t silent_end(const Speech& speech) {
    std::size_t i = 0;
    while (i < speech.samples.size() && speech.samples[speech.samples.size() - 1 - i] == 0) ++i;
    return i;
}

Speech spoken(const std::string& settings, const std::string& document) {
    const TestFile file("22i", "language = en-us\n" + settings);
    const TestVoice voice(TTS_TEST_DATA, file.name());
    return speak(voice, document);
}

double milliseconds(std::size_t samples) { return 1000.0 * static_cast<double>(samples) / samples_per_second; }

}  // namespace

TEST(Rates, events_stand_at_the_same_time_at_every_rate) {
    const Speech usual = speak(document_of(text));
    for (const auto& [name, rate] : {std::pair{"16i-mf", 16000.0}, std::pair{"8v", 8000.0}}) {
        const TestFile file(name, "language = en-us\n");
        const TestVoice voice(TTS_TEST_DATA, file.name());
        const Speech speech = speak(voice, document_of(text));
        const double factor = rate / 22050;
        EXPECT_NEAR(static_cast<double>(speech.samples.size()), static_cast<double>(usual.samples.size()) * factor, 4);
        ASSERT_EQ(speech.events.size(), usual.events.size());
        for (std::size_t i = 0; i < usual.events.size(); ++i) {
            EXPECT_EQ(speech.events[i].text, usual.events[i].text);
            EXPECT_EQ(speech.events[i].label, usual.events[i].label);
            EXPECT_NEAR(static_cast<double>(speech.events[i].sample),
                        static_cast<double>(usual.events[i].sample) * factor, 4);
        }
        EXPECT_NEAR(speech.loudness() / usual.loudness(), 1, 0.2);
    }
}

TEST(Rates, records_of_any_size_hold_the_same_speech) {
    const TestFile file("8v", "language = en-us\n");
    const TestVoice voice(TTS_TEST_DATA, file.name());
    const Speech speech = speak(voice, document_of(text), 2205);
    for (const std::uint32_t asked : {7u, 800u, 100000u}) {
        const Speech other = speak(voice, document_of(text), asked);
        EXPECT_EQ(other.samples, speech.samples) << asked;
        EXPECT_EQ(other.events, speech.events) << asked;
    }
}

TEST(Rates, jumps_leave_positions_right) {
    const TestFile file("16i-mf", "language = en-us\n");
    const TestVoice voice(TTS_TEST_DATA, file.name());
    const std::string document = document_of("First one. Second one. Third one.");
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1);
    Speech speech;
    tts_wave* wave = tts_streamer_synth(streamer, 800);
    ASSERT_NE(wave, nullptr);
    take_record(speech, *wave, document, 800);
    tts_wave_delete(wave);
    EXPECT_EQ(tts_streamer_jump(streamer, 2), 0);
    const std::size_t before = speech.samples.size();
    hear_rest(speech, streamer, document, 800);
    tts_streamer_stop(streamer);
    EXPECT_EQ(speech.sentences(), (Texts{"First one.", "Third one."}));
    EXPECT_EQ(speech.sample_of("Third"), before);
}

TEST(Silence, speech_begins_at_once) {
    EXPECT_LT(milliseconds(silent_start(spoken("", "Hello."))), 1);
    EXPECT_LT(milliseconds(silent_start(spoken("", "So it is."))), 1);
}

TEST(Silence, behind_a_sentence_is_what_the_voice_says) {
    EXPECT_NEAR(milliseconds(silent_end(spoken("", "Hello."))), 250, 2);
    EXPECT_NEAR(milliseconds(silent_end(spoken("sentence-pause = 40", "Hello!"))), 40, 2);
    EXPECT_NEAR(milliseconds(silent_end(spoken("sentence-pause = 0", "Hello?"))), 0, 2);
    EXPECT_NEAR(milliseconds(silent_end(spoken("comma-pause = 70", "Hello,"))), 70, 2);
}

// espeak-ng itself is silent for more than half a second after this at a slow rate, which is left out as well.
TEST(Silence, behind_slow_speech_is_what_the_voice_says) {
    const std::string slow = "<speak><prosody rate=\"0.2\">He said: \"No.\"</prosody></speak>";
    EXPECT_NEAR(milliseconds(silent_end(spoken("sentence-pause = 300", slow))), 1500, 2);
    EXPECT_NEAR(milliseconds(silent_end(spoken("rate = 80\nsentence-pause = 100", slow))), 500, 2);
}

TEST(Silence, without_punctuation_there_is_none_at_the_end_but_one_between) {
    EXPECT_LT(milliseconds(silent_end(spoken("", "Hello"))), 2);
    const double alone = spoken("", "Hello").seconds();
    const double both = spoken("sentence-pause = 500", "<speak><p>Hello</p><p>Hello</p></speak>").seconds();
    EXPECT_NEAR(both, 2 * alone + 0.5, 0.005);
}

TEST(Silence, between_sentences_is_what_the_voice_says) {
    const double short_pauses = spoken("sentence-pause = 100", "One. Two. Three.").seconds();
    const double long_pauses = spoken("sentence-pause = 1100", "One. Two. Three.").seconds();
    EXPECT_NEAR(long_pauses - short_pauses, 3, 0.001);
}

TEST(Silence, between_paragraphs_is_longer_than_between_sentences) {
    const double sentences = spoken("", "<speak><s>One.</s><s>Two.</s></speak>").seconds();
    for (const char* text :
         {"<speak><p>One.</p><p>Two.</p></speak>", "<speak><p><s>One.</s></p><p><s>Two.</s></p></speak>",
          "<speak>One.<p>Two.</p></speak>", "<speak><p>One.</p>Two.</speak>", "One.\n\nTwo.",
          "<speak><s>One.</s>\n\n<s>Two.</s></speak>"})
        EXPECT_NEAR(spoken("", text).seconds() - sentences, 0.25, 0.001) << text;
}

TEST(Silence, between_paragraphs_is_what_the_voice_says) {
    const std::string text = "<speak><p>One.</p><p>Two.</p></speak>";
    const double sentences = spoken("", "<speak><s>One.</s><s>Two.</s></speak>").seconds();
    EXPECT_NEAR(spoken("paragraph-pause = 1250", text).seconds() - sentences, 1, 0.001);
    // But it is not shorter than between sentences.
    EXPECT_NEAR(spoken("paragraph-pause = 0", text).seconds() - sentences, 0, 0.001);
    // Faster speech has shorter ones.
    const std::string fast = "<speak><prosody rate=\"2\"><p>One.</p><p>Two.</p></prosody></speak>";
    EXPECT_NEAR(spoken("paragraph-pause = 1250", fast).seconds() - spoken("paragraph-pause = 250", fast).seconds(), 0.5,
                0.001);
}

TEST(Silence, between_paragraphs_does_not_need_punctuation) {
    const double alone = spoken("", "Hello").seconds();
    EXPECT_NEAR(spoken("", "<speak><p>Hello</p><p>Hello</p></speak>").seconds(), 2 * alone + 0.5, 0.005);
    EXPECT_NEAR(spoken("", "<speak><p>Hello,</p><p>Hello</p></speak>").seconds(), 2 * alone + 0.5, 0.02);
}

TEST(Silence, of_a_paragraph_is_not_at_the_start_or_the_end) {
    EXPECT_EQ(spoken("", "<speak>\n\n<p><p>Hello.</p></p>\n\n</speak>").samples.size(),
              spoken("", "<speak>Hello.</speak>").samples.size());
}

TEST(Silence, faster_speech_has_shorter_pauses) {
    const Speech speech = spoken("sentence-pause = 300", "<speak><prosody rate=\"2\">Hello.</prosody></speak>");
    EXPECT_NEAR(milliseconds(silent_end(speech)), 150, 2);
}

TEST(Silence, no_event_stands_in_what_was_left_out) {
    const Speech speech = spoken("sentence-pause = 0", "<speak>So it is. <mark name=\"end\"/></speak>");
    EXPECT_EQ(speech.events.back().label, "end") << testing::PrintToString(speech.events);
    EXPECT_EQ(speech.events.back().sample, speech.samples.size());
    EXPECT_EQ(speech.events.front().sample, 0u);
}
