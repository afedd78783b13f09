// The least that a SAPI host is: a token of few values, a site that takes everything, an object with its voice.
#ifndef NELVA_BENCH_HOST_H
#define NELVA_BENCH_HOST_H

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "bench_tools.h"
#include "platform/sapi.h"
#include "sapi/dll_funcs.h"
#include "sapi/tts_sapi.h"
#include "tools/host/data_key.h"
#include "tools/host/voices.h"

// A voice token with what the engine asks for.
inline host::ComPtr<ISpObjectToken> bench_token(const std::string& lib, const std::string& vox) {
    auto attributes = std::make_shared<host::KeyData>();
    attributes->values["Name"] = std::string("Bench");
    attributes->values["Language"] = std::string("409");
    auto token = std::make_shared<host::KeyData>();
    token->values["libPath"] = lib;
    token->values["voxPath"] = vox;
    token->keys["Attributes"] = std::move(attributes);
    return host::make_token("bench", std::move(token));
}

// References are not counted: a site outlives its Speak.
class BenchSite : public ISpTTSEngineSite {
public:
    std::uint64_t bytes = 0;
    std::uint64_t events = 0;
    bool abort_after_first_write = false;
    BenchClock::time_point first_write;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE AddEvents(const SPEVENT*, ULONG count) override {
        events += count;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetEventInterest(ULONGLONG* mask) override {
        *mask = 0x1B0;
        return S_OK;
    }
    DWORD STDMETHODCALLTYPE GetActions() override { return abort_after_first_write && bytes > 0 ? SPVES_ABORT : 0; }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG size, ULONG* written) override {
        if (bytes == 0) first_write = BenchClock::now();
        bytes += size;
        *written = size;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetRate(LONG* rate) override {
        *rate = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetVolume(USHORT* volume) override {
        *volume = 100;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSkipInfo(SPVSKIPTYPE*, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CompleteSkip(LONG) override { return S_OK; }
};

// An object with its voice loaded, for as long as the program runs.
class BenchEngine {
public:
    using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);

    // From the server that is linked in, unless another one's function is given.
    explicit BenchEngine(ISpObjectToken* token, GetClassObject get_class_object = DllGetClassObject) {
        IClassFactory* factory = nullptr;
        get_class_object(host::nelva_class_id, IID_IClassFactory, reinterpret_cast<void**>(&factory));
        factory->CreateInstance(nullptr, IID_ISpTTSEngine, reinterpret_cast<void**>(&engine_));
        ISpObjectWithToken* with_token = nullptr;
        engine_->QueryInterface(IID_ISpObjectWithToken, reinterpret_cast<void**>(&with_token));
        if (FAILED(with_token->SetObjectToken(token))) fail("the voice does not load");
        with_token->Release();
    }
    ~BenchEngine() { engine_->Release(); }
    BenchEngine(const BenchEngine&) = delete;
    BenchEngine& operator=(const BenchEngine&) = delete;

    void speak(const std::u16string& text, BenchSite* site) {
        SPVTEXTFRAG fragment = {};
        fragment.State.LangID = 0x409;
        fragment.State.Volume = 100;
        fragment.pTextStart = text.c_str();
        fragment.ulTextLen = static_cast<ULONG>(text.size());
        const WAVEFORMATEX format = {WAVE_FORMAT_PCM, 1, 22050, 44100, 2, 16, 0};
        if (FAILED(engine_->Speak(0, SPDFID_WaveFormatEx, &format, &fragment, site))) fail("Speak fails");
    }

private:
    ISpTTSEngine* engine_ = nullptr;
};

#endif
