// What becomes of a voice token: identity, voice, output format, and what is logged when something is missing.
#include "support/server.h"

namespace {

struct NewVoice {
    FakeToken token;
    ServerObject object;
    NewVoice() {
        scripted_reset();
        server::take_log();
    }
    HRESULT set() { return object.set_token(&token); }
    HRESULT speak() {
        FakeSite site;
        const WAVEFORMATEX format = pcm_format(22050);
        return object.engine->Speak(0, SPDFID_WaveFormatEx, &format, nullptr, &site);
    }
};

TEST(VoiceSetup, complete_token_loads_the_voice) {
    NewVoice s;
    EXPECT_EQ(s.set(), S_OK);
    EXPECT_STREQ(scripted_log(), "tts_create\ntts_load_voice lib test22i\n");
    EXPECT_TRUE(server::take_log().empty());
    EXPECT_EQ(s.speak(), S_OK);
}

TEST(VoiceSetup, keeps_one_reference_of_the_token_and_none_of_its_attributes) {
    NewVoice s;
    s.set();
    EXPECT_EQ(s.token.references(), 1);
    EXPECT_EQ(s.token.attributes.references(), 0);
}

TEST(VoiceSetup, releases_everything_with_the_object) {
    FakeToken token;
    scripted_reset();
    const std::size_t live = scripted_live();
    {
        ServerObject object;
        object.set_token(&token);
    }
    EXPECT_EQ(token.references(), 0);
    EXPECT_EQ(scripted_live(), live);
    EXPECT_STREQ(scripted_log(), "tts_create\ntts_load_voice lib test22i\ntts_unload_voice\ntts_destroy\n");
}

TEST(VoiceSetup, null_token_is_uninitialized_and_changes_nothing) {
    NewVoice s;
    EXPECT_EQ(s.object.set_token(nullptr), SPERR_UNINITIALIZED);
    EXPECT_EQ(s.set(), S_OK);
}

TEST(VoiceSetup, second_token_is_refused) {
    NewVoice s;
    FakeToken other;
    s.set();
    EXPECT_EQ(s.object.set_token(&other), SPERR_ALREADY_INITIALIZED);
    EXPECT_EQ(other.references(), 0);
}

TEST(VoiceSetup, second_token_is_refused_after_a_failed_first_one) {
    NewVoice s;
    FakeToken other;
    s.token.attributes.values.erase("Name");
    EXPECT_EQ(s.set(), SPERR_NOT_FOUND);
    EXPECT_EQ(s.object.set_token(&other), SPERR_ALREADY_INITIALIZED);
    EXPECT_EQ(s.token.references(), 1);
}

TEST(VoiceSetup, get_object_token_gives_the_token_with_a_reference) {
    NewVoice s;
    s.set();
    ISpObjectToken* token = nullptr;
    EXPECT_EQ(s.object.with_token->GetObjectToken(&token), S_OK);
    EXPECT_EQ(token, &s.token);
    EXPECT_EQ(s.token.references(), 2);
    token->Release();
}

TEST(VoiceSetup, get_object_token_before_a_token_gives_false_and_null) {
    NewVoice s;
    ISpObjectToken* token = &s.token;
    EXPECT_EQ(s.object.with_token->GetObjectToken(&token), S_FALSE);
    EXPECT_EQ(token, nullptr);
}

TEST(VoiceSetup, missing_attributes_key_is_logged_and_its_failure_returned) {
    NewVoice s;
    s.token.open_attributes = E_ACCESSDENIED;
    EXPECT_EQ(s.set(), E_ACCESSDENIED);
    expect_only_entry(0xCFFF0101u, 1, "Attributes");
    EXPECT_EQ(s.speak(), SPERR_TTS_ENGINE_EXCEPTION);
}

TEST(VoiceSetup, missing_name_is_logged) {
    NewVoice s;
    s.token.attributes.values.erase("Name");
    EXPECT_EQ(s.set(), SPERR_NOT_FOUND);
    expect_only_entry(0xCFFF0101u, 1, "Attributes\\Name");
    EXPECT_EQ(s.token.attributes.references(), 0);
}

TEST(VoiceSetup, missing_language_is_logged) {
    NewVoice s;
    s.token.attributes.values.erase("Language");
    EXPECT_EQ(s.set(), SPERR_NOT_FOUND);
    expect_only_entry(0xCFFF0101u, 1, "Attributes\\Language");
}

TEST(VoiceSetup, missing_name_and_language_are_both_logged) {
    NewVoice s;
    s.token.attributes.values.clear();
    EXPECT_EQ(s.set(), SPERR_NOT_FOUND);
    const auto log = server::take_log();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].text, "Attributes\\Name");
    EXPECT_EQ(log[1].text, "Attributes\\Language");
}

TEST(VoiceSetup, language_that_is_no_number_or_zero_is_not_found_unlogged) {
    for (const char* language : {"0", "", "xyz", ";9"}) {
        NewVoice s;
        s.token.attributes.set("Language", language);
        EXPECT_EQ(s.set(), SPERR_NOT_FOUND) << language;
        EXPECT_TRUE(server::take_log().empty());
    }
}

TEST(VoiceSetup, language_that_the_system_does_not_know_is_not_found_unlogged) {
    NewVoice s;
    s.token.attributes.set("Language", "3ff");
    EXPECT_EQ(s.set(), SPERR_NOT_FOUND);
    EXPECT_TRUE(server::take_log().empty());
}

TEST(VoiceSetup, first_language_of_a_list_counts) {
    NewVoice s;
    s.token.attributes.set("Language", "407;409");
    EXPECT_EQ(s.set(), S_OK);
    Fragment fragment("x");
    fragment.record.State.LangID = 0;
    FakeSite site;
    const WAVEFORMATEX format = pcm_format(22050);
    s.object.engine->Speak(0, SPDFID_WaveFormatEx, &format, &fragment.record, &site);
    EXPECT_NE(std::string(scripted_document()).find("xml:lang=\"de\""), std::string::npos);
}

TEST(VoiceSetup, language_is_a_hexadecimal_number_as_the_c_library_reads_it) {
    for (const char* language : {"407", "0407", "0x407", "0X407", " 407", "+407", "407x", "407 409"}) {
        NewVoice s;
        s.token.attributes.set("Language", language);
        EXPECT_EQ(s.set(), S_OK) << language;
        Fragment fragment("x");
        fragment.record.State.LangID = 0;
        FakeSite site;
        const WAVEFORMATEX format = pcm_format(22050);
        s.object.engine->Speak(0, SPDFID_WaveFormatEx, &format, &fragment.record, &site);
        EXPECT_NE(std::string(scripted_document()).find("xml:lang=\"de\""), std::string::npos) << language;
    }
}

TEST(VoiceSetup, empty_name_is_a_name) {
    NewVoice s;
    s.token.attributes.set("Name", "");
    EXPECT_EQ(s.set(), S_OK);
}

TEST(VoiceSetup, missing_paths_are_logged_together) {
    for (const char* missing : {"libPath", "voxPath"}) {
        NewVoice s;
        s.token.values.erase(missing);
        EXPECT_EQ(s.set(), SPERR_TTS_ENGINE_EXCEPTION);
        expect_only_entry(0xCFFF0101u, 1, "libPath/voxPath");
        EXPECT_EQ(scripted_count(SCRIPTED_LOAD_VOICE), 0u);
    }
}

TEST(VoiceSetup, failing_create_is_logged_with_the_synthesisers_message) {
    NewVoice s;
    scripted_fail(SCRIPTED_CREATE, 1, 0);
    EXPECT_EQ(s.set(), SPERR_TTS_ENGINE_EXCEPTION);
    expect_only_entry(0xCFFF0201u, 2, "scripted failure");
}

TEST(VoiceSetup, failing_load_is_logged_with_the_synthesisers_message) {
    NewVoice s;
    scripted_fail(SCRIPTED_LOAD_VOICE, 1, 0);
    EXPECT_EQ(s.set(), SPERR_TTS_ENGINE_EXCEPTION);
    expect_only_entry(0xCFFF0204u, 2, "scripted failure");
    EXPECT_EQ(scripted_count(SCRIPTED_DESTROY), 0u);
}

TEST(VoiceSetup, synthesiser_without_a_message_is_logged_with_an_empty_one) {
    NewVoice s;
    scripted_fail(SCRIPTED_CREATE, 1, 0);
    scripted_fail(SCRIPTED_ERRMSG, 1, 1);
    EXPECT_EQ(s.set(), SPERR_TTS_ENGINE_EXCEPTION);
    expect_only_entry(0xCFFF0201u, 2, "");
}

struct FormatRow {
    const char* vox;
    DWORD rate;  // 0: none
};

TEST(OutputFormat, follows_from_the_end_of_the_voice_files_name) {
    const FormatRow rows[] = {{"voice-16i-mf", 16000},
                              {"abc22i", 22050},
                              {"x8v", 8000},
                              {"16i-mf", 16000},
                              {"22i", 0},
                              {"8v", 0},
                              {"en-22I", 0},
                              {"16i-mf22i", 22050},
                              {"a22i", 22050},
                              {"", 0},
                              {"22i ", 0},
                              {"x16i-m", 0},
                              {"18v", 8000}};
    for (const FormatRow& row : rows) {
        NewVoice s;
        s.token.set("voxPath", row.vox);
        s.set();
        GUID id = {};
        WAVEFORMATEX* format = nullptr;
        ASSERT_EQ(s.object.engine->GetOutputFormat(nullptr, nullptr, &id, &format), S_OK);
        EXPECT_TRUE(IsEqualGUID(id, SPDFID_WaveFormatEx));
        EXPECT_EQ(format->nSamplesPerSec, row.rate) << row.vox;
        EXPECT_EQ(format->nAvgBytesPerSec, 2 * row.rate) << row.vox;
        EXPECT_EQ(format->wFormatTag, row.rate ? 1 : 0);
        EXPECT_EQ(format->nChannels, row.rate ? 1 : 0);
        EXPECT_EQ(format->nBlockAlign, row.rate ? 2 : 0);
        EXPECT_EQ(format->wBitsPerSample, row.rate ? 16 : 0);
        EXPECT_EQ(format->cbSize, 0);
        server::free_task_block(format);
    }
}

TEST(OutputFormat, disregards_what_the_host_would_like) {
    NewVoice s;
    s.set();
    GUID id = {};
    WAVEFORMATEX* format = nullptr;
    const WAVEFORMATEX wish = pcm_format(48000);
    EXPECT_EQ(s.object.engine->GetOutputFormat(&SPDFID_WaveFormatEx, &wish, &id, &format), S_OK);
    EXPECT_EQ(format->nSamplesPerSec, 22050u);
    server::free_task_block(format);
}

TEST(OutputFormat, before_the_token_touches_nothing) {
    NewVoice s;
    GUID id = server_class;
    WAVEFORMATEX mine = {};
    WAVEFORMATEX* format = &mine;
    EXPECT_EQ(s.object.engine->GetOutputFormat(nullptr, nullptr, &id, &format), SPERR_UNINITIALIZED);
    EXPECT_TRUE(IsEqualGUID(id, server_class));
    EXPECT_EQ(format, &mine);
}

TEST(OutputFormat, missing_voice_path_gives_a_block_of_zeros) {
    NewVoice s;
    s.token.values.erase("voxPath");
    s.set();
    GUID id = {};
    WAVEFORMATEX* format = nullptr;
    EXPECT_EQ(s.object.engine->GetOutputFormat(nullptr, nullptr, &id, &format), S_OK);
    EXPECT_EQ(format->nSamplesPerSec, 0u);
    server::free_task_block(format);
}

TEST(OutputFormat, without_memory_gives_the_null_format) {
    NewVoice s;
    s.set();
    GUID id = server_class;
    WAVEFORMATEX* format = nullptr;
    server::fail_allocation(1, false);
    EXPECT_EQ(s.object.engine->GetOutputFormat(nullptr, nullptr, &id, &format), E_OUTOFMEMORY);
    EXPECT_TRUE(server::stop_failing());
    EXPECT_TRUE(IsEqualGUID(id, GUID_NULL));
}

}  // namespace
