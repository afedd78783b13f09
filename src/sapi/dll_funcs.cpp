// The server's four exports, its counters and its registry entries.
#include "sapi/dll_funcs.h"

#include "engine/nelva_sapi.h"
#include "sapi/tts_com_classfactory.h"

DWORD classkey_keydisposition = 0;

namespace {

LONG volatile DLL_usage_counter = 0;
LONG volatile DLL_lock_counter = 0;

constexpr WCHAR class_root[] = NELVA_WIDE("Software\\Classes\\CLSID");
constexpr WCHAR server_key[] = NELVA_WIDE("InprocServer32");
constexpr REGSAM root_access = KEY_CREATE_SUB_KEY;

// The longest path that is taken, in characters with its NUL; a longer one counts as unknown.
constexpr DWORD module_name_limit = 261;
constexpr DWORD module_name_too_long = 260;

// The module that holds this code, not the program that loaded it.
HMODULE this_module() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&classkey_keydisposition), &module);
    return module;
}

LONG adjust(LONG volatile* counter, LONG delta) {
    if (delta > 0) return InterlockedIncrement(counter);
    if (delta < 0) return InterlockedDecrement(counter);
    return InterlockedCompareExchange(counter, 0, 0);
}

void close_key(HKEY key) {
    if (key) RegCloseKey(key);
}

void set_string(HKEY key, LPCWSTR name, LPCWSTR text) {
    const auto bytes = static_cast<DWORD>((wide_length(text) + 1) * sizeof(WCHAR));
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), bytes);
}

HKEY open_key(HKEY parent, LPCWSTR name) {
    HKEY key = nullptr;
    return RegOpenKeyExW(parent, name, 0, root_access, &key) == ERROR_SUCCESS ? key : nullptr;
}

HKEY create_key(HKEY parent, LPCWSTR name, REGSAM access, DWORD* disposition) {
    HKEY key = nullptr;
    const auto status = RegCreateKeyExW(parent, name, 0, nullptr, 0, access, nullptr, &key, disposition);
    return status == ERROR_SUCCESS ? key : nullptr;
}

// Whatever fails here, the class key stands, and the registration counts as done.
void write_class_values(HKEY class_key, REGSAM access) {
    set_string(class_key, nullptr, classname_TTS_impl);
    HKEY server = create_key(class_key, server_key, access, nullptr);
    if (!server) return;
    LPWSTR module_name = dll_get_module_name();
    if (module_name) {
        set_string(server, nullptr, module_name);
        GlobalFree(module_name);
    }
    set_string(server, NELVA_WIDE("ThreadingModel"), NELVA_WIDE("both"));
    close_key(server);
}

}  // namespace

LONG DLL_adjust_usage(LONG delta) { return adjust(&DLL_usage_counter, delta); }

LONG DLL_adjust_locks(LONG delta) { return adjust(&DLL_lock_counter, delta); }

LPWSTR dll_get_module_name() {
    auto* name = static_cast<LPWSTR>(GlobalAlloc(0, module_name_limit * sizeof(WCHAR)));
    if (!name) return nullptr;
    const DWORD length = GetModuleFileNameW(this_module(), name, module_name_limit);
    if (length > 0 && length < module_name_too_long) return name;
    GlobalFree(name);
    return nullptr;
}

HRESULT register_class(REFCLSID clsid, REGSAM access, DWORD* disposition) {
    LPWSTR class_id = nullptr;
    HRESULT hr = StringFromCLSID(clsid, &class_id);
    if (FAILED(hr)) return hr;
    HKEY root = open_key(HKEY_LOCAL_MACHINE, class_root);
    HKEY class_key = root ? create_key(root, class_id, access, disposition) : nullptr;
    if (class_key) {
        write_class_values(class_key, access);
    } else {
        hr = E_FAIL;
    }
    close_key(class_key);
    close_key(root);
    CoTaskMemFree(class_id);
    return hr;
}

void unregister_class(REFCLSID clsid) {
    LPWSTR class_id = nullptr;
    if (FAILED(StringFromCLSID(clsid, &class_id))) return;
    HKEY root = open_key(HKEY_LOCAL_MACHINE, class_root);
    if (root) {
        HKEY class_key = open_key(root, class_id);
        if (class_key) RegDeleteKeyW(class_key, server_key);
        close_key(class_key);
        RegDeleteKeyW(root, class_id);
    }
    close_key(root);
    CoTaskMemFree(class_id);
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* out) {
    if (!out) return E_POINTER;
    if (!IsEqualCLSID(clsid, CLSID_TTS_impl)) {
        *out = nullptr;
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    return classQueryInterface(&TTS_IClassFactory, iid, out);
}

STDAPI DllCanUnloadNow() { return DLL_adjust_usage(0) > 0 || DLL_adjust_locks(0) > 0 ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() { return register_class(CLSID_TTS_impl, KEY_ALL_ACCESS, &classkey_keydisposition); }

STDAPI DllUnregisterServer() {
    if (classkey_keydisposition == REG_CREATED_NEW_KEY) unregister_class(CLSID_TTS_impl);
    return S_OK;
}
