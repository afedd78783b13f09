// Which text a voice reads.
#include "tools/listening/voice_texts.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "../tools/temporary_folder.h"

using namespace listening;

TEST(VoiceTexts, name_is_the_file_without_the_usual_rate) {
    EXPECT_EQ(name_of_voice("/some/where/en-us-f-22i"), "en-us-f");
    EXPECT_EQ(name_of_voice("C:\\voices\\en-us-8v"), "en-us-8v");
    EXPECT_EQ(name_of_voice("-22i"), "");
}

TEST(VoiceTexts, language_is_in_the_voice_file_or_in_its_name) {
    const TemporaryFolder folder;
    EXPECT_EQ(language_of_voice(folder.with_file("x-22i", "# language = no\n language =  cmn \r\n")), "cmn");
    EXPECT_EQ(language_of_voice(folder.with_file("nl-22i", "binary")), "nl");
    EXPECT_EQ(language_of_voice("no/such/de-22i"), "de");
}

TEST(VoiceTexts, text_is_that_of_the_nearest_language) {
    const TemporaryFolder folder;
    folder.with_file("en.txt", "English.\n");
    folder.with_file("zh.txt", "Chinese.\n");
    folder.with_file("items", "1\n\n2\n");
    EXPECT_EQ(texts_for(folder.path(), "en-us").reading, "English.\n");
    EXPECT_EQ(texts_for(folder.path(), "en-us").items, (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(texts_for(folder.path(), "cmn").reading, "Chinese.\n");
    EXPECT_THROW(texts_for(folder.path(), "de"), std::runtime_error);
}
