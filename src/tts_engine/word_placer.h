// Which words of a text have begun to sound.
//
// espeak-ng tells where its own words begin. They are not the words of the text: a number is several of them, "of the"
// is one, and some point at the blank behind a word. The placer finds the word of the text that each belongs to. Where
// one word of espeak-ng's is several of the text, the later ones begin as far into its phonemes as they stand in the
// text; for that it knows beforehand which words a clause will have, and of how many phonemes.
#ifndef TTS_ENGINE_WORD_PLACER_H
#define TTS_ENGINE_WORD_PLACER_H

#include <cstddef>
#include <cstdint>
#include <deque>

#include "tts_engine/sentence.h"

namespace tts {

class WordPlacer {
public:
    // Starts on a stretch of the sentence, up to character `last`. The sentence outlives its use.
    void start(const Sentence& sentence, std::uint32_t last);

    // Called for a new sentence, whose words have not begun.
    void reset();

    // What the next clause will have: each word's first character and how many phonemes it is, and where the clause
    // ends.
    void plan_word(std::uint32_t character, unsigned phonemes);
    void plan_end(std::uint32_t character);

    // A word, a phoneme begins; all of the stretch has sounded.
    void word(std::uint32_t character);
    void phoneme();
    void finish();

    // How many of the sentence's tokens have begun.
    std::size_t begun() const { return begun_; }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    struct Planned {
        std::size_t token;  // none for what is in no word
        unsigned phonemes;
        bool end;
        std::size_t tokens_before_end;
    };

    std::size_t token_at(std::uint32_t character) const;
    void place_followers(std::size_t token, unsigned phonemes);

    const Sentence* sentence_ = nullptr;
    std::size_t begun_ = 0;
    std::size_t limit_ = 0;  // tokens of the sentence up to the stretch's end
    std::deque<Planned> plan_;
    std::deque<unsigned> followers_;  // the phonemes at which the next tokens begin
    unsigned phoneme_ = 0;            // how many of the word have begun
};

}  // namespace tts

#endif
