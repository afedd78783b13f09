// An engine at work: its library and a voice, and a document that it speaks, as the server uses them. What is not as it
// must be becomes a finding.
#ifndef NELVA_TOOLS_ENGINE_CHECK_SPEAKING_H
#define NELVA_TOOLS_ENGINE_CHECK_SPEAKING_H

#include <cstdint>
#include <string>

#include "tools/engine_check/engine_checks.h"
#include "tools/engine_check/findings.h"
#include "tools/engine_check/record_listener.h"

namespace engine_check {

constexpr std::uint32_t usual_samples = 2205;

// Everything that one check works with.
struct Bench {
    const EngineFunctions& engine;
    const VoiceArguments& arguments;
    Findings& findings;

    // The engine's own message about the last failure.
    std::string message() const;

    // The strings are overwritten as soon as the call is over.
    tts_voice load(tts_handle handle, std::string lib_path, std::string vox_path) const;
};

// A library and a voice, given back in the server's order.
class Voice {
public:
    explicit Voice(const Bench& bench);
    ~Voice();
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;
    tts_voice get() const { return voice_; }

private:
    const EngineFunctions& engine_;
    tts_handle handle_;
    tts_voice voice_ = nullptr;
};

// One document being spoken.
class Speaking {
public:
    Speaking(const Bench& bench, tts_voice voice, std::string document);
    ~Speaking();
    Speaking(const Speaking&) = delete;
    Speaking& operator=(const Speaking&) = delete;

    // One record; false at the end.
    bool step(std::uint32_t samples = usual_samples);

    // All that comes.
    Heard& rest(std::uint32_t samples = usual_samples);

    bool jump(std::int32_t count);

    Heard& heard() { return listener_.heard(); }

private:
    const Bench& bench_;
    std::string document_;
    const std::string written_;
    RecordListener listener_;
    tts_streamer streamer_ = nullptr;
    int empty_ = 0;
};

}  // namespace engine_check

#endif
