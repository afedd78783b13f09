// The engine layer's part of an object's life: the voice that a token names, and the format that its name promises.
#include <cstdlib>
#include <string_view>

#include "engine/nelva_sapi_errmsg.h"
#include "engine/nelva_sapi_object.h"
#include "sapi/sapi_datakey.h"
#include "sapi/sapi_evtlog.h"

namespace {

void global_free(void* block) {
    if (block) GlobalFree(block);
}

// What the end of a voice file's name says. A name must be longer than `longer_than` bytes to be tested, so that a bare
// "22i" or "8v" is no voice.
struct RateSuffix {
    std::string_view suffix;
    std::size_t longer_than;
    DWORD samples_per_second;
};

constexpr RateSuffix rate_suffixes[] = {{"16i-mf", 2, 16000}, {"22i", 3, 22050}, {"8v", 2, 8000}};

// 0 when no suffix fits. The first one that does wins.
DWORD samples_per_second(std::string_view vox_path) {
    for (const RateSuffix& row : rate_suffixes) {
        if (vox_path.size() > row.longer_than && vox_path.ends_with(row.suffix)) return row.samples_per_second;
    }
    return 0;
}

void fill_format(WAVEFORMATEX* format, DWORD rate) {
    format->wFormatTag = WAVE_FORMAT_PCM;
    format->nChannels = 1;
    format->nSamplesPerSec = rate;
    format->nAvgBytesPerSec = 2 * rate;
    format->nBlockAlign = 2;
    format->wBitsPerSample = 16;
    format->cbSize = 0;
}

tts_voice load_voice(tts_handle engine, const char* lib_path, const char* vox_path) {
    if (!lib_path || !vox_path) {
        log_eventA(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYSTEM, EVENT_DATA_MISSING, "libPath/voxPath");
        return nullptr;
    }
    tts_voice voice = tts_load_voice(engine, lib_path, vox_path);
    if (!voice) log_eventA(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYNTHESISER, EVENT_VOICE_LOAD, engine_message());
    return voice;
}

}  // namespace

HRESULT TTS_SAPI_new_impl(TTS_SAPI** object, LPCWSTR) {
    NELVA_SAPI* self = nelva_object(*object);
    self->engine = nullptr;
    self->voice = nullptr;
    self->lex_path = nullptr;
    self->sapi_rate = 1.0f;
    self->sapi_volume = 1.0f;
    self->extra_rate = 1.0f;
    self->extra_volume = 1.0f;
    self->sonic = nullptr;
    self->sample_buf = nullptr;
    self->sample_buf_size = 0;
    return S_OK;
}

void TTS_SAPI_delete_impl(TTS_SAPI* object) {
    NELVA_SAPI* self = nelva_object(object);
    if (self->voice) tts_unload_voice(self->voice);
    if (self->engine) tts_destroy(self->engine);
    global_free(self->lex_path);
    if (self->sonic) sonicDestroyStream(self->sonic);
    std::free(self->sample_buf);
}

HRESULT TTS_SAPI_init_from_token_impl(TTS_SAPI* object, ISpDataKey*, const char*, const char*) {
    NELVA_SAPI* self = nelva_object(object);
    self->engine = tts_create();
    if (!self->engine) {
        log_eventA(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYNTHESISER, EVENT_ENGINE_CREATE, engine_message());
        return SPERR_TTS_ENGINE_EXCEPTION;
    }
    char* lib_path = nullptr;
    char* vox_path = nullptr;
    get_datakey_value_utf8(self->token, NELVA_WIDE("libPath"), &lib_path);
    get_datakey_value_utf8(self->token, NELVA_WIDE("voxPath"), &vox_path);
    self->voice = load_voice(self->engine, lib_path, vox_path);
    global_free(lib_path);
    global_free(vox_path);
    if (!self->voice) return SPERR_TTS_ENGINE_EXCEPTION;
    // A voice without a user lexicon is the usual one.
    get_datakey_value_utf8(self->token, NELVA_WIDE("lexPath"), &self->lex_path);
    return S_OK;
}

HRESULT TTS_SAPI_get_outputformat_impl(TTS_SAPI* object, WAVEFORMATEX* format, const WAVEFORMATEX*) {
    if (!object->token) return SPERR_UNINITIALIZED;
    char* vox_path = nullptr;
    const HRESULT hr = get_datakey_value_utf8(object->token, NELVA_WIDE("voxPath"), &vox_path);
    if (FAILED(hr)) return hr;
    const DWORD rate = vox_path ? samples_per_second(vox_path) : 0;
    global_free(vox_path);
    if (rate == 0) return SPERR_CANT_CREATE;
    fill_format(format, rate);
    return S_OK;
}
