// Pages that may not be read until they are, and espeak-ng's functions as the linker hands them over. See work.h.
#include "work.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "support/failing_new.h"
#include "tts_engine/espeak/espeak_stepper.h"

namespace {

std::size_t pages = 0;
std::size_t texts = 0;
std::size_t samples = 0;
std::size_t files = 0;

char* guarded = nullptr;
std::size_t guarded_size = 0;
struct sigaction usual;

std::size_t page_size() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

// A page of the document that is read for the first time; anything else is a crash as ever.
void on_fault(int, siginfo_t* info, void*) {
    auto* const at = static_cast<char*>(info->si_addr);
    if (at < guarded || at >= guarded + guarded_size) {
        sigaction(SIGSEGV, &usual, nullptr);
        return;
    }
    ++pages;
    char* const page = guarded + static_cast<std::size_t>(at - guarded) / page_size() * page_size();
    mprotect(page, page_size(), PROT_READ);
}

}  // namespace

WatchedDocument::WatchedDocument(std::string_view text) : size_(text.size()) {
    guarded_size = (size_ + 1 + page_size() - 1) / page_size() * page_size();
    void* block = mmap(nullptr, guarded_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) throw std::bad_alloc();
    guarded = text_ = static_cast<char*>(block);
    std::memcpy(text_, text.data(), size_);
    struct sigaction action {};
    action.sa_sigaction = on_fault;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSEGV, &action, &usual);
}

WatchedDocument::~WatchedDocument() {
    sigaction(SIGSEGV, &usual, nullptr);
    munmap(text_, guarded_size);
    guarded = nullptr;
    guarded_size = 0;
}

void WatchedDocument::forget() { mprotect(guarded, guarded_size, PROT_NONE); }

extern "C" {
int __real_espeak_stepper_begin(const char* text, const espeak_stepper_settings* settings);
int __wrap_espeak_stepper_begin(const char* text, const espeak_stepper_settings* settings);
int __wrap_espeak_stepper_begin(const char* text, const espeak_stepper_settings* settings) {
    ++texts;
    return __real_espeak_stepper_begin(text, settings);
}

size_t __real_espeak_stepper_fill(int16_t* out, size_t capacity, espeak_stepper_sink sink, void* context, int* done);
size_t __wrap_espeak_stepper_fill(int16_t* out, size_t capacity, espeak_stepper_sink sink, void* context, int* done);
size_t __wrap_espeak_stepper_fill(int16_t* out, size_t capacity, espeak_stepper_sink sink, void* context, int* done) {
    const size_t made = __real_espeak_stepper_fill(out, capacity, sink, context, done);
    samples += made;
    return made;
}

std::FILE* __real_fopen(const char* name, const char* mode);
std::FILE* __wrap_fopen(const char* name, const char* mode);
std::FILE* __wrap_fopen(const char* name, const char* mode) {
    ++files;
    return __real_fopen(name, mode);
}
}

void start_work() {
    pages = texts = samples = files = 0;
    failing_new::start();
}

Work work_done() {
    const failing_new::Count count = failing_new::count();
    return {count.allocations, count.bytes, pages, texts, samples, files};
}
