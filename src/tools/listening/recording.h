// A voice of any module with the twelve functions, and everything that it says in a document.
#ifndef NELVA_TOOLS_LISTENING_RECORDING_H
#define NELVA_TOOLS_LISTENING_RECORDING_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/engine_check/engine_module.h"

namespace listening {

using engine_check::EngineFunctions;

constexpr std::uint32_t usual_samples = 2205;  // what the server asks for at a time

struct Event {
    std::uint32_t type;  // one of tts_event_type
    std::string label;
    std::uint32_t begin, end;  // bytes of the document
    std::uint64_t sample;      // from the document's first
};

struct Recording {
    std::vector<std::int16_t> samples;
    std::vector<Event> events;  // in the order in which they came
    int misplaced = 0;          // events of a record without samples that are not at its offset 0

    std::vector<Event> of(std::uint32_t type) const;
};

// A library of the module and one voice. The module's functions must outlive it.
class ListenedVoice {
public:
    // Throws std::runtime_error with the module's own message if the voice cannot be loaded.
    ListenedVoice(const EngineFunctions& engine, const std::string& lib_path, const std::string& vox_path);
    ~ListenedVoice();
    ListenedVoice(const ListenedVoice&) = delete;
    ListenedVoice& operator=(const ListenedVoice&) = delete;

    // Samples a second, from the end of the voice's name.
    double rate() const { return rate_; }

    // `keep_on` is asked after each record whether the rest is wanted too.
    using KeepOn = std::function<bool(const Recording&)>;

    // Throws std::runtime_error if the module refuses the document or does not come to an end.
    Recording speak(const std::string& document, std::uint32_t samples = usual_samples,
                    const KeepOn& keep_on = {}) const;

private:
    [[noreturn]] void fail(const std::string& what) const;
    void take(Recording& recording, const tts_wave& wave) const;

    const EngineFunctions& engine_;
    double rate_;
    tts_handle handle_;
    tts_voice voice_;
};

}  // namespace listening

#endif
