// A folder of a test's own, removed with all that is in it when the test ends.
#ifndef NELVA_TESTS_TOOLS_TEMPORARY_FOLDER_H
#define NELVA_TESTS_TOOLS_TEMPORARY_FOLDER_H

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

class TemporaryFolder {
public:
    TemporaryFolder() {
        static std::atomic<int> number{0};
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        path_ = std::filesystem::temp_directory_path() /
                ("nelva-test-" + std::to_string(now) + "-" + std::to_string(++number));
        std::filesystem::create_directories(path_);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path() const { return path_.string(); }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

    // Makes a file with this content, and gives its path.
    std::string with_file(const std::string& name, const std::string& content) const {
        std::ofstream(path_ / name, std::ios::binary) << content;
        return file(name);
    }

private:
    std::filesystem::path path_;
};

#endif
