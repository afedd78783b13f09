// Where words begin in a sound, found without the events of the synthesiser.
//
// A sentence is spoken, and then its end, from a word on, alone. What is heard first of the end alone is looked for in
// the sound of the sentence (tools/listening/onset.h): there the word begins. A stop has a closure before its burst in
// the sentence only, so the word begins somewhere from the closure to the burst. The melody is flat, since it depends
// on the whole sentence.
#ifndef TESTS_TTS_ENGINE_WORD_TIMES_H
#define TESTS_TTS_ENGINE_WORD_TIMES_H

#include <string>
#include <vector>

#include "speech.h"
#include "tools/listening/onset.h"

constexpr unsigned whole_rate = 22050;
constexpr double on_time = 30;  // milliseconds

struct WordTime {
    std::string word;
    bool measured;  // the end alone sounds as it does in the sentence
    double event;   // of the word, in milliseconds
    double first;   // the word begins from here ...
    double last;    // ... to here
    double early() const { return first - event; }
    double late() const { return event - last; }
    bool is_on_time() const { return early() <= on_time && late() <= on_time; }
};

inline void PrintTo(const WordTime& time, std::ostream* out) {
    *out << time.word << " at " << time.event << " ms, heard from " << time.first << " to " << time.last;
}

inline double milliseconds(std::size_t samples) { return static_cast<double>(samples) * 1000 / whole_rate; }

inline Speech speak_flat(tts_voice voice, const std::string& text, const std::string& language) {
    const std::string begin = "<speak version=\"1.0\" xml:lang=\"" + language + "\"><prosody range=\"0%\">";
    return speak(voice, begin + text + "</prosody></speak>", 22050);
}

inline WordTime time_of_word(tts_voice voice, const Speech& whole, const std::string& end,
                             const std::string& language) {
    const Speech alone = speak_flat(voice, end, language);
    const std::size_t near = whole.samples.size() - std::min(whole.samples.size(), alone.samples.size());
    const std::size_t reach = whole_rate * 15 / 100;
    const auto onset = listening::find_onset(whole.samples, alone.samples, near, reach, whole_rate);
    const std::size_t closure = listening::closure_before(whole.samples, onset.sample, whole_rate);
    return {{}, onset.difference <= listening::same_sound, 0, milliseconds(closure), milliseconds(onset.sample)};
}

// All words of a sentence but the first, at most `most` of them, evenly chosen.
inline std::vector<WordTime> times_of_words(tts_voice voice, const std::string& sentence,
                                            const std::string& language = "en", std::size_t most = 100) {
    const Speech whole = speak_flat(voice, sentence, language);
    std::vector<HeardEvent> words;
    for (const HeardEvent& event : whole.events)
        if (event.type == TTS_EVENT_WORD) words.push_back(event);
    std::vector<WordTime> times;
    const std::size_t step = words.size() / most + 1;
    std::size_t at = 0;
    for (std::size_t i = 0; i < words.size(); ++i) {
        at = sentence.find(words[i].text, at);
        EXPECT_NE(at, std::string::npos) << words[i].text << " in " << sentence;
        if (at == std::string::npos) break;
        if (i > 0 && i % step == 0) {
            WordTime time = time_of_word(voice, whole, sentence.substr(at), language);
            time.word = words[i].text;
            time.event = milliseconds(words[i].sample);
            times.push_back(time);
        }
        at += words[i].text.size();
    }
    return times;
}

#endif
