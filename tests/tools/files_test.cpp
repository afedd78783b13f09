// Files by UTF-8 names.
#include "tools/host/files.h"

#include <gtest/gtest.h>

#include "temporary_folder.h"
#include "tools/host/hresult.h"

namespace {

using namespace host;

HRESULT code_of_reading(const std::string& path) {
    try {
        read_file(path);
    } catch (const HostError& error) {
        return error.code();
    }
    return S_OK;
}

TEST(Files, what_was_written_is_read_byte_by_byte) {
    const TemporaryFolder folder;
    OutputFile file(folder.file("x"));
    file.write(std::string("a\r\n\0\x1A\xFF", 6));
    file.close();
    EXPECT_EQ(read_file(folder.file("x")), std::string("a\r\n\0\x1A\xFF", 6));
}

TEST(Files, names_may_hold_any_character) {
    const TemporaryFolder folder;
    const std::string name = folder.path() + "/\xC3\xA9\xF0\x9F\x98\x80.txt";
    OutputFile file(name);
    file.write("x");
    file.close();
    EXPECT_EQ(read_file(name), "x");
}

TEST(Files, missing_file_names_itself_and_the_code) {
    const TemporaryFolder folder;
    EXPECT_EQ(code_of_reading(folder.file("none")), static_cast<HRESULT>(0x80070002u));
    try {
        read_file("no-such-file");
        FAIL();
    } catch (const HostError& error) {
        EXPECT_STREQ(error.what(), "cannot open 'no-such-file': 0x80070002 (ERROR_FILE_NOT_FOUND): check the name");
    }
}

TEST(Files, folder_is_no_file) {
    const TemporaryFolder folder;
    EXPECT_LT(code_of_reading(folder.path()), 0);
    EXPECT_THROW(OutputFile{folder.path()}, HostError);
}

TEST(Files, file_in_missing_folder_cannot_be_created) {
    const TemporaryFolder folder;
    EXPECT_THROW(OutputFile{folder.path() + "/none/x"}, HostError);
}

#ifdef __linux__
TEST(Files, full_disk_shows_at_the_latest_when_closing) {
    OutputFile file("/dev/full");
    file.write("x");
    try {
        file.close();
        FAIL();
    } catch (const HostError& error) {
        EXPECT_EQ(error.code(), static_cast<HRESULT>(0x80070070u));
    }
    EXPECT_FALSE(file.is_open());
}
#endif

TEST(Files, program_folder_holds_this_program) {
    EXPECT_TRUE(std::filesystem::exists(program_folder()));
    EXPECT_TRUE(is_absolute_path(program_folder()));
}

TEST(Files, folder_of_a_path) {
    EXPECT_EQ(folder_of("a/b/c.json"), "a/b");
    EXPECT_EQ(folder_of("/c.json"), "/");
    EXPECT_EQ(folder_of("c.json"), ".");
}

TEST(Files, absolute_paths_begin_with_a_slash) {
    EXPECT_TRUE(is_absolute_path("/a"));
    EXPECT_FALSE(is_absolute_path("a/b"));
    EXPECT_FALSE(is_absolute_path(""));
}

#ifdef _WIN32
TEST(Files, absolute_paths_of_windows) {
    EXPECT_TRUE(is_absolute_path("C:\\a"));
    EXPECT_TRUE(is_absolute_path("c:/a"));
    EXPECT_TRUE(is_absolute_path("\\\\server\\share"));
    EXPECT_FALSE(is_absolute_path("C:a"));
    EXPECT_EQ(folder_of("C:\\a\\b"), "C:\\a");
}
#else
TEST(Files, backslash_is_no_separator) { EXPECT_EQ(folder_of("a\\b"), "."); }
#endif

}  // namespace
