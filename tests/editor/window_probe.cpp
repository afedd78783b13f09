// Looks at another program's window as a screen reader's makers would: prints one line for each control that the Tab
// key reaches, in its order, with the label that stands in front of it.
//
//     window_probe TITLE
//
// Exits with 1 where a control has no label with a key of its own, two labels share a key, or a visible control cannot
// be reached; what is wrong goes to standard error.
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "tools/host/program_arguments.h"
#include "tools/host/utf.h"

namespace {

using namespace host;

std::string text_of(HWND window) {
    WCHAR text[256] = {};
    SendMessageW(window, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(text));
    return to_utf8(text);
}

std::string class_of(HWND window) {
    WCHAR text[64] = {};
    GetClassNameW(window, text, 64);
    return to_utf8(text);
}

bool is_static(HWND window) { return window && equal_ignoring_case(class_of(window), "Static"); }

// A button's own text, or the label in front of another control.
std::string label_of(HWND control) {
    if (equal_ignoring_case(class_of(control), "Button")) return text_of(control);
    const HWND before = GetWindow(control, GW_HWNDPREV);
    return is_static(before) ? text_of(before) : "";
}

char key_of(const std::string& label) {
    const std::size_t mark = label.find('&');
    return mark == label.npos || mark + 1 >= label.size() ? '\0' : ascii_lower(label.substr(mark + 1, 1))[0];
}

int problems = 0;

void complain(const std::string& text) {
    std::fprintf(stderr, "window_probe: %s\n", text.c_str());
    ++problems;
}

std::vector<HWND> tab_order(HWND window) {
    std::vector<HWND> result;
    std::set<HWND> seen;
    for (HWND at = GetNextDlgTabItem(window, nullptr, FALSE); at && seen.insert(at).second;
         at = GetNextDlgTabItem(window, at, FALSE))
        result.push_back(at);
    return result;
}

bool is_usable(HWND control) {
    const LONG_PTR style = GetWindowLongPtrW(control, GWL_STYLE);
    return (style & WS_VISIBLE) && !(style & WS_DISABLED);
}

void check_reach(HWND window, const std::vector<HWND>& reached) {
    const std::set<HWND> known(reached.begin(), reached.end());
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if (is_usable(child) && !is_static(child) && !known.count(child))
            complain("Tab does not reach a control of class " + class_of(child));
}

// Disabled buttons count too: they are enabled at another time.
void check_keys(HWND window) {
    std::set<char> keys;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const LONG_PTR style = GetWindowLongPtrW(child, GWL_STYLE);
        if (!(style & WS_VISIBLE) || is_static(child)) continue;
        const std::string label = label_of(child);
        if (!key_of(label)) complain("a control of class " + class_of(child) + " has no key: '" + label + "'");
        if (!keys.insert(key_of(label)).second) complain("two controls share the key of '" + label + "'");
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments = program_arguments(argc, argv);
    const HWND window = arguments.size() == 1 ? FindWindowW(nullptr, to_wide(arguments[0]).c_str()) : nullptr;
    if (!window) {
        complain("there is no such window");
        return 1;
    }
    const std::vector<HWND> reached = tab_order(window);
    for (const HWND control : reached) std::printf("%s\t%s\n", class_of(control).c_str(), label_of(control).c_str());
    check_reach(window, reached);
    check_keys(window);
    return problems ? 1 : 0;
}
