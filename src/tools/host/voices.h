// The voices of this machine: SAPI voice tokens in the registry on Windows, JSON files elsewhere
// (docs/voice-token.md describes both).
#ifndef NELVA_TOOLS_HOST_VOICES_H
#define NELVA_TOOLS_HOST_VOICES_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/host/data_key.h"

namespace host {

// The class of this project's engine; voices of other engines are used only when asked for by name.
inline constexpr CLSID nelva_class_id = {0xA174EDD5, 0x7D96, 0x4DE4, {0xBA, 0xCE, 0xEF, 0x26, 0x76, 0x27, 0xD8, 0x34}};
inline constexpr const char* nelva_class_text = "{A174EDD5-7D96-4DE4-BACE-EF267627D834}";  // the same in a token

struct Voice {
    std::string id;     // the token's key name, or the file's name without ".json"
    std::string place;  // the key's full name, or the file's path
    std::shared_ptr<const KeyData> data;

    // Empty when the token does not have it.
    std::string value(const std::string& name) const;
    std::string attribute(const std::string& name) const;

    std::string display_name() const;  // the default value; without one the attribute Name, else the id
    std::string language() const;      // "en", from the Language attribute; empty when it names none
    DWORD language_id() const;         // the leading hexadecimal number of the Language attribute, else 0
    CLSID class_id() const;            // throws HostError when the CLSID value is missing or malformed
    bool is_nelva() const;
    ComPtr<ISpObjectToken> token() const;
};

// All voices, ordered by id. A token that cannot be read is left out, and a line about it goes to `problems`.
std::vector<Voice> find_voices(std::vector<std::string>* problems);

// The language of the voice that speaks when none is asked for: English (United States).
inline constexpr DWORD default_language = 0x409;

// The voice with this id (case ignored), or with an empty id the first one of this project's engine that speaks the
// default language, else its first one. Throws HostError; its message says what there is.
const Voice& choose_voice(const std::vector<Voice>& voices, const std::string& id);

// Case ignored; null when there is none.
const Voice* voice_with_id(const std::vector<Voice>& voices, const std::string& id);

// Where find_voices looks, for messages.
std::string voices_place();

// Reads "{A174EDD5-7D96-4DE4-BACE-EF267627D834}", in either case. False leaves `*id` alone.
bool parse_class_id(std::string_view text, CLSID* id);

// The voice in a token file's text. Values that are paths and are not absolute are taken from the file's folder.
// Throws HostError that names the place.
Voice voice_from_json(std::string_view text, const std::string& path);

#ifndef _WIN32
// The voices of all "*.json" in a folder, ordered by id; none when there is no such folder.
std::vector<Voice> voices_in_folder(const std::string& folder, std::vector<std::string>* problems);
#endif

}  // namespace host

#endif
