// A program's arguments as UTF-8, in both builds.
#ifndef NELVA_TOOLS_HOST_PROGRAM_ARGUMENTS_H
#define NELVA_TOOLS_HOST_PROGRAM_ARGUMENTS_H

#include <string>
#include <vector>

namespace host {

// The arguments behind the program's name. On Windows they come from the wide command line and not from `argv`, whose
// text is in the machine's code page.
std::vector<std::string> program_arguments(int argc, char** argv);

}  // namespace host

#endif
