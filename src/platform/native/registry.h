// Windows' registry, for builds without Windows: a tree in memory that lives as long as the process and starts with
// HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER and the key Software\Classes\CLSID in each.
//
// Names compare without regard to case (ASCII). A handle remembers the access that it was opened with: reading or
// writing a value with less gives ERROR_ACCESS_DENIED. HKEY_CLASSES_ROOT is the machine's Software\Classes.
// platform/testing.h looks inside, empties it, and denies access.

#ifndef NELVA_PLATFORM_NATIVE_REGISTRY_H
#define NELVA_PLATFORM_NATIVE_REGISTRY_H

#include "platform/native/types.h"

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

#define HKEY_CLASSES_ROOT (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0xFFFFFFFF80000000ull)))
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0xFFFFFFFF80000001ull)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0xFFFFFFFF80000002ull)))

#define KEY_QUERY_VALUE 0x0001
#define KEY_SET_VALUE 0x0002
#define KEY_CREATE_SUB_KEY 0x0004
#define KEY_ENUMERATE_SUB_KEYS 0x0008
#define KEY_READ 0x20019
#define KEY_WRITE 0x20006
#define KEY_ALL_ACCESS 0xF003F

#define REG_OPTION_NON_VOLATILE 0
#define REG_CREATED_NEW_KEY 1
#define REG_OPENED_EXISTING_KEY 2

#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR sub_key, DWORD options, REGSAM access, PHKEY result);

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR sub_key, DWORD reserved, LPWSTR class_name, DWORD options, REGSAM access,
                        const LPSECURITY_ATTRIBUTES security, PHKEY result, LPDWORD disposition);

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);

// Refuses a key that still has sub-keys, with ERROR_ACCESS_DENIED.
LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR sub_key);

LSTATUS RegCloseKey(HKEY key);

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);

#endif
