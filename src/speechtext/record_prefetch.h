// Walks over many records ask for the memory of each a little ahead: a record is large, and a long text's records stand
// all over the heap, so that waiting for memory would be most of the work. A hint only; nothing is read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "speechtext/attributes.h"
#include "speechtext/attrsrecord.h"

// To be called with each index of the walk, ascending.
inline void prefetch_records_behind(std::span<const SpeechtextAttrsRecord> records, std::size_t index) {
    constexpr std::size_t ahead = 8;
    constexpr std::size_t cache_line = 64;
    if (index + ahead >= records.size()) return;
    const auto address = reinterpret_cast<std::uintptr_t>(records[index + ahead].attrs);
    for (std::size_t offset = 0; offset < sizeof(SpeechtextTextAttrs); offset += cache_line) {
        __builtin_prefetch(reinterpret_cast<const void*>(address + offset));
    }
}
