// espeak-ng as several voices share it.
//
// espeak-ng has one set of global variables for the whole process, so one piece of text is in work at a time. A lock
// guards it, and no lock is held between two calls of ours: a piece that is half spoken stays "in work", owned by its
// Generation. Who needs espeak-ng for another piece first makes room:
//
//   - Usually by finishing the piece in work into its owner's buffer, on their own thread; the owner finds the rest
//     there. Nothing is computed twice.
//   - For a first sound, which somebody waits for, that would take too long: a sentence of 300 characters without a
//     comma takes 20 ms and more. The piece in work gets one more second of sound, 1 to 2 ms of work, so that its owner
//     has something to play meanwhile, and is dropped. When the owner has used that up, it starts the same text again
//     and passes over what it has. The same text always becomes the same samples and events (espeak_stepper.h), so
//     nobody can hear it, nor does any word move.
//
// A first sound also comes before others at the lock: whoever computes without somebody waiting gives way after at most
// 4,096 samples, 0.3 ms. So it waits at most 3 ms for another voice, whatever that one speaks, and every piece sounds
// as if it were spoken alone.
#ifndef TTS_ENGINE_ESPEAK_ESPEAK_ENGINE_H
#define TTS_ENGINE_ESPEAK_ESPEAK_ENGINE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tts_engine/espeak/espeak_stepper.h"
#include "tts_engine/ipa.h"

namespace tts {

// From the word that starts at code point `position` of a text on, pitch and width of the melody are multiplied.
struct PitchChange {
    std::uint32_t position = 0;
    float factor = 1;
    float range = 1;
};

// What is spoken and how. `rate`, `pitch` and `range` are on espeak-ng's scales (espeak_stepper.h).
struct SpeechRequest {
    std::string text;      // UTF-8, may hold embedded commands; not empty
    std::string language;  // as a voice's name of espeak-ng, from EspeakEngine::find_language
    std::string variant;   // file in voices/!v, or empty
    int rate = 175;
    int pitch = 50;
    int range = 50;
    std::vector<PitchChange> pitches{{}};
    bool end_pause = true;
    bool phonemes = false;  // [[...]] in the text holds phonemes by their mnemonics
    bool first = false;     // somebody waits for its sound
};

struct SpeechEvent {
    enum class Kind : std::uint8_t { word, phoneme };
    Kind kind;
    std::uint32_t position;  // index in the request's text, in code points, from 0: see espeak_stepper_event
    std::uint64_t sample;    // from the first sample of the request
    char phoneme[9];         // phoneme: its IPA name
};

// One piece of text on its way to sound. Made, moved on and destroyed by one thread; while it is in work other threads
// may write to it, under the engine's lock.
class Generation {
public:
    Generation() = default;
    ~Generation();
    Generation(const Generation&) = delete;
    Generation& operator=(const Generation&) = delete;

    // Starts on a piece; what is left of the one before is dropped. Throws std::runtime_error if the voice's language
    // or variant cannot be loaded.
    void start(SpeechRequest request);

    // Drops what is left of the piece.
    void stop();

    // Appends the next samples, about 12 ms, and the events that came with them; if another thread has finished the
    // piece, appends all that is left. Returns false when the piece has no more, and appends nothing then. Throws
    // std::bad_alloc, also if another thread found no memory for the rest of this piece.
    bool pull(std::vector<std::int16_t>& samples, std::vector<SpeechEvent>& events);

private:
    friend class EspeakEngine;
    class Turn;
    static void make_room(Turn& turn);
    static void advance_piece_in_work();
    bool is_first() const;
    void begin();
    void advance();
    void leave();

    SpeechRequest request_;
    std::vector<espeak_stepper_pitch> pitches_;
    // Computed and not yet taken by the owner.
    std::vector<std::int16_t> samples_;
    std::vector<SpeechEvent> events_;
    // Since start(): all that was computed for the owner, and what of that it took.
    std::uint64_t produced_ = 0;
    std::size_t produced_events_ = 0;
    std::uint64_t taken_ = 0;
    // Since the text was begun in espeak-ng, now or again.
    std::uint64_t position_ = 0;
    std::size_t position_events_ = 0;
    bool unfinished_ = false;
    bool lost_ = false;  // memory ran out for the rest of the piece
};

class EspeakEngine {
public:
    // Takes the library for a voice with data in `lib_path` (the folder espeak-ng-data or the one that holds it), and
    // gives it back. Data that is there already is not read again. Throws std::runtime_error if the folder holds none,
    // or if voices with other data are in use. However a folder is spelled (links, "..", case where the system knows
    // none), it is the same.
    static void acquire(const std::string& lib_path);
    static void release();

    // Keeps the data that is there, whatever voices are given back, until the same number of calls of let_go(). It does
    // not keep a voice with other data from taking its place.
    static void keep();
    static void let_go();

    // espeak-ng's voice for a language tag such as "en-US": the tag itself, or the tag without its last parts. `own`, a
    // voice of espeak-ng, comes before all others wherever it speaks the tag or a kind of it: the one for "en-us" does
    // "en", and the one for Cantonese, which espeak-ng also calls "zh-yue", does "zh". Empty when there is none, or
    // none whose dictionary is there. The voice files are read with the data, so an unknown tag costs nothing.
    static std::string find_language(const std::string& tag, const std::string& own = {});

    // Makes a language and a variant ready to speak, so that the first text need not wait. Throws std::runtime_error if
    // espeak-ng cannot load them.
    static void load_voice(const std::string& language, const std::string& variant);

    // The phonemes of a voice of espeak-ng, with their names in IPA. Tables are kept. Throws std::runtime_error if
    // espeak-ng cannot load the voice.
    static std::shared_ptr<const IpaTable> ipa_table(const std::string& language);

    // How a voice names a sign, one or more characters of UTF-8: phonemes by their mnemonics, for text between [[ and
    // ]]. It is the name in the voice's language, else the English one, said by English phonemes; empty if there is
    // none. Names are kept. Throws as load_voice.
    static std::string sign_name(const std::string& language, const std::string& variant, const std::string& sign);

    // The middle of the melody of a voice, with a pitch and a range as SpeechRequest's, in Hz. Throws as load_voice.
    static double middle_pitch(const std::string& language, const std::string& variant, int pitch, int range);

    // Whether there is a voice variant of that name.
    static bool has_variant(const std::string& name);

private:
    static void use_voice(Generation::Turn& turn, const std::string& language, const std::string& variant);
    static bool can_speak(Generation::Turn& turn, std::string_view voice);
};

}  // namespace tts

#endif
