// A host in the middle of its work: loads the engine's DLL, makes the file READY, waits until it is gone again, and
// then still calls into the DLL. hold_dll DLL READY; exit status 0 if all went well.
#include <windows.h>

namespace {

bool make_file(const wchar_t* path) {
    const HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file);
}

bool exists(const wchar_t* path) { return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES; }

constexpr int patience = 6000;  // times 50 ms
constexpr int failed_to_load = 1, failed_to_wait = 2, failed_to_call = 3;

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 3) return failed_to_load;
    const HMODULE dll = LoadLibraryExW(arguments[1], nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!dll || !make_file(arguments[2])) return failed_to_load;
    for (int i = 0; exists(arguments[2]); ++i) {
        if (i == patience) return failed_to_wait;
        Sleep(50);
    }
    using CanUnloadNow = HRESULT(WINAPI*)();
    void* const function = reinterpret_cast<void*>(GetProcAddress(dll, "DllCanUnloadNow"));
    return function && reinterpret_cast<CanUnloadNow>(function)() == S_OK ? 0 : failed_to_call;
}
