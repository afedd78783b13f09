// The steps that each fragment of a list goes through, whatever is made of them: rich text, or the document at once.
// Private to this folder.

#ifndef NELVA_FRAGMENTS_FRAGMENT_STEPS_H
#define NELVA_FRAGMENTS_FRAGMENT_STEPS_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "fragments/fragment_attrs.h"
#include "fragments/spvtextfrags_to_ssml.h"
#include "speechtext/attributes.h"

namespace fragments_detail {

inline bool has_text(const SPVTEXTFRAG& fragment) { return fragment.pTextStart != nullptr && fragment.ulTextLen != 0; }

struct FragmentSizes {
    std::size_t fragments = 0;
    std::size_t units = 0;  // of text and markup
};

// One pass over the list, so that text and records need not grow by copying. Throws std::length_error when the text
// cannot fit into signed 32 bits, each unit being a byte at least; no unit is read.
FragmentSizes measure(const SPVTEXTFRAG* fragments);

// A whole fragment as UTF-8; empty when the platform gives no bytes for it.
std::string convert_fragment(const SPVTEXTFRAG& fragment);

// The writer makes the document's own root element, so a root tag of the host is left out. Longer names with the
// same beginning go with it.
bool is_root_tag(const std::string& bytes);

// Attributes, pitch mark, record, and what the fragment's action asks for, handed one after the other to a `Target`:
//
//     bool goes_on() const;                          asked before each fragment
//     void begin(const SpeechtextTextAttrs&);        those of the first fragment, in front of everything
//     void add_pitch_mark(const SpeechtextMark&, bool renamed);    renamed: it has another name than the one before
//     void add(const SpeechtextMark&);
//     void add(const SpeechtextBreak&);
//     void add(const SpeechtextTextAttrs&);
//     void add_text(const SPVTEXTFRAG&);             one that has text
//     void add_raw(const std::string& bytes, const SpeechtextTextAttrs&, std::uint32_t position);    not empty
//     void end(std::uint32_t host_end, unsigned int next_mark_instance);    behind the last text fragment
template <class Target>
class FragmentSteps {
public:
    FragmentSteps(const spvtextfrags_to_ssml_opts& opts, const char* language, Target* target)
        : opts_(opts), language_(language == nullptr ? "" : language), target_(*target) {}

    void take(const SPVTEXTFRAG* fragments);

private:
    void take_one(const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous);
    void add_pitch_mark(const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous);
    void dispatch(const SPVTEXTFRAG& fragment);
    void take_silence(ULONG milliseconds);
    void take_bookmark(const SPVTEXTFRAG& fragment);
    void take_text(const SPVTEXTFRAG& fragment);
    void take_raw(const SPVTEXTFRAG& fragment);

    const spvtextfrags_to_ssml_opts& opts_;
    const char* const language_;
    Target& target_;

    SpeechtextTextAttrs attrs_;  // keeps its fields from one fragment to the next
    SpeechtextMark pitch_mark_{0, std::string()};
    unsigned int next_mark_instance_ = 1;
    unsigned int next_break_instance_ = 1;
    std::uint32_t host_end_ = 0;  // behind the last text fragment
};

template <class Target>
void FragmentSteps<Target>::take(const SPVTEXTFRAG* fragments) {
    const SPVTEXTFRAG* previous = nullptr;
    for (const SPVTEXTFRAG* fragment = fragments; fragment != nullptr && target_.goes_on();
         fragment = fragment->pNext) {
        take_one(*fragment, previous);
        previous = fragment;
    }
    target_.end(host_end_, next_mark_instance_);
}

template <class Target>
void FragmentSteps<Target>::take_one(const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous) {
    const bool changed = update_fragment_attrs(&attrs_, fragment, previous, language_);
    if (previous == nullptr) target_.begin(attrs_);
    add_pitch_mark(fragment, previous);
    // At the end of each fragment its own attributes are the ones in force, so unchanged ones would be dropped as a
    // repetition; there is no need to have them compared.
    if (changed) target_.add(attrs_);
    dispatch(fragment);
}

// The mark is kept from one fragment to the next, as most of them have the same name.
template <class Target>
void FragmentSteps<Target>::add_pitch_mark(const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous) {
    if (opts_.pitch_prefix == nullptr) return;
    const LONG pitch = fragment.State.PitchAdj.MiddleAdj;
    const bool renamed = previous == nullptr || previous->State.PitchAdj.MiddleAdj != pitch;
    if (renamed) pitch_mark_ = SpeechtextMark(0, opts_.pitch_prefix + std::to_string(pitch));
    pitch_mark_.instance = next_mark_instance_++;
    target_.add_pitch_mark(pitch_mark_, renamed);
}

template <class Target>
void FragmentSteps<Target>::dispatch(const SPVTEXTFRAG& fragment) {
    switch (fragment.State.eAction) {
        case SPVA_Speak:
        case SPVA_Pronounce:  // spoken as its text; the host's phonemes are not used
        case SPVA_SpellOut:
            take_text(fragment);
            break;
        case SPVA_Silence:
            take_silence(fragment.State.SilenceMSecs);
            break;
        case SPVA_Bookmark:
            take_bookmark(fragment);
            break;
        case SPVA_ParseUnknownTag:
            take_raw(fragment);
            break;
        case SPVA_Section:
        default:
            break;
    }
}

template <class Target>
void FragmentSteps<Target>::take_silence(ULONG milliseconds) {
    target_.add(SpeechtextBreak(next_break_instance_++, "", std::to_string(milliseconds) + "ms"));
}

// The host's text becomes the name as it is.
template <class Target>
void FragmentSteps<Target>::take_bookmark(const SPVTEXTFRAG& fragment) {
    if (opts_.bookmark_prefix == nullptr) return;
    const std::string name = convert_fragment(fragment);
    if (!name.empty()) target_.add(SpeechtextMark(next_mark_instance_++, opts_.bookmark_prefix + name));
}

template <class Target>
void FragmentSteps<Target>::take_text(const SPVTEXTFRAG& fragment) {
    if (has_text(fragment)) target_.add_text(fragment);
    host_end_ = fragment.ulTextSrcOffset + fragment.ulTextLen;
}

template <class Target>
void FragmentSteps<Target>::take_raw(const SPVTEXTFRAG& fragment) {
    const std::string bytes = convert_fragment(fragment);
    if (!bytes.empty() && !is_root_tag(bytes)) target_.add_raw(bytes, attrs_, fragment.ulTextSrcOffset);
}

}  // namespace fragments_detail

#endif
