// The Klatt generators of espeak-ng, which some voice variants use, with a way back to their start.
//
// They keep the flutter of the pitch, noise and the last samples in variables inside of functions, where nothing can
// reset them: the same sentence would have other samples, and its words other places, after each other sentence.
// espeak.cmake makes the copy that is compiled here: behind each of these variables it tells this file of it.
#include <stddef.h>
#include <stdlib.h>
#include <string.h>

#include "espeak_klatt.h"

// All of them begin as zeros.
static struct {
    void* variable;
    size_t size;
} remembered[16];
static size_t remembered_count;

static void remember(void* variable, size_t size) {
    remembered[remembered_count].variable = variable;
    remembered[remembered_count].size = size;
    ++remembered_count;
}

#define ESPEAK_KLATT_REMEMBER(variable)        \
    static int is_remembered_##variable;       \
    if (!is_remembered_##variable) {           \
        is_remembered_##variable = 1;          \
        remember(&variable, sizeof(variable)); \
    }

#include "klatt.c"

// SpeechPlayer, the sixth of the generators, makes its noise of rand(), and the linker hands those calls here: the
// process's own rand() is nobody's to reset. 15 bits are what every system's has.
int __wrap_rand(void);
int __wrap_rand(void) { return (int)espeak_rand(0, 32767) * (RAND_MAX / 32767); }

void espeak_klatt_reset(void) {
    for (size_t i = 0; i < remembered_count; ++i) memset(remembered[i].variable, 0, remembered[i].size);
    KlattFini();
    memset(&kt_globals, 0, sizeof kt_globals);
    memset(&kt_frame, 0, sizeof kt_frame);
    KlattInit();
}
