// The machine's own files where there is no Windows. See files.h.
#ifndef _WIN32

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/lexicon/document.h"
#include "tools/lexicon/files.h"

namespace lexicon {
namespace {

[[noreturn]] void fail(int error) {
    using Reason = FileError::Reason;
    switch (error) {
        case EACCES:
        case EPERM:
            throw FileError(Reason::no_access, "The system does not allow it (access denied).");
        case EROFS:
            throw FileError(Reason::read_only, "The disk is write-protected.");
        case ENOENT:
        case ENOTDIR:
            throw FileError(Reason::no_folder, "Its folder does not exist.");
        case ENOSPC:
        case EDQUOT:
            throw FileError(Reason::disk_full, "The disk is full.");
        case EEXIST:
            throw FileError(Reason::exists, "It exists already.");
        case ETXTBSY:
            throw FileError(Reason::in_use, "It is in use by another program.");
        default:
            throw FileError(Reason::other, std::string("The system reports: ") + std::strerror(error) + ".");
    }
}

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return number_; }
    bool close() {
        const bool done = number_ < 0 || ::close(number_) == 0;
        number_ = -1;
        return done;
    }

private:
    int number_;
};

class PosixFile final : public NewFile {
public:
    explicit PosixFile(int number) : descriptor_(number) {}
    void write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t done = ::write(descriptor_.get(), bytes.data(), bytes.size());
            if (done < 0 && errno == EINTR) continue;
            if (done < 0) fail(errno);
            bytes.remove_prefix(static_cast<std::size_t>(done));
        }
    }
    void flush() override {
        if (fsync(descriptor_.get()) != 0) fail(errno);
    }
    void close() override {
        if (!descriptor_.close()) fail(errno);
    }

private:
    Descriptor descriptor_;
};

class SystemFiles final : public Files {
public:
    std::optional<std::string> read(const std::string& path) override {
        const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
        if (file.get() < 0) {
            if (errno == ENOENT) return std::nullopt;
            fail(errno);
        }
        std::string result;
        char buffer[1 << 16];
        for (ssize_t count = 1; count > 0;) {
            count = ::read(file.get(), buffer, sizeof buffer);
            if (count < 0) fail(errno);
            result.append(buffer, static_cast<std::size_t>(count));
            if (result.size() > largest_lexicon) throw FileError(FileError::Reason::too_large, too_large_text);
        }
        return result;
    }

    bool exists(const std::string& path) override { return access(path.c_str(), F_OK) == 0; }

    std::string real_path(const std::string& path) override {
        char* const real = realpath(path.c_str(), nullptr);
        std::string result = real ? real : path;
        std::free(real);
        return result;
    }

    void require_writable(const std::string& path) override {
        struct stat status;
        if (stat(path.c_str(), &status) != 0) return;
        if (S_ISDIR(status.st_mode)) throw FileError(FileError::Reason::other, "It is a folder.");
        if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || access(path.c_str(), W_OK) != 0)
            throw FileError(FileError::Reason::read_only, "It is marked as read-only.");
    }

    std::unique_ptr<NewFile> create(const std::string& path, const std::string& like) override {
        const int number = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (number < 0) fail(errno);
        auto file = std::make_unique<PosixFile>(number);
        struct stat status;
        if (stat(like.c_str(), &status) == 0) {
            // What the system does not let us carry over is its own business: the file is ours then.
            if (fchown(number, status.st_uid, status.st_gid) != 0) errno = 0;
            if (fchmod(number, status.st_mode & 07777) != 0) errno = 0;
        }
        return file;
    }

    void replace(const std::string& from, const std::string& to) override {
        if (std::rename(from.c_str(), to.c_str()) != 0) fail(errno);
        // The new name is to survive a crash too. The file is whole either way, so nothing depends on it.
        const std::size_t slash = to.rfind('/');
        const std::string folder = slash == to.npos ? "." : to.substr(0, slash + 1);
        const Descriptor directory(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (directory.get() >= 0 && fsync(directory.get()) != 0) errno = 0;
    }

    void remove(const std::string& path) noexcept override { unlink(path.c_str()); }
};

}  // namespace

Files& system_files() {
    static SystemFiles files;
    return files;
}

}  // namespace lexicon

#endif
