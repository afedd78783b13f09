// What comes out of an engine, record by record, and whether each record is as it must be.
#ifndef NELVA_TOOLS_ENGINE_CHECK_RECORD_LISTENER_H
#define NELVA_TOOLS_ENGINE_CHECK_RECORD_LISTENER_H

#include <cstdint>
#include <string>
#include <vector>

#include "tools/engine_check/findings.h"
#include "tts_engine/tts_engine.h"

namespace engine_check {

// Words and sentences are the pieces of the document that their events name.
struct Heard {
    std::vector<std::string> words;
    std::vector<std::string> sentences;
    std::vector<std::string> marks;
    std::uint64_t samples = 0;
    std::uint64_t most_in_record = 0;
    bool any_sound = false;
};

// Both arguments must outlive it.
class RecordListener {
public:
    RecordListener(const std::string& document, Findings& findings) : document_(document), findings_(findings) {}

    void take(const tts_wave& wave);

    // After a jump words begin anywhere.
    void forget_order() { last_word_ = 0; }

    Heard& heard() { return heard_; }

private:
    void take_events(const tts_wave& wave);
    void take_event(const tts_wave_event& event);
    void take_viseme(const tts_wave_event& event);
    std::string text_of(const tts_wave_event& event, const std::string& what);

    const std::string& document_;
    Findings& findings_;
    Heard heard_;
    std::uint32_t last_word_ = 0;
};

}  // namespace engine_check

#endif
