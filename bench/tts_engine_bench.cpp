// The shipped synthesiser against bare espeak-ng on the same sentences: processor time for a text, and the time until
// the first audio is there. espeak-ng itself is linked into this program a second time; it and the synthesiser share
// nothing.

#include <espeak-ng/espeak_ng.h>
#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "ratio_table.h"
#include "tts_engine/tts_engine.h"

namespace {

constexpr char opening[] =
    "<speak version=\"1.0\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"en\"><mark name=\"P0\"/>";
constexpr char closing[] = "</speak>";

const char* const sentences[] = {
    "The morning train left the station four minutes late, and nobody on the platform seemed to mind. ",
    "She counted 27 boxes, wrote the number down, and locked the door behind her. ",
    "When did you last see the old bridge from this side of the river? ",
    "Nothing in the letter explained why the garden had been left to the neighbours. ",
    "Bread, butter, salt and a little patience are all that this recipe needs. ",
};

std::string text_of(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += sentences[static_cast<std::size_t>(i) % std::size(sentences)];
    return text;
}

std::string document_of(int count) { return opening + text_of(count) + closing; }

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "tts_engine_bench: %s\n", what);
    std::exit(1);
}

tts_voice voice;
bool wants_first_only;
std::size_t heard;

int take(short* samples, int count, espeak_EVENT*) {
    if (samples != nullptr && count > 0) heard += static_cast<std::size_t>(count);
    return wants_first_only && heard > 0;
}

void set_up() {
    voice = tts_load_voice(tts_create(), NELVA_BENCH_DATA, NELVA_BENCH_VOICE);
    if (voice == nullptr) fail(tts_errmsg());
    if (espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, NELVA_BENCH_DATA, 0) != 22050) fail("espeak-ng does not start");
    if (espeak_SetVoiceByName("en-us") != EE_OK) fail("espeak-ng has no voice en-us");
    espeak_SetSynthCallback(take);
}

void speak_bare(const std::string& text, bool first_only) {
    heard = 0;
    wants_first_only = first_only;
    espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8 | espeakENDPAUSE, nullptr,
                 nullptr);
    if (heard == 0) fail("espeak-ng gives no audio");
}

void speak_whole(const std::string& document) {
    const tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    std::size_t samples = 0;
    while (tts_wave* wave = tts_streamer_synth(streamer, 2205)) {
        samples += wave->sample_count;
        tts_wave_delete(wave);
    }
    if (samples == 0) fail(tts_errmsg());
    tts_streamer_stop(streamer);
}

void whole_engine(benchmark::State& state) {
    const std::string document = document_of(20);
    for (auto _ : state) speak_whole(document);
}

void whole_bare(benchmark::State& state) {
    const std::string text = text_of(20);
    for (auto _ : state) speak_bare(text, false);
}

using Clock = std::chrono::steady_clock;

double microseconds_since(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

double first_of_engine(const std::string& document) {
    const auto start = Clock::now();
    const tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    tts_wave* wave = tts_streamer_synth(streamer, 2205);
    const double time = microseconds_since(start);
    if (wave == nullptr || wave->sample_count == 0) fail(tts_errmsg());
    tts_wave_delete(wave);
    tts_streamer_stop(streamer);
    return time;
}

double first_of_bare(const std::string& text) {
    const auto start = Clock::now();
    speak_bare(text, true);
    return microseconds_since(start);
}

double at(std::vector<double> times, double part) {
    std::sort(times.begin(), times.end());
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
}

// Both sides take turns, so that what else the machine does meets both.
bool compare_first_audio(int count) {
    constexpr int runs = 1000;
    const std::string document = document_of(count);
    const std::string text = text_of(count);
    std::vector<double> engine;
    std::vector<double> bare;
    for (int i = 0; i < runs; ++i) {
        engine.push_back(first_of_engine(document));
        bare.push_back(first_of_bare(text));
    }
    const std::string of = "first audio, " + std::to_string(count) + " sentences, engine against bare: ";
    std::printf("first audio, %d sentences: engine %.0f us, bare espeak-ng %.0f us in the median\n", count,
                at(engine, 0.5), at(bare, 0.5));
    const bool median = print_ratio((of + "median").c_str(), at(engine, 0.5) / at(bare, 0.5), 2);
    const bool late = print_ratio((of + "99th percentile").c_str(), at(engine, 0.99) / at(bare, 0.99), 2);
    return median && late;
}

}  // namespace

int main(int argc, char** argv) {
    set_up();
    repeated(benchmark::RegisterBenchmark("speak/engine", whole_engine));
    repeated(benchmark::RegisterBenchmark("speak/bare", whole_bare));
    int result = run_benchmarks_and_print_ratios(
        argc, argv,
        {{"20 sentences, engine against bare espeak-ng, processor time", "speak/engine", "speak/bare", 1, 1.10}});
    for (const int count : {1, 1000, 100000}) result |= compare_first_audio(count) ? 0 : 1;
    return result;
}
