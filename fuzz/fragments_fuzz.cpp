// From fragments to document and map: the direct way against the one through the rich text.
//
//     each line   a fragment: letters and digits up to a colon for its action and state (see fragment_of), then its
//                 text, one unit for each byte below 0x80, and one for each other byte and the byte behind it
#include <algorithm>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "fragments/direct_document.h"
#include "fragments/fragment_walk.h"
#include "fuzz/input_lines.h"
#include "fuzz/property.h"
#include "speechtext/speechtext.h"

namespace {

using namespace fragments_detail;

using Units = std::basic_string<WCHAR>;

Units units_of(std::string_view bytes) {
    Units units;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        unsigned int unit = static_cast<unsigned char>(bytes[i]);
        if (unit >= 0x80 && i + 1 < bytes.size()) unit = unit << 8 | static_cast<unsigned char>(bytes[++i]);
        units += static_cast<WCHAR>(unit);
    }
    return units;
}

// A digit is the action; each letter moves one field of the state, and what it does twice it does twice.
SPVTEXTFRAG fragment_of(std::string_view letters) {
    SPVTEXTFRAG fragment{};
    SPVSTATE& state = fragment.State;
    state.Volume = 100;
    for (const char letter : letters) {
        if (letter >= '0' && letter <= '9') state.eAction = static_cast<SPVACTIONS>(letter - '0');
        if (letter == 'r') ++state.RateAdj;
        if (letter == 'R') state.RateAdj -= 3;
        if (letter == 'p') ++state.PitchAdj.MiddleAdj;
        if (letter == 'P') state.PitchAdj.MiddleAdj = -2000000000;
        if (letter == 'v') state.Volume -= 30;
        if (letter == 'e') state.EmphAdj = 1;
        if (letter == 'd') state.LangID = 0x407;
        if (letter == 'x') state.LangID = 0x3FF;
        if (letter == 's') state.SilenceMSecs += 250;
        if (letter == 'c') state.Context.pCategory = NELVA_WIDE("date_mdy");
        if (letter == 'q') state.Context.pCategory = NELVA_WIDE("date_\"<'>");
        if (letter == 'o') fragment.ulTextSrcOffset += 1000;
    }
    return fragment;
}

class Fragments {
public:
    Fragments(const std::uint8_t* data, std::size_t size) {
        InputLines lines(data, size);
        ULONG offset = 0;
        while (!lines.rest().empty()) {
            std::string_view line = lines.line();
            SPVTEXTFRAG fragment = fragment_of(InputLines::until(':', &line));
            texts_.push_back(units_of(line));
            fragment.pTextStart = texts_.back().c_str();
            fragment.ulTextLen = static_cast<ULONG>(texts_.back().size());
            fragment.ulTextSrcOffset += offset;
            offset = fragment.ulTextSrcOffset + fragment.ulTextLen;
            fragments_.push_back(fragment);
        }
        for (std::size_t i = 1; i < fragments_.size(); ++i) fragments_[i - 1].pNext = &fragments_[i];
    }

    const SPVTEXTFRAG* first() const { return fragments_.empty() ? nullptr : fragments_.data(); }

private:
    std::deque<Units> texts_;
    std::vector<SPVTEXTFRAG> fragments_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Fragments fragments(data, size);
    Speechtext text;
    std::vector<std::uint32_t> positions;
    spvtextfrags_to_speechtext(fragments.first(), &text, &positions, "en");
    property(positions.size() <= text.size() + 1, "no byte has two positions");
    const std::string document = text.to_ssml();
    std::vector<std::uint32_t> map;
    build_ssml_sapi_posmap(&map, document, positions);

    MappedDocument direct;
    if (convert_directly(fragments.first(), "en", spvtextfrags_to_ssml_opts_impl, &direct)) {
        property_equal(std::string(direct.ssml.get(), direct.size), document, "both ways give one document");
        property(std::equal(map.begin(), map.end(), direct.posmap.get()), "both ways give one map");
        property(direct.ssml[direct.size] == 0, "a NUL ends it");
    }
    return 0;
}
