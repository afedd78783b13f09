// The shipped synthesiser against bare espeak-ng on the same sentences: processor time for a text, and the time until
// the first audio is there. And the most memory that a long document takes.
#include <malloc.h>

#include <fstream>
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

// A single letter, as a person who types hears it.
bool compare_letter() {
    constexpr int turns = 1000;
    std::vector<double> ours, bare;
    for (int i = 0; i < turns; ++i) {
        ours.push_back(first_of_engine(opening + std::string("a") + closing));
        bare.push_back(first_audio_of_bare("a"));
    }
    std::printf("single letter: engine %.0f us, bare espeak-ng %.0f us in the median\n", at(ours, 0.5), at(bare, 0.5));
    return print_ratio("single letter, engine against bare, median", at(ours, 0.5) / at(bare, 0.5), 1.0);
}

// How much later a first sound comes while another voice is in the middle of a sentence of 300 characters, in
// milliseconds.
bool print_delay_by_another_voice() {
    constexpr int turns = 200;
    const tts_voice other = tts_load_voice(tts_create(), NELVA_BENCH_DATA, NELVA_BENCH_VOICE);
    std::string sentence = "the next word";
    while (sentence.size() < 290) sentence += " and the next word";
    const std::string document = opening + text_of(1) + closing;
    std::vector<double> alone, beside;
    for (int i = 0; i < turns; ++i) {
        alone.push_back(first_of_engine(document));
        const tts_streamer speaking = tts_streamer_start(other, sentence.c_str(), -1.0f);
        tts_wave_delete(tts_streamer_synth(speaking, 2205));
        beside.push_back(first_of_engine(document));
        tts_streamer_stop(speaking);
    }
    tts_unload_voice(other);
    const double delay = at(beside, 0.5) - at(alone, 0.5);
    return print_ratio("delay of a first sound by another voice's sentence, ms, median", delay / 1000, 5);
}

// A field of the process's status, in bytes.
std::size_t process_memory(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string name, value, rest; status >> name >> value && std::getline(status, rest);) {
        if (name == field) return 1024 * std::stoul(value);
    }
    fail("the system does not tell the process's memory");
}

void take_records(tts_streamer streamer, int count) {
    for (int i = 0; i < count; ++i) {
        tts_wave* wave = tts_streamer_synth(streamer, 22050);
        if (wave == nullptr) return;
        tts_wave_delete(wave);
    }
}

// What a document adds to the process at most, for each of its bytes: its beginning is spoken, then what is around
// places all over it, then its end.
double peak_memory_of(const std::string& document, int sentences) {
    malloc_trim(0);                                 // memory that was freed before would hide what is taken now
    std::ofstream("/proc/self/clear_refs") << "5";  // the high-water mark starts here
    const std::size_t before = process_memory("VmRSS:");
    const tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    take_records(streamer, 20);
    for (int i = 0; i < 10; ++i) {
        if (tts_streamer_jump(streamer, sentences / 10) != 0) fail("the jump was not made");
        take_records(streamer, 5);
    }
    take_records(streamer, 1000);
    tts_streamer_stop(streamer);
    return static_cast<double>(process_memory("VmHWM:") - before) / static_cast<double>(document.size());
}

}  // namespace

int main(int argc, char** argv) {
    load_voice();
    set_up_bare(NELVA_BENCH_DATA);
    repeated(benchmark::RegisterBenchmark("speak/engine", whole_engine));
    repeated(benchmark::RegisterBenchmark("speak/bare", whole_bare));
    int result = run_benchmarks_and_print_ratios(
        argc, argv,
        {{"20 sentences, engine against bare espeak-ng, processor time", "speak/engine", "speak/bare", 1, 1.05}});
    for (const int count : {1, 1000, 100000}) {
        const std::string document = document_of(count);
        // In the longest text both sides look for its end first, and that is most of the time.
        const double limit = count == 100000 ? 1.1 : 1.0;
        result |= compare_first_audio("engine", count, limit, 1.25, [&document] { return first_of_engine(document); })
                      ? 0
                      : 1;
    }
    result |= compare_letter() ? 0 : 1;
    result |= print_delay_by_another_voice() ? 0 : 1;
    const int sentences = static_cast<int>(10'000'000 / (text_of(1000).size() / 1000));
    const double memory = peak_memory_of(document_of(sentences), sentences);
    result |= print_ratio("peak memory per document byte, 10 MB", memory, 8) ? 0 : 1;
    return result;
}
