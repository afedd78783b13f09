// Looks at another program's window as a screen reader's makers would: prints one line for each control that the Tab
// key reaches, in its order, with the label that stands in front of it and the name that MSAA gives it.
//
//     window_probe TITLE
//
// Exits with 1 where a control has no label with a key of its own, two labels share a key, MSAA gives a control another
// name or key than its label's, or a visible control cannot be reached; what is wrong goes to standard error.
//
// Wine's MSAA does not name list views and takes a combo box's text for its name. Windows names both after the label in
// front of them, as it does edit fields, so that the label is what is looked at there.
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "tools/host/com_ptr.h"
#include "tools/host/program_arguments.h"
#include "tools/host/utf.h"
// Behind windows.h, which it stands on.
#include <oleacc.h>

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

std::string taken(BSTR text) {
    const std::string result = text ? to_utf8({text, SysStringLen(text)}) : "";
    SysFreeString(text);
    return result;
}

// What a screen reader says and what it tells to press; both empty where MSAA has no answer.
struct Spoken {
    std::string name, key;
};

Spoken spoken(HWND control) {
    ComPtr<IAccessible> accessible;
    if (FAILED(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                          reinterpret_cast<void**>(accessible.out()))))
        return {};
    VARIANT self = {};
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    BSTR name = nullptr, key = nullptr;
    accessible->get_accName(self, &name);
    accessible->get_accKeyboardShortcut(self, &key);
    return {taken(name), taken(key)};
}

std::string without_mark(std::string label) {
    const std::size_t mark = label.find('&');
    return mark == label.npos ? label : label.erase(mark, 1);
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

bool is_named_here(HWND control) {
    return equal_ignoring_case(class_of(control), "Edit") || equal_ignoring_case(class_of(control), "Button");
}

void check_name(HWND control) {
    const std::string label = label_of(control), name = without_mark(label);
    const Spoken said = spoken(control);
    if (name.empty()) complain("a control of class " + class_of(control) + " has no name");
    if (!is_named_here(control)) return;
    if (said.name != name) complain("'" + name + "' is called '" + said.name + "'");
    if (ascii_lower(said.key) != std::string("alt+") + key_of(label))
        complain("the key of '" + name + "' is called '" + said.key + "'");
}

void check_names(HWND window) {
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if ((GetWindowLongPtrW(child, GWL_STYLE) & WS_VISIBLE) && !is_static(child)) check_name(child);
}

int probe(const std::vector<std::string>& arguments) {
    const HWND window = arguments.size() == 1 ? FindWindowW(nullptr, to_wide(arguments[0]).c_str()) : nullptr;
    if (!window) {
        complain("there is no such window");
        return 1;
    }
    const std::vector<HWND> reached = tab_order(window);
    for (const HWND control : reached)
        std::printf("%s\t%s\t%s\n", class_of(control).c_str(), label_of(control).c_str(), spoken(control).name.c_str());
    check_reach(window, reached);
    check_keys(window);
    check_names(window);
    return problems ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    CoInitialize(nullptr);
    const int status = probe(program_arguments(argc, argv));
    CoUninitialize();
    return status;
}
