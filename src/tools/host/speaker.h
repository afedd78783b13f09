// The calls that a SAPI host makes on an engine, in their order.
#ifndef NELVA_TOOLS_HOST_SPEAKER_H
#define NELVA_TOOLS_HOST_SPEAKER_H

#include <string>

#include "platform/sapi.h"
#include "tools/host/com_ptr.h"
#include "tools/host/fragments.h"

namespace host {

// An engine with its voice set and its audio format asked for.
class Speaker {
public:
    // Gives the engine its token and asks for the format. Throws HostError that names `voice`.
    Speaker(ComPtr<ISpTTSEngine> engine, ISpObjectToken* token, const std::string& voice);

    // All zero when the engine named none.
    const WAVEFORMATEX& format() const { return format_; }

    // What ISpTTSEngine::Speak answers.
    HRESULT speak(const FragmentList& fragments, ISpTTSEngineSite* site);

private:
    ComPtr<ISpTTSEngine> engine_;
    GUID format_id_{};
    WAVEFORMATEX format_{};
};

// The document that the engine makes of the fragments, for a voice of this language. Throws HostError.
std::string document_of(const FragmentList& fragments, const std::string& language);

}  // namespace host

#endif
