// ISpTTSEngine: one Speak from the host's fragments to the engine layer and back, and the output format.
#include "sapi/tts_sapi_ttsengine.h"

#include <cstdlib>
#include <cstring>

#include "engine/nelva_sapi.h"
#include "fragments/spvtextfrags_to_ssml.h"
#include "sapi/sapi_evtlog.h"
#include "sapi/tts_sapi_outqueue.h"

const TTS_SAPI_TTSEngine_Table TTS_SAPI_TTSEngine_Vtbl = {TTS_SAPI_TTSEngine_QueryInterface, TTS_SAPI_TTSEngine_AddRef,
                                                          TTS_SAPI_TTSEngine_Release, TTS_SAPI_TTSEngine_Speak,
                                                          TTS_SAPI_TTSEngine_GetOutputFormat};

namespace {

// Only PCM says how many bytes a second of audio takes.
std::uint64_t bytes_per_second(const WAVEFORMATEX* format) {
    return format && format->wFormatTag == WAVE_FORMAT_PCM ? format->nAvgBytesPerSec : 0;
}

void take_site(TTS_SAPI* object, ISpTTSEngineSite* site) {
    if (site) site->AddRef();
    object->site = site;
}

void release_site(TTS_SAPI* object) {
    ISpTTSEngineSite* site = object->site;
    object->site = nullptr;
    if (site) site->Release();
}

}  // namespace

HRESULT STDMETHODCALLTYPE TTS_SAPI_TTSEngine_Speak(TTS_SAPI_TTSEngine* record, DWORD, REFGUID,
                                                   const WAVEFORMATEX* format, const SPVTEXTFRAG* fragments,
                                                   ISpTTSEngineSite* site) {
    TTS_SAPI* object = record->object;
    if (!object->token) return SPERR_UNINITIALIZED;
    char* ssml = nullptr;
    std::uint32_t* positions = nullptr;
    HRESULT hr = spvtextfrags_to_ssml(fragments, &ssml, &positions, object->voice_language);
    if (FAILED(hr)) {
        log_event(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYSTEM, EVENT_ENVIRONMENT);
        return hr;
    }
    take_site(object, site);
    object->bytes_per_sec = bytes_per_second(format);
    hr = TTS_SAPI_speak_from_utf8_impl(object, ssml, positions);
    release_site(object);
    std::free(positions);
    std::free(ssml);
    TTS_SAPI_outqueue_free(object);
    return hr;
}

HRESULT STDMETHODCALLTYPE TTS_SAPI_TTSEngine_GetOutputFormat(TTS_SAPI_TTSEngine* record, const GUID*,
                                                             const WAVEFORMATEX* target, GUID* out_id,
                                                             WAVEFORMATEX** out) {
    if (!record->object->token) return SPERR_UNINITIALIZED;
    if (!out_id || !out) return E_POINTER;
    auto* format = static_cast<WAVEFORMATEX*>(CoTaskMemAlloc(sizeof(WAVEFORMATEX)));
    if (!format) {
        *out_id = GUID_NULL;
        return E_OUTOFMEMORY;
    }
    std::memset(format, 0, sizeof *format);
    // A voice without a known format still gets its block: hosts do not expect this call to fail.
    TTS_SAPI_get_outputformat_impl(record->object, format, target);
    *out = format;
    *out_id = SPDFID_WaveFormatEx;
    return S_OK;
}
