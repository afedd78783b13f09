// Names of signs. See espeak_signs.h.
//
// espeak-ng has a function for this, TranslateLetter. It is not used: a long name overruns its buffers, it says the
// name of the script first, and a sign reaches it only if the sign does not end a clause.

#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <wchar.h>

#if defined(_WIN32)
// espeak-ng's headers ask for the export of its functions; this library exports its own only.
#undef __declspec
#define __declspec(attribute)
#endif

#include <espeak-ng/espeak_ng.h>
#include <espeak-ng/speak_lib.h>

#include "espeak_signs.h"

#include "common.h"
#include "dictionary.h"
#include "phoneme.h"
#include "synthdata.h"
#include "synthesize.h"
#include "translate.h"
#include "translateword.h"
#include "voice.h"

// Of translate.c, which declares it in no header: what TranslateWord returns.
extern char word_phonemes[N_WORD_PHONEMES];

// espeak-ng collects the phonemes of a word in buffers of N_WORD_PHONEMES.
enum { most_phonemes_of_word = 60, most_name_bytes = 512 };

typedef struct output {
    char* text;
    size_t size;
    size_t used;
    int word_phonemes;  // since the last blank
    int audible;
    int failed;
} output;

static void put(output* out, const char* bytes) {
    const size_t count = strlen(bytes);
    if (out->used + count >= out->size) {
        out->failed = 1;
        return;
    }
    memcpy(out->text + out->used, bytes, count + 1);
    out->used += count;
}

static void end_word(output* out) {
    if (out->word_phonemes > 0) put(out, " ");
    out->word_phonemes = 0;
}

static void mnemonic_of(const PHONEME_TAB* phoneme, char mnemonic[5]) {
    for (int i = 0; i < 4; ++i) mnemonic[i] = (char)(phoneme->mnemonic >> (8 * i));
    mnemonic[4] = 0;
}

// How many bytes of a text espeak-ng takes for its first phoneme: the longest mnemonic counts.
static size_t longest_mnemonic(const char* text) {
    size_t longest = 0;
    for (int i = 1; i < n_phoneme_tab; ++i) {
        if (phoneme_tab[i] == NULL || phoneme_tab[i]->type == phINVALID) continue;
        char mnemonic[5];
        mnemonic_of(phoneme_tab[i], mnemonic);
        const size_t size = strlen(mnemonic);
        if (size > longest && strncmp(mnemonic, text, size) == 0) longest = size;
    }
    return longest;
}

// What parts a mnemonic from the next one, so that espeak-ng does not take both for another: nothing or a bar.
static const char* separator(const char* mnemonic, const char* next) {
    char together[16];
    snprintf(together, sizeof together, "%s%s", mnemonic, next);
    return next[0] == 0 || longest_mnemonic(together) == strlen(mnemonic) ? "" : "|";
}

static const PHONEME_TAB* phoneme_of(unsigned char code) {
    return code == 255 || code >= n_phoneme_tab ? NULL : phoneme_tab[code];
}

static int is_vowel(const PHONEME_TAB* phoneme) { return phoneme->type == phVOWEL; }

// Appends phonemes of the phoneme table in force.
static void put_phonemes(output* out, const char* phonemes) {
    for (const unsigned char* at = (const unsigned char*)phonemes; *at != 0; ++at) {
        const PHONEME_TAB* phoneme = phoneme_of(*at);
        if (*at == phonSWITCH) out->failed = 1;  // part of it is in a third language
        if (*at == phonEND_WORD || out->word_phonemes >= most_phonemes_of_word) end_word(out);
        if (phoneme == NULL || phoneme->mnemonic == 0 || *at == phonEND_WORD || *at == phonSWITCH) continue;
        char mnemonic[5];
        char next[5] = "";
        mnemonic_of(phoneme, mnemonic);
        if (phoneme_of(at[1]) != NULL) mnemonic_of(phoneme_of(at[1]), next);
        put(out, mnemonic);
        put(out, separator(mnemonic, next));
        ++out->word_phonemes;
        out->audible |= is_vowel(phoneme);
    }
    end_word(out);
}

// What comes before a sentence; some entries of a dictionary ask for it.
static void forget_context(Translator* tr) {
    tr->expect_verb = tr->expect_verb_s = tr->expect_noun = tr->expect_past = 0;
    tr->phonemes_repeat_count = 0;
    tr->prev_last_stress = tr->end_stressed_vowel = 0;
    tr->prev_dict_flags[0] = tr->prev_dict_flags[1] = 0;
    translator->clause_end = NULL;
}

// Copies a word of `size` bytes in small letters, as espeak-ng takes words from a text. Returns the bytes of the copy.
static size_t copy_small(char* copy, size_t room, const char* word, size_t size, Translator* tr) {
    size_t used = 0;
    for (const char* at = word; at < word + size && used + 4 < room;) {
        int c;
        at += utf8_in(&c, at);
        used += (size_t)utf8_out((unsigned)towlower2((unsigned)c, tr), copy + used);
    }
    return used;
}

// Appends the phonemes of text that a dictionary has in place of a sign.
static void put_words(output* out, Translator* tr, const char* words) {
    char word[N_WORD_BYTES + 8];
    while (*words != 0 && !out->failed) {
        const size_t size = strcspn(words, " ");
        if (size > 0) {
            // espeak-ng looks at what is around a word.
            memset(word, 0, sizeof word);
            const size_t used = copy_small(word + 3, N_WORD_BYTES, words, size, tr);
            word[1] = word[2] = word[3 + used] = word[4 + used] = ' ';
            TranslateWord(tr, word + 3, NULL, NULL);
            put_phonemes(out, word_phonemes);
        }
        words += size + (words[size] == ' ');
    }
}

// Appends what the dictionary has for `entry`; 0 if it has nothing.
static int put_entry(output* out, Translator* tr, const char* entry) {
    char text[64] = "";
    char phonemes[most_name_bytes] = "";
    unsigned int flags[2] = {0, FLAG_LOOKUP_SYMBOL};
    char* words = text + 2;
    snprintf(words, sizeof text - 4, "%s ", entry);
    char* const before = words;
    tr->phonemes_repeat_count = 0;
    if (LookupDictList(tr, &words, phonemes, flags, FLAG_ALLOW_TEXTMODE, NULL) != 0) {
        unsigned int no_flags[2] = {0, 0};
        SetWordStress(tr, phonemes, no_flags, -1, 0);
        put_phonemes(out, phonemes);
    } else if (words != before) {
        char copy[most_name_bytes];
        snprintf(copy, sizeof copy, "%s", words);
        put_words(out, tr, copy);
    }
    return out->audible && !out->failed;
}

// Appends what the rules of spelling make of a sign; 0 if they have nothing.
static int put_rules(output* out, Translator* tr, const char* sign) {
    char text[64] = "";
    char phonemes[N_WORD_PHONEMES] = "";
    unsigned int no_flags[2] = {0, 0};
    snprintf(text + 1, sizeof text - 1, " %s  ", sign);
    TranslateRules(tr, text + 2, phonemes, sizeof phonemes, NULL, FLAG_NO_TRACE, NULL);
    SetWordStress(tr, phonemes, no_flags, -1, 0);
    put_phonemes(out, phonemes);
    return out->audible && !out->failed;
}

static void start_again(output* out, size_t used) {
    out->used = used;
    out->text[used] = 0;
    out->word_phonemes = out->audible = out->failed = 0;
}

// Appends the name that one language has for a sign: "_" and the sign in a dictionary is its name, the sign alone is
// what is said for it within a text.
static int put_name(output* out, Translator* tr, const char* sign) {
    char entry[32];
    const size_t used = out->used;
    forget_context(tr);
    snprintf(entry, sizeof entry, strcmp(sign, " ") == 0 ? "_#32" : "_%s", sign);
    if (put_entry(out, tr, entry)) return 1;
    start_again(out, used);
    if (strcmp(sign, " ") == 0) return 0;
    if (put_entry(out, tr, sign)) return 1;
    start_again(out, used);
    if (put_rules(out, tr, sign)) return 1;
    start_again(out, used);
    return 0;
}

static int put_english_name(output* out, const char* sign) {
    char switch_back[40];
    snprintf(switch_back, sizeof switch_back, "_^_%s", phoneme_tab_list[voice->phoneme_tab_ix].name);
    put(out, "_^_" ESPEAKNG_DEFAULT_VOICE " ");
    if (SetTranslator3(ESPEAKNG_DEFAULT_VOICE) < 0) return 0;
    const int found = put_name(out, translator3, sign);
    SelectPhonemeTable(voice->phoneme_tab_ix);
    put(out, switch_back);
    return found && !out->failed;
}

size_t espeak_signs_name(const char* sign, int english, char* mnemonics, size_t size) {
    output out = {mnemonics, size, 0, 0, 0, 0};
    mnemonics[0] = 0;
    if (voice == NULL || translator == NULL || sign[0] == 0 || strlen(sign) > 24) return 0;
    const int say_as = option_sayas;
    option_sayas = 0;
    SelectPhonemeTable(voice->phoneme_tab_ix);
    const int found = english ? put_english_name(&out, sign) : put_name(&out, translator, sign);
    option_sayas = say_as;
    return found ? out.used : 0;
}
