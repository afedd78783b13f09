// ISpTokenUI of the object: the voice's settings page, which is an external dictionary editor on the voice's lexicon.
#ifndef NELVA_SAPI_TTS_SAPI_TOKENUI_H
#define NELVA_SAPI_TTS_SAPI_TOKENUI_H

#include "sapi/tts_sapi.h"

struct TTS_SAPI_TokenUI_Table {
    HRESULT(STDMETHODCALLTYPE* QueryInterface)(TTS_SAPI_TokenUI* record, REFIID iid, void** out);
    ULONG(STDMETHODCALLTYPE* AddRef)(TTS_SAPI_TokenUI* record);
    ULONG(STDMETHODCALLTYPE* Release)(TTS_SAPI_TokenUI* record);
    HRESULT(STDMETHODCALLTYPE* IsUISupported)
    (TTS_SAPI_TokenUI* record, LPCWSTR type, void* extra, ULONG extra_size, IUnknown* object, BOOL* out);
    HRESULT(STDMETHODCALLTYPE* DisplayUI)
    (TTS_SAPI_TokenUI* record, HWND parent, LPCWSTR title, LPCWSTR type, void* extra, ULONG extra_size,
     ISpObjectToken* token, IUnknown* object);
};

extern const TTS_SAPI_TokenUI_Table TTS_SAPI_TokenUI_Vtbl;

// They go to the object's own: one identity and one count, whichever interface is asked.
inline constexpr auto TTS_SAPI_TokenUI_QueryInterface = TTS_SAPI_Forward<TTS_SAPI_TokenUI_Table>::QueryInterface;
inline constexpr auto TTS_SAPI_TokenUI_AddRef = TTS_SAPI_Forward<TTS_SAPI_TokenUI_Table>::AddRef;
inline constexpr auto TTS_SAPI_TokenUI_Release = TTS_SAPI_Forward<TTS_SAPI_TokenUI_Table>::Release;

// Says whether the page `type` can be shown: only "EngineProperties", and only if the editor that the token names is
// there. S_FALSE and a true `*out` before a token is set.
HRESULT STDMETHODCALLTYPE TTS_SAPI_TokenUI_IsUISupported(TTS_SAPI_TokenUI* record, LPCWSTR type, void* extra,
                                                         ULONG extra_size, IUnknown* object, BOOL* out);

// Starts the editor that `token` names on the token's lexicon and waits for its end, dispatching the thread's messages
// meanwhile. S_OK when the editor ended with exit code 0, S_FALSE when it did not or could not be started (a message
// box and the event log say why), E_INVALIDARG for another type or no token.
HRESULT STDMETHODCALLTYPE TTS_SAPI_TokenUI_DisplayUI(TTS_SAPI_TokenUI* record, HWND parent, LPCWSTR title, LPCWSTR type,
                                                     void* extra, ULONG extra_size, ISpObjectToken* token,
                                                     IUnknown* object);

#endif
