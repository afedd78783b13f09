// Voices from languages, over data of the test's own: planning, and what a token's faults are.
#include "tools/host/voice_adding.h"

#include <gtest/gtest.h>

#include "temporary_folder.h"
#include "tools/host/files.h"
#include "tools/host/hresult.h"
#include "tools/host/voice_checking.h"

namespace {

using namespace host;

class Adding : public ::testing::Test {
protected:
    const TemporaryFolder folder;
    VoicesOptions options;
    VoicePlaces places;
    std::vector<std::string> notes;

    Adding() {
        for (const char* const name : {"data/lang/gmw", "data/voices/!v", "vox", "tokens"}) make_folder(file(name));
        put("data/lang/gmw/en-US", "name English\nlanguage en-us 2\nlanguage en 3\n");
        put("data/lang/gmw/de", "name German\r\nlanguage de\r\n");
        put("data/lang/eo", "name Esperanto\nlanguage eo\n");
        put("data/lang/gone", "language fo\n");  // its dictionary is not in the data
        for (const char* const name : {"en_dict", "de_dict", "eo_dict"}) put("data/" + std::string(name), "x");
        put("data/voices/!v/f2", "language variant\nname female2\ngender female\n");
        put("data/voices/!v/m3", "language variant\ngender male\n");
        options.command = VoicesCommand::add;
        places.data = file("data");
        places.voices = places.new_voices = file("vox");
        places.store.folder = file("tokens");
    }

    std::string file(const std::string& name) const { return path_in(folder.path(), name); }
    void put(const std::string& name, const std::string& text) const {
        OutputFile out(file(name));
        out.write(text);
        out.close();
    }

    std::vector<PlannedVoice> plan() { return plan_voices(options, places, &notes); }
    PlannedVoice plan_one(const std::string& language) {
        options.names = {language};
        const auto voices = plan();
        EXPECT_EQ(voices.size(), 1u);
        return voices.at(0);
    }
    std::string error_of(const std::string& language) {
        options.names = {language};
        try {
            plan();
        } catch (const HostError& error) {
            return error.what();
        }
        return "no error";
    }
    std::string attribute(const PlannedVoice& voice, const std::string& name) {
        return *voice.token.key("Attributes")->string(name);
    }
    std::vector<std::string> faults(const PlannedVoice& voice) {
        return faults_of_token({voice.id, "", std::make_shared<KeyData>(voice.token)});
    }
};

TEST_F(Adding, token_says_all_that_an_engine_and_a_host_ask) {
    options.variant = "f2";
    const PlannedVoice voice = plan_one("en-us");
    EXPECT_EQ(voice.id, "nelva-en-us-f2");
    EXPECT_EQ(*voice.token.string(""), "Nelva English (United States), f2");
    EXPECT_EQ(*voice.token.string("CLSID"), "{A174EDD5-7D96-4DE4-BACE-EF267627D834}");
    EXPECT_EQ(*voice.token.string("libPath"), file("data"));
    EXPECT_EQ(*voice.token.string("voxPath"), file("vox/en-us-f2-22i"));
    EXPECT_EQ(voice.token.string("lexPath"), nullptr);
    EXPECT_EQ(voice.token.string("dictEditorPath"), nullptr);
    EXPECT_EQ(attribute(voice, "Name"), "Nelva English (United States), f2");
    EXPECT_EQ(attribute(voice, "Language"), "409;9");
    EXPECT_EQ(attribute(voice, "Vendor"), "Nelva");
    EXPECT_EQ(attribute(voice, "Gender"), "Female");
    EXPECT_EQ(attribute(voice, "Age"), "Adult");
}

TEST_F(Adding, voice_file_that_is_not_there_is_planned_in_the_documented_form) {
    options.variant = "m3";
    const tts::VoiceSettings settings = tts::parse_voice_file(plan_one("DE").file_text, "x");
    EXPECT_EQ(settings.language, "de");
    EXPECT_EQ(settings.variant, "m3");
    EXPECT_EQ(settings.rate, tts::VoiceSettings().rate);
}

TEST_F(Adding, voice_file_of_that_name_is_taken_as_it_is) {
    put("vox/de-22i", "language = de\npitch = 70\n");
    const PlannedVoice voice = plan_one("de");
    EXPECT_EQ(voice.file_text, "");
    EXPECT_EQ(voice.file, file("vox/de-22i"));
}

TEST_F(Adding, voice_file_that_says_the_same_is_taken) {
    put("vox/english-lady-22i", "language = en-us\nvariant = f2\n");
    options.variant = "f2";
    const PlannedVoice voice = plan_one("en-us");
    EXPECT_EQ(voice.id, "nelva-english-lady");
    EXPECT_EQ(voice.file_text, "");
}

TEST_F(Adding, other_rates_stand_in_id_file_and_name) {
    options.rate = "8v";
    const PlannedVoice voice = plan_one("de");
    EXPECT_EQ(voice.id, "nelva-de-8v");
    EXPECT_EQ(voice.file, file("vox/de-8v"));
    EXPECT_EQ(*voice.token.string(""), "Nelva German (Germany), 8 kHz");
}

TEST_F(Adding, name_and_ids_may_be_chosen) {
    options.name = "Zamenhof";
    options.langid = "409";
    const PlannedVoice voice = plan_one("eo");
    EXPECT_EQ(*voice.token.string(""), "Zamenhof");
    EXPECT_EQ(attribute(voice, "Language"), "409");
    options.langid = "nonsense";
    EXPECT_EQ(error_of("eo").substr(0, 50), "'nonsense' is no list of Windows' language ids: 0x");
}

TEST_F(Adding, what_the_synthesiser_does_not_have_is_an_error) {
    EXPECT_EQ(error_of("en-uss"),
              "the synthesiser has no language 'en-uss': 0x8004503A (SPERR_NOT_FOUND): did you mean 'en-us'?");
    EXPECT_EQ(error_of("fo").substr(0, 36), "the synthesiser has no language 'fo'");
    EXPECT_EQ(error_of("eo").substr(0, 43), "Windows has no number for the language 'eo'");
    options.variant = "f22";
    EXPECT_EQ(error_of("de").substr(0, 36), "the synthesiser has no variant 'f22'");
    places.data = file("nowhere");
    EXPECT_EQ(error_of("de").substr(0, 38), "there is no data of the synthesiser in");
}

TEST_F(Adding, all_is_every_file_and_every_other_language) {
    options.all = true;
    put("vox/de-22i", "language = de\n");
    put("vox/en-us-f2-22i", "language = en-us\nvariant = f2\n");
    put("vox/de-8v", "language = de\n");
    put("vox/broken-22i", "nonsense\n");
    put("vox/readme.txt", "no voice\n");
    put("vox/fo-22i", "language = fo\n");  // nothing that could speak it
    std::vector<std::string> ids;
    for (const PlannedVoice& voice : plan()) ids.push_back(voice.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"nelva-de", "nelva-en-us-f2", "nelva-en-us"}));
    ASSERT_EQ(notes.size(), 2u);  // the broken file, and Esperanto
    EXPECT_EQ(notes[1], "left out, since Windows has no number for the language: eo");
}

TEST_F(Adding, editor_brings_one_lexicon_for_a_language) {
    places.editor = file("editor.exe");
    places.lexicons = file("lexicons");
    options.variant = "f2";
    const PlannedVoice voice = plan_one("en-us");
    EXPECT_EQ(*voice.token.string("dictEditorPath"), file("editor.exe"));
    EXPECT_EQ(*voice.token.string("lexPath"), file("lexicons/en-us.pls"));
    options.lexicon = "";
    EXPECT_EQ(plan_one("en-us").token.string("lexPath"), nullptr);
}

// ---- What is wrong with a token ----

TEST_F(Adding, token_of_ours_has_no_fault_once_its_file_is_there) {
    const PlannedVoice voice = plan_one("de");
    EXPECT_EQ(faults(voice), std::vector<std::string>{"voxPath names no file: '" + voice.file + "'"});
    put("vox/de-22i", voice.file_text);
    EXPECT_EQ(faults(voice), std::vector<std::string>{});
}

TEST_F(Adding, each_value_that_is_missing_empty_or_no_string_is_a_fault) {
    put("vox/de-22i", "language = de\n");
    const PlannedVoice right = plan_one("de");
    for (const std::string& name : {std::string("CLSID"), std::string("libPath"), std::string("voxPath")}) {
        PlannedVoice voice = right;
        voice.token.values.erase(name);
        EXPECT_EQ(faults(voice), std::vector<std::string>{name + " is missing or no string"});
        voice.token.values[name] = DWORD{5};
        EXPECT_EQ(faults(voice), std::vector<std::string>{name + " is missing or no string"});
        voice.token.values[name] = std::string();
        EXPECT_EQ(faults(voice), std::vector<std::string>{name + " is empty"});
    }
    PlannedVoice voice = right;
    voice.token.keys.clear();
    EXPECT_EQ(faults(voice),
              (std::vector<std::string>{"Attributes\\Name is missing", "Attributes\\Language is missing"}));
}

TEST_F(Adding, each_value_that_points_nowhere_is_a_fault) {
    put("vox/de-22i", "language = de\n");
    const std::pair<const char*, const char*> rows[] = {
        {"CLSID", "CLSID is no class id: "},
        {"libPath", "libPath is no folder of the synthesiser's data: "},
        {"dictEditorPath", "dictEditorPath names no file: "},
    };
    for (const auto& [name, message] : rows) {
        PlannedVoice voice = plan_one("de");
        voice.token.values[name] = file("nowhere");
        voice.token.values["lexPath"] = file("later.pls");  // need not be there
        EXPECT_EQ(faults(voice), std::vector<std::string>{message + ("'" + file("nowhere") + "'")});
    }
}

TEST_F(Adding, other_faults_by_their_words) {
    put("vox/de-22i", "language = de\n");
    put("vox/xx-22i", "language = xx\nvariant = zz\n");
    put("vox/voice", "language = de\n");
    PlannedVoice voice = plan_one("de");
    voice.token.values["voxPath"] = file("vox/xx-22i");
    EXPECT_EQ(faults(voice), (std::vector<std::string>{"the synthesiser has no language 'xx', which voxPath names",
                                                       "the synthesiser has no variant 'zz', which voxPath names"}));
    voice.token.values["voxPath"] = file("vox/voice");
    EXPECT_EQ(faults(voice),
              std::vector<std::string>{"voxPath ends in none of 22i, 16i-mf and 8v: '" + file("vox/voice") + "'"});
    voice = plan_one("de");
    voice.token.values["lexPath"] = file("vox");
    EXPECT_EQ(faults(voice), std::vector<std::string>{"lexPath is a folder: '" + file("vox") + "'"});
    voice.token.values.erase("lexPath");
    voice.token.values["dictEditorPath"] = file("vox/voice");
    EXPECT_EQ(faults(voice),
              std::vector<std::string>{"dictEditorPath is there without a lexPath: the editor cannot be opened"});
}

TEST_F(Adding, language_that_the_voice_does_not_speak_is_a_fault) {
    put("vox/de-22i", "language = de\n");
    PlannedVoice voice = plan_one("de");
    auto attributes = std::make_shared<KeyData>(*voice.token.key("Attributes"));
    attributes->values["Language"] = std::string("409");
    voice.token.keys["Attributes"] = attributes;
    EXPECT_EQ(faults(voice),
              std::vector<std::string>{"Attributes\\Language begins with English (United States), but the voice speaks "
                                       "'de': it should be 407;7"});
    attributes->values["Language"] = std::string("german");
    EXPECT_EQ(faults(voice),
              std::vector<std::string>{"Attributes\\Language is no list of Windows' language ids: 'german'"});
}

TEST_F(Adding, rate_of_a_file_goes_by_the_engines_rule) {
    const auto suffix = [](const char* name) { return rate_of(name) ? rate_of(name)->suffix : "none"; };
    EXPECT_STREQ(suffix("voice-16i-mf"), "16i-mf");
    EXPECT_STREQ(suffix("16i-mf"), "16i-mf");
    EXPECT_STREQ(suffix("abc22i"), "22i");
    EXPECT_STREQ(suffix("x8v"), "8v");
    for (const char* const name : {"22i", "8v", "en-22I", "", "voice"}) EXPECT_STREQ(suffix(name), "none") << name;
}

// ---- The store that is a folder ----

#ifndef _WIN32

TEST_F(Adding, token_file_says_the_same_when_it_is_read) {
    PlannedVoice voice = plan_one("de");
    add_voice(voice, options, places);
    std::vector<std::string> problems;
    const std::vector<Voice> voices = voices_in(places.store, &problems);
    ASSERT_EQ(voices.size(), 1u);
    EXPECT_TRUE(problems.empty());
    EXPECT_EQ(voices[0].id, "nelva-de");
    EXPECT_EQ(voices[0].display_name(), "Nelva German (Germany)");
    EXPECT_EQ(voices[0].attribute("Language"), "407;7");
    EXPECT_EQ(faults_of_token(voices[0]), std::vector<std::string>{});
}

TEST_F(Adding, paths_near_the_token_are_relative_and_others_are_not) {
    KeyData data;
    data.values["libPath"] = std::string("/opt/nelva/share/espeak-ng-data");
    data.values["voxPath"] = std::string("/opt/nelva/share/nelva/voices-data/de-22i");
    data.values["lexPath"] = std::string("/home/me/de.pls");
    data.values[""] = std::string("N");
    EXPECT_EQ(voice_to_json(data, "/opt/nelva/share/nelva/voices"),
              "{\n  \"displayName\": \"N\",\n  \"libPath\": \"../../espeak-ng-data\",\n"
              "  \"voxPath\": \"../voices-data/de-22i\",\n  \"lexPath\": \"/home/me/de.pls\"\n}\n");
}

TEST_F(Adding, adding_again_keeps_the_lexicon_unless_told) {
    options.lexicon = file("mine.pls");
    add_voice(plan_one("de"), options, places);
    const auto lexicon = [&] {
        std::vector<std::string> problems;
        return voices_in(places.store, &problems).at(0).value("lexPath");
    };
    options.lexicon.reset();
    add_voice(plan_one("de"), options, places);
    EXPECT_EQ(path_in(lexicon(), ""), path_in(file("mine.pls"), ""));
    options.lexicon = "";
    add_voice(plan_one("de"), options, places);
    EXPECT_EQ(lexicon(), "");
}

TEST_F(Adding, another_engines_voice_is_left_alone) {
    put("tokens/nelva-de.json", R"({"CLSID":"{00000000-0000-0000-0000-000000000001}","Attributes":{}})");
    EXPECT_THROW(add_voice(plan_one("de"), options, places), HostError);
    std::vector<std::string> problems;
    const std::vector<Voice> voices = voices_in(places.store, &problems);
    ASSERT_EQ(voices.size(), 1u);
    EXPECT_FALSE(means_to_be_ours(voices[0]));
    EXPECT_THROW(take_voice_away(voices[0], places), HostError);
    EXPECT_TRUE(file_exists(file("tokens/nelva-de.json")));
}

TEST_F(Adding, voice_file_of_ours_goes_with_its_last_voice) {
    add_voice(plan_one("de"), options, places);
    put("tokens/nelva-second.json", read_file(file("tokens/nelva-de.json")));
    std::vector<std::string> problems;
    const std::vector<Voice> voices = voices_in(places.store, &problems);
    ASSERT_EQ(voices.size(), 2u);
    take_voice_away(voices[0], places);
    EXPECT_TRUE(file_exists(file("vox/de-22i")));
    take_voice_away(voices[1], places);
    EXPECT_FALSE(file_exists(file("vox/de-22i")));
}

TEST_F(Adding, voice_file_of_somebody_else_stays) {
    put("vox/de-22i", "# Mine\nlanguage = de\n");
    add_voice(plan_one("de"), options, places);
    std::vector<std::string> problems;
    take_voice_away(voices_in(places.store, &problems).at(0), places);
    EXPECT_TRUE(file_exists(file("vox/de-22i")));
}

TEST_F(Adding, store_that_cannot_be_written_to_is_told) {
    put("plain", "x");
    places.store.folder = file("plain");  // a file in the folder's place
    EXPECT_THROW(add_voice(plan_one("de"), options, places), HostError);
    try {
        cannot_write("the voice 'x'", "'place'", E_ACCESSDENIED);
    } catch (const HostError& error) {
        EXPECT_STREQ(error.what(),
                     "cannot write the voice 'x' to 'place': 0x80070005 (E_ACCESSDENIED): run this as an "
                     "administrator (sudo), or name another folder with --tokens");
    }
}

#else

TEST_F(Adding, store_that_may_not_be_written_to_says_who_may) {
    try {
        cannot_write("the voice 'x'", "'place'", E_ACCESSDENIED);
        FAIL();
    } catch (const HostError& error) {
        EXPECT_STREQ(error.what(),
                     "cannot write the voice 'x' to 'place': 0x80070005 (E_ACCESSDENIED): run this as an "
                     "administrator, or give --user for a voice of your own");
    }
}

#endif

}  // namespace
