// When words are reported against when they are heard. See measurements.h.
//
// The begin of a word's sound is found without the synthesiser's bookkeeping. The sentence is spoken again with another
// letter at the start of the word, or another word in its place, and the samples of the two part where the word begins
// to sound. They may part earlier: the vowel before is shorter before a voiced consonant, the tongue moves to its next
// place, the word before is joined to a vowel. Or later: both begin with a closed mouth. So several are tried, and the
// begin is between the first parting and the last. An event is late if it is after the last, early if it is before the
// first, by more than the tolerance.
//
// What seems to be late is tried with more letters and words, of which one is made at the same place of the mouth, or
// has the same short rest before it. At last other letters are tried after the first one, which stays: those samples
// part after the begin in any case. An event between the two kinds of parting is doubtful: the first letter may change
// the sound before it, as in Finnish "-n p-", which is spoken "mp", and the second character of a Chinese word the
// first one. So a fault is hardly ever reported where there is none (a conjunction with a short rest before it, if the
// text has no other), while a small one may be missed. Where nothing changes the sound, the time cannot be measured.
// The melody is made flat, because in a sentence's melody each word changes those before it.
#include <algorithm>
#include <map>
#include <optional>

#include "tools/listening/measurements.h"
#include "tools/listening/sound.h"

namespace listening {
namespace {

constexpr double tolerance = 30;  // ms
constexpr std::size_t least_tried = 8, most_tried = 32;
constexpr std::size_t longest_sentence = 400;  // bytes: others are cut at a blank

std::vector<std::string> most_frequent(const std::map<std::string, int>& counts) {
    std::vector<std::string> all;
    for (const auto& [text, count] : counts) all.push_back(text);
    std::stable_sort(all.begin(), all.end(),
                     [&counts](const std::string& a, const std::string& b) { return counts.at(a) > counts.at(b); });
    return all;
}

// What is put in place of a word's first character, or of the word.
struct Substitute {
    std::string text;
    bool for_word;
};

// Those that the text has most often come first, letters and words in turns.
std::vector<Substitute> substitutes_in(const std::string& text) {
    std::map<std::string, int> initials, words;
    for (const Token& token : tokens_of(text)) {
        const std::string first = characters_of(token.text)[0];
        if (is_digit(code_of(first))) continue;
        ++initials[first];
        ++words[token.text];
    }
    const std::vector<std::string> letters = most_frequent(initials), others = most_frequent(words);
    std::vector<Substitute> all;
    for (std::size_t i = 0; i < std::max(letters.size(), others.size()) && all.size() < 2 * most_tried; ++i) {
        if (i < letters.size()) all.push_back({letters[i], false});
        if (i < others.size()) all.push_back({others[i], true});
    }
    return all;
}

// A sentence, spoken as it is written.
struct Spoken {
    Document document;
    Recording recording;
};

Document monotonous(const Subject& subject, const std::string& sentence) {
    const std::string flat = "<prosody range=\"0%\">";
    Document document = document_of(subject.language, flat + escaped(sentence) + "</prosody>");
    document.body += flat.size();
    return document;
}

// Where the sound parts from that of `spoken` when `sentence` is spoken instead; its end if it never does.
std::size_t parting(const Subject& subject, const Spoken& spoken, const std::string& sentence) {
    std::size_t known = 0;
    const Samples& wanted = spoken.recording.samples;
    const auto same_so_far = [&](const Recording& other) {
        const Samples& heard = other.samples;
        while (known < heard.size() && known < wanted.size() && heard[known] == wanted[known]) ++known;
        return known == heard.size();
    };
    subject.voice.speak(monotonous(subject, sentence).text, usual_samples, same_so_far);
    return known;
}

// How much earlier and later than the sound the event is, in samples; below 0 is not at all.
struct Offset {
    double early, late;
    double worst() const { return std::max(early, late); }
};

Offset offset_of(const std::vector<std::size_t>& partings, std::size_t sample) {
    const auto [first, last] = std::minmax_element(partings.begin(), partings.end());
    const auto at = static_cast<double>(sample);
    return {static_cast<double>(*first) - at, at - static_cast<double>(*last)};
}

// The partings for one word: of some substitutes, and of more as long as the event seems to be late.
std::vector<std::size_t> partings_of(const Subject& subject, const Spoken& spoken, const std::string& sentence,
                                     const Token& word, const std::vector<Substitute>& substitutes, std::size_t event) {
    std::vector<std::size_t> partings;
    const std::string first = characters_of(word.text)[0];
    std::size_t tried = 0;
    if (is_digit(code_of(first))) return partings;
    for (const Substitute& other : substitutes) {
        if (tried >= least_tried && !partings.empty() &&
            offset_of(partings, event).late <= static_cast<double>(subject.samples(tolerance)))
            break;
        if (tried == most_tried) break;
        if (other.text.starts_with(first)) continue;
        ++tried;
        std::string changed = sentence;
        changed.replace(word.begin, other.for_word ? word.text.size() : first.size(), other.text);
        const std::size_t place = parting(subject, spoken, changed);
        if (place < spoken.recording.samples.size()) partings.push_back(place);
    }
    return partings;
}

// The letter after the first one of the word. After a character of Han or kana it is the next word's, or, at the end of
// a clause, an empty place.
struct Letter {
    std::size_t at, size;  // bytes of the sentence
};

std::optional<Letter> second_letter(const std::string& sentence, const Token& word) {
    const std::vector<std::string> letters = characters_of(word.text);
    if (letters.size() > 1) return Letter{word.begin + letters[0].size(), letters[1].size()};
    const char32_t c = code_of(word.text);
    if (!is_han(c) && !is_kana(c)) return std::nullopt;
    const std::vector<std::string> after = characters_of(std::string_view(sentence).substr(word.end));
    const bool ends = after.empty() || is_punctuation(code_of(after[0])) || is_blank(code_of(after[0]));
    return Letter{word.end, ends ? 0 : after[0].size()};
}

// Whether the event is before the sound of the second letter, as far as that can be found.
bool is_doubtful(const Subject& subject, const Spoken& spoken, const std::string& sentence, const Token& word,
                 const std::vector<Substitute>& substitutes, std::size_t event) {
    const std::optional<Letter> second = second_letter(sentence, word);
    if (!second) return false;
    std::vector<std::size_t> partings;
    for (const Substitute& other : substitutes) {
        if (partings.size() == least_tried) break;
        if (other.for_word || sentence.compare(second->at, second->size, other.text) == 0) continue;
        std::string changed = sentence;
        changed.replace(second->at, second->size, other.text);
        partings.push_back(parting(subject, spoken, changed));
    }
    return !partings.empty() && event <= *std::max_element(partings.begin(), partings.end());
}

// The sample at which the word is reported. False if it is not, which is measured elsewhere.
bool reported(const Spoken& spoken, const Token& word, std::size_t& sample) {
    for (const Event& event : spoken.recording.events) {
        const std::size_t begin = spoken.document.body + word.begin, end = spoken.document.body + word.end;
        if (event.type != TTS_EVENT_WORD || event.begin < begin || event.begin >= end) continue;
        sample = static_cast<std::size_t>(event.sample);
        return true;
    }
    return false;
}

struct Times {
    Result result;
    double worst = 0;
    std::size_t unknown = 0, doubtful = 0;
};

void check_word(const Subject& subject, const Spoken& spoken, const std::string& sentence, const Token& word,
                const std::vector<Substitute>& substitutes, Times& times) {
    std::size_t sample = 0;
    if (!reported(spoken, word, sample)) return;
    const std::vector<std::size_t> partings = partings_of(subject, spoken, sentence, word, substitutes, sample);
    if (partings.empty()) {
        ++times.unknown;
        return;
    }
    const Offset offset = offset_of(partings, sample);
    const double off = offset.worst() * 1000 / subject.voice.rate();
    ++times.result.checked;
    if (off > tolerance && offset.late > offset.early &&
        is_doubtful(subject, spoken, sentence, word, substitutes, sample)) {
        ++times.doubtful;
        return;
    }
    times.worst = std::max(times.worst, off);
    if (off > tolerance)
        times.result.fault(in_quotes(word.text) + " is " + whole(off) + " ms too " +
                           (offset.late > offset.early ? "late" : "early") + " in " + in_quotes(sentence));
}

void check_sentence(const Subject& subject, const std::string& sentence, const std::vector<Substitute>& substitutes,
                    Times& times) {
    Spoken spoken{monotonous(subject, sentence), {}};
    spoken.recording = subject.voice.speak(spoken.document.text);
    // A voice that never says the same twice cannot be compared.
    if (parting(subject, spoken, sentence) < spoken.recording.samples.size()) return;
    for (const Token& word : tokens_of(sentence)) check_word(subject, spoken, sentence, word, substitutes, times);
}

// The start of a long sentence up to a blank.
std::string shortened(const std::string& sentence) {
    if (sentence.size() <= longest_sentence) return sentence;
    const std::vector<Token> words = tokens_of(sentence);
    std::size_t end = 0;
    for (const Token& word : words)
        if (word.end <= longest_sentence) end = word.end;
    return sentence.substr(0, end == 0 ? sentence.size() : end);
}

// A list, a path and a title, of the text's own words: words after dashes and other signs.
std::vector<std::string> joined_by_signs(const std::string& text) {
    std::vector<std::string> words;
    for (const Token& token : tokens_of(text))
        if (letter_count(token.text) > 2 && words.size() < 4) words.push_back(token.text);
    if (words.size() < 4) return {};
    std::vector<std::string> result;
    for (const std::string sign : {" - ", " -- ", " – ", " — ", " _ ", ", ", ": ", " (", "... "})
        result.push_back(words[0] + sign + words[1] + sign + words[2] + sign + words[3]);
    return result;
}

}  // namespace

Result measure_word_times(const Subject& subject) {
    Times times;
    const std::vector<Substitute> substitutes = substitutes_in(subject.text);
    std::vector<std::string> sentences = joined_by_signs(subject.text);
    const std::vector<std::string> read = sentences_of(subject.text);
    for (std::size_t i = 0; i < std::min(read.size(), subject.most); ++i) sentences.push_back(shortened(read[i]));
    for (const std::string& sentence : sentences) check_sentence(subject, sentence, substitutes, times);
    times.result.figure = whole(times.worst) + " ms";
    if (times.doubtful > 0) times.result.figure += ", " + std::to_string(times.doubtful) + " doubtful";
    if (times.unknown > 0) times.result.figure += ", " + std::to_string(times.unknown) + " unknown";
    return times.result;
}

}  // namespace listening
