// Set-up and Speak.
#include "tools/host/speaker.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "fragments/spvtextfrags_to_ssml.h"
#include "tools/host/hresult.h"

namespace host {

namespace {

struct CoTaskMemDeleter {
    void operator()(void* block) const { CoTaskMemFree(block); }
};

struct FreeDeleter {
    void operator()(void* block) const { std::free(block); }
};

}  // namespace

Speaker::Speaker(ComPtr<ISpTTSEngine> engine, ISpObjectToken* token, const std::string& voice)
    : engine_(std::move(engine)) {
    ComPtr<ISpObjectWithToken> with_token;
    require(engine_->QueryInterface(IID_ISpObjectWithToken, reinterpret_cast<void**>(with_token.out())),
            "the engine of the voice '" + voice + "' takes no voice");
    require(with_token->SetObjectToken(token), "cannot set the voice '" + voice + "' up");
    WAVEFORMATEX* block = nullptr;
    require(engine_->GetOutputFormat(nullptr, nullptr, &format_id_, &block),
            "cannot get the audio format of the voice '" + voice + "'");
    const std::unique_ptr<WAVEFORMATEX, CoTaskMemDeleter> owner(block);
    if (block) format_ = *block;
}

HRESULT Speaker::speak(const FragmentList& fragments, ISpTTSEngineSite* site) {
    return engine_->Speak(SPF_DEFAULT, format_id_, &format_, fragments.first(), site);
}

std::string document_of(const FragmentList& fragments, const std::string& language) {
    char* text = nullptr;
    std::uint32_t* map = nullptr;
    const HRESULT result = spvtextfrags_to_ssml(fragments.first(), &text, &map, language.c_str());
    const std::unique_ptr<char, FreeDeleter> text_owner(text);
    const std::unique_ptr<std::uint32_t, FreeDeleter> map_owner(map);
    require(result, "cannot make the document");
    return text;
}

}  // namespace host
