// Voice tokens in Windows' registry, where SAPI keeps them.
#ifdef _WIN32

#include <algorithm>
#include <memory>

#include "tools/host/hresult.h"
#include "tools/host/voice_store.h"

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

// The view of 64-bit programs, whoever asks.
constexpr REGSAM view = KEY_WOW64_64KEY;

OwnedKey open_key(HKEY parent, LPCWSTR name, REGSAM access = KEY_READ) {
    HKEY key = nullptr;
    return OwnedKey(RegOpenKeyExW(parent, name, 0, access | view, &key) == ERROR_SUCCESS ? key : nullptr);
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

const Root& root_of(const VoiceStore& store) { return roots[store.user ? 1 : 0]; }

void add_voices_of(const Root& root, std::vector<Voice>* voices, std::vector<std::string>* problems) {
    const OwnedKey tokens = open_key(root.key, tokens_key);
    if (!tokens) return;
    for (const WideString& name : key_names(tokens.get())) {
        const std::string id = to_utf8(name);
        const std::string place = std::string(root.name) + "\\" + to_utf8(tokens_key) + "\\" + id;
        const OwnedKey key = open_key(tokens.get(), name.c_str());
        if (!key)
            problems->push_back("cannot read " + place);
        else if (std::none_of(voices->begin(), voices->end(),
                              [&](const Voice& voice) { return equal_ignoring_case(voice.id, id); }))
            voices->push_back(Voice{id, place, read_key(key.get(), 0)});
    }
}

void sort_by_id(std::vector<Voice>* voices) {
    std::sort(voices->begin(), voices->end(), [](const Voice& a, const Voice& b) { return NameLess()(a.id, b.id); });
}

// ---- Writing ----

void require_written(LSTATUS status) {
    if (status != ERROR_SUCCESS) throw HostError("the registry", hresult_from_win32(static_cast<DWORD>(status)));
}

OwnedKey create_key(HKEY parent, const WideString& name) {
    HKEY key = nullptr;
    require_written(
        RegCreateKeyExW(parent, name.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE | view, nullptr, &key, nullptr));
    return OwnedKey(key);
}

void write_value(HKEY key, const std::string& name, const KeyData::Value& value) {
    const WideString wide_name = to_wide(name);
    if (const auto* number = std::get_if<DWORD>(&value)) {
        require_written(RegSetValueExW(key, wide_name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(number),
                                       sizeof *number));
        return;
    }
    const WideString text = to_wide(std::get<std::string>(value));
    const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(WCHAR));
    require_written(
        RegSetValueExW(key, wide_name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), bytes));
}

void write_key(HKEY key, const KeyData& data) {
    for (const WideString& name : value_names(key))
        if (data.values.count(to_utf8(name)) == 0) require_written(RegDeleteValueW(key, name.c_str()));
    for (const auto& [name, value] : data.values) write_value(key, name, value);
    for (const auto& [name, sub_key] : data.keys) write_key(create_key(key, to_wide(name)).get(), *sub_key);
}

}  // namespace

std::string voices_place() { return "'HKEY_LOCAL_MACHINE\\" + to_utf8(tokens_key) + "'"; }

std::vector<Voice> find_voices(std::vector<std::string>* problems) {
    std::vector<Voice> result;
    for (const Root& root : roots) add_voices_of(root, &result, problems);
    sort_by_id(&result);
    return result;
}

std::string place_of(const VoiceStore& store) {
    return std::string("'") + root_of(store).name + "\\" + to_utf8(tokens_key) + "'";
}

std::vector<Voice> voices_in(const VoiceStore& store, std::vector<std::string>* problems) {
    std::vector<Voice> result;
    add_voices_of(root_of(store), &result, problems);
    sort_by_id(&result);
    return result;
}

void write_voice(const VoiceStore& store, const std::string& id, const KeyData& data) {
    try {
        const OwnedKey tokens = create_key(root_of(store).key, tokens_key);
        const bool is_new = !open_key(tokens.get(), to_wide(id).c_str());
        try {
            write_key(create_key(tokens.get(), to_wide(id)).get(), data);
        } catch (const HostError&) {
            // Half a voice is worse than none.
            if (is_new) RegDeleteTreeW(tokens.get(), to_wide(id).c_str());
            throw;
        }
    } catch (const HostError& error) {
        cannot_write("the voice '" + id + "'", place_of(store), error.code());
    }
}

void remove_voice(const VoiceStore& store, const std::string& id) {
    const OwnedKey tokens = open_key(root_of(store).key, tokens_key, KEY_READ | KEY_WRITE);
    const LSTATUS status = tokens ? RegDeleteTreeW(tokens.get(), to_wide(id).c_str()) : ERROR_ACCESS_DENIED;
    if (status == ERROR_SUCCESS) return;
    const HRESULT code = hresult_from_win32(static_cast<DWORD>(status));
    const std::string message = "cannot remove the voice '" + id + "' from " + place_of(store);
    if (code != E_ACCESSDENIED) throw HostError(message, code);
    throw HostError(message, code, "run this as an administrator");
}

void cannot_write(const std::string& what, const std::string& place, HRESULT code) {
    const std::string message = "cannot write " + what + " to " + place;
    if (code != E_ACCESSDENIED) throw HostError(message, code);
    throw HostError(message, code, "run this as an administrator, or give --user for a voice of your own");
}

}  // namespace host

#endif
