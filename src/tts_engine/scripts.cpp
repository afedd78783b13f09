// Scripts and languages. See scripts.h.
#include "tts_engine/scripts.h"

#include <ucd/ucd.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "tts_engine/ascii.h"

namespace tts {
namespace {

// The scripts of script_defaults, in their order.
constexpr ucd_script ucd_scripts[] = {
    UCD_SCRIPT_Latn, UCD_SCRIPT_Cyrl, UCD_SCRIPT_Grek, UCD_SCRIPT_Armn, UCD_SCRIPT_Geor,
    UCD_SCRIPT_Hebr, UCD_SCRIPT_Arab, UCD_SCRIPT_Ethi, UCD_SCRIPT_Deva, UCD_SCRIPT_Beng,
    UCD_SCRIPT_Guru, UCD_SCRIPT_Gujr, UCD_SCRIPT_Orya, UCD_SCRIPT_Taml, UCD_SCRIPT_Telu,
    UCD_SCRIPT_Knda, UCD_SCRIPT_Mlym, UCD_SCRIPT_Sinh, UCD_SCRIPT_Thai, UCD_SCRIPT_Mymr,
    UCD_SCRIPT_Hani, UCD_SCRIPT_Bopo, UCD_SCRIPT_Hira, UCD_SCRIPT_Kana, UCD_SCRIPT_Hang};
static_assert(std::size(ucd_scripts) == script_count);
static_assert(script_defaults[latin_script].code == "Latn" && script_defaults[greek_script].code == "Grek");

constexpr auto script_numbers = [] {
    std::array<std::uint8_t, UCD_SCRIPT_Zzzz + 1> numbers{};
    numbers.fill(script_count);
    for (std::size_t i = 0; i < script_count; ++i) numbers[ucd_scripts[i]] = static_cast<std::uint8_t>(i);
    return numbers;
}();

// The languages of espeak-ng that are not written in Latin letters, or not only.
struct Use {
    std::string_view language;
    std::string_view scripts;  // codes, one after the other
};
constexpr Use uses[] = {
    {"am", "Ethi"},         {"ar", "Arab"}, {"as", "Beng"},     {"ba", "Cyrl"},     {"be", "Cyrl"},
    {"bg", "Cyrl"},         {"bn", "Beng"}, {"bpy", "Beng"},    {"bs", "LatnCyrl"}, {"cmn", "HaniBopo"},
    {"cv", "Cyrl"},         {"el", "Grek"}, {"fa", "Arab"},     {"grc", "Grek"},    {"gu", "Gujr"},
    {"hak", "HaniBopo"},    {"he", "Hebr"}, {"hi", "Deva"},     {"hr", "LatnCyrl"}, {"hy", "Armn"},
    {"ja", "HiraKanaHani"}, {"ka", "Geor"}, {"kk", "Cyrl"},     {"kn", "Knda"},     {"ko", "Hang"},
    {"kok", "Deva"},        {"ky", "Cyrl"}, {"mk", "LatnCyrl"}, {"ml", "Mlym"},     {"mr", "Deva"},
    {"my", "Mymr"},         {"ne", "Deva"}, {"nog", "Cyrl"},    {"or", "Orya"},     {"pa", "Guru"},
    {"ru", "Cyrl"},         {"sd", "Arab"}, {"shn", "Mymr"},    {"si", "Sinh"},     {"sr", "LatnCyrl"},
    {"ta", "Taml"},         {"te", "Telu"}, {"th", "Thai"},     {"ti", "Ethi"},     {"tt", "Cyrl"},
    {"ug", "ArabLatn"},     {"uk", "Cyrl"}, {"ur", "Arab"},     {"uz", "LatnCyrl"}, {"yue", "HaniBopo"},
    {"zh", "HaniBopo"}};

// Languages for which espeak-ng spells Latin words; for others it says them in English.
constexpr std::string_view spell_latin[] = {"ba", "ja", "kok", "ky", "my", "shn", "ti"};

std::string_view primary(std::string_view tag) { return tag.substr(0, tag.find_first_of("-_")); }

}  // namespace

Script script_of(char32_t c) {
    if (ucd_lookup_category_group(c) != UCD_CATEGORY_GROUP_L) return no_script;
    const auto script = static_cast<std::size_t>(ucd_lookup_script(c));
    return script < script_numbers.size() ? script_numbers[script] : no_script;
}

bool uses_script(std::string_view language, Script script) {
    const std::string wanted = ascii_lower(primary(language));
    const auto found =
        std::find_if(std::begin(uses), std::end(uses), [&wanted](const Use& use) { return use.language == wanted; });
    const std::string_view scripts = found == std::end(uses) ? "Latn" : found->scripts;
    return scripts.find(script_defaults[script].code) != std::string_view::npos;
}

ScriptLanguages::ScriptLanguages(std::string voice, ScriptSettings settings)
    : voice_(std::move(voice)), settings_(std::move(settings)) {}

std::string_view ScriptLanguages::language_for(Script script, std::string_view language) const {
    if (uses_script(language, script)) return {};
    const std::string_view other = table(script, language);
    if (other.empty() || other == ScriptSettings::own) return {};
    return uses_script(voice_, script) ? std::string_view(voice_) : other;
}

std::string_view ScriptLanguages::table(Script script, std::string_view language) const {
    const ScriptDefault& usual = script_defaults[script];
    const auto said = settings_.languages.find(usual.code);
    if (said != settings_.languages.end()) return said->second;
    if (!settings_.others_spoken) return {};
    if (script != latin_script) return usual.language;
    const std::string own = ascii_lower(primary(language));
    return std::find(std::begin(spell_latin), std::end(spell_latin), own) == std::end(spell_latin) ? std::string_view()
                                                                                                   : usual.language;
}

}  // namespace tts
