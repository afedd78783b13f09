// The scripted synthesiser: a list of waves, a failure for each function, and a log of the calls.
#include "scripted_engine/scripted_engine.h"

#include <array>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "support/code_of.h"

namespace {

struct ScriptedEvent {
    tts_wave_event event;
    bool has_label;
    std::string label;
};

struct ScriptedWave {
    std::vector<std::int16_t> samples;
    std::vector<ScriptedEvent> events;
    std::vector<tts_wave_event> records;  // of `events`, with their labels
};

struct Failure {
    std::uint32_t in_calls = 0;  // 0: none
    bool for_good = false;
};

struct Script {
    std::vector<std::unique_ptr<ScriptedWave>> waves;
    std::uint32_t rounds = 1;
    std::array<Failure, SCRIPTED_CALLS> failures;
    std::array<std::uint32_t, SCRIPTED_CALLS> counts{};
    std::int32_t jump_result = 0;
    std::string message = "scripted failure";
    std::string log;
    std::string document;
};

// On the heap and never freed: a voice may outlive the other statics of the program.
Script& script() {
    static auto* instance = new Script;
    return *instance;
}

std::size_t live = 0;

// Counts the call and says whether it is to fail.
bool enter(scripted_call call, const std::string& line) {
    Script& s = script();
    ++s.counts[call];
    // The log is for tests of a few calls; a benchmark must not grow it without end.
    if (s.log.size() < 65536) s.log += line + "\n";
    Failure& failure = s.failures[call];
    if (failure.in_calls == 0) return false;
    if (failure.in_calls > 1) {
        --failure.in_calls;
        return false;
    }
    if (!failure.for_good) failure.in_calls = 0;
    return true;
}

const char* text(const char* string) { return string ? string : "(null)"; }

}  // namespace

struct tts_handle_record {};
struct tts_voice_record {};
struct tts_streamer_record {
    std::size_t next_wave = 0;
    std::uint32_t round = 0;
};

extern "C" {

void scripted_reset(void) { script() = Script(); }

void scripted_add_samples(const std::int16_t* samples, std::uint32_t count, const tts_wave_event* events,
                          std::uint32_t event_count) {
    auto wave = std::make_unique<ScriptedWave>();
    wave->samples.assign(samples, samples + count);
    for (std::uint32_t i = 0; i < event_count; ++i)
        wave->events.push_back({events[i], events[i].label != nullptr, events[i].label ? events[i].label : ""});
    for (const ScriptedEvent& event : wave->events) {
        wave->records.push_back(event.event);
        wave->records.back().label = event.has_label ? event.label.c_str() : nullptr;
    }
    script().waves.push_back(std::move(wave));
}

void scripted_add_wave(std::uint32_t count, std::int16_t value, const tts_wave_event* events,
                       std::uint32_t event_count) {
    const std::vector<std::int16_t> samples(count, value);
    scripted_add_samples(samples.data(), count, events, event_count);
}

void scripted_set_rounds(std::uint32_t rounds) { script().rounds = rounds; }

void scripted_fail(scripted_call call, std::uint32_t nth, int for_good) {
    script().failures[call] = {nth, for_good != 0};
}

void scripted_set_jump_result(std::int32_t result) { script().jump_result = result; }
void scripted_set_message(const char* message) { script().message = message; }
const char* scripted_log(void) { return script().log.c_str(); }
std::uint32_t scripted_count(scripted_call call) { return script().counts[call]; }
const char* scripted_document(void) { return script().document.c_str(); }
std::size_t scripted_live(void) { return live; }

tts_handle tts_create(void) {
    const ForeignCode guard;
    if (enter(SCRIPTED_CREATE, "tts_create")) return nullptr;
    ++live;
    return new tts_handle_record;
}

void tts_destroy(tts_handle handle) {
    const ForeignCode guard;
    enter(SCRIPTED_DESTROY, "tts_destroy");
    if (handle) --live;
    delete handle;
}

tts_voice tts_load_voice(tts_handle, const char* libPath, const char* voxPath) {
    const ForeignCode guard;
    if (enter(SCRIPTED_LOAD_VOICE, std::string("tts_load_voice ") + text(libPath) + " " + text(voxPath)))
        return nullptr;
    ++live;
    return new tts_voice_record;
}

void tts_unload_voice(tts_voice voice) {
    const ForeignCode guard;
    enter(SCRIPTED_UNLOAD_VOICE, "tts_unload_voice");
    if (voice) --live;
    delete voice;
}

void tts_dict_cleanup(tts_voice voice) {
    const ForeignCode guard;
    enter(SCRIPTED_DICT_CLEANUP, voice ? "tts_dict_cleanup" : "tts_dict_cleanup null");
}

std::int32_t tts_dict_load(tts_voice, const char* path) {
    const ForeignCode guard;
    return enter(SCRIPTED_DICT_LOAD, std::string("tts_dict_load ") + text(path)) ? -1 : 0;
}

tts_streamer tts_streamer_start(tts_voice, const char* ssml, float rate) {
    const ForeignCode guard;
    const bool fails = enter(SCRIPTED_STREAMER_START, "tts_streamer_start " + std::to_string(rate));
    script().document = text(ssml);
    if (fails) return nullptr;
    ++live;
    return new tts_streamer_record;
}

tts_wave* tts_streamer_synth(tts_streamer streamer, std::uint32_t samples) {
    const ForeignCode guard;
    if (enter(SCRIPTED_STREAMER_SYNTH, "tts_streamer_synth " + std::to_string(samples))) return nullptr;
    Script& s = script();
    if (s.waves.empty()) return nullptr;
    if (streamer->next_wave == s.waves.size()) {
        streamer->next_wave = 0;
        ++streamer->round;
    }
    if (streamer->round >= s.rounds) return nullptr;
    const ScriptedWave& from = *s.waves[streamer->next_wave++];
    ++live;
    auto* wave = new tts_wave();
    wave->sample_count = static_cast<std::uint32_t>(from.samples.size());
    wave->samples = from.samples.data();
    wave->event_count = static_cast<std::uint32_t>(from.records.size());
    wave->events = from.records.data();
    return wave;
}

std::int32_t tts_streamer_jump(tts_streamer, std::int32_t count) {
    const ForeignCode guard;
    if (enter(SCRIPTED_STREAMER_JUMP, "tts_streamer_jump " + std::to_string(count))) return -1;
    return script().jump_result;
}

std::int32_t tts_streamer_stop(tts_streamer streamer) {
    const ForeignCode guard;
    const bool fails = enter(SCRIPTED_STREAMER_STOP, "tts_streamer_stop");
    if (streamer) --live;
    delete streamer;
    return fails ? -1 : 0;
}

void tts_wave_delete(tts_wave* wave) {
    const ForeignCode guard;
    enter(SCRIPTED_WAVE_DELETE, "tts_wave_delete");
    if (wave) --live;
    delete wave;
}

const char* tts_errmsg(void) {
    const ForeignCode guard;
    return enter(SCRIPTED_ERRMSG, "tts_errmsg") ? nullptr : script().message.c_str();
}

}  // extern "C"
