// The signs of the IPA chart (2020) by what may stand around them. Precomposed letters such as ã, which keyboards give,
// are taken as the letter with its diacritic.
#include "tools/lexicon/phoneme_check.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "tools/lexicon/encoding.h"

namespace lexicon {
namespace {

enum class Sign { sound, behind_sound, before_sound, tie, border, tone, unknown };

// Vowels and consonants, the obsolete ligatures and the common extensions.
constexpr std::u32string_view sounds =
    U"abcdefhijklmnopqrstuvwxyz"
    U"æçðøħŋœǀǁǂǃɐɑɒɓɔɕɖɗɘəɚɛɜɝɞɟɠɡɢɣɤɥɦɧɨɪɫɬɭɮɯɰɱɲɳɴɵɶɸɹɺɻɽɾʀʁʂʃʄʈʉʊʋʌʍʎʏʐʑʒʔʕʘʙʛʜʝʟʡʢβθχⱱ"
    U"ɿʅʮʯʣʤʥʦʧʨᵻᵿᵊãẽĩõũñ";

// Length, aspiration and the like, behind the sound that they belong to. Combining marks are told by their block.
constexpr std::u32string_view modifiers = U"ːˑʰʱʲʷˠˤⁿˡʼ˞˔˕˗˖ʴʳˀ";

constexpr std::u32string_view stresses = U"ˈˌ";
constexpr std::u32string_view borders = U" .|‖‿-";
constexpr std::u32string_view tones = U"˥˦˧˨˩ꜛꜜ↗↘";

// What keyboards have and the synthesiser takes for the sign that is meant (tts_engine/ipa.cpp).
struct LookAlike {
    char32_t typed;
    char32_t meant;
    Sign sign;
};
constexpr LookAlike look_alikes[] = {{U'\'', U'ˈ', Sign::before_sound},
                                     {U':', U'ː', Sign::behind_sound},
                                     {U'g', U'ɡ', Sign::sound},
                                     {U'ε', U'ɛ', Sign::sound},
                                     {U'ǝ', U'ə', Sign::sound}};

bool contains(std::u32string_view set, char32_t c) { return set.find(c) != set.npos; }

bool is_combining(char32_t c) { return c >= 0x300 && c <= 0x36F; }

bool is_tie(char32_t c) { return c == 0x361 || c == 0x35C; }

const LookAlike* look_alike(char32_t c) {
    const auto* const found = std::find_if(std::begin(look_alikes), std::end(look_alikes),
                                           [c](const LookAlike& entry) { return entry.typed == c; });
    return found == std::end(look_alikes) ? nullptr : found;
}

Sign sign_of(char32_t c) {
    if (const LookAlike* entry = look_alike(c)) return entry->sign;
    if (contains(sounds, c)) return Sign::sound;
    if (is_tie(c)) return Sign::tie;
    if (is_combining(c) || contains(modifiers, c)) return Sign::behind_sound;
    if (contains(stresses, c)) return Sign::before_sound;
    if (contains(borders, c)) return Sign::border;
    if (contains(tones, c)) return Sign::tone;
    return Sign::unknown;
}

// The character as a message shows it: a combining mark needs something to sit on.
std::string shown(char32_t c) {
    if (c == U' ') return "The blank";
    std::string result;
    if (is_combining(c)) append_character(&result, U'◌');
    append_character(&result, c);
    return result;
}

class Checker {
public:
    explicit Checker(std::string_view text) : text_(text) {}

    PhonemeCheck run() {
        if (collapse_blanks(text_).empty())
            return {PhonemeCheck::Verdict::empty, "Type the sounds in IPA, for example h\u0259\u02C8lo\u028A.",
                    text_.size(), 0};
        if (const auto finding = first_finding(true)) return *finding;
        if (const auto finding = first_finding(false)) return *finding;
        if (!any_sound_) return wrong(text_.size(), 0, "There is no sound in it yet.");
        if (accepted_) return *accepted_;
        return {PhonemeCheck::Verdict::fine, "OK.", text_.size(), 0};
    }

private:
    // Walks the text for characters that are no IPA, or for marks in a wrong place.
    std::optional<PhonemeCheck> first_finding(bool unknown_only) {
        previous_ = Sign::border;
        std::size_t number = 0;
        for (std::size_t at = 0; at < text_.size();) {
            const std::size_t begin = at;
            const char32_t c = next_character(text_, &at);
            ++number;
            const Sign sign = sign_of(c);
            if (sign == Sign::unknown && unknown_only) return unknown(c, number, begin, at - begin);
            if (unknown_only) continue;
            if (const char* problem = misplaced(sign))
                return wrong(begin, at - begin, shown(c) + place(number) + problem);
            note(c, sign, number, begin, at - begin);
            previous_ = sign;
        }
        if (unknown_only) return std::nullopt;
        if (previous_ == Sign::before_sound)
            return wrong(text_.size(), 0, "A sound is missing behind the stress mark.");
        if (previous_ == Sign::tie) return wrong(text_.size(), 0, "A sound is missing behind the tie.");
        return std::nullopt;
    }

    // Null where the sign may follow the one before it.
    const char* misplaced(Sign sign) const {
        const bool behind_sound = previous_ == Sign::sound || previous_ == Sign::behind_sound;
        if (previous_ == Sign::tie && sign != Sign::sound) return " cannot follow a tie, which joins two sounds.";
        if (previous_ == Sign::before_sound && sign != Sign::sound) return " cannot follow a stress mark.";
        if (sign == Sign::behind_sound && !behind_sound) return " needs a sound in front of it.";
        if (sign == Sign::tie && !behind_sound) return " needs a sound in front of it.";
        return nullptr;
    }

    void note(char32_t c, Sign sign, std::size_t number, std::size_t begin, std::size_t length) {
        any_sound_ = any_sound_ || sign == Sign::sound;
        const LookAlike* entry = look_alike(c);
        if (!entry || accepted_) return;
        accepted_ = {PhonemeCheck::Verdict::accepted,
                     "OK. For " + shown(c) + place(number) + " IPA has " + shown(entry->meant) + ".", begin, length};
    }

    static PhonemeCheck unknown(char32_t c, std::size_t number, std::size_t begin, std::size_t length) {
        std::string advice;
        if (c >= U'A' && c <= U'Z') advice = " IPA has no capital letters.";
        if (c == U',') advice = " Is \u02CC meant?";
        return wrong(begin, length, shown(c) + place(number) + " is not an IPA sign." + advice);
    }

    static std::string place(std::size_t number) { return " (character " + std::to_string(number) + ")"; }

    static PhonemeCheck wrong(std::size_t offset, std::size_t length, const std::string& message) {
        return {PhonemeCheck::Verdict::wrong, message, offset, length};
    }

    std::string_view text_;
    Sign previous_ = Sign::border;
    bool any_sound_ = false;
    std::optional<PhonemeCheck> accepted_;
};

}  // namespace

PhonemeCheck check_phonemes(std::string_view text) { return Checker(text).run(); }

}  // namespace lexicon
