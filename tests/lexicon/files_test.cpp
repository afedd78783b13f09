// Writing a file whole or not at all: against files whose every step fails, and against the machine's own.
#include "tools/lexicon/files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "lexicon/fake_files.h"
#include "platform/win32.h"
#include "tools/temporary_folder.h"

namespace {

using namespace lexicon;
using Reason = FileError::Reason;
namespace fs = std::filesystem;

Reason failure_of(Files& files, const std::string& path, const std::string& bytes, std::string* message = nullptr) {
    try {
        write_file_whole(files, path, bytes);
    } catch (const FileError& error) {
        if (message) *message = error.what();
        return error.reason;
    }
    ADD_FAILURE() << "written: " << path;
    return Reason::other;
}

std::string text_of(const std::string& path) { return system_files().read(path).value_or("(none)"); }

std::size_t count_in(const std::string& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(WriteFileWhole, bytes_are_on_the_disk_before_the_old_file_goes) {
    FakeFiles files;
    files.content["a"] = "old";
    write_file_whole(files, "a", "new");
    EXPECT_EQ(files.content, (std::map<std::string, std::string>{{"a", "new"}}));
    EXPECT_EQ(files.calls,
              (std::vector<std::string>{"require_writable", "create", "write", "flush", "close", "replace"}));
}

TEST(WriteFileWhole, each_failure_leaves_the_old_file_and_nothing_else) {
    for (const char* call : {"require_writable", "create", "write", "flush", "close", "replace"}) {
        FakeFiles files;
        files.content["a"] = "old";
        files.failing = call;
        files.reason = Reason::in_use;
        EXPECT_EQ(failure_of(files, "a", "new"), Reason::in_use) << call;
        EXPECT_EQ(files.content, (std::map<std::string, std::string>{{"a", "old"}})) << call;
        EXPECT_EQ(files.open, 0) << call;
    }
}

TEST(WriteFileWhole, full_disk_at_each_byte_leaves_the_old_file) {
    for (std::size_t room = 0; room < 8; ++room) {
        FakeFiles files;
        files.content["a"] = "old";
        files.room = room;
        EXPECT_EQ(failure_of(files, "a", "new bytes"), Reason::disk_full);
        EXPECT_EQ(files.content, (std::map<std::string, std::string>{{"a", "old"}}));
    }
}

TEST(WriteFileWhole, names_that_are_taken_are_passed_by) {
    FakeFiles files;
    files.content = {{"a", "old"}, {"a.new1", "left behind"}, {"a.new2", "of another"}};
    write_file_whole(files, "a", "new");
    EXPECT_EQ(files.content,
              (std::map<std::string, std::string>{{"a", "new"}, {"a.new1", "left behind"}, {"a.new2", "of another"}}));
}

TEST(WriteFileWhole, old_file_lost_by_the_system_keeps_the_new_one_and_names_it) {
    FakeFiles files;
    files.content["a"] = "old";
    files.failing = "replace";
    files.loses_target = true;
    std::string message;
    failure_of(files, "a", "new", &message);
    EXPECT_EQ(files.content, (std::map<std::string, std::string>{{"a.new1", "new"}}));
    EXPECT_NE(message.find("\"a.new1\""), std::string::npos);
}

TEST(WriteFileWhole, links_are_followed) {
    FakeFiles files;
    files.content["real"] = "old";
    files.links["link"] = "real";
    write_file_whole(files, "link", "new");
    EXPECT_EQ(files.content, (std::map<std::string, std::string>{{"real", "new"}}));
}

TEST(SystemFiles, write_makes_and_replaces) {
    const TemporaryFolder folder;
    const std::string path = folder.file("w\xC3\xB6rter.pls");
    EXPECT_EQ(system_files().read(path), std::nullopt);
    EXPECT_FALSE(system_files().exists(path));
    write_file_whole(system_files(), path, "one");
    EXPECT_EQ(text_of(path), "one");
    write_file_whole(system_files(), path, std::string(3 << 20, 'x'));
    EXPECT_EQ(text_of(path), std::string(3 << 20, 'x'));
    EXPECT_TRUE(system_files().exists(path));
    EXPECT_EQ(count_in(folder.path()), 1u);
}

TEST(SystemFiles, missing_folder_and_folder_in_place_of_a_file) {
    const TemporaryFolder folder;
    EXPECT_EQ(failure_of(system_files(), folder.file("no/such.pls"), "x"), Reason::no_folder);
    failure_of(system_files(), folder.path(), "x");
    EXPECT_EQ(count_in(folder.path()), 0u);
}

TEST(SystemFiles, read_only_file_stays) {
    const TemporaryFolder folder;
    const std::string path = folder.with_file("a.pls", "old");
    fs::permissions(path, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    EXPECT_EQ(failure_of(system_files(), path, "new"), Reason::read_only);
    EXPECT_EQ(text_of(path), "old");
    EXPECT_EQ(count_in(folder.path()), 1u);
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
}

#ifdef _WIN32
TEST(SystemFiles, locked_file_stays_and_cannot_be_read) {
    const TemporaryFolder folder;
    const std::string path = folder.with_file("a.pls", "old");
    const HANDLE lock = CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    EXPECT_EQ(failure_of(system_files(), path, "new"), Reason::in_use);
    EXPECT_THROW(system_files().read(path), FileError);
    CloseHandle(lock);
    EXPECT_EQ(text_of(path), "old");
    EXPECT_EQ(count_in(folder.path()), 1u);
}
#else
TEST(SystemFiles, replaced_file_keeps_its_permissions_and_its_link) {
    const TemporaryFolder folder;
    const std::string path = folder.with_file("a.pls", "old");
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("a.pls", folder.file("link.pls"));
    write_file_whole(system_files(), folder.file("link.pls"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.file("link.pls")));
    EXPECT_EQ(text_of(path), "new");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(SystemFiles, create_never_takes_an_existing_file) {
    const TemporaryFolder folder;
    EXPECT_THROW(system_files().create(folder.with_file("a", "old"), ""), FileError);
    EXPECT_EQ(text_of(folder.file("a")), "old");
}
#endif

}  // namespace
