// The blocks that a module asked for and has not given back.
#ifndef NELVA_TESTS_BLOCK_TABLE_H
#define NELVA_TESTS_BLOCK_TABLE_H

#include <cstddef>
#include <cstdint>
#include <mutex>

// A table with open addressing that needs no allocator of its own.
class BlockTable {
public:
    void add(void* block) {
        const std::lock_guard lock(mutex_);
        for (std::size_t slot = first_slot(block);; slot = (slot + 1) % size) {
            if (slots_[slot] && slots_[slot] != gone()) continue;
            slots_[slot] = block;
            ++live_;
            return;
        }
    }
    void remove(void* block) {
        const std::lock_guard lock(mutex_);
        for (std::size_t slot = first_slot(block); slots_[slot]; slot = (slot + 1) % size) {
            if (slots_[slot] != block) continue;
            slots_[slot] = gone();
            --live_;
            return;
        }
    }
    long live() {
        const std::lock_guard lock(mutex_);
        return live_;
    }

private:
    static constexpr std::size_t size = 1 << 20;
    static void* gone() { return reinterpret_cast<void*>(1); }
    static std::size_t first_slot(void* block) { return reinterpret_cast<std::uintptr_t>(block) / 16 % size; }

    std::mutex mutex_;
    void* slots_[size] = {};
    long live_ = 0;
};

#endif
