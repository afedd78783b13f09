// A new file beside the old one, then a rename over it. See files.h.
#include "tools/lexicon/files.h"

namespace lexicon {
namespace {

// What other runs left behind, or another editor uses just now, is passed by.
constexpr int most_names = 100;

std::unique_ptr<NewFile> create_beside(Files& files, const std::string& path, std::string* name) {
    for (int i = 1;; ++i) {
        *name = path + ".new" + std::to_string(i);
        try {
            return files.create(*name, path);
        } catch (const FileError& error) {
            if (error.reason != FileError::Reason::exists || i == most_names) throw;
        }
    }
}

// Removes a file, once told which, unless it is released.
class Guard {
public:
    explicit Guard(Files& files) : files_(files) {}
    ~Guard() {
        if (!path_.empty()) files_.remove(path_);
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    void watch(const std::string& path) { path_ = path; }
    void release() { path_.clear(); }

private:
    Files& files_;
    std::string path_;
};

void replace(Files& files, const std::string& from, const std::string& to, Guard* guard) {
    const bool existed = files.exists(to);
    try {
        files.replace(from, to);
    } catch (const FileError& error) {
        if (!existed || files.exists(to)) throw;
        // The worst that Windows' call may do: the old file is gone, and the new one has its old name. Then it stays.
        guard->release();
        throw FileError(error.reason, std::string(error.what()) + " All words are in the file \"" + from + "\".");
    }
    guard->release();
}

}  // namespace

void write_file_whole(Files& files, const std::string& path, std::string_view bytes) {
    const std::string target = files.real_path(path);
    files.require_writable(target);
    Guard guard(files);  // outlives the file, since an open one cannot be removed everywhere
    std::string name;
    {
        const std::unique_ptr<NewFile> file = create_beside(files, target, &name);
        guard.watch(name);
        file->write(bytes);
        file->flush();
        file->close();
    }
    replace(files, name, target, &guard);
}

}  // namespace lexicon
