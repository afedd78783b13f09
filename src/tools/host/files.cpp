// Files by UTF-8 names: wide names on Windows, the bytes as they are elsewhere.
#include "tools/host/files.h"

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include "tools/host/hresult.h"
#include "tools/host/utf.h"
#include "tts_engine/file_names.h"

namespace host {

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr const char* separators = "/\\";
#else
constexpr const char* separators = "/";
#endif

FILE* open_by_name(const std::string& path, const char* mode) {
#ifdef _WIN32
    return _wfopen(to_wide(path).c_str(), to_wide(mode).c_str());
#else
    return std::fopen(path.c_str(), mode);
#endif
}

FILE* as_bytes(FILE* standard) {
#ifdef _WIN32
    _setmode(_fileno(standard), _O_BINARY);
#endif
    return standard;
}

std::string shown(const std::string& path, const char* standard) { return path == "-" ? standard : "'" + path + "'"; }

std::string without_detours(const fs::path& path) { return tts::utf8_of(path.lexically_normal().make_preferred()); }

}  // namespace

std::string read_file(const std::string& path) {
    const bool standard = path == "-";
    const std::string name = shown(path, "standard input");
    errno = 0;
    FILE* file = standard ? as_bytes(stdin) : open_by_name(path, "rb");
    if (!file) throw HostError("cannot open " + name, hresult_from_errno(errno));
    const std::unique_ptr<FILE, int (*)(FILE*)> owner(standard ? nullptr : file, std::fclose);
    std::string result;
    char block[65536];
    while (const std::size_t got = std::fread(block, 1, sizeof block, file)) result.append(block, got);
    if (std::ferror(file)) throw HostError("cannot read " + name, hresult_from_errno(errno));
    return result;
}

OutputFile::OutputFile(const std::string& path) : path_(path) {
    errno = 0;
    file_.reset(path == "-" ? as_bytes(stdout) : open_by_name(path, "wb"));
    if (!file_) throw HostError("cannot create '" + path + "'", hresult_from_errno(errno));
}

void OutputFile::Closer::operator()(FILE* file) const {
    if (file != stdout) std::fclose(file);
}

void OutputFile::write(const std::string& bytes) {
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size())
        throw HostError("cannot write to " + shown(path_, "standard output"), hresult_from_errno(errno));
}

void OutputFile::close() {
    if (!file_) return;
    errno = 0;
    const bool failed = std::ferror(file_.get()) != 0 || std::fflush(file_.get()) != 0;
    const HRESULT code = hresult_from_errno(errno);
    file_.reset();
    if (failed) throw HostError("cannot write to " + shown(path_, "standard output"), code);
}

std::string program_folder() {
    WideString path(MAX_PATH, WCHAR{0});
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) throw HostError("cannot find the program's own folder", hresult_from_win32(GetLastError()));
        if (length < path.size()) {
            path.resize(length);
            return folder_of(to_utf8(path));
        }
        path.resize(path.size() * 2);
    }
}

std::string folder_of(const std::string& path) {
    const std::size_t slash = path.find_last_of(separators);
    if (slash == std::string::npos) return ".";
    return slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
}

std::string full_path(const std::string& path) { return without_detours(fs::absolute(tts::path_of(path))); }

std::string path_in(const std::string& folder, const std::string& name) {
    return without_detours(tts::path_of(folder) / tts::path_of(name));
}

bool file_exists(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(tts::path_of(path), error);
}

bool folder_exists(const std::string& path) {
    std::error_code error;
    return fs::is_directory(tts::path_of(path), error);
}

void make_folder(const std::string& path) {
    std::error_code ignored;
    fs::create_directories(tts::path_of(path), ignored);
}

bool is_absolute_path(const std::string& path) {
    const std::string_view slashes = separators;
    if (path.empty()) return false;
    if (slashes.find(path[0]) != slashes.npos) return true;
#ifdef _WIN32
    return path.size() >= 3 && path[1] == ':' && slashes.find(path[2]) != slashes.npos;
#else
    return false;
#endif
}

}  // namespace host
