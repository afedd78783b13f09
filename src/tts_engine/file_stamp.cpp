// Identity and times of a file, from the system. See file_stamp.h.
#include "tts_engine/file_stamp.h"

#include <algorithm>

#include "tts_engine/file_names.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/stat.h>

#include <ctime>
#endif

namespace tts {

#if defined(_WIN32)

namespace {

constexpr std::int64_t ticks_per_second = 10'000'000;

std::uint64_t joined(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

// The time of the last change of any kind; not every file system has it.
std::int64_t changed_time(HANDLE file) {
    FILE_BASIC_INFO times{};
    return GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof times) ? times.ChangeTime.QuadPart : 0;
}

std::int64_t now() {
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    return static_cast<std::int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime));
}

}  // namespace

bool get_stamp(const std::string& name, FileStamp& stamp) {
    const HANDLE file =
        CreateFileW(path_of(name).c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION about;
    const bool known = GetFileInformationByHandle(file, &about) != 0;
    stamp.changed = changed_time(file);
    CloseHandle(file);
    if (!known || (about.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
    stamp.device = about.dwVolumeSerialNumber;
    stamp.file = joined(about.nFileIndexHigh, about.nFileIndexLow);
    stamp.size = joined(about.nFileSizeHigh, about.nFileSizeLow);
    stamp.written =
        static_cast<std::int64_t>(joined(about.ftLastWriteTime.dwHighDateTime, about.ftLastWriteTime.dwLowDateTime));
    stamp.young = std::max(stamp.written, stamp.changed) > now() - longest_tick_seconds * ticks_per_second;
    return true;
}

#else

namespace {

constexpr std::int64_t nanoseconds_per_second = 1'000'000'000;

std::int64_t nanoseconds(const timespec& time) { return time.tv_sec * nanoseconds_per_second + time.tv_nsec; }

}  // namespace

bool get_stamp(const std::string& name, FileStamp& stamp) {
    struct stat about;
    if (stat(path_of(name).c_str(), &about) != 0 || S_ISDIR(about.st_mode)) return false;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    stamp.device = about.st_dev;
    stamp.file = about.st_ino;
    stamp.size = static_cast<std::uint64_t>(about.st_size);
    stamp.written = nanoseconds(about.st_mtim);
    stamp.changed = nanoseconds(about.st_ctim);
    stamp.young =
        std::max(stamp.written, stamp.changed) > nanoseconds(now) - longest_tick_seconds * nanoseconds_per_second;
    return true;
}

#endif

}  // namespace tts
