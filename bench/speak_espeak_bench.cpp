// The whole way from a host's Speak to its site, with the shipped synthesiser, against bare espeak-ng on the same
// sentences: processor time, time until the first audio, and how soon an abort is served.
#include <espeak-ng/espeak_ng.h>
#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench_host.h"
#include "ratio_table.h"

namespace {

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

std::u16string wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

bool wants_first_only;
std::size_t heard;

int take(short* samples, int count, espeak_EVENT*) {
    if (samples && count > 0) heard += static_cast<std::size_t>(count);
    return wants_first_only && heard > 0;
}

void set_up_bare() {
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

double microseconds(BenchClock::duration time) { return std::chrono::duration<double, std::micro>(time).count(); }

double first_write(const std::u16string& text) {
    BenchSite site;
    site.abort_after_first_write = true;
    const auto start = BenchClock::now();
    engine->speak(text, &site);
    return microseconds(site.first_write - start);
}

double first_callback(const std::string& text) {
    const auto start = BenchClock::now();
    speak_bare(text, true);
    return microseconds(BenchClock::now() - start);
}

double at(std::vector<double> times, double part) {
    std::sort(times.begin(), times.end());
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
}

// Both sides take turns, so that what else the machine does meets both.
bool compare_first_audio(int count) {
    constexpr int runs = 1000;
    const std::string text = text_of(count);
    const std::u16string wide_text = wide(text);
    std::vector<double> ours;
    std::vector<double> bare;
    for (int i = 0; i < runs; ++i) {
        ours.push_back(first_write(wide_text));
        bare.push_back(first_callback(text));
    }
    std::printf("first audio, %d sentences: Speak %.0f us, bare espeak-ng %.0f us in the median\n", count,
                at(ours, 0.5), at(bare, 0.5));
    const std::string of = "first Write against bare first callback, " + std::to_string(count) + " sentences, ";
    const bool median = print_ratio((of + "median").c_str(), at(ours, 0.5) / at(bare, 0.5), 2);
    const bool late = print_ratio((of + "99th percentile").c_str(), at(ours, 0.99) / at(bare, 0.99), 2);
    return median && late;
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
    BenchToken token(NELVA_BENCH_DATA, NELVA_BENCH_VOICE);
    BenchEngine our_engine(&token);
    engine = &our_engine;
    set_up_bare();
    repeated(benchmark::RegisterBenchmark("speak/nelva", whole_speak));
    repeated(benchmark::RegisterBenchmark("speak/bare", whole_bare));
    int result = run_benchmarks_and_print_ratios(
        argc, argv,
        {{"Speak of 20 sentences against bare espeak-ng, processor time", "speak/nelva", "speak/bare", 1, 1.10}});
    for (const int count : {1, 1000}) result |= compare_first_audio(count) ? 0 : 1;
    result |= abort_is_served_with_the_chunk_in_hand() ? 0 : 1;
    return result;
}
