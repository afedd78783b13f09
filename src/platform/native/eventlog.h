// Windows' event log, for builds without Windows: entries go to a sink, which is the system log until
// platform/testing.h sets another.

#ifndef NELVA_PLATFORM_NATIVE_EVENTLOG_H
#define NELVA_PLATFORM_NATIVE_EVENTLOG_H

#include "platform/native/types.h"

#define EVENTLOG_SUCCESS 0x0000
#define EVENTLOG_ERROR_TYPE 0x0001
#define EVENTLOG_WARNING_TYPE 0x0002
#define EVENTLOG_INFORMATION_TYPE 0x0004

// Null when the log cannot be opened. Only the local machine is known: `server` must be null.
HANDLE OpenEventLogW(LPCWSTR server, LPCWSTR source);

// `strings` holds `string_count` pointers to NUL-terminated strings. Gives FALSE when the sink did not take the entry.
BOOL ReportEventA(HANDLE log, WORD type, WORD category, DWORD event_id, PSID user, WORD string_count, DWORD data_size,
                  LPCSTR* strings, LPVOID data);
BOOL ReportEventW(HANDLE log, WORD type, WORD category, DWORD event_id, PSID user, WORD string_count, DWORD data_size,
                  LPCWSTR* strings, LPVOID data);

BOOL CloseEventLog(HANDLE log);

#endif
