// The names of signs in espeak-ng's dictionaries.
//
// Called under the lock around espeak-ng, between two texts: looking a name up changes state that a text in work needs.
// May throw std::bad_alloc (espeak_stepper.h).
#ifndef TTS_ENGINE_ESPEAK_ESPEAK_SIGNS_H
#define TTS_ENGINE_ESPEAK_ESPEAK_SIGNS_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

// Writes how `sign`, one or more characters of UTF-8, is named: phonemes by their mnemonics, as they are between [[ and
// ]] in a text. The name is that of the voice that was set last, or the English one if `english` is not 0; the English
// name is said by English phonemes, and those of the voice hold again after it. Returns the number of bytes, without
// the NUL at the end; 0 if there is no name that can be heard, or none that `size` bytes hold.
size_t espeak_signs_name(const char* sign, int english, char* mnemonics, size_t size);

#ifdef __cplusplus
}
#endif

#endif
