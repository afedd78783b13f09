// What Speak costs beside the synthesiser: a scripted one gives silence with one event of each kind every 100 ms.
#include <benchmark/benchmark.h>

#include "bench_host.h"
#include "ratio_table.h"
#include "scripted_engine/scripted_engine.h"

namespace {

constexpr std::uint32_t chunks = 6000;  // ten minutes

void speak_scripted(benchmark::State& state) {
    const auto token = bench_token("lib", "bench22i");
    scripted_reset();
    tts_wave_event events[4] = {};
    events[0].type = TTS_EVENT_WORD;
    events[1].type = TTS_EVENT_SENTENCE;
    events[2].type = TTS_EVENT_MARK;
    events[2].label = "Bmark";
    events[3].type = TTS_EVENT_VISEME;
    events[3].label = "a";
    scripted_add_wave(2205, 0, events, 4);
    scripted_set_rounds(chunks);
    BenchEngine engine(token.get());
    for (auto _ : state) {
        BenchSite site;
        engine.speak(u"Silence.", &site);
        if (site.bytes != std::uint64_t{chunks} * 4410 || site.events != std::uint64_t{chunks} * 4)
            fail("speak_bench: audio or events are missing");
    }
}

class SpeedReporter : public RatioReporter {
public:
    // Seconds of audio for a second of processor time.
    double times_real_time() const {
        const double microseconds = fastest("speak/scripted");
        return microseconds == 0 ? 0 : chunks * 0.1 * 1e6 / microseconds;
    }
};

}  // namespace

int main(int argc, char** argv) {
    repeated(benchmark::RegisterBenchmark("speak/scripted", speak_scripted));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    SpeedReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double speed = reporter.times_real_time();
    if (speed == 0) return 0;
    print_ratio_heading();
    return print_ratio("20,000 times real time, against Speak with a scripted synthesiser", 20000 / speed, 1) ? 0 : 1;
}
