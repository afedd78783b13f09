// No document needs more stack than 256 kB, however deep anything in it is nested.
#include "small_stack.h"

#include "speech.h"
#include "test_file.h"
#include "tts_engine/lexicon.h"

namespace {

constexpr int many = 40000;

std::string repeated(const std::string& part, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += part;
    return result;
}

// Entities of which each stands for the one before it, `count` deep. The first stands for "one two".
std::string chain(int count) {
    std::string text = "<!ENTITY e0 \"one two\">";
    for (int i = 1; i <= count; ++i)
        text += "<!ENTITY e" + std::to_string(i) + " \"&e" + std::to_string(i - 1) + ";\">";
    return text;
}

std::string last_of(int count) { return "&e" + std::to_string(count) + ";"; }

// Speaks the document's start, and reads it to its end, on a thread with a small stack.
Speech speak_on_small_stack(const std::string& document) {
    Speech speech;
    small_stack::run([&] {
        const TestVoice voice;
        tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
        ASSERT_NE(streamer, nullptr) << tts_errmsg();
        for (int i = 0; i < 40; ++i) {
            tts_wave* wave = tts_streamer_synth(streamer, 2205);
            if (wave == nullptr) break;
            take_record(speech, *wave, document, 2205);
            tts_wave_delete(wave);
        }
        EXPECT_STREQ(tts_errmsg(), "");
        EXPECT_EQ(tts_streamer_jump(streamer, 1 << 30), 0) << tts_errmsg();
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
    });
    return speech;
}

}  // namespace

TEST(SmallStack, entities_in_a_chain) {
    // As many as 23 kB hold.
    const std::string document = "<!DOCTYPE speak [" + chain(1000) + "]><speak>Say " + last_of(1000) + " now.</speak>";
    EXPECT_EQ(speak_on_small_stack(document).words(), (Texts{"Say", last_of(1000), "now"}));
}

TEST(SmallStack, entities_in_a_long_chain) {
    const std::string document = "<!DOCTYPE speak [" + chain(many) + "]><speak>Say " + last_of(many) + " now.</speak>";
    EXPECT_EQ(speak_on_small_stack(document).words(), (Texts{"Say", last_of(many), "now"}));
}

TEST(SmallStack, entities_in_a_chain_in_an_attribute) {
    const std::string document =
        "<!DOCTYPE speak [" + chain(many) + "]><speak>Say <sub alias=\"" + last_of(many) + "\">it</sub> now.</speak>";
    EXPECT_EQ(speak_on_small_stack(document).words(), (Texts{"Say", "it", "now"}));
}

TEST(SmallStack, elements_in_elements) {
    for (const std::string name : {"prosody", "sub alias='x'", "w", "say-as interpret-as='date'", "p", "b", "audio"}) {
        const std::string end = "</" + name.substr(0, name.find(' ')) + ">";
        const std::string body = repeated("<" + name + ">", many) + "One" + repeated(end, many);
        EXPECT_EQ(speak_on_small_stack("<speak>" + body + " two.</speak>").words().size(), 2u) << name;
    }
}

TEST(SmallStack, elements_that_are_never_closed_and_markup_that_is_none) {
    const std::string body = repeated("<prosody rate='1'><sub alias='x'>&x <a b='\"", many);
    EXPECT_GT(speak_on_small_stack("<speak>One " + body).words().size(), 0u);
}

TEST(SmallStack, text_of_one_word_of_marks_and_of_brackets) {
    for (const std::string part : {"a", "\xCC\x81", "(", "[[", "<mark name='P1'/>", "&lt;"})
        EXPECT_GT(speak_on_small_stack("<speak>One " + repeated(part, many) + "</speak>").words().size(), 0u) << part;
}

TEST(SmallStack, lexicon_with_elements_in_elements_or_entities) {
    const auto message_of = [](const std::string& text) {
        std::string message;
        small_stack::run([&] {
            try {
                tts::parse_lexicon(text, "file");
            } catch (const std::exception& error) {
                message = error.what();
            }
        });
        return message;
    };
    EXPECT_EQ(message_of("<lexicon>" + repeated("<a>", many) + repeated("</a>", many) + "</lexicon>"), "");
    EXPECT_EQ(message_of("<!DOCTYPE lexicon [" + chain(many) + "]><lexicon>" + last_of(many) + "</lexicon>"),
              "file:1: a lexicon may not declare entities or elements of its own");
}
