// Each key of a fragment is a row of a table with the function that reads it.
#include "tools/host/fragments_json.h"

#include <cstdint>
#include <limits>
#include <optional>

#include "tools/host/hresult.h"
#include "tools/host/json_text.h"
#include "tools/host/part_of_speech.h"
#include "tools/host/suggest.h"

namespace host {

namespace {

using nlohmann::json;

struct ActionName {
    const char* name;
    SPVACTIONS action;
};

constexpr ActionName action_names[] = {
    {"speak", SPVA_Speak},
    {"silence", SPVA_Silence},
    {"pronounce", SPVA_Pronounce},
    {"bookmark", SPVA_Bookmark},
    {"spell_out", SPVA_SpellOut},
    {"section", SPVA_Section},
    {"parse_unknown_tag", SPVA_ParseUnknownTag},
};

// A fragment while it is read.
struct Draft {
    FragmentList* list;
    SPVSTATE state;
    std::optional<WideString> text;
    ULONG offset;
};

// What is wrong with a value; the caller knows the place.
struct ValueError {
    std::string what;
};

std::string range_text(long long least, long long most) {
    return "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
}

template <typename Number>
Number number_in(const json& value) {
    constexpr long long least = std::numeric_limits<Number>::min();
    constexpr long long most = std::numeric_limits<Number>::max();
    // Numbers above 2^63 would wrap when read as signed.
    const bool readable = value.is_number_integer() && !(value.is_number_unsigned() &&
                                                         value.get<std::uint64_t>() > static_cast<std::uint64_t>(most));
    if (!readable || value.get<std::int64_t>() < least || value.get<std::int64_t>() > most)
        throw ValueError{"has to be " + range_text(least, most)};
    return static_cast<Number>(value.get<std::int64_t>());
}

WideString string_in(const json& value) {
    if (!value.is_string()) throw ValueError{"has to be a string"};
    return to_wide(value.get_ref<const std::string&>());
}

WideString units_in(const json& value) {
    if (!value.is_array()) throw ValueError{"has to be an array of UTF-16 units"};
    WideString units;
    for (const json& each : value) units.push_back(static_cast<WCHAR>(number_in<std::uint16_t>(each)));
    return units;
}

void read_action(const json& value, Draft* draft) {
    if (value.is_number()) {
        draft->state.eAction = static_cast<SPVACTIONS>(number_in<LONG>(value));
        return;
    }
    std::vector<std::string> names;
    for (const ActionName& each : action_names) {
        if (value.is_string() && equal_ignoring_case(value.get_ref<const std::string&>(), each.name)) {
            draft->state.eAction = each.action;
            return;
        }
        names.push_back(each.name);
    }
    const std::string meant = value.is_string() ? closest_name(value.get<std::string>(), names) : "";
    if (!meant.empty()) throw ValueError{"is no action: did you mean \"" + meant + "\"?"};
    throw ValueError{
        "has to be speak, silence, pronounce, bookmark, spell_out, section, parse_unknown_tag or a number"};
}

void read_text(const json& value, Draft* draft) {
    if (value.is_null())
        draft->text.reset();
    else
        draft->text = string_in(value);
}

void read_units(const json& value, Draft* draft) { draft->text = units_in(value); }

void read_lang(const json& value, Draft* draft) {
    if (!value.is_string()) {
        draft->state.LangID = number_in<LANGID>(value);
        return;
    }
    const std::string text = value.get<std::string>();
    if (text.empty() || text.size() > 4 || text.find_first_not_of("0123456789abcdefABCDEF") != text.npos)
        throw ValueError{"has to be a number or up to four hexadecimal digits"};
    draft->state.LangID = static_cast<LANGID>(std::stoul(text, nullptr, 16));
}

void read_part(const json& value, Draft* draft) {
    if (value.is_number()) {
        draft->state.ePartOfSpeech = static_cast<SPPARTOFSPEECH>(number_in<LONG>(value));
        return;
    }
    const std::optional<SPPARTOFSPEECH> part = part_of_speech(to_utf8(string_in(value)));
    if (!part) throw ValueError{"has to be unknown, noun, verb, modifier, function, interjection or a number"};
    draft->state.ePartOfSpeech = *part;
}

struct Key {
    const char* name;
    void (*read)(const json& value, Draft* draft);
};

const Key keys[] = {
    {"action", read_action},
    {"text", read_text},
    {"units", read_units},
    {"offset", [](const json& value, Draft* draft) { draft->offset = number_in<ULONG>(value); }},
    {"lang", read_lang},
    {"emph", [](const json& value, Draft* draft) { draft->state.EmphAdj = number_in<LONG>(value); }},
    {"rate", [](const json& value, Draft* draft) { draft->state.RateAdj = number_in<LONG>(value); }},
    {"volume", [](const json& value, Draft* draft) { draft->state.Volume = number_in<ULONG>(value); }},
    {"pitch", [](const json& value, Draft* draft) { draft->state.PitchAdj.MiddleAdj = number_in<LONG>(value); }},
    {"range", [](const json& value, Draft* draft) { draft->state.PitchAdj.RangeAdj = number_in<LONG>(value); }},
    {"silence", [](const json& value, Draft* draft) { draft->state.SilenceMSecs = number_in<ULONG>(value); }},
    {"phonemes",
     [](const json& value, Draft* draft) { draft->state.pPhoneIds = draft->list->keep_phonemes(units_in(value)); }},
    {"part", read_part},
    {"category",
     [](const json& value, Draft* draft) { draft->state.Context.pCategory = draft->list->keep(string_in(value)); }},
    {"before",
     [](const json& value, Draft* draft) { draft->state.Context.pBefore = draft->list->keep(string_in(value)); }},
    {"after",
     [](const json& value, Draft* draft) { draft->state.Context.pAfter = draft->list->keep(string_in(value)); }},
};

const Key& find_key(const std::string& name) {
    std::vector<std::string> names;
    for (const Key& each : keys) {
        if (name == each.name) return each;
        names.push_back(each.name);
    }
    const std::string meant = closest_name(name, names);
    throw ValueError{meant.empty() ? "is not known" : "is not known: did you mean \"" + meant + "\"?"};
}

Draft read_fragment(const json& object, const std::string& place, Draft draft) {
    if (!object.is_object())
        throw HostError(place + " has to be an object", hresult_from_win32(13), "see docs/nelva-say.md");
    for (const auto& [name, value] : object.items()) {
        try {
            find_key(name).read(value, &draft);
        } catch (const ValueError& error) {
            throw HostError(place + ": \"" + name + "\" " + error.what, hresult_from_win32(13),
                            "see docs/nelva-say.md");
        }
    }
    return draft;
}

}  // namespace

SpeechInput input_from_fragments_json(std::string_view text, LANGID language, const std::string& name) {
    const json document = parse_json(text, name);
    if (!document.is_array())
        throw HostError(name + ": fragments are a JSON array of objects", hresult_from_win32(13),
                        "see docs/nelva-say.md");
    SpeechInput input;
    ULONG end = 0;
    std::size_t number = 0;
    for (const json& object : document) {
        const std::string place = name + ": fragment " + std::to_string(++number);
        const Draft draft = read_fragment(object, place, {&input.fragments, neutral_state(language), {}, end});
        if (draft.text)
            input.fragments.add(draft.state, *draft.text, draft.offset);
        else
            input.fragments.add_without_text(draft.state, draft.offset);
        if (holds_host_text(draft.state.eAction))
            end = draft.offset + static_cast<ULONG>(draft.text ? draft.text->size() : 0);
    }
    input.text = HostText(input.fragments);
    return input;
}

}  // namespace host
