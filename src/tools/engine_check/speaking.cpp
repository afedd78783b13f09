// Calls of the engine's functions, in the server's order. See speaking.h.
#include "tools/engine_check/speaking.h"

#include <algorithm>
#include <utility>

namespace engine_check {
namespace {

constexpr std::uint64_t too_long = 20ull * 60 * 22050;  // no check's document takes 20 minutes
constexpr int most_empty_records = 1000;

}  // namespace

std::string Bench::message() const {
    const char* text = engine.errmsg();
    findings.require(text != nullptr, "tts_errmsg gives null");
    return text == nullptr ? "" : text;
}

tts_voice Bench::load(tts_handle handle, std::string lib_path, std::string vox_path) const {
    const tts_voice voice = engine.load_voice(handle, lib_path.c_str(), vox_path.c_str());
    std::fill(lib_path.begin(), lib_path.end(), '#');
    std::fill(vox_path.begin(), vox_path.end(), '#');
    return voice;
}

Voice::Voice(const Bench& bench) : engine_(bench.engine), handle_(engine_.create()) {
    if (handle_ != nullptr) voice_ = bench.load(handle_, bench.arguments.lib_path, bench.arguments.vox_path);
    bench.findings.require(voice_ != nullptr, "the voice cannot be loaded once more: " + bench.message());
}

Voice::~Voice() {
    if (voice_ != nullptr) engine_.unload_voice(voice_);
    if (handle_ != nullptr) engine_.destroy(handle_);
}

Speaking::Speaking(const Bench& bench, tts_voice voice, std::string document)
    : bench_(bench), document_(std::move(document)), written_(document_), listener_(written_, bench.findings) {
    if (voice != nullptr) streamer_ = bench.engine.start(voice, document_.c_str(), -1.0f);
    if (voice != nullptr && streamer_ == nullptr)
        bench.findings.fault("tts_streamer_start gives null for a document: " + bench.message());
}

Speaking::~Speaking() {
    if (streamer_ != nullptr) bench_.engine.stop(streamer_);
    bench_.findings.require(document_ == written_, "the document was changed; it belongs to the caller");
}

bool Speaking::step(std::uint32_t samples) {
    if (streamer_ == nullptr) return false;
    tts_wave* const wave = bench_.engine.synth(streamer_, samples);
    if (wave == nullptr) return false;
    empty_ = wave->sample_count == 0 && wave->event_count == 0 ? empty_ + 1 : 0;
    listener_.take(*wave);
    bench_.engine.delete_wave(wave);
    return true;
}

Heard& Speaking::rest(std::uint32_t samples) {
    while (step(samples)) {
        if (heard().samples > too_long || empty_ > most_empty_records) {
            bench_.findings.fault("the document does not end: tts_streamer_synth never gives null");
            break;
        }
    }
    return heard();
}

bool Speaking::jump(std::int32_t count) {
    listener_.forget_order();
    return streamer_ != nullptr && bench_.engine.jump(streamer_, count) == 0;
}

}  // namespace engine_check
