// The engine layer's seam, called as the generic layer calls it.
#include "engine/nelva_sapi_object.h"
#include "support/test_object.h"

namespace {

TEST(Constants, of_this_engine) {
    const CLSID expected = {0xA174EDD5, 0x7D96, 0x4DE4, {0xBA, 0xCE, 0xEF, 0x26, 0x76, 0x27, 0xD8, 0x34}};
    EXPECT_TRUE(IsEqualGUID(CLSID_TTS_impl, expected));
    EXPECT_EQ(narrow(classname_TTS_impl), "Nelva TTS (OEM)");
    EXPECT_EQ(narrow(eventlog_source_TTS_impl), "Quillmark NELVA SAPI (OEM)");
    EXPECT_EQ(narrow(dicteditor_vendor_TTS_impl), "NELVA");
    EXPECT_EQ(TTS_SAPI_size_impl, sizeof(NELVA_SAPI));
}

TEST(NewImpl, sets_the_engine_layers_fields) {
    TestObject object;
    object.self->sapi_rate = object.self->sapi_volume = object.self->extra_rate = object.self->extra_volume = 5.0f;
    object.self->sample_buf_size = 7;
    TTS_SAPI* base = object.self;
    EXPECT_EQ(TTS_SAPI_new_impl(&base, NELVA_WIDE("ignored")), S_OK);
    EXPECT_EQ(object.self->sapi_rate, 1.0f);
    EXPECT_EQ(object.self->sapi_volume, 1.0f);
    EXPECT_EQ(object.self->extra_rate, 1.0f);
    EXPECT_EQ(object.self->extra_volume, 1.0f);
    EXPECT_EQ(object.self->engine, nullptr);
    EXPECT_EQ(object.self->voice, nullptr);
    EXPECT_EQ(object.self->lex_path, nullptr);
    EXPECT_EQ(object.self->sonic, nullptr);
    EXPECT_EQ(object.self->sample_buf, nullptr);
    EXPECT_EQ(object.self->sample_buf_size, 0u);
}

TEST(DeleteImpl, of_an_object_without_a_token_calls_nothing) {
    TestObject object;
    TTS_SAPI_delete_impl(object.self);
    EXPECT_STREQ(scripted_log(), "");
}

struct Voice : TestObject {
    FakeToken token;
    Voice() {
        token.AddRef();
        self->token = &token;
    }
    ~Voice() {
        token.Release();
        self->token = nullptr;
    }
    HRESULT load() { return TTS_SAPI_init_from_token_impl(self, nullptr, nullptr, nullptr); }
    HRESULT speak(const char* ssml) {
        const std::uint32_t positions[64] = {};
        return TTS_SAPI_speak_from_utf8_impl(self, ssml, positions);
    }
};

WAVEFORMATEX untouched_format() { return {9, 9, 9, 9, 9, 9, 9}; }

TEST(GetOutputFormatImpl, without_a_token_is_uninitialized) {
    TestObject object;
    WAVEFORMATEX format = untouched_format();
    EXPECT_EQ(TTS_SAPI_get_outputformat_impl(object.self, &format, nullptr), SPERR_UNINITIALIZED);
}

TEST(GetOutputFormatImpl, failing_path_is_its_failure) {
    Voice v;
    v.token.failures["voxPath"] = E_ACCESSDENIED;
    WAVEFORMATEX format = untouched_format();
    EXPECT_EQ(TTS_SAPI_get_outputformat_impl(v.self, &format, nullptr), E_ACCESSDENIED);
    EXPECT_EQ(format.nSamplesPerSec, 9u);
}

TEST(GetOutputFormatImpl, unknown_suffix_cannot_be_created) {
    Voice v;
    v.token.set("voxPath", "voice.dat");
    WAVEFORMATEX format = untouched_format();
    EXPECT_EQ(TTS_SAPI_get_outputformat_impl(v.self, &format, nullptr), SPERR_CANT_CREATE);
    EXPECT_EQ(format.nSamplesPerSec, 9u);
}

TEST(GetOutputFormatImpl, known_suffix_fills_every_field) {
    Voice v;
    v.token.set("voxPath", "x8v");
    WAVEFORMATEX format = untouched_format();
    EXPECT_EQ(TTS_SAPI_get_outputformat_impl(v.self, &format, nullptr), S_OK);
    EXPECT_EQ(format.wFormatTag, 1);
    EXPECT_EQ(format.nChannels, 1);
    EXPECT_EQ(format.nSamplesPerSec, 8000u);
    EXPECT_EQ(format.nAvgBytesPerSec, 16000u);
    EXPECT_EQ(format.nBlockAlign, 2);
    EXPECT_EQ(format.wBitsPerSample, 16);
    EXPECT_EQ(format.cbSize, 0);
}

TEST(SpeakImpl, null_document_is_an_engine_exception_behind_the_lexicon) {
    Voice v;
    v.token.set("lexPath", "my.pls");
    ASSERT_EQ(v.load(), S_OK);
    EXPECT_EQ(v.speak(nullptr), SPERR_TTS_ENGINE_EXCEPTION);
    EXPECT_STREQ(scripted_log(), "tts_create\ntts_load_voice lib test22i\ntts_dict_cleanup\ntts_dict_load my.pls\n");
}

TEST(SpeakImpl, interest_is_asked_once_in_front_of_the_lexicon) {
    Voice v;
    EXPECT_EQ(v.speak("<a/>"), SPERR_TTS_ENGINE_EXCEPTION);  // no voice
    EXPECT_EQ(v.site.calls["GetEventInterest"], 1);
    EXPECT_STREQ(scripted_log(), "tts_dict_cleanup null\n");
}

TEST(SpeakImpl, begins_with_neutral_factors_even_when_it_fails) {
    Voice v;
    v.self->sapi_rate = v.self->sapi_volume = v.self->extra_rate = v.self->extra_volume = 2.0f;
    v.speak(nullptr);
    EXPECT_EQ(v.self->sapi_rate, 1.0f);
    EXPECT_EQ(v.self->sapi_volume, 1.0f);
    EXPECT_EQ(v.self->extra_rate, 1.0f);
    EXPECT_EQ(v.self->extra_volume, 1.0f);
}

TEST(SpeakImpl, stream_and_buffer_serve_all_later_calls) {
    Voice v;
    ASSERT_EQ(v.load(), S_OK);
    EXPECT_EQ(v.speak("<a/>"), S_OK);
    const sonicStream stream = v.self->sonic;
    const std::int16_t* buffer = v.self->sample_buf;
    EXPECT_EQ(sonicGetSampleRate(stream), 22050);
    EXPECT_EQ(sonicGetNumChannels(stream), 1);
    EXPECT_EQ(v.self->sample_buf_size, 65536u);
    EXPECT_EQ(v.speak("<a/>"), S_OK);
    EXPECT_EQ(v.self->sonic, stream);
    EXPECT_EQ(v.self->sample_buf, buffer);
}

TEST(SpeakImpl, rate_times_the_second_factor_goes_to_sonic_and_no_further_call_resets_it) {
    Voice v;
    ASSERT_EQ(v.load(), S_OK);
    scripted_add_wave(10, 5, nullptr, 0);
    v.site.actions = {SPVES_RATE | SPVES_VOLUME};
    v.site.rate = 10;
    v.site.volume = 50;
    EXPECT_EQ(v.speak("<a/>"), S_OK);
    EXPECT_EQ(v.speak("<a/>"), S_OK);
    EXPECT_EQ(v.self->sapi_rate, 1.0f);
    EXPECT_EQ(sonicGetSpeed(v.self->sonic), 3.0f);
    EXPECT_EQ(sonicGetVolume(v.self->sonic), 0.5f);
}

}  // namespace
