// See sapi_host.h. This is the file that holds SAPI's ids.
#define INITGUID
#include "real_host/sapi_host.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

// mingw-w64 declares this id and defines it nowhere.
EXTERN_C const GUID SPDFID_WaveFormatEx = {
    0xC31ADBAE, 0x527F, 0x4FF5, {0xA2, 0x30, 0xF6, 0x2B, 0xB6, 0x1F, 0xF7, 0x0C}};

namespace {

const std::wstring tokens_key = L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Speech\\Voices\\Tokens\\";
const wchar_t voices_category[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Speech\\Voices";

HRESULT open_token(const std::wstring& id, Held<ISpObjectToken>& token) {
    const HRESULT hr = CoCreateInstance(CLSID_SpObjectToken, nullptr, CLSCTX_ALL, IID_ISpObjectToken, token.out_void());
    return hr < 0 ? hr : token->SetId(nullptr, (tokens_key + id).c_str(), FALSE);
}

}  // namespace

WAVEFORMATEX mono_16_bit(unsigned rate) {
    WAVEFORMATEX format = {};
    format.wFormatTag = WAVE_FORMAT_PCM;
    format.nChannels = 1;
    format.nSamplesPerSec = rate;
    format.wBitsPerSample = 16;
    format.nBlockAlign = 2;
    format.nAvgBytesPerSec = rate * 2;
    return format;
}

Samples MemoryOutput::samples() const {
    const std::lock_guard lock(mutex_);
    Samples result(bytes_.size() / 2);
    std::memcpy(result.data(), bytes_.data(), result.size() * 2);
    return result;
}

HRESULT MemoryOutput::QueryInterface(REFIID iid, void** out) {
    const bool known =
        iid == IID_IUnknown || iid == IID_ISequentialStream || iid == IID_IStream || iid == IID_ISpStreamFormat;
    *out = known ? static_cast<ISpStreamFormat*>(this) : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
}

ULONG MemoryOutput::Release() {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
}

HRESULT MemoryOutput::Write(const void* data, ULONG size, ULONG* written) {
    const std::lock_guard lock(mutex_);
    bytes_.append(static_cast<const char*>(data), size);
    if (written) *written = size;
    return S_OK;
}

// Tells where writing goes on, which is always the end.
HRESULT MemoryOutput::Seek(LARGE_INTEGER distance, DWORD origin, ULARGE_INTEGER* position) {
    const std::lock_guard lock(mutex_);
    if (distance.QuadPart != 0 || origin == STREAM_SEEK_SET) return E_NOTIMPL;
    if (position) position->QuadPart = bytes_.size();
    return S_OK;
}

HRESULT MemoryOutput::GetFormat(GUID* id, WAVEFORMATEX** format) {
    *format = static_cast<WAVEFORMATEX*>(CoTaskMemAlloc(sizeof(WAVEFORMATEX)));
    if (!*format) return E_OUTOFMEMORY;
    **format = mono_16_bit(rate_);
    *id = SPDFID_WaveFormatEx;
    return S_OK;
}

std::vector<std::wstring> our_voices(const std::wstring& attributes) {
    const std::wstring wanted = L"Vendor=Nelva" + (attributes.empty() ? L"" : L";" + attributes);
    Held<ISpObjectTokenCategory> category;
    Held<IEnumSpObjectTokens> tokens;
    EXPECT_EQ(CoCreateInstance(CLSID_SpObjectTokenCategory, nullptr, CLSCTX_ALL, IID_ISpObjectTokenCategory,
                               category.out_void()),
              S_OK);
    EXPECT_EQ(category->SetId(voices_category, FALSE), S_OK);
    EXPECT_EQ(category->EnumTokens(wanted.c_str(), nullptr, tokens.out()), S_OK);
    std::vector<std::wstring> result;
    Held<ISpObjectToken> token;
    while (tokens->Next(1, token.out(), nullptr) == S_OK) {
        LPWSTR path = nullptr;
        EXPECT_EQ(token->GetId(&path), S_OK);
        const std::wstring text = path;
        result.push_back(text.substr(text.rfind(L'\\') + 1));
        CoTaskMemFree(path);
    }
    std::sort(result.begin(), result.end());
    return result;
}

unsigned rate_of(const std::wstring& id) {
    Held<ISpObjectToken> token;
    LPWSTR text = nullptr;
    HRESULT hr = open_token(id, token);
    if (hr >= 0) hr = token->GetStringValue(L"voxPath", &text);
    if (hr < 0) return 0;
    const std::wstring file = text;
    CoTaskMemFree(text);
    return file.ends_with(L"8v") ? 8000 : file.ends_with(L"16i-mf") ? 16000 : 22050;
}

Speaker::Speaker(const std::wstring& id) {
    *output_.out() = new MemoryOutput(rate_of(id));
    EXPECT_EQ(CoCreateInstance(CLSID_SpVoice, nullptr, CLSCTX_ALL, IID_ISpVoice, voice_.out_void()), S_OK);
    EXPECT_EQ(voice_->SetOutput(output_.get(), TRUE), S_OK);
    EXPECT_EQ(choose(id), S_OK);
}

HRESULT Speaker::speak(const std::wstring& text, DWORD flags) { return voice_->Speak(text.c_str(), flags, nullptr); }

HRESULT Speaker::choose(const std::wstring& id) {
    Held<ISpObjectToken> token;
    const HRESULT hr = open_token(id, token);
    return hr < 0 ? hr : voice_->SetVoice(token.get());
}

Samples spoken(const std::wstring& id, const std::wstring& text) {
    Speaker speaker(id);
    EXPECT_EQ(speaker.speak(text), S_OK);
    return speaker.samples();
}

int peak(const Samples& samples) {
    int result = 0;
    for (const std::int16_t sample : samples) result = std::max(result, std::abs(int{sample}));
    return result;
}
