// Where engines come from: COM on Windows, and elsewhere the engine's own module with the same class factory.
#ifndef NELVA_TOOLS_HOST_ENGINE_SERVER_H
#define NELVA_TOOLS_HOST_ENGINE_SERVER_H

#include <string>

#include "platform/sapi.h"
#include "tools/host/com_ptr.h"

namespace host {

// Holds COM open for this thread; off Windows the module stays loaded once it was. Engines must be released before
// this goes.
class EngineServer {
public:
    // On Windows the path plays no part: the registry says where the class is. Elsewhere it is the module to load.
    // Throws HostError.
    explicit EngineServer(const std::string& module_path);
    ~EngineServer();
    EngineServer(const EngineServer&) = delete;
    EngineServer& operator=(const EngineServer&) = delete;

    // A new object of the class. Throws HostError.
    ComPtr<ISpTTSEngine> create(const CLSID& class_id);

private:
    void* module_ = nullptr;
};

// Where the engine's module is in an installed tree and in a build tree: ../lib beside the program's folder.
std::string engine_module_path();

}  // namespace host

#endif
