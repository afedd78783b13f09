// espeak-ng, driven step by step.
//
// espeak_Synth speaks a whole text before it returns and hands its audio to a callback. Here the same work is done in
// steps that the caller asks for: `espeak_stepper_begin` reads the first clause of a text, each `espeak_stepper_fill`
// gives the next samples. So a caller gets the first audio as soon as espeak-ng has it, and can stop whenever it likes,
// without a thread.
//
// espeak-ng keeps everything in global variables: there is one text in work at a time, and all of this is called with
// one lock held (espeak_engine.h). Each `begin` starts from the same state of the wave generator, so a text sounds
// sample by sample the same whatever was spoken before.
//
// A part of espeak-ng is C++ and throws std::bad_alloc, which may come out of every function here. The text in work is
// lost then and is dropped.
//
// What this relies on of espeak-ng 1.52.0, all in espeak_stepper.c: the loop of Synthesize() in speech.c, which it
// follows; that the wave generator (wavegen.c) writes from `out_ptr` to `out_end`; and the functions that our patches
// add to the generator (deps/patches/): to begin again, to report to us, to change the voice's pitch.
#ifndef TTS_ENGINE_ESPEAK_ESPEAK_STEPPER_H
#define TTS_ENGINE_ESPEAK_ESPEAK_STEPPER_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// A word begins where its first sound does. Each word of the text has its own, also where espeak-ng's dictionary says
// several of them as one, and each character of a script that is written without blanks.
enum espeak_stepper_event_type { ESPEAK_STEPPER_WORD, ESPEAK_STEPPER_PHONEME };

typedef struct espeak_stepper_event {
    int type;           // one of espeak_stepper_event_type
    uint32_t position;  // the character of the text that it comes from, or near it inside a word; from 1
    size_t sample;      // counted from the first sample of this call of espeak_stepper_fill
    char phoneme[9];    // phoneme: its IPA name, UTF-8, cut behind 8 bytes; a stress mark may stand in front
} espeak_stepper_event;

// Takes the events of one `espeak_stepper_fill`, in order.
typedef void (*espeak_stepper_sink)(void* context, const espeak_stepper_event* event);

// From the word that starts at a character of the text on, counted from 0, the melody's frequencies are multiplied by
// `factor` and its width by `range`.
typedef struct espeak_stepper_pitch {
    uint32_t position;
    double factor;  // 0.1 to 10
    double range;   // 0 to 2
} espeak_stepper_pitch;

// How a text is spoken: espeak-ng's own scales.
typedef struct espeak_stepper_settings {
    int rate;                             // words a minute, 80 to 450
    int pitch;                            // 0 to 99, 50 is the voice's own
    int range;                            // 0 to 99, 50 is the voice's own
    const espeak_stepper_pitch* pitches;  // by position, the first at 0; the caller keeps them until the text is done
    size_t pitch_count;                   // at least 1
    int end_pause;                        // whether the pause that ends a sentence follows the text's last clause
    int phonemes;                         // whether [[...]] in the text holds phonemes by their mnemonics
} espeak_stepper_settings;

// Sets the voice that the identifier names, the file of a language such as "gmw/en-US", without a variant. 0 on
// success. espeak_ng_SetVoiceByName would read all voice files first: it looks for the name in small letters, and does
// not find it.
int espeak_stepper_set_language(const char* identifier);

// Lays a variant, the name of a file in voices/!v, over the language that was set last. 0 on success.
int espeak_stepper_add_variant(const char* name);

// Whether the voice that was set last has a dictionary. Without one espeak-ng says nothing of a text.
int espeak_stepper_has_dictionary(void);

// Reads espeak-ng's data from the folder `data`. 0 on success; otherwise the reason stands in `message`.
int espeak_stepper_start(const char* data, char* message, size_t message_size);

// Gives back what `espeak_stepper_start` took.
void espeak_stepper_end(void);

// Starts on a text: NUL-terminated UTF-8, with espeak-ng's embedded commands, kept unchanged by the caller until the
// text is done or dropped. It is spoken by the voice that was set last. 0 on success.
int espeak_stepper_begin(const char* text, const espeak_stepper_settings* settings);

// Writes at least `capacity` samples and returns how many. A Klatt generator finishes its frame, so there may be up to
// ESPEAK_STEPPER_OVERSHOOT more than `capacity`, and `samples` has room for them. There are fewer only when the text is
// done, and then `*done` is set to 1. The samples depend on `capacity` (a generator starts some of its calculations again
// with each call), so the caller uses one value always.
#define ESPEAK_STEPPER_OVERSHOOT 64
size_t espeak_stepper_fill(int16_t* samples, size_t capacity, espeak_stepper_sink sink, void* context, int* done);

// Tells of each phoneme of the voice that was set last that can be said: its mnemonic and its name in IPA.
typedef void (*espeak_stepper_phoneme_sink)(void* context, const char* mnemonic, const char* ipa);
void espeak_stepper_list_phonemes(espeak_stepper_phoneme_sink sink, void* context);

// The middle of a voice's melody in Hz, for the voice that was set last.
double espeak_stepper_middle_pitch(int pitch, int range);

// Drops what is left of the text.
void espeak_stepper_drop(void);

#ifdef __cplusplus
}
#endif

#endif
