// ISpObjectWithToken: takes the voice token, once.
#include "sapi/tts_sapi_objwtoken.h"

const TTS_SAPI_ObjWToken_Table TTS_SAPI_ObjWToken_Vtbl = {TTS_SAPI_ObjWToken_QueryInterface, TTS_SAPI_ObjWToken_AddRef,
                                                          TTS_SAPI_ObjWToken_Release, TTS_SAPI_ObjWToken_SetObjectToken,
                                                          TTS_SAPI_ObjWToken_GetObjectToken};

HRESULT STDMETHODCALLTYPE TTS_SAPI_ObjWToken_SetObjectToken(TTS_SAPI_ObjWToken* record, ISpObjectToken* token) {
    TTS_SAPI* object = record->object;
    if (object->token) return SPERR_ALREADY_INITIALIZED;
    if (token) token->AddRef();
    object->token = token;
    return TTS_SAPI_init_from_token(object);
}

HRESULT STDMETHODCALLTYPE TTS_SAPI_ObjWToken_GetObjectToken(TTS_SAPI_ObjWToken* record, ISpObjectToken** out) {
    if (!out) return E_POINTER;
    *out = record->object->token;
    if (!*out) return S_FALSE;
    (*out)->AddRef();
    return S_OK;
}
