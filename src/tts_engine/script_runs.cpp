// From scripts to languages. See script_runs.h.
#include "tts_engine/script_runs.h"

#include <algorithm>
#include <utility>

#include "tts_engine/characters.h"

namespace tts {
namespace {

constexpr char32_t first_not_latin = 0x370;

// script_of(), but quick for ASCII.
Script letter_script(char32_t c) {
    if (c >= 0x80) return script_of(c);
    return (c | 0x20) >= U'a' && (c | 0x20) <= U'z' ? latin_script : no_script;
}

bool keeps_single_letters(Script script) { return script == latin_script || script == greek_script; }

// The script of the first letter.
Script script_of_text(std::string_view text) {
    while (!text.empty()) {
        const Decoded decoded = decode_utf8(text);
        text.remove_prefix(decoded.length);
        const Script script = letter_script(decoded.code);
        if (script != no_script) return script;
    }
    return no_script;
}

class Splitter {
public:
    Splitter(Sentence& sentence, const ScriptNumber& number_of) : sentence_(sentence), number_of_(number_of) {}

    void split() {
        if (!may_change()) return;
        read_letters();
        if (!changed_) return;
        keep_single_letters();
        fill();
        write_runs();
    }

private:
    // What decides about a character's language.
    struct Place {
        std::uint16_t around = 0;    // the language of the text
        std::uint16_t language = 0;  // the one that speaks it
        Script script = no_script;   // of a letter
        bool decides = false;        // it is a letter, or something else is said for it
    };

    // Whether a look at each character is worth it. Latin text of a language that reads it needs none.
    bool may_change() const {
        const auto& text = sentence_.text;
        if (!sentence_.spoken.empty()) return true;
        for (const Run& run : sentence_.runs)
            if (number_of_(latin_script, run.attributes.language) != run.attributes.language) return true;
        return std::any_of(text.begin(), text.end(),
                           [](const Character& character) { return character.code >= first_not_latin; });
    }

    void read_letters() {
        const auto& text = sentence_.text;
        places_.resize(text.size());
        std::size_t run = 0;
        auto spoken = sentence_.spoken.begin();
        for (std::uint32_t i = 0; i < text.size();) {
            while (run + 1 < sentence_.runs.size() && sentence_.runs[run + 1].first <= i) ++run;
            const std::uint16_t around = sentence_.runs[run].attributes.language;
            while (spoken != sentence_.spoken.end() && spoken->last <= i) ++spoken;
            if (spoken != sentence_.spoken.end() && spoken->first == i) {
                const Script script = spoken->kind == Spoken::Kind::text ? script_of_text(spoken->text) : no_script;
                for (; i < std::min<std::size_t>(spoken->last, text.size()); ++i) set(i, around, script, true);
                continue;
            }
            const Script script = letter_script(text[i].code);
            set(i++, around, script, script != no_script);
        }
    }

    void set(std::uint32_t at, std::uint16_t around, Script script, bool decides) {
        const std::uint16_t language = script == no_script ? around : number_of_(script, around);
        places_[at] = {around, language, script, decides};
        changed_ |= language != around;
    }

    void keep_single_letters() {
        std::size_t letters = 0;  // that follow each other in one language
        Place* last = nullptr;
        const auto end_group = [&] {
            if (letters == 1 && keeps_single_letters(last->script)) last->language = last->around;
        };
        for (Place& place : places_) {
            if (!place.decides) continue;
            const bool same = last != nullptr && last->language == place.language && last->around == place.around;
            if (!same) {
                end_group();
                letters = 0;
            }
            ++letters;
            last = &place;
        }
        end_group();
    }

    void fill() {
        for (std::size_t i = 0; i < places_.size(); ++i) {
            const bool goes_on = i > 0 && places_[i - 1].around == places_[i].around;
            if (!places_[i].decides) {
                if (goes_on) places_[i].language = places_[i - 1].language;
            } else if (goes_on && places_[i].language != places_[i - 1].language) {
                take_start(i);
            }
        }
    }

    // What is directly before a letter is of its language.
    void take_start(std::size_t letter) {
        const auto& text = sentence_.text;
        const auto is_other = [&](std::size_t at) {
            return !places_[at].decides && !is_blank(text[at].code) && !is_combining(text[at].code) &&
                   places_[at].around == places_[letter].around;
        };
        std::size_t first = letter;
        while (first > 0 && is_other(first - 1)) --first;
        const bool inside_word = first > 0 && (places_[first - 1].decides || is_combining(text[first - 1].code));
        if (inside_word) {
            first = letter;
            while (is_other(first - 1) && is_opening(text[first - 1].code)) --first;
        }
        for (std::size_t i = first; i < letter; ++i) places_[i].language = places_[letter].language;
    }

    void write_runs() {
        std::vector<Run> runs;
        std::size_t run = 0;
        for (std::uint32_t i = 0; i < places_.size(); ++i) {
            bool begins = i == 0 || places_[i].language != places_[i - 1].language;
            while (run + 1 < sentence_.runs.size() && sentence_.runs[run + 1].first <= i) {
                ++run;
                begins = true;
            }
            if (!begins) continue;
            runs.push_back({i, sentence_.runs[run].attributes});
            runs.back().attributes.language = places_[i].language;
        }
        sentence_.runs = std::move(runs);
    }

    Sentence& sentence_;
    const ScriptNumber& number_of_;
    std::vector<Place> places_;
    bool changed_ = false;
};

}  // namespace

void split_by_script(Sentence& sentence, const ScriptNumber& number_of) {
    if (sentence.has_text()) Splitter(sentence, number_of).split();
}

}  // namespace tts
