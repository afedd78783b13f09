// Most languages are found by their own name. The table holds the others: varieties that Windows has no name for, names
// that Windows spells otherwise, and those whose region is not the one that Windows would take.
#include "tools/host/voice_language.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "sapi/sapi_datakey.h"
#include "tools/host/utf.h"

namespace host {

namespace {

struct Exception {
    std::string_view language;  // the synthesiser's
    std::string_view locales;   // Windows', the best first
    std::string_view accent;    // what tells this voice from others of the same locale
};

constexpr Exception exceptions[] = {
    {"bs", "bs-Latn-BA;bs-Cyrl-BA", ""},
    {"ca-ba", "ca-ES", "Balearic"},
    {"ca-nw", "ca-ES", "North-Western"},
    {"ca-va", "ca-ES-valencia;ca-ES", ""},
    {"chr-us-qaaa-x-west", "chr-Cher-US", ""},
    {"cmn", "zh-CN;zh-SG", ""},
    {"cmn-latn-pinyin", "zh-CN;zh-SG", "Pinyin"},
    {"en", "en-GB", ""},
    {"en-gb-scotland", "en-GB", "Scotland"},
    {"en-gb-x-gbclan", "en-GB", "Lancaster"},
    {"en-gb-x-gbcwmd", "en-GB", "West Midlands"},
    {"en-gb-x-rp", "en-GB", "Received Pronunciation"},
    {"en-shaw", "en-GB", "Shavian alphabet"},
    {"en-us-nyc", "en-US", "New York City"},
    {"es", "es-ES", ""},
    {"es-419", "es-419;es-MX", ""},
    {"fa-latn", "fa-IR", "Pinglish"},
    {"ga", "ga-IE", ""},
    {"hy-arevela", "hy-AM", ""},
    {"hy-arevmda", "hy-AM", "West Armenia"},
    {"hyw", "hy-AM", "West Armenia"},
    {"nb", "nb-NO", ""},
    {"no", "nb-NO", ""},
    {"pt", "pt-PT", ""},
    {"qu", "quz-PE;quz-BO;quz-EC", ""},
    {"ru-cl", "ru-RU", "Classic"},
    {"ru-lv", "ru-RU", "Latvia"},
    {"sd", "sd-Arab-PK;sd-Deva-IN", ""},
    {"smj", "smj-SE;smj-NO", ""},
    {"sr", "sr-Latn-RS;sr-Cyrl-RS", ""},
    {"vi-vn-x-central", "vi-VN", "Central"},
    {"vi-vn-x-south", "vi-VN", "Southern"},
    {"yue", "zh-HK;zh-MO", "Cantonese"},
    {"zh", "zh-CN;zh-SG", ""},
    {"zh-cmn", "zh-CN;zh-SG", ""},
    {"zh-yue", "zh-HK;zh-MO", "Cantonese"},
};

constexpr LCID language_bits = 0x3FF;
constexpr LCID default_region = 0x400;

// Windows answers for a locale that has a name and no number with one of these.
constexpr LCID unnumbered[] = {0x0C00, 0x1000, 0x1400, 0x2000, 0x2400, 0x2800,
                               0x2C00, 0x3000, 0x3400, 0x3800, 0x3C00, 0x4000};

bool is_number_of_a_locale(LCID id) {
    return id != 0 && std::find(std::begin(unnumbered), std::end(unnumbered), id) == std::end(unnumbered) &&
           !language_code(id).empty();
}

// 0 for a name that Windows has no number for.
LCID id_of_locale(std::string_view name) {
    if (name.empty()) return 0;  // the invariant locale is no language
    const LCID found = LocaleNameToLCID(to_wide(name).c_str(), 0);
    if (!is_number_of_a_locale(found)) return 0;
    return found <= language_bits ? found | default_region : found;
}

std::string english_name(LCID id) {
    WCHAR text[256] = {};
    if (GetLocaleInfoW(id, LOCALE_SENGLISHDISPLAYNAME, text, 256) == 0) return {};
    return to_utf8(text);
}

// Behind the exact ids comes the language as such, for hosts that ask for no region. The lower bits alone do not say
// which language it is: Croatian, Serbian and Bosnian share theirs.
void add_the_language_as_such(std::vector<LCID>* ids) {
    const LCID language = ids->front() & language_bits;
    if (is_number_of_a_locale(language) && language_code(language) == language_code(ids->front()))
        ids->push_back(language);
}

std::vector<std::string_view> pieces(std::string_view text) {
    std::vector<std::string_view> result;
    for (std::size_t end = text.find(';'); end != text.npos; end = text.find(';')) {
        result.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    result.push_back(text);
    return result;
}

}  // namespace

std::string language_code(LCID id) {
    char* code = lang_from_ms_langcode(id);
    if (!code) return {};
    const std::string result = code;
    GlobalFree(code);
    return result;
}

std::string VoiceLanguage::attribute() const {
    std::string result;
    for (const LCID id : ids) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%lx", static_cast<unsigned long>(id));
        result += result.empty() ? "" : ";";
        result += digits;
    }
    return result;
}

std::optional<VoiceLanguage> voice_language(const std::string& language) {
    const std::string name = ascii_lower(language);
    Exception row = {name, name, ""};
    for (const Exception& each : exceptions)
        if (each.language == name) row = each;
    VoiceLanguage result;
    for (const std::string_view locale : pieces(row.locales))
        if (const LCID id = id_of_locale(locale)) result.ids.push_back(id);
    if (result.ids.empty()) return std::nullopt;
    result.english_name = english_name(result.ids.front());
    if (result.english_name.empty()) result.english_name = language;
    if (!row.accent.empty()) result.english_name += ", " + std::string(row.accent);
    add_the_language_as_such(&result.ids);
    return result;
}

std::optional<VoiceLanguage> voice_language_from_ids(const std::string& ids) {
    VoiceLanguage result;
    for (const std::string_view piece : pieces(ids)) {
        const std::string digits(piece);
        if (digits.empty() || digits.size() > 5 || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos)
            return std::nullopt;
        const auto id = static_cast<LCID>(std::strtoul(digits.c_str(), nullptr, 16));
        if (!is_number_of_a_locale(id)) return std::nullopt;
        result.ids.push_back(id);
    }
    result.english_name = english_name(result.ids.front());
    return result;
}

}  // namespace host
