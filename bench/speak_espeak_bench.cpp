// The whole way from a host's Speak to its site, with the shipped synthesiser, against bare espeak-ng on the same
// sentences: processor time, time until the first audio, and how soon an abort is served.
#include <string>

#include "bare_espeak.h"
#include "bench_host.h"

namespace {

std::u16string wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

BenchEngine* engine;

void whole_speak(benchmark::State& state) {
    const std::u16string text = wide(text_of(20));
    for (auto _ : state) {
        BenchSite site;
        engine->speak(text, &site);
        if (site.bytes == 0) fail("Speak gives no audio");
    }
}

void whole_bare(benchmark::State& state) {
    const std::string text = text_of(20);
    for (auto _ : state) speak_bare(text, false);
}

double first_write(const std::u16string& text) {
    BenchSite site;
    site.abort_after_first_write = true;
    const auto start = BenchClock::now();
    engine->speak(text, &site);
    return microseconds(site.first_write - start);
}

// After the abort the chunk in hand is the last: 2205 samples of audio at the most, each of two bytes.
bool abort_is_served_with_the_chunk_in_hand() {
    BenchSite site;
    site.abort_after_first_write = true;
    engine->speak(wide(text_of(1000)), &site);
    return print_ratio("bytes written in all after an abort behind the first Write, in chunks",
                       static_cast<double>(site.bytes) / 4410, 2);
}

}  // namespace

int main(int argc, char** argv) {
    const auto token = bench_token(NELVA_BENCH_DATA, NELVA_BENCH_VOICE);
    BenchEngine our_engine(token.get());
    engine = &our_engine;
    set_up_bare(NELVA_BENCH_DATA);
    repeated(benchmark::RegisterBenchmark("speak/nelva", whole_speak));
    repeated(benchmark::RegisterBenchmark("speak/bare", whole_bare));
    int result = run_benchmarks_and_print_ratios(
        argc, argv,
        {{"Speak of 20 sentences against bare espeak-ng, processor time", "speak/nelva", "speak/bare", 1, 1.10}});
    for (const int count : {1, 1000}) {
        const std::u16string text = wide(text_of(count));
        result |= compare_first_audio("Speak", count, 2, 2, [&text] { return first_write(text); }) ? 0 : 1;
    }
    result |= abort_is_served_with_the_chunk_in_hand() ? 0 : 1;
    return result;
}
