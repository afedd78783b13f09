// Memory that runs out at each place of the synthesiser in turn, once and for good: a failure with a message or speech,
// nothing leaked, and the next call works.
//
// All allocations fail but those of espeak-ng itself (c_libraries.cpp).
#include <fstream>
#include <functional>
#include <span>

#include "../speech.h"
#include "../test_file.h"
#include "support/failing_new.h"

namespace {

using failing_new::Mode;

constexpr Mode modes[] = {Mode::once, Mode::for_good};

// Of every kind that allocates: texts that fit into no string object, marks, another language, IPA, an alias, a change
// of pitch and of speed inside a sentence, a word of the lexicon, a pause.
const std::string document =
    "<speak version=\"1.0\" xml:lang=\"en\"><mark name=\"P0\"/>Hi "
    "<mark name=\"Ba bookmark that does not fit into a string object\"/>Nelva. <lang xml:lang=\"de\">Tag</lang> "
    "<phoneme alphabet=\"ipa\" ph=\"wɪn\">Nguyen</phoneme> <mark name=\"P3\"/><prosody pitch=\"+50%\" "
    "rate=\"3.00\">go</prosody> <sub alias=\"aliases are long\">W3C</sub> <say-as "
    "interpret-as=\"cardinal\">21</say-as>.<break time=\"20ms\"/></speak>";
const Texts words = {"Hi", "Nelva", "Tag", "Nguyen", "go", "W3C", "21"};

const std::string lexicon =
    "<lexicon version=\"1.0\" xmlns=\"http://www.w3.org/2005/01/pronunciation-lexicon\" alphabet=\"ipa\" "
    "xml:lang=\"en\"><lexeme><grapheme>Nelva</grapheme><phoneme>nɛlva</phoneme></lexeme><lexeme><grapheme>a grapheme "
    "of "
    "several words, too long for a string object</grapheme><alias>and an alias that does not fit "
    "either</alias></lexeme>"
    "</lexicon>";

// What a call of the library gives, with its allocations counted and failing.
template <typename Call>
auto watched(Call call) {
    const failing_new::Watched scope;
    return call();
}

// Lets allocation after allocation of `action` fail, until it asks for no more of them. With a step above 1 the two
// modes take turns at them.
void for_each_allocation(Mode mode, const std::function<void()>& action, long step = 1) {
    failing_new::start();
    action();  // what is made once and kept, is
    const long live = failing_new::live_blocks();
    long nth = (mode == Mode::once ? 1 : 1 + step / 2) - step;
    do {
        nth += step;
        failing_new::start(nth, mode);
        action();
        failing_new::allow_all();
        ASSERT_EQ(failing_new::live_blocks(), live) << "allocation " << nth;
        ASSERT_FALSE(testing::Test::HasFailure()) << "allocation " << nth;
    } while (failing_new::count().allocations >= nth);
}

// After a failure: memory is there again.
void expect_message() {
    EXPECT_STRNE(tts_errmsg(), "");
    failing_new::allow_all();
}

// Hears the rest and goes on behind failures, the second time with memory. `undisturbed` is what comes if nothing
// fails; whatever fails is told.
Speech hear_all(tts_streamer streamer, const std::string& text, const Speech& undisturbed) {
    Speech speech;
    int failures = 0;
    while (failures < 3) {
        if (tts_wave* wave = watched([=] { return tts_streamer_synth(streamer, 2205); })) {
            take_record(speech, *wave, text, 2205);
            tts_wave_delete(wave);
        } else if (*tts_errmsg() == '\0') {
            break;
        } else if (++failures == 2) {
            failing_new::allow_all();
        }
    }
    EXPECT_STREQ(tts_errmsg(), "");
    EXPECT_TRUE(failures > 0 || speech == undisturbed);
    return speech;
}

// Each word where it comes first: behind a failure a sentence may begin again.
Texts words_of(const Speech& speech) {
    Texts result;
    for (const std::string& word : speech.words())
        if (std::find(result.begin(), result.end(), word) == result.end()) result.push_back(word);
    return result;
}

tts_streamer start(tts_voice voice, const std::string& text) {
    tts_streamer streamer = tts_streamer_start(voice, text.c_str(), -1.0f);
    EXPECT_NE(streamer, nullptr) << tts_errmsg();
    return streamer;
}

// As fast as can be, since it speaks a thousand times.
class FastVoice {
public:
    operator tts_voice() const { return voice_; }

private:
    TestFile file_{"22i", "language = en-us\nrate = 450\nsentence-pause = 20\n"};
    TestVoice voice_{TTS_TEST_DATA, file_.name()};
};

std::string voice_file(const std::string& name) { return std::string(TTS_TEST_VOICES) + "/" + name; }

class OutOfMemory : public testing::TestWithParam<Mode> {};

}  // namespace

TEST_P(OutOfMemory, in_create) {
    for_each_allocation(GetParam(), [] {
        tts_handle library = watched(tts_create);
        if (library == nullptr) expect_message();
        tts_destroy(library);
    });
}

namespace {

void load_a_voice() {
    const std::string file = voice_file("en-us-f-22i");
    tts_handle library = tts_create();
    const auto load = [&] { return tts_load_voice(library, TTS_TEST_DATA, file.c_str()); };
    tts_voice voice = watched(load);
    if (voice == nullptr) {
        expect_message();
        voice = load();
    }
    EXPECT_NE(voice, nullptr) << tts_errmsg();
    tts_unload_voice(voice);
    tts_destroy(library);
}

}  // namespace

// It allocates some thousand times, alike for each of espeak-ng's voices.
TEST_P(OutOfMemory, in_load_voice_that_reads_the_data) { for_each_allocation(GetParam(), load_a_voice, 19); }

TEST_P(OutOfMemory, in_load_voice_beside_another) {
    const TestVoice other;
    for_each_allocation(GetParam(), load_a_voice);
    EXPECT_EQ(speak(other, "<speak>Hello</speak>").words(), Texts{"Hello"});
}

// The file is another one each time, of the same size: one that is known would not be parsed.
TEST_P(OutOfMemory, in_dict_load) {
    const TestVoice voice;
    const TestFile file("lexicon.pls", lexicon);
    const std::string name = file.name();
    const auto load = [&] { return tts_dict_load(voice, name.c_str()); };
    std::string text = lexicon;
    char& letter = text[text.find("elva</grapheme>")];
    for_each_allocation(GetParam(), [&] {
        letter = letter == 'e' ? 'i' : 'e';
        std::ofstream(name, std::ios::binary) << text;
        if (watched(load) != 0) {
            expect_message();
            EXPECT_EQ(load(), 0) << tts_errmsg();
        }
        tts_dict_cleanup(voice);
    });
}

TEST_P(OutOfMemory, in_start) {
    const TestVoice voice("en-us-16i-mf");  // whose resampler has memory of its own
    const auto begin = [&] { return tts_streamer_start(voice, document.c_str(), -1.0f); };
    for_each_allocation(GetParam(), [&] {
        tts_streamer streamer = watched(begin);
        if (streamer == nullptr) {
            expect_message();
            streamer = begin();
        }
        EXPECT_NE(streamer, nullptr) << tts_errmsg();
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
    });
}

TEST_P(OutOfMemory, in_synth) {
    const FastVoice voice;
    const TestFile file("lexicon.pls", lexicon);
    ASSERT_EQ(tts_dict_load(voice, file.name().c_str()), 0);
    const Speech undisturbed = speak(voice, document);
    for_each_allocation(GetParam(), [&] {
        tts_streamer streamer = start(voice, document);
        EXPECT_EQ(words_of(hear_all(streamer, document, undisturbed)), words);
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
    });
}

// What the library keeps of languages and their sounds goes with its data, so that each time it is made anew.
TEST_P(OutOfMemory, in_synth_that_asks_for_languages_and_sounds_for_the_first_time) {
    const std::string text =
        "<speak><lang xml:lang=\"de-XX\">Tag</lang> <lang xml:lang=\"xx\">x</lang> <phoneme "
        "ph=\"wɪn\">win</phoneme></speak>";
    const Speech undisturbed = speak(FastVoice(), text);
    for_each_allocation(
        GetParam(),
        [&] {
            const FastVoice voice;
            tts_streamer streamer = start(voice, text);
            EXPECT_EQ(words_of(hear_all(streamer, text, undisturbed)), (Texts{"Tag", "x", "win"}));
            EXPECT_EQ(tts_streamer_stop(streamer), 0);
        },
        3);
}

TEST_P(OutOfMemory, in_jump) {
    const FastVoice voice;
    const std::string text = "<speak><mark name=\"P1\"/>One. <mark name=\"P2\"/>Two. Three.</speak>";
    for (const std::int32_t count : {2, 0, 100}) {
        for_each_allocation(GetParam(), [&] {
            tts_streamer streamer = start(voice, text);
            tts_wave_delete(tts_streamer_synth(streamer, 2205));
            if (watched([=] { return tts_streamer_jump(streamer, count); }) != 0) {
                expect_message();
                EXPECT_EQ(tts_streamer_jump(streamer, count), 0) << tts_errmsg();
            }
            failing_new::allow_all();
            Speech rest;
            hear_rest(rest, streamer, text);
            EXPECT_EQ(rest.words(), count == 0 ? Texts({"One", "Two", "Three"}) : Texts{"Three"});
            EXPECT_EQ(rest.marks(), count == 0 ? Texts({"P1", "P2"}) : Texts{"P2"});
            EXPECT_EQ(tts_streamer_stop(streamer), 0);
        });
    }
}

TEST_P(OutOfMemory, in_jump_leaves_the_sentence_to_begin_again) {
    const FastVoice voice;
    const std::string text = "<speak>One. Two. Three.</speak>";
    for_each_allocation(GetParam(), [&] {
        tts_streamer streamer = start(voice, text);
        Speech speech;
        while (speech.words() != Texts{"One", "Two"}) {
            tts_wave* wave = tts_streamer_synth(streamer, 2205);
            take_record(speech, *wave, text, 2205);
            tts_wave_delete(wave);
        }
        const bool jumped = watched([=] { return tts_streamer_jump(streamer, -1); }) == 0;
        failing_new::allow_all();
        Speech rest;
        hear_rest(rest, streamer, text);
        EXPECT_EQ(rest.words(), jumped ? Texts({"One", "Two", "Three"}) : Texts({"Two", "Three"}));
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
    });
}

// What one voice has begun is finished by the next one that speaks. If memory runs out there, both go on.
TEST_P(OutOfMemory, in_synth_that_finishes_anothers_sentence) {
    const FastVoice one;
    const FastVoice other;
    const std::string first = "<speak>A sentence of some words. Another.</speak>";
    const std::string second = "<speak>Hello.</speak>";
    const auto begin = [&] {
        tts_streamer streamer = start(one, first);
        tts_wave_delete(tts_streamer_synth(streamer, 100));
        return streamer;
    };
    tts_streamer alone = begin();
    Speech rest_of_first;
    hear_rest(rest_of_first, alone, first);
    tts_streamer_stop(alone);
    const Speech hello = speak(other, second);
    for_each_allocation(GetParam(), [&] {
        tts_streamer begun = begin();
        tts_streamer streamer = start(other, second);
        EXPECT_EQ(words_of(hear_all(streamer, second, hello)), Texts{"Hello"});
        failing_new::allow_all();
        const Texts rest = words_of(hear_all(begun, first, rest_of_first));
        EXPECT_EQ(Texts(rest.end() - 2, rest.end()), (Texts{"words", "Another"}));
        EXPECT_EQ(tts_streamer_stop(begun), 0);
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
    });
}

TEST(OutOfMemoryForGood, does_not_keep_anything_from_being_given_back) {
    const TestFile file("lexicon.pls", lexicon);
    tts_handle library = tts_create();
    tts_voice voice = tts_load_voice(library, TTS_TEST_DATA, voice_file("en-us-22i").c_str());
    ASSERT_EQ(tts_dict_load(voice, file.name().c_str()), 0);
    tts_streamer streamer = start(voice, document);
    tts_wave* wave = tts_streamer_synth(streamer, 2205);
    failing_new::start(1, Mode::for_good);
    EXPECT_EQ(watched([=] {
                  tts_wave_delete(wave);
                  tts_dict_cleanup(voice);
                  const std::int32_t result = tts_streamer_stop(streamer);
                  tts_unload_voice(voice);
                  tts_destroy(library);
                  return result;
              }),
              0);
    failing_new::allow_all();
    EXPECT_NE(tts_streamer_stop(streamer), 0);
    EXPECT_EQ(tts_streamer_start(voice, document.c_str(), -1.0f), nullptr);
    EXPECT_EQ(tts_load_voice(library, TTS_TEST_DATA, voice_file("en-us-22i").c_str()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Fails, OutOfMemory, testing::ValuesIn(modes),
                         [](const auto& info) { return std::string(info.param == Mode::once ? "once" : "for_good"); });
