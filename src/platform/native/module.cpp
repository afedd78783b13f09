// Modules by the dynamic linker's knowledge, and file attributes by stat.

// dladdr1 and link_map are GNU's.
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif

#include "platform/native/module.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <mutex>
#include <new>
#include <string>

#include "platform/native/internal.h"
#include "platform/testing.h"

namespace {

using platform_native::fail;
using platform_native::StandIn;

std::mutex path_mutex;
std::u16string path_of_all;  // while not empty, the path of every module
std::atomic<bool> path_fails{false};

std::string program_path() {
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
    return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

// The full path of the module that holds an address. The linker has no name for the program itself.
std::string module_path(const void* address) {
    Dl_info info;
    link_map* map = nullptr;
    if (dladdr1(address, &info, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0) return {};
    if (map->l_name == nullptr || *map->l_name == '\0') return program_path();
    char path[PATH_MAX];
    return ::realpath(map->l_name, path) != nullptr ? path : map->l_name;
}

std::u16string wide_module_path(HMODULE module) {
    {
        const std::lock_guard lock(path_mutex);
        if (!path_of_all.empty()) return path_of_all;
    }
    return platform_native::widen(module == nullptr ? program_path() : module_path(module));
}

// As much as fits goes to the target, always terminated.
DWORD copy_path(const std::u16string& path, LPWSTR target, DWORD size) {
    const std::size_t copied = std::min<std::size_t>(path.size(), size - 1);
    path.copy(target, copied);
    target[copied] = 0;
    if (copied == path.size()) return static_cast<DWORD>(copied);
    return fail(ERROR_INSUFFICIENT_BUFFER, size);
}

DWORD attributes(const struct stat& file) {
    const DWORD kind = S_ISDIR(file.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : 0;
    const DWORD access = (file.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 ? FILE_ATTRIBUTE_READONLY : 0;
    return (kind | access) != 0 ? kind | access : FILE_ATTRIBUTE_NORMAL;
}

LONG stat_error(int error, const std::string& path) {
    switch (error) {
        case EACCES:
            return ERROR_ACCESS_DENIED;
        case ENOENT:
            return platform_native::missing_file_error(path);
        default:
            return ERROR_PATH_NOT_FOUND;
    }
}

}  // namespace

BOOL GetModuleHandleExW(DWORD flags, LPCWSTR address, HMODULE* module) {
    constexpr DWORD by_address = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (module == nullptr) return fail(ERROR_INVALID_PARAMETER, FALSE);
    *module = nullptr;
    if (flags != by_address) return fail(ERROR_INVALID_PARAMETER, FALSE);
    const StandIn guard;
    Dl_info info;
    if (dladdr(address, &info) == 0) return fail(ERROR_MOD_NOT_FOUND, FALSE);
    *module = static_cast<HMODULE>(info.dli_fbase);
    return TRUE;
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR target, DWORD size) {
    if (target == nullptr || size == 0) return fail(ERROR_INSUFFICIENT_BUFFER, 0u);
    if (path_fails.load()) return fail(ERROR_MOD_NOT_FOUND, 0u);
    const StandIn guard;
    try {
        const std::u16string path = wide_module_path(module);
        return path.empty() ? fail(ERROR_MOD_NOT_FOUND, 0u) : copy_path(path, target, size);
    } catch (const std::bad_alloc&) {
        return fail(ERROR_NOT_ENOUGH_MEMORY, 0u);
    }
}

DWORD GetFileAttributesW(LPCWSTR path) {
    const StandIn guard;
    try {
        const std::string name = platform_native::narrow(path);
        struct stat file;
        if (::stat(name.c_str(), &file) == 0) return attributes(file);
        return fail(stat_error(errno, name), INVALID_FILE_ATTRIBUTES);
    } catch (const std::bad_alloc&) {
        return fail(ERROR_NOT_ENOUGH_MEMORY, INVALID_FILE_ATTRIBUTES);
    }
}

namespace platform_native {

void reset_module() {
    platform_testing::set_module_path(u"");
    platform_testing::fail_module_path(false);
}

}  // namespace platform_native

namespace platform_testing {

void set_module_path(const std::u16string& path) {
    const std::lock_guard lock(path_mutex);
    path_of_all = path;
}

void fail_module_path(bool fail) { path_fails.store(fail); }

}  // namespace platform_testing
