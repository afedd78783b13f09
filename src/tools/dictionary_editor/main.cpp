// nelva-dictionary-editor: words of a pronunciation lexicon in a window; docs/dictionary-editor.md.
#include <exception>
#include <new>
#include <string>

#include "tools/dictionary_editor/listening.h"
#include "tools/dictionary_editor/window.h"
#include "tools/host/program_arguments.h"
#include "tools/host/utf.h"

namespace {

using namespace editor;

enum ExitStatus { exit_saved_or_unchanged = 0, exit_not_saved = 1, exit_usage = 2, exit_not_read = 3 };

int refuse(const std::string& message, ExitStatus status) {
    MessageBoxW(nullptr, host::to_wide(message).c_str(), L"Dictionary editor", MB_ICONERROR);
    return status;
}

int edit(const lexicon::EditorOptions& options, HINSTANCE instance) {
    std::vector<host::Voice> voices = nelva_voices();
    const std::string language = language_for_new_lexicon(voices, options.lexicon);
    lexicon::Session session(lexicon::system_files(), options.lexicon, language);
    Window window(options, lexicon::Editor(std::move(session)), std::move(voices));
    return window.run(instance) ? exit_saved_or_unchanged : exit_not_saved;
}

int real_main(HINSTANCE instance) {
    lexicon::EditorOptions options;
    try {
        options = lexicon::parse_editor_options(host::program_arguments(0, nullptr));
        return edit(options, instance);
    } catch (const lexicon::BadOptions& error) {
        return refuse(error.what(), exit_usage);
    } catch (const std::bad_alloc&) {
        return refuse("There is not enough memory.", exit_not_read);
    } catch (const std::exception& error) {
        return refuse("The lexicon \"" + options.lexicon + "\" cannot be edited. " + error.what(), exit_not_read);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int) {
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    return real_main(instance);
}
