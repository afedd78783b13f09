// A file with the bytes of an input, for what reads files by name. One for the whole run, removed at its end.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& name) {
        std::string folder = (std::filesystem::temp_directory_path() / "nelva-fuzz-XXXXXX").string();
        if (mkdtemp(folder.data()) == nullptr) std::abort();
        folder_ = folder;
        path_ = folder_ / name;
    }
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    std::string path() const { return path_.string(); }

    void write(const std::uint8_t* data, std::size_t size) const {
        std::ofstream file(path_, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }

private:
    std::filesystem::path folder_;
    std::filesystem::path path_;
};
