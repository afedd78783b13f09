// COM's text form of class ids.

#include "platform/native/com.h"

#include <cstdio>

HRESULT StringFromCLSID(REFCLSID clsid, LPWSTR* out) {
    char text[39];
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  static_cast<unsigned>(clsid.Data1), unsigned{clsid.Data2}, unsigned{clsid.Data3},
                  unsigned{clsid.Data4[0]}, unsigned{clsid.Data4[1]}, unsigned{clsid.Data4[2]},
                  unsigned{clsid.Data4[3]}, unsigned{clsid.Data4[4]}, unsigned{clsid.Data4[5]},
                  unsigned{clsid.Data4[6]}, unsigned{clsid.Data4[7]});
    *out = static_cast<LPWSTR>(CoTaskMemAlloc(sizeof text * sizeof(WCHAR)));
    if (*out == nullptr) return E_OUTOFMEMORY;
    for (std::size_t i = 0; i < sizeof text; ++i) (*out)[i] = static_cast<WCHAR>(text[i]);
    return S_OK;
}
