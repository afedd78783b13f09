// A locale's English name is put together from the names of its parts: "Language (Script, Region)".

#include "platform/native/locale_english.h"

namespace {

struct Part {
    std::string_view code;
    std::string_view name;
};

// As Windows spells them. One a line would make this ten times as long, so the formatter stays out.
// clang-format off
constexpr Part languages[] = {
    {"af", "Afrikaans"}, {"am", "Amharic"}, {"ar", "Arabic"}, {"arn", "Mapudungun"}, {"as", "Assamese"},
    {"az", "Azerbaijani"}, {"ba", "Bashkir"}, {"be", "Belarusian"}, {"bg", "Bulgarian"}, {"bin", "Edo"},
    {"bn", "Bangla"}, {"bo", "Tibetan"}, {"br", "Breton"}, {"bs", "Bosnian"}, {"ca", "Catalan"}, {"chr", "Cherokee"},
    {"co", "Corsican"}, {"cs", "Czech"}, {"cy", "Welsh"}, {"da", "Danish"}, {"de", "German"},
    {"dsb", "Lower Sorbian"}, {"dv", "Divehi"}, {"dz", "Dzongkha"}, {"el", "Greek"}, {"en", "English"},
    {"es", "Spanish"}, {"et", "Estonian"}, {"eu", "Basque"}, {"fa", "Persian"}, {"ff", "Fulah"}, {"fi", "Finnish"},
    {"fil", "Filipino"}, {"fo", "Faroese"}, {"fr", "French"}, {"fy", "Western Frisian"}, {"ga", "Irish"},
    {"gd", "Scottish Gaelic"}, {"gl", "Galician"}, {"gn", "Guarani"}, {"gsw", "Alsatian"}, {"gu", "Gujarati"},
    {"ha", "Hausa"}, {"haw", "Hawaiian"}, {"he", "Hebrew"}, {"hi", "Hindi"}, {"hr", "Croatian"},
    {"hsb", "Upper Sorbian"}, {"hu", "Hungarian"}, {"hy", "Armenian"}, {"ibb", "Ibibio"}, {"id", "Indonesian"},
    {"ig", "Igbo"}, {"ii", "Yi"}, {"is", "Icelandic"}, {"it", "Italian"}, {"iu", "Inuktitut"}, {"ja", "Japanese"},
    {"ka", "Georgian"}, {"kk", "Kazakh"}, {"kl", "Greenlandic"}, {"km", "Khmer"}, {"kn", "Kannada"},
    {"ko", "Korean"}, {"kok", "Konkani"}, {"kr", "Kanuri"}, {"ks", "Kashmiri"}, {"ku", "Central Kurdish"},
    {"ky", "Kyrgyz"}, {"la", "Latin"}, {"lb", "Luxembourgish"}, {"lo", "Lao"}, {"lt", "Lithuanian"},
    {"lv", "Latvian"}, {"mi", "Maori"}, {"mk", "Macedonian"}, {"ml", "Malayalam"}, {"mn", "Mongolian"},
    {"mni", "Manipuri"}, {"moh", "Mohawk"}, {"mr", "Marathi"}, {"ms", "Malay"}, {"mt", "Maltese"}, {"my", "Burmese"},
    {"nb", "Norwegian Bokm\xC3\xA5l"}, {"ne", "Nepali"}, {"nl", "Dutch"}, {"nn", "Norwegian Nynorsk"},
    {"no", "Norwegian"}, {"nso", "Sesotho sa Leboa"}, {"oc", "Occitan"}, {"om", "Oromo"}, {"or", "Odia"},
    {"pa", "Punjabi"}, {"pap", "Papiamento"}, {"pl", "Polish"}, {"prs", "Dari"}, {"ps", "Pashto"},
    {"pt", "Portuguese"}, {"quc", "K'iche'"}, {"quz", "Quechua"}, {"rm", "Romansh"}, {"ro", "Romanian"},
    {"ru", "Russian"}, {"rw", "Kinyarwanda"}, {"sa", "Sanskrit"}, {"sah", "Sakha"}, {"sd", "Sindhi"},
    {"se", "Northern Sami"}, {"si", "Sinhala"}, {"sk", "Slovak"}, {"sl", "Slovenian"}, {"sma", "Southern Sami"},
    {"smj", "Lule Sami"}, {"smn", "Inari Sami"}, {"sms", "Skolt Sami"}, {"so", "Somali"}, {"sq", "Albanian"},
    {"sr", "Serbian"}, {"st", "Sesotho"}, {"sv", "Swedish"}, {"sw", "Kiswahili"}, {"syr", "Syriac"}, {"ta", "Tamil"},
    {"te", "Telugu"}, {"tg", "Tajik"}, {"th", "Thai"}, {"ti", "Tigrinya"}, {"tk", "Turkmen"}, {"tn", "Setswana"},
    {"tr", "Turkish"}, {"ts", "Tsonga"}, {"tt", "Tatar"}, {"tzm", "Central Atlas Tamazight"}, {"ug", "Uyghur"},
    {"uk", "Ukrainian"}, {"ur", "Urdu"}, {"uz", "Uzbek"}, {"ve", "Venda"}, {"vi", "Vietnamese"}, {"wo", "Wolof"},
    {"xh", "isiXhosa"}, {"yi", "Yiddish"}, {"yo", "Yoruba"}, {"zh", "Chinese"}, {"zu", "isiZulu"},
};

constexpr Part scripts[] = {
    {"Arab", "Arabic"}, {"Cans", "Syllabics"}, {"Cher", "Cherokee"}, {"Cyrl", "Cyrillic"}, {"Deva", "Devanagari"},
    {"Hans", "Simplified"}, {"Hant", "Traditional"}, {"Latn", "Latin"}, {"Mong", "Traditional Mongolian"},
    {"Tfng", "Tifinagh"},
};

constexpr Part regions[] = {
    {"001", "World"}, {"029", "Caribbean"}, {"419", "Latin America"}, {"AE", "United Arab Emirates"},
    {"AF", "Afghanistan"}, {"AL", "Albania"}, {"AM", "Armenia"}, {"AR", "Argentina"}, {"AT", "Austria"},
    {"AU", "Australia"}, {"AZ", "Azerbaijan"}, {"BA", "Bosnia and Herzegovina"}, {"BD", "Bangladesh"},
    {"BE", "Belgium"}, {"BG", "Bulgaria"}, {"BH", "Bahrain"}, {"BN", "Brunei"}, {"BO", "Bolivia"}, {"BR", "Brazil"},
    {"BT", "Bhutan"}, {"BW", "Botswana"}, {"BY", "Belarus"}, {"BZ", "Belize"}, {"CA", "Canada"}, {"CD", "Congo (DRC)"},
    {"CH", "Switzerland"}, {"CI", "C\xC3\xB4te d\xE2\x80\x99Ivoire"}, {"CL", "Chile"}, {"CM", "Cameroon"},
    {"CN", "China"}, {"CO", "Colombia"}, {"CR", "Costa Rica"}, {"CS", "Serbia and Montenegro (Former)"},
    {"CU", "Cuba"}, {"CZ", "Czechia"}, {"DE", "Germany"}, {"DK", "Denmark"}, {"DO", "Dominican Republic"},
    {"DZ", "Algeria"}, {"EC", "Ecuador"}, {"EE", "Estonia"}, {"EG", "Egypt"}, {"ER", "Eritrea"}, {"ES", "Spain"},
    {"ET", "Ethiopia"}, {"FI", "Finland"}, {"FO", "Faroe Islands"}, {"FR", "France"}, {"GB", "United Kingdom"},
    {"GE", "Georgia"}, {"GL", "Greenland"}, {"GR", "Greece"}, {"GT", "Guatemala"}, {"HK", "Hong Kong SAR"},
    {"HN", "Honduras"}, {"HR", "Croatia"}, {"HT", "Haiti"}, {"HU", "Hungary"}, {"ID", "Indonesia"}, {"IE", "Ireland"},
    {"IL", "Israel"}, {"IN", "India"}, {"IQ", "Iraq"}, {"IR", "Iran"}, {"IS", "Iceland"}, {"IT", "Italy"},
    {"JM", "Jamaica"}, {"JO", "Jordan"}, {"JP", "Japan"}, {"KE", "Kenya"}, {"KG", "Kyrgyzstan"}, {"KH", "Cambodia"},
    {"KR", "Korea"}, {"KW", "Kuwait"}, {"KZ", "Kazakhstan"}, {"LA", "Laos"}, {"LB", "Lebanon"},
    {"LI", "Liechtenstein"}, {"LK", "Sri Lanka"}, {"LT", "Lithuania"}, {"LU", "Luxembourg"}, {"LV", "Latvia"},
    {"LY", "Libya"}, {"MA", "Morocco"}, {"MC", "Monaco"}, {"MD", "Moldova"}, {"ME", "Montenegro"},
    {"MK", "North Macedonia"}, {"ML", "Mali"}, {"MM", "Myanmar"}, {"MN", "Mongolia"}, {"MO", "Macao SAR"},
    {"MT", "Malta"}, {"MV", "Maldives"}, {"MX", "Mexico"}, {"MY", "Malaysia"}, {"NG", "Nigeria"}, {"NI", "Nicaragua"},
    {"NL", "Netherlands"}, {"NO", "Norway"}, {"NP", "Nepal"}, {"NZ", "New Zealand"}, {"OM", "Oman"}, {"PA", "Panama"},
    {"PE", "Peru"}, {"PH", "Philippines"}, {"PK", "Pakistan"}, {"PL", "Poland"}, {"PR", "Puerto Rico"},
    {"PT", "Portugal"}, {"PY", "Paraguay"}, {"QA", "Qatar"}, {"RE", "R\xC3\xA9union"}, {"RO", "Romania"},
    {"RS", "Serbia"}, {"RU", "Russia"}, {"RW", "Rwanda"}, {"SA", "Saudi Arabia"}, {"SE", "Sweden"},
    {"SG", "Singapore"}, {"SI", "Slovenia"}, {"SK", "Slovakia"}, {"SN", "Senegal"}, {"SO", "Somalia"},
    {"SV", "El Salvador"}, {"SY", "Syria"}, {"TH", "Thailand"}, {"TJ", "Tajikistan"}, {"TM", "Turkmenistan"},
    {"TN", "Tunisia"}, {"TR", "T\xC3\xBCrkiye"}, {"TT", "Trinidad and Tobago"}, {"TW", "Taiwan"}, {"UA", "Ukraine"},
    {"US", "United States"}, {"UY", "Uruguay"}, {"UZ", "Uzbekistan"}, {"VA", "Vatican City"}, {"VE", "Venezuela"},
    {"VN", "Vietnam"}, {"YE", "Yemen"}, {"ZA", "South Africa"}, {"ZW", "Zimbabwe"},
};
// clang-format on

// Names that say something else than their parts: Chinese goes by the script that its region uses.
constexpr Part whole_names[] = {
    {"", "Invariant Language (Invariant Country)"},        {"ca-ES-valencia", "Valencian (Spain)"},
    {"es-ES_tradnl", "Spanish (Spain, Traditional Sort)"}, {"zh-CN", "Chinese (Simplified, China)"},
    {"zh-HK", "Chinese (Traditional, Hong Kong SAR)"},     {"zh-MO", "Chinese (Traditional, Macao SAR)"},
    {"zh-SG", "Chinese (Simplified, Singapore)"},          {"zh-TW", "Chinese (Traditional, Taiwan)"},
};

// Empty when the table has no such code.
template <std::size_t size>
std::string_view find(const Part (&table)[size], std::string_view code) {
    for (const Part& part : table)
        if (part.code == code) return part.name;
    return {};
}

std::string_view name_of_part(std::string_view code) {
    for (const std::string_view name : {find(scripts, code), find(regions, code)})
        if (!name.empty()) return name;
    return code;
}

}  // namespace

std::string english_locale_name(std::string_view name) {
    if (const std::string_view whole = find(whole_names, name); !whole.empty() || name.empty())
        return std::string(whole);
    name = name.substr(0, name.find('_'));
    std::size_t dash = name.find('-');
    const std::string_view language = name.substr(0, dash);
    const std::string_view known = find(languages, language);
    std::string result(known.empty() ? language : known);
    const char* before = " (";
    while (dash != name.npos) {
        const std::size_t begin = dash + 1;
        dash = name.find('-', begin);
        result += before;
        result += name_of_part(name.substr(begin, dash == name.npos ? dash : dash - begin));
        before = ", ";
    }
    if (before[0] == ',') result += ')';
    return result;
}
