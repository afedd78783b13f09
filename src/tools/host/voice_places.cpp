// Where things are: bin and share stand side by side, wherever somebody put them.
#include "tools/host/voice_places.h"

#include "tools/host/files.h"
#include "tools/host/utf.h"

namespace host {

namespace {

// Seen from the folder above the program's own.
std::string beside(const std::string& name) { return full_path(program_folder() + "/../" + name); }

std::string given_or(const std::string& given, const std::string& otherwise) {
    return given.empty() ? otherwise : full_path(given);
}

#ifdef _WIN32

constexpr const char* editor_name = "nelva-dictionary-editor.exe";

// What a variable of the environment holds; empty when it is not set.
std::string setting(const wchar_t* name) {
    const wchar_t* text = _wgetenv(name);
    return text ? to_utf8(text) : std::string();
}

// The machine's lexicons are where every user may create files; a user's own are the user's.
std::string own_folder(bool user) {
    const std::string base = setting(user ? L"LOCALAPPDATA" : L"ProgramData");
    return base.empty() ? base : path_in(base, "Nelva");
}

#endif

}  // namespace

VoicePlaces voice_places(const VoicesOptions& options) {
    VoicePlaces places;
    places.data = given_or(options.data, beside("share/espeak-ng-data"));
    places.voices = given_or(options.voices, beside("share/nelva/voices-data"));
    places.new_voices = places.voices;
    places.store.user = options.user;
    places.store.folder = given_or(options.tokens, beside("share/nelva/voices"));
#ifdef _WIN32
    const std::string own = own_folder(options.user);
    if (options.user && options.voices.empty() && !own.empty()) places.new_voices = path_in(own, "voices");
    if (!own.empty()) places.lexicons = path_in(own, "lexicons");
    places.editor = path_in(program_folder(), editor_name);
    if (!file_exists(places.editor)) places.editor.clear();
#endif
    if (options.editor) places.editor = options.editor->empty() ? std::string() : full_path(*options.editor);
    return places;
}

}  // namespace host
