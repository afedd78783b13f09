// The records that go to the caller.
#ifndef TTS_ENGINE_WAVE_H
#define TTS_ENGINE_WAVE_H

#include <cstdint>
#include <deque>
#include <span>
#include <string>

#include "tts_engine/tts_engine.h"

namespace tts {

// An event on its way to a record.
struct OutputEvent {
    std::uint32_t type;    // one of tts_event_type
    std::uint64_t sample;  // from the document's first sample
    std::uint32_t text_begin = 0;
    std::uint32_t text_end = 0;
    const char* viseme = nullptr;  // a label that lives forever
    std::string mark;              // the name of a mark
};

// A record in one block, with copies of all: samples `first` and on, and the first `count` events, counted from there.
// Throws std::bad_alloc.
tts_wave* make_wave(std::span<const std::int16_t> samples, const std::deque<OutputEvent>& events, std::size_t count,
                    std::uint64_t first);

void delete_wave(tts_wave* wave);

}  // namespace tts

#endif
