// The object in memory: its fields, its tables, its beginning, and what a token puts into it.
#include "sapi/tts_sapi.h"

#include "sapi/dll_funcs.h"
#include "sapi/tts_com_classfactory.h"
#include "sapi/tts_sapi_objwtoken.h"
#include "sapi/tts_sapi_tokenui.h"
#include "sapi/tts_sapi_ttsengine.h"
#include "support/test_object.h"

namespace {

template <typename Table, typename... Functions>
void expect_slots(const Table& table, Functions*... functions) {
    const void* expected[] = {reinterpret_cast<const void*>(functions)...};
    const void* words[sizeof...(functions)];
    static_assert(sizeof table == sizeof words);
    std::memcpy(words, &table, sizeof words);
    for (std::size_t i = 0; i < sizeof...(functions); ++i) EXPECT_EQ(words[i], expected[i]) << i;
}

TEST(Tables, slots_stand_in_order) {
    expect_slots(TTS_SAPI_Vtbl, TTS_SAPI_QueryInterface, TTS_SAPI_AddRef, TTS_SAPI_Release);
    expect_slots(TTS_SAPI_ObjWToken_Vtbl, TTS_SAPI_ObjWToken_QueryInterface, TTS_SAPI_ObjWToken_AddRef,
                 TTS_SAPI_ObjWToken_Release, TTS_SAPI_ObjWToken_SetObjectToken, TTS_SAPI_ObjWToken_GetObjectToken);
    expect_slots(TTS_SAPI_TokenUI_Vtbl, TTS_SAPI_TokenUI_QueryInterface, TTS_SAPI_TokenUI_AddRef,
                 TTS_SAPI_TokenUI_Release, TTS_SAPI_TokenUI_IsUISupported, TTS_SAPI_TokenUI_DisplayUI);
    expect_slots(TTS_SAPI_TTSEngine_Vtbl, TTS_SAPI_TTSEngine_QueryInterface, TTS_SAPI_TTSEngine_AddRef,
                 TTS_SAPI_TTSEngine_Release, TTS_SAPI_TTSEngine_Speak, TTS_SAPI_TTSEngine_GetOutputFormat);
}

TEST(Tables, class_factory_is_one_word_that_points_to_its_table) {
    static_assert(sizeof TTS_IClassFactory == sizeof(void*));
    const void* const* words = reinterpret_cast<const void* const*>(TTS_IClassFactory.table);
    EXPECT_EQ(words[0], reinterpret_cast<const void*>(classQueryInterface));
    EXPECT_EQ(words[1], reinterpret_cast<const void*>(classAddRef));
    EXPECT_EQ(words[2], reinterpret_cast<const void*>(classRelease));
    EXPECT_EQ(words[3], reinterpret_cast<const void*>(classCreateInstance));
    EXPECT_EQ(words[4], reinterpret_cast<const void*>(classLockServer));
}

TEST(Record, fields_stand_in_order) {
    TestObject object;
    NELVA_SAPI* self = object.self;
    const void* fields[] = {&self->table,
                            &self->objwtoken_iface,
                            &self->tokenui_iface,
                            &self->ttsengine_iface,
                            const_cast<LONG*>(&self->refcount),
                            &self->token,
                            &self->site,
                            &self->voice_name,
                            &self->langid,
                            &self->voice_language,
                            &self->audio_buf,
                            &self->audio_len,
                            &self->audio_size,
                            &self->bytes_per_sec,
                            &self->event_buf,
                            &self->event_count,
                            &self->event_size,
                            &self->engine,
                            &self->voice,
                            &self->lex_path,
                            &self->sapi_rate,
                            &self->sapi_volume,
                            &self->extra_rate,
                            &self->extra_volume,
                            &self->sonic,
                            &self->sample_buf,
                            &self->sample_buf_size};
    const std::ptrdiff_t offsets[] = {0,   8,   16,  24,  32,  40,  48,  56,  64,  72,  80,  88,  96, 104,
                                      112, 120, 128, 136, 144, 152, 160, 164, 168, 172, 176, 184, 192};
    static_assert(std::size(fields) == std::size(offsets));
    for (std::size_t i = 0; i < std::size(fields); ++i)
        EXPECT_EQ(static_cast<const char*>(fields[i]) - reinterpret_cast<const char*>(self), offsets[i]) << i;
    EXPECT_EQ(TTS_SAPI_size_impl, 200u);
}

TEST(NewObject, has_one_reference_its_records_and_nothing_else) {
    const LONG before = DLL_adjust_usage(0);
    TTS_SAPI* object = nullptr;
    ASSERT_EQ(TTS_SAPI_new(&object, nullptr), S_OK);
    EXPECT_EQ(DLL_adjust_usage(0), before + 1);
    EXPECT_EQ(object->refcount, 1);
    EXPECT_EQ(object->objwtoken_iface->object, object);
    EXPECT_EQ(object->tokenui_iface->object, object);
    EXPECT_EQ(object->ttsengine_iface->object, object);
    EXPECT_EQ(object->token, nullptr);
    EXPECT_EQ(object->site, nullptr);
    EXPECT_EQ(object->voice_name, nullptr);
    EXPECT_EQ(object->langid, 0u);
    EXPECT_EQ(object->voice_language, nullptr);
    EXPECT_EQ(object->audio_buf, nullptr);
    EXPECT_EQ(object->event_buf, nullptr);
    EXPECT_EQ(object->audio_len + object->audio_size + object->bytes_per_sec, 0u);
    EXPECT_EQ(object->event_count + object->event_size, 0u);
    EXPECT_EQ(TTS_SAPI_Release(object), 0u);
    EXPECT_EQ(DLL_adjust_usage(0), before);
}

TEST(NewObject, without_a_place_to_put_it_is_out_of_memory) {
    const LONG before = DLL_adjust_usage(0);
    EXPECT_EQ(TTS_SAPI_new(nullptr, nullptr), E_OUTOFMEMORY);
    EXPECT_EQ(DLL_adjust_usage(0), before);
}

struct TokenObject : TestObject {
    FakeToken token;
    HRESULT init() {
        token.AddRef();
        self->token = &token;
        return TTS_SAPI_init_from_token(self);
    }
    // The token goes before the object does.
    ~TokenObject() {
        if (self->token) token.Release();
        self->token = nullptr;
    }
};

TEST(InitFromToken, without_a_token_is_uninitialized) {
    TestObject object;
    EXPECT_EQ(TTS_SAPI_init_from_token(object.self), SPERR_UNINITIALIZED);
}

TEST(InitFromToken, stores_name_and_language) {
    TokenObject object;
    object.token.attributes.values["Name"] = NELVA_WIDE("Zo\u00EB");
    EXPECT_EQ(object.init(), S_OK);
    EXPECT_STREQ(object.self->voice_name, "Zo\xC3\xAB");
    EXPECT_EQ(object.self->langid, 0x409u);
    EXPECT_STREQ(object.self->voice_language, "en");
    EXPECT_EQ(object.self->lex_path, nullptr);
}

TEST(InitFromToken, stores_the_lexicon_even_an_empty_one) {
    TokenObject object;
    object.token.set("lexPath", "");
    EXPECT_EQ(object.init(), S_OK);
    EXPECT_STREQ(object.self->lex_path, "");
}

TEST(InitFromToken, second_time_is_refused) {
    TokenObject object;
    EXPECT_EQ(object.init(), S_OK);
    EXPECT_EQ(TTS_SAPI_init_from_token(object.self), SPERR_ALREADY_INITIALIZED);
}

TEST(InitFromToken, bad_attributes_store_nothing) {
    for (const char* missing : {"Name", "Language"}) {
        TokenObject object;
        object.token.attributes.values.erase(missing);
        EXPECT_EQ(object.init(), SPERR_NOT_FOUND);
        EXPECT_EQ(object.self->voice_name, nullptr);
        EXPECT_EQ(object.self->langid, 0u);
        EXPECT_EQ(object.self->voice_language, nullptr);
        EXPECT_EQ(object.self->engine, nullptr);
    }
}

TEST(InitFromToken, voice_that_does_not_load_leaves_name_and_synthesiser) {
    TokenObject object;
    scripted_fail(SCRIPTED_LOAD_VOICE, 1, 0);
    EXPECT_EQ(object.init(), SPERR_TTS_ENGINE_EXCEPTION);
    EXPECT_NE(object.self->voice_name, nullptr);
    EXPECT_NE(object.self->engine, nullptr);
    EXPECT_EQ(object.self->voice, nullptr);
}

}  // namespace
