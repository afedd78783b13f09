/* A synthesiser that keeps the contract in all but one point: which, FAULT says. Each fault is a module of its own. */
#include <stdlib.h>
#include <string.h>

#define TTS_ENGINE_BUILDING
#include "tts_engine/tts_engine.h"

enum fault {
    NO_FAULT,
    NULL_HANDLE,
    OFFSET_BEHIND_RECORD,
    OFFSETS_FALL,
    RANGE_BEHIND_DOCUMENT,
    RANGE_EMPTY,
    RANGE_CUTS_CHARACTER,
    MARK_WITHOUT_NAME,
    MARK_TWICE,
    NO_END,
    MORE_AFTER_END,
    SILENCE,
    SAMPLES_NULL,
    NULL_MESSAGE,
    WORDS_BY_CHUNK,
    JUMP_ASTRAY,
    NO_VOICE
};

struct tts_streamer_record {
    const char* text;
    uint32_t size;
    uint32_t step; /* records given */
};

static int16_t tone[441];
static tts_wave_event events[4];
static tts_wave wave;
static int dummy;

tts_handle TTS_CALL tts_create(void) { return FAULT == NULL_HANDLE ? NULL : (tts_handle)&dummy; }
void TTS_CALL tts_destroy(tts_handle handle) { (void)handle; }
tts_voice TTS_CALL tts_load_voice(tts_handle handle, const char* libPath, const char* voxPath) {
    (void)handle;
    if (FAULT == NO_VOICE || strstr(libPath, "no/such") != NULL || voxPath == NULL) return NULL;
    return (tts_voice)&dummy;
}
void TTS_CALL tts_unload_voice(tts_voice voice) { (void)voice; }
void TTS_CALL tts_dict_cleanup(tts_voice voice) { (void)voice; }
int32_t TTS_CALL tts_dict_load(tts_voice voice, const char* path) { return voice == NULL || path == NULL ? 2 : 1; }

tts_streamer TTS_CALL tts_streamer_start(tts_voice voice, const char* ssml, float unused) {
    (void)unused;
    tts_streamer s = voice == NULL ? NULL : calloc(1, sizeof *s);
    if (s == NULL) return NULL;
    s->text = ssml;
    s->size = (uint32_t)strlen(ssml);
    return s;
}

static void set_event(uint32_t i, uint32_t type, const char* label, uint32_t begin, uint32_t end, uint32_t at) {
    memset(&events[i], 0, sizeof events[i]);
    events[i].type = type;
    events[i].label = label;
    events[i].text_begin = begin;
    events[i].text_end = end;
    events[i].sample_offset = at;
}

/* The byte behind the first of a character of several, or 0. */
static uint32_t inside_character(const struct tts_streamer_record* s) {
    for (uint32_t i = 1; i < s->size; ++i)
        if (((unsigned char)s->text[i] & 0xC0) == 0x80) return i;
    return 0;
}

/* The marks of the checks' own document, which begins with "P0"; a word for all of it. */
static void make_events(const struct tts_streamer_record* s, uint32_t chunk) {
    static const char* const names[] = {"P0", "middle", "last one"};
    wave.event_count = 0;
    const int marked = strstr(s->text, "last one") != NULL;
    if (s->step < 3 && marked) {
        const int nameless = FAULT == MARK_WITHOUT_NAME && s->step == 1;
        set_event(0, TTS_EVENT_MARK, nameless ? NULL : names[s->step], 0, 0, FAULT == OFFSET_BEHIND_RECORD ? 442 : 7);
        wave.event_count = 1;
        if (FAULT == MARK_TWICE || FAULT == OFFSETS_FALL) {
            set_event(1, FAULT == MARK_TWICE ? TTS_EVENT_MARK : TTS_EVENT_VISEME, "sil", 0, 0, 3);
            if (FAULT == MARK_TWICE) events[1].label = names[s->step], events[1].sample_offset = 8;
            wave.event_count = 2;
        }
    }
    if (s->size < 3) return;
    if (s->step == 3 || (FAULT == WORDS_BY_CHUNK && s->step == 4 && chunk == 100)) {
        uint32_t begin = 0, end = 1;
        while (end < s->size && ((unsigned char)s->text[end] & 0xC0) == 0x80) ++end;
        if (FAULT == RANGE_BEHIND_DOCUMENT) end = s->size + 1;
        if (FAULT == RANGE_EMPTY) end = begin;
        if (FAULT == RANGE_CUTS_CHARACTER && inside_character(s) != 0) end = inside_character(s);
        set_event(0, TTS_EVENT_WORD, NULL, begin + 0, end, 0);
        if (s->text[0] == '<' && FAULT != RANGE_BEHIND_DOCUMENT && FAULT != RANGE_EMPTY &&
            FAULT != RANGE_CUTS_CHARACTER)
            set_event(0, TTS_EVENT_WORD, NULL, 1 + (s->step - 3), 2 + (s->step - 3), 0);
        wave.event_count = 1;
    }
    if (FAULT == JUMP_ASTRAY && s->step < 3) {
        set_event(wave.event_count, TTS_EVENT_SENTENCE, NULL, 10 + s->step, 20 + s->step, 400);
        ++wave.event_count;
    }
}

tts_wave* TTS_CALL tts_streamer_synth(tts_streamer s, uint32_t samples) {
    if (FAULT == MORE_AFTER_END && s->step == 6) {
        ++s->step;
        return NULL;
    }
    if (FAULT != NO_END && s->step >= 6 && !(FAULT == MORE_AFTER_END && s->step < 8)) return NULL;
    for (uint32_t i = 0; i < 441; ++i) tone[i] = (int16_t)(FAULT == SILENCE ? 0 : i);
    memset(&wave, 0, sizeof wave);
    wave.sample_count = 441;
    wave.samples = FAULT == SAMPLES_NULL ? NULL : tone;
    make_events(s, samples);
    wave.events = events;
    ++s->step;
    return &wave;
}

int32_t TTS_CALL tts_streamer_jump(tts_streamer s, int32_t count) {
    (void)count;
    if (FAULT != JUMP_ASTRAY) return 1;
    s->step = 0; /* always to the first */
    return 0;
}

int32_t TTS_CALL tts_streamer_stop(tts_streamer s) {
    free(s);
    return 0;
}

void TTS_CALL tts_wave_delete(tts_wave* given) { (void)given; }
const char* TTS_CALL tts_errmsg(void) { return FAULT == NULL_MESSAGE ? NULL : "it does not work"; }
