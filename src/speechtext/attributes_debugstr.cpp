// The one-line forms in which values and records report themselves. They are fixed texts that others compare with.
#include <cstdio>

#include "speechtext/attributes.h"

namespace {

std::string number(unsigned int value) { return std::to_string(value); }

// A form that goes through a buffer is cut to fit, and its strings end at their first NUL.
template <std::size_t Size, typename... Arguments>
std::string formatted(const char* format, Arguments... arguments) {
    char buffer[Size];
    std::snprintf(buffer, sizeof buffer, format, arguments...);
    return buffer;
}

const char* or_unknown(const std::string& name) { return name.empty() ? "?" : name.c_str(); }

}  // namespace

std::string Audio::to_string() const {
    if (instance_ == 0) return "-";
    return formatted<200>("#%u:%s", instance_, source.c_str());
}

std::string Prosody::to_string() const {
    if (instance == 0) return "-";
    const std::string start = std::string("[") + number(instance) + "]";
    const bool all_default = contour.empty() && duration.empty() && range.empty() && pitch == "default" &&
                             rate == "default" && volume == "default";
    if (all_default) return start + "default";
    return start + "cont=" + contour + ",dur=" + duration + ",pit=" + pitch + ",ran=" + range + ",rat=" + rate +
           ",vol=" + volume;
}

std::string Textlocation::to_string() const { return std::string("#") + number(paragraph) + ":" + number(sentence); }

std::string Token::to_string() const {
    const char* quote = label.empty() ? "" : "\"";
    return std::string("#") + number(instance) + quote + label.c_str() + quote + "(" + role_.c_str() + ")";
}

std::string Transcription::to_string() const {
    if (instance_ == 0) return "-";
    const std::string qualified = qualifier.empty() ? std::string() : "<" + qualifier + ">";
    return std::string("[") + number(instance_) + "]" + alphabet + qualified + ":" + phonemes;
}

std::string Voiceinfo::to_string() const {
    return formatted<100>("age %d gender %s name %s variant %d", age, or_unknown(gender), or_unknown(name), variant);
}

std::string SpeechtextMark::to_debugstr() const { return (invisible_ ? "mark(invisible):" : "mark:") + id_; }

std::string SpeechtextBreak::to_debugstr() const { return "break(" + strength_ + "," + time_ + ")"; }

std::string SpeechtextTextAttrs::to_debugstr() const {
    return "attrs lang:" + language + (raw ? " (raw) " : " ") + location.to_string() + " audio(" + audio.to_string() +
           ") emphasis(" + emphasis.to_string() + ") prosody(" + prosody.to_string() + ") say-as(" +
           say_as.to_string() + ") token(" + token.to_string() + ") transcription(" + transcription.to_string() +
           ") voice(" + voice.to_string() + ")";
}

std::string SpeechtextTextAttrs::to_debugstr_rel(const SpeechtextTextAttrs& previous) const {
    if (*this == previous) return std::string();
    std::string out = "attrs";
    const auto add = [&out](const char* name, const auto& now, const auto& before) {
        if (now != before) out += std::string(" ") + name + "(" + now.to_string() + ")";
    };
    if (language != previous.language) out += " language(" + language + ")";
    if (raw != previous.raw) out += raw ? " (RAW)" : " (not-raw) ";
    if (location != previous.location) out += " " + location.to_string();
    add("audio", audio, previous.audio);
    add("emphasis", emphasis, previous.emphasis);
    add("prosody", prosody, previous.prosody);
    add("say-as", say_as, previous.say_as);
    add("token", token, previous.token);
    add("transcription", transcription, previous.transcription);
    add("voice", voice, previous.voice);
    return out;
}
