// The object's life: made, queried, counted, set up from a token, deleted.
#include "sapi/tts_sapi.h"

#include <cstdlib>
#include <iterator>

#include "engine/nelva_sapi.h"
#include "sapi/dll_funcs.h"
#include "sapi/sapi_datakey.h"
#include "sapi/sapi_evtlog.h"
#include "sapi/tts_sapi_objwtoken.h"
#include "sapi/tts_sapi_outqueue.h"
#include "sapi/tts_sapi_tokenui.h"
#include "sapi/tts_sapi_ttsengine.h"

const TTS_SAPI_Table TTS_SAPI_Vtbl = {TTS_SAPI_QueryInterface, TTS_SAPI_AddRef, TTS_SAPI_Release};

namespace {

template <typename T>
T* global_alloc(std::size_t bytes = sizeof(T)) {
    return static_cast<T*>(GlobalAlloc(0, bytes));
}

void global_free(const volatile void* block) {
    if (block) GlobalFree(const_cast<void*>(block));
}

template <typename Table>
void connect(TTS_SAPI_Interface<Table>* record, const Table& table, TTS_SAPI* object) {
    record->table = &table;
    record->object = object;
}

void free_memory(TTS_SAPI* object, const void* objwtoken, const void* tokenui, const void* ttsengine) {
    global_free(objwtoken);
    global_free(tokenui);
    global_free(ttsengine);
    global_free(object);
}

void free_object(TTS_SAPI* object) {
    free_memory(object, object->objwtoken_iface, object->tokenui_iface, object->ttsengine_iface);
}

TTS_SAPI* allocate_object() {
    auto* object = global_alloc<TTS_SAPI>(TTS_SAPI_size_impl);
    auto* objwtoken = global_alloc<TTS_SAPI_ObjWToken>();
    auto* tokenui = global_alloc<TTS_SAPI_TokenUI>();
    auto* ttsengine = global_alloc<TTS_SAPI_TTSEngine>();
    if (!object || !objwtoken || !tokenui || !ttsengine) {
        free_memory(object, objwtoken, tokenui, ttsengine);
        return nullptr;
    }
    connect(objwtoken, TTS_SAPI_ObjWToken_Vtbl, object);
    connect(tokenui, TTS_SAPI_TokenUI_Vtbl, object);
    connect(ttsengine, TTS_SAPI_TTSEngine_Vtbl, object);
    object->objwtoken_iface = objwtoken;
    object->tokenui_iface = tokenui;
    object->ttsengine_iface = ttsengine;
    return object;
}

void start_fields(TTS_SAPI* object) {
    object->table = &TTS_SAPI_Vtbl;
    object->refcount = 1;
    object->token = nullptr;
    object->site = nullptr;
    object->voice_name = nullptr;
    object->langid = 0;
    object->voice_language = nullptr;
    object->audio_buf = nullptr;
    object->audio_len = 0;
    object->audio_size = 0;
    object->bytes_per_sec = 0;
    object->event_buf = nullptr;
    object->event_count = 0;
    object->event_size = 0;
}

}  // namespace

HRESULT TTS_SAPI_new(TTS_SAPI** out, LPCWSTR module_name) {
    if (!out) return E_OUTOFMEMORY;
    *out = allocate_object();
    if (!*out) return E_OUTOFMEMORY;
    start_fields(*out);
    const HRESULT hr = TTS_SAPI_new_impl(out, module_name);
    if (FAILED(hr)) {
        free_object(*out);
        *out = nullptr;
        return hr;
    }
    DLL_adjust_usage(1);
    return S_OK;
}

void TTS_SAPI_delete(TTS_SAPI* object) {
    TTS_SAPI_delete_impl(object);
    if (object->token) {
        object->token->Release();
        object->token = nullptr;
    }
    global_free(object->voice_name);
    global_free(object->voice_language);
    TTS_SAPI_outqueue_free(object);
    free_object(object);
    DLL_adjust_usage(-1);
}

HRESULT STDMETHODCALLTYPE TTS_SAPI_QueryInterface(TTS_SAPI* object, REFIID iid, void** out) {
    if (!out) return E_POINTER;
    const struct {
        const IID* iid;
        void* pointer;
    } interfaces[] = {
        {&IID_IUnknown, object},
        {&IID_ISpTTSEngine, object->ttsengine_iface},
        {&IID_ISpObjectWithToken, object->objwtoken_iface},
        {&IID_ISpTokenUI, object->tokenui_iface},
    };
    *out = nullptr;
    for (const auto& row : interfaces) {
        if (!IsEqualIID(iid, *row.iid)) continue;
        *out = row.pointer;
        static_cast<IUnknown*>(row.pointer)->AddRef();
        return S_OK;
    }
    return E_NOINTERFACE;
}

ULONG STDMETHODCALLTYPE TTS_SAPI_AddRef(TTS_SAPI* object) {
    return static_cast<ULONG>(InterlockedIncrement(&object->refcount));
}

ULONG STDMETHODCALLTYPE TTS_SAPI_Release(TTS_SAPI* object) {
    const LONG count = InterlockedDecrement(&object->refcount);
    if (count == 0) TTS_SAPI_delete(object);
    return static_cast<ULONG>(count);
}

namespace {

struct VoiceIdentity {
    char* name;
    DWORD langid;
    char* language;
};

// The language attribute is a list of hexadecimal ids; the first one counts.
void read_language(ISpDataKey* attributes, VoiceIdentity* voice) {
    char* text = nullptr;
    if (FAILED(get_datakey_value_utf8(attributes, NELVA_WIDE("Language"), &text))) {
        log_eventA(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYSTEM, EVENT_DATA_MISSING, "Attributes\\Language");
        return;
    }
    // Not sscanf: that of the Windows compiler's library allocates, and falls over where there is no memory.
    const auto number = text ? static_cast<DWORD>(std::strtoull(text, nullptr, 16)) : 0;
    if (number != 0) {
        voice->langid = number;
        voice->language = lang_from_ms_langcode(number);
    }
    global_free(text);
}

void read_identity(ISpDataKey* attributes, VoiceIdentity* voice) {
    if (FAILED(get_datakey_value_utf8(attributes, NELVA_WIDE("Name"), &voice->name)))
        log_eventA(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYSTEM, EVENT_DATA_MISSING, "Attributes\\Name");
    read_language(attributes, voice);
}

void store_identity(TTS_SAPI* object, const VoiceIdentity& voice) {
    global_free(object->voice_name);
    global_free(object->voice_language);
    object->voice_name = voice.name;
    object->langid = voice.langid;
    object->voice_language = voice.language;
}

HRESULT init_from_attributes(TTS_SAPI* object, ISpDataKey* attributes) {
    VoiceIdentity voice = {};
    read_identity(attributes, &voice);
    if (!voice.name || !voice.language) {
        global_free(voice.name);
        global_free(voice.language);
        return SPERR_NOT_FOUND;
    }
    store_identity(object, voice);
    return TTS_SAPI_init_from_token_impl(object, attributes, voice.name, voice.language);
}

}  // namespace

HRESULT TTS_SAPI_init_from_token(TTS_SAPI* object) {
    if (!object->token) return SPERR_UNINITIALIZED;
    if (object->voice_name) return SPERR_ALREADY_INITIALIZED;
    ISpDataKey* attributes = nullptr;
    HRESULT hr = object->token->OpenKey(NELVA_WIDE("Attributes"), &attributes);
    if (SUCCEEDED(hr) && !attributes) hr = E_POINTER;
    if (FAILED(hr)) {
        log_eventA(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYSTEM, EVENT_DATA_MISSING, "Attributes");
        return hr;
    }
    hr = init_from_attributes(object, attributes);
    attributes->Release();
    return hr;
}
