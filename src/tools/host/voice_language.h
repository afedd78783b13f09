// Which of Windows' languages a voice of the synthesiser speaks, and what that is called.
#ifndef NELVA_TOOLS_HOST_VOICE_LANGUAGE_H
#define NELVA_TOOLS_HOST_VOICE_LANGUAGE_H

#include <optional>
#include <string>
#include <vector>

#include "platform/win32.h"

namespace host {

struct VoiceLanguage {
    std::vector<LCID> ids;     // hosts find the voice by any of these; the engine takes the first one
    std::string english_name;  // "English (United States)", with the accent behind it where there is one

    // The token's Language attribute: "409;9".
    std::string attribute() const;
};

// For a language as the synthesiser names it ("en-us", "cmn"), case ignored. A language without a region gets the
// region that Windows takes for it. Nothing for a language to which Windows has given no number: no host could ask for
// it, and the engine could not tell the synthesiser which one is meant.
std::optional<VoiceLanguage> voice_language(const std::string& language);

// The same for ids that somebody chose: "409" or "409;9", hexadecimal. Nothing when one of them is not Windows'.
std::optional<VoiceLanguage> voice_language_from_ids(const std::string& ids);

// The ISO 639 code of an id; empty when the platform does not know it.
std::string language_code(LCID id);

}  // namespace host

#endif
