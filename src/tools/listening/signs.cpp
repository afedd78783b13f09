// Signs and letters, each by itself. See measurements.h.
#include <algorithm>
#include <set>

#include "tools/listening/measurements.h"
#include "tools/listening/sound.h"

namespace listening {
namespace {

constexpr double least_sound = 20;  // ms
constexpr double gap = 40;          // ms, inside the sound of a sign

const char* const other_scripts =
    "¡ ¿ « » · – — ‘ ’ ‚ “ ” „ … ; ՝ ։ ־ ׳ ، ؛ ؟ ۔ । ॥ ၊ ။ ፡ ። ፣ ፤ 、 。 《 》 「 」 【 】 ・ ！ ， ： ； ？ （ ）";

// From U+0021 to U+007E, of other scripts, and the letters that the text is written with.
std::vector<std::string> signs_of(const Subject& subject) {
    std::vector<std::string> signs;
    for (char c = '!'; c <= '~'; ++c) signs.emplace_back(1, c);
    for (const std::string& character : characters_of(other_scripts))
        if (character != " ") signs.push_back(character);
    std::set<std::string> letters;
    for (const std::string& character : characters_of(subject.text))
        if (code_of(character) > 0x7F && letter_count(character) == 1) letters.insert(character);
    const std::size_t enough = std::min(letters.size(), subject.most);
    signs.insert(signs.end(), letters.begin(), std::next(letters.begin(), static_cast<std::ptrdiff_t>(enough)));
    return signs;
}

// One sign in a document; `before` and `after` are markup.
struct Sign {
    std::string text, before, after;
};

void check(const Subject& subject, const Sign& sign, Result& result) {
    const std::string written = escaped(sign.text);
    const Document document = document_of(subject.language, sign.before + written + sign.after);
    const Recording heard = subject.voice.speak(document.text);
    const std::size_t begin = document.body + sign.before.size(), end = begin + written.size();
    const std::vector<Event> words = heard.of(TTS_EVENT_WORD);
    const auto over = std::count_if(words.begin(), words.end(),
                                    [begin, end](const Event& word) { return word.begin <= begin && word.end >= end; });
    const std::size_t sound = sounding_within(heard.samples, {0, heard.samples.size()}, subject.samples(gap));
    ++result.checked;
    if (sound < subject.samples(least_sound))
        result.fault(sign.text + " is silent");
    else if (over != 1 || words.size() != 1)
        result.fault(sign.text + " has " + std::to_string(over) + " word events over it, of " +
                     std::to_string(words.size()));
}

// The blank of "a b" is a sign when it is spelled: the second of three words, with sound of its own.
void check_blank(const Subject& subject, Result& result) {
    const std::string before = "<say-as interpret-as=\"characters\">a";
    const Document document = document_of(subject.language, before + " b</say-as>");
    const Recording heard = subject.voice.speak(document.text);
    const std::vector<Event> words = heard.of(TTS_EVENT_WORD);
    const std::size_t blank = document.body + before.size();
    ++result.checked;
    if (words.size() != 3 || words[1].begin != blank || words[1].end != blank + 1)
        return result.fault("a blank in spelling has no word event of its own");
    const Span between = {words[1].sample, words[2].sample};
    if (sounding_within(heard.samples, between, subject.samples(gap)) < subject.samples(least_sound))
        result.fault("a blank in spelling is silent");
}

}  // namespace

Result measure_signs_spelled(const Subject& subject) {
    Result result;
    for (const std::string& sign : signs_of(subject))
        check(subject, {sign, "<say-as interpret-as=\"characters\">", "</say-as>"}, result);
    check_blank(subject, result);
    return result;
}

Result measure_signs_alone(const Subject& subject) {
    Result result;
    for (const std::string& sign : signs_of(subject)) check(subject, {sign, "", ""}, result);
    return result;
}

}  // namespace listening
