// Windows' messages and message boxes, as far as this system uses them, for builds without Windows.
//
// There are no windows here. GetMessageA gives what platform/testing.h has queued, and otherwise a WM_TIMER every
// 10 ms, so that a loop that looks at something after each message comes to an end. (A test can turn the ticks off.)

#ifndef NELVA_PLATFORM_NATIVE_WINDOW_H
#define NELVA_PLATFORM_NATIVE_WINDOW_H

#include "platform/native/types.h"

struct POINT {
    LONG x;
    LONG y;
};

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

#define WM_NULL 0x0000
#define WM_QUIT 0x0012
#define WM_TIMER 0x0113

// 0 for WM_QUIT, above 0 for every other message, below 0 for an error.
BOOL GetMessageA(LPMSG message, HWND window, UINT first, UINT last);
BOOL TranslateMessage(const MSG* message);
LRESULT DispatchMessageA(const MSG* message);

#define MB_OK 0x00000000
#define MB_ICONERROR 0x00000010
#define IDOK 1

// The text goes to a sink, which is the standard error stream until platform/testing.h sets another. Gives IDOK.
int MessageBoxW(HWND window, LPCWSTR text, LPCWSTR caption, UINT type);

#define FORMAT_MESSAGE_IGNORE_INSERTS 0x00000200
#define FORMAT_MESSAGE_FROM_SYSTEM 0x00001000
#define MAKELANGID(primary, sub) (static_cast<WORD>((sub) << 10 | (primary)))
#define LANG_NEUTRAL 0x00
#define SUBLANG_DEFAULT 0x01

// The system's message for an error code, with Windows' line end behind it. Gives its length without the NUL, or 0
// when there is no message or it does not fit. Only the two flags above, together, are known.
DWORD FormatMessageW(DWORD flags, LPCVOID source, DWORD message_id, DWORD language, LPWSTR target, DWORD size,
                     void* arguments);

#endif
