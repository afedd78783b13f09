// Packing records. See wave.h.
#include "tts_engine/wave.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace tts {
namespace {

const char* pack_label(const OutputEvent& event, char*& names) {
    if (event.type != TTS_EVENT_MARK) return event.viseme;
    const char* label = names;
    std::memcpy(names, event.mark.c_str(), event.mark.size() + 1);
    names += event.mark.size() + 1;
    return label;
}

}  // namespace

tts_wave* make_wave(std::span<const std::int16_t> samples, const std::deque<OutputEvent>& events, std::size_t count,
                    std::uint64_t first) {
    std::size_t names_size = 0;
    for (std::size_t i = 0; i < count; ++i) names_size += events[i].mark.size() + 1;
    const std::size_t events_size = count * sizeof(tts_wave_event);
    const std::size_t samples_size = samples.size() * sizeof(std::int16_t);
    const std::size_t size = sizeof(tts_wave) + events_size + samples_size + names_size;
    // Record, events, samples, names: each part's alignment is a divisor of the one's before it.
    auto* block = static_cast<char*>(::operator new(size));
    std::memset(block, 0, size);
    auto* packed = reinterpret_cast<tts_wave_event*>(block + sizeof(tts_wave));
    char* audio = block + sizeof(tts_wave) + events_size;
    char* names = audio + samples_size;
    if (!samples.empty()) std::memcpy(audio, samples.data(), samples_size);
    for (std::size_t i = 0; i < count; ++i) {
        const OutputEvent& event = events[i];
        packed[i].type = event.type;
        packed[i].label = pack_label(event, names);
        packed[i].text_begin = event.text_begin;
        packed[i].text_end = event.text_end;
        packed[i].sample_offset = static_cast<std::uint32_t>(event.sample - std::min(event.sample, first));
    }
    auto* wave = reinterpret_cast<tts_wave*>(block);
    wave->sample_count = static_cast<std::uint32_t>(samples.size());
    wave->samples = reinterpret_cast<const std::int16_t*>(audio);
    wave->event_count = static_cast<std::uint32_t>(count);
    wave->events = packed;
    return wave;
}

void delete_wave(tts_wave* wave) { ::operator delete(wave); }

}  // namespace tts
