// A synthesiser whose every answer a test sets: waves, events, failures, jump results.
//
// It has the same twelve functions as the shipped one, as a DLL named tts_engine.dll (for the real server under Wine)
// and as a library to link. What a test sets here is process-wide and is used by one thread at a time.
#ifndef NELVA_TESTS_SCRIPTED_ENGINE_H
#define NELVA_TESTS_SCRIPTED_ENGINE_H

#include <stddef.h>
#include <stdint.h>

#include "tts_engine/tts_engine.h"

#if defined(_WIN32) && defined(TTS_ENGINE_BUILDING)
#define SCRIPTED_API __declspec(dllexport)
#elif defined(_WIN32)
#define SCRIPTED_API
#else
#define SCRIPTED_API __attribute__((visibility("default")))
#endif

enum scripted_call {
    SCRIPTED_CREATE,
    SCRIPTED_DESTROY,
    SCRIPTED_LOAD_VOICE,
    SCRIPTED_UNLOAD_VOICE,
    SCRIPTED_DICT_CLEANUP,
    SCRIPTED_DICT_LOAD,
    SCRIPTED_STREAMER_START,
    SCRIPTED_STREAMER_SYNTH,
    SCRIPTED_STREAMER_JUMP,
    SCRIPTED_STREAMER_STOP,
    SCRIPTED_WAVE_DELETE,
    SCRIPTED_ERRMSG,
    SCRIPTED_CALLS
};

extern "C" {

// Forgets waves, failures, results and the log. Live handles are not touched.
SCRIPTED_API void scripted_reset(void);

// Adds a wave to what every later streamer gives: `count` samples, all of one value, and a copy of the events.
SCRIPTED_API void scripted_add_wave(uint32_t count, int16_t value, const tts_wave_event* events, uint32_t event_count);

// Adds a wave with samples of its own.
SCRIPTED_API void scripted_add_samples(const int16_t* samples, uint32_t count, const tts_wave_event* events,
                                       uint32_t event_count);

// How often the list of waves is given, one time after the other. 1 at the start.
SCRIPTED_API void scripted_set_rounds(uint32_t rounds);

// From now on the `nth` call of the function fails (the first is 1), and with `for_good` all behind it too. A failing
// function gives null or -1; the functions without a result only log.
SCRIPTED_API void scripted_fail(enum scripted_call call, uint32_t nth, int for_good);

SCRIPTED_API void scripted_set_jump_result(int32_t result);
SCRIPTED_API void scripted_set_message(const char* message);

// The calls so far, one a line, with their arguments: "tts_load_voice lib vox".
SCRIPTED_API const char* scripted_log(void);
SCRIPTED_API uint32_t scripted_count(enum scripted_call call);

// The document of the last tts_streamer_start, a copy.
SCRIPTED_API const char* scripted_document(void);

// Handles and waves that were given and have not come back.
SCRIPTED_API size_t scripted_live(void);
}

#endif
