// A whole Speak with an engine made by hand: what reaches it, and what its site passes on.
#include "tools/host/speaker.h"

#include <gtest/gtest.h>

#include "fragment_view.h"
#include "tools/host/data_key.h"
#include "tools/host/hresult.h"
#include "tools/host/site.h"

namespace {

using namespace host;

// One object with two interfaces, like a real engine: each has a table of its own.
class FakeEngine final : public ISpTTSEngine {
public:
    struct WithToken final : ISpObjectWithToken {
        FakeEngine* engine = nullptr;
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
            return engine->QueryInterface(iid, out);
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return engine->AddRef(); }
        ULONG STDMETHODCALLTYPE Release() override { return engine->Release(); }
        HRESULT STDMETHODCALLTYPE SetObjectToken(ISpObjectToken* token) override {
            engine->token = token;
            return engine->token_result;
        }
        HRESULT STDMETHODCALLTYPE GetObjectToken(ISpObjectToken**) override { return E_NOTIMPL; }
    };

    FakeEngine() { with_token.engine = this; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (!takes_token || !IsEqualIID(iid, IID_ISpObjectWithToken)) return E_NOINTERFACE;
        *out = static_cast<ISpObjectWithToken*>(&with_token);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE Speak(DWORD flags, REFGUID id, const WAVEFORMATEX* format, const SPVTEXTFRAG* fragments,
                                    ISpTTSEngineSite* site) override {
        EXPECT_EQ(flags, 0u);
        EXPECT_TRUE(IsEqualGUID(id, SPDFID_WaveFormatEx));
        EXPECT_EQ(format->nSamplesPerSec, 22050u);
        spoken = shape_of(*fragments);
        site->AddRef();
        const HRESULT result = site->Write("ab", 2, nullptr);
        site->Release();
        return result < 0 ? result : speak_result;
    }
    HRESULT STDMETHODCALLTYPE GetOutputFormat(const GUID*, const WAVEFORMATEX*, GUID* id,
                                              WAVEFORMATEX** format) override {
        if (format_result < 0) return format_result;
        *id = SPDFID_WaveFormatEx;
        *format = static_cast<WAVEFORMATEX*>(CoTaskMemAlloc(sizeof(WAVEFORMATEX)));
        **format = {WAVE_FORMAT_PCM, 1, 22050, 44100, 2, 16, 0};
        return S_OK;
    }

    WithToken with_token;
    ULONG references = 1;
    bool takes_token = true;
    HRESULT token_result = S_OK;
    HRESULT format_result = S_OK;
    HRESULT speak_result = S_OK;
    ISpObjectToken* token = nullptr;
    std::string spoken;
};

ComPtr<ISpTTSEngine> reference_to(FakeEngine* engine) {
    engine->AddRef();
    return ComPtr<ISpTTSEngine>(engine);
}

std::string message_of(FakeEngine* engine) {
    try {
        Speaker(reference_to(engine), nullptr, "v");
    } catch (const HostError& error) {
        return error.what();
    }
    return "no error";
}

TEST(Speaker, engine_gets_token_fragments_and_site) {
    FakeEngine engine;
    const ComPtr<ISpObjectToken> token = make_token("id", std::make_shared<KeyData>());
    const SpeechInput input = input_from_text(NELVA_WIDE("Hi"), 0x409);
    const ComPtr<Site> site(new Site({}, {}));
    {
        Speaker speaker(reference_to(&engine), token.get(), "v");
        EXPECT_EQ(speaker.format().nAvgBytesPerSec, 44100u);
        EXPECT_EQ(speaker.speak(input.fragments, site.get()), S_OK);
    }
    EXPECT_EQ(engine.token, token.get());
    EXPECT_EQ(engine.spoken, "0@0:Hi");
    EXPECT_EQ(engine.references, 1u);
    EXPECT_EQ(site->references(), 1u);
}

TEST(Speaker, result_of_speak_is_handed_on) {
    FakeEngine engine;
    const SpeechInput input = input_from_text(NELVA_WIDE("Hi"), 0);
    const ComPtr<Site> site(new Site({}, {}));
    engine.speak_result = SP_AUDIO_STOPPED;
    EXPECT_EQ(Speaker(reference_to(&engine), nullptr, "v").speak(input.fragments, site.get()), SP_AUDIO_STOPPED);
}

TEST(Speaker, failed_set_up_names_voice_step_and_code) {
    FakeEngine no_token, bad_token, no_format;
    no_token.takes_token = false;
    bad_token.token_result = SPERR_NOT_FOUND;
    no_format.format_result = E_OUTOFMEMORY;
    EXPECT_EQ(message_of(&no_token).find("the engine of the voice 'v' takes no voice: 0x80004002 (E_NOINTERFACE)"), 0u);
    EXPECT_EQ(message_of(&bad_token).find("cannot set the voice 'v' up: 0x8004503A (SPERR_NOT_FOUND)"), 0u);
    EXPECT_EQ(message_of(&no_format).find("cannot get the audio format of the voice 'v': 0x8007000E"), 0u);
    for (const FakeEngine* each : {&no_token, &bad_token, &no_format}) EXPECT_EQ(each->references, 1u);
}

TEST(Speaker, document_is_what_the_library_makes_of_the_fragments) {
    const SpeechInput input = input_from_text(NELVA_WIDE("a < b"), 0x409);
    const std::string document = document_of(input.fragments, "en");
    EXPECT_NE(document.find("xml:lang=\"en\""), std::string::npos);
    EXPECT_NE(document.find("<mark name=\"P0\"/>a &lt; b</speak>"), std::string::npos);
}

TEST(Speaker, document_of_no_fragments_is_empty_text) {
    EXPECT_EQ(document_of(FragmentList(), "en").find("<mark"), std::string::npos);
}

}  // namespace
