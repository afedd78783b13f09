// ISpObjectWithToken of the object: the voice token comes in here, once.
#ifndef NELVA_SAPI_TTS_SAPI_OBJWTOKEN_H
#define NELVA_SAPI_TTS_SAPI_OBJWTOKEN_H

#include "sapi/tts_sapi.h"

struct TTS_SAPI_ObjWToken_Table {
    HRESULT(STDMETHODCALLTYPE* QueryInterface)(TTS_SAPI_ObjWToken* record, REFIID iid, void** out);
    ULONG(STDMETHODCALLTYPE* AddRef)(TTS_SAPI_ObjWToken* record);
    ULONG(STDMETHODCALLTYPE* Release)(TTS_SAPI_ObjWToken* record);
    HRESULT(STDMETHODCALLTYPE* SetObjectToken)(TTS_SAPI_ObjWToken* record, ISpObjectToken* token);
    HRESULT(STDMETHODCALLTYPE* GetObjectToken)(TTS_SAPI_ObjWToken* record, ISpObjectToken** out);
};

extern const TTS_SAPI_ObjWToken_Table TTS_SAPI_ObjWToken_Vtbl;

// They go to the object's own: one identity and one count, whichever interface is asked.
inline constexpr auto TTS_SAPI_ObjWToken_QueryInterface = TTS_SAPI_Forward<TTS_SAPI_ObjWToken_Table>::QueryInterface;
inline constexpr auto TTS_SAPI_ObjWToken_AddRef = TTS_SAPI_Forward<TTS_SAPI_ObjWToken_Table>::AddRef;
inline constexpr auto TTS_SAPI_ObjWToken_Release = TTS_SAPI_Forward<TTS_SAPI_ObjWToken_Table>::Release;

// Takes the token and sets the voice up. The token stays, and the object stays unusable, when the set-up fails; a
// second token gets SPERR_ALREADY_INITIALIZED either way. A null token gets SPERR_UNINITIALIZED and changes nothing.
HRESULT STDMETHODCALLTYPE TTS_SAPI_ObjWToken_SetObjectToken(TTS_SAPI_ObjWToken* record, ISpObjectToken* token);

// Gives the token with a reference of its own, or null and S_FALSE.
HRESULT STDMETHODCALLTYPE TTS_SAPI_ObjWToken_GetObjectToken(TTS_SAPI_ObjWToken* record, ISpObjectToken** out);

#endif
