// A synthesiser's module, opened by its path, and its twelve functions.
#ifndef NELVA_TOOLS_ENGINE_CHECK_ENGINE_MODULE_H
#define NELVA_TOOLS_ENGINE_CHECK_ENGINE_MODULE_H

#include <string>

#include "tts_engine/tts_engine.h"

namespace engine_check {

// Where each function is. All are set in a module that could be opened.
struct EngineFunctions {
    decltype(&::tts_create) create;
    decltype(&::tts_destroy) destroy;
    decltype(&::tts_load_voice) load_voice;
    decltype(&::tts_unload_voice) unload_voice;
    decltype(&::tts_dict_cleanup) dict_cleanup;
    decltype(&::tts_dict_load) dict_load;
    decltype(&::tts_streamer_start) start;
    decltype(&::tts_streamer_synth) synth;
    decltype(&::tts_streamer_jump) jump;
    decltype(&::tts_streamer_stop) stop;
    decltype(&::tts_wave_delete) delete_wave;
    decltype(&::tts_errmsg) errmsg;
};

// Opens the module at `path` (UTF-8), which stays open until the process ends. Throws std::runtime_error when it cannot
// be opened, or lacks functions, and names them.
EngineFunctions open_engine(const std::string& path);

}  // namespace engine_check

#endif
