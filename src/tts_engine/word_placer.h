// Which words of a text have begun to sound.
//
// espeak-ng's sounds come with the character of the text that they are of. Its words are not the words of the text: a
// number is several of them, and some are signs next to a word. The placer finds the word of the text that each sound
// belongs to.
#ifndef TTS_ENGINE_WORD_PLACER_H
#define TTS_ENGINE_WORD_PLACER_H

#include <cstddef>
#include <cstdint>

#include "tts_engine/sentence.h"

namespace tts {

class WordPlacer {
public:
    // Starts on a part of the sentence, up to character `last`. The sentence outlives its use.
    void start(const Sentence& sentence, std::uint32_t last);

    // Called for a new sentence, whose words have not begun.
    void reset() { begun_ = 0; }

    // A sound of this character begins. The word that it belongs to has begun, and those before it.
    void sound(std::uint32_t character);

    // All of the part has sounded.
    void finish();

    // How many of the sentence's tokens have begun.
    std::size_t begun() const { return begun_; }

private:
    std::size_t tokens_begun_at(std::uint32_t character) const;

    const Sentence* sentence_ = nullptr;
    std::size_t begun_ = 0;
    std::size_t limit_ = 0;  // tokens of the sentence that begin before the part's end
};

}  // namespace tts

#endif
