// Entries in Windows' application event log, which is the system's only log.
//
// The log is opened under the source name eventlog_source_TTS_impl and closed again for every entry. Nothing here
// fails visibly: the result is 0 when the log cannot be opened and else what the report gave, and no caller needs it.
// No state is kept, so any thread may call.

#ifndef NELVA_SAPI_SAPI_EVTLOG_H
#define NELVA_SAPI_SAPI_EVTLOG_H

#include "platform/win32.h"

// The kinds of entry. The top bits of each number carry the severity "error".
inline constexpr DWORD EVENT_DATA_MISSING = 0xCFFF0101u;    // a token value or key; the insertion is its name
inline constexpr DWORD EVENT_ENVIRONMENT = 0xCFFF0102u;     // text not convertible (no insertion), editor not started
inline constexpr DWORD EVENT_ENGINE_CREATE = 0xCFFF0201u;   // tts_create failed; the insertion is tts_errmsg()
inline constexpr DWORD EVENT_STREAMER_START = 0xCFFF0202u;  // tts_streamer_start failed; likewise
inline constexpr DWORD EVENT_VOICE_LOAD = 0xCFFF0204u;      // tts_load_voice failed; likewise

// Where the trouble lies.
inline constexpr WORD EVENT_CATEGORY_SYSTEM = 1;       // this system's data and environment
inline constexpr WORD EVENT_CATEGORY_SYNTHESISER = 2;  // the tts_engine library

// `type` is one of Windows' EVENTLOG_..._TYPE numbers; all of this system's entries are EVENTLOG_ERROR_TYPE.
BOOL log_event(WORD type, WORD category, DWORD event_id);

// With one insertion string, passed as a variable argument: 8-bit (const char*) or wide (LPCWSTR). It must not be null.
BOOL log_eventA(WORD type, WORD category, DWORD event_id, ...);
BOOL log_eventW(WORD type, WORD category, DWORD event_id, ...);

#endif
