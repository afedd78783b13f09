// The folders that voices are made of, seen from where the program stands, or as the command line names them.
#ifndef NELVA_TOOLS_HOST_VOICE_PLACES_H
#define NELVA_TOOLS_HOST_VOICE_PLACES_H

#include <string>

#include "tools/host/voice_store.h"
#include "tools/host/voices_options.h"

namespace host {

// Full paths, with the platform's own separators.
struct VoicePlaces {
    std::string data;        // the synthesiser's: libPath
    std::string voices;      // voice files that ship
    std::string new_voices;  // where a voice file goes that does not ship
    std::string lexicons;    // where user lexicons are; empty: voices have none
    std::string editor;      // the dictionary editor; empty: none
    VoiceStore store;
};

VoicePlaces voice_places(const VoicesOptions& options);

}  // namespace host

#endif
