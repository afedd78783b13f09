// The dictionary editor's window: the commands of lexicon::Editor behind the system's own controls.
#ifndef NELVA_TOOLS_DICTIONARY_EDITOR_WINDOW_H
#define NELVA_TOOLS_DICTIONARY_EDITOR_WINDOW_H

#include <memory>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "tools/dictionary_editor/layout.h"
#include "tools/dictionary_editor/listening.h"
#include "tools/lexicon/editor.h"
#include "tools/lexicon/editor_options.h"
// Behind windows.h, which it stands on.
#include <commctrl.h>

namespace editor {

class Window {
public:
    Window(const lexicon::EditorOptions& options, lexicon::Editor editor, std::vector<host::Voice> voices);

    // Shows the window until it is closed. False when changes were given up that could not be saved.
    bool run(HINSTANCE instance);

private:
    static INT_PTR CALLBACK procedure(HWND dialog, UINT message, WPARAM first, LPARAM second);
    INT_PTR handle(UINT message, WPARAM first, LPARAM second);
    INT_PTR notified(NMHDR* header);
    void command(int id, int code);
    void perform(int id);
    void start();
    void add_columns();
    void add_voices();

    // From the editor to the controls.
    void show_all();
    void show_list();
    void show_fields();
    void show_state();
    void tell(const std::string& text);
    void display(NMLVDISPINFOW* info);
    int find_row(const NMLVFINDITEMW& wanted) const;

    // From the controls to the editor.
    void take_fields();
    void row_chosen();
    void go_to_found();
    void enter();

    // Commands on words. One that throws BadWord says so and changes nothing.
    template <typename Action>
    bool attempt(Action action);
    bool is_meant();
    bool settle_pending();
    bool drop_pending();
    bool replace_existing();
    void add();
    void change();
    void remove();
    void new_word();
    void step(bool forward);
    void listen();

    // Files. True when the command can go on.
    bool save();
    bool agree_with_others();
    bool reload();
    bool save_failed(const std::string& reason);
    bool save_copy();
    bool may_close();
    void close();

    int ask(const std::string& text, const std::string& first, const std::string& second);
    int message(const std::string& text, UINT type) const;
    HWND control(int id) const { return GetDlgItem(dialog_, id); }
    std::string text_of(int id) const;  // the control's whole text, as UTF-8
    void focus(int id);

    lexicon::EditorOptions options_;
    lexicon::Editor editor_;
    std::vector<host::Voice> voices_;
    HWND dialog_ = nullptr;
    Layout layout_;
    std::unique_ptr<Listening> listening_;
    host::WideString shown_;    // the text of the list's last answer
    bool showing_ = false;      // the controls change by our own hand
    bool save_failed_ = false;  // the last attempt to save did
};

// "de.pls" of a path.
std::string file_name(const std::string& path);

}  // namespace editor

#endif
