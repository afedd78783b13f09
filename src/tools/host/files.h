// Files by UTF-8 names in both builds, standard input and output among them.
#ifndef NELVA_TOOLS_HOST_FILES_H
#define NELVA_TOOLS_HOST_FILES_H

#include <cstdio>
#include <memory>
#include <string>

namespace host {

// Everything that the file holds; "-" is standard input, read to its end as bytes. Throws HostError.
std::string read_file(const std::string& path);

// A file that is written as bytes. "-" is standard output, which stays open when this object goes.
class OutputFile {
public:
    OutputFile() = default;

    // Creates the file, or empties one that exists. Throws HostError.
    explicit OutputFile(const std::string& path);

    bool is_open() const { return file_ != nullptr; }
    FILE* get() const { return file_.get(); }
    const std::string& path() const { return path_; }

    // Throws HostError when a byte could not be written, now or by an earlier write that nobody looked at.
    void write(const std::string& bytes);
    void close();

private:
    struct Closer {
        void operator()(FILE* file) const;
    };
    std::unique_ptr<FILE, Closer> file_;
    std::string path_;
};

// The folder that holds the running program, as UTF-8, without a slash at its end. Throws HostError.
std::string program_folder();

// The folder part of a path with slashes (on Windows also backslashes), "." when it has none.
std::string folder_of(const std::string& path);

// The path from the root on, and one path inside of another: with the platform's own separators, without "." and "..".
std::string full_path(const std::string& path);
std::string path_in(const std::string& folder, const std::string& name);

bool file_exists(const std::string& path);  // and is no folder
bool folder_exists(const std::string& path);
void make_folder(const std::string& path);  // and those above it; a failure shows when it is used

// True for "/x", and on Windows for "\x", "\\server\x" and "C:\x" too.
bool is_absolute_path(const std::string& path);

}  // namespace host

#endif
