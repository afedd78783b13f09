// Text for espeak-ng. See utterance.h.
#include "tts_engine/utterance.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tts_engine/characters.h"

namespace tts {
namespace {

// espeak-ng's embedded commands: a control character, a number, a letter.
constexpr char command_start = '\x01';
constexpr int spell_characters = 0x12;
constexpr int spell_digits = 0x41;

int rate_of(const VoiceSettings& voice, const Attributes& attributes) {
    return static_cast<int>(std::clamp(std::lround(static_cast<float>(voice.rate) * attributes.rate), 80L, 450L));
}

int say_as_of(SayAs say_as) {
    switch (say_as) {
        case SayAs::characters:
            return spell_characters;
        case SayAs::digits:
            return spell_digits;
        case SayAs::text:
            break;
    }
    return 0;
}

class Writer {
public:
    Writer(Utterance& utterance, const VoiceSettings& voice) : utterance_(utterance), voice_(voice) {}

    void put(char32_t code, std::uint32_t character) {
        // Control characters are espeak-ng's commands, and the private area holds its own codes.
        const bool reserved = is_blank(code) || (code >= 0xE000 && code <= 0xF8FF) || code == 0x7F || code > 0x10FFFF;
        // Two brackets open a pronunciation, which the text of a document never does.
        const bool brackets = code == U'[' && !utterance_.text.empty() && utterance_.text.back() == '[';
        append_utf8(utterance_.text, reserved || brackets ? U' ' : code);
        utterance_.source.push_back(character);
    }

    void start_with(const Attributes& attributes, std::uint32_t character) {
        rate_ = utterance_.rate = rate_of(voice_, attributes);
        change(attributes, character);
    }

    void change(const Attributes& attributes, std::uint32_t character) {
        set(rate_, rate_of(voice_, attributes), 'S', character);
        set(say_as_, say_as_of(attributes.say_as), 'Y', character);
    }

    // A pronunciation, as ipa_to_espeak gives it, in place of the text from `character` on.
    void put_phonemes(const std::string& mnemonics, std::uint32_t character) {
        const std::string command = "[[" + mnemonics + "]]";
        utterance_.text += command;
        utterance_.source.insert(utterance_.source.end(), command.size(), character);
        utterance_.phonemes = true;
    }

private:
    void set(int& current, int wanted, char letter, std::uint32_t character) {
        if (current == wanted) return;
        current = wanted;
        const std::string command = command_start + std::to_string(wanted) + letter;
        utterance_.text += command;
        utterance_.source.insert(utterance_.source.end(), command.size(), character);
    }

    Utterance& utterance_;
    const VoiceSettings& voice_;
    int rate_ = 0;
    int say_as_ = 0;
};

std::size_t run_at(const Sentence& sentence, std::uint32_t character) {
    const auto behind = std::upper_bound(sentence.runs.begin(), sentence.runs.end(), character,
                                         [](std::uint32_t wanted, const Run& run) { return wanted < run.first; });
    return behind == sentence.runs.begin() ? 0 : static_cast<std::size_t>(behind - sentence.runs.begin()) - 1;
}

}  // namespace

const Attributes& attributes_at(const Sentence& sentence, std::uint32_t character) {
    return sentence.runs[run_at(sentence, character)].attributes;
}

Utterance make_utterance(const Sentence& sentence, std::uint32_t first, std::uint32_t last,
                         const VoiceSettings& voice) {
    Utterance utterance;
    const auto& text = sentence.text;
    while (first < last && is_blank(text[first].code)) ++first;
    while (last > first && is_blank(text[last - 1].code)) --last;
    if (first == last) return utterance;
    utterance.text.reserve(last - first + 16);
    utterance.source.reserve(last - first + 16);
    Writer writer(utterance, voice);
    std::size_t run = run_at(sentence, first);
    writer.start_with(sentence.runs[run].attributes, first);
    for (std::uint32_t i = first; i < last; ++i) {
        if (run + 1 < sentence.runs.size() && sentence.runs[run + 1].first <= i)
            writer.change(sentence.runs[++run].attributes, i);
        writer.put(text[i].code, i);
    }
    // What goes on later keeps its voice up.
    utterance.end_pause = last == text.size() && sentence.ends;
    if (!utterance.end_pause && !is_punctuation(text[last - 1].code)) writer.put(U',', last - 1);
    // espeak-ng counts the place of a text's very last character one too low.
    writer.put(U' ', last - 1);
    return utterance;
}

}  // namespace tts
