// The event log's three functions. Each opens the log, reports and closes; see the header for what they promise.

#include "sapi/sapi_evtlog.h"

#include <cstdarg>

#include "engine/nelva_sapi.h"

namespace {

// The insertion strings' array is null when there are none.
BOOL report_narrow(WORD type, WORD category, DWORD event_id, WORD count, LPCSTR* strings) {
    const HANDLE log = OpenEventLogW(nullptr, eventlog_source_TTS_impl);
    if (log == nullptr) return 0;
    const BOOL reported = ReportEventA(log, type, category, event_id, nullptr, count, 0, strings, nullptr);
    CloseEventLog(log);
    return reported;
}

BOOL report_wide(WORD type, WORD category, DWORD event_id, LPCWSTR text) {
    const HANDLE log = OpenEventLogW(nullptr, eventlog_source_TTS_impl);
    if (log == nullptr) return 0;
    const BOOL reported = ReportEventW(log, type, category, event_id, nullptr, 1, 0, &text, nullptr);
    CloseEventLog(log);
    return reported;
}

}  // namespace

BOOL log_event(WORD type, WORD category, DWORD event_id) { return report_narrow(type, category, event_id, 0, nullptr); }

BOOL log_eventA(WORD type, WORD category, DWORD event_id, ...) {
    va_list arguments;
    va_start(arguments, event_id);
    LPCSTR text = va_arg(arguments, LPCSTR);
    va_end(arguments);
    return report_narrow(type, category, event_id, 1, &text);
}

BOOL log_eventW(WORD type, WORD category, DWORD event_id, ...) {
    va_list arguments;
    va_start(arguments, event_id);
    const LPCWSTR text = va_arg(arguments, LPCWSTR);
    va_end(arguments);
    return report_wide(type, category, event_id, text);
}
