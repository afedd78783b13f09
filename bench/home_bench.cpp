// What a voice costs at home: loading the engine and setting a voice up to the first audio, against loading espeak-ng
// itself, and what a voice holds on to while nobody speaks.
//
// A library is loaded once in the life of a process, so each measurement is a process of its own: this program, called
// again with the side that it is to measure.
#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "bare_espeak_module.h"
#include "bench_host.h"
#include "ratio_table.h"

namespace {

constexpr char16_t sentence[] = u"The morning train left the station four minutes late.";

void* function(const char* library, const char* name) {
    void* module = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    void* found = module ? dlsym(module, name) : nullptr;
    if (!found) fail(dlerror());
    return found;
}

// Bytes of this process that are in memory and that it shares with nobody.
double own_bytes() {
    std::ifstream rollup("/proc/self/smaps_rollup");
    std::string word;
    double kilobytes = 0;
    while (rollup >> word) {
        double number = 0;
        if ((word == "Private_Clean:" || word == "Private_Dirty:") && rollup >> number) kilobytes += number;
    }
    if (kilobytes == 0) fail("the system does not tell how much memory is in use");
    return kilobytes * 1024;
}

// Each side prints the microseconds until it is loaded and until its first audio, and the bytes that it holds when it
// is idle again.
void print_result(BenchClock::duration loaded, BenchClock::duration heard, double bytes) {
    std::printf("%.0f %.0f %.0f\n", microseconds(loaded), microseconds(heard), bytes);
}

void measure_nelva() {
    const double before = own_bytes();
    const auto start = BenchClock::now();
    const auto token = bench_token(NELVA_BENCH_DATA, NELVA_BENCH_VOICE);
    BenchEngine engine(
        token.get(), reinterpret_cast<BenchEngine::GetClassObject>(function(NELVA_BENCH_SERVER, "DllGetClassObject")));
    const auto loaded = BenchClock::now();
    BenchSite site;
    engine.speak(sentence, &site);
    if (site.bytes == 0) fail("Speak gives no audio");
    print_result(loaded - start, site.first_write - start, own_bytes() - before);
}

void measure_bare() {
    const double before = own_bytes();
    const auto start = BenchClock::now();
    const auto load = reinterpret_cast<BareLoad>(function(NELVA_BENCH_BARE_MODULE, bare_load_name));
    const auto first_audio = reinterpret_cast<BareFirstAudio>(function(NELVA_BENCH_BARE_MODULE, bare_first_audio_name));
    if (!load(NELVA_BENCH_DATA)) fail("espeak-ng does not start");
    const auto loaded = BenchClock::now();
    if (!first_audio("The morning train left the station four minutes late.")) fail("espeak-ng gives no audio");
    const auto heard = BenchClock::now();
    print_result(loaded - start, heard - start, own_bytes() - before);
}

struct Result {
    double loaded = 0;
    double heard = 0;
    double bytes = 0;
};

// Runs this program for one side.
Result measured(const std::string& program, const char* side) {
    Result result;
    FILE* child = popen(("'" + program + "' --side " + side).c_str(), "r");
    if (!child || std::fscanf(child, "%lf %lf %lf", &result.loaded, &result.heard, &result.bytes) != 3 ||
        pclose(child) != 0) {
        fail(std::string("cannot measure ") + side);
    }
    return result;
}

// Both sides take turns; the fastest counts, for what else the machine does makes a turn slower and never faster.
void take_turn(const std::string& program, const char* side, Result* best) {
    const Result turn = measured(program, side);
    const bool first = best->heard == 0;
    best->loaded = first ? turn.loaded : std::min(best->loaded, turn.loaded);
    best->heard = first ? turn.heard : std::min(best->heard, turn.heard);
    best->bytes = turn.bytes;
}

int compare(const std::string& program) {
    constexpr int turns = 50;
    Result ours;
    Result bare;
    for (int i = 0; i < turns; ++i) {
        take_turn(program, "nelva", &ours);
        take_turn(program, "bare", &bare);
    }
    std::printf("nelva: loaded after %.0f us, first audio after %.0f us\n", ours.loaded, ours.heard);
    std::printf("bare espeak-ng: loaded after %.0f us, first audio after %.0f us\n", bare.loaded, bare.heard);
    print_ratio_heading();
    const bool quick = print_ratio("loading, set-up and first audio against bare espeak-ng's loading alone",
                                   ours.heard / bare.loaded, 1.3);
    print_ratio("the same against bare espeak-ng's loading and first audio", ours.heard / bare.heard, 0);
    const bool small = print_ratio("an idle voice that has spoken, its data included, in MB", ours.bytes / 1e6, 30);
    print_ratio("the same of bare espeak-ng", bare.bytes / 1e6, 0);
    return quick && small ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const bool child = argc == 3 && std::strcmp(argv[1], "--side") == 0;
    if (!child) return compare(argv[0]);  // Google Benchmark's options, if any, mean nothing here
    if (std::strcmp(argv[2], "nelva") == 0) {
        measure_nelva();
    } else {
        measure_bare();
    }
    return 0;
}
