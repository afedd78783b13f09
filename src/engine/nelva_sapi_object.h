// The whole object: the generic layer's fields and the engine layer's behind them.
#ifndef NELVA_ENGINE_NELVA_SAPI_OBJECT_H
#define NELVA_ENGINE_NELVA_SAPI_OBJECT_H

#include <sonic.h>

#include "engine/nelva_sapi.h"

struct NELVA_SAPI : TTS_SAPI {
    tts_handle engine;
    tts_voice voice;
    char* lex_path;  // user lexicon, GlobalAlloc; null if there is none

    // Factors from the site's rate and volume, and second ones that nothing changes.
    float sapi_rate;
    float sapi_volume;
    float extra_rate;
    float extra_volume;

    // Made by the first Speak, malloc; they serve all later ones.
    sonicStream sonic;
    std::int16_t* sample_buf;
    std::uint64_t sample_buf_size;  // in samples
};

inline NELVA_SAPI* nelva_object(TTS_SAPI* object) { return static_cast<NELVA_SAPI*>(object); }

#endif
