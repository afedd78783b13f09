// A thread with a small stack. Hosts speak on threads of their own, and some make them with 256 kB: no input may need
// more. The sanitizers' frames are larger than those of a release, so what passes here has room to spare there.
#pragma once

#include <pthread.h>

#include <cstddef>

#include "fuzz/property.h"

constexpr std::size_t small_stack = std::size_t{256} * 1024;

// Runs `task()` to its end on a thread with that stack.
template <typename Task>
void on_small_stack(Task task) {
    const auto start = [](void* argument) -> void* {
        (*static_cast<Task*>(argument))();
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_t thread;
    property(pthread_attr_init(&attributes) == 0, "a thread's attributes can be made");
    property(pthread_attr_setstacksize(&attributes, small_stack) == 0, "a thread's stack can be small");
    property(pthread_create(&thread, &attributes, start, &task) == 0, "a thread can be started");
    property(pthread_attr_destroy(&attributes) == 0 && pthread_join(thread, nullptr) == 0, "the thread ends");
}
