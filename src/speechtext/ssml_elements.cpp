// The elements. Each add_ssml_start_* writes the difference between what is asked for and what is in force, and brings
// what is in force up to date; an element without a difference to tell is not written. Values are not XML-encoded.
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "speechtext/ssml_encoder.h"
#include "speechtext/ssml_number.h"

namespace {

// Attributes that would not fit this buffer of the synthesiser's side are left out.
constexpr std::size_t attribute_limit = 100;

void add_attribute(std::string_view name, const std::string& value, std::string* tag) {
    (((*tag += ' ') += name) += "=\"") += value;
    *tag += '"';
}

// Age and variant go out as one character with that code, not in decimal.
std::string one_character(int code) { return std::string(1, static_cast<char>(static_cast<unsigned char>(code))); }

bool rounds_to(float hundredfold, float value) { return std::round(hundredfold) == value; }

std::string pitch_value(float now, float before) {
    if (rounds_to(100.0F * now, 100.0F)) return "default";
    const float change = (now - before) / before;
    return fixed_number(100.0 * static_cast<double>(change), 0, NumberSign::always) + "%";
}

std::string rate_value(float now, bool version_1_0) {
    // A factor of 0.01, not of 1: the synthesiser gets the default rate as a number.
    if (rounds_to(100.0F * now, 1.0F)) return "default";
    if (version_1_0) return fixed_number(static_cast<double>(now), 2, NumberSign::when_negative);
    return fixed_number(100.0 * static_cast<double>(now), 0, NumberSign::when_negative) + "%";
}

std::string decibels(float factor) {
    const float value = 20.0F * std::log10(factor);
    return fixed_number(static_cast<double>(value), 1, NumberSign::always) + "dB";
}

// A volume so low that nothing can be told relative to it.
bool is_inaudible(float volume) { return static_cast<double>(volume) < 0.05; }

bool volume_starts_from_default(float now, float before, bool version_1_0) {
    const bool absolute = rounds_to(100.0F * now, 100.0F) || static_cast<double>(now) < 0.001 || version_1_0;
    return !absolute && is_inaudible(before);
}

std::string volume_value(float now, float before, bool version_1_0) {
    if (rounds_to(100.0F * now, 100.0F)) return "default";
    if (static_cast<double>(now) < 0.001) return "silent";
    if (version_1_0) return fixed_number(100.0 * static_cast<double>(now), 0, NumberSign::when_negative);
    return decibels(is_inaudible(before) ? now : now / before);
}

void add_number_attribute(std::string_view name, const std::string& value, std::string* tag) {
    std::string attribute;
    add_attribute(name, value, &attribute);
    if (attribute.size() < attribute_limit) *tag += attribute;
}

// The change of a factor against the default, in whole percent; "default" below one.
std::string legacy_percentage(float factor) {
    if (!(static_cast<double>(std::fabs(factor - 1.0F)) >= 0.01)) return "default";
    const std::string digits = std::to_string(static_cast<long long>(std::lrintf(100.0F * factor)) - 100);
    return (digits.front() == '-' ? "" : "+") + digits + "%";
}

}  // namespace

const std::string& SpeechtextSsmlEncoder::tag_of(const SpeechtextMark& mark) {
    if (!mark_tag.empty() && mark.id_ == mark_tag_id && mark.invisible() == mark_tag_invisible) return mark_tag;
    mark_tag.clear();  // so that it is made anew if there is no memory for the rest
    mark_tag_id = mark.id_;
    mark_tag_invisible = mark.invisible();
    std::string tag = "<mark";
    if (!mark.id_.empty()) add_attribute("name", mark.id_, &tag);
    tag += mark.invisible() ? " qm:invisible=\"true\"/>" : "/>";
    return mark_tag = std::move(tag);
}

void SpeechtextSsmlEncoder::add_ssml_mark(const SpeechtextMark& mark) {
    const std::string& tag = tag_of(mark);
    if (raw_depth == 0) {
        ssml += tag;
    } else {
        insert_tag(tag);
    }
}

// Of breaks with nothing written between them, the first one wins.
void SpeechtextSsmlEncoder::add_ssml_break(const SpeechtextBreak& pause) {
    std::string tag = "<break";
    if (!pause.strength().empty()) add_attribute("strength", pause.strength(), &tag);
    if (!pause.time().empty()) add_attribute("time", pause.time(), &tag);
    tag += "/>";
    if (raw_depth != 0 && last_break_end != raw_insert_at) {
        insert_tag(tag);
        last_break_end = raw_insert_at;
    } else if (last_break_end != ssml_size()) {
        ssml += tag;
        last_break_end = ssml_size();
    }
}

void SpeechtextSsmlEncoder::add_ssml_lang_attribute(const std::string& language, std::string* tag) {
    if (language == current.language) return;
    add_attribute("xml:lang", language, tag);
    current.language = language;
}

void SpeechtextSsmlEncoder::add_ssml_start_p(const SpeechtextTextAttrs& ta) {
    const bool outside = current.location == Textlocation();
    if (!outside || Textlocation::same_paragraph(ta.location, current.location)) return;
    push("p");
    ssml += "<p";
    add_ssml_lang_attribute(ta.language, &ssml);
    ssml += '>';
    current.location = Textlocation(ta.location.paragraph, 0);
}

void SpeechtextSsmlEncoder::add_ssml_start_s(const SpeechtextTextAttrs& ta) {
    if (current.location.sentence_set() || !ta.location.sentence_set()) return;
    push("s");
    ssml += "<s";
    add_ssml_lang_attribute(ta.language, &ssml);
    ssml += '>';
    current.location = ta.location;
}

void SpeechtextSsmlEncoder::add_ssml_start_voice(const SpeechtextTextAttrs& ta) {
    const Voiceinfo& now = ta.voice;
    const Voiceinfo& before = current.voice;
    std::string attributes;
    if (ta.language != current.language) add_attribute("xml:lang", ta.language, &attributes);
    if (now.gender != before.gender) add_attribute("gender", now.gender, &attributes);
    if (now.age >= 0 && now.age != before.age) add_attribute("age", one_character(now.age), &attributes);
    if (now.variant >= 0 && now.variant != before.variant) {
        add_attribute("variant", one_character(now.variant), &attributes);
    }
    if (!now.name.empty() && now.name != before.name) add_attribute("name", now.name, &attributes);
    if (!attributes.empty()) {
        push("voice");
        ssml += "<voice" + attributes + ">";
    }
    current.language = ta.language;
    current.voice = ta.voice;
}

void SpeechtextSsmlEncoder::add_ssml_start_prosody(const SpeechtextTextAttrs& ta) {
    if (ta.prosody == current.prosody) return;
    const Prosody& now = ta.prosody;
    const Prosody& before = current.prosody;
    const bool version_1_0 = version == "1.0";
    std::string attributes;
    if (now.pitch_computed() != before.pitch_computed()) {
        add_number_attribute("pitch", pitch_value(now.pitch_computed(), before.pitch_computed()), &attributes);
    }
    if (now.rate_computed() != before.rate_computed()) {
        add_number_attribute("rate", rate_value(now.rate_computed(), version_1_0), &attributes);
    }
    const float volume = now.volume_computed();
    const float volume_before = before.volume_computed();
    if (volume != volume_before) {
        if (volume_starts_from_default(volume, volume_before, version_1_0)) {
            ssml += "<prosody volume=\"default\">";
            push("prosody");
        }
        add_number_attribute("volume", volume_value(volume, volume_before, version_1_0), &attributes);
    }
    if (!attributes.empty()) {
        push("prosody");
        ssml += "<prosody" + attributes + ">";
    }
    current.prosody = ta.prosody;
}

void SpeechtextSsmlEncoder::add_ssml_start_prosody_legacy(const SpeechtextTextAttrs& ta) {
    ssml += "<prosody rate=\"" + legacy_percentage(ta.prosody.rate_computed()) + "\" volume=\"" +
            legacy_percentage(ta.prosody.volume_computed()) + "\" pitch=\"" +
            legacy_percentage(ta.prosody.pitch_computed()) + "\">";
    push("prosody");
    current.prosody = ta.prosody;
}
