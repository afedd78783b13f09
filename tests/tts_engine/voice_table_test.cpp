// The table of espeak-ng's voices.
#include "tts_engine/espeak/voice_table.h"

#include <espeak-ng/speak_lib.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tts_engine/ascii.h"

namespace {

using tts::ListedVoice;
using tts::VoiceTable;

ListedVoice voice(const std::string& identifier, const std::string& text) {
    return tts::parse_listed_voice(text, identifier);
}

VoiceTable table() {
    std::vector<ListedVoice> voices;
    voices.push_back(voice("a/en", "name English\nlanguage en 2\nlanguage en-gb 2\n"));
    voices.push_back(voice("a/en-US", "name American\nlanguage en-us 2\nlanguage en 3\n"));
    voices.push_back(voice("b/yue", "name Cantonese\nlanguage yue\nlanguage zh-yue\n"));
    voices.push_back(voice("b/cmn", "name Mandarin\nlanguage cmn\nlanguage zh-cmn\nlanguage zh\n"));
    return VoiceTable(std::move(voices));
}

// As a list: identifier and languages with their priorities.
std::string text_of(const ListedVoice& voice) {
    std::string text = voice.identifier + ":";
    for (const auto& language : voice.languages) text += " " + language.tag + " " + std::to_string(language.priority);
    return text;
}

std::string text_of(const espeak_VOICE& voice) {
    std::string text = std::string(voice.identifier) + ":";
    for (const char* at = voice.languages; *at != 0;) {
        const int priority = *at++;
        text += " " + tts::ascii_lower(at) + " " + std::to_string(priority);
        at += std::string(at).size() + 1;
    }
    return text;
}

}  // namespace

TEST(VoiceTable, file_has_a_name_and_languages_with_priorities) {
    const ListedVoice read = voice("x/y",
                                   "// about\r\nname  A voice \r\n#language no\nlanguage xx-YY 3 // best\n"
                                   "language zz\nphonemes aa\nlanguage\n");
    EXPECT_EQ(read.name, "A voice");
    EXPECT_EQ(read.primary, "xx-YY");
    EXPECT_EQ(text_of(read), "x/y: xx-yy 3 zz 5");
}

TEST(VoiceTable, smallest_priority_is_found) {
    EXPECT_EQ(table().find("en", ""), "a/en");
    EXPECT_EQ(table().find("en-us", ""), "a/en-US");
    EXPECT_EQ(table().find("zh", ""), "b/cmn");
    EXPECT_EQ(table().find("xx", ""), "");
    EXPECT_EQ(table().find("", ""), "");
}

TEST(VoiceTable, own_voice_comes_first_where_it_speaks_the_tag_or_a_kind_of_it) {
    EXPECT_EQ(table().find("en", "a/en-US"), "a/en-US");
    EXPECT_EQ(table().find("zh", "b/yue"), "b/yue");
    EXPECT_EQ(table().find("e", "a/en-US"), "");
    EXPECT_EQ(table().find("zh", "a/en-US"), "b/cmn");
    EXPECT_EQ(table().find("en", "no/such"), "a/en");
}

TEST(VoiceTable, tag_loses_its_last_part) {
    EXPECT_EQ(table().shorter("en-us-x"), "en-us");
    EXPECT_EQ(table().shorter("en-us"), "en");
    EXPECT_EQ(table().shorter("en"), "");
}

// However many parts there are: the work would be quadratic.
TEST(VoiceTable, tag_longer_than_all_loses_what_is_too_much_at_once) {
    std::string tag = "en";
    for (int i = 0; i < 100000; ++i) tag += "-a";
    EXPECT_LE(table().shorter(tag).size(), 6u);  // "zh-yue" is the longest tag
    EXPECT_EQ(table().shorter(tag).substr(0, 4), "en-a");
    EXPECT_EQ(table().shorter(std::string(100000, 'a') + "-b"), "");
}

TEST(VoiceTable, has_the_voices_that_espeak_lists_in_its_order) {
    ASSERT_EQ(espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, TTS_TEST_DATA, 0), 22050);
    std::vector<std::string> expected;
    for (const espeak_VOICE** listed = espeak_ListVoices(nullptr); *listed != nullptr; ++listed)
        expected.push_back(text_of(**listed));
    espeak_Terminate();
    std::vector<std::string> found;
    const VoiceTable table = VoiceTable::read(TTS_TEST_DATA);
    for (const ListedVoice& read : table.voices()) found.push_back(text_of(read));
    EXPECT_GT(found.size(), 100u);
    EXPECT_EQ(found, expected);
}

TEST(VoiceTable, folder_without_voices_makes_an_empty_one) {
    EXPECT_TRUE(VoiceTable::read("no/such/folder").voices().empty());
}
