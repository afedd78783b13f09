// How often a lexicon is parsed when a host has it loaded again for each text.
#include "../speech.h"
#include "../test_file.h"
#include "tts_engine/lexicon_file.h"

namespace {

const std::string lexicon =
    "<lexicon xmlns=\"http://www.w3.org/2005/01/pronunciation-lexicon\"><lexeme><grapheme>Hello</grapheme>"
    "<alias>good morning to you all</alias></lexeme></lexicon>";

unsigned parses() { return tts::LexiconFile::work().parses; }

}  // namespace

TEST(LexiconWork, voices_of_a_process_parse_a_file_once) {
    const TestFile file("words.pls", lexicon);
    const TestVoice one, other;
    const unsigned before = parses();
    for (int i = 0; i < 3; ++i) {
        for (const tts_voice voice : {tts_voice(one), tts_voice(other)}) {
            tts_dict_cleanup(voice);
            EXPECT_EQ(tts_dict_load(voice, file.name().c_str()), 0) << tts_errmsg();
        }
    }
    EXPECT_EQ(parses(), before + 1);
    EXPECT_GT(speak(other, "Hello").seconds(), 1);
}

TEST(LexiconWork, refused_file_is_parsed_once) {
    const TestFile file("words.pls", "<lexicon>");
    const TestVoice voice;
    const unsigned before = parses();
    std::string reason;
    for (int i = 0; i < 3; ++i) {
        tts_dict_cleanup(voice);
        EXPECT_NE(tts_dict_load(voice, file.name().c_str()), 0);
        EXPECT_TRUE(reason.empty() || reason == tts_errmsg());
        reason = tts_errmsg();
    }
    EXPECT_NE(reason.find("words.pls:1: "), std::string::npos) << reason;
    EXPECT_EQ(parses(), before + 1);
}

TEST(LexiconWork, goes_with_the_last_voice) {
    const TestFile file("words.pls", lexicon);
    const unsigned before = parses();
    for (int i = 0; i < 2; ++i) {
        const TestVoice voice;
        EXPECT_EQ(tts_dict_load(voice, file.name().c_str()), 0);
    }
    EXPECT_EQ(parses(), before + 2);
}
