// The real nelva_sapi.dll. Its import tables are redirected to functions of this file, so that its allocations can be
// counted and made to fail and its log entries are seen, without a line of test code in the DLL.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <set>

#include "support/block_table.h"
#include "support/server.h"

namespace {

BlockTable& blocks() {
    static BlockTable table;
    return table;
}

// The allocation that fails, counted down; 0 means none.
long calls_to_failure = 0;
bool fails_for_good = false;
bool failure_met = false;

bool may_allocate() {
    if (calls_to_failure == 0) return true;
    if (calls_to_failure > 1) {
        --calls_to_failure;
        return true;
    }
    failure_met = true;
    if (!fails_for_good) calls_to_failure = 0;
    return false;
}

void* note(void* block) {
    if (block) blocks().add(block);
    return block;
}

void forget(void* block) {
    if (block) blocks().remove(block);
}

// ---- What the DLL's imports are redirected to ----

void* my_malloc(std::size_t size) { return may_allocate() ? note(std::malloc(size)) : nullptr; }
void* my_calloc(std::size_t count, std::size_t size) {
    return may_allocate() ? note(std::calloc(count, size)) : nullptr;
}
void* my_realloc(void* old, std::size_t size) {
    if (!may_allocate()) return nullptr;
    forget(old);
    void* block = std::realloc(old, size);
    note(block ? block : old);
    return block;
}
void my_free(void* block) {
    forget(block);
    std::free(block);
}
HGLOBAL WINAPI my_GlobalAlloc(UINT flags, SIZE_T size) {
    return may_allocate() ? note(GlobalAlloc(flags, size)) : nullptr;
}
HGLOBAL WINAPI my_GlobalFree(HGLOBAL block) {
    forget(block);
    return GlobalFree(block);
}
LPVOID WINAPI my_CoTaskMemAlloc(SIZE_T size) { return may_allocate() ? note(CoTaskMemAlloc(size)) : nullptr; }
void WINAPI my_CoTaskMemFree(LPVOID block) {
    forget(block);
    CoTaskMemFree(block);
}

std::vector<server::LogEntry> entries;
HANDLE const log_handle = reinterpret_cast<HANDLE>(0x1234);
std::string log_source;

HANDLE WINAPI my_OpenEventLogW(LPCWSTR, LPCWSTR source) {
    log_source = narrow(source);
    return log_handle;
}
BOOL WINAPI my_ReportEventA(HANDLE, WORD type, WORD category, DWORD id, PSID, WORD count, DWORD, LPCSTR* strings,
                            LPVOID) {
    entries.push_back({type, category, id, count ? strings[0] : "(none)", log_source});
    return TRUE;
}
BOOL WINAPI my_ReportEventW(HANDLE, WORD type, WORD category, DWORD id, PSID, WORD count, DWORD, LPCWSTR* strings,
                            LPVOID) {
    entries.push_back({type, category, id, count ? narrow(strings[0]) : "(none)", log_source});
    return TRUE;
}
BOOL WINAPI my_CloseEventLog(HANDLE) { return TRUE; }

std::vector<server::MessageBox> message_boxes;

int WINAPI my_MessageBoxW(HWND parent, LPCWSTR text, LPCWSTR title, UINT type) {
    message_boxes.push_back({narrow(text), title != nullptr, parent, type});
    return IDOK;
}

std::vector<server::StartedProgram> started;
DWORD start_error = 0;
bool exit_code_fails = false;
std::set<HANDLE> program_handles;

// An STARTUPINFOW that says nothing but its size.
bool says_nothing(STARTUPINFOW startup) {
    const bool sized = startup.cb == sizeof startup;
    startup.cb = 0;
    const auto* bytes = reinterpret_cast<const BYTE*>(&startup);
    return sized && std::all_of(bytes, bytes + sizeof startup, [](BYTE byte) { return byte == 0; });
}

BOOL WINAPI my_CreateProcessW(LPCWSTR application, LPWSTR command_line, LPSECURITY_ATTRIBUTES process_security,
                              LPSECURITY_ATTRIBUTES thread_security, BOOL inherit, DWORD flags, LPVOID environment,
                              LPCWSTR folder, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION result) {
    if (start_error) {
        SetLastError(start_error);
        return FALSE;
    }
    const bool plain = !process_security && !thread_security && !inherit && !environment && !folder;
    const server::StartedProgram program = {application ? application : L"", command_line ? command_line : L"", flags,
                                            plain && says_nothing(*startup)};
    if (!CreateProcessW(application, command_line, process_security, thread_security, inherit, flags, environment,
                        folder, startup, result))
        return FALSE;
    started.push_back(program);
    program_handles.insert({result->hProcess, result->hThread});
    return TRUE;
}

BOOL WINAPI my_GetExitCodeProcess(HANDLE process, LPDWORD exit_code) {
    return !exit_code_fails && GetExitCodeProcess(process, exit_code);
}

BOOL WINAPI my_CloseHandle(HANDLE handle) {
    program_handles.erase(handle);
    return CloseHandle(handle);
}

// The class root moves into a key of the tests' own, so that no test touches a registration that is in use.
const WideString test_root = L"Software\\NelvaServerTest";
const WideString class_folder = test_root + L"\\Software\\Classes\\CLSID";

LSTATUS WINAPI my_RegOpenKeyExW(HKEY parent, LPCWSTR name, DWORD options, REGSAM access, PHKEY key) {
    if (parent != HKEY_LOCAL_MACHINE) return RegOpenKeyExW(parent, name, options, access, key);
    return RegOpenKeyExW(HKEY_CURRENT_USER, (test_root + L"\\" + name).c_str(), options, access, key);
}

bool module_name_fails = false;

DWORD WINAPI my_GetModuleFileNameW(HMODULE module, LPWSTR target, DWORD size) {
    return module_name_fails ? 0 : GetModuleFileNameW(module, target, size);
}

struct Redirection {
    const char* name;
    void* function;
};

template <typename Function>
void* address(Function* function) {
    return reinterpret_cast<void*>(function);
}

const std::vector<Redirection>& redirections() {
    static const std::vector<Redirection> rows = {
        {"malloc", address(my_malloc)},
        {"calloc", address(my_calloc)},
        {"realloc", address(my_realloc)},
        {"free", address(my_free)},
        {"GlobalAlloc", address(my_GlobalAlloc)},
        {"GlobalFree", address(my_GlobalFree)},
        {"CoTaskMemAlloc", address(my_CoTaskMemAlloc)},
        {"CoTaskMemFree", address(my_CoTaskMemFree)},
        {"OpenEventLogW", address(my_OpenEventLogW)},
        {"ReportEventA", address(my_ReportEventA)},
        {"ReportEventW", address(my_ReportEventW)},
        {"CloseEventLog", address(my_CloseEventLog)},
        {"MessageBoxW", address(my_MessageBoxW)},
        {"RegOpenKeyExW", address(my_RegOpenKeyExW)},
        {"GetModuleFileNameW", address(my_GetModuleFileNameW)},
        {"CreateProcessW", address(my_CreateProcessW)},
        {"GetExitCodeProcess", address(my_GetExitCodeProcess)},
        {"CloseHandle", address(my_CloseHandle)},
    };
    return rows;
}

void redirect(void** slot, const char* name) {
    for (const Redirection& row : redirections()) {
        if (std::strcmp(row.name, name) != 0) continue;
        DWORD protection = 0;
        VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
        *slot = row.function;
        VirtualProtect(slot, sizeof *slot, protection, &protection);
    }
}

void redirect_imports(HMODULE module) {
    auto* base = reinterpret_cast<unsigned char*>(module);
    auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    auto* headers = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; library->Name; ++library) {
        auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* slots = reinterpret_cast<void**>(base + library->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            auto* import = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            redirect(slots, reinterpret_cast<const char*>(import->Name));
        }
    }
}

HMODULE dll() {
    static const HMODULE module = [] {
        HMODULE loaded = LoadLibraryW(L"nelva_sapi.dll");
        if (!loaded) {
            std::fprintf(stderr, "server_test: nelva_sapi.dll does not load (error %lu)\n", GetLastError());
            std::abort();
        }
        redirect_imports(loaded);
        return loaded;
    }();
    return module;
}

template <typename Function>
Function* exported(const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(dll(), name)));
}

}  // namespace

namespace server {

HRESULT get_class_object(REFCLSID clsid, REFIID iid, void** out) {
    return exported<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, iid, out);
}
HRESULT can_unload_now() { return exported<HRESULT WINAPI()>("DllCanUnloadNow")(); }
HRESULT register_server() { return exported<HRESULT WINAPI()>("DllRegisterServer")(); }
HRESULT unregister_server() { return exported<HRESULT WINAPI()>("DllUnregisterServer")(); }

std::vector<LogEntry> take_log() {
    std::vector<LogEntry> taken;
    taken.swap(entries);
    return taken;
}

std::vector<MessageBox> take_whole_message_boxes() {
    std::vector<MessageBox> taken;
    taken.swap(message_boxes);
    return taken;
}

std::vector<std::string> take_message_boxes() {
    std::vector<std::string> texts;
    for (const MessageBox& box : take_whole_message_boxes()) texts.push_back(box.text);
    return texts;
}

std::vector<StartedProgram> take_started_programs() {
    std::vector<StartedProgram> taken;
    taken.swap(started);
    return taken;
}

void fail_program_start(DWORD error) { start_error = error; }
void fail_exit_code(bool fail) { exit_code_fails = fail; }

void forget_programs() {
    started.clear();
    start_error = 0;
    exit_code_fails = false;
}

long live_program_handles() { return static_cast<long>(program_handles.size()); }

namespace {
const DWORD main_thread = GetCurrentThreadId();
}

void post_message(UINT message) {
    MSG none;
    // A thread has a queue from its first look at it on.
    if (GetCurrentThreadId() == main_thread) PeekMessageW(&none, nullptr, 0, 0, PM_NOREMOVE);
    PostThreadMessageW(main_thread, message, 0, 0);
}

namespace {
constexpr UINT tick_milliseconds = 10;
UINT_PTR timer = 0;
long dispatched_count = 0;

// A timer's function runs when its message is dispatched.
void CALLBACK on_tick(HWND, UINT, UINT_PTR, DWORD) { ++dispatched_count; }
}  // namespace

Ticks::Ticks() {
    dispatched_count = 0;
    timer = SetTimer(nullptr, 0, tick_milliseconds, on_tick);
}

// Ticks that are in the queue go with the timer: a quiet queue is quiet again.
Ticks::~Ticks() {
    KillTimer(nullptr, timer);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    }
}

long Ticks::dispatched() const { return dispatched_count; }

void fail_module_name(bool fail) { module_name_fails = fail; }

WideString module_path() {
    WCHAR path[1024] = {};
    GetModuleFileNameW(dll(), path, 1024);
    return path;
}

void clear_registry(bool with_class_folder) {
    RegDeleteTreeW(HKEY_CURRENT_USER, test_root.c_str());
    RegDeleteKeyW(HKEY_CURRENT_USER, test_root.c_str());
    if (!with_class_folder) return;
    HKEY key = nullptr;
    EXPECT_EQ(
        RegCreateKeyExW(HKEY_CURRENT_USER, class_folder.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
        ERROR_SUCCESS);
    RegCloseKey(key);
}

bool registry_key_exists(const std::string& name) {
    HKEY key = nullptr;
    const WideString full = class_folder + L"\\" + widen(name);
    if (RegOpenKeyExW(HKEY_CURRENT_USER, full.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

RegistryValue registry_value(const std::string& name, const std::string& value) {
    HKEY key = nullptr;
    const WideString full = class_folder + L"\\" + widen(name);
    if (RegOpenKeyExW(HKEY_CURRENT_USER, full.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return {};
    WCHAR text[1024] = {};
    DWORD type = 0;
    DWORD bytes = sizeof text - sizeof(WCHAR);
    const LSTATUS status =
        RegQueryValueExW(key, widen(value).c_str(), nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS) return {};
    return {true, type, bytes, text};
}

void fail_allocation(long nth, bool for_good) {
    calls_to_failure = nth;
    fails_for_good = for_good;
    failure_met = false;
}

bool stop_failing() {
    calls_to_failure = 0;
    return failure_met;
}

long live_blocks() { return blocks().live(); }

void free_task_block(void* block) { my_CoTaskMemFree(block); }

}  // namespace server
