// The DLL as a COM in-process server: its exports, its registry entries, and the counters that say when it may go.
//
// The four exports have the declarations of COM (DllGetClassObject, DllCanUnloadNow, DllRegisterServer,
// DllUnregisterServer). Registration is for a single-threaded tool; the counters change atomically.
#ifndef NELVA_SAPI_DLL_FUNCS_H
#define NELVA_SAPI_DLL_FUNCS_H

#include "platform/com.h"
#include "platform/win32.h"

// On Windows COM's own headers declare the exports, and a .def file names them to the linker.
#ifndef _WIN32
#pragma GCC visibility push(default)
STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* out);
STDAPI DllCanUnloadNow();
STDAPI DllRegisterServer();
STDAPI DllUnregisterServer();
#pragma GCC visibility pop
#else
STDAPI DllRegisterServer();
STDAPI DllUnregisterServer();
#endif

// What RegCreateKeyExW said of the class key in this load of the DLL, 0 before. Only a key that this load created is
// ever removed.
extern DWORD classkey_keydisposition;

// Live objects and locks of this process. Only the sign of `delta` counts: above 0 adds one, below 0 takes one away,
// 0 reads. The result is the value afterwards.
LONG DLL_adjust_usage(LONG delta);
LONG DLL_adjust_locks(LONG delta);

// Writes the class's keys and values. E_FAIL when the root or the class key cannot be opened; a failure below that
// reaches nobody.
HRESULT register_class(REFCLSID clsid, REGSAM access, DWORD* disposition);

// Removes them again, as far as it goes.
void unregister_class(REFCLSID clsid);

// Full path of this DLL in a GlobalAlloc block, the caller's; null when it cannot be had or is too long.
LPWSTR dll_get_module_name();

#endif
