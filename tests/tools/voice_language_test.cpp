// From the synthesiser's languages to Windows' numbers and names.
#include "tools/host/voice_language.h"

#include <gtest/gtest.h>

namespace {

using namespace host;

std::string ids_of(const std::string& language) {
    const auto found = voice_language(language);
    return found ? found->attribute() : "none";
}

TEST(VoiceLanguage, region_that_is_named_counts) {
    EXPECT_EQ(ids_of("en-us"), "409;9");
    EXPECT_EQ(ids_of("en-gb"), "809;9");
    EXPECT_EQ(ids_of("pt-br"), "416;16");
    EXPECT_EQ(ids_of("fr-be"), "80c;c");
    EXPECT_EQ(ids_of("EN-US"), "409;9");
}

TEST(VoiceLanguage, without_a_region_windows_own_counts) {
    EXPECT_EQ(ids_of("de"), "407;7");
    EXPECT_EQ(ids_of("ru"), "419;19");
    EXPECT_EQ(ids_of("ja"), "411;11");
    EXPECT_EQ(ids_of("th"), "41e;1e");
}

// The synthesiser's "en", "es" and "pt" are the languages of Europe, "cmn" and "yue" are no names of Windows'.
TEST(VoiceLanguage, varieties_that_windows_would_take_otherwise) {
    EXPECT_EQ(ids_of("en"), "809;9");
    EXPECT_EQ(ids_of("es"), "c0a;a");
    EXPECT_EQ(ids_of("pt"), "816;16");
    EXPECT_EQ(ids_of("cmn"), "804;1004;4");
    EXPECT_EQ(ids_of("yue").substr(0, 9), "c04;1404;");
    EXPECT_EQ(ids_of("es-419").substr(0, 4), "580a");
    EXPECT_EQ(ids_of("ga"), "83c;3c");
}

// The lower bits of Serbian's and Bosnian's numbers are Croatian's.
TEST(VoiceLanguage, language_as_such_is_claimed_only_by_its_own) {
    EXPECT_EQ(ids_of("sr"), "241a;281a");
    EXPECT_EQ(ids_of("bs"), "141a;201a");
    EXPECT_EQ(ids_of("hr"), "41a;1a");
}

TEST(VoiceLanguage, language_without_a_number_is_none) {
    for (const char* const language : {"eo", "ia", "jbo", "qya", "xx", "", ";"}) EXPECT_EQ(ids_of(language), "none");
}

TEST(VoiceLanguage, name_is_the_platforms_with_the_accent) {
    EXPECT_EQ(voice_language("en-us")->english_name, "English (United States)");
    EXPECT_EQ(voice_language("de")->english_name, "German (Germany)");
    EXPECT_EQ(voice_language("en-gb-scotland")->english_name, "English (United Kingdom), Scotland");
    EXPECT_EQ(voice_language("en-us-nyc")->english_name, "English (United States), New York City");
}

TEST(VoiceLanguage, chosen_ids_are_hexadecimal_numbers_of_windows) {
    EXPECT_EQ(voice_language_from_ids("409;9")->attribute(), "409;9");
    EXPECT_EQ(voice_language_from_ids("C0A")->attribute(), "c0a");
    for (const char* const ids : {"", ";", "409;", "xyz", "0", "409 ", "0x409", "FFFF", "1234567"})
        EXPECT_FALSE(voice_language_from_ids(ids)) << ids;
}

}  // namespace
