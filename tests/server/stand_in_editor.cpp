// Stands in for the dictionary editor: writes down how it was started, stays for a while, and ends as it was told.
//
// Its command line is the server's business, so it is told by the environment, which it has from the caller:
//
//     NELVA_EDITOR_RECORD  the file that it writes its arguments to, one a line behind its own name; when it ends, an
//                          empty file of this name with ".ended" behind it follows
//     NELVA_EDITOR_CODE    its exit code; 0
//     NELVA_EDITOR_STAYS   "1": it stays until there is a file of the record's name with ".stop" behind it, but for no
//                          longer than a minute
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#include "platform/win32.h"
#endif

namespace {

namespace fs = std::filesystem;

constexpr auto step = std::chrono::milliseconds(5);
constexpr int most_steps = 12000;

std::string setting(const char* name) {
    const char* text = std::getenv(name);
    return text ? text : "";
}

int edit(const std::vector<std::string>& arguments) {
    const std::string record = setting("NELVA_EDITOR_RECORD");
    {
        // Under another name first: whoever waits for the record finds all of it.
        std::ofstream file(record + ".part", std::ios::binary);
        for (const std::string& argument : arguments) file << argument << '\n';
    }
    fs::rename(record + ".part", record);
    for (int i = 0; i < most_steps && setting("NELVA_EDITOR_STAYS") == "1" && !fs::exists(record + ".stop"); ++i)
        std::this_thread::sleep_for(step);
    std::ofstream(record + ".ended");
    return std::atoi(setting("NELVA_EDITOR_CODE").c_str());
}

}  // namespace

#ifdef _WIN32

namespace {

std::string utf8(const wchar_t* text) {
    std::string result(
        static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr)), 0);
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), static_cast<int>(result.size()), nullptr, nullptr);
    result.pop_back();  // the NUL
    return result;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    std::vector<std::string> arguments;
    for (int i = 0; i < argc; ++i) arguments.push_back(utf8(argv[i]));
    return edit(arguments);
}

#else

int main(int argc, char** argv) { return edit({argv, argv + argc}); }

#endif
