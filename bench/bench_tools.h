// A clock, and the way out when something does not work.
#ifndef NELVA_BENCH_TOOLS_H
#define NELVA_BENCH_TOOLS_H

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

using BenchClock = std::chrono::steady_clock;

inline double microseconds(BenchClock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

[[noreturn]] inline void fail(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::exit(1);
}

#endif
