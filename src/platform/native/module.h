// Windows' modules and files, as far as this system asks for them, for builds without Windows.

#ifndef NELVA_PLATFORM_NATIVE_MODULE_H
#define NELVA_PLATFORM_NATIVE_MODULE_H

#include "platform/native/types.h"

#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x00000002
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x00000004
#define INVALID_FILE_ATTRIBUTES 0xFFFFFFFFu
#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_NORMAL 0x00000080

// The module that holds an address. Only the combination of both flags is known: `address` is then not a name but any
// address in the module, and no reference is taken. Gives FALSE with ERROR_MOD_NOT_FOUND when no module holds it.
BOOL GetModuleHandleExW(DWORD flags, LPCWSTR address, HMODULE* module);

// Writes the module's full path; null is the program itself. Gives the units written without the NUL, or, when path
// and NUL do not fit, `size` with ERROR_INSUFFICIENT_BUFFER and the path cut and terminated, or 0 on failure.
DWORD GetModuleFileNameW(HMODULE module, LPWSTR target, DWORD size);

// INVALID_FILE_ATTRIBUTES, with the last error, when there is no such file.
DWORD GetFileAttributesW(LPCWSTR path);

#endif
