// See planted_engine.h. A document is spoken as a whole when it starts, and handed out in records.
#include "planted_engine.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

using namespace listening;

namespace {

constexpr double rate = 22050;
Faults planted;

bool has(Fault fault) { return planted.contains(fault); }

struct PlacedEvent {
    std::uint32_t type;
    std::string label;
    std::size_t begin, end, sample;
};

std::size_t ms(double milliseconds) { return static_cast<std::size_t>(milliseconds * rate / 1000); }

// Reads a document and makes its samples and events.
class Speaker {
public:
    explicit Speaker(const std::string& document) : text_(document) {
        if (has(Fault::sound_before_words)) {
            tone(440, 500);
            silence(300);
        }
        alone_ = tokens_outside_tags() == 0;
        while (at_ < text_.size()) step();
        end_sentence(0);
        std::stable_sort(events.begin(), events.end(),
                         [](const PlacedEvent& a, const PlacedEvent& b) { return a.sample < b.sample; });
    }

    std::vector<std::int16_t> samples;
    std::vector<PlacedEvent> events;

private:
    std::size_t tokens_outside_tags() const {
        std::string plain;
        bool tag = false;
        for (const char c : text_) {
            tag = c == '<' || (tag && c != '>');
            if (!tag && c != '>') plain += c;
        }
        for (const char* entity : {"&amp;", "&lt;", "&gt;"})
            if (plain.starts_with(entity)) return 0;
        return tokens_of(plain).size();
    }

    void step() {
        if (text_[at_] == '<') return take_tag(text_.substr(at_, text_.find('>', at_) + 1 - at_));
        const std::size_t semicolon = text_.find(';', at_);
        const std::string character =
            text_[at_] == '&' ? text_.substr(at_, semicolon + 1 - at_) : characters_of(text_.substr(at_, 4))[0];
        take_character(character);
        at_ += character.size();
    }

    void take_tag(const std::string& tag) {
        at_ += tag.size();
        if (tag.starts_with("<mark")) events.push_back({TTS_EVENT_MARK, attribute(tag, "name"), 0, 0, samples.size()});
        if (tag.starts_with("<say-as")) spelling_ = true;
        if (tag == "</say-as>") spelling_ = false;
        if (tag.starts_with("<prosody volume")) change_gain(tag.find("40") != tag.npos ? 0.4 : 2);
        if (tag == "</prosody>") change_gain(1);
        if (tag.starts_with("<break") && has(Fault::break_is_pause)) silence(300);
        if (tag == "</s>") end_sentence(200);
        if (tag == "</p>") end_sentence(has(Fault::short_paragraph) ? 200 : 400);
    }

    static std::string attribute(const std::string& tag, const std::string& name) {
        const std::size_t begin = tag.find(name + "=\"") + name.size() + 2;
        return tag.substr(begin, tag.find('"', begin) - begin);
    }

    void take_character(const std::string& character) {
        const char32_t code = character[0] == '&' ? '&' : code_of(character);
        if (spelling_ || alone_) return take_sign(character, code);
        if (separates_words(code)) {
            word_ = none;
        } else if (is_punctuation(code)) {
            if (code == '.' && (at_ + 1 == text_.size() || text_[at_ + 1] == ' ' || text_[at_ + 1] == '<'))
                end_at_stop();
        } else {
            take_letter(character, code);
        }
    }

    void take_sign(const std::string& character, char32_t code) {
        if (code == ' ' && !spelling_) return;
        begin_sentence();
        if (!(code == ' ' && has(Fault::blank_without_event))) word(at_, character.size());
        if (code == '#' && has(Fault::two_events_for_hash)) word(at_, character.size());
        if (!(code == ',' && spelling_ && has(Fault::silent_comma))) tone(pitch(code), 60);
        sentence_end_ = at_ + character.size();
    }

    void take_letter(const std::string& character, char32_t code) {
        begin_sentence();
        if (word_ == none || is_han(code) || is_kana(code)) {
            word(at_, 0);
            ++word_count_;
        }
        if (word_ != none && word_ < events.size()) events[word_].end = at_ + character.size();
        sentence_end_ = at_ + character.size();
        tone(pitch(code), has(Fault::spelled_words) ? 700 : 60);
    }

    void word(std::size_t begin, std::size_t size) {
        std::size_t sample = samples.size();
        word_ = events.size();
        if (word_count_ % 8 == 2 && has(Fault::third_word_missing)) return;
        if (word_count_ % 8 == 3 && has(Fault::fourth_word_late)) sample += ms(80);
        if (word_count_ % 8 == 3 && has(Fault::fourth_word_early)) sample -= ms(80);
        events.push_back({TTS_EVENT_WORD, "", begin, begin + size, sample});
    }

    void begin_sentence() {
        if (sentence_ != none) return;
        sentence_ = events.size();
        events.push_back({TTS_EVENT_SENTENCE, "", at_, at_ + 1, samples.size()});
    }

    void end_at_stop() {
        sentence_end_ = at_ + 1;
        end_sentence(200);
    }

    void end_sentence(double pause) {
        if (sentence_ != none) {
            PlacedEvent& event = events[sentence_];
            event.end = sentence_end_;
            if (event.end - event.begin > 300 && has(Fault::half_sentence))
                event.end = event.begin + (event.end - event.begin) / 2;
            pending_pause_ = pause;
        }
        if (sentence_ != none || pause > pending_pause_) silence(pause);
        sentence_ = word_ = none;
    }

    static double pitch(char32_t code) {
        if (code > 0x7F && has(Fault::one_sound)) return 300;
        return 150 + static_cast<double>(code % 97) * 4;
    }

    void tone(double frequency, double milliseconds) {
        for (std::size_t i = 0; i < ms(milliseconds); ++i) {
            gain_ += std::clamp(wanted_gain_ - gain_, -0.01, 0.01);
            phase_ += 2 * 3.14159265358979 * frequency / rate;
            samples.push_back(static_cast<std::int16_t>(gain_ * 8000 * std::sin(phase_)));
        }
    }

    void silence(double milliseconds) {
        // A tone that is cut off would click: it fades.
        const double last = samples.empty() ? 0 : samples.back();
        for (std::size_t i = 0; i < ms(milliseconds); ++i)
            samples.push_back(static_cast<std::int16_t>(last * std::max(0.0, 1 - static_cast<double>(i) / 110)));
        phase_ = 0;
    }

    void change_gain(double gain) {
        wanted_gain_ = gain;
        if (has(Fault::click)) gain_ = gain;
    }

    static constexpr std::size_t none = ~std::size_t{0};

    const std::string text_;
    std::size_t at_ = 0, word_ = none, sentence_ = none, sentence_end_ = 0, word_count_ = 0;
    double gain_ = 1, wanted_gain_ = 1, phase_ = 0, pending_pause_ = 0;
    bool spelling_ = false, alone_ = false;
};

// One document being handed out.
struct Streamer {
    explicit Streamer(const char* document) : speaker(document) {}

    Speaker speaker;
    std::size_t given = 0, event = 0;
    std::vector<tts_wave_event> events;
    bool ended = false;
};

int some_library, some_voice;

tts_wave_event record_event(const PlacedEvent& event, std::size_t first) {
    tts_wave_event result{};
    result.type = event.type;
    result.label = event.type == TTS_EVENT_MARK ? event.label.c_str() : nullptr;
    result.text_begin = static_cast<std::uint32_t>(event.begin);
    result.text_end = static_cast<std::uint32_t>(event.end);
    result.sample_offset = static_cast<std::uint32_t>(event.sample - first);
    return result;
}

tts_wave* next_record(Streamer& s, std::uint32_t size) {
    std::vector<std::int16_t>& samples = s.speaker.samples;
    if (s.ended) return nullptr;
    if (has(Fault::records_padded) && samples.size() % size != 0) samples.resize((samples.size() / size + 1) * size);
    const std::size_t count = std::min<std::size_t>(size, samples.size() - s.given);
    s.ended = count == 0;
    s.events.clear();
    while (s.event < s.speaker.events.size()) {
        const PlacedEvent& event = s.speaker.events[s.event];
        if (event.sample >= s.given + count && !s.ended) break;
        s.events.push_back(record_event(event, std::min(event.sample, s.given)));
        s.events.back().sample_offset = s.ended ? 0 : static_cast<std::uint32_t>(event.sample - s.given);
        if (s.ended && has(Fault::event_beyond_end)) s.events.back().sample_offset = 7;
        ++s.event;
    }
    auto* const wave = new tts_wave{};
    wave->sample_count = static_cast<std::uint32_t>(count);
    wave->samples = samples.data() + s.given;
    wave->event_count = static_cast<std::uint32_t>(s.events.size());
    wave->events = s.events.data();
    s.given += count;
    return wave;
}

Streamer* streamer_of(tts_streamer streamer) { return reinterpret_cast<Streamer*>(streamer); }

}  // namespace

const EngineFunctions& planted_engine(const Faults& faults) {
    planted = faults;
    static const EngineFunctions functions = {
        []() -> tts_handle { return reinterpret_cast<tts_handle>(&some_library); },
        [](tts_handle) {},
        [](tts_handle, const char*, const char* vox) -> tts_voice {
            return std::strcmp(vox, "none-22i") == 0 ? nullptr : reinterpret_cast<tts_voice>(&some_voice);
        },
        [](tts_voice) {},
        [](tts_voice) {},
        [](tts_voice, const char*) -> std::int32_t { return 1; },
        [](tts_voice, const char* ssml, float) -> tts_streamer {
            return reinterpret_cast<tts_streamer>(new Streamer(ssml));
        },
        [](tts_streamer streamer, std::uint32_t size) { return next_record(*streamer_of(streamer), size); },
        [](tts_streamer, std::int32_t) -> std::int32_t { return 1; },
        [](tts_streamer streamer) -> std::int32_t {
            delete streamer_of(streamer);
            return 0;
        },
        [](tts_wave* wave) { delete wave; },
        []() -> const char* { return ""; }};
    return functions;
}
