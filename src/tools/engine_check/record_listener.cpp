// The rules for one record. See record_listener.h.
#include "tools/engine_check/record_listener.h"

#include <algorithm>
#include <string_view>

namespace engine_check {
namespace {

bool cuts_character(const std::string& text, std::uint32_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

}  // namespace

void RecordListener::take(const tts_wave& wave) {
    const auto events = static_cast<std::int32_t>(wave.event_count);
    findings_.require(wave.sample_count <= 0x7FFFFFFFu, "sample_count is above 2147483647");
    findings_.require(events >= 0, "event_count is above 2147483647, which reads as a negative number");
    findings_.require(wave.sample_count == 0 || wave.samples != nullptr, "samples is null in a record with samples");
    findings_.require(events <= 0 || wave.events != nullptr, "events is null in a record with events");
    if (wave.sample_count > 0x7FFFFFFFu) return;
    if (events > 0 && wave.events != nullptr) take_events(wave);
    heard_.samples += wave.sample_count;
    heard_.most_in_record = std::max<std::uint64_t>(heard_.most_in_record, wave.sample_count);
    if (wave.samples == nullptr) return;
    heard_.any_sound |= std::any_of(wave.samples, wave.samples + wave.sample_count, [](auto one) { return one != 0; });
}

void RecordListener::take_events(const tts_wave& wave) {
    std::uint32_t before = 0;
    for (std::uint32_t i = 0; i < wave.event_count; ++i) {
        const tts_wave_event& event = wave.events[i];
        if (event.type < TTS_EVENT_WORD || event.type > TTS_EVENT_VISEME) {
            findings_.note("an event of type " + std::to_string(event.type) + ", which nobody reads");
            continue;
        }
        findings_.require(event.sample_offset >= before, "sample_offset falls back inside a record, from " +
                                                             std::to_string(before) + " to " +
                                                             std::to_string(event.sample_offset));
        findings_.require(event.sample_offset <= wave.sample_count,
                          "sample_offset " + std::to_string(event.sample_offset) + " stands behind its record of " +
                              std::to_string(wave.sample_count) + " samples");
        before = std::max(before, event.sample_offset);
        take_event(event);
    }
}

void RecordListener::take_event(const tts_wave_event& event) {
    switch (event.type) {
        case TTS_EVENT_WORD:
            heard_.words.push_back(text_of(event, "word"));
            findings_.require(event.text_begin >= last_word_, "the word at byte " + std::to_string(event.text_begin) +
                                                                  " overlaps the one before it, or comes late");
            last_word_ = std::max(last_word_, event.text_end);
            break;
        case TTS_EVENT_SENTENCE:
            heard_.sentences.push_back(text_of(event, "sentence"));
            break;
        case TTS_EVENT_MARK:
            findings_.require(event.label != nullptr, "a mark without a name: label is null");
            heard_.marks.push_back(event.label == nullptr ? "" : event.label);
            break;
        default:
            take_viseme(event);
    }
}

void RecordListener::take_viseme(const tts_wave_event& event) {
    if (event.label == nullptr) return findings_.fault("a viseme without a label: label is null");
    const std::string_view label = event.label;
    const bool known = label == "sil" || (label.size() == 1 &&
                                          std::string_view("@aeEioOuBfJkprsStT").find(label) != std::string_view::npos);
    if (!known) findings_.note("a viseme with the label " + quoted(label) + ", which the server does not know");
}

std::string RecordListener::text_of(const tts_wave_event& event, const std::string& what) {
    const std::string range =
        "the " + what + " from byte " + std::to_string(event.text_begin) + " to " + std::to_string(event.text_end);
    if (event.text_end > document_.size()) {
        findings_.fault(range + " stands behind the document's end at " + std::to_string(document_.size()));
        return {};
    }
    if (event.text_begin >= event.text_end) {
        findings_.fault(range + " is empty");
        return {};
    }
    const bool cut = cuts_character(document_, event.text_begin) || cuts_character(document_, event.text_end);
    findings_.require(!cut, range + " cuts a character of several bytes");
    return document_.substr(event.text_begin, event.text_end - event.text_begin);
}

}  // namespace engine_check
