// Voice tokens in Windows' registry, where SAPI keeps them.
#ifdef _WIN32

#include <algorithm>
#include <memory>

#include "tools/host/hresult.h"
#include "tools/host/voices.h"

namespace host {

namespace {

constexpr LPCWSTR tokens_key = L"Software\\Microsoft\\Speech\\Voices\\Tokens";

struct Root {
    HKEY key;
    const char* name;
};

// A voice of the machine goes before one of the user's that has the same id.
const Root roots[] = {{HKEY_LOCAL_MACHINE, "HKEY_LOCAL_MACHINE"}, {HKEY_CURRENT_USER, "HKEY_CURRENT_USER"}};

struct KeyCloser {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using OwnedKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

OwnedKey open_key(HKEY parent, LPCWSTR name) {
    HKEY key = nullptr;
    return OwnedKey(RegOpenKeyExW(parent, name, 0, KEY_READ, &key) == ERROR_SUCCESS ? key : nullptr);
}

// A registry name has at most 255 units, a value's name at most 16,383.
constexpr DWORD name_size = 16384;

std::vector<WideString> key_names(HKEY key) {
    std::vector<WideString> result;
    WideString name(name_size, 0);
    for (DWORD index = 0;; ++index) {
        DWORD length = name_size;
        if (RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        result.push_back(name.substr(0, length));
    }
    return result;
}

std::vector<WideString> value_names(HKEY key) {
    std::vector<WideString> result;
    WideString name(name_size, 0);
    for (DWORD index = 0;; ++index) {
        DWORD length = name_size;
        if (RegEnumValueW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        result.push_back(name.substr(0, length));
    }
    return result;
}

std::vector<BYTE> value_data(HKEY key, const WideString& name, DWORD* type) {
    DWORD size = 0;
    if (RegQueryValueExW(key, name.c_str(), nullptr, type, nullptr, &size) != ERROR_SUCCESS) return {};
    std::vector<BYTE> data(size);
    if (RegQueryValueExW(key, name.c_str(), nullptr, type, data.data(), &size) != ERROR_SUCCESS) return {};
    data.resize(std::min<std::size_t>(size, data.size()));
    return data;
}

// The text of a string value: up to its NUL, which a writer may have left out.
WideString text_in(const std::vector<BYTE>& data) {
    WideString text(data.size() / sizeof(WCHAR), 0);
    std::copy_n(data.data(), text.size() * sizeof(WCHAR), reinterpret_cast<BYTE*>(text.data()));
    return text.substr(0, text.find(WCHAR{0}));
}

WideString expanded(const WideString& text) {
    WideString result(ExpandEnvironmentStringsW(text.c_str(), nullptr, 0), 0);
    const DWORD size = ExpandEnvironmentStringsW(text.c_str(), result.data(), static_cast<DWORD>(result.size()));
    if (size == 0 || size > result.size()) return text;
    return result.substr(0, size - 1);
}

void add_value(HKEY key, const WideString& name, KeyData* data) {
    DWORD type = REG_NONE;
    const std::vector<BYTE> bytes = value_data(key, name, &type);
    if (type == REG_SZ) data->values[to_utf8(name)] = to_utf8(text_in(bytes));
    if (type == REG_EXPAND_SZ) data->values[to_utf8(name)] = to_utf8(expanded(text_in(bytes)));
    if (type == REG_DWORD && bytes.size() == sizeof(DWORD))
        data->values[to_utf8(name)] =
            static_cast<DWORD>(bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<DWORD>(bytes[3]) << 24);
}

// Tokens are two keys deep; a tree that is much deeper is none.
constexpr int deepest = 8;

std::shared_ptr<KeyData> read_key(HKEY key, int depth) {
    auto data = std::make_shared<KeyData>();
    for (const WideString& name : value_names(key)) add_value(key, name, data.get());
    if (depth == deepest) return data;
    for (const WideString& name : key_names(key)) {
        const OwnedKey sub_key = open_key(key, name.c_str());
        if (sub_key) data->keys[to_utf8(name)] = read_key(sub_key.get(), depth + 1);
    }
    return data;
}

}  // namespace

std::string voices_place() { return "'HKEY_LOCAL_MACHINE\\" + to_utf8(tokens_key) + "'"; }

std::vector<Voice> find_voices(std::vector<std::string>* problems) {
    std::vector<Voice> result;
    for (const Root& root : roots) {
        const OwnedKey tokens = open_key(root.key, tokens_key);
        if (!tokens) continue;
        for (const WideString& name : key_names(tokens.get())) {
            const std::string id = to_utf8(name);
            const std::string place = std::string(root.name) + "\\" + to_utf8(tokens_key) + "\\" + id;
            const OwnedKey key = open_key(tokens.get(), name.c_str());
            if (!key)
                problems->push_back("cannot read " + place);
            else if (std::none_of(result.begin(), result.end(),
                                  [&](const Voice& voice) { return equal_ignoring_case(voice.id, id); }))
                result.push_back(Voice{id, place, read_key(key.get(), 0)});
        }
    }
    std::sort(result.begin(), result.end(), [](const Voice& a, const Voice& b) { return NameLess()(a.id, b.id); });
    return result;
}

}  // namespace host

#endif
