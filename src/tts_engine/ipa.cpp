// Spelling IPA with a language's phonemes. See ipa.h.
//
// Both sides, a language's phonemes and what is to be spoken, are brought to one form first: ties between letters go,
// ligatures and letters with their own diacritics become several symbols, tone letters become digits (5 is high), and
// look-alikes of the keyboard become the symbols that they stand for. Then the longest phoneme that fits is taken at
// each place; where none does, the first symbol is replaced by its nearest neighbours.
#include "tts_engine/ipa.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "tts_engine/characters.h"

namespace tts {
namespace {

constexpr std::size_t most_in_word = 40;
constexpr char32_t primary_stress = 0x2C8;
constexpr char32_t secondary_stress = 0x2CC;
constexpr char32_t length_mark = 0x2D0;
constexpr char32_t border = U'.';
constexpr char32_t highest_tone = 0x2E5;
constexpr char32_t lowest_tone = 0x2E9;

struct Spelling {
    char32_t letter;
    const char32_t* symbols;
};

// By letter, ascending.
constexpr Spelling spellings[] = {{U'\'', U"ˈ"},       {U':', U"ː"},       {U'g', U"ɡ"},        {0xE3, U"a\u0303"},
                                  {0xF1, U"ɲ"},        {0xF5, U"o\u0303"}, {0x129, U"i\u0303"}, {0x169, U"u\u0303"},
                                  {0x1DD, U"ə"},       {0x2A3, U"dz"},     {0x2A4, U"dʒ"},      {0x2A5, U"dʑ"},
                                  {0x2A6, U"ts"},      {0x2A7, U"tʃ"},     {0x2A8, U"tɕ"},      {0x3B5, U"ɛ"},
                                  {0x1EBD, U"e\u0303"}};

// What is near to a symbol that a language has no phoneme for: the first entry that it can say counts.
struct Neighbours {
    char32_t symbol;
    const char32_t* spellings[4];
};

// By symbol, ascending.
constexpr Neighbours neighbours[] = {{U'a', {U"ɑ", U"æ", U"ɐ", U"ʌ"}},
                                     {U'b', {U"p"}},
                                     {U'c', {U"tʃ", U"kj", U"k"}},
                                     {U'd', {U"ð", U"t"}},
                                     {U'e', {U"ɛ", U"eɪ", U"ɪ"}},
                                     {U'f', {U"ɸ", U"v", U"p"}},
                                     {U'h', {U"ɦ", U"x", U"χ"}},
                                     {U'i', {U"ɪ", U"j"}},
                                     {U'j', {U"ʝ", U"i", U"ɪ"}},
                                     {U'k', {U"q", U"ɡ"}},
                                     {U'l', {U"ɫ", U"ɭ", U"r", U"ɾ"}},
                                     {U'm', {U"n"}},
                                     {U'n', {U"n̪", U"ŋ", U"m"}},
                                     {U'o', {U"ɔ", U"oʊ", U"əʊ", U"u"}},
                                     {U'p', {U"b"}},
                                     {U'q', {U"k"}},
                                     {U'r', {U"ɾ", U"ɹ", U"ʁ", U"l"}},
                                     {U's', {U"ʂ", U"ʃ", U"z"}},
                                     {U't', {U"t̪", U"d"}},
                                     {U'u', {U"ʊ", U"ɯ", U"o"}},
                                     {U'v', {U"ʋ", U"w", U"f", U"b"}},
                                     {U'w', {U"ʋ", U"v", U"ʊ", U"u"}},
                                     {U'x', {U"χ", U"h", U"k"}},
                                     {U'y', {U"ʏ", U"ø", U"u", U"i"}},
                                     {U'z', {U"ʐ", U"s"}},
                                     {0xE6, {U"a", U"ɛ", U"e"}},
                                     {0xE7, {U"ɕ", U"x", U"ʃ", U"h"}},
                                     {0xF0, {U"ð̪", U"d", U"z"}},
                                     {0xF8, {U"œ", U"ɜ", U"e", U"o"}},
                                     {0x127, {U"h", U"x"}},
                                     {0x14B, {U"n"}},
                                     {0x153, {U"ø", U"ɜ", U"ɛ", U"e"}},
                                     {0x250, {U"ʌ", U"ə", U"a"}},
                                     {0x251, {U"a", U"ɒ", U"ʌ"}},
                                     {0x252, {U"ɔ", U"ɑ", U"o", U"a"}},
                                     {0x253, {U"b"}},
                                     {0x254, {U"o", U"ɒ", U"ɑ"}},
                                     {0x255, {U"ʃ", U"s"}},
                                     {0x256, {U"d"}},
                                     {0x257, {U"d"}},
                                     {0x258, {U"ə", U"ɛ", U"e"}},
                                     {0x259, {U"ɐ", U"ʌ", U"ɛ", U"e"}},
                                     {0x25A, {U"əɹ", U"ər", U"ə", U"er"}},
                                     {0x25B, {U"e", U"æ"}},
                                     {0x25C, {U"ə", U"ɛ", U"e"}},
                                     {0x25D, {U"ɜɹ", U"ɜr", U"ɜ", U"er"}},
                                     {0x25E, {U"ɜ", U"ə", U"ɔ", U"o"}},
                                     {0x25F, {U"dʒ", U"ɡj", U"ɡ"}},
                                     {0x260, {U"ɡ"}},
                                     {0x261, {U"k"}},
                                     {0x262, {U"ɡ"}},
                                     {0x263, {U"ɡ", U"ʁ", U"x"}},
                                     {0x264, {U"o", U"ə", U"ɔ"}},
                                     {0x265, {U"j", U"w"}},
                                     {0x266, {U"h", U"x"}},
                                     {0x267, {U"ʃ", U"x"}},
                                     {0x268, {U"ɪ", U"i"}},
                                     {0x26A, {U"i", U"e"}},
                                     {0x26B, {U"l"}},
                                     {0x26C, {U"l", U"s"}},
                                     {0x26D, {U"l"}},
                                     {0x26E, {U"ʒ", U"l"}},
                                     {0x26F, {U"ɨ", U"u", U"ʊ"}},
                                     {0x270, {U"w", U"ɡ"}},
                                     {0x271, {U"m"}},
                                     {0x272, {U"nj", U"n"}},
                                     {0x273, {U"n"}},
                                     {0x274, {U"ŋ", U"n"}},
                                     {0x275, {U"ə", U"ø", U"o"}},
                                     {0x276, {U"œ", U"ø", U"a"}},
                                     {0x278, {U"f"}},
                                     {0x279, {U"r", U"ɾ", U"ʁ"}},
                                     {0x27A, {U"ɾ", U"l"}},
                                     {0x27B, {U"ɹ", U"r", U"ɾ", U"ʐ"}},
                                     {0x27D, {U"ɾ", U"r", U"ɹ"}},
                                     {0x27E, {U"r", U"ɹ", U"d"}},
                                     {0x280, {U"ʁ", U"r", U"ɹ", U"ɾ"}},
                                     {0x281, {U"ʀ", U"ɣ", U"r", U"ɹ"}},
                                     {0x282, {U"ʃ", U"s"}},
                                     {0x283, {U"ʂ", U"ɕ", U"s"}},
                                     {0x288, {U"t"}},
                                     {0x289, {U"u", U"ʊ"}},
                                     {0x28A, {U"u", U"o"}},
                                     {0x28B, {U"v", U"w"}},
                                     {0x28C, {U"ɐ", U"ə", U"a"}},
                                     {0x28D, {U"w", U"v"}},
                                     {0x28E, {U"lj", U"l", U"j"}},
                                     {0x28F, {U"y", U"ø", U"ɪ", U"i"}},
                                     {0x290, {U"ʒ", U"z"}},
                                     {0x291, {U"ʒ", U"z"}},
                                     {0x292, {U"ʐ", U"ʑ", U"z", U"ʃ"}},
                                     {0x295, {U"ʔ", U"ħ"}},
                                     {0x299, {U"b"}},
                                     {0x29B, {U"ɡ"}},
                                     {0x29C, {U"h"}},
                                     {0x29D, {U"j", U"i"}},
                                     {0x29F, {U"l"}},
                                     {0x2C0, {U"ʔ"}},
                                     {0x3B2, {U"b", U"v"}},
                                     {0x3B8, {U"t̪", U"s", U"t"}},
                                     {0x3C7, {U"x", U"h", U"k"}},
                                     {0x1D7B, {U"ɪ", U"i"}},
                                     {0x1D7F, {U"ʊ", U"u"}}};

template <typename Row, std::size_t size>
const Row* row_of(const Row (&table)[size], char32_t Row::*key, char32_t wanted) {
    const Row* found = std::lower_bound(std::begin(table), std::end(table), wanted,
                                        [key](const Row& row, char32_t symbol) { return row.*key < symbol; });
    return found != std::end(table) && found->*key == wanted ? found : nullptr;
}

// Ties, and marks that say nothing of which phoneme it is. What stays of the diacritics may be part of a phoneme's
// name.
bool is_left_out(char32_t c) {
    return c == 0x361 || c == 0x35C || c == 0x32F || c == 0x311 || c == 0x200D || c == 0x200C || c == 0xFEFF;
}

// What makes a letter another variety of the same sound.
bool is_mark(char32_t c) { return is_combining(c) || c == length_mark || (c >= 0x1D2C && c <= 0x1D6A); }

std::u32string symbols_of(std::string_view ipa) {
    std::u32string result;
    while (!ipa.empty()) {
        const Decoded decoded = decode_utf8(ipa);
        ipa.remove_prefix(decoded.length);
        if (decoded.code == 0 || is_left_out(decoded.code)) continue;
        if (const Spelling* spelling = row_of(spellings, &Spelling::letter, decoded.code))
            result += spelling->symbols;
        else if (decoded.code >= highest_tone && decoded.code <= lowest_tone)
            result += static_cast<char32_t>(U'5' - (decoded.code - highest_tone));
        else
            result += decoded.code;
    }
    return result;
}

bool is_word_end(char32_t c) { return is_blank(c) || c == U'_' || c == 0x2016 || c == U'|'; }

// Puts the phonemes of a pronunciation one behind the other.
class Speller {
public:
    explicit Speller(const IpaTable& phonemes) : phonemes_(phonemes) {}

    std::string spell(std::u32string_view symbols) {
        while (!symbols.empty()) {
            const char32_t first = symbols[0];
            const std::size_t taken = is_word_end(first) || first == border ? 0 : phoneme(symbols);
            if (taken == 0) other(first);
            symbols.remove_prefix(std::max<std::size_t>(taken, 1));
        }
        return sounds_ ? std::move(result_) : std::string();
    }

private:
    void other(char32_t symbol) {
        if (symbol == primary_stress) stress_ = '\'';
        if (symbol == secondary_stress) stress_ = ',';
        if (is_word_end(symbol)) end_word();
    }

    void end_word() {
        if (in_word_ > 0) result_ += ' ';
        in_word_ = 0;
    }

    void put(const std::string& mnemonic) {
        if (in_word_ >= most_in_word) end_word();
        if (stress_ != 0) result_.append(1, stress_).append(1, '|');
        stress_ = 0;
        result_.append(mnemonic).append(1, '|');
        ++in_word_;
        sounds_ = true;
    }

    // The phoneme that takes the most symbols from the front; how many it takes, 0 if there is none.
    std::size_t longest(std::u32string_view symbols, const std::string*& mnemonic) const {
        for (std::size_t count = std::min(symbols.size(), phonemes_.longest()); count > 0; --count) {
            mnemonic = phonemes_.find(symbols.substr(0, count));
            if (mnemonic != nullptr) return count;
        }
        return 0;
    }

    std::size_t phoneme(std::u32string_view symbols) {
        const std::string* mnemonic = nullptr;
        if (const std::size_t taken = longest(symbols, mnemonic)) {
            // A length that stands alone belongs to a sound before it.
            if (symbols[0] != length_mark || in_word_ > 0) put(*mnemonic);
            return taken;
        }
        const Neighbours* row = row_of(neighbours, &Neighbours::symbol, symbols[0]);
        if (const std::string* close = phonemes_.find_variety(symbols[0])) {
            put(*close);
            return 1;
        }
        if (row == nullptr) return 0;
        for (const char32_t* near : row->spellings)
            if (near != nullptr && says(near)) return 1;
        return 0;
    }

    // Puts all of `symbols`, or nothing.
    bool says(std::u32string_view symbols) {
        std::vector<const std::string*> found;
        while (!symbols.empty()) {
            const std::string* mnemonic = nullptr;
            std::size_t taken = longest(symbols, mnemonic);
            if (taken == 0) {
                mnemonic = phonemes_.find_variety(symbols[0]);
                if (mnemonic == nullptr) return false;
                taken = 1;
            }
            found.push_back(mnemonic);
            symbols.remove_prefix(taken);
        }
        for (const std::string* mnemonic : found) put(*mnemonic);
        return true;
    }

    const IpaTable& phonemes_;
    std::string result_;
    std::size_t in_word_ = 0;
    char stress_ = 0;
    bool sounds_ = false;
};

}  // namespace

void IpaTable::add(std::string_view ipa, std::string_view mnemonic) {
    std::u32string symbols = symbols_of(ipa);
    if (symbols.empty() || mnemonic.empty()) return;
    longest_ = std::max(longest_, symbols.size());
    std::string& known = mnemonics_[std::move(symbols)];
    if (known.empty() || mnemonic.size() < known.size()) known = mnemonic;
}

const std::string* IpaTable::find(std::u32string_view symbols) const {
    const auto found = mnemonics_.find(symbols);
    return found == mnemonics_.end() ? nullptr : &found->second;
}

const std::string* IpaTable::find_variety(char32_t letter) const {
    const std::u32string start(1, letter);
    for (auto at = mnemonics_.upper_bound(start); at != mnemonics_.end() && at->first[0] == letter; ++at) {
        const bool marks_only = std::all_of(at->first.begin() + 1, at->first.end(), is_mark);
        if (marks_only) return &at->second;
    }
    return nullptr;
}

std::string ipa_to_espeak(std::string_view ipa, const IpaTable& phonemes) {
    return Speller(phonemes).spell(symbols_of(ipa));
}

}  // namespace tts
