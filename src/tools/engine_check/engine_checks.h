// Putting a synthesiser through the contract of tts_engine.h, as nelva_sapi calls it.
//
// The engine is used in the order in which the server uses it, never with handles that it did not give. What a broken
// engine does to this process cannot be caught here; the name of each check is told before it is made.
#ifndef NELVA_TOOLS_ENGINE_CHECK_ENGINE_CHECKS_H
#define NELVA_TOOLS_ENGINE_CHECK_ENGINE_CHECKS_H

#include <functional>
#include <string>
#include <vector>

#include "tools/engine_check/engine_module.h"

namespace engine_check {

struct VoiceArguments {
    std::string lib_path;
    std::string vox_path;
    std::string lexicon;  // may be empty
};

// What one check found. An engine conforms if no check has faults.
struct CheckResult {
    std::string name;
    std::vector<std::string> faults;  // breaches of the contract, in plain words
    std::vector<std::string> notes;   // what is allowed and may surprise
};

struct CheckListener {
    std::function<void(const std::string& name)> begins;
    std::function<void(const CheckResult&)> ended;
};

// Runs all checks; how many had faults. When no voice can be loaded the rest is left out.
int run_checks(const EngineFunctions& engine, const VoiceArguments& voice, const CheckListener& listener);

}  // namespace engine_check

#endif
