// Whether a voice token would speak, and if not, what is wrong with it.
#ifndef NELVA_TOOLS_HOST_VOICE_CHECKING_H
#define NELVA_TOOLS_HOST_VOICE_CHECKING_H

#include <string>
#include <vector>

#include "tools/host/engine_server.h"
#include "tools/host/voices.h"

namespace host {

// Each fault of the token's own values in one line, lower case, with what would be right: values that are missing,
// files that are not there or cannot be read, languages that nobody knows. Empty when there is none.
std::vector<std::string> faults_of_token(const Voice& voice);

// Whether the class is registered and its module can be loaded. Empty, or what is wrong.
std::string fault_of_class(const CLSID& class_id);

// Sets the voice up as a host does and asks for its format. Empty, or what is wrong.
std::string fault_of_set_up(const Voice& voice, EngineServer* server);

// Whether a token is one of ours by what it says, or means to be: its class is ours, or broken under one of our ids.
bool means_to_be_ours(const Voice& voice);

}  // namespace host

#endif
