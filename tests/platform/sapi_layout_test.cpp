// The SAPI declarations against those of the system's own headers, as far as these have them, and against the order of
// SAPI's documentation.

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "platform/sapi.h"
#ifdef NELVA_SYSTEM_SAPI
#include "platform/system_sapi_layout.h"
#endif

namespace {

// The place of a virtual function in its table. A pointer to one holds the offset in the table, plus 1.
template <typename Method>
long long slot(Method method) {
    long long words[2];
    static_assert(sizeof method == sizeof words);
    std::memcpy(words, &method, sizeof words);
    EXPECT_EQ(words[0] % 8, 1);
    return words[0] / 8;
}

}  // namespace

TEST(SapiSlots, event_sink_and_site) {
    // Windows' own headers overload the name.
    using QueryInterface = HRESULT (STDMETHODCALLTYPE IUnknown::*)(REFIID, void**);
    EXPECT_EQ(slot(static_cast<QueryInterface>(&ISpTTSEngineSite::QueryInterface)), 0);
    EXPECT_EQ(slot(&ISpTTSEngineSite::AddRef), 1);
    EXPECT_EQ(slot(&ISpTTSEngineSite::Release), 2);
    EXPECT_EQ(slot(&ISpTTSEngineSite::AddEvents), 3);
    EXPECT_EQ(slot(&ISpTTSEngineSite::GetEventInterest), 4);
    EXPECT_EQ(slot(&ISpTTSEngineSite::GetActions), 5);
    EXPECT_EQ(slot(&ISpTTSEngineSite::Write), 6);
    EXPECT_EQ(slot(&ISpTTSEngineSite::GetRate), 7);
    EXPECT_EQ(slot(&ISpTTSEngineSite::GetVolume), 8);
    EXPECT_EQ(slot(&ISpTTSEngineSite::GetSkipInfo), 9);
    EXPECT_EQ(slot(&ISpTTSEngineSite::CompleteSkip), 10);
}

TEST(SapiSlots, engine_object_with_token_and_token_ui) {
    EXPECT_EQ(slot(&ISpTTSEngine::Speak), 3);
    EXPECT_EQ(slot(&ISpTTSEngine::GetOutputFormat), 4);
    EXPECT_EQ(slot(&ISpObjectWithToken::SetObjectToken), 3);
    EXPECT_EQ(slot(&ISpObjectWithToken::GetObjectToken), 4);
    EXPECT_EQ(slot(&ISpTokenUI::IsUISupported), 3);
    EXPECT_EQ(slot(&ISpTokenUI::DisplayUI), 4);
}

TEST(SapiSlots, token) {
    EXPECT_EQ(slot(&ISpDataKey::GetStringValue), 6);
    EXPECT_EQ(slot(&ISpDataKey::OpenKey), 9);
    EXPECT_EQ(slot(&ISpDataKey::EnumValues), 14);
    EXPECT_EQ(slot(&ISpObjectToken::SetId), 15);
    EXPECT_EQ(slot(&ISpObjectToken::MatchesAttributes), 24);
}

TEST(SapiEvent, the_two_bit_fields_are_the_first_two_words) {
    SPEVENT event = {};
    event.eEventId = SPEI_VISEME;
    event.elParamType = SPET_LPARAM_IS_STRING;
    unsigned short words[2];
    std::memcpy(words, &event, sizeof words);
    EXPECT_EQ(words[0], 8);
    EXPECT_EQ(words[1], 4);
}

TEST(SapiEvent, interest_bits) {
    EXPECT_EQ(sapi_interest_bit(SPEI_TTS_BOOKMARK), 0x10u);
    EXPECT_EQ(sapi_interest_bit(SPEI_WORD_BOUNDARY), 0x20u);
    EXPECT_EQ(sapi_interest_bit(SPEI_SENTENCE_BOUNDARY), 0x80u);
    EXPECT_EQ(sapi_interest_bit(SPEI_VISEME), 0x100u);
    EXPECT_EQ(SPFEI(SPEI_VISEME), 0x0000000240000100u);
}

TEST(SapiNumbers, actions_skips_and_text_actions) {
    EXPECT_EQ(SPVES_ABORT, 1);
    EXPECT_EQ(SPVES_SKIP, 2);
    EXPECT_EQ(SPVES_RATE, 4);
    EXPECT_EQ(SPVES_VOLUME, 8);
    EXPECT_EQ(SPVST_SENTENCE, 1);
    EXPECT_EQ(SPVA_Bookmark, 3);
    EXPECT_EQ(SPVA_ParseUnknownTag, 6);
    EXPECT_EQ(SPET_LPARAM_IS_STRING, 4);
}

TEST(SapiGuids, as_they_are_written) {
    const auto text = [](const GUID& guid) {
        LPWSTR wide = nullptr;
        EXPECT_EQ(StringFromCLSID(guid, &wide), S_OK);
        const std::string narrow(wide, wide + wide_length(wide));
        CoTaskMemFree(wide);
        return narrow;
    };
    EXPECT_EQ(text(IID_IUnknown), "{00000000-0000-0000-C000-000000000046}");
    EXPECT_EQ(text(IID_IClassFactory), "{00000001-0000-0000-C000-000000000046}");
    EXPECT_EQ(text(IID_ISpTTSEngine), "{A74D7C8E-4CC5-4F2F-A6EB-804DEE18500E}");
    EXPECT_EQ(text(IID_ISpObjectWithToken), "{5B559F40-E952-11D2-BB91-00C04F8EE6C0}");
    EXPECT_EQ(text(IID_ISpTokenUI), "{F8E690F0-39CB-4843-B8D7-C84696E1119D}");
    EXPECT_EQ(text(IID_ISpTTSEngineSite), "{9880499B-CCE9-11D2-B503-00C04F797396}");
    EXPECT_EQ(text(SPDFID_WaveFormatEx), "{C31ADBAE-527F-4FF5-A230-F62BB61FF70C}");
}

#ifdef NELVA_SYSTEM_SAPI

namespace {

#define SIZE(record) \
    { "sizeof " #record, sizeof(record) }
#define FIELD(record, field) \
    { #record "." #field, offsetof(record, field) }
#define SLOT(interface, method) \
    { #interface "." #method, slot(&interface::method) }
#define VALUE(name) \
    { #name, name }
#define RESULT(name) \
    { #name, static_cast < unsigned>(name) }

const std::map<std::string, long long>& our_facts() {
    static const std::map<std::string, long long> facts = {
        SIZE(LONG),
        SIZE(ULONG),
        SIZE(ULONGLONG),
        SIZE(WPARAM),
        SIZE(LPARAM),
        SIZE(WCHAR),
        SIZE(BOOL),
        SIZE(HRESULT),
        SIZE(GUID),
        SIZE(LANGID),

        SIZE(WAVEFORMATEX),
        FIELD(WAVEFORMATEX, wFormatTag),
        FIELD(WAVEFORMATEX, nChannels),
        FIELD(WAVEFORMATEX, nSamplesPerSec),
        FIELD(WAVEFORMATEX, nAvgBytesPerSec),
        FIELD(WAVEFORMATEX, nBlockAlign),
        FIELD(WAVEFORMATEX, wBitsPerSample),
        FIELD(WAVEFORMATEX, cbSize),

        // The first two are bit-fields, whose places the_two_bit_fields_are_the_first_two_words looks at.
        SIZE(SPEVENT),
        {"SPEVENT.eEventId", 0},
        {"SPEVENT.elParamType", 2},
        FIELD(SPEVENT, ulStreamNum),
        FIELD(SPEVENT, ullAudioStreamOffset),
        FIELD(SPEVENT, wParam),
        FIELD(SPEVENT, lParam),

        SIZE(SPVPITCH),
        FIELD(SPVPITCH, MiddleAdj),
        FIELD(SPVPITCH, RangeAdj),
        SIZE(SPVCONTEXT),
        FIELD(SPVCONTEXT, pCategory),
        FIELD(SPVCONTEXT, pBefore),
        FIELD(SPVCONTEXT, pAfter),
        SIZE(SPVSTATE),
        FIELD(SPVSTATE, eAction),
        FIELD(SPVSTATE, LangID),
        FIELD(SPVSTATE, wReserved),
        FIELD(SPVSTATE, EmphAdj),
        FIELD(SPVSTATE, RateAdj),
        FIELD(SPVSTATE, Volume),
        FIELD(SPVSTATE, PitchAdj),
        FIELD(SPVSTATE, SilenceMSecs),
        FIELD(SPVSTATE, pPhoneIds),
        FIELD(SPVSTATE, ePartOfSpeech),
        FIELD(SPVSTATE, Context),
        VALUE(SPVA_Speak),
        VALUE(SPVA_Silence),
        VALUE(SPVA_Pronounce),
        VALUE(SPVA_Bookmark),
        VALUE(SPVA_SpellOut),
        VALUE(SPVA_Section),
        VALUE(SPVA_ParseUnknownTag),
        VALUE(SPPS_NotOverriden),
        VALUE(SPPS_Unknown),
        VALUE(SPPS_Noun),
        VALUE(SPPS_Verb),
        VALUE(SPPS_Modifier),
        VALUE(SPPS_Function),
        VALUE(SPPS_Interjection),
        VALUE(SPVFEATURE_STRESSED),
        VALUE(SPVFEATURE_EMPHASIS),

        VALUE(SPEI_UNDEFINED),
        VALUE(SPEI_START_INPUT_STREAM),
        VALUE(SPEI_END_INPUT_STREAM),
        VALUE(SPEI_VOICE_CHANGE),
        VALUE(SPEI_TTS_BOOKMARK),
        VALUE(SPEI_WORD_BOUNDARY),
        VALUE(SPEI_PHONEME),
        VALUE(SPEI_SENTENCE_BOUNDARY),
        VALUE(SPEI_VISEME),
        VALUE(SPEI_TTS_AUDIO_LEVEL),
        VALUE(SPEI_TTS_PRIVATE),
        VALUE(SPEI_MIN_TTS),
        VALUE(SPEI_MAX_TTS),
        VALUE(SPEI_RESERVED1),
        VALUE(SPEI_RESERVED2),
        VALUE(SPEI_RESERVED3),

        VALUE(SP_VISEME_0),
        VALUE(SP_VISEME_1),
        VALUE(SP_VISEME_8),
        VALUE(SP_VISEME_16),
        VALUE(SP_VISEME_21),

        VALUE(SPF_DEFAULT),
        VALUE(SPF_ASYNC),
        VALUE(SPF_PURGEBEFORESPEAK),
        VALUE(SPF_IS_FILENAME),
        VALUE(SPF_IS_XML),
        VALUE(SPF_IS_NOT_XML),
        VALUE(SPF_PERSIST_XML),
        VALUE(SPF_NLP_SPEAK_PUNC),

        RESULT(SPERR_NOT_FOUND),
        RESULT(SPERR_UNINITIALIZED),
        RESULT(SPERR_ALREADY_INITIALIZED),
        RESULT(SPERR_TTS_ENGINE_EXCEPTION),
        RESULT(SPERR_CANT_CREATE),
        RESULT(SP_AUDIO_STOPPED),
        SLOT(ISpEventSink, AddRef),
        SLOT(ISpEventSink, Release),
        SLOT(ISpEventSink, AddEvents),
        SLOT(ISpEventSink, GetEventInterest),

        SLOT(ISpObjectWithToken, SetObjectToken),
        SLOT(ISpObjectWithToken, GetObjectToken),

        SLOT(ISpDataKey, SetData),
        SLOT(ISpDataKey, GetData),
        SLOT(ISpDataKey, SetStringValue),
        SLOT(ISpDataKey, GetStringValue),
        SLOT(ISpDataKey, SetDWORD),
        SLOT(ISpDataKey, GetDWORD),
        SLOT(ISpDataKey, OpenKey),
        SLOT(ISpDataKey, CreateKey),
        SLOT(ISpDataKey, DeleteKey),
        SLOT(ISpDataKey, DeleteValue),
        SLOT(ISpDataKey, EnumKeys),
        SLOT(ISpDataKey, EnumValues),

        SLOT(ISpObjectToken, GetStringValue),
        SLOT(ISpObjectToken, EnumValues),
        SLOT(ISpObjectToken, SetId),
        SLOT(ISpObjectToken, GetId),
        SLOT(ISpObjectToken, GetCategory),
        SLOT(ISpObjectToken, CreateInstance),
        SLOT(ISpObjectToken, GetStorageFileName),
        SLOT(ISpObjectToken, RemoveStorageFileName),
        SLOT(ISpObjectToken, Remove),
        SLOT(ISpObjectToken, IsUISupported),
        SLOT(ISpObjectToken, DisplayUI),
        SLOT(ISpObjectToken, MatchesAttributes),
    };
    return facts;
}

}  // namespace

TEST(SapiAgainstSystemHeaders, sizes_offsets_slots_and_numbers) {
    int compared = 0;
    for (const SystemSapiFact* fact = system_sapi_facts; fact->name != nullptr; ++fact, ++compared) {
        const auto ours = our_facts().find(fact->name);
        ASSERT_NE(ours, our_facts().end()) << fact->name;
        EXPECT_EQ(ours->second, fact->value) << fact->name;
    }
    EXPECT_GE(compared, 80);
}

TEST(SapiAgainstSystemHeaders, interface_ids) {
    const std::map<std::string, GUID> ours = {{"IID_ISpEventSink", IID_ISpEventSink},
                                              {"IID_ISpObjectWithToken", IID_ISpObjectWithToken},
                                              {"IID_ISpDataKey", IID_ISpDataKey},
                                              {"IID_ISpObjectToken", IID_ISpObjectToken}};
    for (const SystemSapiGuid* guid = system_sapi_guids; guid->name != nullptr; ++guid)
        EXPECT_EQ(std::memcmp(&ours.at(guid->name), guid->bytes, sizeof(GUID)), 0) << guid->name;
}

#else

TEST(SapiAgainstSystemHeaders, sizes_offsets_slots_and_numbers) {
    GTEST_SKIP() << "no other SAPI headers were found; install libwine-dev to compare with them";
}

#endif
