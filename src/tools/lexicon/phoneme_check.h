// Tells somebody who types phonemes of the International Phonetic Alphabet what is wrong with them, as they type.
//
//     check_phonemes("həˈloʊ").verdict     // fine
//     check_phonemes("hə'loʊ").message     // "OK. For ' (character 3) IPA has ˈ."
//     check_phonemes("hə&loʊ").message     // "& (character 3) is not an IPA sign."
#ifndef NELVA_TOOLS_LEXICON_PHONEME_CHECK_H
#define NELVA_TOOLS_LEXICON_PHONEME_CHECK_H

#include <cstddef>
#include <string>
#include <string_view>

namespace lexicon {

struct PhonemeCheck {
    // accepted: the voice understands it, though IPA writes it in another way.
    enum class Verdict { empty, fine, accepted, wrong };
    Verdict verdict = Verdict::empty;
    std::string message;     // one or two sentences; never empty
    std::size_t offset = 0;  // of the first character that matters, in bytes; where nothing does, the text's size
    std::size_t length = 0;  // of that character, in bytes

    bool is_usable() const { return verdict == Verdict::fine || verdict == Verdict::accepted; }
};

// What it looks at, in this order: characters that are no IPA; marks that stand where they mean nothing (a length mark
// or a diacritic without a sound in front, a stress mark without one behind, a tie that ties nothing); whether there is
// a sound at all. The first finding counts.
PhonemeCheck check_phonemes(std::string_view text);

}  // namespace lexicon

#endif
