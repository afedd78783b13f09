// What the windows whose titles begin so show, as eyes for scripts: prints the text of each visible control, one a
// line, line ends in a text as blanks.
//
//     window_text TITLE
#include <cstdio>
#include <string>

#include "platform/win32.h"
#include "tools/host/program_arguments.h"
#include "tools/host/utf.h"

namespace {

using namespace host;

std::string text_of(HWND window) {
    WCHAR text[4096] = {};
    SendMessageW(window, WM_GETTEXT, 4096, reinterpret_cast<LPARAM>(text));
    std::string result = to_utf8(text);
    for (char& c : result)
        if (c == '\r' || c == '\n') c = ' ';
    return result;
}

BOOL CALLBACK print_control(HWND control, LPARAM) {
    const std::string text = IsWindowVisible(control) ? text_of(control) : "";
    if (!text.empty()) std::printf("%s\n", text.c_str());
    return TRUE;
}

BOOL CALLBACK print_window(HWND window, LPARAM title) {
    if (IsWindowVisible(window) && text_of(window).starts_with(*reinterpret_cast<const std::string*>(title)))
        EnumChildWindows(window, print_control, 0);
    return TRUE;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments = program_arguments(argc, argv);
    if (arguments.size() != 1) return 2;
    EnumWindows(print_window, reinterpret_cast<LPARAM>(&arguments[0]));
    return 0;
}
