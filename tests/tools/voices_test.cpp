// Voice tokens from JSON, and choosing one.
#include "tools/host/voices.h"

#include <gtest/gtest.h>

#include "temporary_folder.h"
#include "tools/host/hresult.h"

namespace {

using namespace host;

constexpr const char* nelva_class = "{A174EDD5-7D96-4DE4-BACE-EF267627D834}";
constexpr const char* other_class = "{00000000-0000-0000-0000-000000000001}";

std::string token_json(const std::string& class_id, const std::string& more = "") {
    return R"({"displayName":"Shown","CLSID":")" + class_id + "\"" + more +
           R"(,"Attributes":{"Name":"Named","Language":"409;9"}})";
}

Voice voice_named(const std::string& id, const std::string& class_id) {
    return voice_from_json(token_json(class_id), "/voices/" + id + ".json");
}

std::string message_of(const std::string& json) {
    try {
        voice_from_json(json, "/v/bad.json");
    } catch (const HostError& error) {
        return error.what();
    }
    return "no error";
}

TEST(Voices, id_is_the_file_name) { EXPECT_EQ(voice_named("en-us", nelva_class).id, "en-us"); }

TEST(Voices, display_name_is_the_default_value) {
    const Voice voice = voice_named("a", nelva_class);
    EXPECT_EQ(voice.display_name(), "Shown");
    EXPECT_EQ(voice.value(""), "Shown");
    EXPECT_EQ(voice.value("displayName"), "");
}

TEST(Voices, display_name_falls_back_to_the_name_and_the_id) {
    EXPECT_EQ(voice_from_json(R"({"Attributes":{"Name":"N"}})", "/v/x.json").display_name(), "N");
    EXPECT_EQ(voice_from_json("{}", "/v/x.json").display_name(), "x");
}

TEST(Voices, language_is_the_leading_hexadecimal_number) {
    const Voice voice = voice_named("a", nelva_class);
    EXPECT_EQ(voice.language_id(), 0x409u);
    EXPECT_EQ(voice.language(), "en");
}

TEST(Voices, language_that_is_no_number_is_none) {
    const Voice voice = voice_from_json(R"({"Attributes":{"Language":"xyz"}})", "/v/x.json");
    EXPECT_EQ(voice.language_id(), 0u);
    EXPECT_EQ(voice.language(), "");
}

TEST(Voices, relative_paths_are_taken_from_the_files_folder) {
    const Voice voice =
        voice_from_json(R"({"libPath":"../data","voxPath":"x22i","lexPath":"","other":"x"})", "/v/a.json");
    EXPECT_EQ(voice.value("libPath"), "/v/../data");
    EXPECT_EQ(voice.value("voxPath"), "/v/x22i");
    EXPECT_EQ(voice.value("lexPath"), "");
    EXPECT_EQ(voice.value("other"), "x");
}

TEST(Voices, absolute_paths_stay) {
    EXPECT_EQ(voice_from_json(R"({"libPath":"/data"})", "/v/a.json").value("libPath"), "/data");
}

TEST(Voices, schema_reference_is_no_value) {
    EXPECT_TRUE(voice_from_json(R"({"$schema":"x"})", "/v/a.json").data->values.empty());
}

TEST(Voices, bad_json_has_line_and_column) {
    EXPECT_EQ(message_of("{\n  \"a\": ?}"),
              "'/v/bad.json':2:8: this is not JSON: 0x8007000D (ERROR_INVALID_DATA): correct it there");
}

TEST(Voices, value_that_is_no_string_is_named) {
    const std::string tail =
        " has to be a string: 0x8007000D (ERROR_INVALID_DATA): correct it there; see "
        "docs/voice-token.md";
    EXPECT_EQ(message_of(R"({"libPath":true})"), "'/v/bad.json': the value of \"libPath\"" + tail);
    EXPECT_EQ(message_of(R"({"Attributes":{"Name":[]}})"), "'/v/bad.json': the value of \"Attributes.Name\"" + tail);
    EXPECT_NE(message_of("[]").find("one JSON object"), std::string::npos);
}

TEST(Voices, class_id_in_either_case) {
    CLSID id;
    EXPECT_TRUE(parse_class_id("{a174edd5-7d96-4de4-bace-EF267627D834}", &id));
    EXPECT_TRUE(IsEqualCLSID(id, nelva_class_id));
}

TEST(Voices, malformed_class_ids_are_refused) {
    CLSID id;
    EXPECT_FALSE(parse_class_id("", &id));
    EXPECT_FALSE(parse_class_id("A174EDD5-7D96-4DE4-BACE-EF267627D834", &id));
    EXPECT_FALSE(parse_class_id("{A174EDD5-7D96-4DE4-BACE-EF267627D834", &id));
    EXPECT_FALSE(parse_class_id("{A174EDD5-7D96-4DE4-BACE-EF267627D834} ", &id));
    EXPECT_FALSE(parse_class_id("{A174EDD5-7D96-4DE4-BACEEF-267627D834}", &id));
    EXPECT_FALSE(parse_class_id("{A174EDD5-7D96-4DE4-BACE-EF267627D83G}", &id));
    EXPECT_FALSE(parse_class_id("{+174EDD5-7D96-4DE4-BACE-EF267627D834}", &id));
}

TEST(Voices, missing_class_id_is_an_error_that_names_the_voice) {
    try {
        voice_from_json("{}", "/v/x.json").class_id();
        FAIL();
    } catch (const HostError& error) {
        EXPECT_EQ(error.code(), co_e_classstring);
        EXPECT_EQ(std::string(error.what()).find("the voice 'x' has no CLSID (/v/x.json): 0x800401F3"), 0u);
    }
}

TEST(Voices, default_is_the_first_of_this_engine) {
    const std::vector<Voice> voices = {voice_named("a", other_class), voice_named("b", nelva_class),
                                       voice_named("c", nelva_class)};
    EXPECT_EQ(choose_voice(voices, "").id, "b");
}

TEST(Voices, default_prefers_american_english) {
    const auto voice = [](const std::string& id, const std::string& language) {
        const std::string json =
            R"({"CLSID":")" + std::string(nelva_class) + R"(","Attributes":{"Language":")" + language + R"("}})";
        return voice_from_json(json, "/voices/" + id + ".json");
    };
    EXPECT_EQ(choose_voice({voice("a", "401"), voice("b", "809"), voice("c", "409"), voice("d", "409")}, "").id, "c");
}

TEST(Voices, voice_of_another_engine_is_found_by_its_id) {
    const std::vector<Voice> voices = {voice_named("Other", other_class), voice_named("b", nelva_class)};
    EXPECT_EQ(choose_voice(voices, "oTHER").id, "Other");
}

TEST(Voices, unknown_id_gets_a_suggestion) {
    const std::vector<Voice> voices = {voice_named("en-us", nelva_class)};
    try {
        choose_voice(voices, "en-su");
        FAIL();
    } catch (const HostError& error) {
        EXPECT_STREQ(error.what(), "there is no voice 'en-su': 0x8004503A (SPERR_NOT_FOUND): did you mean 'en-us'?");
    }
    EXPECT_THROW(choose_voice(voices, "german"), HostError);
    EXPECT_THROW(choose_voice({}, ""), HostError);
}

#ifndef _WIN32
TEST(Voices, folder_is_read_in_order_of_ids_and_bad_files_are_told) {
    const TemporaryFolder folder;
    folder.with_file("b.json", token_json(nelva_class));
    folder.with_file("A.json", token_json(nelva_class));
    folder.with_file("bad.json", "{");
    folder.with_file("readme.txt", "no token");
    std::vector<std::string> problems;
    const std::vector<Voice> voices = voices_in_folder(folder.path(), &problems);
    ASSERT_EQ(voices.size(), 2u);
    EXPECT_EQ(voices[0].id, "A");
    EXPECT_EQ(voices[1].id, "b");
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_NE(problems[0].find("bad.json':1:2: this is not JSON"), std::string::npos);
}

TEST(Voices, missing_folder_has_no_voices) {
    std::vector<std::string> problems;
    EXPECT_TRUE(voices_in_folder("/no/such/folder", &problems).empty());
    EXPECT_TRUE(problems.empty());
}
#endif

}  // namespace
