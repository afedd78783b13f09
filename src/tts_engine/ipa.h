// From the International Phonetic Alphabet to the phonemes of one language of espeak-ng.
//
// Each language of espeak-ng has phonemes of its own, under mnemonics of its own ("3:" and "A:" in English), and knows
// for each the IPA symbols. A table of these pairs comes from espeak-ng itself (EspeakEngine::ipa_table); what a writer
// of IPA may use beyond them is mapped to the nearest phonemes that the language has, by a table of ours in ipa.cpp.
#ifndef TTS_ENGINE_IPA_H
#define TTS_ENGINE_IPA_H

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace tts {

// The phonemes of one language.
class IpaTable {
public:
    // A phoneme with both of its names, as espeak-ng gives them. Of several with the same IPA the shortest mnemonic
    // counts, and of those the first.
    void add(std::string_view ipa, std::string_view mnemonic);

    // The mnemonic of the phoneme with exactly these symbols; null if there is none.
    const std::string* find(std::u32string_view symbols) const;

    // A phoneme whose symbols are this letter and length or diacritics; null if there is none.
    const std::string* find_variety(char32_t letter) const;

    // The most symbols that one phoneme has.
    std::size_t longest() const { return longest_; }

private:
    std::map<std::u32string, std::string, std::less<>> mnemonics_;
    std::size_t longest_ = 0;
};

// A pronunciation in IPA (UTF-8) as espeak-ng reads it between [[ and ]], which are not part of the result: mnemonics
// with | between them, stress marks, a blank between words. What no phoneme of the language comes near (diacritics, a
// syllable's border, anything that is no IPA) is dropped; the result is empty when nothing is left to sound.
//
//     ipa_to_espeak("həˈloʊ", english) == "h|@|'|l|oU|"
//
// Words are cut at 40 phonemes, since espeak-ng has room for 200 bytes of one.
std::string ipa_to_espeak(std::string_view ipa, const IpaTable& phonemes);

}  // namespace tts

#endif
