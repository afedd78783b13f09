// The output queue between the synthesis loop and the host's site.
//
// SAPI's viseme event carries its own duration and the number of the next viseme, and neither is known when the viseme
// comes along. So the queue holds a viseme back until the next one arrives or half a second of audio has passed, and
// with it the audio behind it, so that the host gets the viseme before the audio it belongs to. Everything else goes
// straight through: with no viseme held, not a byte is copied.
//
// All functions run on the thread of Speak and need the object's site, but for the last three.
#ifndef NELVA_SAPI_TTS_SAPI_OUTQUEUE_H
#define NELVA_SAPI_TTS_SAPI_OUTQUEUE_H

#include "sapi/tts_sapi.h"

// Writes `size` bytes of audio, or holds them behind a held viseme. A success code of the site's Write, such as
// SP_AUDIO_STOPPED, is handed on.
HRESULT TTS_SAPI_outqueue_put_audio(TTS_SAPI* object, const void* data, std::uint64_t size);

// Delivers an event, or holds it if it is a viseme. The event's string passes to the queue whatever happens; `*event`
// is used up.
HRESULT TTS_SAPI_outqueue_put_event(TTS_SAPI* object, SPEVENT* event);

// Delivers the held viseme with the duration of the audio held behind it.
HRESULT TTS_SAPI_outqueue_flush_events(TTS_SAPI* object);

// Delivers the held viseme, then the held audio. Held audio is dropped if the viseme could not be delivered.
HRESULT TTS_SAPI_outqueue_flush(TTS_SAPI* object);

// Drops held events.
void TTS_SAPI_outqueue_clear_events(TTS_SAPI* object);

// Drops everything held and frees both buffers.
void TTS_SAPI_outqueue_free(TTS_SAPI* object);

// Frees an event's string, if it owns one, and makes it no event.
void clear_event(SPEVENT* event);

#endif
