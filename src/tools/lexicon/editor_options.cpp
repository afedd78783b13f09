// Two flags and two options with a value. See editor_options.h.
#include "tools/lexicon/editor_options.h"

#include "tools/host/suggest.h"

namespace lexicon {
namespace {

const std::string& value_behind(const std::vector<std::string>& arguments, std::size_t* at) {
    const std::string& name = arguments[*at];
    if (++*at == arguments.size()) throw BadOptions("Behind " + name + " a value is missing.");
    return arguments[*at];
}

[[noreturn]] void refuse(const std::string& argument) {
    const std::string meant =
        host::closest_name(argument, {"--lex", "--vendor", "--nolistenbutton", "--nodictionaryvoicedropdown"});
    throw BadOptions("\"" + argument + "\" is not an option of this program." +
                     (meant.empty() ? "" : " Is " + meant + " meant?"));
}

}  // namespace

EditorOptions parse_editor_options(const std::vector<std::string>& arguments) {
    EditorOptions result;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--nolistenbutton") {
            result.can_listen = false;
        } else if (argument == "--nodictionaryvoicedropdown") {
            result.can_choose_voice = false;
        } else if (argument == "--lex") {
            result.lexicon = value_behind(arguments, &i);
        } else if (argument == "--vendor") {
            result.vendor = value_behind(arguments, &i);
        } else {
            refuse(argument);
        }
    }
    if (result.lexicon.empty())
        throw BadOptions("No lexicon is named. Start this program as: nelva-dictionary-editor --lex \"FILE\"");
    return result;
}

}  // namespace lexicon
