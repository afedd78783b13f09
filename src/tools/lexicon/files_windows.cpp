// The machine's own files on Windows. See files.h.
#ifdef _WIN32

#include <algorithm>
#include <new>

#include "platform/win32.h"
#include "tools/host/utf.h"
#include "tools/lexicon/document.h"
#include "tools/lexicon/files.h"

namespace lexicon {
namespace {

using host::to_wide;

std::string system_text(DWORD error) {
    WCHAR text[512];
    const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    DWORD length = FormatMessageW(flags, nullptr, error, 0, text, 512, nullptr);
    while (length > 0 && (text[length - 1] == '\r' || text[length - 1] == '\n' || text[length - 1] == ' ')) --length;
    if (length == 0) return "Windows reports error " + std::to_string(error) + ".";
    return host::to_utf8({text, length});
}

[[noreturn]] void fail(DWORD error) {
    using Reason = FileError::Reason;
    switch (error) {
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
        case ERROR_UNABLE_TO_REMOVE_REPLACED:
            throw FileError(Reason::in_use, "It is in use by another program.");
        case ERROR_ACCESS_DENIED:
            throw FileError(Reason::no_access, "Windows does not allow it (access denied).");
        case ERROR_WRITE_PROTECT:
            throw FileError(Reason::read_only, "The disk is write-protected.");
        case ERROR_PATH_NOT_FOUND:
            throw FileError(Reason::no_folder, "Its folder does not exist.");
        case ERROR_HANDLE_DISK_FULL:
        case ERROR_DISK_FULL:
            throw FileError(Reason::disk_full, "The disk is full.");
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            throw FileError(Reason::exists, "It exists already.");
        default:
            throw FileError(Reason::other, system_text(error));
    }
}

class Handle {
public:
    explicit Handle(HANDLE handle) : handle_(handle) {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    HANDLE get() const { return handle_; }
    bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool close() {
        const bool done = !is_open() || CloseHandle(handle_);
        handle_ = INVALID_HANDLE_VALUE;
        return done;
    }

private:
    HANDLE handle_;
};

// Of a file that is there, however others have it open.
Handle open_existing(const std::string& path, DWORD access) {
    const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return Handle(
        CreateFileW(to_wide(path).c_str(), access, sharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

class WindowsFile final : public NewFile {
public:
    explicit WindowsFile(HANDLE handle) : handle_(handle) {}
    void write(std::string_view bytes) override {
        while (!bytes.empty()) {
            DWORD done = 0;
            const auto step = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 24));
            if (!WriteFile(handle_.get(), bytes.data(), step, &done, nullptr)) fail(GetLastError());
            if (done == 0) fail(ERROR_DISK_FULL);
            bytes.remove_prefix(done);
        }
    }
    void flush() override {
        if (!FlushFileBuffers(handle_.get())) fail(GetLastError());
    }
    void close() override {
        if (!handle_.close()) fail(GetLastError());
    }

private:
    Handle handle_;
};

class SystemFiles final : public Files {
public:
    std::optional<std::string> read(const std::string& path) override {
        const Handle file = open_existing(path, GENERIC_READ);
        if (!file.is_open()) {
            if (GetLastError() == ERROR_FILE_NOT_FOUND) return std::nullopt;
            fail(GetLastError());
        }
        return read_all(file.get());
    }

    bool exists(const std::string& path) override {
        return GetFileAttributesW(to_wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    std::string real_path(const std::string& path) override {
        const Handle file = open_existing(path, 0);
        const DWORD attributes = GetFileAttributesW(to_wide(path).c_str());
        const bool is_link = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
        if (!file.is_open() || !is_link) return path;
        host::WideString text(32768, L'\0');
        const DWORD length = GetFinalPathNameByHandleW(file.get(), text.data(), static_cast<DWORD>(text.size()), 0);
        if (length == 0 || length >= text.size()) return path;
        return host::to_utf8({text.data(), length});
    }

    void require_writable(const std::string& path) override {
        const DWORD attributes = GetFileAttributesW(to_wide(path).c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) return;
        if (attributes & FILE_ATTRIBUTE_DIRECTORY) throw FileError(FileError::Reason::other, "It is a folder.");
        if (attributes & FILE_ATTRIBUTE_READONLY)
            throw FileError(FileError::Reason::read_only, "It is marked as read-only.");
        // Who holds it open so that it cannot be replaced is found out before a new file is there. The right to delete
        // may also come from the folder.
        DWORD error = open_error(path, GENERIC_WRITE | DELETE);
        if (error == ERROR_ACCESS_DENIED) error = open_error(path, GENERIC_WRITE);
        if (error != 0) fail(error);
    }

    // ReplaceFile gives the new file the old one's attributes and access list.
    std::unique_ptr<NewFile> create(const std::string& path, const std::string&) override {
        const HANDLE handle =
            CreateFileW(to_wide(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) fail(GetLastError());
        return std::make_unique<WindowsFile>(handle);
    }

    void replace(const std::string& from, const std::string& to) override {
        const auto old_name = to_wide(to), new_name = to_wide(from);
        const DWORD flags = REPLACEFILE_IGNORE_MERGE_ERRORS;
        if (ReplaceFileW(old_name.c_str(), new_name.c_str(), nullptr, flags, nullptr, nullptr)) return;
        const DWORD error = GetLastError();
        // Either there was no old file, or the file system took it away and could not do the rest, or it has no
        // ReplaceFile.
        const bool gone = GetFileAttributesW(old_name.c_str()) == INVALID_FILE_ATTRIBUTES;
        const bool unsupported = error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION ||
                                 error == ERROR_CALL_NOT_IMPLEMENTED || error == ERROR_INVALID_PARAMETER;
        if (!gone && !unsupported) fail(error);
        if (!MoveFileExW(new_name.c_str(), old_name.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            fail(GetLastError());
    }

    void remove(const std::string& path) noexcept override {
        try {
            DeleteFileW(to_wide(path).c_str());
        } catch (const std::bad_alloc&) {
            // The file stays behind, under a name that the next write passes by.
        }
    }

private:
    // 0 when the file can be opened so while others have it open as they do.
    static DWORD open_error(const std::string& path, DWORD access) {
        const Handle file = open_existing(path, access);
        return file.is_open() ? 0 : GetLastError();
    }

    static std::string read_all(HANDLE file) {
        LARGE_INTEGER size;
        if (!GetFileSizeEx(file, &size)) fail(GetLastError());
        if (size.QuadPart > static_cast<LONGLONG>(largest_lexicon))
            throw FileError(FileError::Reason::too_large, too_large_text);
        std::string result;
        char buffer[1 << 16];
        for (DWORD count = 1; count > 0;) {
            if (!ReadFile(file, buffer, sizeof buffer, &count, nullptr)) fail(GetLastError());
            result.append(buffer, count);
            if (result.size() > largest_lexicon) break;  // it grew meanwhile: whoever parses it says so
        }
        return result;
    }
};

}  // namespace

Files& system_files() {
    static SystemFiles files;
    return files;
}

}  // namespace lexicon

#endif
