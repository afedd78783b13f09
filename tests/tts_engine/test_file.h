// Files that a test writes and that are gone after it.
#ifndef TESTS_TTS_ENGINE_TEST_FILE_H
#define TESTS_TTS_ENGINE_TEST_FILE_H

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

// A file of the given end of its name, with the given text, in the folder for temporary ones.
class TestFile {
public:
    TestFile(const std::string& end, const std::string& text, const std::u8string& start = u8"nelva-") {
        static std::atomic<unsigned> count = 0;
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        const std::string unique = std::to_string(now) + "-" + std::to_string(count++) + "-" + end;
        path_ = std::filesystem::temp_directory_path() / (start + std::u8string(unique.begin(), unique.end()));
        std::ofstream(path_, std::ios::binary) << text;
    }
    ~TestFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    // UTF-8.
    std::string name() const {
        const std::u8string name = path_.u8string();
        return {name.begin(), name.end()};
    }

private:
    std::filesystem::path path_;
};

#endif
