// A list of SPVTEXTFRAG with all that its pointers point to, and the host's text that its offsets count in.
#ifndef NELVA_TOOLS_HOST_FRAGMENTS_H
#define NELVA_TOOLS_HOST_FRAGMENTS_H

#include <cstdint>
#include <deque>
#include <vector>

#include "platform/sapi.h"
#include "tools/host/utf.h"

namespace host {

// SAPI's state of text without any markup: spoken at volume 100, all else neutral.
SPVSTATE neutral_state(LANGID language);

// True for the actions whose text comes from the host's text: speak, pronounce, spell out and unknown tag.
bool holds_host_text(SPVACTIONS action);

// Fragments in order. The list owns every string; moving the list leaves the records where they are.
class FragmentList {
public:
    FragmentList() = default;
    FragmentList(FragmentList&&) = default;
    FragmentList& operator=(FragmentList&&) = default;

    // Appends a fragment with a copy of `text`. `offset` counts UTF-16 units of the host's text.
    void add(const SPVSTATE& state, WideView text, ULONG offset);

    // Appends a fragment with a null text of length 0.
    void add_without_text(const SPVSTATE& state, ULONG offset);

    // A terminated copy that lives as long as the list, for the strings that a state points to.
    LPCWSTR keep(WideView text);
    SPPHONEID* keep_phonemes(WideView ids);

    // Null for an empty list. Valid until the list goes or is added to.
    const SPVTEXTFRAG* first() const { return fragments_.empty() ? nullptr : &fragments_.front(); }
    std::size_t size() const { return fragments_.size(); }

private:
    void append(const SPVSTATE& state, LPCWSTR text, std::size_t length, ULONG offset);

    // Elements of a deque stay where they are when it grows.
    std::deque<SPVTEXTFRAG> fragments_;
    std::deque<WideString> strings_;
};

// The host's text, in which events name ranges. It may have gaps, and need not begin at 0.
class HostText {
public:
    HostText() = default;

    // One text that begins at 0.
    explicit HostText(WideString text);

    // What the fragments say that the text is; where two disagree, the one with the lower offset, then the first,
    // holds.
    explicit HostText(const FragmentList& fragments);

    // The units in [begin, begin + length) that there are. Takes time in proportion to what it gives.
    WideString cut(std::uint64_t begin, std::uint64_t length) const;

private:
    struct Piece {
        std::uint64_t begin;
        WideString text;
    };
    std::vector<Piece> pieces_;  // in order, none overlaps another
};

// What a run speaks.
struct SpeechInput {
    FragmentList fragments;
    HostText text;
};

// Plain text, as one fragment.
SpeechInput input_from_text(WideString text, LANGID language);

}  // namespace host

#endif
