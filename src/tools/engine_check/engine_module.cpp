// dlopen and LoadLibrary. See engine_module.h.
#include "tools/engine_check/engine_module.h"

#include <filesystem>
#include <stdexcept>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace engine_check {
namespace {

// A plain name is a file of the current folder, not one that the system has somewhere.
std::filesystem::path full_path(const std::string& path) {
    return std::filesystem::absolute(std::filesystem::path(std::u8string(path.begin(), path.end())));
}

#if defined(_WIN32)

HMODULE open_module(const std::string& path) {
    const HMODULE module = LoadLibraryExW(full_path(path).make_preferred().c_str(), nullptr,
                                          LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    if (module != nullptr) return module;
    throw std::runtime_error("cannot open \"" + path + "\": Windows' error " + std::to_string(GetLastError()));
}

void* function_of(HMODULE module, const char* name) { return reinterpret_cast<void*>(GetProcAddress(module, name)); }

#else

void* open_module(const std::string& path) {
    void* const module = dlopen(full_path(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module != nullptr) return module;
    throw std::runtime_error("cannot open \"" + path + "\": " + dlerror());
}

void* function_of(void* module, const char* name) { return dlsym(module, name); }

#endif

}  // namespace

EngineFunctions open_engine(const std::string& path) {
    const auto module = open_module(path);
    std::string missing;
    const auto get = [&](auto& function, const char* name) {
        void* const found = function_of(module, name);
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(found);
        if (found == nullptr) missing.append(missing.empty() ? "" : ", ").append(name);
    };
    EngineFunctions functions{};
    get(functions.create, "tts_create");
    get(functions.destroy, "tts_destroy");
    get(functions.load_voice, "tts_load_voice");
    get(functions.unload_voice, "tts_unload_voice");
    get(functions.dict_cleanup, "tts_dict_cleanup");
    get(functions.dict_load, "tts_dict_load");
    get(functions.start, "tts_streamer_start");
    get(functions.synth, "tts_streamer_synth");
    get(functions.jump, "tts_streamer_jump");
    get(functions.stop, "tts_streamer_stop");
    get(functions.delete_wave, "tts_wave_delete");
    get(functions.errmsg, "tts_errmsg");
    if (missing.empty()) return functions;
    throw std::runtime_error("\"" + path + "\" does not export " + missing);
}

}  // namespace engine_check
