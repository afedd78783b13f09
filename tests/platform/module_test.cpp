// Modules' paths and files' attributes. Most tests run against the stand-in and against the system.

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "platform/win32.h"
#ifndef _WIN32
#include <unistd.h>

#include "platform/testing.h"
#endif

namespace {

using Wide = std::basic_string<WCHAR>;

int anchor = 0;

HMODULE this_module() {
    HMODULE module = nullptr;
    EXPECT_NE(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                 reinterpret_cast<LPCWSTR>(&anchor), &module),
              FALSE);
    return module;
}

Wide path_of(HMODULE module) {
    WCHAR path[2000];
    const DWORD length = GetModuleFileNameW(module, path, 2000);
    EXPECT_EQ(path[length], 0);
    return Wide(path, length);
}

}  // namespace

TEST(ModuleFileName, program_is_a_full_path_that_exists) {
    const Wide path = path_of(nullptr);
    EXPECT_NE(path.find(NELVA_WIDE("platform_test")), Wide::npos);
    EXPECT_NE(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(ModuleFileName, address_in_the_program_gives_the_program) { EXPECT_EQ(path_of(this_module()), path_of(nullptr)); }

TEST(ModuleFileName, cut_path_fills_the_room_and_is_an_error) {
    WCHAR path[5] = {'x', 'x', 'x', 'x', 'x'};
    SetLastError(0);
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, 4), 4u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(path[4], 'x');
}

TEST(FileAttributes, missing_file_and_missing_folder_differ) {
    const Wide folder = path_of(nullptr).substr(0, path_of(nullptr).find_last_of(NELVA_WIDE("/\\")) + 1);
    SetLastError(0);
    EXPECT_EQ(GetFileAttributesW((folder + NELVA_WIDE("no such file")).c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(GetFileAttributesW((folder + NELVA_WIDE("none/file")).c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(GetFileAttributesW(NELVA_WIDE("")), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
}

TEST(FileAttributes, folder_is_a_directory) {
    const Wide path = path_of(nullptr);
    const Wide folder = path.substr(0, path.find_last_of(NELVA_WIDE("/\\")));
    EXPECT_NE(GetFileAttributesW(folder.c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0u);
    EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

#ifndef _WIN32

TEST(ModuleFileName, library_is_named_by_its_own_path) {
    HMODULE module = nullptr;
    ASSERT_NE(GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                 reinterpret_cast<LPCWSTR>(&::getpid), &module),
              FALSE);
    EXPECT_NE(path_of(module).find(u"libc"), Wide::npos);
    EXPECT_EQ(path_of(module).front(), u'/');
}

TEST(ModuleFileName, cut_path_is_terminated) {
    platform_testing::set_module_path(u"/abcdef");
    WCHAR path[8];
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, 8), 7u);
    EXPECT_EQ(Wide(path), u"/abcdef");
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, 7), 7u);
    EXPECT_EQ(Wide(path), u"/abcde");
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, 0), 0u);
    platform_testing::reset();
}

TEST(ModuleFileName, fails_on_request) {
    WCHAR path[2000];
    platform_testing::fail_module_path(true);
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, 2000), 0u);
    platform_testing::reset();
    EXPECT_NE(GetModuleFileNameW(nullptr, path, 2000), 0u);
}

TEST(ModuleHandle, address_in_no_module_is_not_found) {
    HMODULE module = nullptr;
    constexpr DWORD by_address = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    EXPECT_EQ(GetModuleHandleExW(by_address, reinterpret_cast<LPCWSTR>(8), &module), FALSE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(module, nullptr);
    EXPECT_EQ(GetModuleHandleExW(0, u"name", &module), FALSE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

TEST(FileAttributes, names_beyond_ascii) {
    const std::string name = ::testing::TempDir() + "nelva \xC3\xA9\xF0\x9F\x98\x80";
    std::ofstream(name) << "x";
    const Wide wide = Wide(NELVA_WIDE("nelva \u00E9\U0001F600"));
    const std::string folder = ::testing::TempDir();
    EXPECT_EQ(GetFileAttributesW((Wide(folder.begin(), folder.end()) + wide).c_str()),
              static_cast<DWORD>(FILE_ATTRIBUTE_NORMAL));
    ::unlink(name.c_str());
}

TEST(FileAttributes, null_path_is_not_found) { EXPECT_EQ(GetFileAttributesW(nullptr), INVALID_FILE_ATTRIBUTES); }

#endif
