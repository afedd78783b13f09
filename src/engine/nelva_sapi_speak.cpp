// The synthesis loop: a chunk from the synthesiser, a look at the host, the chunk's events, its samples through Sonic
// and to the output queue, until there is no more, the host aborts, or the audio stopped.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "engine/nelva_sapi_errmsg.h"
#include "engine/nelva_sapi_object.h"
#include "sapi/sapi_evtlog.h"
#include "sapi/tts_sapi_outqueue.h"

namespace {

// Sonic runs at this rate for every voice, the slower ones included.
constexpr int sonic_rate = 22050;
constexpr int sonic_channels = 1;

// 100 ms at that rate, so that the host's actions take effect quickly.
constexpr std::uint32_t chunk_samples = sonic_rate / 10;

constexpr std::size_t sample_buf_samples = 65536;

struct SpeakLoop {
    NELVA_SAPI* object;
    tts_streamer streamer;
    std::uint64_t event_mask;
    const std::uint32_t* positions;
    std::uint64_t text_len;
    std::uint64_t audio_total;  // bytes handed to the queue so far
    HRESULT hr;
    bool keep_going;
    bool finished;
};

void reset_factors(NELVA_SAPI* self) {
    self->sapi_rate = 1.0f;
    self->sapi_volume = 1.0f;
    self->extra_rate = 1.0f;
    self->extra_volume = 1.0f;
}

// Both serve every later call of this object too.
HRESULT make_buffers_if_needed(NELVA_SAPI* self) {
    if (!self->sonic) self->sonic = sonicCreateStream(sonic_rate, sonic_channels);
    if (!self->sample_buf) {
        self->sample_buf = static_cast<std::int16_t*>(std::malloc(sample_buf_samples * sizeof(std::int16_t)));
        if (self->sample_buf) self->sample_buf_size = sample_buf_samples;
    }
    return self->sonic && self->sample_buf ? S_OK : E_OUTOFMEMORY;
}

std::uint64_t event_interest(const NELVA_SAPI* self) {
    ULONGLONG mask = 0;
    if (!self->site || FAILED(self->site->GetEventInterest(&mask))) return 0;
    return mask;
}

// Loaded anew for each call, so that a change to the file is heard at once. Without it the voice speaks all the same.
void reload_lexicon(const NELVA_SAPI* self) {
    tts_dict_cleanup(self->voice);
    if (self->lex_path && self->lex_path[0] != '\0') tts_dict_load(self->voice, self->lex_path);
}

HRESULT sonic_result(int ok) { return ok ? S_OK : E_OUTOFMEMORY; }

void take_events(SpeakLoop* loop, const tts_wave* wave) {
    const HRESULT hr = NELVA_SAPI_handle_events(loop->object, loop->audio_total, wave->events,
                                                static_cast<std::int32_t>(wave->event_count), loop->event_mask,
                                                loop->positions, loop->text_len);
    if (hr == SP_AUDIO_STOPPED) {
        loop->keep_going = false;
    } else if (FAILED(hr)) {
        loop->hr = hr;
    }
}

void write_samples(SpeakLoop* loop, const tts_wave* wave) {
    const int count = wave->samples ? std::max(static_cast<std::int32_t>(wave->sample_count), 0) : 0;
    // Sonic only reads the samples, but its interface does not say so.
    auto* samples = const_cast<std::int16_t*>(wave->samples);
    loop->hr = sonic_result(sonicWriteShortToStream(loop->object->sonic, samples, count));
}

// SP_AUDIO_STOPPED is no failure: what Sonic still holds is offered too.
void drain_sonic(SpeakLoop* loop) {
    NELVA_SAPI* self = loop->object;
    while (SUCCEEDED(loop->hr)) {
        const int count =
            sonicReadShortFromStream(self->sonic, self->sample_buf, static_cast<int>(self->sample_buf_size));
        if (count <= 0) return;
        const std::uint64_t bytes = std::uint64_t{sizeof(std::int16_t)} * static_cast<std::uint64_t>(count);
        loop->hr = TTS_SAPI_outqueue_put_audio(self, self->sample_buf, bytes);
        if (loop->hr == SP_AUDIO_STOPPED) loop->keep_going = false;
        loop->audio_total += bytes;
    }
}

// On an abort the flush comes first, and the samples of the chunk in hand still go in behind it.
void take_audio(SpeakLoop* loop, const tts_wave* wave) {
    if (!loop->keep_going && SUCCEEDED(loop->hr)) loop->hr = sonic_result(sonicFlushStream(loop->object->sonic));
    if (!loop->object->site || FAILED(loop->hr)) return;
    if (wave) write_samples(loop, wave);
    drain_sonic(loop);
}

// One chunk. The host is polled after it has been synthesised, and the chunk still plays after a skip.
void run_pass(SpeakLoop* loop) {
    tts_wave* wave = tts_streamer_synth(loop->streamer, chunk_samples);
    loop->finished = !wave;
    loop->keep_going = wave && NELVA_SAPI_handle_actions(loop->object, loop->streamer);
    if (loop->keep_going) take_events(loop, wave);
    take_audio(loop, wave);
    if (wave) tts_wave_delete(wave);
}

HRESULT run_loop(SpeakLoop* loop) {
    do {
        run_pass(loop);
    } while (loop->keep_going && !loop->finished && SUCCEEDED(loop->hr));
    // After an abort what the queue holds is dropped with it.
    if ((loop->keep_going || loop->finished) && SUCCEEDED(loop->hr)) loop->hr = TTS_SAPI_outqueue_flush(loop->object);
    return loop->hr;
}

}  // namespace

HRESULT TTS_SAPI_speak_from_utf8_impl(TTS_SAPI* object, const char* ssml, const std::uint32_t* positions) {
    NELVA_SAPI* self = nelva_object(object);
    reset_factors(self);
    const HRESULT hr = make_buffers_if_needed(self);
    if (FAILED(hr)) return hr;
    SpeakLoop loop = {};
    loop.object = self;
    loop.event_mask = event_interest(self);
    reload_lexicon(self);
    if (!self->voice || !ssml) return SPERR_TTS_ENGINE_EXCEPTION;
    loop.streamer = tts_streamer_start(self->voice, ssml, -1.0f);
    if (!loop.streamer) {
        log_eventA(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYNTHESISER, EVENT_STREAMER_START, engine_message());
        return SPERR_TTS_ENGINE_EXCEPTION;
    }
    loop.positions = positions;
    loop.text_len = std::strlen(ssml);
    run_loop(&loop);
    tts_streamer_stop(loop.streamer);
    return loop.hr;
}
