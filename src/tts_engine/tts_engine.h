// The synthesiser behind Nelva: twelve C functions and two records.
//
// nelva_sapi.dll binds to these names of the module tts_engine.dll beside it (libtts_engine.so off Windows), so whoever
// has a synthesiser puts it behind these functions and has a full SAPI voice, without knowing COM.
//
// Strings are UTF-8 and NUL-terminated. A null handle or a null `tts_wave` is the only sign of failure or of the end;
// after a failure `tts_errmsg` tells why. One voice is used by one thread at a time; different voices may be used by
// different threads at once.
#ifndef NELVA_TTS_ENGINE_TTS_ENGINE_H
#define NELVA_TTS_ENGINE_TTS_ENGINE_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define TTS_CALL __cdecl
#if defined(TTS_ENGINE_BUILDING)
#define TTS_API __declspec(dllexport)
#else
#define TTS_API
#endif
#else
#define TTS_CALL
#define TTS_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct tts_handle_record* tts_handle;
typedef struct tts_voice_record* tts_voice;
typedef struct tts_streamer_record* tts_streamer;

// Kinds of event. Every other number is passed over.
enum tts_event_type { TTS_EVENT_WORD = 1, TTS_EVENT_SENTENCE = 2, TTS_EVENT_MARK = 3, TTS_EVENT_VISEME = 4 };

// One event inside the samples of a `tts_wave`.
typedef struct tts_wave_event {
    uint32_t type;           // one of tts_event_type
    uint32_t reserved0;      // not read
    const char* label;       // the mark's name, or the viseme's label; may be null
    uint32_t text_begin;     // byte offset into the SSML text: start of the word or sentence
    uint32_t text_end;       // byte offset into the SSML text: behind its last byte
    uint32_t sample_offset;  // counted in samples from the first sample of this wave
    uint32_t reserved1;      // not read
} tts_wave_event;

// One piece of audio with its events, owned by the synthesiser until `tts_wave_delete`.
typedef struct tts_wave {
    uint32_t reserved0;            // not read
    uint32_t sample_count;         // how many samples stand at `samples`
    const int16_t* samples;        // signed, 16 bits, mono, at the rate that the voice's name promises
    uint32_t event_count;          // how many records stand at `events`
    uint32_t reserved1;            // not read
    const tts_wave_event* events;  // in the order in which they are to be delivered
} tts_wave;

// Starts the library. Null on failure. What the first voice reads of the synthesiser's data stays until tts_destroy.
TTS_API tts_handle TTS_CALL tts_create(void);

// Ends it. All voices are unloaded before.
TTS_API void TTS_CALL tts_destroy(tts_handle handle);

// Loads a voice. `libPath` and `voxPath` are what the voice's token holds; the strings stay the caller's. Null on
// failure.
TTS_API tts_voice TTS_CALL tts_load_voice(tts_handle handle, const char* libPath, const char* voxPath);

// Unloads a voice. No streamer of it runs any more.
TTS_API void TTS_CALL tts_unload_voice(tts_voice voice);

// Drops the voice's user lexicon. Called before every document, also with a null voice and when none is loaded.
TTS_API void TTS_CALL tts_dict_cleanup(tts_voice voice);

// Loads a user lexicon. 0 on success; after a failure the voice speaks without one.
TTS_API int32_t TTS_CALL tts_dict_load(tts_voice voice, const char* path);

// Starts to speak a document. Null on failure. The last argument is always -1 and means nothing. The caller keeps the
// text unchanged until `tts_streamer_stop`.
TTS_API tts_streamer TTS_CALL tts_streamer_start(tts_voice voice, const char* ssml, float);

// The next piece, of about `samples` samples; it may hold more or fewer, also none (a piece without samples carries the
// events that stand behind the last one, at offset 0). Null when nothing more comes, or after a failure, of which
// `tts_errmsg` tells.
TTS_API tts_wave* TTS_CALL tts_streamer_synth(tts_streamer streamer, uint32_t samples);

// Jumps `count` sentences forward (above 0) or back (below 0) from the one that the last piece belongs to; 0 starts
// that one again, and beyond the first or last sentence the jump ends there. 0 if it did.
TTS_API int32_t TTS_CALL tts_streamer_jump(tts_streamer streamer, int32_t count);

// Ends the document, spoken to its end or not, and releases the streamer. 0 on success.
TTS_API int32_t TTS_CALL tts_streamer_stop(tts_streamer streamer);

// Gives a piece back.
TTS_API void TTS_CALL tts_wave_delete(tts_wave* wave);

// Why the last call of this thread failed. Never null; owned by the library, valid until the thread's next call.
TTS_API const char* TTS_CALL tts_errmsg(void);

#ifdef __cplusplus
}
#endif

#if defined(__cplusplus)
#define TTS_ENGINE_ASSERT(condition, text) static_assert(condition, text)
#else
#define TTS_ENGINE_ASSERT(condition, text) _Static_assert(condition, text)
#endif
TTS_ENGINE_ASSERT(sizeof(tts_wave_event) == 32, "a wave event is 32 bytes");
TTS_ENGINE_ASSERT(offsetof(tts_wave_event, label) == 8, "wave event layout");
TTS_ENGINE_ASSERT(offsetof(tts_wave_event, text_begin) == 16, "wave event layout");
TTS_ENGINE_ASSERT(offsetof(tts_wave_event, text_end) == 20, "wave event layout");
TTS_ENGINE_ASSERT(offsetof(tts_wave_event, sample_offset) == 24, "wave event layout");
TTS_ENGINE_ASSERT(sizeof(tts_wave) == 32, "a wave is 32 bytes");
TTS_ENGINE_ASSERT(offsetof(tts_wave, sample_count) == 4, "wave layout");
TTS_ENGINE_ASSERT(offsetof(tts_wave, samples) == 8, "wave layout");
TTS_ENGINE_ASSERT(offsetof(tts_wave, event_count) == 16, "wave layout");
TTS_ENGINE_ASSERT(offsetof(tts_wave, events) == 24, "wave layout");
#undef TTS_ENGINE_ASSERT

#endif
