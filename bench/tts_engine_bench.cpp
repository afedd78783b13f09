// The shipped synthesiser against bare espeak-ng on the same sentences: processor time for a text, and the time until
// the first audio is there.
#include <string>

#include "bare_espeak.h"
#include "tts_engine/tts_engine.h"

namespace {

constexpr char opening[] =
    "<speak version=\"1.0\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"en\"><mark name=\"P0\"/>";
constexpr char closing[] = "</speak>";

std::string document_of(int count) { return opening + text_of(count) + closing; }

tts_voice voice;

void load_voice() {
    voice = tts_load_voice(tts_create(), NELVA_BENCH_DATA, NELVA_BENCH_VOICE);
    if (voice == nullptr) fail(tts_errmsg());
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

double first_of_engine(const std::string& document) {
    const auto start = BenchClock::now();
    const tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    tts_wave* wave = tts_streamer_synth(streamer, 2205);
    const double time = microseconds(BenchClock::now() - start);
    if (wave == nullptr || wave->sample_count == 0) fail(tts_errmsg());
    tts_wave_delete(wave);
    tts_streamer_stop(streamer);
    return time;
}

}  // namespace

int main(int argc, char** argv) {
    load_voice();
    set_up_bare(NELVA_BENCH_DATA);
    repeated(benchmark::RegisterBenchmark("speak/engine", whole_engine));
    repeated(benchmark::RegisterBenchmark("speak/bare", whole_bare));
    int result = run_benchmarks_and_print_ratios(
        argc, argv,
        {{"20 sentences, engine against bare espeak-ng, processor time", "speak/engine", "speak/bare", 1, 1.10}});
    for (const int count : {1, 1000, 100000}) {
        const std::string document = document_of(count);
        result |= compare_first_audio("engine", count, 2, [&document] { return first_of_engine(document); }) ? 0 : 1;
    }
    return result;
}
