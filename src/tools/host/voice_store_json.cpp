// Tokens as JSON files: writing one, and the store that is a folder of them.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>

#include "tools/host/files.h"
#include "tools/host/hresult.h"
#include "tools/host/voice_store.h"
#include "tts_engine/file_names.h"

namespace host {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

// As people look for them; whatever else a token has follows.
constexpr const char* first_values[] = {"", "CLSID", "libPath", "voxPath", "lexPath", "dictEditorPath"};
constexpr const char* first_attributes[] = {"Name", "Language", "Vendor", "Gender", "Age"};

constexpr std::string_view path_values[] = {"libPath", "voxPath", "lexPath", "dictEditorPath"};

bool is_path(const std::string& name) {
    for (const std::string_view each : path_values)
        if (name == each) return true;
    return false;
}

// Two steps up is the folder that holds tokens and data both (share); what is further away is named in full.
std::string path_from(const std::string& path, const std::string& folder) {
    if (!is_absolute_path(path)) return path;
    const fs::path base = fs::absolute(tts::path_of(folder)).lexically_normal();
    const fs::path relative = tts::path_of(path).lexically_normal().lexically_relative(base);
    const auto steps = std::count(relative.begin(), relative.end(), fs::path(".."));
    if (relative.empty() || steps > 2) return path;
    const std::u8string text = relative.generic_u8string();
    return {text.begin(), text.end()};
}

void add_value(const std::string& name, const KeyData::Value& value, const std::string& folder, Json* to) {
    const std::string shown = name.empty() ? "displayName" : name;
    if (to->contains(shown)) return;
    if (const auto* number = std::get_if<DWORD>(&value)) {
        (*to)[shown] = *number;
    } else {
        const std::string& text = std::get<std::string>(value);
        (*to)[shown] = is_path(name) && !text.empty() ? path_from(text, folder) : text;
    }
}

template <std::size_t size>
Json json_of(const KeyData& data, const char* const (&first)[size], const std::string& folder) {
    Json result = Json::object();
    for (const char* name : first) {
        const auto found = data.values.find(name);
        if (found != data.values.end()) add_value(name, found->second, folder, &result);
    }
    for (const auto& [name, value] : data.values) add_value(name, value, folder, &result);
    for (const auto& [name, key] : data.keys) result[name] = json_of(*key, first_attributes, folder);
    return result;
}

}  // namespace

std::string voice_to_json(const KeyData& data, const std::string& folder) {
    return json_of(data, first_values, folder).dump(2) + "\n";
}

#ifndef _WIN32

std::string place_of(const VoiceStore& store) { return "'" + store.folder + "'"; }

std::vector<Voice> voices_in(const VoiceStore& store, std::vector<std::string>* problems) {
    return voices_in_folder(store.folder, problems);
}

void write_voice(const VoiceStore& store, const std::string& id, const KeyData& data) {
    const std::string path = store.folder + "/" + id + ".json";
    try {
        std::error_code error;
        fs::create_directories(store.folder, error);
        OutputFile file(path + ".part");
        file.write(voice_to_json(data, store.folder));
        file.close();
        if (std::rename((path + ".part").c_str(), path.c_str()) != 0)
            throw HostError("cannot create '" + path + "'", hresult_from_errno(errno));
    } catch (const HostError& error) {
        std::remove((path + ".part").c_str());
        cannot_write("the voice '" + id + "'", place_of(store), error.code());
    }
}

void remove_voice(const VoiceStore& store, const std::string& id) {
    errno = 0;
    if (std::remove((store.folder + "/" + id + ".json").c_str()) != 0)
        throw HostError("cannot remove the voice '" + id + "' from " + place_of(store), hresult_from_errno(errno));
}

void cannot_write(const std::string& what, const std::string& place, HRESULT code) {
    const std::string message = "cannot write " + what + " to " + place;
    if (code != E_ACCESSDENIED) throw HostError(message, code);
    throw HostError(message, code, "run this as an administrator (sudo), or name another folder with --tokens");
}

#endif

}  // namespace host
