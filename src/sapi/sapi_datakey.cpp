// Token values and language codes as UTF-8. All strings that leave here are GlobalAlloc blocks.

#include "sapi/sapi_datakey.h"

#include <cstring>

namespace {

// GetLocaleInfoW does not know these ids on every version of Windows, or gives an answer that voices do not go by.
struct FixedLanguage {
    DWORD lcid;
    const char* code;
};
constexpr FixedLanguage fixed_languages[] = {
    {0x540A, "es"},  // Spanish, United States
};

char* allocate_string(SIZE_T size) { return static_cast<char*>(GlobalAlloc(GMEM_FIXED, size)); }

char* copy_string(const char* text) {
    const SIZE_T size = std::strlen(text) + 1;
    char* copy = allocate_string(size);
    if (copy != nullptr) std::memcpy(copy, text, size);
    return copy;
}

// The length of a NUL-terminated text in UTF-8 bytes with the terminator; 0 when it cannot be measured.
int measure_utf8(LPCWSTR text) { return WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr); }

int convert_utf8(LPCWSTR text, char* target, int size) {
    return WideCharToMultiByte(CP_UTF8, 0, text, -1, target, size, nullptr, nullptr);
}

// Converts a text that is not empty. `result` is what counts when it cannot be measured or converted; the block is
// zeroed beforehand, so that a failed conversion leaves an empty string.
HRESULT convert_value(LPCWSTR wide, HRESULT result, char** out) {
    const int size = measure_utf8(wide);
    if (size < 1) return result;
    *out = static_cast<char*>(GlobalAlloc(GPTR, static_cast<SIZE_T>(size) + 1));
    if (*out == nullptr) return E_OUTOFMEMORY;
    return convert_utf8(wide, *out, size) >= 1 ? S_OK : result;
}

HRESULT empty_value(HRESULT result, char** out) {
    *out = copy_string("");
    return *out == nullptr ? E_OUTOFMEMORY : result;
}

char* language_name_utf8(LPCWSTR name) {
    const int size = measure_utf8(name);
    if (size < 1) return nullptr;
    char* code = allocate_string(static_cast<SIZE_T>(size));
    if (code == nullptr) return nullptr;
    if (convert_utf8(name, code, size) >= 1) return code;
    GlobalFree(code);
    return nullptr;
}

char* language_from_system(DWORD lcid) {
    const int length = GetLocaleInfoW(lcid, LOCALE_SISO639LANGNAME, nullptr, 0);
    if (length < 1) return nullptr;
    LPWSTR name = static_cast<LPWSTR>(GlobalAlloc(GMEM_FIXED, static_cast<SIZE_T>(length) * sizeof(WCHAR)));
    if (name == nullptr) return nullptr;
    const bool complete = GetLocaleInfoW(lcid, LOCALE_SISO639LANGNAME, name, length) == length;
    char* code = complete ? language_name_utf8(name) : nullptr;
    GlobalFree(name);
    return code;
}

}  // namespace

HRESULT get_datakey_value_utf8(ISpDataKey* key, LPCWSTR name, char** out) {
    *out = nullptr;
    LPWSTR wide = nullptr;
    HRESULT result = key->GetStringValue(name, &wide);
    if (SUCCEEDED(result) && wide != nullptr)
        result = wide[0] == 0 ? empty_value(result, out) : convert_value(wide, result, out);
    if (FAILED(result)) {
        GlobalFree(*out);
        *out = nullptr;
    }
    CoTaskMemFree(wide);
    return result;
}

char* lang_from_ms_langcode(DWORD lcid) {
    for (const FixedLanguage& language : fixed_languages)
        if (language.lcid == lcid) return copy_string(language.code);
    return language_from_system(lcid);
}
