// COM's base interfaces and allocator, for builds without Windows. Include platform/com.h, not this file.

#ifndef NELVA_PLATFORM_NATIVE_COM_H
#define NELVA_PLATFORM_NATIVE_COM_H

#include "platform/native/types.h"

inline constexpr IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};
using LPUNKNOWN = IUnknown*;

struct IClassFactory : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) = 0;
};

// Gives a block of `size` bytes, also for a size of 0, or null. The contents are undefined (see GlobalAlloc).
LPVOID CoTaskMemAlloc(SIZE_T size);

// A null block is passed over. A block of another allocator stops the process.
void CoTaskMemFree(LPVOID block);

// The class id as "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" in upper case, in a CoTaskMemAlloc block.
HRESULT StringFromCLSID(REFCLSID clsid, LPWSTR* out);

#endif
