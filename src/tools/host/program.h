// How a command-line program of ours runs and ends.
#ifndef NELVA_TOOLS_HOST_PROGRAM_H
#define NELVA_TOOLS_HOST_PROGRAM_H

#include <stdexcept>
#include <string>
#include <vector>

namespace host {

constexpr int exit_failed = 1;
constexpr int exit_usage = 2;

// What was wrong with the command line and what would be right.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Writes a line to the standard error stream, with the program's name in front.
void complain(const char* program, const std::string& message);

// For main(): gives what `run` returns for the arguments, which are UTF-8. What `run` throws is complained about; the
// result is then exit_usage for a UsageError, exit_failed for anything else.
int run_program(const char* program, int argc, char** argv, int (*run)(const std::vector<std::string>& arguments));

}  // namespace host

#endif
