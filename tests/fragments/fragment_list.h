// Fragment lists made by hand, and what is told of the rich text that comes of them.

#ifndef NELVA_TESTS_FRAGMENTS_FRAGMENT_LIST_H
#define NELVA_TESTS_FRAGMENTS_FRAGMENT_LIST_H

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "fragments/fragment_walk.h"
#include "fragments/host_positions.h"
#include "platform/sapi.h"
#include "speechtext/speechtext.h"

using namespace fragments_detail;

using Wide = std::basic_string<WCHAR>;

// A list that owns its fragments and their texts. Each has the neutral state (volume 100, all else 0) until the test
// changes the reference that add() gives.
class FragmentList {
public:
    SPVTEXTFRAG& add(int action, const Wide& text, ULONG source_offset = 0) {
        texts_.push_back(text);
        SPVTEXTFRAG fragment{};
        fragment.State.eAction = static_cast<SPVACTIONS>(action);
        fragment.State.Volume = 100;
        fragment.pTextStart = texts_.back().data();
        fragment.ulTextLen = static_cast<ULONG>(text.size());
        fragment.ulTextSrcOffset = source_offset;
        fragments_.push_back(fragment);
        if (fragments_.size() > 1) fragments_[fragments_.size() - 2].pNext = &fragments_.back();
        return fragments_.back();
    }

    SPVTEXTFRAG& speak(const Wide& text, ULONG source_offset = 0) { return add(SPVA_Speak, text, source_offset); }
    SPVTEXTFRAG& raw(const Wide& text, ULONG source_offset = 0) {
        return add(SPVA_ParseUnknownTag, text, source_offset);
    }
    SPVTEXTFRAG& bookmark(const Wide& text, ULONG source_offset = 0) { return add(SPVA_Bookmark, text, source_offset); }

    const SPVTEXTFRAG* first() const { return fragments_.empty() ? nullptr : &fragments_.front(); }

private:
    std::deque<Wide> texts_;
    std::deque<SPVTEXTFRAG> fragments_;
};

struct Walked {
    int result = -1;
    Speechtext text;
    std::vector<std::uint32_t> positions;

    // The record at `index`, null when it is none of that class.
    const SpeechtextTextAttrs* attrs(std::size_t index) const { return as<SpeechtextTextAttrs>(index); }
    const SpeechtextMark* mark(std::size_t index) const { return as<SpeechtextMark>(index); }
    const SpeechtextBreak* pause(std::size_t index) const { return as<SpeechtextBreak>(index); }
    int position(std::size_t index) const { return (text.attrs_begin() + static_cast<long>(index))->position; }

    // All records as words: "P0@0 {}@0 B:here@3 ~250ms@3", text attributes being {}, raw ones {raw}.
    std::string records() const;

private:
    template <typename T>
    const T* as(std::size_t index) const {
        if (index >= text.attrsvec_size()) return nullptr;
        return dynamic_cast<const T*>((text.attrs_begin() + static_cast<long>(index))->attrs);
    }
};

inline std::string Walked::records() const {
    std::string words;
    for (std::size_t i = 0; i < text.attrsvec_size(); ++i) {
        if (i > 0) words += ' ';
        if (mark(i) != nullptr) words += mark(i)->id();
        if (attrs(i) != nullptr) words += attrs(i)->raw ? "{raw}" : "{}";
        if (pause(i) != nullptr) words += "~" + pause(i)->time();
        words += "@" + std::to_string(position(i));
    }
    return words;
}

inline Walked walk(const FragmentList& fragments, const char* language = "en") {
    Walked walked;
    walked.result = spvtextfrags_to_speechtext(fragments.first(), &walked.text, &walked.positions, language);
    return walked;
}

inline Walked walk(const FragmentList& fragments, const spvtextfrags_to_ssml_opts& opts) {
    Walked walked;
    HostPositions positions;
    walked.result = spvtextfrags_to_speechtext(fragments.first(), &walked.text, &positions, "en", opts);
    walked.positions = positions.to_vector();
    return walked;
}

#endif
