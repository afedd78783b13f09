// The dictionary editor's command line, which the voice's settings page fills in:
//
//     "EDITOR" --nolistenbutton --nodictionaryvoicedropdown --lex "LEXICON" --vendor "NELVA"
#ifndef NELVA_TOOLS_LEXICON_EDITOR_OPTIONS_H
#define NELVA_TOOLS_LEXICON_EDITOR_OPTIONS_H

#include <stdexcept>
#include <string>
#include <vector>

namespace lexicon {

struct EditorOptions {
    std::string lexicon;  // never empty
    std::string vendor;   // shown in the title; may be empty
    bool can_listen = true;
    bool can_choose_voice = true;
};

struct BadOptions : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Of the arguments behind the program's name, in any order; of one given twice the last counts. Throws BadOptions.
EditorOptions parse_editor_options(const std::vector<std::string>& arguments);

}  // namespace lexicon

#endif
