// Processes over posix_spawn and waitpid.
//
// A process handle keeps the exit code once it is known, since a process can be waited for only once. A process whose
// handle is closed while it runs is waited for later, at the next call that starts or closes one, so that it does not
// stay behind as a zombie.

// posix_spawn_file_actions_addclosefrom_np is GNU's.
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif

#include "platform/native/process.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <new>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/native/command_line.h"
#include "platform/native/internal.h"
#include "platform/testing.h"

namespace {

using platform_native::fail;
using platform_native::narrow;
using platform_native::StandIn;
using platform_testing::StartedProcess;

constexpr DWORD signal_base = 128;
constexpr DWORD unknown_exit_code = 1;
constexpr auto poll_interval = std::chrono::milliseconds(1);

// A process, or its first thread, which ends with it.
struct Handle {
    pid_t process;
    bool is_thread;
    bool ended = false;
    DWORD exit_code = STILL_ACTIVE;
};

struct State {
    std::mutex mutex;
    std::set<Handle*> open;
    std::vector<pid_t> abandoned;
    std::vector<StartedProcess> started;
    DWORD start_error = 0;
    bool exit_code_fails = false;
};

State& state() {
    static State instance;
    return instance;
}

DWORD exit_code_of(int status) {
    if (WIFEXITED(status)) return static_cast<DWORD>(WEXITSTATUS(status));
    return WIFSIGNALED(status) ? signal_base + static_cast<DWORD>(WTERMSIG(status)) : unknown_exit_code;
}

// Looks whether the process has ended. When somebody else has waited for it, its exit code is lost.
void look_at(Handle* handle) {
    if (handle->ended) return;
    int status = 0;
    const pid_t found = ::waitpid(handle->process, &status, WNOHANG);
    if (found == 0 || (found < 0 && errno == EINTR)) return;
    handle->ended = true;
    handle->exit_code = found > 0 ? exit_code_of(status) : unknown_exit_code;
}

void collect_abandoned() {
    auto& abandoned = state().abandoned;
    const auto ended = [](pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; };
    abandoned.erase(std::remove_if(abandoned.begin(), abandoned.end(), ended), abandoned.end());
}

Handle* known_handle(HANDLE handle) {
    const auto found = state().open.find(static_cast<Handle*>(handle));
    return found != state().open.end() ? *found : nullptr;
}

LONG spawn_error(int error, const std::string& program) {
    switch (error) {
        case ENOENT:
            return platform_native::missing_file_error(program);
        case ENOTDIR:
            return ERROR_PATH_NOT_FOUND;
        case ENOEXEC:
            return ERROR_BAD_EXE_FORMAT;
        case ENOMEM:
        case EAGAIN:
            return ERROR_NOT_ENOUGH_MEMORY;
        default:
            return ERROR_ACCESS_DENIED;
    }
}

// Gives errno's number. The child inherits the three standard streams and nothing else.
int spawn(const std::string& program, std::vector<std::string> arguments, pid_t* process) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    if (const int error = ::posix_spawn_file_actions_init(&actions)) return error;
    int error = ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    if (error == 0) error = ::posix_spawn(process, program.c_str(), &actions, nullptr, pointers.data(), ::environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}

// Registers the two handles of a process that runs, or none when memory runs out.
void add_handles(pid_t process, LPPROCESS_INFORMATION result) {
    auto* const of_process = new Handle{process, false};
    Handle* of_thread = nullptr;
    try {
        of_thread = new Handle{process, true};
        state().open.insert(of_process);
        state().open.insert(of_thread);
    } catch (const std::bad_alloc&) {
        state().open.erase(of_process);
        delete of_thread;
        delete of_process;
        throw;
    }
    *result = {of_process, of_thread, static_cast<DWORD>(process), static_cast<DWORD>(process)};
}

std::vector<std::string> narrow_arguments(std::u16string_view command_line) {
    std::vector<std::string> arguments;
    for (const std::u16string& argument : platform_native::split_command_line(command_line))
        arguments.push_back(narrow(argument));
    return arguments;
}

BOOL start(LPCWSTR application, LPCWSTR command_line, DWORD flags, LPPROCESS_INFORMATION result) {
    const LPCWSTR line = command_line != nullptr ? command_line : application;
    const std::vector<std::string> arguments = narrow_arguments(line);
    const std::string program = application != nullptr ? narrow(application) : arguments.front();
    if (program.empty()) return fail(ERROR_PATH_NOT_FOUND, FALSE);
    const std::lock_guard lock(state().mutex);
    if (state().start_error != 0) return fail(static_cast<LONG>(state().start_error), FALSE);
    collect_abandoned();
    state().abandoned.reserve(state().abandoned.size() + state().open.size() + 1);
    state().started.push_back({application != nullptr ? application : u"", line, arguments, flags});
    pid_t process = 0;
    if (const int error = spawn(program, arguments, &process)) {
        state().started.pop_back();
        return fail(spawn_error(error, program), FALSE);
    }
    try {
        add_handles(process, result);
    } catch (const std::bad_alloc&) {
        state().abandoned.push_back(process);
        throw;
    }
    return TRUE;
}

// One look; null handle for an unknown one.
DWORD look(HANDLE handle) {
    const std::lock_guard lock(state().mutex);
    Handle* const known = known_handle(handle);
    if (known == nullptr) return fail(ERROR_INVALID_HANDLE, WAIT_FAILED);
    look_at(known);
    return known->ended ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

}  // namespace

BOOL CreateProcessW(LPCWSTR application, LPWSTR command_line, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL,
                    DWORD flags, LPVOID environment, LPCWSTR directory, LPSTARTUPINFOW startup,
                    LPPROCESS_INFORMATION result) {
    const bool complete = (application != nullptr || command_line != nullptr) && startup != nullptr;
    if (!complete || result == nullptr || environment != nullptr || directory != nullptr)
        return fail(ERROR_INVALID_PARAMETER, FALSE);
    const StandIn guard;
    try {
        return start(application, command_line, flags, result);
    } catch (const std::bad_alloc&) {
        return fail(ERROR_NOT_ENOUGH_MEMORY, FALSE);
    }
}

DWORD WaitForSingleObject(HANDLE process, DWORD milliseconds) {
    const StandIn guard;
    const auto begin = std::chrono::steady_clock::now();
    const auto span = std::chrono::milliseconds(milliseconds);
    DWORD seen = look(process);
    while (seen == WAIT_TIMEOUT && (milliseconds == INFINITE || std::chrono::steady_clock::now() - begin < span)) {
        std::this_thread::sleep_for(poll_interval);
        seen = look(process);
    }
    return seen;
}

BOOL GetExitCodeProcess(HANDLE process, LPDWORD exit_code) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    Handle* const known = known_handle(process);
    if (known == nullptr || known->is_thread || exit_code == nullptr) return fail(ERROR_INVALID_HANDLE, FALSE);
    if (state().exit_code_fails) return fail(ERROR_ACCESS_DENIED, FALSE);
    look_at(known);
    *exit_code = known->exit_code;
    return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    Handle* const known = known_handle(handle);
    if (known == nullptr) return fail(ERROR_INVALID_HANDLE, FALSE);
    // There is room: each start reserves a place for every process that is open.
    if (!known->ended && !known->is_thread) state().abandoned.push_back(known->process);
    state().open.erase(known);
    delete known;
    collect_abandoned();
    return TRUE;
}

namespace platform_native {

void reset_process() {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    state().started = {};
    state().start_error = 0;
    state().exit_code_fails = false;
}

}  // namespace platform_native

namespace platform_testing {

std::vector<StartedProcess> started_processes() {
    const StandIn guard;
    const std::lock_guard lock(state().mutex);
    return state().started;
}

void fail_process_start(DWORD error) {
    const std::lock_guard lock(state().mutex);
    state().start_error = error;
}

void fail_exit_code(bool fail) {
    const std::lock_guard lock(state().mutex);
    state().exit_code_fails = fail;
}

long live_process_handles() {
    const std::lock_guard lock(state().mutex);
    return static_cast<long>(state().open.size());
}

}  // namespace platform_testing
