// The measurements, each in a file of its own.
#ifndef NELVA_TOOLS_LISTENING_MEASUREMENTS_H
#define NELVA_TOOLS_LISTENING_MEASUREMENTS_H

#include "tools/listening/measurement.h"

namespace listening {

// signs.cpp: each sign from U+0021 to U+007E, punctuation of other scripts and the letters of the text, alone: sound,
// and exactly one word event over it. spelled: as say-as characters, with a blank between letters too.
Result measure_signs_spelled(const Subject& subject);
Result measure_signs_alone(const Subject& subject);

// words.cpp: each word of the text and the items has an event that begins in it.
Result measure_words(const Subject& subject);
// Sound without a word: what is heard after a pause, or first of all, and no word event is near its begin.
Result measure_stray_sound(const Subject& subject);
// The event of a long sentence covers all of it.
Result measure_sentences(const Subject& subject);

// word_times.cpp: word events earlier or later than the sound of the word by more than 30 ms. The truth comes from the
// sound: with another letter at the start of the word, the samples part where the word begins.
Result measure_word_times(const Subject& subject);

// borders.cpp: changes of volume, rate, emphasis and pitch inside a sentence. The steepest step at the border is
// compared with those on both sides, and with the step at this place when nothing changes.
Result measure_borders(const Subject& subject);

// silences.cpp: the same samples for each size of record, <break time="0"/>, paragraphs, events after the last sample.
Result measure_silences(const Subject& subject);

// waits.cpp: how long the first samples take, and how much longer next to another voice. Reported without a limit.
Result measure_waits(const Subject& subject);

// scripts.cpp: words of the text that are not read, but spelled or replaced by the name of their script.
Result measure_scripts(const Subject& subject);

}  // namespace listening

#endif
