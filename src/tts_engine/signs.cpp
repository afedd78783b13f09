// Signs and their names. See signs.h.
#include "tts_engine/signs.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "tts_engine/characters.h"

namespace tts {
namespace {

constexpr char32_t joiner = 0x200D;

bool is_regional(char32_t c) { return c >= 0x1F1E6 && c <= 0x1F1FF; }
bool is_skin_tone(char32_t c) { return c >= 0x1F3FB && c <= 0x1F3FF; }
bool is_variation(char32_t c) { return c == 0xFE0E || c == 0xFE0F; }
bool is_part_of_sign(char32_t c) { return c == joiner || (is_combining(c) && !is_alnum(c)); }

// Where the sign at a character ends, with what combines with it.
std::size_t end_of_sign(const std::vector<Character>& text, std::size_t at) {
    std::size_t end = at + 1;
    for (; end < text.size(); ++end) {
        const char32_t c = text[end].code;
        const bool second_of_flag = end == at + 1 && is_regional(text[at].code) && is_regional(c);
        const bool joined = text[end - 1].code == joiner && is_sign(c);
        if (!is_part_of_sign(c) && !is_skin_tone(c) && !second_of_flag && !joined) break;
    }
    return end;
}

// Appends the blanks of a text that are said by name, of those at `first` up to the next that is none. Returns where
// that is.
std::size_t add_blanks(const std::vector<Character>& text, std::size_t first, std::size_t last,
                       std::vector<Token>& signs) {
    std::size_t end = first;
    bool layout = false;
    for (; end < last && is_blank(text[end].code) && !is_sign(text[end].code); ++end)
        layout |= is_layout(text[end].code);
    for (std::size_t i = first; i < end && !layout; ++i)
        if (text[i].begin < text[i].end)
            signs.push_back({static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(i + 1)});
    return end;
}

void add_signs(const std::vector<Character>& text, std::size_t first, std::size_t last, bool blanks,
               std::vector<Token>& signs) {
    for (std::size_t i = first; i < last;) {
        if (is_sign(text[i].code)) {
            const std::size_t end = std::min(end_of_sign(text, i), last);
            signs.push_back({static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(end)});
            i = end;
        } else if (blanks && is_blank(text[i].code)) {
            i = add_blanks(text, i, last, signs);
        } else {
            ++i;
        }
    }
}

// Signs of other scripts, by code, and the sign whose name is said where they have none.
struct Kin {
    char32_t sign;
    char32_t latin;
};
constexpr Kin kin[] = {
    {0x055A, U'\''}, {0x055B, 0xB4},   {0x055C, U'!'},   {0x055D, U','},   {0x055E, U'?'},   {0x055F, U'.'},
    {0x0589, U'.'},  {0x058A, U'-'},   {0x05BE, U'-'},   {0x05C0, U'|'},   {0x05C3, U':'},   {0x05F3, U'\''},
    {0x05F4, U'"'},  {0x060C, U','},   {0x061B, U';'},   {0x061F, U'?'},   {0x066A, U'%'},   {0x066B, U','},
    {0x066C, U','},  {0x066D, U'*'},   {0x06D4, U'.'},   {0x0964, U'.'},   {0x0965, U'.'},   {0x0E4F, 0x2022},
    {0x0F0B, 0xB7},  {0x0F0D, U','},   {0x0F0E, U'.'},   {0x104A, U','},   {0x104B, U'.'},   {0x1361, U' '},
    {0x1362, U'.'},  {0x1363, U','},   {0x1364, U';'},   {0x1365, U':'},   {0x1366, U':'},   {0x1367, U'?'},
    {0x17D4, U'.'},  {0x17D5, U'.'},   {0x17D6, U':'},   {0x1802, U','},   {0x1803, U'.'},   {0x1804, U':'},
    {0x2010, U'-'},  {0x2011, U'-'},   {0x2012, U'-'},   {0x2013, U'-'},   {0x2014, U'-'},   {0x2015, U'-'},
    {0x2025, U'.'},  {0x203C, U'!'},   {0x203D, U'?'},   {0x2039, 0xAB},   {0x203A, 0xBB},   {0x2047, U'?'},
    {0x2048, U'?'},  {0x2049, U'!'},   {0x3001, U','},   {0x3002, U'.'},   {0x3008, U'<'},   {0x3009, U'>'},
    {0x300A, 0xAB},  {0x300B, 0xBB},   {0x300C, 0x201C}, {0x300D, 0x201D}, {0x300E, 0x201C}, {0x300F, 0x201D},
    {0x3010, U'['},  {0x3011, U']'},   {0x3014, U'('},   {0x3015, U')'},   {0x301C, U'~'},   {0x30FB, 0xB7},
    {0xFF61, U'.'},  {0xFF62, 0x201C}, {0xFF63, 0x201D}, {0xFF64, U','},   {0xFF65, 0xB7}};

// 0 if there is none.
char32_t kin_of(char32_t sign) {
    // The wide forms of ASCII.
    if (sign >= 0xFF01 && sign <= 0xFF5E) return sign - 0xFEE0;
    const auto found = std::find_if(std::begin(kin), std::end(kin), [=](const Kin& one) { return one.sign == sign; });
    return found == std::end(kin) ? 0 : found->latin;
}

std::string utf8_of(char32_t c) {
    std::string text;
    append_utf8(text, c);
    return text;
}

void add_word(std::string& words, const std::string& word) {
    if (word.empty()) return;
    if (!words.empty() && words.back() != ' ') words += ' ';
    words += word;
}

// "symbol" and the digits of the code point. Dictionaries have the word as the name of "??".
std::string say_code_point(char32_t c, const SignName& name) {
    char digits[12];
    std::snprintf(digits, sizeof digits, "%x", static_cast<unsigned>(c));
    std::string words = name("??");
    for (const char* digit = digits; *digit != 0; ++digit) add_word(words, name({*digit}));
    return words;
}

std::string say_part(char32_t c, const SignName& name) {
    std::string said = name(utf8_of(c));
    if (said.empty() && to_lower(c) != c) said = name(utf8_of(to_lower(c)));
    const char32_t latin = kin_of(c);
    if (said.empty() && latin != 0) said = name(utf8_of(latin));
    return said.empty() ? say_code_point(c, name) : said;
}

}  // namespace

bool is_sign(char32_t c) { return c != object_character && (is_punctuation(c) || is_symbol(c)); }

bool is_layout(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029; }

std::vector<Token> named_signs(const std::vector<Character>& text, const std::vector<Run>& runs) {
    std::vector<Token> signs;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const SayAs say_as = runs[i].attributes.say_as;
        if (say_as != SayAs::characters && say_as != SayAs::signs) continue;
        const std::size_t last = i + 1 < runs.size() ? runs[i + 1].first : text.size();
        add_signs(text, runs[i].first, std::min(last, text.size()), say_as == SayAs::characters, signs);
    }
    return signs;
}

std::vector<Token> named_characters(const std::vector<Character>& text, std::uint32_t first, std::uint32_t last) {
    std::vector<Token> result;
    for (std::uint32_t i = first; i < last;) {
        const char32_t c = text[i].code;
        const auto end = std::min(static_cast<std::uint32_t>(end_of_sign(text, i)), last);
        const bool named = is_sign(c) || is_alnum(c) || is_part_of_sign(c);
        if (named) result.push_back({i, end});
        i = named ? end : i + 1;
    }
    return result;
}

std::string say_sign(std::u32string_view sign, const SignName& name) {
    if (!sign.empty() && is_blank(sign.front()) && !is_sign(sign.front())) return say_part(U' ', name);
    std::string whole;
    for (const char32_t c : sign)
        if (!is_variation(c)) append_utf8(whole, c);
    if (sign.size() == 1) return say_part(sign.front(), name);
    std::string said = name(whole);
    if (!said.empty()) return said;
    for (const char32_t c : sign)
        if (is_sign(c) || is_alnum(c)) add_word(said, say_part(c, name));
    return said;
}

}  // namespace tts
