// Stops the program on a programming error in every build type, where assert() would be gone from a release build.
#pragma once

// Writes one line to the standard error stream in the manner of the C library's assert,
//
//     source:line: function: Assertion `condition' failed.
//
// and aborts. `source` names the source module; a `line` of 0 or below leaves the line number out.
[[noreturn]] void failed_assertion(const char* condition, const char* source, int line, const char* function);
