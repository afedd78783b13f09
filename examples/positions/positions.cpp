// Turns the text fragments of a SAPI host into SSML, and finds for each byte of the SSML where it came from.
//
// Let the host's own text be
//
//     Fish & <silence msec="50"/>chips: 2 €.
//
// of which it makes three fragments: text, a silence, text. A fragment knows where it stands in the host's text, in
// UTF-16 units. When the synthesiser says which bytes of the SSML it is speaking, the map tells what to highlight.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "fragments/spvtextfrags_to_ssml.h"

namespace {

SPVTEXTFRAG fragment(SPVACTIONS action, const std::basic_string<WCHAR>& text, ULONG offset) {
    SPVTEXTFRAG result{};
    result.State.eAction = action;
    result.State.Volume = 100;  // percent
    result.pTextStart = text.data();
    result.ulTextLen = static_cast<ULONG>(text.size());
    result.ulTextSrcOffset = offset;
    return result;
}

// One line for each host position, with the bytes of the SSML that came from there. A tag came from where the text
// behind it did; an entity is one character of the host's text.
void print_map(const std::string& ssml, const std::uint32_t* map) {
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= ssml.size(); ++i) {
        if (i < ssml.size() && map[i] == map[begin]) continue;
        std::printf("%3u  [%s]\n", static_cast<unsigned>(map[begin]), ssml.substr(begin, i - begin).c_str());
        begin = i;
    }
}

int from_fragments() {
    const std::basic_string<WCHAR> before = NELVA_WIDE("Fish & ");
    const std::basic_string<WCHAR> behind = NELVA_WIDE("chips: 2 \u20AC.");
    SPVTEXTFRAG last = fragment(SPVA_Speak, behind, 27);
    SPVTEXTFRAG silence = fragment(SPVA_Silence, {}, 7);
    silence.State.SilenceMSecs = 50;
    silence.pNext = &last;
    SPVTEXTFRAG first = fragment(SPVA_Speak, before, 0);
    first.pNext = &silence;

    char* block = nullptr;
    std::uint32_t* map = nullptr;
    if (FAILED(spvtextfrags_to_ssml(&first, &block, &map, "en"))) return 1;
    const std::string ssml = block;
    print_map(ssml, map);

    // The synthesiser says that it speaks this word. The map has an entry more than the SSML has bytes, for the end.
    const std::size_t word = ssml.find("chips");
    std::printf("\"chips\" is at %u to %u of the host's text\n", static_cast<unsigned>(map[word]),
                static_cast<unsigned>(map[word + 5]));
    std::free(map);
    std::free(block);
    return 0;
}

// A document that you made yourself, from a text whose bytes' positions you know: "1<2", found at 10, ending at 13.
void from_positions() {
    const std::string ssml = "<speak>1&lt;2</speak>";
    std::vector<std::uint32_t> map;
    build_ssml_sapi_posmap(&map, ssml, {10, 11, 12, 13});
    print_map(ssml, map.data());
}

}  // namespace

int main() {
    if (from_fragments() != 0) return 1;
    from_positions();
    return 0;
}
