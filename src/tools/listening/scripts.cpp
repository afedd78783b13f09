// Words that are not read. See measurements.h.
//
// A voice that does not know a character says the name of its script or its number ("Chinese letter"), or spells the
// word. The first kind is known by its sound: words that share no character sound alike. The second kind takes longer
// than a word of so many letters can take. Both are found without knowing the language.
#include <algorithm>
#include <map>
#include <set>

#include "tools/listening/measurements.h"
#include "tools/listening/sound.h"

namespace listening {
namespace {

constexpr double gap = 100;                         // ms inside a word
constexpr double per_word = 350, per_letter = 250;  // ms: no word that is read takes longer
constexpr double per_han = 400;                     // ms for a character that is a syllable or two
constexpr std::size_t most_alike = 3;               // so many different words may be spoken alike

// So many, however little else is measured: the verdict on a voice must not depend on that.
constexpr std::size_t enough = 100;

// Words of the text, each once. Of Han, pairs of neighbours: single characters often sound alike.
std::vector<std::string> different_words(const Subject& subject) {
    std::vector<std::string> words;
    std::set<std::string> known;
    const auto add = [&](const std::string& word) {
        if (known.insert(word).second) words.push_back(word);
    };
    const std::vector<Token> tokens = tokens_of(subject.text);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const char32_t c = code_of(tokens[i].text);
        if (is_kana(c)) continue;  // a syllable: too short to be judged by its sound
        if (!is_han(c)) {
            if (!is_digit(c)) add(tokens[i].text);
        } else if (i + 1 < tokens.size() && is_han(code_of(tokens[i + 1].text)) &&
                   tokens[i + 1].begin == tokens[i].end) {
            add(tokens[i].text + tokens[i + 1].text);
        }
    }
    if (words.size() > enough) words.resize(enough);
    return words;
}

struct SpokenWord {
    std::string text;
    Samples samples;
    bool too_long;
};

SpokenWord speak_word(const Subject& subject, const std::string& word) {
    SpokenWord spoken{word, subject.speak(escaped(word)).samples, false};
    const double sound =
        subject.milliseconds(sounding_within(spoken.samples, {0, spoken.samples.size()}, subject.samples(gap)));
    const double letter = is_han(code_of(word)) ? per_han : per_letter;
    spoken.too_long = sound > per_word + letter * static_cast<double>(letter_count(word));
    return spoken;
}

}  // namespace

Result measure_scripts(const Subject& subject) {
    Result result;
    std::vector<SpokenWord> words;
    std::map<Samples, std::size_t> alike;
    for (const std::string& word : different_words(subject)) {
        words.push_back(speak_word(subject, word));
        ++alike[words.back().samples];
    }
    for (const SpokenWord& word : words) {
        ++result.checked;
        if (alike[word.samples] > most_alike)
            result.fault(in_quotes(word.text) + " sounds like " + std::to_string(alike[word.samples] - 1) + " others");
        else if (word.too_long)
            result.fault(in_quotes(word.text) + " is spelled");
    }
    return result;
}

}  // namespace listening
