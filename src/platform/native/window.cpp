// Messages, message boxes and the system's error texts.

#include "platform/native/window.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "platform/native/internal.h"
#include "platform/testing.h"

namespace {

using platform_native::fail;
using platform_native::narrow;
using platform_native::StandIn;
using platform_testing::MessageBox;
using platform_testing::MessageBoxSink;

constexpr auto tick = std::chrono::milliseconds(10);

struct State {
    std::mutex mutex;
    std::condition_variable posted;
    std::deque<UINT> messages;
    bool ticks = true;
    std::function<void(const MSG&)> dispatch_hook;
    MessageBoxSink box_sink;
    std::vector<MessageBox> boxes;
};

State& state() {
    static State instance;
    return instance;
}

// What is queued, or after a while without anything a tick.
UINT next_message() {
    const StandIn guard;
    std::unique_lock lock(state().mutex);
    const auto is_queued = [] { return !state().messages.empty(); };
    while (!state().posted.wait_for(lock, tick, is_queued)) {
        if (state().ticks) return WM_TIMER;
    }
    const UINT message = state().messages.front();
    state().messages.pop_front();
    return message;
}

void print_box(const MessageBox& box) {
    const std::string caption = narrow(box.caption);
    std::fprintf(stderr, "%s%s%s\n", caption.c_str(), caption.empty() ? "" : ": ", narrow(box.text).c_str());
}

// Windows' own English messages for the errors that come from here.
struct ErrorText {
    LONG error;
    std::string_view text;
};
constexpr ErrorText error_texts[] = {
    {ERROR_SUCCESS, "The operation completed successfully."},
    {ERROR_FILE_NOT_FOUND, "The system cannot find the file specified."},
    {ERROR_PATH_NOT_FOUND, "The system cannot find the path specified."},
    {ERROR_ACCESS_DENIED, "Access is denied."},
    {ERROR_INVALID_HANDLE, "The handle is invalid."},
    {ERROR_NOT_ENOUGH_MEMORY, "Not enough memory resources are available to process this command."},
    {ERROR_INVALID_PARAMETER, "The parameter is incorrect."},
    {ERROR_INSUFFICIENT_BUFFER, "The data area passed to a system call is too small."},
    {ERROR_MOD_NOT_FOUND, "The specified module could not be found."},
    {ERROR_BAD_EXE_FORMAT, "%1 is not a valid Win32 application."},
    {ERROR_MORE_DATA, "More data is available."},
    {ERROR_NO_MORE_ITEMS, "No more data is available."},
    {ERROR_INVALID_FLAGS, "Invalid flags."},
    {ERROR_KEY_DELETED, "Illegal operation attempted on a registry key that has been marked for deletion."},
    {ERROR_NO_UNICODE_TRANSLATION, "No mapping for the Unicode character exists in the target multi-byte code page."},
};
constexpr std::string_view line_end = "\r\n";

// Empty when there is none.
std::string_view error_text(DWORD error) {
    for (const ErrorText& entry : error_texts)
        if (static_cast<DWORD>(entry.error) == error) return entry.text;
    return {};
}

WCHAR* put_ascii(WCHAR* target, std::string_view text) {
    for (const char letter : text) *target++ = static_cast<WCHAR>(letter);
    return target;
}

}  // namespace

BOOL GetMessageA(LPMSG message, HWND, UINT, UINT) {
    *message = {};
    message->message = next_message();
    if (message->message == platform_testing::message_error) return fail(ERROR_INVALID_PARAMETER, -1);
    return message->message != WM_QUIT;
}

BOOL TranslateMessage(const MSG*) { return FALSE; }

LRESULT DispatchMessageA(const MSG* message) {
    const StandIn guard;
    std::function<void(const MSG&)> hook;
    {
        const std::lock_guard lock(state().mutex);
        hook = state().dispatch_hook;
    }
    if (hook) hook(*message);
    return 0;
}

int MessageBoxW(HWND window, LPCWSTR text, LPCWSTR caption, UINT type) {
    const StandIn guard;
    try {
        MessageBox box{window, text != nullptr ? text : u"", caption != nullptr, {}, type};
        if (caption != nullptr) box.caption = caption;
        MessageBoxSink sink;
        {
            const std::lock_guard lock(state().mutex);
            sink = state().box_sink;
        }
        sink ? sink(box) : print_box(box);
        return IDOK;
    } catch (const std::bad_alloc&) {
        return fail(ERROR_NOT_ENOUGH_MEMORY, 0);
    }
}

DWORD FormatMessageW(DWORD flags, LPCVOID, DWORD message_id, DWORD, LPWSTR target, DWORD size, void*) {
    if (flags != (FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS)) return fail(ERROR_INVALID_PARAMETER, 0u);
    const std::string_view text = error_text(message_id);
    if (text.empty()) return fail(ERROR_MR_MID_NOT_FOUND, 0u);
    const std::size_t length = text.size() + line_end.size();
    if (target == nullptr || length >= size) return fail(ERROR_INSUFFICIENT_BUFFER, 0u);
    *put_ascii(put_ascii(target, text), line_end) = 0;
    return static_cast<DWORD>(length);
}

namespace platform_native {

void reset_window() {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().messages = {};
    state().ticks = true;
    state().dispatch_hook = nullptr;
    state().box_sink = nullptr;
    state().boxes = {};
}

}  // namespace platform_native

namespace platform_testing {

void post_message(UINT message) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().messages.push_back(message);
    state().posted.notify_all();
}

void set_ticks(bool ticks) {
    const std::lock_guard lock(state().mutex);
    state().ticks = ticks;
}

void set_dispatch_hook(std::function<void(const MSG&)> hook) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().dispatch_hook = std::move(hook);
}

void set_message_box_sink(MessageBoxSink sink) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().box_sink = std::move(sink);
}

void capture_message_boxes() {
    set_message_box_sink([](const MessageBox& box) {
        const std::lock_guard lock(state().mutex);
        state().boxes.push_back(box);
    });
}

std::vector<MessageBox> captured_message_boxes() {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    return std::exchange(state().boxes, {});
}

}  // namespace platform_testing
