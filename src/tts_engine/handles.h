// The handles that callers hold.
//
// A handle is a number that is never used twice, so a handle that was given back, or that never was one, is known for
// what it is. What it stands for is shared: a voice keeps its library in use and a streamer its voice, whatever is
// given back first.
#ifndef TTS_ENGINE_HANDLES_H
#define TTS_ENGINE_HANDLES_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace tts {

// The last number that was used for a handle, of whichever kind.
inline std::atomic<std::uintptr_t> handle_number = 0;

template <typename Record, typename Handle>
class HandleTable {
public:
    Handle add(std::shared_ptr<Record> record) {
        const std::lock_guard<std::mutex> guard(lock_);
        const std::uintptr_t number = handle_number += step;
        records_.emplace(number, std::move(record));
        return reinterpret_cast<Handle>(number);
    }

    // Null for what is no handle in use.
    std::shared_ptr<Record> find(Handle handle) {
        const std::lock_guard<std::mutex> guard(lock_);
        const auto found = records_.find(reinterpret_cast<std::uintptr_t>(handle));
        return found == records_.end() ? nullptr : found->second;
    }

    // Takes the handle out of use.
    std::shared_ptr<Record> remove(Handle handle) {
        const std::lock_guard<std::mutex> guard(lock_);
        const auto found = records_.find(reinterpret_cast<std::uintptr_t>(handle));
        if (found == records_.end()) return nullptr;
        std::shared_ptr<Record> record = std::move(found->second);
        records_.erase(found);
        return record;
    }

private:
    static constexpr std::uintptr_t step = 16;
    std::mutex lock_;
    std::unordered_map<std::uintptr_t, std::shared_ptr<Record>> records_;
};

}  // namespace tts

#endif
