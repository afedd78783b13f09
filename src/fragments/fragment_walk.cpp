// The walk over a list with the rich text as its target.

#include "fragments/fragment_walk.h"

#include <string>

#include "fragments/fragment_steps.h"
#include "fragments/host_positions.h"
#include "fragments/utf16_text.h"
#include "fragments/word_marks.h"
#include "speechtext/speechtext.h"

namespace fragments_detail {

namespace {

// The bytes up to and with the last ">". Where there is none the first byte counts as markup.
std::size_t markup_length(const std::string& bytes) {
    const std::size_t last = bytes.rfind('>');
    return last == std::string::npos ? 1 : last + 1;
}

class RichText {
public:
    RichText(const spvtextfrags_to_ssml_opts& opts, Speechtext* text, HostPositions* positions)
        : text_(text), positions_(positions), scan_(opts) {}

    bool goes_on() const { return true; }
    void begin(const SpeechtextTextAttrs&) {}
    void add_pitch_mark(const SpeechtextMark& mark, bool) { add(mark); }
    void add(const SpeechtextAttrs& record) { *text_ += record; }
    void add_text(const SPVTEXTFRAG& fragment);
    void add_raw(const std::string& bytes, const SpeechtextTextAttrs& attrs, std::uint32_t position);
    void end(std::uint32_t host_end, unsigned int next_mark_instance);

private:
    void scan_text(const SPVTEXTFRAG& fragment);

    Speechtext* const text_;
    HostPositions* const positions_;
    WordMarkScan scan_;
};

void RichText::add_text(const SPVTEXTFRAG& fragment) {
    if (scan_.is_on()) {
        scan_text(fragment);
    } else {
        append_utf16(fragment.pTextStart, fragment.ulTextLen, fragment.ulTextSrcOffset, text_, positions_);
    }
}

// Character by character, as the scan has to know at which byte each begins. One for which the platform gives no bytes
// counts as a single unit.
void RichText::scan_text(const SPVTEXTFRAG& fragment) {
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
void RichText::add_raw(const std::string& bytes, const SpeechtextTextAttrs& attrs, std::uint32_t position) {
    const std::size_t markup = markup_length(bytes);
    SpeechtextTextAttrs raw_attrs = attrs;
    raw_attrs.raw = true;
    *text_ += raw_attrs;
    append_bytes(text_, bytes.data(), markup);
    *text_ += attrs;

    const std::size_t tail = bytes.size() - markup;
    if (tail == 0) return;
    append_bytes(text_, bytes.data() + markup, tail);
    positions_->add_bytes(position, tail);
}

void RichText::end(std::uint32_t host_end, unsigned int next_mark_instance) {
    scan_.close(host_end);
    positions_->set_end(host_end);
    scan_.insert_marks(text_, &next_mark_instance);
}

}  // namespace

int spvtextfrags_to_speechtext(const SPVTEXTFRAG* fragments, Speechtext* text, HostPositions* positions,
                               const char* language, const spvtextfrags_to_ssml_opts& opts) {
    *text = Speechtext();
    *positions = HostPositions();
    const FragmentSizes sizes = measure(fragments);
    // Most texts are ASCII with a little else, and room that is not used costs nothing.
    text->reserve(sizes.units + sizes.units / 8, sizes.fragments + 1);
    RichText target(opts, text, positions);
    FragmentSteps(opts, language, &target).take(fragments);
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

}  // namespace fragments_detail
