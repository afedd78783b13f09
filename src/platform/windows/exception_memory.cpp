// Memory for C++ exceptions that is there when no other is.
//
// A std::bad_alloc has to be thrown just when malloc gives nothing. The compiler's run-time keeps a reserve for that,
// behind a mutex of its threads library, and that library asks malloc for the mutex when it is first locked: with
// memory gone for good the lock fails, which throws, which locks, until the stack is gone and the host with it. These
// functions take the run-time's place. Their reserve is a few slots that an atomic flag each guards.
//
// What each thread keeps of its exceptions in flight the run-time would allocate when the first one is thrown, and stop
// the program where it cannot. Here it comes from a reserve then, too.
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "platform/win32.h"

namespace {

// In front of a thrown object stands a header of the run-time's, 128 bytes in this version; it is found from the
// object's address backwards, so more room does no harm.
constexpr std::size_t header_bytes = 256;
constexpr std::size_t slot_bytes = 1024;
constexpr std::size_t slots = 64;

struct alignas(16) Slot {
    unsigned char bytes[slot_bytes];
};

Slot reserve[slots];
std::atomic<bool> taken[slots];

void* take_slot(std::size_t size) {
    if (size > slot_bytes) return nullptr;
    for (std::size_t i = 0; i < slots; ++i) {
        if (!taken[i].exchange(true)) return reserve[i].bytes;
    }
    return nullptr;
}

void give_back(void* block) {
    auto* slot = static_cast<Slot*>(block);
    if (slot >= reserve && slot < reserve + slots) {
        taken[slot - reserve] = false;
    } else {
        std::free(block);
    }
}

// Zeroed, as the run-time's own; the program stops where there is none, as with the run-time's own.
void* allocate(std::size_t size) {
    void* block = std::malloc(size);
    if (!block) block = take_slot(size);
    if (!block) std::terminate();
    return std::memset(block, 0, size);
}

// ---- What a thread keeps of its exceptions ----

// As the C++ ABI has it.
struct ThreadExceptions {
    void* caught;
    unsigned int uncaught;
};

constexpr std::size_t thread_slots = 256;
ThreadExceptions thread_reserve[thread_slots];
std::atomic<std::size_t> threads_in_reserve;

void WINAPI forget_thread(void* block) {
    auto* exceptions = static_cast<ThreadExceptions*>(block);
    if (exceptions < thread_reserve || exceptions >= thread_reserve + thread_slots) std::free(block);
}

// Made when the module is loaded, given back when it goes.
class ThreadIndex {
public:
    ThreadIndex() : index_(FlsAlloc(forget_thread)) {}
    ~ThreadIndex() { FlsFree(index_); }
    DWORD get() const { return index_; }

private:
    DWORD index_;
};

// Before everything else of the module: other initialisers may throw.
__attribute__((init_priority(101))) const ThreadIndex thread_index;

ThreadExceptions* new_thread() {
    auto* block = static_cast<ThreadExceptions*>(std::calloc(1, sizeof(ThreadExceptions)));
    if (!block) {
        const std::size_t next = threads_in_reserve++;
        if (next >= thread_slots) std::terminate();
        block = &thread_reserve[next];
    }
    FlsSetValue(thread_index.get(), block);
    return block;
}

}  // namespace

extern "C" {

void* __cxa_allocate_exception(std::size_t size) noexcept {
    return static_cast<unsigned char*>(allocate(size + header_bytes)) + header_bytes;
}

void __cxa_free_exception(void* object) noexcept { give_back(static_cast<unsigned char*>(object) - header_bytes); }

// What std::rethrow_exception throws: a header without an object.
void* __cxa_allocate_dependent_exception() noexcept { return allocate(header_bytes); }

void __cxa_free_dependent_exception(void* block) noexcept { give_back(block); }

void* __cxa_get_globals() noexcept {
    void* known = FlsGetValue(thread_index.get());
    return known ? known : new_thread();
}

void* __cxa_get_globals_fast() noexcept { return __cxa_get_globals(); }
}
