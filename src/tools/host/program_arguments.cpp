// Arguments from argv or from the wide command line.
#include "tools/host/program_arguments.h"

#ifdef _WIN32

#include <memory>

#include "tools/host/hresult.h"
#include "tools/host/utf.h"
// Behind windows.h, which it stands on.
#include <shellapi.h>

namespace host {

std::vector<std::string> program_arguments(int, char**) {
    int count = 0;
    const std::unique_ptr<LPWSTR, HLOCAL(WINAPI*)(HLOCAL)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                 LocalFree);
    if (!words) throw HostError("cannot read the command line", hresult_from_win32(GetLastError()));
    std::vector<std::string> result;
    for (int i = 1; i < count; ++i) result.push_back(to_utf8(words.get()[i]));
    return result;
}

}  // namespace host

#else

namespace host {

std::vector<std::string> program_arguments(int argc, char** argv) {
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

}  // namespace host

#endif
