// The synthesiser's reading of a document: sentences with their marks, words and what is said for them, without sound.
//
//     the whole input   the document
#include <cmath>
#include <cstdint>

#include "fuzz/property.h"
#include "fuzz/small_stack.h"
#include "tts_engine/document.h"
#include "tts_engine/utterance.h"

namespace {

// Says something else for every word that begins with "a", or for it and the next one, and for all IPA.
class OddPronouncer final : public tts::Pronouncer {
public:
    std::optional<Said> words(std::span<const std::string> written, std::uint16_t) override {
        property(written.size() <= 2, "no more words are asked for than wanted");
        // A word that a border of attributes divides is none.
        if (written.empty()) return std::nullopt;
        const std::string& word = written[0];
        if (word.empty() || word[0] != 'a') return std::nullopt;
        const auto kind = word.size() % 2 == 0 ? tts::Spoken::Kind::text : tts::Spoken::Kind::ipa;
        return Said{word.size() % 3 == 0 ? written.size() : 1, kind, word.substr(1)};
    }
    std::size_t most_words() const override { return 2; }
    std::string sign(std::u32string_view sign, std::uint16_t) override { return sign[0] % 2 == 0 ? "" : "a sign"; }
    std::string mnemonics(std::string_view ipa, std::uint16_t) override { return std::string(ipa.size() % 4, '@'); }
};

void check_text(const tts::Sentence& sentence, std::size_t size, std::uint32_t* end_before) {
    for (const tts::Character& character : sentence.text) {
        property(character.begin <= character.end && character.end <= size, "a character stands in the document");
        property(character.begin >= *end_before, "characters come in order and do not overlap");
        property(character.code != 0 && character.code <= 0x10FFFF, "a character is one");
        *end_before = character.end;
    }
}

void check_ranges(const tts::Sentence& sentence) {
    const std::size_t size = sentence.text.size();
    std::uint32_t end = 0;
    for (const tts::Token& token : sentence.tokens) {
        property(token.first >= end && token.first < token.last && token.last <= size, "words stand apart, in order");
        end = token.last;
    }
    end = 0;
    for (const tts::Spoken& spoken : sentence.spoken) {
        property(spoken.first >= end && spoken.first < spoken.last && spoken.last <= size,
                 "what is said for text stands apart, in order");
        end = spoken.last;
    }
    end = 0;
    for (const tts::Anchor& anchor : sentence.anchors) {
        property(anchor.position >= end && anchor.position <= size, "marks and pauses come in order");
        end = anchor.position;
    }
}

void check_runs(const tts::Sentence& sentence) {
    if (!sentence.has_text()) return;
    property(!sentence.runs.empty() && sentence.runs[0].first == 0, "all text has attributes");
    std::uint32_t first = 0;
    for (const tts::Run& run : sentence.runs) {
        property(run.first >= first && run.first <= sentence.text.size(), "attributes come in order");
        first = run.first;
        const tts::Attributes& a = run.attributes;
        property(std::isfinite(a.rate) && a.rate > 0, "a rate is a factor");
        property(std::isfinite(a.pitch) && a.pitch >= 0, "a pitch is a factor");
        property(std::isfinite(a.range) && a.range >= 0, "a range is a factor");
        property(std::isfinite(a.volume) && a.volume >= 0, "a volume is a factor");
    }
}

void check_utterance(const tts::Sentence& sentence, std::uint32_t first, std::uint32_t last) {
    OddPronouncer pronouncer;
    const tts::VoiceSettings settings;
    const tts::Utterance utterance = tts::make_utterance(sentence, first, last, settings, pronouncer);
    if (utterance.text.empty()) return;
    std::size_t characters = 0;
    for (const char c : utterance.text) characters += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    property(utterance.source.size() == characters, "each character comes from somewhere");
    std::uint32_t before = first;
    for (const std::uint32_t source : utterance.source) {
        property(source >= before && source < last, "characters come from the stretch, in order");
        before = source;
    }
    property(utterance.rate >= 80 && utterance.rate <= 450, "a rate is one of espeak-ng's");
    const double stretch = stretch_of(settings, tts::attributes_at(sentence, first), utterance.rate);
    property(std::isfinite(stretch) && stretch > 0, "a stretch is a factor");
}

void read_twice(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    tts::Document document(text);
    std::size_t sentences = 0;
    std::uint32_t end = 0;
    tts::Sentence sentence;
    for (; document.next(sentence); ++sentences) {
        check_text(sentence, text.size(), &end);
        check_ranges(sentence);
        check_runs(sentence);
        const auto length = static_cast<std::uint32_t>(sentence.text.size());
        if (length == 0) continue;
        check_utterance(sentence, 0, length);
        check_utterance(sentence, length / 2, length);
    }
    document.rewind();
    for (; document.next(sentence); --sentences) property(sentences > 0, "a second reading gives no more");
    property(sentences == 0, "a second reading gives no less");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    on_small_stack([&] { read_twice(data, size); });
    return 0;
}
