// Reading a voice token: its values as UTF-8, and the language code that belongs to a Windows language id.
//
// Both functions hand out NUL-terminated strings in GlobalAlloc blocks, which the caller gives back with GlobalFree.

#ifndef NELVA_SAPI_SAPI_DATAKEY_H
#define NELVA_SAPI_SAPI_DATAKEY_H

#include "platform/sapi.h"

// Reads the value `name` of `key` as UTF-8 into *out.
//
// A failure of the key's GetStringValue is the result, with *out null; so is E_OUTOFMEMORY. An empty value gives an
// empty string. A value that cannot be measured leaves *out null with GetStringValue's success, so a caller that
// needs the value tests the pointer.
HRESULT get_datakey_value_utf8(ISpDataKey* key, LPCWSTR name, char** out);

// The ISO 639 code of a Windows language id, such as "en" for 0x409: two letters where there are two, else three.
// Null when Windows does not know the id or memory runs out. 0x540A (Spanish, United States) gives "es" on any
// version of Windows.
char* lang_from_ms_langcode(DWORD lcid);

#endif
