// The engine layer: what makes the generic COM server (sapi/) speak.
//
// The generic layer calls the names that end in `_impl`; the engine layer calls back only into the output queue and
// the event log.
#ifndef NELVA_ENGINE_NELVA_SAPI_H
#define NELVA_ENGINE_NELVA_SAPI_H

#include <cstddef>
#include <cstdint>

#include "fragments/spvtextfrags_to_ssml.h"
#include "sapi/tts_sapi.h"
#include "tts_engine/tts_engine.h"

// Constants of this engine.
extern const CLSID CLSID_TTS_impl;                // the server's class
extern const LPCWSTR classname_TTS_impl;          // its name in the registry
extern LPCWSTR eventlog_source_TTS_impl;          // source name of its event log entries
extern const LPCWSTR dicteditor_vendor_TTS_impl;  // vendor word on the dictionary editor's command line
extern const std::size_t TTS_SAPI_size_impl;      // bytes of a whole object, this layer's fields included

// Sets this layer's fields of a fresh object. Always 0. The module name plays no part.
HRESULT TTS_SAPI_new_impl(TTS_SAPI** object, LPCWSTR module_name);

// Unloads the voice and frees what this layer holds.
void TTS_SAPI_delete_impl(TTS_SAPI* object);

// Loads the voice that the object's token names. SPERR_TTS_ENGINE_EXCEPTION when it cannot; the event log says why.
// The three arguments behind the object play no part here.
HRESULT TTS_SAPI_init_from_token_impl(TTS_SAPI* object, ISpDataKey* attributes, const char* name, const char* language);

// Fills in the format that follows from the end of the voice file's name: "16i-mf" 16,000 Hz, "22i" 22,050 Hz,
// "8v" 8,000 Hz. SPERR_CANT_CREATE for every other name; the host's `target` plays no part.
HRESULT TTS_SAPI_get_outputformat_impl(TTS_SAPI* object, WAVEFORMATEX* format, const WAVEFORMATEX* target);

// Speaks a document to the object's site. `positions` holds the host's text position for each byte of the document and
// one more for its end. Both stay the caller's.
HRESULT TTS_SAPI_speak_from_utf8_impl(TTS_SAPI* object, const char* ssml, const std::uint32_t* positions);

// Serves abort, skip, rate and volume. 1 to go on, 0 to stop.
int NELVA_SAPI_handle_actions(TTS_SAPI* object, tts_streamer streamer);

// Makes SAPI's events of a chunk's and puts them into the output queue.
// `base`: bytes of audio in front of the chunk. `mask`: the site's event interest. `map`: host position for each byte
// of the document, may be null; `limit`: its last valid index.
HRESULT NELVA_SAPI_handle_events(TTS_SAPI* object, std::uint64_t base, const tts_wave_event* events, std::int32_t count,
                                 std::uint64_t mask, const std::uint32_t* map, std::uint64_t limit);

// SAPI's number of the synthesiser's viseme label, -1 for a label that it does not have.
std::int32_t NELVA_SAPI_viseme_number(const char* label);

#endif
