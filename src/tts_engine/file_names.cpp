// File names between UTF-8 and the system's form. See file_names.h.
#include "tts_engine/file_names.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace tts {

std::filesystem::path path_of(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string utf8_of(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

#if defined(_WIN32)

namespace {

std::string to_code_page(const std::wstring& name) {
    BOOL lost = FALSE;
    const int size = static_cast<int>(name.size());
    const int length =
        WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, name.c_str(), size, nullptr, 0, nullptr, &lost);
    if (length <= 0 || lost) return {};
    std::string result(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, name.c_str(), size, result.data(), length, nullptr, nullptr);
    return result;
}

}  // namespace

std::string native_name_of(const std::filesystem::path& path) {
    std::string plain = to_code_page(path.native());
    if (!plain.empty()) return plain;
    wchar_t short_name[MAX_PATH];
    const DWORD length = GetShortPathNameW(path.c_str(), short_name, MAX_PATH);
    return length == 0 || length >= MAX_PATH ? std::string() : to_code_page(short_name);
}

#else

std::string native_name_of(const std::filesystem::path& path) { return path.native(); }

#endif

std::filesystem::path path_of_native(const std::string& name) { return std::filesystem::path(name); }

}  // namespace tts
