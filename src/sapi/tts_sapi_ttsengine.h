// ISpTTSEngine of the object: Speak and the output format.
#ifndef NELVA_SAPI_TTS_SAPI_TTSENGINE_H
#define NELVA_SAPI_TTS_SAPI_TTSENGINE_H

#include "sapi/tts_sapi.h"

struct TTS_SAPI_TTSEngine_Table {
    HRESULT(STDMETHODCALLTYPE* QueryInterface)(TTS_SAPI_TTSEngine* record, REFIID iid, void** out);
    ULONG(STDMETHODCALLTYPE* AddRef)(TTS_SAPI_TTSEngine* record);
    ULONG(STDMETHODCALLTYPE* Release)(TTS_SAPI_TTSEngine* record);
    HRESULT(STDMETHODCALLTYPE* Speak)
    (TTS_SAPI_TTSEngine* record, DWORD flags, REFGUID format_id, const WAVEFORMATEX* format,
     const SPVTEXTFRAG* fragments, ISpTTSEngineSite* site);
    HRESULT(STDMETHODCALLTYPE* GetOutputFormat)
    (TTS_SAPI_TTSEngine* record, const GUID* target_id, const WAVEFORMATEX* target, GUID* out_id, WAVEFORMATEX** out);
};

extern const TTS_SAPI_TTSEngine_Table TTS_SAPI_TTSEngine_Vtbl;

// They go to the object's own: one identity and one count, whichever interface is asked.
inline constexpr auto TTS_SAPI_TTSEngine_QueryInterface = TTS_SAPI_Forward<TTS_SAPI_TTSEngine_Table>::QueryInterface;
inline constexpr auto TTS_SAPI_TTSEngine_AddRef = TTS_SAPI_Forward<TTS_SAPI_TTSEngine_Table>::AddRef;
inline constexpr auto TTS_SAPI_TTSEngine_Release = TTS_SAPI_Forward<TTS_SAPI_TTSEngine_Table>::Release;

// Speaks the fragments to the site on the calling thread and returns when that is done, aborted or failed.
// Flags and format id play no part; of the format only the tag and the bytes per second are read.
HRESULT STDMETHODCALLTYPE TTS_SAPI_TTSEngine_Speak(TTS_SAPI_TTSEngine* record, DWORD flags, REFGUID format_id,
                                                   const WAVEFORMATEX* format, const SPVTEXTFRAG* fragments,
                                                   ISpTTSEngineSite* site);

// States the voice's own format; what the host would like plays no part. `*out` is a CoTaskMemAlloc block, the
// caller's. A voice whose format is unknown gets a block of zeros.
HRESULT STDMETHODCALLTYPE TTS_SAPI_TTSEngine_GetOutputFormat(TTS_SAPI_TTSEngine* record, const GUID* target_id,
                                                             const WAVEFORMATEX* target, GUID* out_id,
                                                             WAVEFORMATEX** out);

#endif
