// One pass over the list for the sizes, so that text and records need not grow by copying, then the walk itself:
// attributes, pitch mark, record, and what the fragment's action asks for.

#include "fragments/fragment_walk.h"

#include <climits>
#include <string>

#include "fragments/ascii_case.h"
#include "fragments/fragment_attrs.h"
#include "fragments/host_positions.h"
#include "fragments/utf16_text.h"
#include "fragments/word_marks.h"
#include "speechtext/speechtext.h"

namespace {

bool has_text(const SPVTEXTFRAG& fragment) { return fragment.pTextStart != nullptr && fragment.ulTextLen != 0; }

// The platform counts in signed numbers, so a longer fragment cannot be converted in one piece.
bool is_convertible(const SPVTEXTFRAG& fragment) { return has_text(fragment) && fragment.ulTextLen <= INT_MAX; }

bool adds_text(const SPVTEXTFRAG& fragment) {
    switch (fragment.State.eAction) {
        case SPVA_Speak:
        case SPVA_Pronounce:
        case SPVA_SpellOut:
            return has_text(fragment);
        case SPVA_ParseUnknownTag:
            return is_convertible(fragment);
        default:
            return false;
    }
}

struct Sizes {
    std::size_t fragments = 0;
    std::size_t units = 0;  // of text and markup
};

// Throws when the text cannot fit, each unit being a byte at least; no unit is read.
Sizes measure(const SPVTEXTFRAG* fragments) {
    Sizes sizes;
    for (const SPVTEXTFRAG* fragment = fragments; fragment != nullptr; fragment = fragment->pNext) {
        ++sizes.fragments;
        if (adds_text(*fragment)) sizes.units += fragment->ulTextLen;
        if (sizes.units > INT_MAX) throw_too_long();
    }
    return sizes;
}

// A whole fragment as UTF-8; empty when the platform gives no bytes for it.
std::string convert_fragment(const SPVTEXTFRAG& fragment) {
    if (!is_convertible(fragment)) return std::string();
    const int count = static_cast<int>(fragment.ulTextLen);
    const int size = WideCharToMultiByte(CP_UTF8, 0, fragment.pTextStart, count, nullptr, 0, nullptr, nullptr);
    if (size < 1) return std::string();
    std::string bytes(static_cast<std::size_t>(size), '\0');
    const int converted =
        WideCharToMultiByte(CP_UTF8, 0, fragment.pTextStart, count, bytes.data(), size, nullptr, nullptr);
    bytes.resize(converted < 1 ? 0 : static_cast<std::size_t>(converted));
    return bytes;
}

// The writer makes the document's own root element, so a root tag of the host is left out. Longer names with the
// same beginning go with it.
bool is_root_tag(const std::string& bytes) {
    return ascii_starts_with_ignoring_case(bytes, "<speak") || ascii_starts_with_ignoring_case(bytes, "</speak");
}

// The bytes up to and with the last ">". Where there is none the first byte counts as markup.
std::size_t markup_length(const std::string& bytes) {
    const std::size_t last = bytes.rfind('>');
    return last == std::string::npos ? 1 : last + 1;
}

class FragmentWalk {
public:
    FragmentWalk(const spvtextfrags_to_ssml_opts& opts, const char* language, Speechtext* text,
                 HostPositions* positions)
        : opts_(opts),
          language_(language == nullptr ? "" : language),
          text_(text),
          positions_(positions),
          scan_(opts) {}

    void take(const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous);
    void end();

private:
    void add_pitch_mark(const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous);
    void dispatch(const SPVTEXTFRAG& fragment);
    void take_silence(ULONG milliseconds);
    void take_bookmark(const SPVTEXTFRAG& fragment);
    void take_text(const SPVTEXTFRAG& fragment);
    void scan_text(const SPVTEXTFRAG& fragment);
    void take_raw(const SPVTEXTFRAG& fragment);

    const spvtextfrags_to_ssml_opts& opts_;
    const char* const language_;
    Speechtext* const text_;
    HostPositions* const positions_;

    WordMarkScan scan_;
    SpeechtextTextAttrs fragment_attrs_;  // keeps its fields from one fragment to the next
    SpeechtextMark pitch_mark_{0, std::string()};
    unsigned int next_mark_instance_ = 1;
    unsigned int next_break_instance_ = 1;
    std::uint32_t host_end_ = 0;  // behind the last text fragment
};

void FragmentWalk::take(const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous) {
    const bool changed = update_fragment_attrs(&fragment_attrs_, fragment, previous, language_);
    add_pitch_mark(fragment, previous);
    // At the end of each fragment its own attributes are the ones in force, so unchanged ones would be dropped as a
    // repetition; there is no need to have them compared.
    if (changed) *text_ += fragment_attrs_;
    dispatch(fragment);
}

// The mark is kept from one fragment to the next, as most of them have the same name.
void FragmentWalk::add_pitch_mark(const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous) {
    if (opts_.pitch_prefix == nullptr) return;
    const LONG pitch = fragment.State.PitchAdj.MiddleAdj;
    if (previous == nullptr || previous->State.PitchAdj.MiddleAdj != pitch) {
        pitch_mark_ = SpeechtextMark(0, opts_.pitch_prefix + std::to_string(pitch));
    }
    pitch_mark_.instance = next_mark_instance_++;
    *text_ += pitch_mark_;
}

void FragmentWalk::dispatch(const SPVTEXTFRAG& fragment) {
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

void FragmentWalk::take_silence(ULONG milliseconds) {
    *text_ += SpeechtextBreak(next_break_instance_++, "", std::to_string(milliseconds) + "ms");
}

// The host's text becomes the name as it is.
void FragmentWalk::take_bookmark(const SPVTEXTFRAG& fragment) {
    if (opts_.bookmark_prefix == nullptr) return;
    const std::string name = convert_fragment(fragment);
    if (!name.empty()) *text_ += SpeechtextMark(next_mark_instance_++, opts_.bookmark_prefix + name);
}

void FragmentWalk::take_text(const SPVTEXTFRAG& fragment) {
    if (has_text(fragment) && scan_.is_on()) {
        scan_text(fragment);
    } else if (has_text(fragment)) {
        append_utf16(fragment.pTextStart, fragment.ulTextLen, fragment.ulTextSrcOffset, text_, positions_);
    }
    host_end_ = fragment.ulTextSrcOffset + fragment.ulTextLen;
}

// Character by character, as the scan has to know at which byte each begins. One for which the platform gives no bytes
// counts as a single unit.
void FragmentWalk::scan_text(const SPVTEXTFRAG& fragment) {
    std::size_t i = 0;
    while (i < fragment.ulTextLen) {
        const WCHAR* character = fragment.pTextStart + i;
        const std::size_t length = utf16_character_length(character, fragment.ulTextLen - i);
        const std::uint16_t class_unit = character_class_unit(character, length);
        const std::uint32_t position = fragment.ulTextSrcOffset + static_cast<std::uint32_t>(i);
        scan_.before_character(class_unit, position, text_->size());
        i += append_character(character, length, position, text_, positions_);
        scan_.after_character(class_unit);
    }
}

// Markup up to the last ">", ordinary text behind it. The markup's bytes have no positions; those of the text behind
// it all have that of the fragment.
void FragmentWalk::take_raw(const SPVTEXTFRAG& fragment) {
    const std::string bytes = convert_fragment(fragment);
    if (bytes.empty() || is_root_tag(bytes)) return;
    const std::size_t markup = markup_length(bytes);

    SpeechtextTextAttrs raw_attrs = fragment_attrs_;
    raw_attrs.raw = true;
    *text_ += raw_attrs;
    append_bytes(text_, bytes.data(), markup);
    *text_ += fragment_attrs_;

    const std::size_t tail = bytes.size() - markup;
    if (tail == 0) return;
    append_bytes(text_, bytes.data() + markup, tail);
    positions_->add_bytes(fragment.ulTextSrcOffset, tail);
}

void FragmentWalk::end() {
    scan_.close(host_end_);
    positions_->set_end(host_end_);
    scan_.insert_marks(text_, &next_mark_instance_);
}

}  // namespace

int spvtextfrags_to_speechtext(const SPVTEXTFRAG* fragments, Speechtext* text, HostPositions* positions,
                               const char* language, const spvtextfrags_to_ssml_opts& opts) {
    *text = Speechtext();
    *positions = HostPositions();
    const Sizes sizes = measure(fragments);
    // Most texts are ASCII with a little else, and room that is not used costs nothing.
    text->reserve(sizes.units + sizes.units / 8, sizes.fragments + 1);

    FragmentWalk walk(opts, language, text, positions);
    const SPVTEXTFRAG* previous = nullptr;
    for (const SPVTEXTFRAG* fragment = fragments; fragment != nullptr; fragment = fragment->pNext) {
        walk.take(*fragment, previous);
        previous = fragment;
    }
    walk.end();
    return 0;
}

int spvtextfrags_to_speechtext(const SPVTEXTFRAG* fragments, Speechtext* text,
                               std::vector<std::uint32_t>* text_positions, const char* language) {
    HostPositions positions;
    const int result =
        spvtextfrags_to_speechtext(fragments, text, &positions, language, spvtextfrags_to_ssml_opts_impl);
    *text_positions = positions.to_vector();
    return result;
}
