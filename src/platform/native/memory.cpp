// The global heap and COM's task allocator over malloc.
//
// Each block carries a header of 16 bytes in front of it that names its allocator, so that a block that goes back to
// the wrong one is found at once. Alignment stays that of malloc.

#include "platform/native/memory.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "platform/native/com.h"
#include "platform/native/internal.h"
#include "platform/testing.h"

namespace {

enum class Allocator : std::uint64_t { global = 0x474C4F42414C2121, cotask = 0x434F5441534B2121, freed = 0 };

struct alignas(16) Header {
    Allocator allocator;
};

constexpr std::size_t pattern_limit = 64 * 1024;
constexpr int pattern = 0xCD;
constexpr long never = std::numeric_limits<long>::max();

std::atomic<long> live_global{0};
std::atomic<long> live_cotask{0};
std::atomic<long> calls{0};
std::atomic<long> fails_from{never};
std::atomic<long> fails_until{never};
std::atomic<bool> failed{false};

void* allocate(Allocator allocator, std::atomic<long>& live, SIZE_T size, bool zeroed) {
    if (!platform_testing::take_allocation_ticket() || size > SIZE_MAX - sizeof(Header)) return nullptr;
    const platform_native::StandIn guard;
    auto* header =
        static_cast<Header*>(zeroed ? std::calloc(1, sizeof(Header) + size) : std::malloc(sizeof(Header) + size));
    if (header == nullptr) return nullptr;
    header->allocator = allocator;
    if (!zeroed) std::memset(header + 1, pattern, std::min<std::size_t>(size, pattern_limit));
    live.fetch_add(1, std::memory_order_relaxed);
    return header + 1;
}

void release(Allocator allocator, std::atomic<long>& live, void* block) {
    if (block == nullptr) return;
    Header* header = static_cast<Header*>(block) - 1;
    if (header->allocator != allocator) {
        std::fputs("nelva: a block went back to an allocator that it did not come from, or came back twice\n", stderr);
        std::abort();
    }
    const platform_native::StandIn guard;
    header->allocator = Allocator::freed;
    live.fetch_sub(1, std::memory_order_relaxed);
    std::free(header);
}

}  // namespace

HGLOBAL GlobalAlloc(UINT flags, SIZE_T size) {
    void* block = allocate(Allocator::global, live_global, size, (flags & GMEM_ZEROINIT) != 0);
    if (block == nullptr) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return block;
}

HGLOBAL GlobalFree(HGLOBAL block) {
    release(Allocator::global, live_global, block);
    return nullptr;
}

LPVOID CoTaskMemAlloc(SIZE_T size) { return allocate(Allocator::cotask, live_cotask, size, false); }

void CoTaskMemFree(LPVOID block) { release(Allocator::cotask, live_cotask, block); }

namespace platform_native {

void reset_memory() {
    platform_testing::allow_allocations();
    calls.store(0);
}

}  // namespace platform_native

namespace platform_testing {

long live_global_blocks() { return live_global.load(); }

long live_cotask_blocks() { return live_cotask.load(); }

long allocation_calls() { return calls.load(); }

void fail_allocation(long nth) {
    allow_allocations();
    const long call = calls.load() + nth;
    fails_until.store(call);
    fails_from.store(call);
}

void fail_allocations_from(long nth) {
    allow_allocations();
    fails_from.store(calls.load() + nth);
}

bool allow_allocations() {
    fails_from.store(never);
    fails_until.store(never);
    return failed.exchange(false);
}

bool take_allocation_ticket() {
    if (inside_stand_in()) return true;
    const long call = calls.fetch_add(1, std::memory_order_relaxed) + 1;
    if (call < fails_from.load(std::memory_order_relaxed)) return true;
    if (call > fails_until.load(std::memory_order_relaxed)) return true;
    failed.store(true, std::memory_order_relaxed);
    return false;
}

}  // namespace platform_testing
