// A dialog of plain controls, so that screen readers read it out as it opens. See question.h.
#include "tools/dictionary_editor/question.h"

#include "tools/dictionary_editor/resource.h"
#include "tools/host/utf.h"

namespace editor {
namespace {

struct Texts {
    host::WideString text, first, second;
};

INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        const auto* texts = reinterpret_cast<const Texts*>(second);
        SetDlgItemTextW(dialog, IDC_QUESTION, texts->text.c_str());
        SetDlgItemTextW(dialog, IDC_FIRST, texts->first.c_str());
        SetDlgItemTextW(dialog, IDC_SECOND, texts->second.c_str());
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const int id = LOWORD(first);
    if (id != IDC_FIRST && id != IDC_SECOND && id != IDCANCEL) return FALSE;
    EndDialog(dialog, id);
    return TRUE;
}

}  // namespace

int ask(HWND owner, const std::string& text, const std::string& first, const std::string& second) {
    const Texts texts{host::to_wide(text), host::to_wide(first), host::to_wide(second)};
    const INT_PTR answer = DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_QUESTION), owner, procedure,
                                           reinterpret_cast<LPARAM>(&texts));
    return answer > 0 ? static_cast<int>(answer) : IDCANCEL;
}

}  // namespace editor
