// The table of IPA letters. See visemes.h.
#include "tts_engine/visemes.h"

#include <algorithm>
#include <iterator>

#include "tts_engine/characters.h"

namespace tts {
namespace {

struct Shape {
    char32_t letter;
    const char* label;
};

// By letter, ascending. Plain letters first, then the IPA block and what espeak-ng uses besides.
constexpr Shape shapes[] = {
    {U'a', "a"},  {U'b', "p"},  {U'c', "k"},  {U'd', "t"},  {U'e', "e"},   {U'f', "f"},  {U'g', "k"},  {U'h', "@"},
    {U'i', "i"},  {U'j', "i"},  {U'k', "k"},  {U'l', "t"},  {U'm', "p"},   {U'n', "t"},  {U'o', "o"},  {U'p', "p"},
    {U'q', "k"},  {U'r', "r"},  {U's', "s"},  {U't', "t"},  {U'u', "u"},   {U'v', "B"},  {U'w', "u"},  {U'x', "k"},
    {U'y', "u"},  {U'z', "s"},  {0xE6, "a"},  {0xE7, "S"},  {0xF0, "T"},   {0xF8, "e"},  {0x127, "@"}, {0x14B, "k"},
    {0x153, "E"}, {0x1C0, "t"}, {0x1C1, "t"}, {0x1C2, "t"}, {0x1C3, "t"},  {0x250, "a"}, {0x251, "a"}, {0x252, "O"},
    {0x253, "p"}, {0x254, "O"}, {0x255, "S"}, {0x256, "t"}, {0x257, "t"},  {0x258, "@"}, {0x259, "@"}, {0x25A, "@"},
    {0x25B, "E"}, {0x25C, "@"}, {0x25D, "@"}, {0x25E, "@"}, {0x25F, "k"},  {0x260, "k"}, {0x261, "k"}, {0x262, "k"},
    {0x263, "k"}, {0x264, "o"}, {0x265, "u"}, {0x266, "@"}, {0x267, "S"},  {0x268, "i"}, {0x269, "i"}, {0x26A, "i"},
    {0x26B, "t"}, {0x26C, "s"}, {0x26D, "t"}, {0x26E, "S"}, {0x26F, "u"},  {0x270, "k"}, {0x271, "B"}, {0x272, "t"},
    {0x273, "t"}, {0x274, "k"}, {0x275, "@"}, {0x276, "E"}, {0x278, "f"},  {0x279, "r"}, {0x27A, "r"}, {0x27B, "r"},
    {0x27C, "r"}, {0x27D, "r"}, {0x27E, "r"}, {0x280, "k"}, {0x281, "k"},  {0x282, "S"}, {0x283, "S"}, {0x284, "k"},
    {0x286, "S"}, {0x288, "t"}, {0x289, "u"}, {0x28A, "u"}, {0x28B, "B"},  {0x28C, "a"}, {0x28D, "u"}, {0x28E, "t"},
    {0x28F, "i"}, {0x290, "S"}, {0x291, "S"}, {0x292, "S"}, {0x295, "k"},  {0x298, "p"}, {0x299, "p"}, {0x29B, "k"},
    {0x29C, "@"}, {0x29D, "i"}, {0x29F, "t"}, {0x2A3, "s"}, {0x2A4, "J"},  {0x2A5, "J"}, {0x2A6, "s"}, {0x2A7, "J"},
    {0x2A8, "J"}, {0x3B2, "B"}, {0x3B8, "T"}, {0x3C7, "k"}, {0x1D7B, "i"}, {0x1D7F, "u"}};

const char* shape_of(char32_t letter) {
    const auto* found = std::lower_bound(std::begin(shapes), std::end(shapes), letter,
                                         [](const Shape& shape, char32_t wanted) { return shape.letter < wanted; });
    return found != std::end(shapes) && found->letter == letter ? found->label : nullptr;
}

// The shape of the first letter in `ipa` that has one; `ipa` then starts behind it.
const char* first_shape(std::string_view& ipa) {
    while (!ipa.empty()) {
        const Decoded decoded = decode_utf8(ipa);
        ipa.remove_prefix(decoded.length);
        if (const char* label = shape_of(decoded.code)) return label;
    }
    return nullptr;
}

}  // namespace

const char* viseme_of(std::string_view ipa) {
    if (ipa.empty()) return "sil";
    // espeak-ng reports a change to the phonemes of another language as a phoneme: "(en)".
    if (ipa[0] == '(') return nullptr;
    const char* label = first_shape(ipa);
    if (label == nullptr || *label != 't') return label;
    // A stop with a hushing release is one sound.
    const char* second = first_shape(ipa);
    return second != nullptr && *second == 'S' ? "J" : label;
}

}  // namespace tts
