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

#include "common.h"
#include "dictionary.h"
#include "error.h"
#include "phoneme.h"
#include "readclause.h"
#include "speech.h"
#include "synthdata.h"
#include "translate.h"
#include "voice.h"
#include "wavegen.h"

#include "espeak_stepper.h"

static espeak_stepper_sink current_sink;
static void* current_context;
static unsigned char* current_start;

static const espeak_stepper_pitch* pitches;  // what holds, and those to come
static size_t pitches_left;
static int usual_range;

// The generator does not go below 25 Hz. A factor that brings the bottom of the melody there is the lowest, since the
// melody would only become flat below it. Of the pitches from 0 to about 100 that espeak-ng gives a sentence's
// syllables, 18 is the bottom; the unit of a voice's base and range is Hz << 12.
static double bounded_factor(double factor) {
    const double lowest = 25 << 12;
    const double bottom = voice->pitch_base + 18 / 2 * (double)voice->pitch_range;
    return bottom * factor < lowest && bottom > lowest ? lowest / bottom : factor;
}

// The generator takes its own copy of the voice, so that the one in force stays as it is.
static void apply_pitch(void) {
    const double factor = bounded_factor(pitches->factor);
    voice_t* const own = WavegenVoice();
    own->pitch_base = (int)(voice->pitch_base * factor);
    own->pitch_range = (int)(voice->pitch_range * factor);
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

// The generator calls this for each word and phoneme.
static void take_marker(int type, unsigned int char_position, int value, int value2, unsigned char* place) {
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
        WavegenSetMarker(take_marker);
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
    empty_queue();
    WavegenReset();
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
        if (Generate(phoneme_list, &n_phoneme_list, 1) != 0 || WcmdqUsed() != 0 || out_ptr >= out_end) continue;
        WavegenEndEcho();
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
    const double base = voice->pitch_base * WavegenPitchAdjustment(pitch) / 128.0 - (width - voice->pitch_range) * 18;
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
    if (WcmdqUsed() != 0 && WavegenVoice() != NULL && WavegenVoice()->klattv[0] == 6) finish_command_unheard();
    empty_queue();
}
