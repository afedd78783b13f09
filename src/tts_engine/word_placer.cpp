// From espeak-ng's sounds to the text's words. See word_placer.h.
#include "tts_engine/word_placer.h"

#include <algorithm>

#include "tts_engine/characters.h"

namespace tts {
namespace {

// How many tokens end at character `last` or before.
std::size_t tokens_up_to(const Sentence& sentence, std::uint32_t last) {
    const auto& tokens = sentence.tokens;
    const auto after = std::upper_bound(tokens.begin(), tokens.end(), last,
                                        [](std::uint32_t end, const Token& token) { return end < token.last; });
    return static_cast<std::size_t>(after - tokens.begin());
}

// How many tokens begin before character `last`.
std::size_t tokens_begun_before(const Sentence& sentence, std::uint32_t last) {
    const auto& tokens = sentence.tokens;
    const auto next = std::lower_bound(tokens.begin(), tokens.end(), last,
                                       [](const Token& token, std::uint32_t end) { return token.first < end; });
    return static_cast<std::size_t>(next - tokens.begin());
}

}  // namespace

void WordPlacer::start(const Sentence& sentence, std::uint32_t last) {
    sentence_ = &sentence;
    limit_ = tokens_begun_before(sentence, last);
}

// A sound belongs to the token around its character, or to the one that its punctuation opens; else to the one before.
std::size_t WordPlacer::tokens_begun_at(std::uint32_t character) const {
    const auto& tokens = sentence_->tokens;
    const std::size_t next = tokens_up_to(*sentence_, character);
    if (next == tokens.size()) return next;
    std::uint32_t at = character;
    while (at < tokens[next].first && !is_blank(sentence_->text[at].code)) ++at;
    return at >= tokens[next].first ? next + 1 : next;
}

void WordPlacer::sound(std::uint32_t character) {
    begun_ = std::max(begun_, std::min(limit_, tokens_begun_at(character)));
}

void WordPlacer::finish() { begun_ = std::max(begun_, limit_); }

}  // namespace tts
