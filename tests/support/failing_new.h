// A program's operator new, counted and failing on demand. Link failing_new.cpp into the program; the libraries that it
// loads allocate through it too. Not for Windows, where each module has an operator new of its own.
//
// Only allocations inside a Watched count and fail, and only those of its own thread. A program that wraps malloc asks
// may_allocate() there, so that all allocators fail by one common count.
#ifndef NELVA_TESTS_FAILING_NEW_H
#define NELVA_TESTS_FAILING_NEW_H

#include <cstddef>

namespace failing_new {

enum class Mode { once, for_good };

// Counts anew, and lets the `nth` allocation (the first is 1), or that one and all behind it, fail; 0 lets none.
void start(long nth = 0, Mode mode = Mode::once);

// No more failures; what is counted stays.
void allow_all();

struct Watched {
    Watched();
    ~Watched();
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
};

// The other way round, inside a Watched.
struct Unwatched {
    Unwatched();
    ~Unwatched();
    Unwatched(const Unwatched&) = delete;
    Unwatched& operator=(const Unwatched&) = delete;

private:
    bool before_;
};

// Counts as an allocation and tells whether it may succeed.
bool may_allocate(std::size_t size);

// What was asked for, whether it failed or not.
struct Count {
    long allocations;
    std::size_t bytes;
};

// Since start().
Count count();

// The blocks of the whole program that are in use.
long live_blocks();

}  // namespace failing_new

#endif
