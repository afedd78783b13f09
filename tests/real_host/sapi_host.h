// A host as others write them: it knows of the engine only what the registry's voice tokens tell, and speaks through
// the SpVoice of the system's SAPI, with the system's own declarations.
#ifndef NELVA_TESTS_REAL_HOST_SAPI_HOST_H
#define NELVA_TESTS_REAL_HOST_SAPI_HOST_H

#include <gtest/gtest.h>
// In this order: the latter leaves the former to its user.
#include <objbase.h>

#include <sapi.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

// Holds one reference.
template <class Interface>
class Held {
public:
    Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { reset(); }

    void reset() {
        if (pointer_) pointer_->Release();
        pointer_ = nullptr;
    }
    Interface* get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    Interface** out() {
        reset();
        return &pointer_;
    }
    void** out_void() { return reinterpret_cast<void**>(out()); }

private:
    Interface* pointer_ = nullptr;
};

// COM for the life of a test, in an apartment that needs no messages.
class Apartment {
public:
    Apartment() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
    ~Apartment() { CoUninitialize(); }
};

WAVEFORMATEX mono_16_bit(unsigned rate);

using Samples = std::vector<std::int16_t>;

// A stream of the host's own to speak into, as SAPI asks for one: it says which format it wants, 16-bit mono PCM at
// `rate`, and keeps what is written. SAPI may hold on to it, so it lives by its references.
class MemoryOutput : public ISpStreamFormat {
public:
    explicit MemoryOutput(unsigned rate) : rate_(rate) {}

    // All that was written so far.
    Samples samples() const;

    HRESULT WINAPI QueryInterface(REFIID iid, void** out) override;
    ULONG WINAPI AddRef() override { return ++references_; }
    ULONG WINAPI Release() override;

    HRESULT WINAPI Read(void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    HRESULT WINAPI Write(const void* data, ULONG size, ULONG* written) override;

    HRESULT WINAPI Seek(LARGE_INTEGER distance, DWORD origin, ULARGE_INTEGER* position) override;
    HRESULT WINAPI SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    HRESULT WINAPI CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT WINAPI Commit(DWORD) override { return S_OK; }
    HRESULT WINAPI Revert() override { return E_NOTIMPL; }
    HRESULT WINAPI LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT WINAPI UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT WINAPI Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    HRESULT WINAPI Clone(IStream**) override { return E_NOTIMPL; }

    HRESULT WINAPI GetFormat(GUID* id, WAVEFORMATEX** format) override;

private:
    virtual ~MemoryOutput() = default;

    const unsigned rate_;
    std::atomic<ULONG> references_{1};
    mutable std::mutex mutex_;  // an asynchronous Speak writes on a thread of SAPI's
    std::string bytes_;
};

// The tokens of the voices that have all the attributes, in SAPI's syntax ("Language=407"), with "Vendor=Nelva".
std::vector<std::wstring> our_voices(const std::wstring& attributes = L"");

// The sample rate of the token's voice, which the name of its file ends with. 0 where there is no such token.
unsigned rate_of(const std::wstring& id);

// One SpVoice, with the voice of the token `id` (the last part of its path), speaking into memory at the rate of that
// voice: not every SAPI converts for a stream that wants another one.
class Speaker {
public:
    explicit Speaker(const std::wstring& id);

    ISpVoice* operator->() const { return voice_.get(); }
    HRESULT speak(const std::wstring& text, DWORD flags = SPF_DEFAULT);
    HRESULT choose(const std::wstring& id);
    Samples samples() const { return output_->samples(); }

private:
    Held<MemoryOutput> output_;
    Held<ISpVoice> voice_;
};

// What `text` sounds like, at the voice's rate and with its own settings.
Samples spoken(const std::wstring& id, const std::wstring& text);

// The samples' greatest distance from zero.
int peak(const Samples& samples);

inline double seconds(const Samples& samples, unsigned rate = 22050) {
    return static_cast<double>(samples.size()) / rate;
}

#endif
