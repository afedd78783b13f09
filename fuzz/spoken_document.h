// A document spoken by the shipped synthesiser through its twelve functions, with what must hold of every record.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/property.h"
#include "fuzz/utf8_check.h"
#include "tts_engine/tts_engine.h"

// The library and the voice that speaks, for the whole run.
inline tts_handle synthesiser() {
    static const tts_handle library = tts_create();
    return library;
}

inline tts_voice fuzz_voice() {
    static const tts_voice voice = tts_load_voice(synthesiser(), NELVA_FUZZ_DATA, NELVA_FUZZ_VOICE);
    property(voice != nullptr, tts_errmsg());
    return voice;
}

class SpokenDocument {
public:
    // Up to its first 0 byte; the text must stay.
    SpokenDocument(tts_voice voice, const std::string& text)
        : text_(text.c_str()), valid_(is_strict_utf8(text_)), streamer_(tts_streamer_start(voice, text.c_str(), -1)) {
        property(streamer_ != nullptr, "every document can be spoken");
    }
    ~SpokenDocument() { property(tts_streamer_stop(streamer_) == 0, "a streamer stops"); }
    SpokenDocument(const SpokenDocument&) = delete;
    SpokenDocument& operator=(const SpokenDocument&) = delete;

    // False at the end.
    bool synth(std::uint32_t samples) {
        tts_wave* const wave = tts_streamer_synth(streamer_, samples);
        if (wave == nullptr) {
            property(tts_errmsg()[0] == '\0', "nothing fails while a document is spoken");
            return false;
        }
        check(*wave, samples);
        ++records_;
        samples_ += wave->sample_count;
        tts_wave_delete(wave);
        return true;
    }

    void jump(std::int32_t count) {
        if (tts_streamer_jump(streamer_, count) != 0) property(tts_errmsg()[0] != '\0', "a failure has a message");
        word_end_ = sentence_end_ = 0;
    }

    // To the end, or until that many records or about that many samples were taken in all. A document may hold any
    // number of empty records.
    void speak_up_to(std::uint64_t samples) {
        while (samples_ < samples && records_ < most_records && synth(8192)) {
        }
    }

    std::uint64_t samples() const { return samples_; }

private:
    void check(const tts_wave& wave, std::uint32_t asked) {
        property(asked == 0 || wave.sample_count <= asked, "no more samples than asked for");
        for (std::uint32_t i = 0; i < wave.sample_count; ++i) sum_ += wave.samples[i];  // each can be read
        std::uint32_t offset = 0;
        for (std::uint32_t i = 0; i < wave.event_count; ++i) {
            const tts_wave_event& event = wave.events[i];
            property(event.sample_offset >= offset, "events come in order");
            property(event.sample_offset < std::max(wave.sample_count, 1U), "events lie in their record");
            offset = event.sample_offset;
            if (event.type == TTS_EVENT_WORD) check_range(event, &word_end_);
            if (event.type == TTS_EVENT_SENTENCE) check_range(event, &sentence_end_);
            if (event.label != nullptr) sum_ += static_cast<long>(std::strlen(event.label));
        }
    }

    void check_range(const tts_wave_event& event, std::size_t* end_before) const {
        property(event.text_begin < event.text_end, "what is spoken stands somewhere");
        property(event.text_end <= text_.size(), "what is spoken stands in the document");
        property(event.text_begin >= *end_before, "texts come in order and do not overlap");
        *end_before = event.text_end;
        if (!valid_) return;
        const auto inside = [&](std::uint32_t at) {
            return at < text_.size() && (static_cast<unsigned char>(text_[at]) & 0xC0) == 0x80;
        };
        property(!inside(event.text_begin) && !inside(event.text_end), "no character is cut");
    }

    const std::string text_;
    const bool valid_;
    const tts_streamer streamer_;
    static constexpr std::uint64_t most_records = 200;
    std::uint64_t samples_ = 0;
    std::uint64_t records_ = 0;
    std::size_t word_end_ = 0;
    std::size_t sentence_end_ = 0;
    long sum_ = 0;
};
