// Starting, watching and leaving processes.

#ifndef _WIN32

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <string>

#include "platform/testing.h"

namespace {

using Wide = std::u16string;

class Process : public ::testing::Test {
protected:
    Process() { platform_testing::reset(); }
    ~Process() override {
        EXPECT_EQ(platform_testing::live_process_handles(), 0);
        platform_testing::reset();
    }

    STARTUPINFOW startup = {};
    PROCESS_INFORMATION process = {};

    BOOL start(LPCWSTR application, Wide command_line) {
        startup.cb = sizeof startup;
        return CreateProcessW(application, command_line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                              nullptr, &startup, &process);
    }

    // The error of a start that must fail.
    DWORD start_error(LPCWSTR application) {
        SetLastError(0);
        EXPECT_EQ(start(application, u"x"), FALSE);
        EXPECT_TRUE(platform_testing::started_processes().empty());
        return GetLastError();
    }

    void close() {
        EXPECT_NE(CloseHandle(process.hThread), FALSE);
        EXPECT_NE(CloseHandle(process.hProcess), FALSE);
    }

    DWORD exit_code() {
        DWORD code = 12345;
        EXPECT_NE(GetExitCodeProcess(process.hProcess, &code), FALSE);
        return code;
    }
};

Wide write_file(const std::string& name, const std::string& content, mode_t mode) {
    const std::string path = ::testing::TempDir() + name;
    std::ofstream(path) << content;
    EXPECT_EQ(::chmod(path.c_str(), mode), 0);
    return Wide(path.begin(), path.end());
}

}  // namespace

TEST_F(Process, exit_code_after_the_end) {
    ASSERT_NE(start(u"/bin/sh", u"sh -c \"exit 7\""), FALSE);
    EXPECT_EQ(WaitForSingleObject(process.hProcess, INFINITE), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(exit_code(), 7u);
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 0), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(exit_code(), 7u);
    close();
}

TEST_F(Process, running_process_times_out_and_is_still_active) {
    ASSERT_NE(start(u"/bin/sleep", u"sleep 60"), FALSE);
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 0), static_cast<DWORD>(WAIT_TIMEOUT));
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 5), static_cast<DWORD>(WAIT_TIMEOUT));
    EXPECT_EQ(exit_code(), static_cast<DWORD>(STILL_ACTIVE));
    ::kill(static_cast<pid_t>(process.dwProcessId), SIGKILL);
    EXPECT_EQ(WaitForSingleObject(process.hProcess, INFINITE), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(exit_code(), 128u + SIGKILL);
    close();
}

TEST_F(Process, arguments_arrive_as_the_command_line_quotes_them) {
    const std::string out = ::testing::TempDir() + "nelva arguments";
    const Wide wide(out.begin(), out.end());
    ASSERT_NE(start(u"/bin/sh", u"\"sh\" -c \"printf '<%s>' \\\"$@\\\" > \\\"$0\\\"\" \"" + wide +
                                    u"\" --lex \"a b\u00E9\" \"\" c\\d"),
              FALSE);
    WaitForSingleObject(process.hProcess, INFINITE);
    EXPECT_EQ(exit_code(), 0u);
    close();
    std::ifstream file(out);
    std::string text;
    std::getline(file, text);
    EXPECT_EQ(text, "<--lex><a b\xC3\xA9><><c\\d>");
    ::unlink(out.c_str());
}

TEST_F(Process, what_was_started_is_kept_for_tests) {
    ASSERT_NE(start(u"/bin/true", u"\"/bin/true\" --lex \"a b\""), FALSE);
    WaitForSingleObject(process.hProcess, INFINITE);
    close();
    const auto started = platform_testing::started_processes();
    ASSERT_EQ(started.size(), 1u);
    EXPECT_EQ(started[0].application, u"/bin/true");
    EXPECT_EQ(started[0].command_line, u"\"/bin/true\" --lex \"a b\"");
    EXPECT_EQ(started[0].arguments, (std::vector<std::string>{"/bin/true", "--lex", "a b"}));
    EXPECT_EQ(started[0].flags, 0x08000000u);
}

TEST_F(Process, without_application_the_first_word_is_started) {
    ASSERT_NE(start(nullptr, u"\"/bin/true\" x"), FALSE);
    WaitForSingleObject(process.hProcess, INFINITE);
    EXPECT_EQ(exit_code(), 0u);
    close();
}

TEST_F(Process, start_errors_as_windows_has_them) {
    EXPECT_EQ(start_error(u"/bin/no such program"), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(start_error(u"/no such folder/program"), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(start_error(u"/bin/sh/program"), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(start_error(u""), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(start_error(u"/usr"), static_cast<DWORD>(ERROR_ACCESS_DENIED));
}

TEST_F(Process, file_that_is_no_program) {
    const Wide plain = write_file("nelva plain", "text", 0644);
    EXPECT_EQ(start_error(plain.c_str()), static_cast<DWORD>(ERROR_ACCESS_DENIED));
    const Wide marked = write_file("nelva marked", "text", 0755);
    EXPECT_EQ(start_error(marked.c_str()), static_cast<DWORD>(ERROR_BAD_EXE_FORMAT));
    ::unlink((::testing::TempDir() + "nelva plain").c_str());
    ::unlink((::testing::TempDir() + "nelva marked").c_str());
}

TEST_F(Process, wrong_arguments_and_handles) {
    EXPECT_EQ(CreateProcessW(nullptr, nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process),
              FALSE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    int foreign = 0;
    DWORD code = 0;
    EXPECT_EQ(WaitForSingleObject(&foreign, 0), WAIT_FAILED);
    EXPECT_EQ(GetExitCodeProcess(&foreign, &code), FALSE);
    EXPECT_EQ(CloseHandle(&foreign), FALSE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST_F(Process, start_fails_on_request) {
    platform_testing::fail_process_start(123456);
    EXPECT_EQ(start_error(u"/bin/true"), 123456u);
    platform_testing::fail_process_start(0);
    EXPECT_NE(start(u"/bin/true", u"true"), FALSE);
    close();
}

TEST_F(Process, exit_code_fails_on_request) {
    ASSERT_NE(start(u"/bin/true", u"true"), FALSE);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 5;
    platform_testing::fail_exit_code(true);
    EXPECT_EQ(GetExitCodeProcess(process.hProcess, &code), FALSE);
    EXPECT_EQ(code, 5u);
    close();
}

TEST_F(Process, handles_are_counted_until_closed) {
    ASSERT_NE(start(u"/bin/true", u"true"), FALSE);
    EXPECT_EQ(platform_testing::live_process_handles(), 2);
    CloseHandle(process.hThread);
    EXPECT_EQ(platform_testing::live_process_handles(), 1);
    CloseHandle(process.hProcess);
}

// The process that was left running is waited for at a later call, and is then gone.
TEST_F(Process, process_left_behind_does_not_stay_a_zombie) {
    ASSERT_NE(start(u"/bin/sleep", u"sleep 60"), FALSE);
    const auto left = static_cast<pid_t>(process.dwProcessId);
    close();
    EXPECT_EQ(::kill(left, SIGKILL), 0);
    bool gone = false;
    for (int i = 0; i < 500 && !gone; ++i) {
        ASSERT_NE(start(u"/bin/true", u"true"), FALSE);
        WaitForSingleObject(process.hProcess, INFINITE);
        close();
        gone = ::kill(left, 0) != 0;
    }
    EXPECT_TRUE(gone);
}

TEST_F(Process, child_inherits_the_standard_streams_only) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const Wide number = [&] {
        const std::string text = std::to_string(ends[1]);
        return Wide(text.begin(), text.end());
    }();
    ASSERT_NE(start(u"/bin/sh", u"sh -c \"test -e /proc/self/fd/" + number + u"\""), FALSE);
    WaitForSingleObject(process.hProcess, INFINITE);
    EXPECT_EQ(exit_code(), 1u);
    close();
    ::close(ends[0]);
    ::close(ends[1]);
}

#endif
