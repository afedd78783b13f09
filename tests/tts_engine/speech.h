// Speaking through the twelve functions, for tests: a voice, and all that a document gave.
#ifndef TESTS_TTS_ENGINE_SPEECH_H
#define TESTS_TTS_ENGINE_SPEECH_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tts_engine/tts_engine.h"

constexpr double samples_per_second = 22050;

// The library and one voice of it.
class TestVoice {
public:
    explicit TestVoice(const std::string& name = "en-us-22i")
        : TestVoice(TTS_TEST_DATA, std::string(TTS_TEST_VOICES) + "/" + name) {}
    TestVoice(const std::string& data, const std::string& file) : library_(tts_create()) {
        voice_ = tts_load_voice(library_, data.c_str(), file.c_str());
        EXPECT_NE(voice_, nullptr) << tts_errmsg();
    }
    ~TestVoice() {
        tts_unload_voice(voice_);
        tts_destroy(library_);
    }
    TestVoice(const TestVoice&) = delete;
    TestVoice& operator=(const TestVoice&) = delete;
    operator tts_voice() const { return voice_; }

private:
    tts_handle library_;
    tts_voice voice_;
};

struct HeardEvent {
    std::uint32_t type;
    std::string label;     // "(null)" for none
    std::string text;      // what the byte range cuts out of the document, for words and sentences
    std::uint64_t sample;  // from the document's first
    bool operator==(const HeardEvent&) const = default;
};

// What a failing test prints of them.
inline void PrintTo(const HeardEvent& event, std::ostream* out) {
    *out << event.type << " \"" << event.label << "\" \"" << event.text << "\" at " << event.sample;
}

struct Speech {
    std::vector<std::int16_t> samples;
    std::vector<HeardEvent> events;
    std::vector<std::uint32_t> record_sizes;
    double seconds() const { return static_cast<double>(samples.size()) / samples_per_second; }
    bool operator==(const Speech&) const = default;

    std::vector<std::string> of(std::uint32_t type) const {
        std::vector<std::string> result;
        for (const HeardEvent& event : events)
            if (event.type == type)
                result.push_back(type == TTS_EVENT_MARK || type == TTS_EVENT_VISEME ? event.label : event.text);
        return result;
    }
    std::vector<std::string> words() const { return of(TTS_EVENT_WORD); }
    std::vector<std::string> sentences() const { return of(TTS_EVENT_SENTENCE); }
    std::vector<std::string> marks() const { return of(TTS_EVENT_MARK); }
    std::vector<std::string> visemes() const { return of(TTS_EVENT_VISEME); }

    // Where a word or mark comes first; a huge number if it does not.
    std::uint64_t sample_of(const std::string& what) const {
        for (const HeardEvent& event : events)
            if (event.text == what || event.label == what) return event.sample;
        return ~std::uint64_t{0};
    }

    // Root of the mean square of samples `first` up to `last`.
    double loudness(std::size_t first, std::size_t last) const {
        double sum = 0;
        for (std::size_t i = first; i < last; ++i) sum += static_cast<double>(samples[i]) * samples[i];
        return first == last ? 0 : std::sqrt(sum / static_cast<double>(last - first));
    }
    double loudness() const { return loudness(0, samples.size()); }
};

// Adds a record; checks what holds for every record.
inline void take_record(Speech& speech, const tts_wave& wave, const std::string& document, std::uint32_t asked) {
    EXPECT_LE(wave.sample_count, asked);
    const std::uint64_t first = speech.samples.size();
    speech.record_sizes.push_back(wave.sample_count);
    for (std::uint32_t i = 0; i < wave.event_count; ++i) {
        const tts_wave_event& event = wave.events[i];
        EXPECT_LT(event.sample_offset, std::max(wave.sample_count, 1u));
        HeardEvent heard{event.type, event.label == nullptr ? "(null)" : event.label, {}, first + event.sample_offset};
        if (event.type == TTS_EVENT_WORD || event.type == TTS_EVENT_SENTENCE) {
            EXPECT_LT(event.text_begin, event.text_end);
            EXPECT_LE(event.text_end, document.size());
            heard.text = document.substr(event.text_begin, event.text_end - event.text_begin);
        }
        const std::uint64_t before = speech.events.empty() ? 0 : speech.events.back().sample;
        EXPECT_GE(heard.sample, before);
        speech.events.push_back(heard);
    }
    speech.samples.insert(speech.samples.end(), wave.samples, wave.samples + wave.sample_count);
}

inline void hear_rest(Speech& speech, tts_streamer streamer, const std::string& document, std::uint32_t asked = 2205) {
    while (tts_wave* wave = tts_streamer_synth(streamer, asked)) {
        take_record(speech, *wave, document, asked);
        tts_wave_delete(wave);
    }
    EXPECT_STREQ(tts_errmsg(), "");
}

inline Speech speak(tts_voice voice, const std::string& document, std::uint32_t asked = 2205) {
    Speech speech;
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    EXPECT_NE(streamer, nullptr) << tts_errmsg();
    hear_rest(speech, streamer, document, asked);
    EXPECT_EQ(tts_streamer_stop(streamer), 0);
    return speech;
}

inline Speech speak(const std::string& document) {
    const TestVoice voice;
    return speak(voice, document);
}

// A document as the host's side writes it, around `body`.
inline std::string document_of(const std::string& body, const std::string& version = "1.0") {
    return "<speak version=\"" + version +
           "\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"en\"><mark name=\"P0\"/>" + body + "</speak>";
}

inline void PrintTo(const Speech& speech, std::ostream* out) {
    *out << speech.samples.size() << " samples, " << speech.events.size() << " events";
}

using Texts = std::vector<std::string>;

#endif
