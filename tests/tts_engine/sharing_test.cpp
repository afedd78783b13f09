// Several voices at once, and how little is computed ahead.
#include <chrono>
#include <memory>
#include <thread>

#include "speech.h"
#include "test_file.h"

namespace {

struct Job {
    const char* voice;
    std::string document;
};

// Speech of different voices, rates and languages, several sentences each.
std::vector<Job> jobs() {
    return {{"en-us-22i", document_of("Hello there. This is the first voice, and it speaks at its usual rate.")},
            {"en-us-f-22i",
             document_of("<prosody rate=\"1.60\">A second voice. It is in a hurry, all the time.</prosody>")},
            {"de-22i", document_of("Guten Tag. Diese Stimme spricht Deutsch, und zwar am 3. Mai um 17:45 Uhr.")},
            {"fr-22i", document_of("Bonjour. Cette voix parle français, <prosody volume=\"50\">tout bas.</prosody>")},
            {"en-gb-22i",
             document_of("Good day. <lang xml:lang=\"es\">Buenos días.</lang> And <break time=\"100ms\"/> back.")},
            {"ru-22i", document_of("Добрый день. Этот голос говорит по-русски.")},
            {"en-us-22i", document_of("<prosody pitch=\"+40%\">A voice of higher pitch. It says little.</prosody>")},
            {"zh-22i", document_of("你好，世界。再见。")}};
}

}  // namespace

TEST(Sharing, thirty_two_voices_at_once_sound_as_each_alone) {
    const std::vector<Job> all = jobs();
    std::vector<Speech> alone;
    for (const Job& job : all) {
        const TestVoice voice(job.voice);
        alone.push_back(speak(voice, job.document));
    }
    std::vector<Speech> together(32);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < together.size(); ++i) {
        threads.emplace_back([&, i] {
            const Job& job = all[i % all.size()];
            const TestVoice voice(job.voice);
            together[i] = speak(voice, job.document);
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (std::size_t i = 0; i < together.size(); ++i) {
        const Speech& expected = alone[i % all.size()];
        EXPECT_TRUE(together[i].samples == expected.samples) << "thread " << i;
        EXPECT_EQ(together[i].events, expected.events) << "thread " << i;
    }
}

TEST(Sharing, streamers_of_one_thread_take_turns_at_each_record) {
    const std::vector<Job> all = jobs();
    std::vector<std::unique_ptr<TestVoice>> voices;
    std::vector<tts_streamer> streamers;
    std::vector<Speech> heard(all.size());
    for (const Job& job : all) {
        voices.push_back(std::make_unique<TestVoice>(job.voice));
        streamers.push_back(tts_streamer_start(*voices.back(), job.document.c_str(), -1.0f));
    }
    for (bool any = true; any;) {
        any = false;
        for (std::size_t i = 0; i < all.size(); ++i) {
            tts_wave* wave = tts_streamer_synth(streamers[i], 2205);
            if (wave == nullptr) continue;
            any = true;
            take_record(heard[i], *wave, all[i].document, 2205);
            tts_wave_delete(wave);
        }
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        tts_streamer_stop(streamers[i]);
        const Speech alone = speak(*voices[i], all[i].document);
        EXPECT_TRUE(heard[i].samples == alone.samples) << i;
        EXPECT_EQ(heard[i].events, alone.events) << i;
    }
}

// Each first sound takes espeak-ng away from the long sentence, at another place of it each time.
TEST(Sharing, sentence_that_others_begin_to_speak_beside_sounds_as_alone) {
    std::string text;
    while (text.size() < 250) text += "one word and another, then ";
    const std::string document = document_of(text + "<mark name=\"Bend\"/>the end.");
    const std::string hello = document_of("<lang xml:lang=\"de\">Guten Tag.</lang> And hello.");
    for (const char* name : {"en-us-22i", "fr-22i"}) {
        const TestVoice voice(name), other("en-gb-22i");
        const Speech alone = speak(voice, document);
        const Speech alone_hello = speak(other, hello);
        Speech heard;
        tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
        for (int i = 0;; ++i) {
            tts_wave* wave = tts_streamer_synth(streamer, 2205);
            if (wave == nullptr) break;
            take_record(heard, *wave, document, 2205);
            tts_wave_delete(wave);
            const bool same = i % 13 != 0 || speak(other, hello) == alone_hello;
            EXPECT_TRUE(same) << i;
        }
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
        EXPECT_TRUE(heard.samples == alone.samples) << name;
        EXPECT_EQ(heard.events, alone.events) << name;
    }
}

TEST(Sharing, first_sounds_of_many_threads_leave_all_speech_as_it_is) {
    const std::string long_document =
        document_of("This sentence has some words, and others, and a few more of them yet.");
    const std::string hello = document_of("Hello.");
    const TestVoice voice;
    const Speech alone = speak(voice, long_document), alone_hello = speak(voice, hello);
    std::vector<std::thread> threads;
    std::vector<int> wrong(8);
    for (std::size_t i = 0; i < wrong.size(); ++i) {
        threads.emplace_back([&, i] {
            const TestVoice own;
            for (int k = 0; k < 6; ++k)
                wrong[i] += i % 2 == 0 ? !(speak(own, long_document) == alone) : !(speak(own, hello) == alone_hello);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, std::vector<int>(8));
}

TEST(Sharing, same_document_sounds_the_same_whatever_came_before) {
    const TestVoice voice;
    const std::string document = document_of("This sentence is spoken twice, with others between.");
    const Speech first = speak(voice, document);
    speak(voice, document_of("<prosody rate=\"3.00\" pitch=\"+20%\">Something else!</prosody>"));
    const TestVoice other("en-us-f-22i");
    speak(other, document_of("And another voice."));
    EXPECT_EQ(speak(voice, document), first);
}

TEST(Streaming, first_record_of_a_long_document_comes_as_soon) {
    std::string body;
    for (int i = 0; i < 100000; ++i) body += "This is one more sentence of the text. ";
    const std::string document = document_of(body);
    const TestVoice voice;
    const auto start = std::chrono::steady_clock::now();
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    tts_wave* wave = tts_streamer_synth(streamer, 2205);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    ASSERT_NE(wave, nullptr);
    EXPECT_GT(wave->sample_count, 0u);
    EXPECT_LT(time.count(), 0.5);  // reading all of it takes longer than that by far
    tts_wave_delete(wave);
    tts_streamer_stop(streamer);
}

TEST(Streaming, first_record_comes_before_the_sentence_is_done) {
    const Speech speech =
        speak("<speak>This is a sentence that takes several seconds, since it goes on for a while.</speak>");
    ASSERT_GT(speech.record_sizes.size(), 10u);
    EXPECT_LE(speech.record_sizes[0], 1323u);
}

TEST(Streaming, text_without_blanks_is_spoken_in_pieces) {
    const std::string document = "<speak>" + std::string(5000, 'a') + "</speak>";
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    tts_wave* wave = tts_streamer_synth(streamer, 2205);
    ASSERT_NE(wave, nullptr);
    tts_wave_delete(wave);
    tts_streamer_stop(streamer);
}

// espeak-ng's Klatt generators keep a flutter and a noise of their own; the last two are SpeechPlayer's.
TEST(Sharing, variants_sound_the_same_whatever_was_left_before) {
    const std::string document = "<speak>A second sentence.</speak>";
    for (const std::string variant : {"m1", "whisper", "croak", "klatt", "klatt4", "UniRobot", "caleb"}) {
        const TestFile file("22i", "language = en-us\nvariant = " + variant + "\n");
        const TestVoice voice(TTS_TEST_DATA, file.name());
        const Speech alone = speak(voice, document);
        for (int records = 0; records < 12; ++records) {
            tts_streamer streamer = tts_streamer_start(voice, "<speak>The first, a longer one; sunny.</speak>", -1.0f);
            for (int i = 0; i < records; ++i) tts_wave_delete(tts_streamer_synth(streamer, 1500));
            EXPECT_EQ(tts_streamer_stop(streamer), 0);
            EXPECT_EQ(speak(voice, document), alone) << variant << " after " << records << " records";
        }
    }
}
