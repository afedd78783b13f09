// Names of SAPI's parts of speech, as its XML writes them.
#ifndef NELVA_TOOLS_HOST_PART_OF_SPEECH_H
#define NELVA_TOOLS_HOST_PART_OF_SPEECH_H

#include <optional>
#include <string_view>

#include "platform/sapi.h"

namespace host {

// "unknown", "noun", "verb", "modifier", "function" or "interjection", case ignored.
std::optional<SPPARTOFSPEECH> part_of_speech(std::string_view name);

}  // namespace host

#endif
