// What must hold for every input: a failed property ends the program, as a crash does.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

inline void property(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "property failed: %s\n", what);
    std::abort();
}

// Both values are shown if they differ.
inline void property_equal(const std::string& got, const std::string& expected, const char* what) {
    if (got == expected) return;
    std::fprintf(stderr, "got:      %s\nexpected: %s\n", got.c_str(), expected.c_str());
    property(false, what);
}
