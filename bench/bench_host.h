// The least that a SAPI host is: a token of fixed values, a site that takes everything, an object with its voice.
#ifndef NELVA_BENCH_HOST_H
#define NELVA_BENCH_HOST_H

#include <cstdint>
#include <cstring>
#include <string>

#include "bench_tools.h"
#include "platform/sapi.h"
#include "sapi/dll_funcs.h"
#include "sapi/tts_sapi.h"

// References are not counted: everything here outlives the object.
template <typename Interface>
class Uncounted : public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
};

template <typename Base>
class BenchKey : public Uncounted<Base> {
public:
    std::u16string name, language, lib_path, vox_path;
    ISpDataKey* attributes = nullptr;

    HRESULT STDMETHODCALLTYPE GetStringValue(LPCWSTR value, LPWSTR* out) override {
        const std::u16string key = value;
        const std::u16string& text = key == u"Name"       ? name
                                     : key == u"Language" ? language
                                     : key == u"libPath"  ? lib_path
                                     : key == u"voxPath"  ? vox_path
                                                          : empty_;
        if (text.empty()) return SPERR_NOT_FOUND;
        *out = static_cast<LPWSTR>(CoTaskMemAlloc((text.size() + 1) * sizeof(WCHAR)));
        std::memcpy(*out, text.c_str(), (text.size() + 1) * sizeof(WCHAR));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OpenKey(LPCWSTR, ISpDataKey** key) override {
        *key = attributes;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetData(LPCWSTR, ULONG, const BYTE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetData(LPCWSTR, ULONG*, BYTE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetStringValue(LPCWSTR, LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetDWORD(LPCWSTR, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDWORD(LPCWSTR, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateKey(LPCWSTR, ISpDataKey**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteKey(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteValue(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumKeys(ULONG, LPWSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumValues(ULONG, LPWSTR*) override { return E_NOTIMPL; }

private:
    std::u16string empty_;
};

class BenchToken : public BenchKey<ISpObjectToken> {
public:
    BenchToken(const std::string& lib, const std::string& vox) {
        lib_path.assign(lib.begin(), lib.end());
        vox_path.assign(vox.begin(), vox.end());
        attributes_.name = u"Bench";
        attributes_.language = u"409";
        attributes = &attributes_;
    }
    HRESULT STDMETHODCALLTYPE SetId(LPCWSTR, LPCWSTR, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetId(LPWSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCategory(ISpObjectTokenCategory**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, DWORD, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetStorageFileName(REFCLSID, LPCWSTR, LPCWSTR, ULONG, LPWSTR*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE RemoveStorageFileName(REFCLSID, LPCWSTR, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Remove(const CLSID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsUISupported(LPCWSTR, void*, ULONG, IUnknown*, BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DisplayUI(HWND, LPCWSTR, LPCWSTR, void*, ULONG, IUnknown*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE MatchesAttributes(LPCWSTR, BOOL*) override { return E_NOTIMPL; }

private:
    BenchKey<ISpDataKey> attributes_;
};

class BenchSite : public Uncounted<ISpTTSEngineSite> {
public:
    std::uint64_t bytes = 0;
    std::uint64_t events = 0;
    bool abort_after_first_write = false;
    BenchClock::time_point first_write;

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
    explicit BenchEngine(BenchToken* token, GetClassObject get_class_object = DllGetClassObject) {
        IClassFactory* factory = nullptr;
        const CLSID clsid = {0xA174EDD5, 0x7D96, 0x4DE4, {0xBA, 0xCE, 0xEF, 0x26, 0x76, 0x27, 0xD8, 0x34}};
        get_class_object(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
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
