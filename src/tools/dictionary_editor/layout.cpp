// The list takes what the window gains; what is below it moves down, the buttons move right. See layout.h.
#include "tools/dictionary_editor/layout.h"

#include "tools/dictionary_editor/resource.h"

namespace editor {
namespace {

struct Rule {
    int id, move_x, move_y, grow_x, grow_y;
};

// All controls that follow; the others stay.
constexpr Rule rules[] = {
    {IDC_FIND, 0, 0, 1, 0},        {IDC_WORDS, 0, 0, 1, 1}, {IDC_WORD_LABEL, 0, 1, 0, 0},  {IDC_WORD, 0, 1, 1, 0},
    {IDC_TYPE_LABEL, 0, 1, 0, 0},  {IDC_TYPE, 0, 1, 1, 0},  {IDC_SAID_LABEL, 0, 1, 0, 0},  {IDC_SAID, 0, 1, 1, 0},
    {IDC_CHECK_LABEL, 0, 1, 0, 0}, {IDC_CHECK, 0, 1, 1, 0}, {IDC_VOICE_LABEL, 0, 1, 0, 0}, {IDC_VOICE, 0, 1, 1, 0},
    {IDC_STATUS, 0, 1, 1, 0},      {IDC_ADD, 1, 0, 0, 0},   {IDC_CHANGE, 1, 0, 0, 0},      {IDC_REMOVE, 1, 0, 0, 0},
    {IDC_NEW, 1, 0, 0, 0},         {IDC_UNDO, 1, 0, 0, 0},  {IDC_REDO, 1, 0, 0, 0},        {IDC_LISTEN, 1, 1, 0, 0},
    {IDC_SAVE, 1, 1, 0, 0},        {IDCANCEL, 1, 1, 0, 0},
};

}  // namespace

void Layout::start(HWND dialog) {
    dialog_ = dialog;
    RECT client, window;
    GetClientRect(dialog, &client);
    GetWindowRect(dialog, &window);
    client_ = {client.right, client.bottom};
    smallest_ = {window.right - window.left, window.bottom - window.top};
    for (const Rule& rule : rules) {
        const HWND control = GetDlgItem(dialog, rule.id);
        RECT place;
        GetWindowRect(control, &place);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
        places_.push_back({control, place, rule.move_x, rule.move_y, rule.grow_x, rule.grow_y});
    }
}

void Layout::resize() {
    if (!dialog_) return;
    RECT client;
    GetClientRect(dialog_, &client);
    const int dx = client.right - client_.cx, dy = client.bottom - client_.cy;
    for (const Place& p : places_) {
        const RECT& r = p.rectangle;
        SetWindowPos(p.window, nullptr, r.left + p.move_x * dx, r.top + p.move_y * dy, r.right - r.left + p.grow_x * dx,
                     r.bottom - r.top + p.grow_y * dy, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    InvalidateRect(dialog_, nullptr, TRUE);
}

void Layout::limit(MINMAXINFO* limits) const {
    if (dialog_) limits->ptMinTrackSize = {smallest_.cx, smallest_.cy};
}

}  // namespace editor
