// Runs a function on a thread with a small stack.
#ifndef TESTS_TTS_ENGINE_SMALL_STACK_H
#define TESTS_TTS_ENGINE_SMALL_STACK_H

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>

#if defined(_WIN32)
#include <windows.h>
#else
#include <pthread.h>
#endif

// The stack that must be enough for any input. AddressSanitizer makes frames larger and puts a red zone around each
// variable, so the tests that run under it have four times as much. The factor is an estimate.
constexpr std::size_t promised_stack = std::size_t{256} * 1024;
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t tested_stack = 4 * promised_stack;
#else
constexpr std::size_t tested_stack = promised_stack;
#endif

namespace small_stack {

#if defined(_WIN32)

inline DWORD WINAPI call(void* action) {
    (*static_cast<const std::function<void()>*>(action))();
    return 0;
}

inline void run(std::function<void()> action, std::size_t size = tested_stack) {
    HANDLE thread = CreateThread(nullptr, size, call, &action, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    ASSERT_NE(thread, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

#else

inline void* call(void* action) {
    (*static_cast<const std::function<void()>*>(action))();
    return nullptr;
}

inline void run(std::function<void()> action, std::size_t size = tested_stack) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, call, &action), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

#endif

}  // namespace small_stack

#endif
