// Rich text out of an input. Bytes stand for themselves; "^" and a letter put in a record, whose values, separated by
// commas, end with ";":
//
//     ^Len;The ^bstrong,300ms;fleet ^mhere,1;sailed.^p1;^s2; ^r<sub alias="x">^r...
//
//     ^^   a caret                    ^m   mark: id, instance          ^i   invisible mark: id, instance
//     ^b   break: strength, time, instance
//
// The others change one property of the text attributes and append these:
//
//     ^L   language     ^p  paragraph      ^s  sentence       ^t  role        ^r  raw, on or off (takes no values)
//     ^v   voice: name, gender, age, variant                  ^y  say-as: interpret-as, format
//     ^P   prosody as text: pitch, rate, volume               ^A  prosody as factors, in percent: the same
//     ^a   audio: instance, source                            ^x  transcription: instance, phonemes
//     ^e   emphasis level
#pragma once

#include <string>
#include <string_view>

#include "fuzz/input_lines.h"
#include "speechtext/speechtext.h"
#include "text/qm_stringutils.h"

class RichTextInput {
public:
    explicit RichTextInput(std::string_view input) : rest_(input) {}

    Speechtext read() {
        while (!rest_.empty()) {
            const std::size_t caret = rest_.find('^');
            text_.append(rest_.data(), std::min(caret, rest_.size()));
            if (caret == std::string_view::npos || caret + 1 == rest_.size()) break;
            const char kind = rest_[caret + 1];
            rest_.remove_prefix(caret + 2);
            command(kind);
        }
        return text_;
    }

private:
    void command(char kind) {
        if (kind == '^') {
            text_ += '^';
            return;
        }
        if (kind == 'r') {
            attrs_.raw = !attrs_.raw;
            text_ += attrs_;
            return;
        }
        values_ = InputLines::until(';', &rest_);
        if (kind == 'm' || kind == 'i') {
            const std::string id = next();
            SpeechtextMark mark(static_cast<unsigned int>(number()), id);
            mark.invisible(kind == 'i');
            text_ += mark;
        } else if (kind == 'b') {
            const std::string strength = next(), time = next();
            text_ += SpeechtextBreak(static_cast<unsigned int>(number()), strength, time);
        } else if (change_attrs(kind)) {
            text_ += attrs_;
        }
    }

    bool change_attrs(char kind) {
        switch (kind) {
            case 'L':
                attrs_.set_language(next());
                return true;
            case 'p':
                attrs_.location.paragraph = static_cast<unsigned int>(number());
                return true;
            case 's':
                attrs_.location.sentence = static_cast<unsigned int>(number());
                return true;
            case 't':
                attrs_.token.set_role(std::string(values_));
                return true;
            case 'v':
                attrs_.voice.name = next();
                attrs_.voice.gender = next();
                attrs_.voice.age = values_.empty() ? -1 : number();
                attrs_.voice.variant = values_.empty() ? -1 : number();
                return true;
            case 'y':
                attrs_.say_as.set_interpret_as(next());
                attrs_.say_as.set_format(next());
                return true;
            case 'P':
                change_prosody();
                return true;
            case 'A':
                attrs_.prosody.pitch_value = factor();
                attrs_.prosody.rate_value = factor();
                attrs_.prosody.volume_value = factor();
                return true;
            case 'a':
                attrs_.audio.set_instance(static_cast<unsigned int>(number()));
                attrs_.audio.source = next();
                return true;
            case 'x':
                attrs_.transcription.set_instance(static_cast<unsigned int>(number()));
                attrs_.transcription.phonemes = next();
                return true;
            case 'e':
                attrs_.emphasis.set_emphasis(next());
                return true;
            default:
                return false;
        }
    }

    void change_prosody() {
        const std::string pitch = next(), rate = next(), volume = next();
        attrs_.prosody.set_prosody(0, "", "", pitch, "", rate, volume, false);
    }

    std::string next() { return std::string(InputLines::until(',', &values_)); }
    int number() { return str2int(next()); }
    float factor() { return static_cast<float>(number()) / 100.0F; }

    std::string_view rest_;
    std::string_view values_;
    Speechtext text_;
    SpeechtextTextAttrs attrs_;
};

inline Speechtext rich_text(std::string_view input) { return RichTextInput(input).read(); }

// Bytes and records, each with its position. Factors that are not a number compare by their debug form.
inline bool same_texts(const Speechtext& a, const Speechtext& b) {
    if (a.as_string() != b.as_string() || a.attrsvec_size() != b.attrsvec_size()) return false;
    for (auto x = a.attrs_begin(), y = b.attrs_begin(); x != a.attrs_end(); ++x, ++y) {
        if (x->position != y->position) return false;
        if (*x->attrs != *y->attrs && x->attrs->to_debugstr() != y->attrs->to_debugstr()) return false;
    }
    return true;
}

// Each record on its own, with its position, and the bytes behind them all.
inline std::string told_in_full(const Speechtext& text) {
    std::string told;
    for (auto it = text.attrs_begin(); it != text.attrs_end(); ++it) {
        told += std::to_string(it->position) + ":" + it->attrs->to_debugstr() + " ";
    }
    return told + "\"" + text.as_string() + "\"";
}
