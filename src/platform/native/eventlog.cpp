// The event log over a sink: the system log, or what a test sets.

#include "platform/native/eventlog.h"

#include <syslog.h>

#include <cstdio>
#include <mutex>
#include <new>
#include <set>
#include <utility>

#include "platform/native/internal.h"
#include "platform/testing.h"

namespace {

using platform_native::fail;
using platform_native::narrow;
using platform_native::StandIn;
using platform_testing::LogEntry;
using platform_testing::LogSink;

struct OpenLog {
    std::u16string source;
};

struct State {
    std::mutex mutex;
    std::set<OpenLog*> open;
    LogSink sink;
    std::vector<LogEntry> captured;
    bool open_fails = false;
    bool report_fails = false;
};

State& state() {
    static State instance;
    return instance;
}

int syslog_level(WORD type) {
    if (type == EVENTLOG_ERROR_TYPE) return LOG_ERR;
    return type == EVENTLOG_WARNING_TYPE ? LOG_WARNING : LOG_INFO;
}

bool write_to_syslog(const LogEntry& entry) {
    std::string text;
    for (const std::string& insertion : entry.strings) text += ": " + insertion;
    ::syslog(LOG_USER | syslog_level(entry.type), "%s, event 0x%08X, category %u%s", narrow(entry.source).c_str(),
             static_cast<unsigned>(entry.event_id), unsigned{entry.category}, text.c_str());
    return true;
}

// Gives false for an unknown handle.
bool source_of(HANDLE log, std::u16string* source) {
    const std::lock_guard lock(state().mutex);
    auto* const open = static_cast<OpenLog*>(log);
    if (state().open.count(open) == 0) return false;
    *source = open->source;
    return true;
}

// The sink is called outside the lock, so that it may log itself.
BOOL report(HANDLE log, LogEntry entry) {
    if (!source_of(log, &entry.source)) return fail(ERROR_INVALID_HANDLE, FALSE);
    LogSink sink;
    {
        const std::lock_guard lock(state().mutex);
        if (state().report_fails) return fail(ERROR_ACCESS_DENIED, FALSE);
        sink = state().sink;
    }
    const bool taken = sink ? sink(entry) : write_to_syslog(entry);
    return taken ? TRUE : fail(ERROR_ACCESS_DENIED, FALSE);
}

// The strings come through `to_utf8` one by one; a null among them is refused.
template <typename Text, typename ToUtf8>
BOOL report_strings(HANDLE log, LogEntry entry, WORD count, const Text* strings, ToUtf8 to_utf8) {
    const StandIn guard;
    if (count > 0 && strings == nullptr) return fail(ERROR_INVALID_PARAMETER, FALSE);
    try {
        for (WORD i = 0; i < count; ++i) {
            if (strings[i] == nullptr) return fail(ERROR_INVALID_PARAMETER, FALSE);
            entry.strings.push_back(to_utf8(strings[i]));
        }
        return report(log, std::move(entry));
    } catch (const std::bad_alloc&) {
        return fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    }
}

LogEntry new_entry(WORD type, WORD category, DWORD event_id, bool wide) {
    LogEntry entry;
    entry.type = type;
    entry.category = category;
    entry.event_id = event_id;
    entry.wide = wide;
    return entry;
}

}  // namespace

HANDLE OpenEventLogW(LPCWSTR server, LPCWSTR source) {
    const HANDLE none = nullptr;
    if (server != nullptr || source == nullptr || *source == 0) return fail(ERROR_INVALID_PARAMETER, none);
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    if (state().open_fails) return fail(ERROR_ACCESS_DENIED, none);
    OpenLog* log = nullptr;
    try {
        log = new OpenLog{source};
        state().open.insert(log);
        return log;
    } catch (const std::bad_alloc&) {
        delete log;
        return fail(ERROR_NOT_ENOUGH_MEMORY, none);
    }
}

BOOL ReportEventA(HANDLE log, WORD type, WORD category, DWORD event_id, PSID, WORD string_count, DWORD, LPCSTR* strings,
                  LPVOID) {
    return report_strings(log, new_entry(type, category, event_id, false), string_count, strings,
                          [](LPCSTR text) { return std::string(text); });
}

BOOL ReportEventW(HANDLE log, WORD type, WORD category, DWORD event_id, PSID, WORD string_count, DWORD,
                  LPCWSTR* strings, LPVOID) {
    return report_strings(log, new_entry(type, category, event_id, true), string_count, strings,
                          [](LPCWSTR text) { return narrow(text); });
}

BOOL CloseEventLog(HANDLE log) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    auto* const open = static_cast<OpenLog*>(log);
    if (state().open.erase(open) == 0) return fail(ERROR_INVALID_HANDLE, FALSE);
    delete open;
    return TRUE;
}

namespace platform_native {

void reset_eventlog() {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().sink = nullptr;
    state().captured = {};
    state().open_fails = false;
    state().report_fails = false;
}

}  // namespace platform_native

namespace platform_testing {

void set_log_sink(LogSink sink) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().sink = std::move(sink);
}

void capture_log() {
    set_log_sink([](const LogEntry& entry) {
        const std::lock_guard lock(state().mutex);
        state().captured.push_back(entry);
        return true;
    });
}

std::vector<LogEntry> captured_log() {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    return std::exchange(state().captured, {});
}

void fail_log_open(bool fail) {
    const std::lock_guard lock(state().mutex);
    state().open_fails = fail;
}

void fail_log_report(bool fail) {
    const std::lock_guard lock(state().mutex);
    state().report_fails = fail;
}

long live_log_handles() {
    const std::lock_guard lock(state().mutex);
    return static_cast<long>(state().open.size());
}

}  // namespace platform_testing
