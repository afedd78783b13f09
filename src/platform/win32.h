// The Win32 names that this system uses, the same for both builds.
//
// On Windows this is a thin include of the system's own header. Elsewhere the headers below platform/native/ declare
// stand-ins under Windows' names, with Windows' widths (LONG, ULONG and DWORD have 32 bits, WCHAR has 16) and with
// Windows' results. A caller includes this header and needs no #ifdef of its own.
//
// Wide literals are the one thing that cannot be spelled alike: WCHAR is wchar_t on Windows and char16_t elsewhere.
// NELVA_WIDE("text") gives a literal of WCHAR in both builds.

#ifndef NELVA_PLATFORM_WIN32_H
#define NELVA_PLATFORM_WIN32_H

#ifdef _WIN32

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <mmsystem.h>
// mmreg.h stands on mmsystem.h, so the order matters.
#include <mmreg.h>
#include <stdlib.h>
#include <wchar.h>

#define NELVA_WIDE(text) L##text

#else

#include "platform/native/atomics.h"
#include "platform/native/eventlog.h"
#include "platform/native/locale.h"
#include "platform/native/memory.h"
#include "platform/native/module.h"
#include "platform/native/process.h"
#include "platform/native/registry.h"
#include "platform/native/text.h"
#include "platform/native/types.h"
#include "platform/native/window.h"

#define NELVA_WIDE(text) u##text

#endif

#include "platform/wide.h"

#endif
