// Where things are: bin and share stand side by side, wherever somebody put them.
#include "tools/host/voice_places.h"

#include <filesystem>
#include <system_error>

#include "tools/host/files.h"
#include "tools/host/utf.h"
#include "tts_engine/file_names.h"

namespace host {

namespace {

namespace fs = std::filesystem;

std::string utf8(fs::path path) {
    path = path.lexically_normal().make_preferred();
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::string full(const std::string& path) { return utf8(fs::absolute(tts::path_of(path))); }

// Seen from the folder above the program's own.
std::string beside(const std::string& name) { return full(program_folder() + "/../" + name); }

std::string given_or(const std::string& given, const std::string& otherwise) {
    return given.empty() ? otherwise : full(given);
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

std::string path_in(const std::string& folder, const std::string& name) {
    return utf8(tts::path_of(folder) / tts::path_of(name));
}

bool file_exists(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(tts::path_of(path), error);
}

bool folder_exists(const std::string& path) {
    std::error_code error;
    return fs::is_directory(tts::path_of(path), error);
}

void make_folder(const std::string& path) {
    std::error_code ignored;
    fs::create_directories(tts::path_of(path), ignored);
}

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
    if (options.editor) places.editor = options.editor->empty() ? std::string() : full(*options.editor);
    return places;
}

}  // namespace host
