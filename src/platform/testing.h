// What tests see of the stand-ins for Windows, and how they make them fail. Not for Windows, where the system's own
// functions run.
//
// Everything here may be called from any thread. platform_testing::reset() brings all of it back to the start, except
// for the count of live blocks, which tells the truth as long as the process runs.

#ifndef NELVA_PLATFORM_TESTING_H
#define NELVA_PLATFORM_TESTING_H

#ifdef _WIN32
#error "platform/testing.h looks into the stand-ins, which the Windows build does not have"
#endif

#include <functional>
#include <string>
#include <vector>

#include "platform/com.h"
#include "platform/win32.h"

namespace platform_testing {

void reset();

// ---- Memory ----

// Blocks that GlobalAlloc or CoTaskMemAlloc gave and that have not come back.
long live_global_blocks();
long live_cotask_blocks();

// Allocations asked for, of both kinds, since the process began or since reset(), those that failed included.
long allocation_calls();

// Counting from this call, the `nth` allocation (the first is 1) gives null, or that one and all after it. At most
// one of the two is in force. allow_allocations() ends it, and tells whether an allocation was made to fail.
void fail_allocation(long nth);
void fail_allocations_from(long nth);
bool allow_allocations();

// Counts as one allocation and says whether it may succeed. A test that replaces malloc or operator new calls this,
// and then all allocators fail by one common count. What the stand-ins allocate for themselves is not the program's:
// inside them it is always true, and nothing is counted.
bool take_allocation_ticket();

// Whether the calling thread is inside a stand-in.
bool inside_stand_in();

// ---- Event log ----

struct LogEntry {
    std::u16string source;
    WORD type = 0;
    WORD category = 0;
    DWORD event_id = 0;
    bool wide = false;                 // came through ReportEventW
    std::vector<std::string> strings;  // as UTF-8
};

// Where entries go. Gives what ReportEvent gives. An empty function is the system log again.
using LogSink = std::function<bool(const LogEntry&)>;
void set_log_sink(LogSink sink);

// Sets a sink that keeps entries, until reset() or set_log_sink().
void capture_log();
std::vector<LogEntry> captured_log();  // and forgets them

// While set, OpenEventLogW gives null, or ReportEventA and ReportEventW give FALSE.
void fail_log_open(bool fail);
void fail_log_report(bool fail);

// Handles that OpenEventLogW gave and CloseEventLog has not taken back.
long live_log_handles();

// ---- Registry ----

struct RegistryValue {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

// Keys are named "HKLM\Software\..." or "HKCU\...", without regard to case. The name "" is the default value.
bool registry_key_exists(const std::u16string& key);
bool registry_value(const std::u16string& key, const std::u16string& name, RegistryValue* value);
std::u16string registry_string(const std::u16string& key, const std::u16string& name);  // without the NUL; else empty
void registry_create_key(const std::u16string& key);
void registry_remove_tree(const std::u16string& key);

// The access bits asked for, last first, by the calls that opened or created this very key.
std::vector<REGSAM> registry_access_asked(const std::u16string& key);

// Opening this key with any of these access bits, and creating it, gives ERROR_ACCESS_DENIED.
void registry_deny(const std::u16string& key, REGSAM access);

// Counting from this call, the `nth` registry call (the first is 1; RegCloseKey is not counted) fails with `error`.
void fail_registry_call(long nth, LSTATUS error);
long registry_calls();
long live_registry_handles();

// ---- Text, module and processes ----

// The `nth` call from now, of WideCharToMultiByte or of MultiByteToWideChar, or of GetLocaleInfoW, gives 0.
void fail_conversion(long nth);
void fail_locale(long nth);

// While not empty, this is what GetModuleFileNameW takes for the path of every module. While `fail` is set, it gives 0.
void set_module_path(const std::u16string& path);
void fail_module_path(bool fail);

struct StartedProcess {
    std::u16string application;
    std::u16string command_line;
    std::vector<std::string> arguments;  // as the program got them, UTF-8
    DWORD flags = 0;
};
std::vector<StartedProcess> started_processes();  // since reset()

// While not 0, CreateProcessW starts nothing and fails with this error. While `fail` is set, GetExitCodeProcess fails.
void fail_process_start(DWORD error);
void fail_exit_code(bool fail);

// Handles of processes that CloseHandle has not taken back.
long live_process_handles();

// ---- Windows ----

// GetMessageA gives these first: 0 for WM_QUIT, below 0 for message_error, above 0 for all others.
void post_message(UINT message);
inline constexpr UINT message_error = 0xFFFFFFFF;

// While set, which it is at the start, GetMessageA gives a WM_TIMER every 10 ms when nothing is queued. Otherwise it
// waits until something is posted, as a queue without a timer does.
void set_ticks(bool ticks);

// Called with each message that DispatchMessageA gets. An empty function takes it off.
void set_dispatch_hook(std::function<void(const MSG&)> hook);

struct MessageBox {
    HWND window = nullptr;
    std::u16string text;
    bool has_caption = false;
    std::u16string caption;
    UINT type = 0;
};
using MessageBoxSink = std::function<void(const MessageBox&)>;
void set_message_box_sink(MessageBoxSink sink);
void capture_message_boxes();
std::vector<MessageBox> captured_message_boxes();  // and forgets them

}  // namespace platform_testing

#endif
