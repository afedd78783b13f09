// The COM names that this system uses, the same for both builds: on Windows the system's headers, elsewhere
// stand-ins with the same tables of functions and the same allocator rules.
//
// Memory that passes from one side of an interface to the other comes from CoTaskMemAlloc and goes back with
// CoTaskMemFree. An interface pointer is the address of a word that points to a table of functions whose first three
// are QueryInterface, AddRef and Release.

#ifndef NELVA_PLATFORM_COM_H
#define NELVA_PLATFORM_COM_H

#include "platform/win32.h"

#ifdef _WIN32

#include <objbase.h>
#include <unknwn.h>

#else

#include "platform/native/com.h"

#endif

#endif
