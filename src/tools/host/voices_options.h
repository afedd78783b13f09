// The command line of nelva-voices.
#ifndef NELVA_TOOLS_HOST_VOICES_OPTIONS_H
#define NELVA_TOOLS_HOST_VOICES_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/host/program.h"

namespace host {

enum class VoicesCommand { help, list, add, remove, check };

struct VoicesOptions {
    VoicesCommand command = VoicesCommand::help;
    std::vector<std::string> names;  // languages for add, ids for remove and check
    bool all = false;
    bool user = false;
    bool quiet = false;

    // For add.
    std::string variant;
    std::string rate = "22i";
    std::string name;
    std::string langid;
    std::optional<std::string> lexicon;  // given and empty: none
    std::optional<std::string> editor;

    // Places that stand elsewhere than beside the program; empty: there.
    std::string data;
    std::string voices;
    std::string tokens;
};

// `arguments` are UTF-8, without the program's name. Throws UsageError.
VoicesOptions parse_voices_options(const std::vector<std::string>& arguments);

// What --help prints.
std::string voices_usage();

}  // namespace host

#endif
