// The same text has the same samples and the same events, whatever record size the caller asks for.
#include <gtest/gtest.h>

#include <random>

#include "speech.h"
#include "test_file.h"

namespace {

// Speaks with a size for each record from `sizes`, in turn.
Speech speak_in(tts_voice voice, const std::string& document, const std::vector<std::uint32_t>& sizes) {
    Speech speech;
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    EXPECT_NE(streamer, nullptr) << tts_errmsg();
    for (std::size_t i = 0;; ++i) {
        const std::uint32_t asked = sizes[i % sizes.size()];
        tts_wave* wave = tts_streamer_synth(streamer, asked);
        if (wave == nullptr) break;
        take_record(speech, *wave, document, asked);
        tts_wave_delete(wave);
    }
    EXPECT_STREQ(tts_errmsg(), "");
    EXPECT_EQ(tts_streamer_stop(streamer), 0);
    speech.record_sizes.clear();  // they are what differs
    return speech;
}

std::vector<std::uint32_t> random_sizes(std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<std::uint32_t> sizes;
    for (int i = 0; i < 200; ++i) sizes.push_back(1 + random() % (random() % 8 == 0 ? 20000 : 900));
    return sizes;
}

void expect_same_in_all_sizes(tts_voice voice, const std::string& document, const std::string& what) {
    // What is spoken before is the same for all: a Klatt voice's pitch still differs a little after another voice's
    // text that ends in a voiced consonant.
    speak(voice, document);
    const Speech usual = speak_in(voice, document, {2205});
    EXPECT_FALSE(usual.samples.empty()) << what;
    const std::vector<std::vector<std::uint32_t>> mixes = {
        {7}, {64}, {441}, {100000}, random_sizes(1), random_sizes(2)};
    for (const auto& sizes : mixes)
        EXPECT_TRUE(speak_in(voice, document, sizes) == usual) << what << ", records of " << sizes[0];
}

// Its one mark lies after the last sound, its rates and volumes change inside a sentence.
const char* const document =
    "<speak><mark name=\"P0\"/>One, <prosody rate=\"RATE\">two <prosody volume=\"loud\">three</prosody> four."
    "<break time=\"30ms\"/> Five</prosody> six! <emphasis>Seven?</emphasis> <mark name=\"Bend\"/></speak>";

std::string document_at(const std::string& rate) {
    std::string text = document;
    text.replace(text.find("RATE"), 4, rate);
    return text;
}

std::string voice_of(const std::string& language, const std::string& variant) {
    return "language = " + language + "\n" + (variant.empty() ? "" : "variant = " + variant + "\n");
}

}  // namespace

TEST(RecordSizes, every_rate_of_speech_and_of_samples_is_the_same_in_all) {
    for (const char* rate : {"0.2", "0.7", "1", "1.3", "5"})
        for (const char* name : {"22i", "16i-mf", "8v"}) {
            const TestFile file(name, voice_of("en-us", ""));
            const TestVoice voice(TTS_TEST_DATA, file.name());
            expect_same_in_all_sizes(voice, document_at(rate), std::string(rate) + " " + name);
        }
}

TEST(RecordSizes, single_samples_hold_the_same_speech) {
    const TestVoice voice;
    const std::string text = "<speak>So it <prosody rate=\"0.3\">is.</prosody></speak>";
    EXPECT_TRUE(speak_in(voice, text, {1}) == speak_in(voice, text, {2205}));
}

// The Klatt generators, SpeechPlayer (klatt6), an echo, whispering, a rough voice.
TEST(RecordSizes, every_kind_of_generator_sounds_the_same_in_all) {
    for (const char* variant : {"klatt", "klatt2", "klatt3", "klatt4", "klatt5", "klatt6", "f3", "Storm", "whisper",
                                "croak", "UniRobot", "grandpa"})
        for (const char* rate : {"0.3", "1", "2.2"}) {
            const TestFile file("22i", voice_of("en-us", variant));
            const TestVoice voice(TTS_TEST_DATA, file.name());
            expect_same_in_all_sizes(voice, document_at(rate), std::string(variant) + " " + rate);
        }
}

TEST(RecordSizes, languages_sound_the_same_in_all) {
    const char* const texts[][2] = {{"de", "Drei, vier. <prosody rate=\"0.4\">Am 3. Mai!</prosody> Gut"},
                                    {"fr-fr", "Bonjour, <emphasis>comment</emphasis> allez-vous ? Bien."},
                                    {"ru", "Раз, <prosody volume=\"soft\">два</prosody>, три. Да"},
                                    {"cmn", "你好，世界。再见"},
                                    {"hi", "नमस्ते दुनिया। एक दो"},
                                    {"ja", "こんにちは、せかい。"},
                                    {"ar", "مرحبا، بالعالم."}};
    for (const auto& [language, text] : texts) {
        const TestFile file("16i-mf", voice_of(language, ""));
        const TestVoice voice(TTS_TEST_DATA, file.name());
        expect_same_in_all_sizes(voice, "<speak>" + std::string(text) + " <mark name=\"Bend\"/></speak>", language);
    }
}

// Another voice speaks in between, and so brings this voice's sentence to its end.
TEST(RecordSizes, another_voice_in_between_changes_nothing) {
    for (const char* variant : {"", "klatt", "klatt6"}) {
        const TestFile file("22i", voice_of("en-us", variant));
        const TestVoice voice(TTS_TEST_DATA, file.name());
        const TestVoice other("de-22i");
        const std::string text = document_at("0.7");
        const Speech alone = speak_in(voice, text, {2205});
        Speech speech;
        tts_streamer streamer = tts_streamer_start(voice, text.c_str(), -1.0f);
        while (tts_wave* wave = tts_streamer_synth(streamer, 700)) {
            take_record(speech, *wave, text, 700);
            tts_wave_delete(wave);
            speak(other, "Nein.");
        }
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
        speech.record_sizes.clear();
        EXPECT_TRUE(speech == alone) << variant;
    }
}

TEST(RecordSizes, an_event_after_the_last_sample_is_in_a_record_without_samples) {
    for (const char* rate : {"0.2", "0.6", "1", "1.7", "5"})
        for (const std::uint32_t asked : {1u, 7u, 441u, 2205u, 100000u}) {
            const TestVoice voice;
            const std::string text = "<speak><prosody rate=\"" + std::string(rate) +
                                     "\">So it is<mark name=\"Bin\"/></prosody> <mark name=\"Bend\"/></speak>";
            tts_streamer streamer = tts_streamer_start(voice, text.c_str(), -1.0f);
            std::uint32_t samples_with_end = 99;
            std::uint32_t offset_of_end = 99;
            while (tts_wave* wave = tts_streamer_synth(streamer, asked)) {
                for (std::uint32_t i = 0; i < wave->event_count; ++i) {
                    if (wave->events[i].label == nullptr || std::string(wave->events[i].label) != "Bend") continue;
                    samples_with_end = wave->sample_count;
                    offset_of_end = wave->events[i].sample_offset;
                }
                tts_wave_delete(wave);
            }
            EXPECT_EQ(tts_streamer_stop(streamer), 0);
            EXPECT_EQ(samples_with_end, 0u) << rate << ", records of " << asked;
            EXPECT_EQ(offset_of_end, 0u) << rate << ", records of " << asked;
        }
}
