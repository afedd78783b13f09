// Windows' processes, as far as this system starts and watches one, for builds without Windows.

#ifndef NELVA_PLATFORM_NATIVE_PROCESS_H
#define NELVA_PLATFORM_NATIVE_PROCESS_H

#include "platform/native/registry.h"
#include "platform/native/types.h"

struct STARTUPINFOW {
    DWORD cb;
    LPWSTR lpReserved;
    LPWSTR lpDesktop;
    LPWSTR lpTitle;
    DWORD dwX;
    DWORD dwY;
    DWORD dwXSize;
    DWORD dwYSize;
    DWORD dwXCountChars;
    DWORD dwYCountChars;
    DWORD dwFillAttribute;
    DWORD dwFlags;
    WORD wShowWindow;
    WORD cbReserved2;
    LPBYTE lpReserved2;
    HANDLE hStdInput;
    HANDLE hStdOutput;
    HANDLE hStdError;
};
using LPSTARTUPINFOW = STARTUPINFOW*;

struct PROCESS_INFORMATION {
    HANDLE hProcess;
    HANDLE hThread;
    DWORD dwProcessId;
    DWORD dwThreadId;
};
using LPPROCESS_INFORMATION = PROCESS_INFORMATION*;

#define CREATE_NO_WINDOW 0x08000000
#define WAIT_OBJECT_0 0x00000000
#define WAIT_TIMEOUT 258
#define WAIT_FAILED 0xFFFFFFFFu
#define INFINITE 0xFFFFFFFFu
#define STILL_ACTIVE 259

// Starts `application`, or without one the command line's first word, with the arguments that Windows' C run-time
// would read from the command line (its rules for quotes and backslashes). Environment and directory are the
// caller's; those two arguments must be null. On failure FALSE and the last error.
BOOL CreateProcessW(LPCWSTR application, LPWSTR command_line, LPSECURITY_ATTRIBUTES process_security,
                    LPSECURITY_ATTRIBUTES thread_security, BOOL inherit_handles, DWORD flags, LPVOID environment,
                    LPCWSTR directory, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION result);

// WAIT_OBJECT_0 when the process has ended, WAIT_TIMEOUT when it has not within that time, else WAIT_FAILED.
DWORD WaitForSingleObject(HANDLE process, DWORD milliseconds);

// STILL_ACTIVE while the process runs; 128 and the signal's number for one that a signal ended.
BOOL GetExitCodeProcess(HANDLE process, LPDWORD exit_code);

BOOL CloseHandle(HANDLE handle);

#endif
