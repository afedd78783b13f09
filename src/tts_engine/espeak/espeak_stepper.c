// The wave generator of espeak-ng and the loop around it. See espeak_stepper.h for what this relies on.

#include <math.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

#if defined(_WIN32)
// espeak-ng's headers ask for the export of its functions; this library exports its own only.
#undef __declspec
#define __declspec(attribute)
#endif

// The generator reports each word and phoneme with a call of MarkerEvent, which espeak-ng defines for its own callback.
// Under another name the calls come here. Compiling the file as part of this one also lets its state be reset.
// espeak.cmake makes the copy that is compiled here: the variables of these names are taken out of its functions, so
// that the generator uses these instead and they can be reset too.
static int Flutter_ix;
static int agc;
static int cycle_count;
static int h_switch_sign;
static int amplitude2;
static int echo_complete;
static _Bool resume;
#define MarkerEvent espeak_stepper_marker
#include "wavegen.c"
#undef MarkerEvent

#include "espeak_klatt.h"
#include "espeak_stepper.h"

#include "dictionary.h"
#include "error.h"
#include "phoneme.h"
#include "readclause.h"
#include "speech.h"
#include "synthdata.h"
#include "translate.h"
#include "voice.h"

static espeak_stepper_sink current_sink;
static void* current_context;
static unsigned char* current_start;

static const espeak_stepper_pitch* pitches;  // what holds, and those to come
static size_t pitches_left;
static int usual_range;

// The generator does not go below 25 Hz (its unit is Hz << 12). A base below that would only make the melody flat.
static int base_of(double base) {
    const int lowest = 25 << 12;
    return base < lowest ? lowest : (int)base;
}

// The generator takes its own copy of the voice, so that the one in force stays as it is.
static void apply_pitch(void) {
    wvoice->pitch_base = base_of(voice->pitch_base * pitches->factor);
    wvoice->pitch_range = (int)(voice->pitch_range * pitches->factor);
    const double range = usual_range * pitches->range;
    embedded_value[EMBED_R] = range < 0 ? 0 : range > 99 ? 99 : (int)(range + 0.5);
}

static void pitch_at_word(uint32_t position) {
    int changed = 0;
    while (pitches_left > 1 && pitches[1].position <= position) {
        ++pitches;
        --pitches_left;
        changed = 1;
    }
    if (changed) apply_pitch();
}

void espeak_stepper_marker(int type, unsigned int char_position, int value, int value2, unsigned char* place) {
    espeak_stepper_event event;
    if (type == espeakEVENT_WORD && (char_position & 0xffffff) > 0) pitch_at_word((char_position & 0xffffff) - 1);
    if (current_sink == NULL || (type != espeakEVENT_WORD && type != espeakEVENT_PHONEME)) return;
    memset(&event, 0, sizeof event);
    event.sample = (size_t)(place - current_start) / 2;
    event.position = char_position & 0xffffff;
    if (type == espeakEVENT_WORD) {
        event.type = ESPEAK_STEPPER_WORD;
    } else {
        event.type = ESPEAK_STEPPER_PHONEME;
        memcpy(event.phoneme, &value, 4);
        memcpy(event.phoneme + 4, &value2, 4);
    }
    current_sink(current_context, &event);
}

int espeak_stepper_start(const char* data, char* message, size_t message_size) {
    espeak_ng_ERROR_CONTEXT context = NULL;
    espeak_ng_InitializePath(data);
    espeak_ng_STATUS status = espeak_ng_Initialize(&context);
    if (status == ENS_OK) {
        espeak_ng_SetPhonemeEvents(1, 1);
        return 0;
    }
    espeak_ng_GetStatusCodeMessage(status, message, message_size);
    espeak_ng_ClearErrorContext(&context);
    espeak_ng_Terminate();
    return 1;
}

// Setting a voice leaves a copy of it in the generator's queue, for the text to come. The voice in force is set anew
// for each text, so what waits there is given back.
static void forget_commands_from(int first) {
    for (int at = first; at != wcmdq_tail; at = (at + 1) % N_WCMDQ)
        if ((wcmdq[at][0] & 0xff) == WCMD_VOICE) free((void*)wcmdq[at][2]);
    wcmdq_tail = first;
}

static void empty_queue(void) {
    forget_commands_from(wcmdq_head);
    WcmdqStop();
}

void espeak_stepper_end(void) {
    empty_queue();
    espeak_ng_Terminate();
}

static void reset_wave_generator(void) {
    empty_queue();
    espeak_klatt_reset();
    espeak_srand(1);
    memset(&wdata, 0, sizeof wdata);
    wdata.amplitude = 32;
    wdata.amplitude_fmt = 100;
    InitBreath();
    memset(peaks, 0, sizeof peaks);
    memset(peak_harmonic, 0, sizeof peak_harmonic);
    memset(peak_height, 0, sizeof peak_height);
    memset(hspect, 0, sizeof hspect);
    memset(harm_inc, 0, sizeof harm_inc);
    harmspect = hspect[0];
    wavephase = 0x7fffffff;
    samplecount = samplecount_start = nsamples = 0;
    modulation_type = glottal_flag = glottal_reduce = 0;
    hswitch = end_wave = phaseinc = cycle_samples = cbytes = hf_factor = 0;
    amp_ix = amp_inc = 0;
    amplitude_env = NULL;
    Flutter_ix = cycle_count = h_switch_sign = amplitude2 = echo_complete = 0;
    resume = 0;
    agc = 256;
}

// The voice comes last: its echo lowers the volume that the parameter sets.
static void apply_settings(const espeak_stepper_settings* settings) {
    memcpy(embedded_value, embedded_default, sizeof embedded_value);
    espeak_ng_SetParameter(espeakRATE, settings->rate, 0);
    espeak_ng_SetParameter(espeakVOLUME, 100, 0);
    espeak_ng_SetParameter(espeakPITCH, settings->pitch, 0);
    espeak_ng_SetParameter(espeakRANGE, settings->range, 0);
    WavegenSetVoice(voice);
    pitches = settings->pitches;
    pitches_left = settings->pitch_count;
    usual_range = settings->range;
    apply_pitch();
}

// Bits of LoadVoice's `control`.
enum { LOAD_NO_DEFAULT = 1, LOAD_VARIANT = 2 };

int espeak_stepper_set_language(const char* identifier) { return LoadVoice(identifier, LOAD_NO_DEFAULT) == NULL; }

int espeak_stepper_add_variant(const char* name) {
    char file[40];  // as long as LoadVoice takes
    const int length = snprintf(file, sizeof file, "!v%c%s", PATHSEP, name);
    return length < 0 || (size_t)length >= sizeof file || LoadVoice(file, LOAD_VARIANT) == NULL;
}

int espeak_stepper_has_dictionary(void) { return translator != NULL && translator->data_dictrules != NULL; }

int espeak_stepper_begin(const char* text, const espeak_stepper_settings* settings) {
    if (voice == NULL || translator == NULL) return 1;
    current_sink = NULL;
    reset_wave_generator();
    apply_settings(settings);
    InitText(espeakCHARS_UTF8);
    option_ssml = 0;
    option_phoneme_input = settings->phonemes ? espeakPHONEMES : 0;
    option_endpause = settings->end_pause ? espeakENDPAUSE : 0;
    if (p_decoder == NULL) p_decoder = create_text_decoder();
    if (text_decoder_decode_string_multibyte(p_decoder, text, translator->encoding, espeakCHARS_UTF8) != ENS_OK)
        return 1;
    n_phoneme_list = 0;
    SpeakNextClause(0);
    return 0;
}

size_t espeak_stepper_fill(int16_t* samples, size_t capacity, espeak_stepper_sink sink, void* context, int* done) {
    current_sink = sink;
    current_context = context;
    current_start = (unsigned char*)samples;
    out_ptr = current_start;
    out_end = current_start + capacity * 2;
    *done = 0;
    while (out_ptr < out_end && !*done) {
        WavegenFill();
        // A clause is read when all of the one before has become sound, its echo too. Were the echo cut where a buffer
        // happens to end, a text would sound different for each size of buffers.
        if (Generate(phoneme_list, &n_phoneme_list, 1) != 0 || WcmdqUsed() != 0 || out_ptr == out_end) continue;
        echo_complete = 0;
        if (SpeakNextClause(1) == 0) *done = 1;
    }
    current_sink = NULL;
    return (size_t)(out_ptr - current_start) / 2;
}

// Pauses and stress are no sounds, and of the signs that change a neighbour only the one that makes it long is. Tones
// are kept as a kind of stress; those whose mnemonics are levels, such as 35, are their own names.
static int is_sound(const PHONEME_TAB* phoneme, const char* mnemonic) {
    if (phoneme->type == phINVALID || phoneme->type == phPAUSE) return 0;
    if (phoneme->type == phVIRTUAL) return phoneme->mnemonic == ':';
    return phoneme->type != phSTRESS || (mnemonic[0] >= '1' && mnemonic[0] <= '5' && mnemonic[1] >= '1');
}

void espeak_stepper_list_phonemes(espeak_stepper_phoneme_sink sink, void* context) {
    if (voice == NULL || translator == NULL) return;
    for (int i = 1; i < n_phoneme_tab; ++i) {
        PHONEME_TAB* phoneme = phoneme_tab[i];
        if (phoneme == NULL || phoneme->mnemonic == 0 || phoneme->code == phonSWITCH) continue;
        char mnemonic[5] = "";
        for (int k = 0; k < 4; ++k) mnemonic[k] = (char)(phoneme->mnemonic >> (8 * k));
        char ipa[64] = "";
        int flags = 0;
        WritePhMnemonic(ipa, phoneme, NULL, 1, &flags);
        if (is_sound(phoneme, mnemonic)) sink(context, mnemonic, phoneme->type == phSTRESS ? mnemonic : ipa);
    }
}

// Of the pitches from 0 to about 100 that espeak-ng gives a sentence's syllables, the middle one.
double espeak_stepper_middle_pitch(int pitch, int range) {
    const int middle = 60;
    if (voice == NULL) return 100;
    const double width = voice->pitch_range * range / 50.0;
    const double base = voice->pitch_base * pitch_adjust_tab[pitch] / 128.0 - (width - voice->pitch_range) * 18;
    return (base + middle * width / 2) / 4096;
}

// SpeechPlayer, espeak-ng's sixth Klatt generator, gives its memory back only if it comes to a command's end.
static void finish_command_unheard(void) {
    unsigned char unheard[4096];
    forget_commands_from((wcmdq_head + 1) % N_WCMDQ);
    do {
        out_ptr = unheard;
        out_end = unheard + sizeof unheard;
        WavegenFill();
    } while (WcmdqUsed() != 0 || out_ptr == out_end);
}

void espeak_stepper_drop(void) {
    pitches_left = 0;
    current_sink = NULL;
    n_phoneme_list = 0;
    if (WcmdqUsed() != 0 && wvoice != NULL && wvoice->klattv[0] == 6) finish_command_unheard();
    empty_queue();
}
