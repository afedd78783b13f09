// Messages and controls; what the commands mean is in lexicon::Editor, saving in window_files.cpp. See window.h.
#include "tools/dictionary_editor/window.h"

#include <algorithm>

#include "tools/dictionary_editor/question.h"
#include "tools/dictionary_editor/resource.h"
#include "tools/host/utf.h"

namespace editor {
namespace {

using host::to_utf8;
using host::to_wide;
using lexicon::Way;

constexpr UINT row_chosen_message = WM_APP + 1;
constexpr UINT listening_failed_message = WM_APP + 2;

constexpr const char* way_names[] = {"Sounds (IPA)", "Other words"};  // by lexicon::Way

bool edits_itself(HWND focus) {
    WCHAR name[16] = {};
    GetClassNameW(focus, name, 16);
    return lstrcmpiW(name, L"Edit") == 0 && SendMessageW(focus, EM_CANUNDO, 0, 0);
}

}  // namespace

std::string file_name(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

Window::Window(const lexicon::EditorOptions& options, lexicon::Editor editor, std::vector<host::Voice> voices)
    : options_(options), editor_(std::move(editor)), voices_(std::move(voices)) {}

bool Window::run(HINSTANCE instance) {
    const HWND dialog =
        CreateDialogParamW(instance, MAKEINTRESOURCEW(IDD_EDITOR), nullptr, procedure, reinterpret_cast<LPARAM>(this));
    if (!dialog) throw std::runtime_error("The window cannot be opened.");
    ShowWindow(dialog, SW_SHOWNORMAL);
    const HACCEL keys = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDR_KEYS));
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        // What is being typed is taken back by its own field first.
        const bool own = message.message == WM_KEYDOWN && message.wParam == 'Z' && edits_itself(GetFocus());
        if (!own && TranslateAcceleratorW(dialog, keys, &message)) continue;
        if (IsDialogMessageW(dialog, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return !save_failed_;
}

INT_PTR CALLBACK Window::procedure(HWND dialog, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, second);
        reinterpret_cast<Window*>(second)->dialog_ = dialog;
    }
    auto* window = reinterpret_cast<Window*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (!window) return FALSE;
    try {
        return window->handle(message, first, second);
    } catch (const std::bad_alloc&) {
        // Nothing of the lexicon is lost by it: commands take effect at their end.
        MessageBoxW(dialog, L"There is not enough memory for that.", L"Dictionary editor", MB_ICONERROR);
    } catch (const std::exception& error) {
        MessageBoxW(dialog, to_wide(error.what()).c_str(), L"Dictionary editor", MB_ICONERROR);
    }
    return TRUE;
}

INT_PTR Window::handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_INITDIALOG:
            start();
            return FALSE;  // the focus is set already
        case WM_COMMAND:
            command(LOWORD(first), HIWORD(first));
            return TRUE;
        case WM_NOTIFY:
            return notified(reinterpret_cast<NMHDR*>(second));
        case WM_SIZE:
            layout_.resize();
            return TRUE;
        case WM_GETMINMAXINFO:
            layout_.limit(reinterpret_cast<MINMAXINFO*>(second));
            return TRUE;
        case row_chosen_message:
            row_chosen();
            return TRUE;
        case listening_failed_message: {
            const std::unique_ptr<std::string> text(reinterpret_cast<std::string*>(second));
            tell("The word cannot be heard: " + *text);
            return TRUE;
        }
        case WM_QUERYENDSESSION:
            SetWindowLongPtrW(dialog_, DWLP_MSGRESULT, may_close());
            return TRUE;
        case WM_DESTROY:
            listening_.reset();
            PostQuitMessage(0);
            return TRUE;
    }
    return FALSE;
}

// ---- The controls

void Window::start() {
    layout_.start(dialog_);
    SendMessageW(control(IDC_FIND), EM_LIMITTEXT, 1000, 0);
    for (const char* name : way_names)
        SendMessageW(control(IDC_TYPE), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(to_wide(name).c_str()));
    add_columns();
    add_voices();
    show_all();
    const std::size_t count = editor_.word_count();
    tell(count == 0 ? "There are no words yet. Type one, and how it is said, and press Enter."
                    : std::to_string(count) + (count == 1 ? " word." : " words."));
    focus(count == 0 ? IDC_WORD : IDC_FIND);
}

void Window::add_columns() {
    const HWND list = control(IDC_WORDS);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP);
    RECT client;
    GetClientRect(list, &client);
    const int width = client.right - GetSystemMetrics(SM_CXVSCROLL);
    const std::pair<const wchar_t*, int> columns[] = {
        {L"Word", width * 2 / 5}, {L"Pronunciation", width * 2 / 5}, {L"Type", width / 5}};
    int index = 0;
    for (const auto& [title, column_width] : columns) {
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = const_cast<wchar_t*>(title);
        column.cx = column_width;
        SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index++), reinterpret_cast<LPARAM>(&column));
    }
}

void Window::add_voices() {
    const bool listens = options_.can_listen;
    ShowWindow(control(IDC_LISTEN), listens ? SW_SHOW : SW_HIDE);
    EnableWindow(control(IDC_LISTEN), listens);
    const int shown = listens && options_.can_choose_voice ? SW_SHOW : SW_HIDE;
    for (const int id : {IDC_VOICE_LABEL, IDC_VOICE}) {
        ShowWindow(control(id), shown);
        EnableWindow(control(id), shown == SW_SHOW);  // also for the label's key, which would find it else
    }
    for (const host::Voice& voice : voices_)
        SendMessageW(control(IDC_VOICE), CB_ADDSTRING, 0,
                     reinterpret_cast<LPARAM>(to_wide(voice.display_name()).c_str()));
    if (voices_.empty()) return;
    const std::size_t best = voice_of_lexicon(voices_, options_.lexicon, editor_.session().document().language());
    SendMessageW(control(IDC_VOICE), CB_SETCURSEL, best, 0);
    listening_ = std::make_unique<Listening>(dialog_, listening_failed_message);
}

void Window::show_all() {
    showing_ = true;
    if (text_of(IDC_FIND) != editor_.query()) SetDlgItemTextW(dialog_, IDC_FIND, to_wide(editor_.query()).c_str());
    showing_ = false;
    show_list();
    show_fields();
}

void Window::show_list() {
    showing_ = true;
    const HWND list = control(IDC_WORDS);
    ListView_SetItemCountEx(list, static_cast<int>(editor_.rows().size()), LVSICF_NOSCROLL);
    ListView_SetItemState(list, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    if (editor_.selected()) {
        const int row = static_cast<int>(*editor_.selected());
        ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
        ListView_EnsureVisible(list, row, FALSE);
    }
    InvalidateRect(list, nullptr, TRUE);
    showing_ = false;
}

void Window::show_fields() {
    showing_ = true;
    const lexicon::WordText& fields = editor_.fields();
    SetDlgItemTextW(dialog_, IDC_WORD, to_wide(fields.word).c_str());
    SetDlgItemTextW(dialog_, IDC_SAID, to_wide(fields.said).c_str());
    SendMessageW(control(IDC_TYPE), CB_SETCURSEL, static_cast<WPARAM>(fields.way), 0);
    showing_ = false;
    show_state();
}

// A button that has the focus keeps it, so that nobody is left without one.
void Window::show_state() {
    const auto enable = [&](int id, bool enabled) {
        if (!enabled && GetFocus() == control(id)) focus(IDC_WORD);
        EnableWindow(control(id), enabled);
    };
    enable(IDC_ADD, editor_.can_add() && !editor_.existing());
    enable(IDC_CHANGE, editor_.can_change());
    enable(IDC_REMOVE, editor_.can_remove());
    enable(IDC_UNDO, editor_.session().document().can_undo());
    enable(IDC_REDO, editor_.session().document().can_redo());
    enable(IDC_LISTEN, options_.can_listen && listening_ && !editor_.fields().word.empty());
    const std::string check = editor_.check().message;
    if (check != text_of(IDC_CHECK)) SetDlgItemTextW(dialog_, IDC_CHECK, to_wide(check).c_str());
    const bool unsaved = editor_.session().document().is_changed() || editor_.has_pending();
    const std::string vendor = options_.vendor.empty() ? "" : options_.vendor + " ";
    SetWindowTextW(
        dialog_,
        to_wide((unsaved ? "*" : "") + file_name(options_.lexicon) + " - " + vendor + "dictionary editor").c_str());
}

void Window::tell(const std::string& text) {
    SetDlgItemTextW(dialog_, IDC_STATUS, to_wide(text).c_str());
    NotifyWinEvent(EVENT_OBJECT_LIVEREGIONCHANGED, control(IDC_STATUS), OBJID_CLIENT, CHILDID_SELF);
}

void Window::display(NMLVDISPINFOW* info) {
    const auto& rows = editor_.rows();
    const auto row = static_cast<std::size_t>(info->item.iItem);
    if (!(info->item.mask & LVIF_TEXT) || row >= rows.size()) return;
    const lexicon::WordText& text = rows[row].text;
    const std::string columns[] = {text.word, text.said, way_names[static_cast<int>(text.way)]};
    shown_ = to_wide(columns[std::clamp(info->item.iSubItem, 0, 2)]);
    info->item.pszText = shown_.data();
}

// The first row that begins with what was typed into the list, from a place on and then from the start.
int Window::find_row(const NMLVFINDITEMW& wanted) const {
    const auto& rows = editor_.rows();
    if (!(wanted.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !wanted.lvfi.psz) return -1;
    const std::string typed = lexicon::fold_case(to_utf8(wanted.lvfi.psz));
    const std::size_t from = wanted.iStart < 0 ? 0 : static_cast<std::size_t>(wanted.iStart);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::size_t row = (from + i) % rows.size();
        if (lexicon::fold_case(rows[row].text.word).compare(0, typed.size(), typed) == 0) return static_cast<int>(row);
    }
    return -1;
}

std::string Window::text_of(int id) const {
    const HWND window = control(id);
    host::WideString text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return to_utf8(text);
}

void Window::focus(int id) { SendMessageW(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(id)), TRUE); }

// ---- What the person does

INT_PTR Window::notified(NMHDR* header) {
    if (header->idFrom != IDC_WORDS) return FALSE;
    switch (header->code) {
        case LVN_GETDISPINFOW:
            display(reinterpret_cast<NMLVDISPINFOW*>(header));
            return TRUE;
        case LVN_ODFINDITEMW:
            SetWindowLongPtrW(dialog_, DWLP_MSGRESULT, find_row(*reinterpret_cast<NMLVFINDITEMW*>(header)));
            return TRUE;
        case LVN_ITEMCHANGED:
            // The list is in the midst of its own work: questions come behind it.
            if (!showing_) PostMessageW(dialog_, row_chosen_message, 0, 0);
            return TRUE;
        case LVN_KEYDOWN:
            if (reinterpret_cast<NMLVKEYDOWN*>(header)->wVKey == VK_DELETE) perform(IDC_REMOVE);
            if (reinterpret_cast<NMLVKEYDOWN*>(header)->wVKey == VK_F2) focus(IDC_SAID);
            return TRUE;
        case NM_DBLCLK:
            focus(IDC_SAID);
            return TRUE;
    }
    return FALSE;
}

void Window::command(int id, int code) {
    if (showing_) return;
    if (id == IDC_FIND && code == EN_CHANGE) {
        editor_.search(text_of(IDC_FIND));
        show_list();
        show_state();
        tell(std::to_string(editor_.rows().size()) + " of " + std::to_string(editor_.word_count()) + " words found.");
    } else if (((id == IDC_WORD || id == IDC_SAID) && code == EN_CHANGE) || (id == IDC_TYPE && code == CBN_SELCHANGE)) {
        take_fields();
    } else if (code == BN_CLICKED || code == 1) {  // 1: by a key of the table
        perform(id);
    }
}

void Window::perform(int id) {
    if (id != IDOK && id != IDCANCEL && id != IDC_SAVE && control(id) && !IsWindowEnabled(control(id))) return;
    switch (id) {
        case IDOK:
            return enter();
        case IDCANCEL:
            return close();
        case IDC_ADD:
            return add();
        case IDC_CHANGE:
            return change();
        case IDC_REMOVE:
            return remove();
        case IDC_NEW:
            return new_word();
        case IDC_UNDO:
            return step(false);
        case IDC_REDO:
            return step(true);
        case IDC_LISTEN:
            return listen();
        case IDC_SAVE:
            save();
            return;
        case IDK_FIND:
            return focus(IDC_FIND);
    }
}

void Window::take_fields() {
    const LRESULT way = SendMessageW(control(IDC_TYPE), CB_GETCURSEL, 0, 0);
    editor_.type({text_of(IDC_WORD), way == 1 ? Way::words : Way::sounds, text_of(IDC_SAID)});
    show_state();
}

void Window::row_chosen() {
    const int row = ListView_GetNextItem(control(IDC_WORDS), -1, LVNI_SELECTED);
    if (row < 0) return show_list();  // a click beside the rows: the selection stays
    if (editor_.selected() == static_cast<std::size_t>(row)) return;
    const auto& rows = editor_.rows();
    if (static_cast<std::size_t>(row) >= rows.size()) return;
    const lexicon::WordId wanted = rows[static_cast<std::size_t>(row)].id;
    if (editor_.has_pending() && !settle_pending()) {
        show_list();
        return focus(IDC_SAID);
    }
    // What was settled may stand in the list now.
    for (std::size_t i = 0; i < editor_.rows().size(); ++i)
        if (editor_.rows()[i].id == wanted) editor_.select(i);
    show_all();
}

// Into the list, and there to the first word unless one is chosen already or something typed waits for a decision.
void Window::go_to_found() {
    focus(IDC_WORDS);
    if (editor_.selected() || editor_.rows().empty() || editor_.has_pending()) return;
    const UINT state = LVIS_SELECTED | LVIS_FOCUSED;
    ListView_SetItemState(control(IDC_WORDS), 0, state, state);
}

// The Enter key, by where the focus is.
void Window::enter() {
    const int id = GetDlgCtrlID(GetFocus());
    if (id == IDC_FIND) return go_to_found();
    if (id == IDC_WORDS || id == IDC_VOICE) return focus(IDC_SAID);
    if (editor_.has_pending()) {
        if (!editor_.can_add()) return focus(editor_.fields().word.empty() ? IDC_WORD : IDC_SAID);
        if (settle_pending()) focus(IDC_WORD);
    }
}

// ---- Commands on words

template <typename Action>
bool Window::attempt(Action action) {
    try {
        const std::string done = action();
        show_all();
        if (!done.empty()) tell(done);
        return true;
    } catch (const lexicon::BadWord& error) {
        message(error.what(), MB_ICONWARNING);
        return false;
    }
}

// Sounds that are no IPA would not be heard: whether they are to stay all the same.
bool Window::is_meant() {
    const lexicon::Editor::Verdict check = editor_.check();
    if (check.usable) return true;
    const bool kept =
        message(check.message + "\n\nThe voice may leave it out or say something else. Keep it all the same?",
                MB_ICONQUESTION | MB_YESNO | MB_DEFBUTTON2) == IDYES;
    if (!kept) focus(IDC_SAID);
    return kept;
}

// Takes what the fields hold into the list. Where it is not complete, it may be dropped, but never without a question.
bool Window::settle_pending() {
    if (!editor_.has_pending()) return true;
    if (!editor_.can_add()) return drop_pending();
    if (!is_meant() || !replace_existing()) return false;
    return attempt([&] { return editor_.apply(); });
}

bool Window::drop_pending() {
    const lexicon::WordText& fields = editor_.fields();
    const std::string what = fields.word.empty() ? fields.said : fields.word;
    return message("What you typed, \"" + what + "\", is not in the list yet. Drop it?",
                   MB_ICONQUESTION | MB_YESNO | MB_DEFBUTTON2) == IDYES;
}

// Another word of the list than the selected one is changed only on purpose.
bool Window::replace_existing() {
    const std::optional<lexicon::Word> there = editor_.existing();
    const auto selected = editor_.selected();
    if (!there || (selected && editor_.rows()[*selected].id == there->id)) return true;
    return message(
               "\"" + there->text.word + "\" is in the list already, said as \"" + there->text.said + "\". Change it?",
               MB_ICONQUESTION | MB_YESNO) == IDYES;
}

void Window::add() {
    if (is_meant() && attempt([&] { return editor_.add(); })) focus(IDC_WORD);
}

void Window::change() {
    if (is_meant() && attempt([&] { return editor_.change(); })) focus(IDC_WORD);
}

void Window::remove() {
    if (editor_.has_pending() && !drop_pending()) return;
    const std::size_t row = editor_.selected().value_or(0);
    if (!attempt([&] { return editor_.remove(); })) return;
    // The next word of the list, for those who remove several.
    const std::size_t left = editor_.rows().size();
    if (left > 0) editor_.select(row < left ? row : left - 1);
    show_list();
    show_fields();
}

void Window::new_word() {
    if (editor_.has_pending() && !settle_pending()) return;
    editor_.clear_fields();
    show_all();
    focus(IDC_WORD);
}

void Window::step(bool forward) {
    if (editor_.has_pending() && !drop_pending()) return;
    attempt([&] { return forward ? editor_.redo() : editor_.undo(); });
}

void Window::listen() {
    const LRESULT voice = SendMessageW(control(IDC_VOICE), CB_GETCURSEL, 0, 0);
    if (!listening_ || voice < 0 || static_cast<std::size_t>(voice) >= voices_.size()) return;
    const std::string word = lexicon::collapse_blanks(editor_.fields().word);
    if (word.empty()) return;
    lexicon::Document document = editor_.session().document();
    if (editor_.can_add()) {
        try {
            lexicon::repeat_edits(&document, {{editor_.fields(), editor_.fields()}});
        } catch (const lexicon::BadWord&) {
            // Then it is heard as the list has it.
        }
    }
    listening_->say(voices_[static_cast<std::size_t>(voice)], word, document.bytes());
    tell("Saying \"" + word + "\".");
}

int Window::ask(const std::string& text, const std::string& first, const std::string& second) {
    return editor::ask(dialog_, text, first, second);
}

int Window::message(const std::string& text, UINT type) const {
    return MessageBoxW(dialog_, to_wide(text).c_str(), L"Dictionary editor", type);
}

}  // namespace editor
