// A set of many short strings that is built once: each has a number, in the order in which they were added.
//
// The strings are copied into large blocks, so that one of them costs no allocation of its own. The hash has a secret
// of the process in it: nobody can write a file whose strings all meet in one place of the table.
#ifndef TTS_ENGINE_STRING_TABLE_H
#define TTS_ENGINE_STRING_TABLE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace tts {

// Copies of strings, which stay where they are as long as the arena lives, also when it is moved.
class StringArena {
public:
    std::string_view keep(std::string_view text);

private:
    std::vector<std::unique_ptr<char[]>> blocks_;
    char* free_ = nullptr;
    std::size_t left_ = 0;
};

class StringTable {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    // The string's number, and whether it is new.
    std::pair<std::uint32_t, bool> add(std::string_view text);

    // Its number, or `none`.
    std::uint32_t find(std::string_view text) const;

    bool empty() const { return keys_.empty(); }

private:
    struct Key {
        std::string_view text;
        std::uint64_t hash;
    };

    std::size_t slot_of(std::string_view text, std::uint64_t hash) const;
    void grow();

    StringArena arena_;
    std::vector<Key> keys_;
    std::vector<std::uint32_t> slots_;  // numbers of keys; a power of two of them, at most half used
};

}  // namespace tts

#endif
