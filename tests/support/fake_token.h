// A voice token of a test's making.
#ifndef NELVA_TESTS_FAKE_TOKEN_H
#define NELVA_TESTS_FAKE_TOKEN_H

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "platform/sapi.h"
#include "support/code_of.h"
#include "support/counted.h"

using WideString = std::basic_string<WCHAR>;

inline WideString widen(const std::string& ascii) { return WideString(ascii.begin(), ascii.end()); }

inline std::string narrow(LPCWSTR text) {
    std::string out;
    while (text && *text) out += static_cast<char>(*text++);
    return out;
}

// The string values of one key. `Base` is ISpDataKey or what derives from it.
template <typename Base>
class FakeKey : public Counted<Base> {
public:
    using Counted<Base>::Counted;

    std::map<std::string, WideString> values;
    std::map<std::string, HRESULT> failures;  // what reading this value gives in place of its text
    std::vector<std::string> asked;           // names of values in the order of the questions; keys end in a backslash

    void set(const std::string& name, const std::string& text) { values[name] = widen(text); }

    HRESULT STDMETHODCALLTYPE GetStringValue(LPCWSTR name, LPWSTR* value) override {
        const ForeignCode guard;
        asked.push_back(narrow(name));
        *value = nullptr;
        const auto failure = failures.find(narrow(name));
        if (failure != failures.end()) return failure->second;
        const auto found = values.find(narrow(name));
        if (found == values.end()) return SPERR_NOT_FOUND;
        const std::size_t bytes = (found->second.size() + 1) * sizeof(WCHAR);
        *value = static_cast<LPWSTR>(CoTaskMemAlloc(bytes));
        if (!*value) return E_OUTOFMEMORY;
        std::memcpy(*value, found->second.c_str(), bytes);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OpenKey(LPCWSTR, ISpDataKey**) override { return SPERR_NOT_FOUND; }

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
};

// A token with its `Attributes` key, complete at the start.
class FakeToken : public FakeKey<ISpObjectToken> {
public:
    FakeKey<ISpDataKey> attributes{IID_ISpDataKey};
    HRESULT open_attributes = S_OK;

    FakeToken() : FakeKey(IID_ISpObjectToken) {
        attributes.set("Name", "Test voice");
        attributes.set("Language", "409;9");
        set("libPath", "lib");
        set("voxPath", "test22i");
    }

    HRESULT STDMETHODCALLTYPE OpenKey(LPCWSTR name, ISpDataKey** key) override {
        const ForeignCode guard;
        asked.push_back(narrow(name) + "\\");
        *key = nullptr;
        if (narrow(name) != "Attributes") return SPERR_NOT_FOUND;
        if (FAILED(open_attributes)) return open_attributes;
        attributes.AddRef();
        *key = &attributes;
        return S_OK;
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
};

#endif
