// The operators. See failing_new.h.
#include "support/failing_new.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

using failing_new::Mode;

std::atomic<long> live = 0;
thread_local bool watched = false;
thread_local long failing = 0;  // which allocation fails; 0 for none
thread_local Mode failing_mode = Mode::once;
thread_local failing_new::Count counted{};

void* allocate(std::size_t size) noexcept {
    const bool may = failing_new::may_allocate(size);
    const failing_new::Unwatched malloc_is_ours;
    void* block = may ? std::malloc(size == 0 ? 1 : size) : nullptr;
    if (block == nullptr) return nullptr;
    ++live;
    return block;
}

void release(void* block) noexcept {
    if (block != nullptr) --live;
    std::free(block);
}

}  // namespace

namespace failing_new {

void start(long nth, Mode mode) {
    counted = {};
    failing = nth;
    failing_mode = mode;
}

void allow_all() { failing = 0; }

Watched::Watched() { watched = true; }
Watched::~Watched() { watched = false; }

Unwatched::Unwatched() : before_(watched) { watched = false; }
Unwatched::~Unwatched() { watched = before_; }

bool may_allocate(std::size_t size) {
    if (!watched) return true;
    ++counted.allocations;
    counted.bytes += size;
    return failing == 0 || counted.allocations < failing ||
           (failing_mode == Mode::once && counted.allocations > failing);
}

Count count() { return counted; }

long live_blocks() { return live; }

}  // namespace failing_new

void* operator new(std::size_t size) {
    void* block = allocate(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
