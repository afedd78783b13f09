// Voice tokens as JSON files; their format is in docs/voice-token.md.
#include <algorithm>
#include <filesystem>
#include <system_error>

#include "tools/host/files.h"
#include "tools/host/hresult.h"
#include "tools/host/json_text.h"
#include "tools/host/voices.h"

namespace host {

namespace {

// Values that name a file.
constexpr const char* path_values[] = {"libPath", "voxPath", "lexPath", "dictEditorPath"};

[[noreturn]] void bad_token(const std::string& path, const std::string& what) {
    throw HostError("'" + path + "': " + what, hresult_from_win32(13), "correct it there; see docs/voice-token.md");
}

std::shared_ptr<KeyData> key_from_json(const nlohmann::json& object, const std::string& path, const std::string& in) {
    auto result = std::make_shared<KeyData>();
    for (const auto& [name, value] : object.items()) {
        const std::string full_name = in.empty() ? name : in + "." + name;
        if (value.is_string())
            result->values[name] = value.get<std::string>();
        else if (value.is_number_unsigned() && value.get<std::uint64_t>() <= 0xFFFFFFFFu)
            result->values[name] = static_cast<DWORD>(value.get<std::uint64_t>());
        else if (value.is_object() && in.empty())
            result->keys[name] = key_from_json(value, path, name);
        else
            bad_token(path, "the value of \"" + full_name + "\" has to be a string");
    }
    return result;
}

void resolve_paths(KeyData* data, const std::string& folder) {
    for (const char* name : path_values) {
        const auto found = data->values.find(name);
        if (found == data->values.end()) continue;
        std::string* path = std::get_if<std::string>(&found->second);
        if (path && !path->empty() && !is_absolute_path(*path)) *path = folder + "/" + *path;
    }
}

// "displayName" is the key's default value under a name that a file can have; "$schema" is for editors.
void take_file_only_names(KeyData* data) {
    data->values.erase("$schema");
    const auto name = data->values.find("displayName");
    if (name == data->values.end()) return;
    data->values[""] = name->second;
    data->values.erase("displayName");
}

std::string id_of(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    const std::string name = slash == path.npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.rfind(".json");
    return dot == name.npos ? name : name.substr(0, dot);
}

}  // namespace

Voice voice_from_json(std::string_view text, const std::string& path) {
    const nlohmann::json document = parse_json(text, "'" + path + "'");
    if (!document.is_object()) bad_token(path, "a voice token is one JSON object");
    const std::shared_ptr<KeyData> data = key_from_json(document, path, "");
    take_file_only_names(data.get());
    resolve_paths(data.get(), folder_of(path));
    return Voice{id_of(path), path, data};
}

#ifndef _WIN32

namespace {

std::vector<std::string> token_files(const std::string& folder) {
    std::vector<std::string> result;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error), end;
    for (; !error && entry != end; entry.increment(error)) {
        if (entry->path().extension() == ".json") result.push_back(folder + "/" + entry->path().filename().string());
    }
    return result;
}

}  // namespace

std::vector<Voice> voices_in_folder(const std::string& folder, std::vector<std::string>* problems) {
    std::vector<Voice> result;
    for (const std::string& path : token_files(folder)) {
        try {
            result.push_back(voice_from_json(read_file(path), path));
        } catch (const HostError& error) {
            problems->push_back(error.what());
        }
    }
    std::sort(result.begin(), result.end(), [](const Voice& a, const Voice& b) { return NameLess()(a.id, b.id); });
    return result;
}

std::string voices_place() { return "'" + program_folder() + "/../share/nelva/voices'"; }

std::vector<Voice> find_voices(std::vector<std::string>* problems) {
    return voices_in_folder(program_folder() + "/../share/nelva/voices", problems);
}

#endif

}  // namespace host
