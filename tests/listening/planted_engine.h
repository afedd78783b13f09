// A synthesiser of tones that keeps every rule of listening, but for those faults that a test plants.
//
// Each letter is a tone of 60 ms, whose pitch is its own; a blank takes no time. Signs sound when they are spelled or
// alone in the document. A sentence is followed by 200 ms of silence, a paragraph by 400.
#ifndef TESTS_LISTENING_PLANTED_ENGINE_H
#define TESTS_LISTENING_PLANTED_ENGINE_H

#include <set>

#include "tools/listening/measurements.h"

enum class Fault {
    silent_comma,         // when spelled
    two_events_for_hash,  // a '#' has them
    blank_without_event,  // in spelling
    third_word_missing,   // no event for it
    fourth_word_late,     // by 80 ms
    fourth_word_early,    // by 80 ms
    sound_before_words,   // 500 ms, and a pause after it
    half_sentence,        // the event of one above 300 bytes covers its first half
    click,                // the gain jumps
    records_padded,       // the last record is as long as the others
    break_is_pause,       // whatever its time
    short_paragraph,      // its pause is a sentence's
    event_beyond_end,     // the last mark is at an offset in a record without samples
    one_sound,            // all letters above U+007F sound alike
    spelled_words         // each letter takes 700 ms
};

using Faults = std::set<Fault>;

// The twelve functions, with these faults from now on.
const listening::EngineFunctions& planted_engine(const Faults& faults);

#endif
