// Language, emphasis, prosody and say-as of a fragment.
//
// Hosts cut a text into many fragments of one state. So the state is compared first, and strings and powers are made
// only where it changed; a fragment that repeats its predecessor's state costs a few comparisons.

#include "fragments/fragment_attrs.h"

#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "fragments/ascii_case.h"
#include "sapi/sapi_datakey.h"
#include "speechtext/speechtext.h"

namespace fragments_detail {

namespace {

// The category as UTF-8 with its terminator has to fit in here; one that does not counts as none.
constexpr int category_bytes = 256;

struct GlobalFreeDeleter {
    void operator()(char* block) const { GlobalFree(block); }
};

bool spells_out(const SPVSTATE& state) { return state.eAction == SPVA_SpellOut; }

// Two categories at one address are one; equal ones at different addresses are only converted once more.
bool same_attrs(const SPVSTATE& a, const SPVSTATE& b) {
    return a.LangID == b.LangID && (a.EmphAdj != 0) == (b.EmphAdj != 0) && a.RateAdj == b.RateAdj &&
           a.Volume == b.Volume && a.PitchAdj.MiddleAdj == b.PitchAdj.MiddleAdj && spells_out(a) == spells_out(b) &&
           a.Context.pCategory == b.Context.pCategory;
}

// A language id that Windows does not know leaves the language as it was.
void update_language(SpeechtextTextAttrs* attrs, LANGID langid, const char* language) {
    if (langid == 0) {
        attrs->set_language(language);
        return;
    }
    const std::unique_ptr<char, GlobalFreeDeleter> code(lang_from_ms_langcode(langid));
    if (code) attrs->set_language(code.get());
}

// Slowing down takes 7 % a step, speeding up 20 %.
float rate_factor(LONG adjustment) {
    const double step = adjustment < 0 ? 0.07 : 0.2;
    return static_cast<float>(1.0 + static_cast<float>(adjustment) * step);
}

float volume_factor(ULONG percent) { return static_cast<float>(static_cast<float>(percent) * 0.01); }

// Ten steps are an octave. Far out the factor is 0 or infinite.
float pitch_factor(LONG adjustment) {
    return static_cast<float>(std::exp2(static_cast<double>(static_cast<float>(adjustment)) / 10.0));
}

void update_prosody(Prosody* prosody, const SPVSTATE& state) {
    prosody->set_prosody_absolute(0, pitch_factor(state.PitchAdj.MiddleAdj), rate_factor(state.RateAdj),
                                  volume_factor(state.Volume));
}

struct CategoryName {
    std::string_view category;
    const char* interpret_as;
};

constexpr CategoryName category_names[] = {
    {"time", "time"},
    {"number_cardinal", "cardinal"},
    {"number_digit", "digits"},
    {"number_fraction", "fraction"},
    {"number_decimal", "number"},
    {"phone_number", "telephone"},
    {"address_postal", "address"},
};

constexpr std::string_view date_prefix = "date_";

const char* interpret_as_for_category(std::string_view category) {
    for (const CategoryName& name : category_names) {
        if (ascii_equal_ignoring_case(category, name.category)) return name.interpret_as;
    }
    return "";
}

// Only a date writes the format, and nothing clears it: a time behind a date still carries the date's.
void update_say_as(SayAs* say_as, const SPVSTATE& state) {
    if (spells_out(state)) {
        say_as->set_interpret_as("spell-out");
        return;
    }
    char buffer[category_bytes];
    const WCHAR* source = state.Context.pCategory;
    const int n =
        source == nullptr ? 0 : WideCharToMultiByte(CP_UTF8, 0, source, -1, buffer, category_bytes, nullptr, nullptr);
    // The count takes in the terminator.
    const std::string_view category(buffer, n > 0 ? static_cast<std::size_t>(n) - 1 : 0);
    if (ascii_starts_with_ignoring_case(category, date_prefix)) {
        say_as->set_interpret_as("date");
        say_as->set_format(std::string(category.substr(date_prefix.size())));
        return;
    }
    say_as->set_interpret_as(interpret_as_for_category(category));
}

}  // namespace

bool update_fragment_attrs(SpeechtextTextAttrs* attrs, const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous,
                           const char* language) {
    const SPVSTATE& state = fragment.State;
    if (previous != nullptr && same_attrs(state, previous->State)) return false;

    if (previous == nullptr || previous->State.LangID != state.LangID) {
        update_language(attrs, state.LangID, language);
    }
    attrs->emphasis.set_emphasis(state.EmphAdj != 0 ? "moderate" : "");
    update_prosody(&attrs->prosody, state);
    update_say_as(&attrs->say_as, state);
    return true;
}

}  // namespace fragments_detail
