// Windows' command lines: one string that the started program cuts into arguments.

#ifndef NELVA_PLATFORM_NATIVE_COMMAND_LINE_H
#define NELVA_PLATFORM_NATIVE_COMMAND_LINE_H

#include <string>
#include <string_view>
#include <vector>

namespace platform_native {

// The arguments that Windows' C run-time reads from a command line.
//
// The first is the program's name: up to the closing quote if it opens with one, and quotes within it only group;
// backslashes are plain there. In the others, quotes group; 2n backslashes in front of a quote are n backslashes, and
// one more makes the quote a plain character; a doubled quote within quotes is a plain quote; all other backslashes
// are plain. Blanks and tabs outside quotes separate. An empty command line gives one empty argument.
std::vector<std::u16string> split_command_line(std::u16string_view line);

}  // namespace platform_native

#endif
