#include "tools/host/program.h"

#include <cstdio>
#include <new>

#include "tools/host/hresult.h"
#include "tools/host/program_arguments.h"

namespace host {

void complain(const char* program, const std::string& message) {
    std::fprintf(stderr, "%s: %s\n", program, message.c_str());
}

int run_program(const char* program, int argc, char** argv, int (*run)(const std::vector<std::string>& arguments)) {
    try {
        return run(program_arguments(argc, argv));
    } catch (const UsageError& error) {
        complain(program, error.what());
        return exit_usage;
    } catch (const HostError& error) {
        complain(program, error.what());
    } catch (const std::bad_alloc&) {
        complain(program, HostError("cannot go on", E_OUTOFMEMORY).what());
    } catch (const std::exception& error) {
        complain(program, HostError(error.what(), E_UNEXPECTED).what());
    }
    return exit_failed;
}

}  // namespace host
