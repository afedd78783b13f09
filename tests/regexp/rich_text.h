// Rich texts for the tests, short to write and short to compare.
//
//     rich() << lang("en") << "ab" << mark("m") << "cd"
//
// shown() gives "abcd en@0 <m>@2": the text, then each record with its position. A text attribute record shows as its
// language, with "!" behind it if it is raw, its role in braces and "#" with the number of an audio insert; a mark as
// <id>, with "?" behind the id if it is invisible; a break as ~strength.
#pragma once

#include <string>

#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

inline SpeechtextTextAttrs lang(const std::string& language, bool raw = false) {
    SpeechtextTextAttrs attrs;
    attrs.set_language(language);
    attrs.raw = raw;
    return attrs;
}

inline SpeechtextTextAttrs role(const std::string& language, const std::string& role) {
    SpeechtextTextAttrs attrs = lang(language);
    attrs.token.set_role(role);
    return attrs;
}

inline SpeechtextMark mark(const std::string& id) { return SpeechtextMark(0, id); }
inline SpeechtextBreak pause(const std::string& strength) { return SpeechtextBreak(0, strength, ""); }

inline Speechtext rich() { return Speechtext(); }

inline Speechtext operator<<(Speechtext text, const std::string& bytes) {
    text += bytes;
    return text;
}

inline Speechtext operator<<(Speechtext text, const SpeechtextAttrs& record) {
    text += record;
    return text;
}

inline std::string shown(const SpeechtextAttrs& record) {
    if (record.is_mark()) {
        const auto& mark = static_cast<const SpeechtextMark&>(record);
        return "<" + mark.id() + (mark.invisible() ? "?>" : ">");
    }
    if (record.is_break()) {
        const auto& pause = static_cast<const SpeechtextBreak&>(record);
        return "~" + pause.strength() + (pause.time().empty() ? "" : "," + pause.time());
    }
    const auto& attrs = static_cast<const SpeechtextTextAttrs&>(record);
    const std::string role = attrs.token.role();
    const unsigned int audio = attrs.audio.instance();
    return attrs.language + (attrs.raw ? "!" : "") + (role.empty() ? "" : "{" + role + "}") +
           (audio == 0 ? "" : "#" + std::to_string(audio));
}

inline std::string shown(const Speechtext& text) {
    std::string result = text.as_string();
    for (auto it = text.attrs_begin(); it != text.attrs_end(); ++it) {
        result += " " + shown(*it->attrs) + "@" + std::to_string(it->position);
    }
    return result;
}
