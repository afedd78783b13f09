// Calls of the twelve functions, in the server's order. See recording.h.
#include "tools/listening/recording.h"

#include <algorithm>
#include <stdexcept>

namespace listening {
namespace {

constexpr double longest_seconds = 30 * 60;  // no document that is measured takes so long
constexpr int most_empty_records = 100000;

double rate_of(const std::string& vox_path) {
    if (vox_path.ends_with("16i-mf")) return 16000;
    return vox_path.ends_with("8v") ? 8000 : 22050;
}

// Ends the document, however its reading ends.
struct Streamer {
    const EngineFunctions& engine;
    tts_streamer streamer;
    ~Streamer() { engine.stop(streamer); }
};

}  // namespace

std::vector<Event> Recording::of(std::uint32_t type) const {
    std::vector<Event> result;
    std::copy_if(events.begin(), events.end(), std::back_inserter(result),
                 [type](const Event& event) { return event.type == type; });
    return result;
}

ListenedVoice::ListenedVoice(const EngineFunctions& engine, const std::string& lib_path, const std::string& vox_path)
    : engine_(engine), rate_(rate_of(vox_path)), handle_(engine.create()), voice_(nullptr) {
    if (handle_ == nullptr) fail("the library does not start");
    voice_ = engine_.load_voice(handle_, lib_path.c_str(), vox_path.c_str());
    if (voice_ != nullptr) return;
    const std::string why = engine_.errmsg();
    engine_.destroy(handle_);
    throw std::runtime_error("\"" + vox_path + "\" cannot be loaded: " + why);
}

ListenedVoice::~ListenedVoice() {
    engine_.unload_voice(voice_);
    engine_.destroy(handle_);
}

void ListenedVoice::fail(const std::string& what) const { throw std::runtime_error(what + ": " + engine_.errmsg()); }

void ListenedVoice::take(Recording& recording, const tts_wave& wave) const {
    const std::uint64_t first = recording.samples.size();
    for (std::uint32_t i = 0; i < wave.event_count; ++i) {
        const tts_wave_event& event = wave.events[i];
        if (wave.sample_count == 0 && event.sample_offset != 0) ++recording.misplaced;
        recording.events.push_back({event.type, event.label == nullptr ? "" : event.label, event.text_begin,
                                    event.text_end, first + event.sample_offset});
    }
    recording.samples.insert(recording.samples.end(), wave.samples, wave.samples + wave.sample_count);
}

Recording ListenedVoice::speak(const std::string& document, std::uint32_t samples, const KeepOn& keep_on) const {
    engine_.dict_cleanup(voice_);
    const Streamer streamer{engine_, engine_.start(voice_, document.c_str(), -1.0f)};
    if (streamer.streamer == nullptr) fail("a document is refused");
    Recording recording;
    int empty = 0;
    while (tts_wave* const wave = engine_.synth(streamer.streamer, samples)) {
        empty = wave->sample_count == 0 ? empty + 1 : 0;
        take(recording, *wave);
        engine_.delete_wave(wave);
        if (keep_on && !keep_on(recording)) return recording;
        if (empty > most_empty_records || static_cast<double>(recording.samples.size()) > longest_seconds * rate_)
            throw std::runtime_error("a document does not end");
    }
    const std::string why = engine_.errmsg();
    if (!why.empty()) throw std::runtime_error("speaking fails: " + why);
    return recording;
}

}  // namespace listening
