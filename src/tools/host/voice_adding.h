// Making voice tokens: from a language to everything that a token says.
#ifndef NELVA_TOOLS_HOST_VOICE_ADDING_H
#define NELVA_TOOLS_HOST_VOICE_ADDING_H

#include <string>
#include <vector>

#include "tools/host/voice_data.h"
#include "tools/host/voice_places.h"
#include "tools/host/voices_options.h"

namespace host {

// A voice that is to be: its file, which may not be there yet, and its token.
struct PlannedVoice {
    std::string id;
    std::string file;       // full path of the voice file
    std::string file_text;  // what to write there; empty when it is there
    KeyData token;
};

// What an `add` means. Throws HostError for a language or variant that the synthesiser does not have and for a language
// without a number of Windows', with --all only when nothing is left. A line about each voice that is left out goes to
// `notes`.
std::vector<PlannedVoice> plan_voices(const VoicesOptions& options, const VoicePlaces& places,
                                      std::vector<std::string>* notes);

// Writes file and token. A lexicon that an older token of ours with this id names stays, unless `options` name one.
// Throws HostError, also when the id is another engine's voice.
void add_voice(PlannedVoice voice, const VoicesOptions& options, const VoicePlaces& places);

// Removes the token, and the voice file that add_voice wrote when no other token names it.
void take_voice_away(const Voice& voice, const VoicePlaces& places);

}  // namespace host

#endif
