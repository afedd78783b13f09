// Saving and closing: no way out of the window loses a word without having asked. See window.h.
#include <algorithm>
#include <array>

#include "tools/dictionary_editor/question.h"
#include "tools/dictionary_editor/resource.h"
#include "tools/dictionary_editor/window.h"
#include "tools/host/utf.h"
// Behind windows.h, which it stands on.
#include <commdlg.h>

namespace editor {

using host::to_utf8;
using host::to_wide;

bool Window::save() {
    if (editor_.has_pending() && !editor_.can_add()) {
        message("\"" + editor_.fields().word + editor_.fields().said +
                    "\" is not complete: type the word and how it is said, or empty both fields.",
                MB_ICONWARNING);
        focus(editor_.fields().word.empty() ? IDC_WORD : IDC_SAID);
        return false;
    }
    if (!settle_pending()) return false;
    for (;;) {
        try {
            if (!agree_with_others()) return false;
            const bool changed = editor_.session().document().is_changed();
            editor_.session().save();
            save_failed_ = false;
            show_state();
            tell(changed ? "Saved." : "There is nothing to save.");
            return true;
        } catch (const lexicon::FileError& error) {
            if (!save_failed(error.what())) return false;
        }
    }
}

// Whether the file may be written: nobody else has changed it, or the person has decided what is to happen.
bool Window::agree_with_others() {
    if (!editor_.session().document().is_changed() || !editor_.session().is_changed_outside()) return true;
    const int answer = ask(
        "Another program has changed this lexicon meanwhile.\n\nReload: read it again and put your changes into it.\n"
        "Overwrite: what the other program wrote is lost.",
        "&Reload", "&Overwrite");
    if (answer == IDC_SECOND) return true;
    return answer == IDC_FIRST && reload();
}

bool Window::reload() {
    try {
        editor_.session().reload();
    } catch (const std::runtime_error& error) {
        message(std::string("The lexicon cannot be read again. ") + error.what() + " Your words are still here.",
                MB_ICONERROR);
        return false;
    }
    editor_.refresh();
    show_all();
    return true;
}

// True to try again.
bool Window::save_failed(const std::string& reason) {
    save_failed_ = true;
    const int answer =
        ask("The lexicon \"" + options_.lexicon + "\" cannot be saved. " + reason + " Your words are still here.",
            "&Try again", "Save a co&py...");
    if (answer == IDC_SECOND) save_copy();
    return answer == IDC_FIRST;
}

bool Window::save_copy() {
    std::array<WCHAR, 32768> path = {};
    const host::WideString name = to_wide(file_name(options_.lexicon));
    if (name.size() < path.size()) std::copy(name.begin(), name.end(), path.begin());
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = dialog_;
    dialog.lpstrFilter = L"Pronunciation lexicons (*.pls)\0*.pls\0All files\0*.*\0";
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrDefExt = L"pls";
    dialog.lpstrTitle = L"Save a copy of the lexicon";
    dialog.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
    if (!GetSaveFileNameW(&dialog)) return false;
    try {
        editor_.session().save_copy(to_utf8(path.data()));
    } catch (const lexicon::FileError& error) {
        message(std::string("The copy cannot be saved. ") + error.what(), MB_ICONERROR);
        return false;
    }
    tell("A copy is saved. The lexicon itself is not.");
    return true;
}

bool Window::may_close() {
    if (!editor_.session().document().is_changed() && !editor_.has_pending()) {
        save_failed_ = false;
        return true;
    }
    const int answer = message("Save the changes to the lexicon?", MB_ICONQUESTION | MB_YESNOCANCEL);
    if (answer == IDYES) return save();
    return answer == IDNO;
}

void Window::close() {
    if (may_close()) DestroyWindow(dialog_);
}

}  // namespace editor
