// From espeak-ng's words to the text's. See word_placer.h.
#include "tts_engine/word_placer.h"

#include <algorithm>

#include "tts_engine/characters.h"

namespace tts {
namespace {

// How many tokens end at character `last` or before.
std::size_t tokens_up_to(const Sentence& sentence, std::uint32_t last) {
    const auto& tokens = sentence.tokens;
    const auto behind = std::upper_bound(tokens.begin(), tokens.end(), last,
                                         [](std::uint32_t end, const Token& token) { return end < token.last; });
    return static_cast<std::size_t>(behind - tokens.begin());
}

}  // namespace

void WordPlacer::reset() { begun_ = 0; }

void WordPlacer::start(const Sentence& sentence, std::uint32_t last) {
    sentence_ = &sentence;
    limit_ = tokens_up_to(sentence, last);
    plan_.clear();
    followers_.clear();
}

// The token that a sound at this character belongs to: the one around it, the one that its punctuation opens, else the
// one before it.
std::size_t WordPlacer::token_at(std::uint32_t character) const {
    const auto& tokens = sentence_->tokens;
    const std::size_t next = tokens_up_to(*sentence_, character);
    if (next < tokens.size()) {
        std::uint32_t at = character;
        while (at < tokens[next].first && !is_blank(sentence_->text[at].code)) ++at;
        if (at >= tokens[next].first) return next;
    }
    return next == 0 ? none : next - 1;
}

void WordPlacer::plan_word(std::uint32_t character, unsigned phonemes) {
    plan_.push_back({token_at(character), phonemes, false, 0});
}

void WordPlacer::plan_end(std::uint32_t character) {
    plan_.push_back({none, 0, true, std::min(limit_, tokens_up_to(*sentence_, character))});
}

void WordPlacer::word(std::uint32_t character) {
    while (!plan_.empty() && plan_.front().end) plan_.pop_front();
    unsigned phonemes = 0;
    if (!plan_.empty()) {
        phonemes = plan_.front().phonemes;
        plan_.pop_front();
    }
    followers_.clear();
    phoneme_ = 0;
    const std::size_t token = token_at(character);
    if (token == none || token >= limit_) return;
    begun_ = std::max(begun_, token + 1);
    place_followers(token, phonemes);
}

// The tokens that no word of espeak-ng's begins, up to the next that one does, share this word's phonemes.
void WordPlacer::place_followers(std::size_t token, unsigned phonemes) {
    if (plan_.empty() || begun_ != token + 1) return;
    const Planned& next = plan_.front();
    const std::size_t end = next.end             ? next.tokens_before_end
                            : next.token == none ? begun_
                                                 : std::min(limit_, next.token);
    if (end <= begun_) return;
    const auto& tokens = sentence_->tokens;
    const auto first = static_cast<double>(tokens[token].first);
    const double length = tokens[end - 1].last - first;
    for (std::size_t i = begun_; i < end; ++i)
        followers_.push_back(std::max(1u, static_cast<unsigned>(phonemes * (tokens[i].first - first) / length + 0.5)));
}

void WordPlacer::phoneme() {
    while (!followers_.empty() && phoneme_ >= followers_.front()) {
        followers_.pop_front();
        ++begun_;
    }
    ++phoneme_;
}

void WordPlacer::finish() {
    begun_ = std::max(begun_, limit_);
    followers_.clear();
    plan_.clear();
}

}  // namespace tts
