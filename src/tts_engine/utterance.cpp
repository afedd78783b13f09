// Text for espeak-ng. See utterance.h.
#include "tts_engine/utterance.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tts_engine/characters.h"
#include "tts_engine/composition.h"

namespace tts {
namespace {

// espeak-ng's embedded commands: a control character, a number, a letter.
constexpr char command_start = '\x01';
constexpr int spell_characters = 0x12;
constexpr int spell_digits = 0x41;

// espeak-ng reads 800 bytes at once. What it cuts inside its brackets would be no pronunciation any more.
constexpr std::size_t longest_clause = 600;

// What espeak-ng is asked for, in words a minute. It goes up to 450, but above this its pauses shrink out of
// proportion.
constexpr double slowest = 80;
constexpr double fastest = 260;

double fastest_of(const VoiceSettings& voice) { return std::max<double>(fastest, voice.rate); }

double wanted_rate(const VoiceSettings& voice, const Attributes& attributes) {
    return voice.rate * static_cast<double>(attributes.rate);
}

int rate_of(const VoiceSettings& voice, const Attributes& attributes) {
    return static_cast<int>(std::lround(std::clamp(wanted_rate(voice, attributes), slowest, fastest_of(voice))));
}

int say_as_of(SayAs say_as) {
    switch (say_as) {
        case SayAs::characters:
            return spell_characters;
        case SayAs::digits:
            return spell_digits;
        case SayAs::text:
        case SayAs::signs:
            break;
    }
    return 0;
}

class Writer {
public:
    explicit Writer(Utterance& utterance) : utterance_(utterance) {}

    void put(char32_t code, std::uint32_t character) {
        set(say_as_, wanted_say_as_, 'Y', character);
        // Control characters are espeak-ng's commands, and the private area holds its own codes.
        const bool reserved = is_blank(code) || code == object_character || (code >= 0xE000 && code <= 0xF8FF) ||
                              code == 0x7F || code > 0x10FFFF;
        // Two brackets open a pronunciation, which the text of a document never does.
        const bool brackets = code == U'[' && !utterance_.text.empty() && utterance_.text.back() == '[';
        append_utf8(utterance_.text, reserved || brackets ? U' ' : code);
        utterance_.source.push_back(character);
    }

    void change(const Attributes& attributes, std::uint32_t character) {
        wanted_say_as_ = say_as_of(attributes.say_as);
        set(say_as_, wanted_say_as_, 'Y', character);
        auto& pitches = utterance_.pitches;
        const PitchChange change{static_cast<std::uint32_t>(utterance_.source.size()), attributes.pitch,
                                 attributes.range};
        if (!pitches.empty() && pitches.back().factor == change.factor && pitches.back().range == change.range) return;
        pitches.push_back(change);
    }

    // Other text in place of what is written.
    void put_text(const Spoken& spoken) {
        std::u32string codes;
        for (std::string_view rest = spoken.text; !rest.empty();) {
            const Decoded decoded = decode_utf8(rest);
            append_composed(codes, decoded.code);
            rest.remove_prefix(decoded.length);
        }
        for (std::size_t i = 0; i < codes.size(); ++i) put(codes[i], source_of(spoken, i, codes.size()));
    }

    // A pronunciation by its mnemonics, which are ASCII. Where espeak-ng spells, it knows none.
    void put_phonemes(const std::string& mnemonics, const Spoken& spoken) {
        const std::string command = "[[" + mnemonics + "]]";
        if (utterance_.text.size() + command.size() > clause_ + longest_clause) end_clause(spoken.first);
        set(say_as_, 0, 'Y', spoken.first);
        if (!utterance_.text.empty() && utterance_.text.back() != ' ') put_plain(' ', spoken.first);
        utterance_.text += command;
        for (std::size_t i = 0; i < command.size(); ++i)
            utterance_.source.push_back(source_of(spoken, i, command.size()));
        utterance_.phonemes = true;
    }

private:
    void put_plain(char sign, std::uint32_t character) {
        utterance_.text += sign;
        utterance_.source.push_back(character);
    }

    void end_clause(std::uint32_t character) {
        if (utterance_.source.empty()) return;
        set(say_as_, 0, 'Y', character);
        put_plain(',', utterance_.source.back());
        put_plain(' ', utterance_.source.back());
        clause_ = utterance_.text.size();
    }

    static std::uint32_t source_of(const Spoken& spoken, std::size_t index, std::size_t size) {
        return spoken.first + static_cast<std::uint32_t>(index * (spoken.last - spoken.first) / size);
    }

    void set(int& current, int wanted, char letter, std::uint32_t character) {
        if (current == wanted) return;
        current = wanted;
        const std::string command = command_start + std::to_string(wanted) + letter;
        utterance_.text += command;
        utterance_.source.insert(utterance_.source.end(), command.size(), character);
    }

    Utterance& utterance_;
    int say_as_ = 0;
    int wanted_say_as_ = 0;
    std::size_t clause_ = 0;  // where in the text the last clause begins that was ended here
};

std::size_t run_at(const Sentence& sentence, std::uint32_t character) {
    const auto behind = std::upper_bound(sentence.runs.begin(), sentence.runs.end(), character,
                                         [](std::uint32_t wanted, const Run& run) { return wanted < run.first; });
    return behind == sentence.runs.begin() ? 0 : static_cast<std::size_t>(behind - sentence.runs.begin()) - 1;
}

}  // namespace

double stretch_of(const VoiceSettings& voice, const Attributes& attributes, int rate) {
    const double wanted = wanted_rate(voice, attributes);
    return wanted / std::clamp(wanted, slowest, fastest_of(voice)) * rate_of(voice, attributes) / rate;
}

const Attributes& attributes_at(const Sentence& sentence, std::uint32_t character) {
    return sentence.runs[run_at(sentence, character)].attributes;
}

namespace {

// The attributes that hold for the longest run of a stretch of a sentence.
const Attributes& most_of(const Sentence& sentence, std::uint32_t first, std::uint32_t last) {
    const auto& runs = sentence.runs;
    std::size_t best = run_at(sentence, first);
    std::uint32_t most = 0;
    for (std::size_t i = best; i < runs.size() && runs[i].first < last; ++i) {
        const std::uint32_t end = i + 1 < runs.size() ? std::min(runs[i + 1].first, last) : last;
        const std::uint32_t size = end - std::max(runs[i].first, first);
        if (size > most) best = i;
        most = std::max(most, size);
    }
    return runs[best].attributes;
}

// Goes over a stretch of a sentence and writes what is said.
class Reader {
public:
    Reader(const Sentence& sentence, Pronouncer& pronouncer, Utterance& utterance)
        : sentence_(sentence), pronouncer_(pronouncer), utterance_(utterance), writer_(utterance) {}

    void read(std::uint32_t first, std::uint32_t last) {
        run_ = run_at(sentence_, first);
        while (spoken_ < sentence_.spoken.size() && sentence_.spoken[spoken_].first < first) ++spoken_;
        while (token_ < sentence_.tokens.size() && sentence_.tokens[token_].first < first) ++token_;
        while (sign_ < sentence_.signs.size() && sentence_.signs[sign_].first < first) ++sign_;
        writer_.change(attributes(), first);
        for (std::uint32_t i = first; i < last;) {
            while (run_ + 1 < sentence_.runs.size() && sentence_.runs[run_ + 1].first <= i)
                writer_.change(sentence_.runs[++run_].attributes, i);
            std::uint32_t next = instead(i, last);
            if (next == i) next = name(i, last);
            if (next == i) writer_.put(sentence_.text[i].code, i);
            i = std::max(next, i + 1);
        }
    }

    // Punctuation at the end of the text, behind character `last`.
    void put(char32_t code, std::uint32_t last) { writer_.put(code, last); }

private:
    const Attributes& attributes() const { return sentence_.runs[run_].attributes; }

    // Says something else for the characters from `at` on and gives the first behind them; `at` if it does not.
    std::uint32_t instead(std::uint32_t at, std::uint32_t limit) {
        const auto& all = sentence_.spoken;
        if (spoken_ < all.size() && all[spoken_].first == at && all[spoken_].last <= limit) {
            const Spoken& spoken = all[spoken_++];
            while (token_ < sentence_.tokens.size() && sentence_.tokens[token_].first < spoken.last) ++token_;
            return say(spoken) ? spoken.last : at;
        }
        if (token_ == sentence_.tokens.size() || sentence_.tokens[token_].first != at) return at;
        const std::size_t first = token_++;
        if (attributes().say_as == SayAs::characters || attributes().say_as == SayAs::digits ||
            pronouncer_.most_words() == 0)
            return at;
        const std::vector<std::string> written = words_from(first, limit);
        const auto said = pronouncer_.words(written, attributes().language);
        if (!said) return at;
        const std::uint32_t last = sentence_.tokens[first + said->count - 1].last;
        if (!say({said->kind, at, last, said->text})) return at;
        token_ = first + said->count;
        return last;
    }

    // Says the name of the sign at `at` and returns the first character after it; `at` if there is none.
    std::uint32_t name(std::uint32_t at, std::uint32_t limit) {
        const auto& signs = sentence_.signs;
        while (sign_ < signs.size() && signs[sign_].first < at) ++sign_;
        if (sign_ == signs.size() || signs[sign_].first != at || signs[sign_].last > limit) return at;
        std::u32string sign;
        for (std::uint32_t i = at; i < signs[sign_].last; ++i) sign.push_back(sentence_.text[i].code);
        const std::string mnemonics = pronouncer_.sign(sign, attributes().language);
        if (mnemonics.empty()) return at;
        writer_.put_phonemes(mnemonics, {Spoken::Kind::ipa, at, signs[sign_].last, {}});
        return signs[sign_].last;
    }

    // The word `first` and those behind it that the same is said of: up to the next border of attributes, or of what is
    // said otherwise already, and with nothing but blanks between.
    std::vector<std::string> words_from(std::size_t first, std::uint32_t limit) const {
        const auto& tokens = sentence_.tokens;
        if (run_ + 1 < sentence_.runs.size()) limit = std::min(limit, sentence_.runs[run_ + 1].first);
        if (spoken_ < sentence_.spoken.size()) limit = std::min(limit, sentence_.spoken[spoken_].first);
        std::vector<std::string> words;
        const std::size_t most = pronouncer_.most_words();
        for (std::size_t i = first; i < tokens.size() && tokens[i].last <= limit && words.size() < most; ++i) {
            if (i > first && !only_blanks(tokens[i - 1].last, tokens[i].first)) break;
            std::string& word = words.emplace_back();
            for (std::uint32_t k = tokens[i].first; k < tokens[i].last; ++k) append_utf8(word, sentence_.text[k].code);
        }
        return words;
    }

    bool only_blanks(std::uint32_t first, std::uint32_t last) const {
        return std::all_of(sentence_.text.begin() + first, sentence_.text.begin() + last,
                           [](const Character& character) { return is_blank(character.code); });
    }

    bool say(const Spoken& spoken) {
        utterance_.replaced = true;
        if (spoken.kind == Spoken::Kind::text) {
            writer_.put_text(spoken);
            return true;
        }
        const std::string mnemonics = pronouncer_.mnemonics(spoken.text, attributes().language);
        if (mnemonics.empty()) return false;
        writer_.put_phonemes(mnemonics, spoken);
        return true;
    }

    const Sentence& sentence_;
    Pronouncer& pronouncer_;
    Utterance& utterance_;
    Writer writer_;
    std::size_t run_ = 0;
    std::size_t spoken_ = 0;
    std::size_t token_ = 0;
    std::size_t sign_ = 0;
};

// Whether a character, which is a blank, is said by its name.
bool is_named(const Sentence& sentence, std::uint32_t at) {
    return std::binary_search(sentence.signs.begin(), sentence.signs.end(), Token{at, at + 1},
                              [](const Token& one, const Token& other) { return one.first < other.first; });
}

// Whether punctuation ends characters `first` to `last`. Quotes and brackets are none that espeak-ng hears.
bool ends_clause(const std::vector<Character>& text, std::uint32_t first, std::uint32_t last) {
    while (last > first && is_closing(text[last - 1].code)) --last;
    return last > first && is_punctuation(text[last - 1].code) && !is_opening(text[last - 1].code);
}

}  // namespace

Utterance make_utterance(const Sentence& sentence, std::uint32_t first, std::uint32_t last, const VoiceSettings& voice,
                         Pronouncer& pronouncer) {
    Utterance utterance;
    const auto& text = sentence.text;
    const auto is_silent = [&](std::uint32_t at) { return is_blank(text[at].code) && !is_named(sentence, at); };
    while (first < last && is_silent(first)) ++first;
    while (last > first && is_silent(last - 1)) --last;
    if (first == last) return utterance;
    utterance.text.reserve(last - first + 16);
    utterance.source.reserve(last - first + 16);
    utterance.rate = rate_of(voice, most_of(sentence, first, last));
    Reader reader(sentence, pronouncer, utterance);
    reader.read(first, last);
    // What goes on later keeps its voice up.
    utterance.end_pause = last == text.size() && sentence.ends;
    if (!utterance.end_pause && !ends_clause(text, first, last)) reader.put(U',', last - 1);
    // espeak-ng counts the place of a text's very last character one too low.
    reader.put(U' ', last - 1);
    return utterance;
}

}  // namespace tts
