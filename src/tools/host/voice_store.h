// Where voice tokens are kept, to read, write and remove them: the registry on Windows, a folder of JSON files
// elsewhere (docs/voice-token.md describes both).
#ifndef NELVA_TOOLS_HOST_VOICE_STORE_H
#define NELVA_TOOLS_HOST_VOICE_STORE_H

#include <string>
#include <vector>

#include "tools/host/voices.h"

namespace host {

struct VoiceStore {
    bool user = false;   // Windows: HKEY_CURRENT_USER in place of HKEY_LOCAL_MACHINE
    std::string folder;  // elsewhere: the folder of the files
};

// For messages: the key's name, or the folder.
std::string place_of(const VoiceStore& store);

// The voices of this store alone, ordered by id. A token that cannot be read is left out, with a line in `problems`.
std::vector<Voice> voices_in(const VoiceStore& store, std::vector<std::string>* problems);

// Writes a token with its Attributes, in place of one with the same id: values that `data` has not are removed from it.
// Throws HostError; without the right to write, its message says what to do.
void write_voice(const VoiceStore& store, const std::string& id, const KeyData& data);

// Removes the token with all that is in it. Throws HostError.
void remove_voice(const VoiceStore& store, const std::string& id);

// The text of a token's file in `folder`. Paths below the folder that the folder of tokens shares with the data are
// written as relative ones, so that the tree can be moved as a whole.
std::string voice_to_json(const KeyData& data, const std::string& folder);

// The message of a store that may not be written to.
[[noreturn]] void cannot_write(const std::string& what, const std::string& place, HRESULT code);

}  // namespace host

#endif
