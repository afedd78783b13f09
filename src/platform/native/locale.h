// What Windows knows about language ids, for builds without Windows.

#ifndef NELVA_PLATFORM_NATIVE_LOCALE_H
#define NELVA_PLATFORM_NATIVE_LOCALE_H

#include "platform/native/types.h"

#define LOCALE_SISO639LANGNAME 0x0059
#define LOCALE_SENGLISHDISPLAYNAME 0x0072
#define LOCALE_NOUSEROVERRIDE 0x80000000u
#define LOCALE_INVARIANT 0x007F
#define LOCALE_USER_DEFAULT 0x0400
#define LOCALE_SYSTEM_DEFAULT 0x0800

// Gives the units written with the terminating NUL, or with a size of 0 those needed, or 0 on failure: an unknown
// language id (ERROR_INVALID_PARAMETER), any other type than the two above (ERROR_INVALID_FLAGS), or a target that is
// too small (ERROR_INSUFFICIENT_BUFFER). The ISO 639 code has two letters where ISO 639-1 has one, else three; the
// English name reads like "German (Germany)".
int GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR target, int size);

// The number of the locale with this name ("de-DE", or "de" without a region), or 0 for a name that none has
// (ERROR_INVALID_PARAMETER). `flags` must be 0.
LCID LocaleNameToLCID(LPCWSTR name, DWORD flags);

#endif
