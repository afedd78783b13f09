// Reading folders with the system's own functions. See folder.h.
#include "tts_engine/folder.h"

#include <memory>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dirent.h>
#endif

namespace tts {

#if defined(_WIN32)

std::vector<std::filesystem::path> names_in(const std::filesystem::path& folder) {
    struct Close {
        using pointer = HANDLE;
        void operator()(HANDLE search) const { FindClose(search); }
    };
    std::vector<std::filesystem::path> names;
    WIN32_FIND_DATAW found;
    const HANDLE first = FindFirstFileW((folder / L"*").c_str(), &found);
    if (first == INVALID_HANDLE_VALUE) return names;
    const std::unique_ptr<HANDLE, Close> search(first);
    do {
        if (found.cFileName[0] != L'.') names.emplace_back(found.cFileName);
    } while (FindNextFileW(first, &found));
    return names;
}

#else

std::vector<std::filesystem::path> names_in(const std::filesystem::path& folder) {
    struct Close {
        void operator()(DIR* directory) const { closedir(directory); }
    };
    std::vector<std::filesystem::path> names;
    const std::unique_ptr<DIR, Close> directory(opendir(folder.c_str()));
    if (!directory) return names;
    while (const dirent* found = readdir(directory.get()))
        if (found->d_name[0] != '.') names.emplace_back(found->d_name);
    return names;
}

#endif

}  // namespace tts
