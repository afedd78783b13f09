// Why the synthesiser failed, for the event log.
#ifndef NELVA_ENGINE_NELVA_SAPI_ERRMSG_H
#define NELVA_ENGINE_NELVA_SAPI_ERRMSG_H

#include "tts_engine/tts_engine.h"

// The event log needs a string, and not every synthesiser has one to give.
inline const char* engine_message() {
    const char* message = tts_errmsg();
    return message ? message : "";
}

#endif
