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

// Each side prints the microseconds until its first audio, and the bytes that it holds when it is idle again.
void print_result(BenchClock::duration time, double bytes) { std::printf("%.0f %.0f\n", microseconds(time), bytes); }

void measure_nelva() {
    const double before = own_bytes();
    const auto start = BenchClock::now();
    BenchToken token(NELVA_BENCH_DATA, NELVA_BENCH_VOICE);
    BenchEngine engine(
        &token, reinterpret_cast<BenchEngine::GetClassObject>(function(NELVA_BENCH_SERVER, "DllGetClassObject")));
    BenchSite site;
    engine.speak(sentence, &site);
    if (site.bytes == 0) fail("Speak gives no audio");
    print_result(site.first_write - start, own_bytes() - before);
}

void measure_bare() {
    const double before = own_bytes();
    const auto start = BenchClock::now();
    const auto first_audio = reinterpret_cast<BareFirstAudio>(function(NELVA_BENCH_BARE_MODULE, bare_first_audio_name));
    if (!first_audio(NELVA_BENCH_DATA, "The morning train left the station four minutes late.")) {
        fail("espeak-ng gives no audio");
    }
    print_result(BenchClock::now() - start, own_bytes() - before);
}

struct Result {
    double time = 0;
    double bytes = 0;
};

// Runs this program for one side.
Result measured(const std::string& program, const char* side) {
    Result result;
    FILE* child = popen(("'" + program + "' --side " + side).c_str(), "r");
    if (!child || std::fscanf(child, "%lf %lf", &result.time, &result.bytes) != 2 || pclose(child) != 0) {
        fail(std::string("cannot measure ") + side);
    }
    return result;
}

// Both sides take turns; the fastest counts, for what else the machine does makes a turn slower and never faster.
int compare(const std::string& program) {
    constexpr int turns = 50;
    Result ours = measured(program, "nelva");
    Result bare = measured(program, "bare");
    for (int i = 1; i < turns; ++i) {
        ours.time = std::min(ours.time, measured(program, "nelva").time);
        bare.time = std::min(bare.time, measured(program, "bare").time);
    }
    std::printf("from loading to the first audio: nelva %.0f us, bare espeak-ng %.0f us\n", ours.time, bare.time);
    print_ratio_heading();
    const bool quick =
        print_ratio("loading, set-up and first audio against bare espeak-ng's", ours.time / bare.time, 1.5);
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
