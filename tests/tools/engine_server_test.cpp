// Loading the engine's module. What a real engine does then, the black-box test of nelva-say shows.
#ifndef _WIN32

#include "tools/host/engine_server.h"

#include <gtest/gtest.h>

#include "tools/host/files.h"
#include "tools/host/hresult.h"
#include "tools/host/voices.h"

namespace {

using namespace host;

HRESULT code_of(const std::string& module) {
    try {
        EngineServer(module).create(nelva_class_id);
    } catch (const HostError& error) {
        return error.code();
    }
    return S_OK;
}

TEST(EngineServer, missing_module_is_told_with_its_name) {
    EXPECT_EQ(code_of("/no/such/module.so"), hresult_from_win32(ERROR_MOD_NOT_FOUND));
    try {
        EngineServer("/no/such/module.so");
        FAIL();
    } catch (const HostError& error) {
        EXPECT_NE(std::string(error.what()).find("/no/such/module.so"), std::string::npos);
    }
}

TEST(EngineServer, module_without_a_class_factory_is_told) { EXPECT_EQ(code_of("libm.so.6"), hresult_from_win32(127)); }

TEST(EngineServer, module_stands_in_lib_beside_the_programs_folder) {
    EXPECT_EQ(engine_module_path(), program_folder() + "/../lib/libnelva_sapi.so");
}

}  // namespace

#endif
