/* A synthesiser in one file: it "speaks" a tone for each letter, 60 ms of 200 Hz and 20 Hz more for each place in the
 * alphabet (a is 220 Hz, z 720 Hz), with 30 ms of silence for what is no letter and 200 ms for the end of a sentence.
 * Built as tts_engine.dll it takes the place of the one that ships with Nelva; docs/your-own-synthesiser.md goes
 * through it.
 *
 * A real synthesiser would read SSML with a parser. This one passes over everything between < and > but marks, takes
 * runs of letters for words, and lets a sentence end at . ! or ?
 */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define TTS_ENGINE_BUILDING
#include "tts_engine/tts_engine.h"

struct tts_handle_record {
    int unused;
};

struct tts_voice_record {
    uint32_t rate; /* samples a second, which the end of the voice's name promises */
};

struct tts_streamer_record {
    const char* text; /* the caller's, unchanged until tts_streamer_stop */
    uint32_t size;
    uint32_t rate;
    uint32_t at;        /* the next byte to read */
    uint32_t word_end;  /* behind the word that is being spoken */
    int in_sentence;    /* its event is out */
    int32_t sentence;   /* number of the last sentence begun, from 0; -1 before the first */
    uint32_t tone_left; /* samples of the tone, or silence, that is sounding */
    double frequency;   /* 0 is silence */
    double phase;
    const char* viseme;
};

/* A wave that grows while it is made. The record comes first, so that a pointer to it is one to all. */
struct growing_wave {
    tts_wave wave;
    tts_wave_event* events;
    int16_t* samples;
    uint32_t room; /* for events */
};

static _Thread_local char message[200];

static void fail(const char* text) { snprintf(message, sizeof message, "%s", text); }

/* ---- Library and voice ---- */

tts_handle TTS_CALL tts_create(void) {
    tts_handle handle = malloc(sizeof *handle);
    if (handle == NULL) fail("out of memory");
    return handle;
}

void TTS_CALL tts_destroy(tts_handle handle) { free(handle); }

static int ends_with(const char* text, const char* end) {
    const size_t size = strlen(text), count = strlen(end);
    return size >= count && strcmp(text + size - count, end) == 0;
}

tts_voice TTS_CALL tts_load_voice(tts_handle handle, const char* libPath, const char* voxPath) {
    if (handle == NULL || libPath == NULL || voxPath == NULL) {
        fail("a handle, libPath and voxPath are needed");
        return NULL;
    }
    const uint32_t rate = ends_with(voxPath, "16i-mf") ? 16000
                          : ends_with(voxPath, "22i")  ? 22050
                          : ends_with(voxPath, "8v")   ? 8000
                                                       : 0;
    if (rate == 0) {
        fail("the voice's name must end in 22i, 16i-mf or 8v");
        return NULL;
    }
    tts_voice voice = malloc(sizeof *voice);
    if (voice == NULL)
        fail("out of memory");
    else
        voice->rate = rate;
    return voice;
}

void TTS_CALL tts_unload_voice(tts_voice voice) { free(voice); }

void TTS_CALL tts_dict_cleanup(tts_voice voice) { (void)voice; /* may be null */ }

int32_t TTS_CALL tts_dict_load(tts_voice voice, const char* path) {
    (void)voice;
    (void)path;
    fail("tones have no lexicon");
    return 1;
}

/* ---- Reading the document ---- */

static int is_end(char c) { return c == '.' || c == '!' || c == '?'; }

static int is_letter(char c) {
    const unsigned char u = (unsigned char)c;
    return u >= 0x80 || (u >= '0' && u <= '9') || ((u | 0x20) >= 'a' && (u | 0x20) <= 'z') || u == '&' || u == '\'';
}

/* Behind the tag, or the letter with all of its bytes (&amp; is one), that stands at `at`. */
static uint32_t behind(const struct tts_streamer_record* s, uint32_t at) {
    const char last = s->text[at] == '<' ? '>' : ';';
    uint32_t end = at + 1;
    if (s->text[at] == '<' || s->text[at] == '&') {
        const char* found = memchr(s->text + at, last, s->size - at);
        if (found != NULL && (last == '>' || found - (s->text + at) <= 10)) return (uint32_t)(found - s->text) + 1;
        return last == '>' ? s->size : end;
    }
    while (end < s->size && ((unsigned char)s->text[end] & 0xC0) == 0x80) ++end;
    return end;
}

static uint32_t end_of_word(const struct tts_streamer_record* s, uint32_t at) {
    while (at < s->size && is_letter(s->text[at])) at = behind(s, at);
    return at;
}

/* Behind the . ! or ? that ends the sentence, or behind its last letter if the document ends before. */
static uint32_t end_of_sentence(const struct tts_streamer_record* s, uint32_t at) {
    uint32_t end = at;
    while (at < s->size) {
        if (is_end(s->text[at])) return at + 1;
        const uint32_t next = behind(s, at);
        if (is_letter(s->text[at])) end = next;
        at = next;
    }
    return end;
}

/* The first letter of a sentence, from `at` on; the document's size if there is none. */
static uint32_t start_of_sentence(const struct tts_streamer_record* s, uint32_t at) {
    while (at < s->size && !is_letter(s->text[at])) at = behind(s, at);
    return at;
}

/* ---- Making records ---- */

static int add_event(struct growing_wave* wave, uint32_t type, const char* label, uint32_t begin, uint32_t end) {
    if (wave->wave.event_count == wave->room) {
        const uint32_t room = wave->room == 0 ? 16 : wave->room * 2;
        tts_wave_event* grown = realloc(wave->events, room * sizeof *grown);
        if (grown == NULL) return 0;
        wave->events = grown;
        wave->room = room;
    }
    tts_wave_event event;
    memset(&event, 0, sizeof event);
    event.type = type;
    event.label = label;
    event.text_begin = begin;
    event.text_end = end;
    event.sample_offset = wave->wave.sample_count;
    wave->events[wave->wave.event_count++] = event;
    return 1;
}

/* A label lives as long as its record: a mark's name is copied, and tts_wave_delete frees it. */
static int add_mark(struct tts_streamer_record* s, struct growing_wave* wave, uint32_t end) {
    const char* name = s->text + s->at;
    const char* const tag_end = s->text + end;
    while (name + 6 < tag_end && memcmp(name, "name=", 5) != 0) ++name;
    if (name + 6 >= tag_end) return 1;
    const char quote = name[5];
    name += 6;
    const char* close = memchr(name, quote, (size_t)(tag_end - name));
    const size_t size = (size_t)((close == NULL ? tag_end - 1 : close) - name);
    char* copy = malloc(size + 1);
    if (copy == NULL) return 0;
    memcpy(copy, name, size);
    copy[size] = '\0';
    if (add_event(wave, TTS_EVENT_MARK, copy, 0, 0)) return 1;
    free(copy);
    return 0;
}

static int add_viseme(struct tts_streamer_record* s, struct growing_wave* wave, const char* label) {
    if (s->viseme != NULL && strcmp(s->viseme, label) == 0) return 1;
    s->viseme = label;
    return add_event(wave, TTS_EVENT_VISEME, label, 0, 0);
}

static void sound(struct tts_streamer_record* s, double frequency, uint32_t milliseconds) {
    s->frequency = frequency;
    s->phase = 0;
    s->tone_left = s->rate * milliseconds / 1000;
}

static const char* viseme_of(char letter) {
    switch (letter | 0x20) {
        case 'a':
            return "a";
        case 'e':
            return "e";
        case 'i':
            return "i";
        case 'o':
            return "o";
        case 'u':
            return "u";
        case 'f':
            return "f";
        case 's':
            return "s";
        case 'b':
        case 'm':
        case 'p':
            return "p";
        default:
            return "t";
    }
}

/* A letter: with the first of a word, or of a sentence, its event. */
static int begin_letter(struct tts_streamer_record* s, struct growing_wave* wave) {
    if (!s->in_sentence) {
        s->in_sentence = 1;
        ++s->sentence;
        if (!add_event(wave, TTS_EVENT_SENTENCE, NULL, s->at, end_of_sentence(s, s->at))) return 0;
    }
    if (s->at >= s->word_end) {
        s->word_end = end_of_word(s, s->at);
        if (!add_event(wave, TTS_EVENT_WORD, NULL, s->at, s->word_end)) return 0;
    }
    if (!add_viseme(s, wave, viseme_of(s->text[s->at]))) return 0;
    sound(s, 200 + 20 * ((unsigned char)s->text[s->at] % 32), 60);
    s->at = behind(s, s->at);
    return 1;
}

/* What stands at `at` begins to sound, or is passed over. 0 without memory. */
static int begin_next(struct tts_streamer_record* s, struct growing_wave* wave) {
    const char c = s->text[s->at];
    if (is_letter(c)) return begin_letter(s, wave);
    const uint32_t next = behind(s, s->at);
    int done = 1;
    if (c == '<') {
        if (strncmp(s->text + s->at, "<mark", 5) == 0) done = add_mark(s, wave, next);
    } else {
        done = add_viseme(s, wave, "sil");
        if (is_end(c)) s->in_sentence = 0;
        sound(s, 0, is_end(c) ? 200 : 30);
    }
    s->at = next;
    return done;
}

static void make_samples(struct tts_streamer_record* s, struct growing_wave* wave, uint32_t room) {
    uint32_t count = s->tone_left < room ? s->tone_left : room;
    s->tone_left -= count;
    for (; count > 0; --count) {
        wave->samples[wave->wave.sample_count++] = (int16_t)(s->frequency == 0 ? 0 : 8000 * sin(s->phase));
        s->phase += 6.283185307179586 * s->frequency / s->rate;
    }
}

void TTS_CALL tts_wave_delete(tts_wave* wave) {
    struct growing_wave* made = (struct growing_wave*)wave;
    if (made == NULL) return;
    for (uint32_t i = 0; i < made->wave.event_count; ++i)
        if (made->events[i].type == TTS_EVENT_MARK) free((char*)made->events[i].label);
    free(made->events);
    free(made->samples);
    free(made);
}

/* ---- The document ---- */

tts_streamer TTS_CALL tts_streamer_start(tts_voice voice, const char* ssml, float unused) {
    (void)unused;
    if (voice == NULL || ssml == NULL || strlen(ssml) > 0x7FFFFFFF) {
        fail("a voice and a document of at most 2 GB are needed");
        return NULL;
    }
    tts_streamer s = calloc(1, sizeof *s);
    if (s == NULL) {
        fail("out of memory");
        return NULL;
    }
    s->text = ssml;
    s->size = (uint32_t)strlen(ssml);
    s->rate = voice->rate;
    s->sentence = -1;
    return s;
}

tts_wave* TTS_CALL tts_streamer_synth(tts_streamer s, uint32_t samples) {
    if (s == NULL) {
        fail("there is no document");
        return NULL;
    }
    if (s->at >= s->size && s->tone_left == 0 && s->viseme == NULL) return NULL;
    if (samples == 0 || samples > s->rate) samples = s->rate;
    struct growing_wave* wave = calloc(1, sizeof *wave);
    if (wave != NULL) wave->samples = malloc(samples * sizeof *wave->samples);
    int done = wave != NULL && wave->samples != NULL;
    while (done && wave->wave.sample_count < samples) {
        if (s->tone_left > 0)
            make_samples(s, wave, samples - wave->wave.sample_count);
        else if (s->at < s->size)
            done = begin_next(s, wave);
        else
            break;
    }
    /* What stands behind the last sample has a record of its own, at offset 0. */
    if (done && wave->wave.sample_count == 0 && s->viseme != NULL) done = add_viseme(s, wave, "sil");
    if (done && wave->wave.sample_count == 0) s->viseme = NULL;
    if (!done || (wave->wave.sample_count == 0 && wave->wave.event_count == 0)) {
        if (!done) fail("out of memory");
        tts_wave_delete(wave == NULL ? NULL : &wave->wave);
        return NULL;
    }
    wave->wave.samples = wave->samples;
    wave->wave.events = wave->events;
    return &wave->wave;
}

int32_t TTS_CALL tts_streamer_jump(tts_streamer s, int32_t count) {
    if (s == NULL) {
        fail("there is no document");
        return 1;
    }
    const int64_t wanted = (int64_t)(s->sentence < 0 ? 0 : s->sentence) + count;
    uint32_t start = start_of_sentence(s, 0);
    int32_t number = 0;
    if (start >= s->size) {
        fail("the document has no sentence");
        return 1;
    }
    while (number < wanted) {
        const uint32_t next = start_of_sentence(s, end_of_sentence(s, start));
        if (next >= s->size) break;
        start = next;
        ++number;
    }
    s->at = start;
    s->word_end = 0;
    s->in_sentence = 0;
    s->sentence = number - 1;
    s->tone_left = 0;
    return 0;
}

int32_t TTS_CALL tts_streamer_stop(tts_streamer s) {
    if (s == NULL) {
        fail("there is no document");
        return 1;
    }
    free(s);
    return 0;
}

const char* TTS_CALL tts_errmsg(void) { return message; }
