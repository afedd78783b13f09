// Characters, words and sentences. See text.h.
#include "tools/listening/text.h"

#include <algorithm>
#include <array>

namespace listening {
namespace {

struct Range {
    char32_t first, last;
};

// Unicode's punctuation, as far as the shipped languages write it.
constexpr Range punctuation[] = {
    {0x21, 0x23},     {0x25, 0x2A},     {0x2C, 0x2F},     {0x3A, 0x3B},     {0x3F, 0x40},     {0x5B, 0x5D},
    {0x5F, 0x5F},     {0x7B, 0x7B},     {0x7D, 0x7D},     {0xA1, 0xA1},     {0xA7, 0xA7},     {0xAB, 0xAB},
    {0xB6, 0xB7},     {0xBB, 0xBB},     {0xBF, 0xBF},     {0x37E, 0x37E},   {0x387, 0x387},   {0x55A, 0x55F},
    {0x589, 0x58A},   {0x5BE, 0x5BE},   {0x5C0, 0x5C0},   {0x5C3, 0x5C3},   {0x5F3, 0x5F4},   {0x609, 0x60D},
    {0x61B, 0x61F},   {0x66A, 0x66D},   {0x6D4, 0x6D4},   {0x964, 0x965},   {0x970, 0x970},   {0xDF4, 0xDF4},
    {0xE4F, 0xE4F},   {0xE5A, 0xE5B},   {0x104A, 0x104F}, {0x1360, 0x1368}, {0x17D4, 0x17DA}, {0x2010, 0x2027},
    {0x2030, 0x205E}, {0x3001, 0x3003}, {0x3008, 0x3011}, {0x3014, 0x301F}, {0x30FB, 0x30FB}, {0xFF01, 0xFF0F},
    {0xFF1A, 0xFF20}, {0xFF3B, 0xFF3F}, {0xFF5B, 0xFF65}};

// Marks that are written on the character before, vowel signs, joiners.
constexpr Range attached[] = {{0x300, 0x36F},   {0x591, 0x5BD},   {0x64B, 0x65F},   {0x900, 0x903},   {0x93A, 0x94F},
                              {0x981, 0x983},   {0x9BC, 0x9D7},   {0xA01, 0xA03},   {0xA3C, 0xA51},   {0xA81, 0xA83},
                              {0xABC, 0xACD},   {0xB01, 0xB03},   {0xB3C, 0xB57},   {0xB82, 0xB82},   {0xBBE, 0xBD7},
                              {0xC00, 0xC03},   {0xC3E, 0xC56},   {0xC81, 0xC83},   {0xCBC, 0xCD6},   {0xD00, 0xD03},
                              {0xD3E, 0xD57},   {0xD82, 0xD83},   {0xDCA, 0xDDF},   {0xE31, 0xE31},   {0xE34, 0xE3A},
                              {0xE47, 0xE4E},   {0x102B, 0x103E}, {0x1056, 0x1059}, {0x200B, 0x200F}, {0x3099, 0x309A},
                              {0x30FC, 0x30FC}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}, {0xAD, 0xAD}};

template <std::size_t count>
bool is_in(const Range (&ranges)[count], char32_t c) {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [c](const Range& range) { return c >= range.first && c <= range.last; });
}

bool is_attached(char32_t c) { return is_in(attached, c); }

std::size_t length_of(unsigned char lead) { return lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4; }

bool ends_sentence(char32_t c) {
    constexpr std::array<char32_t, 17> ends = {'.',    '!',    '?',    0x589,  0x61F,  0x6D4,  0x964,  0x965, 0x104A,
                                               0x104B, 0x1362, 0x1367, 0x3002, 0xFF0E, 0xFF01, 0xFF1F, 0x2026};
    return std::find(ends.begin(), ends.end(), c) != ends.end();
}

// These need no blank after them.
bool ends_wide_sentence(char32_t c) { return c == 0x3002 || c >= 0xFF01 || c == 0x1362; }

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \n\r\t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \n\r\t") - first + 1);
}

// One token after another, from characters that are given in order.
class Tokenizer {
public:
    void take(const std::string& character, std::size_t at) {
        const char32_t c = code_of(character);
        if (separates_words(c)) return finish();
        if (is_han(c) || is_kana(c)) finish();
        if (alone_ && !is_attached(c)) finish();
        if (is_punctuation(c)) {
            if (!pending_.text.empty()) rest_ += character;
            return;
        }
        if (pending_.text.empty()) pending_.begin = at;
        pending_.text += rest_ + character;
        rest_.clear();
        pending_.end = at + character.size();
        alone_ = is_han(c) || is_kana(c) || (alone_ && is_attached(c));
    }

    void finish() {
        if (!pending_.text.empty()) tokens_.push_back(pending_);
        pending_ = {};
        rest_.clear();
        alone_ = false;
    }

    std::vector<Token> tokens() {
        finish();
        return std::move(tokens_);
    }

private:
    std::vector<Token> tokens_;
    Token pending_{};
    std::string rest_;  // punctuation that belongs to the word if a letter follows
    bool alone_ = false;
};

}  // namespace

std::vector<std::string> characters_of(std::string_view text) {
    std::vector<std::string> result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = length_of(static_cast<unsigned char>(text[at]));
        result.emplace_back(text.substr(at, length));
        at += length;
    }
    return result;
}

char32_t code_of(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character[0]);
    const std::size_t length = length_of(lead);
    if (length == 1 || character.size() < length) return lead;
    char32_t code = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) code = code << 6 | (static_cast<unsigned char>(character[i]) & 0x3F);
    return code;
}

std::size_t letter_count(std::string_view text) {
    const std::vector<std::string> all = characters_of(text);
    return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), [](const std::string& character) {
        const char32_t c = code_of(character);
        return !is_punctuation(c) && !is_attached(c) && !is_blank(c);
    }));
}

bool is_blank(char32_t c) {
    return c <= 0x20 || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x202F || c == 0x205F ||
           c == 0x3000;
}

bool separates_words(char32_t c) { return is_blank(c) || c == 0x1361; }
bool is_punctuation(char32_t c) { return is_in(punctuation, c); }
bool is_han(char32_t c) { return (c >= 0x3400 && c <= 0x9FFF) || (c >= 0xF900 && c <= 0xFAFF) || c == 0x3005; }
bool is_kana(char32_t c) { return (c >= 0x3041 && c <= 0x3096) || (c >= 0x30A1 && c <= 0x30FA); }
bool is_digit(char32_t c) { return c >= '0' && c <= '9'; }

std::vector<Token> tokens_of(std::string_view text) {
    Tokenizer tokenizer;
    std::size_t at = 0;
    for (const std::string& character : characters_of(text)) {
        tokenizer.take(character, at);
        at += character.size();
    }
    return tokenizer.tokens();
}

std::vector<std::string> sentences_of(std::string_view text) {
    std::vector<std::string> result;
    std::string sentence;
    char32_t before = 0;
    const auto finish = [&] {
        const std::string_view whole = trimmed(sentence);
        if (!tokens_of(whole).empty()) result.emplace_back(whole);
        sentence.clear();
    };
    for (const std::string& character : characters_of(text)) {
        const char32_t c = code_of(character);
        if (c == '\n' || (ends_sentence(before) && separates_words(c))) finish();
        sentence += character;
        if (ends_wide_sentence(c) && ends_sentence(c)) finish();
        before = c;
    }
    finish();
    return result;
}

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else
            result += c;
    }
    return result;
}

Document document_of(const std::string& language, const std::string& body) {
    const std::string start = "<speak version=\"1.0\" xml:lang=\"" + language + "\"><mark name=\"P0\"/>";
    return {start + body + "</speak>", start.size()};
}

}  // namespace listening
