// A registry in memory: a tree of keys behind one lock, and handles that remember the access they were opened with.
//
// As on Windows, creating and deleting a sub-key asks for no access of the parent's handle; reading and writing values
// does. A key that was deleted stays with those who have it open, and gives ERROR_KEY_DELETED.

#include "platform/native/registry.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "platform/native/internal.h"
#include "platform/testing.h"

namespace {

using platform_native::lower_case;
using platform_native::StandIn;
using platform_testing::RegistryValue;

struct Key {
    std::u16string path;  // "hklm\software\..." in lower case: what tests name it by
    bool deleted = false;
    std::map<std::u16string, std::shared_ptr<Key>> children;  // by name in lower case
    std::map<std::u16string, RegistryValue> values;           // likewise
    std::vector<REGSAM> access_asked;                         // last first
};
using KeyPointer = std::shared_ptr<Key>;

struct Handle {
    KeyPointer key;
    REGSAM access;
};

struct State {
    std::mutex mutex;
    KeyPointer machine;
    KeyPointer user;
    std::set<Handle*> open;
    std::map<std::u16string, REGSAM> denied;  // by path
    platform_native::Countdown failure;
    LSTATUS failure_code = ERROR_SUCCESS;
    long calls = 0;

    State() { clear(); }
    void clear();
};

State& state() {
    static State instance;
    return instance;
}

// The parts of a path between backslashes, in lower case; empty ones are passed over.
std::vector<std::u16string> path_parts(std::u16string_view path) {
    std::vector<std::u16string> parts;
    while (!path.empty()) {
        const std::size_t length = std::min(path.find(u'\\'), path.size());
        if (length > 0) parts.push_back(lower_case(path.substr(0, length)));
        path.remove_prefix(std::min(length + 1, path.size()));
    }
    return parts;
}

KeyPointer find_key(KeyPointer key, const std::vector<std::u16string>& parts) {
    for (const std::u16string& part : parts) {
        const auto child = key->children.find(part);
        if (child == key->children.end()) return nullptr;
        key = child->second;
    }
    return key;
}

KeyPointer add_child(Key& parent, const std::u16string& name) {
    auto child = std::make_shared<Key>();
    child->path = parent.path + u"\\" + name;
    parent.children[name] = child;
    return child;
}

KeyPointer make_key(KeyPointer key, const std::vector<std::u16string>& parts) {
    for (const std::u16string& part : parts) {
        const auto child = key->children.find(part);
        key = child != key->children.end() ? child->second : add_child(*key, part);
    }
    return key;
}

void State::clear() {
    for (const auto& [root, name] : {std::pair(&machine, u"hklm"), std::pair(&user, u"hkcu")}) {
        *root = std::make_shared<Key>();
        (*root)->path = name;
        make_key(*root, path_parts(u"Software\\Classes\\CLSID"));
    }
    denied.clear();
    failure.arm(0);
    calls = 0;
}

// A tests' path, whose first part names the root. Null for an unknown root.
KeyPointer root_of_path(std::vector<std::u16string>* parts) {
    if (parts->empty()) return nullptr;
    const std::u16string root = parts->front();
    parts->erase(parts->begin());
    if (root == u"hklm") return state().machine;
    return root == u"hkcu" ? state().user : nullptr;
}

KeyPointer key_of_path(const std::u16string& path) {
    std::vector<std::u16string> parts = path_parts(path);
    const KeyPointer root = root_of_path(&parts);
    return root ? find_key(root, parts) : nullptr;
}

bool is_denied(const std::u16string& path, REGSAM access) {
    const auto rule = state().denied.find(path);
    return rule != state().denied.end() && (rule->second & access) != 0;
}

// The key behind a handle and the access that it was opened with.
LSTATUS resolve(HKEY key, KeyPointer* out, REGSAM* access) {
    *access = KEY_ALL_ACCESS;
    if (key == HKEY_LOCAL_MACHINE) {
        *out = state().machine;
    } else if (key == HKEY_CURRENT_USER) {
        *out = state().user;
    } else if (key == HKEY_CLASSES_ROOT) {
        *out = make_key(state().machine, path_parts(u"Software\\Classes"));
    } else {
        const auto found = state().open.find(reinterpret_cast<Handle*>(key));
        if (found == state().open.end()) return ERROR_INVALID_HANDLE;
        *out = (*found)->key;
        *access = (*found)->access;
    }
    return (*out)->deleted ? ERROR_KEY_DELETED : ERROR_SUCCESS;
}

LSTATUS resolve(HKEY key, REGSAM needed, KeyPointer* out) {
    REGSAM access = 0;
    const LSTATUS status = resolve(key, out, &access);
    if (status != ERROR_SUCCESS) return status;
    return (access & needed) == needed ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

LSTATUS open_handle(const KeyPointer& key, REGSAM access, PHKEY result) {
    key->access_asked.insert(key->access_asked.begin(), access);
    if (access == 0 || is_denied(key->path, access)) return ERROR_ACCESS_DENIED;
    auto handle = std::make_unique<Handle>(Handle{key, access});
    state().open.insert(handle.get());
    *result = reinterpret_cast<HKEY>(handle.release());
    return ERROR_SUCCESS;
}

// What every registry function but RegCloseKey does around its work: the lock, the count, the injected failure, and
// no exception beyond it.
template <typename Work>
LSTATUS registry_call(Work work) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    ++state().calls;
    if (state().failure.due()) return state().failure_code;
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

std::u16string_view text_or_empty(LPCWSTR text) { return text == nullptr ? std::u16string_view() : text; }

// Makes the keys of a path that are missing, from the last that exists; a rule against any of them holds.
LSTATUS create_missing(KeyPointer key, const std::vector<std::u16string>& parts, REGSAM access) {
    for (const std::u16string& part : parts) {
        const auto child = key->children.find(part);
        if (child != key->children.end()) {
            key = child->second;
            continue;
        }
        if (is_denied(key->path, KEY_CREATE_SUB_KEY)) return ERROR_ACCESS_DENIED;
        if (state().denied.count(key->path + u"\\" + part) != 0 || access == 0) return ERROR_ACCESS_DENIED;
        key = add_child(*key, part);
    }
    return ERROR_SUCCESS;
}

// Copies a value out, or tells its size, as RegQueryValueExW does.
LSTATUS copy_value(const RegistryValue& value, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (type != nullptr) *type = value.type;
    if (size == nullptr) return data == nullptr ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
    const DWORD room = *size;
    *size = static_cast<DWORD>(value.data.size());
    if (data == nullptr) return ERROR_SUCCESS;
    if (room < value.data.size()) return ERROR_MORE_DATA;
    std::copy(value.data.begin(), value.data.end(), data);
    return ERROR_SUCCESS;
}

}  // namespace

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR sub_key, DWORD, REGSAM access, PHKEY result) {
    if (result == nullptr) return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    return registry_call([&]() -> LSTATUS {
        KeyPointer parent;
        const LSTATUS status = resolve(key, 0, &parent);
        if (status != ERROR_SUCCESS) return status;
        const KeyPointer found = find_key(parent, path_parts(text_or_empty(sub_key)));
        return found ? open_handle(found, access, result) : ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR sub_key, DWORD, LPWSTR, DWORD, REGSAM access, const LPSECURITY_ATTRIBUTES,
                        PHKEY result, LPDWORD disposition) {
    if (result == nullptr || sub_key == nullptr) return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    return registry_call([&]() -> LSTATUS {
        KeyPointer parent;
        LSTATUS status = resolve(key, 0, &parent);
        if (status != ERROR_SUCCESS) return status;
        const std::vector<std::u16string> parts = path_parts(sub_key);
        const bool existed = find_key(parent, parts) != nullptr;
        status = create_missing(parent, parts, access);
        if (status != ERROR_SUCCESS) return status;
        status = open_handle(find_key(parent, parts), access, result);
        if (status == ERROR_SUCCESS && disposition != nullptr)
            *disposition = existed ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
        return status;
    });
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
    if (data == nullptr && size > 0) return ERROR_INVALID_PARAMETER;
    return registry_call([&]() -> LSTATUS {
        KeyPointer found;
        const LSTATUS status = resolve(key, KEY_SET_VALUE, &found);
        if (status != ERROR_SUCCESS) return status;
        std::vector<BYTE> bytes(data, data + size);
        found->values[lower_case(text_or_empty(name))] = {type, std::move(bytes)};
        return ERROR_SUCCESS;
    });
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
    return registry_call([&]() -> LSTATUS {
        KeyPointer found;
        const LSTATUS status = resolve(key, KEY_QUERY_VALUE, &found);
        if (status != ERROR_SUCCESS) return status;
        const auto value = found->values.find(lower_case(text_or_empty(name)));
        return value != found->values.end() ? copy_value(value->second, type, data, size) : ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR sub_key) {
    if (sub_key == nullptr) return ERROR_INVALID_PARAMETER;
    return registry_call([&]() -> LSTATUS {
        KeyPointer parent;
        const LSTATUS status = resolve(key, 0, &parent);
        if (status != ERROR_SUCCESS) return status;
        std::vector<std::u16string> parts = path_parts(sub_key);
        if (parts.empty()) return ERROR_INVALID_PARAMETER;
        const std::u16string name = parts.back();
        parts.pop_back();
        const KeyPointer holder = find_key(parent, parts);
        if (!holder || holder->children.count(name) == 0) return ERROR_FILE_NOT_FOUND;
        Key& child = *holder->children[name];
        if (!child.children.empty() || state().denied.count(child.path) != 0) return ERROR_ACCESS_DENIED;
        child.deleted = true;
        holder->children.erase(name);
        return ERROR_SUCCESS;
    });
}

LSTATUS RegCloseKey(HKEY key) {
    if (key == HKEY_LOCAL_MACHINE || key == HKEY_CURRENT_USER || key == HKEY_CLASSES_ROOT) return ERROR_SUCCESS;
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    auto* const handle = reinterpret_cast<Handle*>(key);
    if (state().open.erase(handle) == 0) return ERROR_INVALID_HANDLE;
    delete handle;
    return ERROR_SUCCESS;
}

namespace platform_native {

void reset_registry() {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().clear();
}

}  // namespace platform_native

namespace platform_testing {

bool registry_key_exists(const std::u16string& key) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    return key_of_path(key) != nullptr;
}

bool registry_value(const std::u16string& key, const std::u16string& name, RegistryValue* value) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    const KeyPointer found = key_of_path(key);
    if (!found) return false;
    const auto entry = found->values.find(lower_case(name));
    if (entry == found->values.end()) return false;
    *value = entry->second;
    return true;
}

std::u16string registry_string(const std::u16string& key, const std::u16string& name) {
    RegistryValue value;
    if (!registry_value(key, name, &value)) return {};
    std::u16string text(value.data.size() / sizeof(WCHAR), u'\0');
    std::memcpy(text.data(), value.data.data(), text.size() * sizeof(WCHAR));
    if (!text.empty() && text.back() == u'\0') text.pop_back();
    return text;
}

void registry_create_key(const std::u16string& key) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    std::vector<std::u16string> parts = path_parts(key);
    const KeyPointer root = root_of_path(&parts);
    if (root) make_key(root, parts);
}

void registry_remove_tree(const std::u16string& key) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    std::vector<std::u16string> parts = path_parts(key);
    const KeyPointer root = root_of_path(&parts);
    if (!root || parts.empty()) return;
    const std::u16string name = parts.back();
    parts.pop_back();
    const KeyPointer holder = find_key(root, parts);
    if (!holder || holder->children.count(name) == 0) return;
    holder->children[name]->deleted = true;
    holder->children.erase(name);
}

std::vector<REGSAM> registry_access_asked(const std::u16string& key) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    const KeyPointer found = key_of_path(key);
    return found ? found->access_asked : std::vector<REGSAM>();
}

void registry_deny(const std::u16string& key, REGSAM access) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().denied[lower_case(key)] |= access;
}

void fail_registry_call(long nth, LSTATUS error) {
    const std::lock_guard lock(state().mutex);
    state().failure.arm(nth);
    state().failure_code = error;
}

long registry_calls() {
    const std::lock_guard lock(state().mutex);
    return state().calls;
}

long live_registry_handles() {
    const std::lock_guard lock(state().mutex);
    return static_cast<long>(state().open.size());
}

}  // namespace platform_testing
