// What both stores of voices share: looking at a token, and choosing one.
#include "tools/host/voices.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "sapi/sapi_datakey.h"
#include "tools/host/hresult.h"
#include "tools/host/suggest.h"

namespace host {

std::string Voice::value(const std::string& name) const {
    const std::string* text = data->string(name);
    return text ? *text : std::string();
}

std::string Voice::attribute(const std::string& name) const {
    const KeyData* attributes = data->key("Attributes");
    const std::string* text = attributes ? attributes->string(name) : nullptr;
    return text ? *text : std::string();
}

std::string Voice::display_name() const {
    for (const std::string& name : {value(""), attribute("Name")}) {
        if (!name.empty()) return name;
    }
    return id;
}

DWORD Voice::language_id() const {
    // The engine reads the attribute in the same way.
    unsigned int number = 0;
    return std::sscanf(attribute("Language").c_str(), "%x", &number) == 1 ? number : 0;
}

std::string Voice::language() const {
    const DWORD number = language_id();
    char* code = number == 0 ? nullptr : lang_from_ms_langcode(number);
    const std::string result = code ? code : "";
    if (code) GlobalFree(code);
    return result;
}

CLSID Voice::class_id() const {
    CLSID result;
    const std::string text = value("CLSID");
    if (parse_class_id(text, &result)) return result;
    throw HostError("the voice '" + id + "' has " + (text.empty() ? "no CLSID" : "the bad CLSID '" + text + "'") +
                        " (" + place + ")",
                    co_e_classstring);
}

bool Voice::is_nelva() const {
    CLSID number;
    return parse_class_id(value("CLSID"), &number) && IsEqualCLSID(number, nelva_class_id);
}

ComPtr<ISpObjectToken> Voice::token() const { return make_token(place, data); }

namespace {

// The voice that speaks when none is asked for; null without any.
const Voice* default_voice(const std::vector<Voice>& voices) {
    const Voice* first = nullptr;
    for (const Voice& voice : voices) {
        if (!voice.is_nelva()) continue;
        if (voice.language_id() == default_language) return &voice;
        if (!first) first = &voice;
    }
    return first;
}

}  // namespace

const Voice* voice_with_id(const std::vector<Voice>& voices, const std::string& id) {
    for (const Voice& voice : voices) {
        if (equal_ignoring_case(voice.id, id)) return &voice;
    }
    return nullptr;
}

const Voice& choose_voice(const std::vector<Voice>& voices, const std::string& id) {
    const Voice* found = id.empty() ? default_voice(voices) : voice_with_id(voices, id);
    if (found) return *found;
    if (id.empty())
        throw HostError("there is no voice in " + voices_place(), SPERR_NOT_FOUND,
                        "install one; see docs/voice-token.md");
    std::vector<std::string> known;
    for (const Voice& voice : voices) known.push_back(voice.id);
    const std::string meant = closest_name(id, known);
    throw HostError("there is no voice '" + id + "'", SPERR_NOT_FOUND,
                    meant.empty() ? "--list-voices shows what there is" : "did you mean '" + meant + "'?");
}

namespace {

// Reads `digits` hexadecimal digits at the front of `text` and takes them off.
bool take_hex(std::string_view* text, int digits, unsigned long* number) {
    const std::string part(text->substr(0, static_cast<std::size_t>(digits)));
    if (part.size() != static_cast<std::size_t>(digits) ||
        part.find_first_not_of("0123456789abcdefABCDEF") != part.npos)
        return false;
    *number = std::strtoul(part.c_str(), nullptr, 16);
    text->remove_prefix(part.size());
    return true;
}

bool take_char(std::string_view* text, char c) {
    if (text->empty() || text->front() != c) return false;
    text->remove_prefix(1);
    return true;
}

}  // namespace

bool parse_class_id(std::string_view text, CLSID* id) {
    unsigned long first, second, third;
    if (!take_char(&text, '{') || !take_hex(&text, 8, &first) || !take_char(&text, '-') ||
        !take_hex(&text, 4, &second) || !take_char(&text, '-') || !take_hex(&text, 4, &third))
        return false;
    CLSID result;
    for (int i = 0; i < 8; ++i) {
        unsigned long byte;
        if ((i == 0 || i == 2) && !take_char(&text, '-')) return false;
        if (!take_hex(&text, 2, &byte)) return false;
        result.Data4[i] = static_cast<unsigned char>(byte);
    }
    if (text != "}") return false;
    result.Data1 = static_cast<decltype(result.Data1)>(first);
    result.Data2 = static_cast<decltype(result.Data2)>(second);
    result.Data3 = static_cast<decltype(result.Data3)>(third);
    *id = result;
    return true;
}

}  // namespace host
