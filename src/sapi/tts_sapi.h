// The COM object of the server.
//
// `TTS_SAPI` is one flat record with hand-made tables of functions: its first word is its IUnknown table, and each of
// its three interfaces is a separate record of two words, a table and a way back to the object. One identity and one
// reference count serve all of them.
//
// This is the generic layer: it knows COM and SAPI and nothing of speech. The engine layer (engine/nelva_sapi.h) sets
// its own fields behind these and plugs in through the names that end in `_impl`.
//
// Threads: the reference count and the server's counters change atomically; everything else belongs to the one thread
// that uses the object.
#ifndef NELVA_SAPI_TTS_SAPI_H
#define NELVA_SAPI_TTS_SAPI_H

#include <cstdint>

#include "platform/com.h"
#include "platform/sapi.h"
#include "platform/win32.h"

struct TTS_SAPI;
struct TTS_SAPI_TTSEngine_Table;
struct TTS_SAPI_ObjWToken_Table;
struct TTS_SAPI_TokenUI_Table;

// The IUnknown of the object itself.
struct TTS_SAPI_Table {
    HRESULT(STDMETHODCALLTYPE* QueryInterface)(TTS_SAPI* object, REFIID iid, void** out);
    ULONG(STDMETHODCALLTYPE* AddRef)(TTS_SAPI* object);
    ULONG(STDMETHODCALLTYPE* Release)(TTS_SAPI* object);
};

// What a caller's interface pointer points to. `Table` is the interface's table of functions.
template <typename Table>
struct TTS_SAPI_Interface {
    const Table* table;
    TTS_SAPI* object;  // owns this record
};

using TTS_SAPI_TTSEngine = TTS_SAPI_Interface<TTS_SAPI_TTSEngine_Table>;
using TTS_SAPI_ObjWToken = TTS_SAPI_Interface<TTS_SAPI_ObjWToken_Table>;
using TTS_SAPI_TokenUI = TTS_SAPI_Interface<TTS_SAPI_TokenUI_Table>;

struct TTS_SAPI {
    const TTS_SAPI_Table* table;

    TTS_SAPI_ObjWToken* objwtoken_iface;
    TTS_SAPI_TokenUI* tokenui_iface;
    TTS_SAPI_TTSEngine* ttsengine_iface;

    LONG volatile refcount;  // starts at 1

    ISpObjectToken* token;   // one reference held, null until SetObjectToken
    ISpTTSEngineSite* site;  // only during a Speak, one reference held

    // From the token's attributes; GlobalAlloc, UTF-8. A name means that the object is initialised.
    char* voice_name;
    DWORD langid;
    char* voice_language;

    // Output queue (tts_sapi_outqueue.h); both buffers are GlobalAlloc blocks.
    unsigned char* audio_buf;     // held audio
    std::uint64_t audio_len;      // bytes held
    std::uint64_t audio_size;     // bytes that fit
    std::uint64_t bytes_per_sec;  // of the output format, 0 when unknown
    SPEVENT* event_buf;           // held events
    std::uint64_t event_count;    // events held
    std::uint64_t event_size;     // events that fit
};

extern const TTS_SAPI_Table TTS_SAPI_Vtbl;

// Makes an object with one reference, the caller's. `module_name` goes to TTS_SAPI_new_impl.
// E_OUTOFMEMORY with a null `*out` when memory is short.
HRESULT TTS_SAPI_new(TTS_SAPI** out, LPCWSTR module_name);

// Frees the object whatever its reference count. TTS_SAPI_Release calls it.
void TTS_SAPI_delete(TTS_SAPI* object);

HRESULT STDMETHODCALLTYPE TTS_SAPI_QueryInterface(TTS_SAPI* object, REFIID iid, void** out);
ULONG STDMETHODCALLTYPE TTS_SAPI_AddRef(TTS_SAPI* object);
ULONG STDMETHODCALLTYPE TTS_SAPI_Release(TTS_SAPI* object);

// Reads the voice's name and language from the token's attributes, then sets the engine layer up.
// SPERR_UNINITIALIZED without a token, SPERR_ALREADY_INITIALIZED the second time, SPERR_NOT_FOUND when the name or the
// language is missing; what is missing goes to the event log.
HRESULT TTS_SAPI_init_from_token(TTS_SAPI* object);

// The IUnknown slots of an interface's table: each goes to the object's own.
template <typename Table>
struct TTS_SAPI_Forward {
    static HRESULT STDMETHODCALLTYPE QueryInterface(TTS_SAPI_Interface<Table>* record, REFIID iid, void** out) {
        return record->object->table->QueryInterface(record->object, iid, out);
    }
    static ULONG STDMETHODCALLTYPE AddRef(TTS_SAPI_Interface<Table>* record) {
        return record->object->table->AddRef(record->object);
    }
    static ULONG STDMETHODCALLTYPE Release(TTS_SAPI_Interface<Table>* record) {
        return record->object->table->Release(record->object);
    }
};

#endif
