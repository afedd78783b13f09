// The scan sees one character at a time and decides from the state before it. The marks wait until the end, since they
// stand at places that the text has left behind by the time their lengths are known.

#include "fragments/word_marks.h"

#include <cstring>
#include <list>

#include "regexp/replacer.h"
#include "speechtext/speechtext.h"
#include "text/textencoding.h"

namespace fragments_detail {

namespace {

bool ends_sentences(std::uint16_t unit) { return unit == '.' || unit == ':' || unit == '!' || unit == '?'; }

// Host positions are signed here: beyond 2^31 nothing counts as open.
std::int32_t as_signed(std::uint32_t position) { return static_cast<std::int32_t>(position); }

}  // namespace

std::uint16_t character_class_unit(const WCHAR* units, std::size_t length) {
    if (length == 1) return static_cast<std::uint16_t>(units[0]);
    return static_cast<std::uint16_t>((units[0] & 0x3FFu) << 10 | (units[1] & 0x3FFu));
}

void WordMarkScan::end(Open* open, const char* prefix, std::uint32_t position) {
    if (prefix != nullptr) {
        const std::int32_t length = as_signed(position - static_cast<std::uint32_t>(open->start));
        pending_marks_.push_back({open->byte, prefix + std::to_string(open->start) + "_" + std::to_string(length)});
    }
    open->start = -1;
}

void WordMarkScan::before_character(std::uint16_t class_unit, std::uint32_t position, std::size_t text_size) {
    const bool word_begins = !word_.is_open() && is_alnum_wchar(class_unit);
    const bool sentence_begins = !sentence_.is_open() && word_begins;
    const bool word_ends = word_.is_open() && !is_word_wchar(class_unit);
    const bool sentence_ends = sentence_.is_open() && ends_sentences(previous_char_) && is_whitespace_wchar(class_unit);

    if (word_ends) end(&word_, opts_.word_prefix, position);
    if (sentence_ends) end(&sentence_, opts_.sentence_prefix, position);
    if (sentence_begins) sentence_ = {as_signed(position), text_size};
    if (word_begins) word_ = {as_signed(position), text_size};
}

void WordMarkScan::close(std::uint32_t host_end) {
    if (word_.is_open()) end(&word_, opts_.word_prefix, host_end);
    if (sentence_.is_open()) end(&sentence_, opts_.sentence_prefix, host_end);
}

void WordMarkScan::insert_marks(Speechtext* text, unsigned int* next_mark_instance) const {
    if (pending_marks_.empty()) return;
    std::list<replacement> sentence_marks;
    std::list<replacement> other_marks;
    for (const PendingMark& pending : pending_marks_) {
        Speechtext mark;
        mark += SpeechtextMark((*next_mark_instance)++, pending.name);
        // The literal letter decides, not the prefix.
        std::list<replacement>& marks = pending.name[0] == 'S' ? sentence_marks : other_marks;
        marks.emplace_back(static_cast<int>(pending.byte), 0, mark);
    }
    *text = do_replacements(*text, sentence_marks);
    *text = do_replacements(*text, other_marks);
}

}  // namespace fragments_detail
