// Keeps a file to itself, as programs do that share nothing: hold_file FILE READY opens it, makes the file READY, and
// lets go when that is gone again. Exit status 0 if all went well.
#include <windows.h>

namespace {

HANDLE open_alone(const wchar_t* path, DWORD access, DWORD way) {
    return CreateFileW(path, access, 0, nullptr, way, FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool exists(const wchar_t* path) { return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES; }

constexpr int patience = 6000;  // times 50 ms

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 3) return 2;
    const HANDLE file = open_alone(arguments[1], GENERIC_READ, OPEN_EXISTING);
    const HANDLE ready = open_alone(arguments[2], GENERIC_WRITE, CREATE_NEW);
    if (file == INVALID_HANDLE_VALUE || ready == INVALID_HANDLE_VALUE) return 1;
    CloseHandle(ready);
    for (int i = 0; exists(arguments[2]) && i < patience; ++i) Sleep(50);
    CloseHandle(file);
    return exists(arguments[2]);
}
