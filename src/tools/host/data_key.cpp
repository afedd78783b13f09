// The two COM objects over KeyData.
#include "tools/host/data_key.h"

#include <cstring>
#include <iterator>
#include <new>

#include "tools/host/hresult.h"

namespace host {

namespace {

HRESULT hand_out(const std::string& text, LPWSTR* out) try {
    const WideString wide = to_wide(text);
    const std::size_t size = (wide.size() + 1) * sizeof(WCHAR);
    *out = static_cast<LPWSTR>(CoTaskMemAlloc(size));
    if (!*out) return E_OUTOFMEMORY;
    std::memcpy(*out, wide.c_str(), size);
    return S_OK;
} catch (const std::exception&) {
    return E_OUTOFMEMORY;
}

std::string name_of(LPCWSTR name) { return name ? to_utf8(name) : std::string(); }

template <typename Map>
HRESULT name_at(const Map& map, ULONG index, LPWSTR* name) {
    if (!name) return E_POINTER;
    *name = nullptr;
    if (index >= map.size()) return sperr_no_more_items;
    return hand_out(std::next(map.begin(), static_cast<std::ptrdiff_t>(index))->first, name);
}

// The methods of ISpDataKey, for the key and for the token that derives from it.
template <typename Interface>
class KeyMethods : public Counted<Interface> {
public:
    explicit KeyMethods(std::shared_ptr<const KeyData> data) : data_(std::move(data)) {}

    HRESULT STDMETHODCALLTYPE SetData(LPCWSTR, ULONG, const BYTE*) override { return E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE GetData(LPCWSTR, ULONG* size, BYTE*) override {
        return size ? SPERR_NOT_FOUND : E_POINTER;
    }
    HRESULT STDMETHODCALLTYPE SetStringValue(LPCWSTR, LPCWSTR) override { return E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE GetStringValue(LPCWSTR name, LPWSTR* value) override try {
        if (!value) return E_POINTER;
        *value = nullptr;
        const std::string* text = data_->string(name_of(name));
        return text ? hand_out(*text, value) : SPERR_NOT_FOUND;
    } catch (const std::exception&) {
        return E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE SetDWORD(LPCWSTR, DWORD) override { return E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE GetDWORD(LPCWSTR name, DWORD* value) override try {
        if (!value) return E_POINTER;
        const auto found = data_->values.find(name_of(name));
        if (found == data_->values.end()) return SPERR_NOT_FOUND;
        const DWORD* number = std::get_if<DWORD>(&found->second);
        if (!number) return SPERR_NOT_FOUND;
        *value = *number;
        return S_OK;
    } catch (const std::exception&) {
        return E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE OpenKey(LPCWSTR name, ISpDataKey** key) override try {
        if (!key) return E_POINTER;
        *key = nullptr;
        const auto found = data_->keys.find(name_of(name));
        if (found == data_->keys.end()) return SPERR_NOT_FOUND;
        *key = new KeyMethods<ISpDataKey>(found->second);
        return S_OK;
    } catch (const std::exception&) {
        return E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE CreateKey(LPCWSTR, ISpDataKey**) override { return E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE DeleteKey(LPCWSTR) override { return E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE DeleteValue(LPCWSTR) override { return E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE EnumKeys(ULONG index, LPWSTR* name) override { return name_at(data_->keys, index, name); }
    HRESULT STDMETHODCALLTYPE EnumValues(ULONG index, LPWSTR* name) override {
        return name_at(data_->values, index, name);
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return this->answer(iid, out, {IID_IUnknown, IID_ISpDataKey});
    }

private:
    std::shared_ptr<const KeyData> data_;
};

class Token final : public KeyMethods<ISpObjectToken> {
public:
    Token(std::string id, std::shared_ptr<const KeyData> data) : KeyMethods(std::move(data)), id_(std::move(id)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return answer(iid, out, {IID_IUnknown, IID_ISpDataKey, IID_ISpObjectToken});
    }
    HRESULT STDMETHODCALLTYPE GetId(LPWSTR* id) override {
        if (!id) return E_POINTER;
        *id = nullptr;
        return hand_out(id_, id);
    }

    HRESULT STDMETHODCALLTYPE SetId(LPCWSTR, LPCWSTR, BOOL) override { return E_NOTIMPL; }
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
    std::string id_;
};

}  // namespace

const std::string* KeyData::string(const std::string& name) const {
    const auto found = values.find(name);
    return found == values.end() ? nullptr : std::get_if<std::string>(&found->second);
}

const KeyData* KeyData::key(const std::string& name) const {
    const auto found = keys.find(name);
    return found == keys.end() ? nullptr : found->second.get();
}

ComPtr<ISpDataKey> make_data_key(std::shared_ptr<const KeyData> data) {
    return ComPtr<ISpDataKey>(new KeyMethods<ISpDataKey>(std::move(data)));
}

ComPtr<ISpObjectToken> make_token(const std::string& id, std::shared_ptr<const KeyData> data) {
    return ComPtr<ISpObjectToken>(new Token(id, std::move(data)));
}

long live_keys() { return Counted<ISpDataKey>::live_objects() + Counted<ISpObjectToken>::live_objects(); }

}  // namespace host
