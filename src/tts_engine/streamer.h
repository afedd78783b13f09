// A document on its way to sound.
//
// It speaks sentence by sentence and computes only what is asked for. Audio and events of one sentence come out in
// records that hold no part of two sentences. Where a pitch mark asks for another pitch a record ends, since the caller
// applies a pitch to a whole record.
//
// Memory may run out at any place (std::bad_alloc), and espeak-ng may refuse a voice (std::runtime_error). Then the
// call is lost, and the next one begins the sentence that was heard last again: no state is half changed after that.
#ifndef TTS_ENGINE_STREAMER_H
#define TTS_ENGINE_STREAMER_H

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tts_engine/document.h"
#include "tts_engine/espeak/espeak_engine.h"
#include "tts_engine/lexicon.h"
#include "tts_engine/output_stage.h"
#include "tts_engine/sentence.h"
#include "tts_engine/utterance.h"
#include "tts_engine/voice_file.h"
#include "tts_engine/wave.h"
#include "tts_engine/word_placer.h"

namespace tts {

// What a streamer needs of its voice.
struct StreamerVoice {
    VoiceSettings settings;
    std::string espeak_voice;                // the language as espeak-ng names it
    double pitch_hz = 100;                   // the middle of its melody
    unsigned rate = espeak_rate;             // of the audio that comes out
    std::shared_ptr<const Lexicon> lexicon;  // the user's; null if none is loaded
};

class Streamer final : private Pronouncer {
public:
    // `text` stays unchanged as long as the streamer lives.
    Streamer(const StreamerVoice& voice, std::string_view text);

    // The next record of at most `count` samples; null when the document has no more.
    tts_wave* synth(std::uint32_t count);

    // Goes `count` sentences forward or back from the one that the last record belongs to, 0 to its start; beyond the
    // first or last sentence it stops there. False if the document has no sentence.
    bool jump(std::int32_t count);

private:
    std::optional<Said> words(std::span<const std::string> written, std::uint16_t language) override;
    std::size_t most_words() const override;
    std::string sign(std::u32string_view sign, std::uint16_t language) override;
    std::string mnemonics(std::string_view ipa, std::uint16_t language) override;
    tts_wave* next_record(std::uint32_t count);
    void begin_again();
    bool next_sentence();
    bool next_part();
    void start_speech(std::uint32_t end);
    void start_utterance();
    bool name_silent_character();
    void pull_speech();
    void take_speech(const std::vector<std::int16_t>& samples, const std::vector<SpeechEvent>& events);
    void speak_as(const Attributes& attributes);
    void keep_events_before_end();
    void take_samples(const std::int16_t* samples, std::size_t count);
    void take_event(const SpeechEvent& event);
    void emit_begun_tokens();
    void emit_token(const Token& token, std::uint64_t sample);
    void emit_marks_up_to(std::uint32_t character, std::uint64_t sample);
    void emit_sentence();
    void emit_viseme(const char* label);
    void emit(OutputEvent event);
    void make_silence(std::size_t count);
    void finish_speech();
    std::uint64_t pause_behind_part();
    std::uint64_t pause_of(int milliseconds) const;
    std::uint32_t text_end_of_part() const;
    void owe_to_paragraph(std::uint64_t pause);
    tts_wave* deliver(std::size_t count);
    tts_wave* deliver_rest();
    std::size_t samples_before_new_pitch(std::size_t count) const;
    const std::string& espeak_voice_of(std::uint16_t language);
    const std::string& tag_of(std::uint16_t language) const;
    float pitch_of(std::uint16_t language);
    bool is_same_voice(std::uint16_t one, std::uint16_t other);
    bool skip_to(std::int64_t sentence, std::string pitch);
    void note_pitch_marks(std::size_t first_anchor, std::string& pitch) const;
    void restart();
    std::string forget_output();

    StreamerVoice voice_;
    Document document_;
    OutputStage output_;
    Generation generation_;

    // The sentence in work, and how far it has come.
    Sentence sentence_;
    std::int64_t number_ = -1;    // of the sentence, from 0
    std::int64_t heard_ = 0;      // of the sentence that the last record belongs to
    std::uint32_t position_ = 0;  // the first character that no part has taken
    std::uint32_t part_first_ = 0;
    std::uint32_t part_end_ = 0;
    std::size_t next_anchor_ = 0;
    std::size_t next_token_ = 0;
    WordPlacer placer_;
    bool speaking_ = false;
    bool announced_ = false;  // the sentence's event is out
    bool ended_ = false;
    bool awaited_ = true;                  // somebody waits for the first sound, of all or after a jump
    bool broken_ = false;                  // a call was left by an exception
    std::uint64_t silence_ = 0;            // of a pause still to come, in samples of espeak-ng's, as the next two
    std::uint64_t owed_silence_ = 0;       // that comes if another sentence does
    std::uint64_t owed_to_paragraph_ = 0;  // and that if it begins a paragraph
    std::uint64_t part_taken_ = 0;         // of the part's audio
    bool part_ends_ = true;                // the part ends a sentence
    bool part_heard_ = false;         // a sample of it was not 0
    float gain_ = 1;
    Utterance utterance_;
    std::vector<std::int16_t> new_samples_;
    std::vector<SpeechEvent> new_events_;

    // Not yet delivered.
    std::deque<OutputEvent> events_;
    const char* last_viseme_ = nullptr;
    std::string pitch_mark_;                  // the last one delivered
    std::vector<std::string> espeak_voices_;  // by language number; empty where not looked for yet
    std::vector<float> pitches_;              // by language number: what its melody is multiplied by; 0 likewise
};

}  // namespace tts

#endif
