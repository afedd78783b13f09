// What tells a changed file from an unchanged one, without a look into it.
#ifndef TTS_ENGINE_FILE_STAMP_H
#define TTS_ENGINE_FILE_STAMP_H

#include <cstdint>
#include <string>

namespace tts {

// Times are counted as finely as the system does, from any point.
struct FileStamp {
    std::uint64_t device = 0, file = 0;
    std::uint64_t size = 0;
    std::int64_t written = 0;  // the bytes
    std::int64_t changed = 0;  // the bytes, or what belongs to the file
    bool young = true;         // it changed within the last seconds: it may change again without another stamp

    // The same state of the same file, as far as a stamp tells.
    bool is_same_as(const FileStamp& other) const {
        return device == other.device && file == other.file && size == other.size && written == other.written &&
               changed == other.changed;
    }
};

// Clocks of file systems tick at least this often; FAT's ticks every two seconds.
constexpr int longest_tick_seconds = 3;

// The stamp of the file of this name, in UTF-8. False if there is none.
bool get_stamp(const std::string& name, FileStamp& stamp);

}  // namespace tts

#endif
