// Fragment lists and host texts.
#include "tools/host/fragments.h"

#include <algorithm>

namespace host {

SPVSTATE neutral_state(LANGID language) {
    SPVSTATE state{};
    state.eAction = SPVA_Speak;
    state.LangID = language;
    state.Volume = 100;
    state.ePartOfSpeech = SPPS_Unknown;
    return state;
}

bool holds_host_text(SPVACTIONS action) {
    return action == SPVA_Speak || action == SPVA_Pronounce || action == SPVA_SpellOut ||
           action == SPVA_ParseUnknownTag;
}

void FragmentList::append(const SPVSTATE& state, LPCWSTR text, std::size_t length, ULONG offset) {
    SPVTEXTFRAG fragment{};
    fragment.State = state;
    fragment.pTextStart = text;
    fragment.ulTextLen = static_cast<ULONG>(length);
    fragment.ulTextSrcOffset = offset;
    fragments_.push_back(fragment);
    if (fragments_.size() > 1) fragments_[fragments_.size() - 2].pNext = &fragments_.back();
}

void FragmentList::add(const SPVSTATE& state, WideView text, ULONG offset) {
    append(state, keep(text), text.size(), offset);
}

void FragmentList::add_without_text(const SPVSTATE& state, ULONG offset) { append(state, nullptr, 0, offset); }

LPCWSTR FragmentList::keep(WideView text) { return strings_.emplace_back(text).c_str(); }

SPPHONEID* FragmentList::keep_phonemes(WideView ids) { return strings_.emplace_back(ids).data(); }

HostText::HostText(WideString text) {
    if (!text.empty()) pieces_.push_back({0, std::move(text)});
}

HostText::HostText(const FragmentList& fragments) {
    std::vector<const SPVTEXTFRAG*> order;
    for (const SPVTEXTFRAG* each = fragments.first(); each; each = each->pNext) {
        if (holds_host_text(each->State.eAction) && each->ulTextLen > 0) order.push_back(each);
    }
    std::stable_sort(order.begin(), order.end(), [](const SPVTEXTFRAG* left, const SPVTEXTFRAG* right) {
        return left->ulTextSrcOffset < right->ulTextSrcOffset;
    });
    std::uint64_t end = 0;
    for (const SPVTEXTFRAG* each : order) {
        const std::uint64_t begin = std::max<std::uint64_t>(end, each->ulTextSrcOffset);
        const std::uint64_t behind = std::uint64_t{each->ulTextSrcOffset} + each->ulTextLen;
        if (begin >= behind) continue;
        pieces_.push_back({begin, WideString(each->pTextStart + (begin - each->ulTextSrcOffset), behind - begin)});
        end = behind;
    }
}

WideString HostText::cut(std::uint64_t begin, std::uint64_t length) const {
    const std::uint64_t end = length > UINT64_MAX - begin ? UINT64_MAX : begin + length;
    WideString result;
    auto piece = std::upper_bound(pieces_.begin(), pieces_.end(), begin,
                                  [](std::uint64_t position, const Piece& each) { return position < each.begin; });
    if (piece != pieces_.begin()) --piece;
    for (; piece != pieces_.end() && piece->begin < end; ++piece) {
        const std::uint64_t from = std::max(begin, piece->begin);
        const std::uint64_t to = std::min<std::uint64_t>(end, piece->begin + piece->text.size());
        if (from < to) result.append(piece->text, from - piece->begin, to - from);
    }
    return result;
}

SpeechInput input_from_text(WideString text, LANGID language) {
    SpeechInput input;
    input.fragments.add(neutral_state(language), text, 0);
    input.text = HostText(std::move(text));
    return input;
}

}  // namespace host
