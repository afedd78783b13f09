// A writer of SSML that takes every step literally, at any cost: the probe is the text so far once for each raw step,
// tags are inserted into the middle of the document, each look-ahead walks, the expressions are real ones. What the
// library's writer does in linear time is compared with it.
#pragma once

#include <cmath>
#include <cstdio>
#include <stack>
#include <string>
#include <utility>

#include "regexp/regexp.h"
#include "speechtext/speechtext.h"
#include "text/textencoding.h"

inline std::string literal_version(const Speechtext& text) {
    std::string probe;
    bool in_raw = false;
    auto at = text.attrs_begin();
    for (;; ++at) {
        const bool end = at == text.attrs_end();
        const int p = end ? static_cast<int>(text.size()) : at->position;
        if (in_raw && p > 0) probe.append(text.as_string(), 0, static_cast<std::size_t>(p));
        if (end) break;
        if (at->attrs->is_contentattrs()) in_raw = static_cast<const SpeechtextTextAttrs*>(at->attrs)->raw;
    }
    regexp::RE_Options options;
    options.set_caseless(true).set_utf8(false);
    return regexp::RE::search("<(?:lang|lookup|token|w)[ \t>]", probe, options) ? "1.1" : "1.0";
}

class LiteralSsml {
public:
    explicit LiteralSsml(const std::string& ssml_version) : version(ssml_version) {}

    std::string write(const Speechtext& source) {
        text = source;
        std::size_t written = 0;
        header();
        for (auto r = text.attrs_begin(); r != text.attrs_end(); ++r) {
            const auto position = static_cast<std::size_t>(r->position);
            if (position > written) {
                flush(text.as_string().substr(written, position - written));
                written = position;
            }
            if (r->attrs->is_contentattrs()) {
                change(r);
            } else if (r->attrs->is_break()) {
                add_break(static_cast<const SpeechtextBreak&>(*r->attrs));
            } else {
                add_mark(static_cast<const SpeechtextMark&>(*r->attrs));
            }
        }
        if (written < text.size()) {
            const std::string rest = text.as_string().substr(written);
            ssml += current.raw ? rest : encode_xml_utf8_bytes(rest.data(), rest.size(), 0);
        }
        for (; !open.empty(); open.pop()) ssml += "</" + open.top().first + ">";
        return ssml;
    }

private:
    using Attrs = SpeechtextTextAttrs;
    using Iterator = Speechtext::const_iterator;

    static const Attrs& attrs_at(Iterator r) { return static_cast<const Attrs&>(*r->attrs); }

    void push(const std::string& name) { open.emplace(name, current); }

    void header() {
        for (auto r = text.attrs_begin(); r != text.attrs_end(); ++r) {
            if (!r->attrs->is_contentattrs()) continue;
            push("speak");
            ssml += "<speak version=\"" + version + "\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"" +
                    attrs_at(r).language + "\">";
            current.set_language(attrs_at(r).language);
            start_voice(attrs_at(r));
            return;
        }
    }

    void flush(const std::string& bytes) {
        if (!current.raw) {
            ssml += encode_xml_utf8_bytes(bytes.data(), bytes.size(), 0);
            return;
        }
        regexp::RE tag("(</?)([-A-Za-z]+)[^>/]*(/?>)");
        regexp::Match rest(bytes), first, second, third;
        while (tag.FindAndConsume(&rest, &first, &second, &third)) {
            const std::string name = second.as_string();
            const bool atomic = name == "desc" || name == "phoneme" || name == "say-as" || name == "sub" ||
                                name == "token" || name == "w";
            if (third.as_string() == "/>" || !atomic) continue;
            if (first.as_string() == "</") {
                if (raw_depth != 0) --raw_depth;
            } else {
                if (raw_depth == 0) raw_insert_at = ssml.size() + static_cast<std::size_t>(first.data() - bytes.data());
                ++raw_depth;
            }
        }
        ssml += bytes;
    }

    void change(Iterator r) {
        const Attrs& ta = attrs_at(r);
        while (!open.empty()) {
            const std::string& name = open.top().first;
            const bool by_location =
                current.location != Textlocation(0, 0) && ta.location != current.location &&
                (!Textlocation::same_paragraph(ta.location, current.location) || current.location.sentence_set()) &&
                open.size() > 1;
            const bool by_change = (name == "prosody" && ta.prosody != current.prosody) || name == "say-as" ||
                                   (name == "voice" && ta.voice != current.voice);
            if (!by_location && !by_change) break;
            ssml += "</" + name + ">";
            current = open.top().second;
            open.pop();
        }
        current.raw = ta.raw;
        const bool paragraph_changed = !Textlocation::same_paragraph(ta.location, current.location);
        bool sentence_changed = !Textlocation::same_sentence(ta.location, current.location);
        if (paragraph_changed) sentence_changed = ta.location.sentence_set();
        const bool prosody_changed = ta.prosody != current.prosody;
        const bool voice_changed = ta.voice != current.voice;
        if ((paragraph_changed || sentence_changed) && (prosody_changed || voice_changed)) {
            look_ahead(r, prosody_changed, voice_changed);
        } else {
            if (ta.location != Textlocation(0, 0)) start_p(ta);
            if (ta.location.sentence_set()) start_s(ta);
        }
        if (voice_changed) start_voice(ta);
        if (prosody_changed) start_prosody(ta);
        if (ta.language != current.language) {
            const std::string name = version == "1.0" ? "voice" : "lang";
            push(name);
            ssml += "<" + name + " xml:lang=\"" + ta.language + "\">";
            current.set_language(ta.language);
        }
        if (!ta.say_as.interpret_as().empty() && ta.say_as != current.say_as) {
            push("say-as");
            ssml += "<say-as interpret-as=\"" + ta.say_as.interpret_as();
            if (!ta.say_as.format().empty()) ssml += "\" format=\"" + ta.say_as.format();
            if (!ta.say_as.detail().empty()) ssml += "\" detail=\"" + ta.say_as.detail();
            ssml += "\">";
        }
    }

    void look_ahead(Iterator r, bool prosody_changed, bool voice_changed) {
        const Attrs& ta = attrs_at(r);
        bool in_sentence = true, in_paragraph = true;
        bool prosody_for_paragraph = true, voice_for_paragraph = true, voice_for_sentence = true;
        for (auto x = r; x != text.attrs_end() && (in_sentence || in_paragraph); ++x) {
            if (!x->attrs->is_contentattrs()) continue;
            const Attrs& xa = attrs_at(x);
            if (in_sentence && !Textlocation::same_sentence(xa.location, ta.location)) in_sentence = false;
            if (in_paragraph && !Textlocation::same_paragraph(xa.location, ta.location)) in_paragraph = false;
            if (in_sentence && xa.voice != ta.voice) voice_for_sentence = false;
            if (in_paragraph && xa.prosody != ta.prosody) prosody_for_paragraph = false;
            if (in_paragraph && xa.voice != ta.voice) voice_for_paragraph = false;
        }
        if (voice_changed && voice_for_paragraph) start_voice(ta);
        if (prosody_changed && prosody_for_paragraph) start_prosody(ta);
        if (ta.location != Textlocation(0, 0)) start_p(ta);
        if (voice_changed && !voice_for_paragraph && voice_for_sentence) start_voice(ta);
        if (prosody_changed && !prosody_for_paragraph && voice_for_sentence) start_prosody(ta);
        if (ta.location.sentence_set()) start_s(ta);
    }

    void add_mark(const SpeechtextMark& m) {
        std::string tag = "<mark";
        if (!m.id().empty()) tag += " name=\"" + m.id() + "\"";
        if (m.invisible()) tag += " qm:invisible=\"true\"";
        tag += "/>";
        if (raw_depth != 0) {
            ssml.insert(raw_insert_at, tag);
            raw_insert_at += tag.size();
        } else {
            ssml += tag;
        }
    }

    void add_break(const SpeechtextBreak& b) {
        std::string tag = "<break";
        if (!b.strength().empty()) tag += " strength=\"" + b.strength() + "\"";
        if (!b.time().empty()) tag += " time=\"" + b.time() + "\"";
        tag += "/>";
        if (raw_depth != 0 && last_break_end != raw_insert_at) {
            ssml.insert(raw_insert_at, tag);
            raw_insert_at += tag.size();
            last_break_end = raw_insert_at;
        } else if (last_break_end != ssml.size()) {
            ssml += tag;
            last_break_end = ssml.size();
        }
    }

    void start_p(const Attrs& ta) {
        if (current.location != Textlocation(0, 0) || Textlocation::same_paragraph(ta.location, current.location))
            return;
        push("p");
        ssml += "<p";
        language_attribute(ta);
        ssml += ">";
        current.location = ta.location;
        current.location.sentence = 0;
    }

    void start_s(const Attrs& ta) {
        if (current.location.sentence_set() || !ta.location.sentence_set()) return;
        push("s");
        ssml += "<s";
        language_attribute(ta);
        ssml += ">";
        current.location = ta.location;
    }

    void language_attribute(const Attrs& ta) {
        if (ta.language == current.language) return;
        ssml += " xml:lang=\"" + ta.language + "\"";
        current.set_language(ta.language);
    }

    void start_voice(const Attrs& ta) {
        std::string tag = "<voice";
        if (ta.language != current.language) tag += " xml:lang=\"" + ta.language + "\"";
        if (ta.voice.gender != current.voice.gender) tag += " gender=\"" + ta.voice.gender + "\"";
        if (ta.voice.age >= 0 && ta.voice.age != current.voice.age) {
            tag += std::string(" age=\"") + static_cast<char>(ta.voice.age) + "\"";
        }
        if (ta.voice.variant >= 0 && ta.voice.variant != current.voice.variant) {
            tag += std::string(" variant=\"") + static_cast<char>(ta.voice.variant) + "\"";
        }
        if (!ta.voice.name.empty() && ta.voice.name != current.voice.name) tag += " name=\"" + ta.voice.name + "\"";
        tag += ">";
        if (tag != "<voice>") {
            push("voice");
            ssml += tag;
        }
        current.set_language(ta.language);
        current.voice = ta.voice;
    }

    template <typename Number>
    static void print(const char* format, Number value, std::string* tag) {
        char buffer[100];
        const int n = std::snprintf(buffer, sizeof buffer, format, value);
        if (n < 1 || n >= 100) return;
        // The library that mingw-w64 brings drops the sign of what is not a number; it is written as everywhere else.
        std::string text = buffer;
        const std::size_t nan = text.find("nan");
        if (nan != std::string::npos && std::signbit(value)) {
            const bool has_sign = text[nan - 1] == '+' || text[nan - 1] == '-';
            text.replace(nan - has_sign, has_sign, "-");
        }
        *tag += text;
    }

    void start_prosody(const Attrs& ta) {
        if (ta.prosody == current.prosody) return;
        std::string tag = "<prosody", lead_in;
        print_pitch(ta.prosody.pitch_computed(), current.prosody.pitch_computed(), &tag);
        print_rate(ta.prosody.rate_computed(), current.prosody.rate_computed(), &tag);
        print_volume(ta.prosody.volume_computed(), current.prosody.volume_computed(), &tag, &lead_in);
        tag += ">";
        ssml += lead_in;
        if (tag != "<prosody>") {
            push("prosody");
            ssml += tag;
        }
        current.prosody = ta.prosody;
    }

    void print_pitch(float now, float before, std::string* tag) {
        if (now == before) return;
        if (roundf(100 * now) == 100) {
            *tag += " pitch=\"default\"";
        } else {
            print(" pitch=\"%+.0f%%\"", 100.0 * static_cast<double>((now - before) / before), tag);
        }
    }

    void print_rate(float now, float before, std::string* tag) {
        if (now == before) return;
        if (roundf(100 * now) == 1) {
            *tag += " rate=\"default\"";
        } else if (version == "1.0") {
            print(" rate=\"%.2f\"", static_cast<double>(now), tag);
        } else {
            print(" rate=\"%.0f%%\"", 100.0 * static_cast<double>(now), tag);
        }
    }

    void print_volume(float now, float before, std::string* tag, std::string* lead_in) {
        if (now == before) return;
        if (roundf(100 * now) == 100) {
            *tag += " volume=\"default\"";
        } else if (static_cast<double>(now) < 0.001) {
            *tag += " volume=\"silent\"";
        } else if (version == "1.0") {
            print(" volume=\"%.0f\"", 100.0 * static_cast<double>(now), tag);
        } else if (static_cast<double>(before) < 0.05) {
            *lead_in = "<prosody volume=\"default\">";
            push("prosody");
            print(" volume=\"%+.1fdB\"", static_cast<double>(20 * log10f(now)), tag);
        } else {
            print(" volume=\"%+.1fdB\"", static_cast<double>(20 * log10f(now / before)), tag);
        }
    }

    Speechtext text;
    std::string ssml;
    std::stack<std::pair<std::string, Attrs>> open;
    Attrs current;
    std::size_t raw_depth = 0;
    std::size_t raw_insert_at = 0;
    std::size_t last_break_end = 0;
    std::string version;
};

inline std::string literal_ssml(const Speechtext& text) { return LiteralSsml(literal_version(text)).write(text); }
