// Bare espeak-ng as a library that is loaded while a program runs.
#ifndef NELVA_BENCH_BARE_ESPEAK_MODULE_H
#define NELVA_BENCH_BARE_ESPEAK_MODULE_H

// Starts espeak-ng with its data and takes the voice en-us; false if it cannot.
using BareLoad = bool (*)(const char* data);
inline constexpr char bare_load_name[] = "bare_load";

// Speaks until the first audio; false if there is none.
using BareFirstAudio = bool (*)(const char* text);
inline constexpr char bare_first_audio_name[] = "bare_first_audio";

#endif
