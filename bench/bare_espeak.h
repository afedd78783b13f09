// Bare espeak-ng, to compare with: linked into a benchmark beside the synthesiser that ships, it shares nothing with
// it.
#ifndef NELVA_BENCH_BARE_ESPEAK_H
#define NELVA_BENCH_BARE_ESPEAK_H

#include <espeak-ng/espeak_ng.h>
#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench_tools.h"
#include "ratio_table.h"

// Sentences of about a dozen words, one after the other.
inline std::string text_of(int count) {
    static const char* const sentences[] = {
        "The morning train left the station four minutes late, and nobody on the platform seemed to mind. ",
        "She counted 27 boxes, wrote the number down, and locked the door behind her. ",
        "When did you last see the old bridge from this side of the river? ",
        "Nothing in the letter explained why the garden had been left to the neighbours. ",
        "Bread, butter, salt and a little patience are all that this recipe needs. ",
    };
    std::string text;
    for (int i = 0; i < count; ++i) text += sentences[static_cast<std::size_t>(i) % std::size(sentences)];
    return text;
}

inline bool bare_stops_at_first_audio = false;
inline std::size_t bare_samples = 0;

inline int take_bare_audio(short* samples, int count, espeak_EVENT*) {
    if (samples != nullptr && count > 0) bare_samples += static_cast<std::size_t>(count);
    return bare_stops_at_first_audio && bare_samples > 0;
}

inline void set_up_bare(const char* data) {
    if (espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, data, 0) != 22050) fail("espeak-ng does not start");
    if (espeak_SetVoiceByName("en-us") != EE_OK) fail("espeak-ng has no voice en-us");
    espeak_SetSynthCallback(take_bare_audio);
}

inline void speak_bare(const std::string& text, bool first_audio_only) {
    bare_samples = 0;
    bare_stops_at_first_audio = first_audio_only;
    espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8 | espeakENDPAUSE, nullptr,
                 nullptr);
    if (bare_samples == 0) fail("espeak-ng gives no audio");
}

inline double first_audio_of_bare(const std::string& text) {
    const auto start = BenchClock::now();
    speak_bare(text, true);
    return microseconds(BenchClock::now() - start);
}

// The time that `part` of the turns kept to.
inline double at(std::vector<double> times, double part) {
    std::sort(times.begin(), times.end());
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
}

// Prints how `ours`, which gives the microseconds until its first audio, compares with bare espeak-ng over 1,000 turns;
// returns whether the limits are kept, of the median and of the 99th percentile. Both sides take turns, so that
// what else the machine does meets both.
template <typename Ours>
bool compare_first_audio(const char* name, int sentences, double limit, double late_limit, Ours ours) {
    constexpr int turns = 1000;
    const std::string text = text_of(sentences);
    std::vector<double> our_times;
    std::vector<double> bare_times;
    for (int i = 0; i < turns; ++i) {
        our_times.push_back(ours());
        bare_times.push_back(first_audio_of_bare(text));
    }
    std::printf("first audio, %d sentences: %s %.0f us, bare espeak-ng %.0f us in the median\n", sentences, name,
                at(our_times, 0.5), at(bare_times, 0.5));
    const std::string of = std::string("first audio, ") + name + " against bare, " + std::to_string(sentences) +
                           (sentences == 1 ? " sentence, " : " sentences, ");
    const bool median = print_ratio((of + "median").c_str(), at(our_times, 0.5) / at(bare_times, 0.5), limit);
    const bool late =
        print_ratio((of + "99th percentile").c_str(), at(our_times, 0.99) / at(bare_times, 0.99), late_limit);
    return median && late;
}

#endif
