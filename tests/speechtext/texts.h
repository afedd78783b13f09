// Short ways to build rich texts in tests, and to tell what one holds.
#pragma once

#include <string>

#include "speechtext/speechtext.h"

inline SpeechtextTextAttrs attrs_of(const std::string& language) {
    SpeechtextTextAttrs attrs;
    attrs.language = language;
    return attrs;
}

inline SpeechtextTextAttrs with_audio(SpeechtextTextAttrs attrs, unsigned int instance) {
    attrs.audio.set_instance(instance);
    return attrs;
}

inline SpeechtextTextAttrs with_transcription(SpeechtextTextAttrs attrs, unsigned int instance) {
    attrs.transcription.set_instance(instance);
    return attrs;
}

inline SpeechtextTextAttrs at_location(SpeechtextTextAttrs attrs, unsigned int paragraph, unsigned int sentence) {
    attrs.location = Textlocation(paragraph, sentence);
    return attrs;
}

inline SpeechtextTextAttrs with_rate(SpeechtextTextAttrs attrs, float rate) {
    attrs.prosody.rate_value = rate;
    return attrs;
}

inline SpeechtextTextAttrs with_voice(SpeechtextTextAttrs attrs, const std::string& name) {
    attrs.voice.name = name;
    return attrs;
}

inline SpeechtextTextAttrs raw_attrs(const std::string& language) {
    SpeechtextTextAttrs attrs = attrs_of(language);
    attrs.raw = true;
    return attrs;
}

inline SpeechtextMark mark(const std::string& id, unsigned int instance = 0) { return SpeechtextMark(instance, id); }

inline SpeechtextBreak pause(const std::string& time, unsigned int instance = 0) {
    return SpeechtextBreak(instance, "", time);
}

inline Speechtext plain(const std::string& bytes) {
    Speechtext text;
    text += bytes;
    return text;
}

// A record as "en" (its language, with "+a7" for audio instance 7 and "+t7" for a transcription), "<id>" or "|time|".
inline std::string told(const SpeechtextAttrs& record) {
    if (record.is_mark()) return "<" + static_cast<const SpeechtextMark&>(record).id() + ">";
    if (record.is_break()) return "|" + static_cast<const SpeechtextBreak&>(record).time() + "|";
    const auto& attrs = static_cast<const SpeechtextTextAttrs&>(record);
    std::string out = attrs.language;
    if (attrs.audio.instance() != 0) out += "+a" + std::to_string(attrs.audio.instance());
    if (attrs.transcription.instance() != 0) out += "+t" + std::to_string(attrs.transcription.instance());
    return out;
}

// All records, as "0:en 3:<id>".
inline std::string records_of(const Speechtext& text) {
    std::string out;
    for (auto at = text.attrs_begin(); at != text.attrs_end(); ++at) {
        if (!out.empty()) out += " ";
        out += std::to_string(at->position) + ":" + told(*at->attrs);
    }
    return out;
}
