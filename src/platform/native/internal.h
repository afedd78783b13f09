// What the stand-ins share among themselves; nobody else includes this.

#ifndef NELVA_PLATFORM_NATIVE_INTERNAL_H
#define NELVA_PLATFORM_NATIVE_INTERNAL_H

#include <atomic>
#include <string>
#include <string_view>

#include "platform/native/types.h"

namespace platform_native {

// Sets the calling thread's last error and gives `result`, so that a failing function ends in one line.
template <typename Result>
Result fail(LONG error, Result result) {
    SetLastError(static_cast<DWORD>(error));
    return result;
}

// Stands on the stack while a stand-in allocates for itself, so that tests do not take that for the program's doing.
class StandIn {
public:
    StandIn();
    ~StandIn();
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;
};

// UTF-16 to UTF-8 and back for paths and messages; what is ill-formed becomes U+FFFD. May throw std::bad_alloc.
std::string narrow(std::u16string_view text);
std::string narrow(LPCWSTR text);
std::u16string widen(std::string_view text);

// ASCII letters to lower case.
std::u16string lower_case(std::u16string_view text);

// Makes one call out of many fail: the nth from the time it is armed.
class Countdown {
public:
    void arm(long nth) { remaining_.store(nth, std::memory_order_relaxed); }

    // True for the one call that is to fail.
    bool due() {
        if (remaining_.load(std::memory_order_relaxed) <= 0) return false;
        return remaining_.fetch_sub(1, std::memory_order_relaxed) == 1;
    }

private:
    std::atomic<long> remaining_{0};
};

// ERROR_PATH_NOT_FOUND when a path's folder is not there, else ERROR_FILE_NOT_FOUND.
LONG missing_file_error(const std::string& path);

// Each module's part of platform_testing::reset().
void reset_memory();
void reset_text();
void reset_locale();
void reset_module();
void reset_registry();
void reset_eventlog();
void reset_process();
void reset_window();

}  // namespace platform_native

#endif
