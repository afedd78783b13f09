// The output queue: a held viseme is completed with its duration and its successor, and leaves before its audio.
#include "sapi/tts_sapi_outqueue.h"

#include <cstring>

namespace {

// Only a viseme is ever held, and it is released before the next one is stored, so one slot is all that is used.
constexpr std::uint64_t event_slots = 20;

// Shown for a viseme with audio behind it when the format does not tell how long that audio is.
constexpr std::uint64_t duration_of_unknown_audio_ms = 200;

bool is_viseme(const SPEVENT& event) { return event.eEventId == SPEI_VISEME; }

void* allocate(std::uint64_t bytes) { return GlobalAlloc(0, static_cast<std::size_t>(bytes > 0 ? bytes : 1)); }

// A viseme's parameter: the next viseme in the low 16 bits, the duration above it.
WPARAM viseme_parameter(std::uint64_t duration_ms, std::uint64_t next) {
    return static_cast<WPARAM>((next & 0xFFFF) | ((duration_ms & 0xFFFF) << 16));
}

std::uint64_t milliseconds(const TTS_SAPI* object, std::uint64_t bytes, std::uint64_t if_unknown) {
    return object->bytes_per_sec ? bytes * 1000 / object->bytes_per_sec : if_unknown;
}

HRESULT write(TTS_SAPI* object, const void* data, std::uint64_t size) {
    ULONG written = 0;
    return object->site->Write(data, static_cast<ULONG>(size), &written);
}

HRESULT deliver_held_events(TTS_SAPI* object) {
    const HRESULT hr = object->site->AddEvents(object->event_buf, static_cast<ULONG>(object->event_count));
    TTS_SAPI_outqueue_clear_events(object);
    return hr;
}

HRESULT deliver_event(TTS_SAPI* object, SPEVENT* event) {
    const HRESULT hr = object->site->AddEvents(event, 1);
    clear_event(event);
    return hr;
}

HRESULT hold_event(TTS_SAPI* object, const SPEVENT& event) {
    object->event_buf[0] = event;
    object->event_count = 1;
    return S_OK;
}

HRESULT allocate_events_if_needed(TTS_SAPI* object, const SPEVENT& event) {
    if (object->event_buf || !is_viseme(event)) return S_OK;
    object->event_buf = static_cast<SPEVENT*>(allocate(event_slots * sizeof(SPEVENT)));
    object->event_count = 0;
    object->event_size = object->event_buf ? event_slots : 0;
    return object->event_buf ? S_OK : E_OUTOFMEMORY;
}

// Half a second, from the first audio behind a held viseme on; it never grows.
HRESULT allocate_audio_if_needed(TTS_SAPI* object, std::uint64_t size) {
    if (object->audio_buf || !object->event_buf || object->event_count == 0 || size == 0) return S_OK;
    const std::uint64_t half_second = object->bytes_per_sec / 2;
    object->audio_buf = static_cast<unsigned char*>(allocate(half_second));
    if (!object->audio_buf) return E_OUTOFMEMORY;
    object->audio_len = 0;
    object->audio_size = half_second;
    return S_OK;
}

// Completes the held viseme by the event that follows it.
HRESULT release_held_viseme(TTS_SAPI* object, const SPEVENT& next) {
    SPEVENT& held = object->event_buf[0];
    const std::uint64_t bytes = next.ullAudioStreamOffset - held.ullAudioStreamOffset;
    const std::uint64_t next_viseme = is_viseme(next) ? static_cast<std::uint64_t>(next.lParam) & 0xFF : 0;
    held.wParam = viseme_parameter(milliseconds(object, bytes, 0), next_viseme);
    return deliver_held_events(object);
}

bool releases_held_viseme(const TTS_SAPI* object, const SPEVENT& event) {
    return is_viseme(event) || object->event_count + 1 == object->event_size;
}

}  // namespace

void clear_event(SPEVENT* event) {
    if (event->elParamType == SPET_LPARAM_IS_STRING) CoTaskMemFree(reinterpret_cast<void*>(event->lParam));
    event->eEventId = SPEI_UNDEFINED;
    event->elParamType = SPET_LPARAM_IS_UNDEFINED;
}

void TTS_SAPI_outqueue_clear_events(TTS_SAPI* object) {
    if (object->event_buf) {
        for (std::uint64_t i = 0; i < object->event_count; ++i) clear_event(&object->event_buf[i]);
    }
    object->event_count = 0;
}

HRESULT TTS_SAPI_outqueue_put_audio(TTS_SAPI* object, const void* data, std::uint64_t size) {
    HRESULT hr = allocate_audio_if_needed(object, size);
    if (FAILED(hr)) return hr;
    if (!object->audio_buf || object->audio_len + size > object->audio_size) hr = TTS_SAPI_outqueue_flush(object);
    if (FAILED(hr)) return hr;
    if (object->event_count == 0) return write(object, data, size);
    if (size > 0) std::memcpy(object->audio_buf + object->audio_len, data, static_cast<std::size_t>(size));
    object->audio_len += size;
    return S_OK;
}

HRESULT TTS_SAPI_outqueue_put_event(TTS_SAPI* object, SPEVENT* event) {
    HRESULT hr = allocate_events_if_needed(object, *event);
    if (FAILED(hr)) {
        clear_event(event);
        return hr;
    }
    if (object->event_count == 0) {
        return is_viseme(*event) ? hold_event(object, *event) : deliver_event(object, event);
    }
    if (releases_held_viseme(object, *event)) {
        hr = release_held_viseme(object, *event);
        if (FAILED(hr)) {
            clear_event(event);
            return hr;
        }
    }
    hr = S_OK;
    if (object->event_count == 0 && object->audio_len > 0) hr = TTS_SAPI_outqueue_flush(object);
    if (SUCCEEDED(hr) && is_viseme(*event)) {
        hold_event(object, *event);
        return hr;
    }
    // Words, sentences and bookmarks overtake a held viseme; each event carries its own place in the audio. An event
    // behind a failed flush still goes out, and its own result is what counts.
    return deliver_event(object, event);
}

HRESULT TTS_SAPI_outqueue_flush_events(TTS_SAPI* object) {
    if (!object->event_buf || object->event_count == 0) return S_OK;
    SPEVENT& held = object->event_buf[0];
    if (is_viseme(held) && held.wParam == 0) {
        const std::uint64_t if_unknown = object->audio_len > 0 ? duration_of_unknown_audio_ms : 0;
        held.wParam = viseme_parameter(milliseconds(object, object->audio_len, if_unknown), 0);
    }
    return deliver_held_events(object);
}

HRESULT TTS_SAPI_outqueue_flush(TTS_SAPI* object) {
    HRESULT hr = TTS_SAPI_outqueue_flush_events(object);
    if (SUCCEEDED(hr) && object->audio_len > 0) hr = write(object, object->audio_buf, object->audio_len);
    object->audio_len = 0;
    return hr;
}

void TTS_SAPI_outqueue_free(TTS_SAPI* object) {
    TTS_SAPI_outqueue_clear_events(object);
    if (object->audio_buf) GlobalFree(object->audio_buf);
    if (object->event_buf) GlobalFree(object->event_buf);
    object->audio_buf = nullptr;
    object->audio_len = 0;
    object->audio_size = 0;
    object->event_buf = nullptr;
    object->event_count = 0;
    object->event_size = 0;
}
