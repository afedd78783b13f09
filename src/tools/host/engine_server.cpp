// Two ways to one class factory.
#include "tools/host/engine_server.h"

#include "tools/host/files.h"
#include "tools/host/hresult.h"
#include "tools/host/utf.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

namespace host {

std::string engine_module_path() { return program_folder() + "/../lib/libnelva_sapi.so"; }

#ifdef _WIN32

EngineServer::EngineServer(const std::string&) {
    require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "cannot start COM");
}

EngineServer::~EngineServer() { CoUninitialize(); }

ComPtr<ISpTTSEngine> EngineServer::create(const CLSID& class_id) {
    ComPtr<ISpTTSEngine> engine;
    require(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_ISpTTSEngine,
                             reinterpret_cast<void**>(engine.out())),
            "cannot create the engine");
    return engine;
}

#else

EngineServer::EngineServer(const std::string& module_path) {
    module_ = dlopen(module_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module_) return;
    const std::string reason = dlerror();
    throw HostError("cannot load the engine: " + reason, hresult_from_win32(ERROR_MOD_NOT_FOUND));
}

// The module stays in memory up to the end of the process, as COM too keeps a server that was in use.
EngineServer::~EngineServer() = default;

ComPtr<ISpTTSEngine> EngineServer::create(const CLSID& class_id) {
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID class_id, REFIID iid, void** out);
    const auto get = reinterpret_cast<GetClassObject>(dlsym(module_, "DllGetClassObject"));
    if (!get) throw HostError("the engine's module has no DllGetClassObject", hresult_from_win32(127));
    ComPtr<IClassFactory> factory;
    ComPtr<ISpTTSEngine> engine;
    require(get(class_id, IID_IClassFactory, reinterpret_cast<void**>(factory.out())),
            "cannot find the engine's class");
    require(factory->CreateInstance(nullptr, IID_ISpTTSEngine, reinterpret_cast<void**>(engine.out())),
            "cannot create the engine");
    return engine;
}

#endif

}  // namespace host
