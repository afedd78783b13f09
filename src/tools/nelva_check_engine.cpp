// nelva-check-engine: says whether a synthesiser's module keeps the contract of tts_engine.h;
// docs/your-own-synthesiser.md.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "tools/engine_check/engine_checks.h"
#include "tools/host/program_arguments.h"

namespace {

using namespace engine_check;

enum ExitStatus { exit_conforms = 0, exit_broken = 1, exit_usage = 2 };

const char* const usage =
    "usage: nelva-check-engine [--lexicon FILE] MODULE LIBPATH VOXPATH\n"
    "\n"
    "Opens MODULE, a tts_engine.dll or a native library, loads the voice that LIBPATH and VOXPATH name\n"
    "as a voice token would, and uses it as the speech server does.\n"
    "\n"
    "  --lexicon FILE  also load this lexicon\n"
    "  --help          this text\n"
    "\n"
    "Exit status: 0 the module keeps the contract, 1 it does not, 2 it cannot be checked.\n";

struct Options {
    std::vector<std::string> names;
    std::string lexicon;
    bool help = false;
};

// False, with a message, for wrong usage.
bool parse(const std::vector<std::string>& arguments, Options& options) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--lexicon" && i + 1 < arguments.size()) {
            options.lexicon = arguments[++i];
        } else if (argument.size() > 1 && argument[0] == '-') {
            std::fprintf(stderr, "nelva-check-engine: unknown or incomplete option '%s'\n", argument.c_str());
            return false;
        } else {
            options.names.push_back(argument);
        }
    }
    if (options.help || options.names.size() == 3) return true;
    std::fprintf(stderr, "nelva-check-engine: a module, a libPath and a voxPath are needed; --help shows more\n");
    return false;
}

void print(const CheckResult& result) {
    std::printf("%s\n", result.faults.empty() ? "ok" : "WRONG");
    for (const std::string& fault : result.faults) std::printf("    %s\n", fault.c_str());
    for (const std::string& note : result.notes) std::printf("    note: %s\n", note.c_str());
}

int check(const Options& options) {
    const EngineFunctions engine = open_engine(options.names[0]);
    const CheckListener listener = {[](const std::string& name) {
                                        std::printf("%s: ", name.c_str());
                                        std::fflush(stdout);  // a broken engine may take the process with it
                                    },
                                    print};
    const int failed = run_checks(engine, {options.names[1], options.names[2], options.lexicon}, listener);
    if (failed == 0)
        std::printf("the module keeps the contract\n");
    else
        std::printf("the module does not keep the contract: %d of the checks found faults\n", failed);
    return failed == 0 ? exit_conforms : exit_broken;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        Options options;
        if (!parse(host::program_arguments(argc, argv), options)) return exit_usage;
        if (options.help) {
            std::fputs(usage, stdout);
            return exit_conforms;
        }
        return check(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "nelva-check-engine: %s\n", error.what());
    }
    return exit_usage;
}
