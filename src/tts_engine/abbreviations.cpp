// The tables. See abbreviations.h.
#include "tts_engine/abbreviations.h"

namespace tts {
namespace {

// Words stand between blanks, with a blank at both ends.
struct Abbreviations {
    std::string_view languages;
    std::string_view before_words;
    std::string_view before_numbers;
};

constexpr Abbreviations known[] = {
    {" en ",
     " mr mrs ms dr prof st rev gen col capt lt sgt hon gov sen rep pres mt ft vs cf viz approx ca messrs maj brig "
     "cmdr "
     "adm supt insp ",
     " no nos vol fig figs eq p pp ch sec art jan feb mar apr jun jul aug sep sept oct nov dec "},
    {" de lb ", " hr fr dr prof dipl ing bzw str bspw ggf evtl inkl exkl geb gest mag ca vgl st sog ",
     " nr abs kap bd art jan feb mär apr jun jul aug sep sept okt nov dez "},
    {" fr ", " mm mme mmes mlle dr pr st ste cf av bd env ", " p pp art chap no fig vol "},
    {" es ca ", " sr sra sres srta dr dra ud uds d dña prof gral av avda ", " pág págs núm art cap vol "},
    {" it ", " sig sigg dott dr prof avv ing geom ", " pag art cap num "},
    {" pt ", " sr sra srs dr dra prof profa eng av ", " pág art cap núm "},
    {" nl af ", " dhr mevr mw dr drs prof ir ing mr bijv st ", " nr blz art hfst "},
    {" da nb nn no ", " hr fr dr prof ing bl ca ", " nr kap "},
    {" sv ", " dr prof ca bl ", " nr kap "},
    {" fi et ", " esim nim tri prof dr ", " nro nr "},
    {" pl ", " dr prof inż mgr ul al św ks np tzw por ", " nr str art rozdz "},
    {" cs sk ", " dr prof ing mgr ul tzv např napr sv ", " č str kap "},
    {" hu ", " dr prof pl ún ", ""},
    {" ru uk be bg ", " г гг ул им проф акад тел см вул ім напр ", " стр рис гл мал с "},
    {" tr az ", " dr prof av sn doç bkz ", " no "},
    {" ro ", " dl dna dr prof str ", " nr art cap pag "},
};

constexpr std::string_view german_before_ordinals =
    " am im vom zum zur beim der die das dem den des ab bis seit und oder jeder jede jedem jedes jeden ein eine einen "
    "einem einer ihr ihre ihren ihrem sein seine seinen seinem mein meine meinen meinem unser unsere unseren unserem ";

bool holds(std::string_view list, std::string_view word) {
    for (std::size_t at = list.find(word); at != std::string_view::npos; at = list.find(word, at + 1))
        if (list[at - 1] == ' ' && list[at + word.size()] == ' ') return true;
    return false;
}

}  // namespace

bool is_abbreviation_in(std::string_view language, std::string_view word, bool before_number) {
    if (word.empty() || language.empty()) return false;
    for (const Abbreviations& row : known) {
        if (!holds(row.languages, language)) continue;
        return holds(row.before_words, word) || (before_number && holds(row.before_numbers, word));
    }
    return word == "dr" || word == "prof";
}

bool is_ordinal_behind(std::string_view language, std::string_view word) {
    if (language != "de" && language != "lb") return false;
    return word.empty() || holds(german_before_ordinals, word);
}

}  // namespace tts
