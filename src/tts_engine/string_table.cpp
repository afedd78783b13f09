// Blocks of strings, and a hash table with open addressing over them. See string_table.h.
#include "tts_engine/string_table.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace tts {
namespace {

constexpr std::size_t block_size = 64 * 1024;
constexpr std::size_t first_slots = 64;

std::uint64_t secret() {
    static const std::uint64_t it = [] {
        std::random_device source;
        return (std::uint64_t{source()} << 32 | source()) | 1;
    }();
    return it;
}

std::uint64_t mixed(std::uint64_t hash, std::uint64_t part) {
    hash = (hash ^ part) * secret();
    hash ^= hash >> 29;
    hash *= 0x9E3779B97F4A7C15u;
    return hash ^ hash >> 32;
}

std::uint64_t hash_of(std::string_view text) {
    std::uint64_t hash = mixed(secret(), text.size());
    while (!text.empty()) {
        std::uint64_t part = 0;
        const std::size_t size = std::min(text.size(), sizeof part);
        std::memcpy(&part, text.data(), size);
        hash = mixed(hash, part);
        text.remove_prefix(size);
    }
    return hash;
}

}  // namespace

std::string_view StringArena::keep(std::string_view text) {
    if (text.size() > left_) {
        // A long string has a block of its own, and what is left of the last one stays in use.
        const bool is_long = text.size() > block_size / 4;
        const std::size_t size = is_long ? text.size() : block_size;
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
        char* const block = blocks_.back().get();
        if (is_long) {
            std::memcpy(block, text.data(), text.size());
            return {block, text.size()};
        }
        free_ = block;
        left_ = size;
    }
    if (text.empty()) return {};
    std::memcpy(free_, text.data(), text.size());
    const std::string_view kept(free_, text.size());
    free_ += text.size();
    left_ -= text.size();
    return kept;
}

// Where the string is, or the free slot where it would be.
std::size_t StringTable::slot_of(std::string_view text, std::uint64_t hash) const {
    std::size_t slot = hash & (slots_.size() - 1);
    while (slots_[slot] != none) {
        const Key& key = keys_[slots_[slot]];
        if (key.hash == hash && key.text == text) break;
        slot = (slot + 1) & (slots_.size() - 1);
    }
    return slot;
}

void StringTable::grow() {
    std::vector<std::uint32_t> slots(std::max(first_slots, slots_.size() * 2), none);
    for (std::uint32_t i = 0; i < keys_.size(); ++i) {
        std::size_t slot = keys_[i].hash & (slots.size() - 1);
        while (slots[slot] != none) slot = (slot + 1) & (slots.size() - 1);
        slots[slot] = i;
    }
    slots_ = std::move(slots);
}

std::pair<std::uint32_t, bool> StringTable::add(std::string_view text) {
    if (keys_.size() * 2 >= slots_.size()) grow();
    const std::uint64_t hash = hash_of(text);
    const std::size_t slot = slot_of(text, hash);
    if (slots_[slot] != none) return {slots_[slot], false};
    const auto number = static_cast<std::uint32_t>(keys_.size());
    keys_.push_back({arena_.keep(text), hash});
    slots_[slot] = number;
    return {number, true};
}

std::uint32_t StringTable::find(std::string_view text) const {
    if (slots_.empty()) return none;
    return slots_[slot_of(text, hash_of(text))];
}

}  // namespace tts
