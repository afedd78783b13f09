// The last error, conversions for the stand-ins' own use, and the common reset.

#include "platform/native/internal.h"

#include <sys/stat.h>

#include "platform/native/text.h"
#include "platform/testing.h"

namespace {

thread_local DWORD last_error = 0;
thread_local int stand_in_depth = 0;

}  // namespace

DWORD GetLastError() { return last_error; }

void SetLastError(DWORD error) { last_error = error; }

namespace platform_native {

StandIn::StandIn() { ++stand_in_depth; }

StandIn::~StandIn() { --stand_in_depth; }

std::u16string lower_case(std::u16string_view text) {
    std::u16string lower(text);
    for (char16_t& unit : lower)
        if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit - u'A' + u'a');
    return lower;
}

LONG missing_file_error(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (path.empty()) return ERROR_PATH_NOT_FOUND;
    if (slash == std::string::npos || slash == 0) return ERROR_FILE_NOT_FOUND;
    struct stat folder;
    const bool found = ::stat(path.substr(0, slash).c_str(), &folder) == 0 && S_ISDIR(folder.st_mode);
    return found ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

}  // namespace platform_native

namespace platform_testing {

bool inside_stand_in() { return stand_in_depth > 0; }

void reset() {
    platform_native::reset_memory();
    platform_native::reset_text();
    platform_native::reset_locale();
    platform_native::reset_module();
    platform_native::reset_registry();
    platform_native::reset_eventlog();
    platform_native::reset_process();
    platform_native::reset_window();
}

}  // namespace platform_testing
