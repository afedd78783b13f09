// Word and sentence events against the text. See measurements.h.
#include <algorithm>

#include "tools/listening/measurements.h"
#include "tools/listening/sound.h"

namespace listening {
namespace {

constexpr double pause = 200;             // ms; longer than what is closed inside a word
constexpr double early = 150, late = 60;  // ms: how far a word event may be from the begin of a sound
constexpr double least_stray = 30;        // ms

// The text's sentences, and the items. Each is a document of its own.
std::vector<std::string> utterances_of(const Subject& subject) {
    std::vector<std::string> all = sentences_of(subject.text);
    if (all.size() > subject.most) all.resize(subject.most);
    all.insert(all.end(), subject.items.begin(), subject.items.end());
    return all;
}

void check_words(const Subject& subject, const std::string& utterance, Result& result) {
    const std::string written = escaped(utterance);
    const Document document = document_of(subject.language, written);
    const std::vector<Event> words = subject.voice.speak(document.text).of(TTS_EVENT_WORD);
    for (const Token& token : tokens_of(written)) {
        const std::size_t begin = document.body + token.begin, end = document.body + token.end;
        ++result.checked;
        if (std::none_of(words.begin(), words.end(),
                         [begin, end](const Event& word) { return word.begin >= begin && word.begin < end; }))
            result.fault(in_quotes(token.text) + " in " + in_quotes(utterance.substr(0, 60)));
    }
}

void check_sounds(const Subject& subject, const std::string& utterance, Result& result) {
    const Recording heard = subject.speak(escaped(utterance));
    const std::vector<Event> words = heard.of(TTS_EVENT_WORD);
    for (const Span& span : sounding_spans(heard.samples, subject.samples(pause))) {
        if (span.end - span.begin < subject.samples(least_stray)) continue;
        const std::size_t reach = subject.samples(early);
        const std::size_t from = span.begin < reach ? 0 : span.begin - reach;
        const std::size_t to = span.begin + subject.samples(late);
        ++result.checked;
        if (std::none_of(words.begin(), words.end(),
                         [from, to](const Event& word) { return word.sample >= from && word.sample <= to; }))
            result.fault(whole(subject.milliseconds(span.end - span.begin)) + " ms of sound at " +
                         whole(subject.milliseconds(span.begin)) + " ms of " + in_quotes(utterance.substr(0, 60)));
    }
}

// A sentence of so many characters of the text's own words, with a comma after every eighth of them if wanted.
std::string long_sentence(const Subject& subject, std::size_t length, bool commas) {
    const std::vector<Token> words = tokens_of(subject.text);
    std::string sentence;
    for (std::size_t i = 0; letter_count(sentence) < length; ++i) {
        const std::string& word = words[i % words.size()].text;
        const char32_t c = code_of(word);
        if (!sentence.empty() && commas && i % 8 == 0) sentence += is_han(c) || is_kana(c) ? "，" : ",";
        if (!sentence.empty() && !is_han(c) && !is_kana(c)) sentence += ' ';
        sentence += word;
    }
    return sentence;
}

void check_sentence(const Subject& subject, const std::string& sentence, Result& result) {
    const std::string written = escaped(sentence);
    const Document document = document_of(subject.language, written + ".");
    const std::vector<Event> events = subject.voice.speak(document.text).of(TTS_EVENT_SENTENCE);
    ++result.checked;
    const std::string size = std::to_string(letter_count(sentence)) + " letters";
    if (events.size() != 1)
        return result.fault("a sentence of " + size + " has " + std::to_string(events.size()) + " sentence events");
    const std::size_t end = document.body + written.size();
    if (events[0].begin > document.body || events[0].end < end)
        result.fault("the event of a sentence of " + size + " covers " +
                     std::to_string(events[0].end - events[0].begin) + " of " + std::to_string(written.size()) +
                     " bytes");
}

}  // namespace

Result measure_words(const Subject& subject) {
    Result result;
    for (const std::string& utterance : utterances_of(subject)) check_words(subject, utterance, result);
    return result;
}

Result measure_stray_sound(const Subject& subject) {
    Result result;
    for (const std::string& utterance : utterances_of(subject)) check_sounds(subject, utterance, result);
    return result;
}

Result measure_sentences(const Subject& subject) {
    Result result;
    if (tokens_of(subject.text).empty()) return result;
    for (const std::size_t length : {100, 400, 1000})
        for (const bool commas : {false, true}) check_sentence(subject, long_sentence(subject, length, commas), result);
    return result;
}

}  // namespace listening
