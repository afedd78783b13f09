// Walks over text and records that leave the text as it is: callbacks and splitting.
#include <algorithm>
#include <utility>

#include "speechtext/record_prefetch.h"
#include "speechtext/speechtext.h"

namespace {

const SpeechtextTextAttrs* contentattrs_of(const SpeechtextAttrsRecord& record) {
    return record.attrs->is_contentattrs() ? static_cast<const SpeechtextTextAttrs*>(record.attrs) : nullptr;
}

}  // namespace

void Speechtext::scan_and_do_callbacks(void* context, void (*on_text)(void*, int position, unsigned long long length),
                                       void (*on_textattrs)(void*, int position, const SpeechtextTextAttrs*),
                                       void (*on_other)(void*, int position, const SpeechtextAttrs*)) const {
    const int length = static_cast<int>(text.size());
    int reached = 0;
    const auto text_up_to = [&](int position) {
        const int end = std::min(position, length);
        if (end <= reached) return;
        if (on_text) on_text(context, reached, static_cast<unsigned long long>(end - reached));
        reached = end;
    };
    for (const SpeechtextAttrsRecord& record : attrs) {
        text_up_to(record.position);
        if (const SpeechtextTextAttrs* content = contentattrs_of(record)) {
            if (on_textattrs) on_textattrs(context, record.position, content);
        } else if (on_other) {
            on_other(context, record.position, record.attrs);
        }
    }
    text_up_to(length);
}

std::list<Speechtext> Speechtext::split_by_contextattrs(bool (*differ)(const SpeechtextTextAttrs* previous,
                                                                       const SpeechtextTextAttrs* next)) const {
    std::list<Speechtext> pieces;
    const SpeechtextTextAttrs* previous = nullptr;
    std::size_t start = 0;         // where the piece begins in the text,
    std::size_t first_record = 0;  // and among the records
    const auto add_piece = [&](std::size_t end, std::size_t end_record) {
        const std::size_t from = std::min(start, text.size());
        const std::size_t bytes = std::max(std::min(end, text.size()), from) - from;
        if (!previous && bytes == 0) return;
        Speechtext& piece = pieces.emplace_back();
        piece.reserve(bytes, end_record - first_record);
        piece.append(text.data() + from, bytes);
        for (std::size_t i = first_record; i < end_record; ++i) {
            prefetch_records_behind(attrs, i);
            piece.append_attrs(attrs[i].position - static_cast<int>(start), *attrs[i].attrs);
        }
        // A piece holds what a copy of it would.
        if (!piece.replayable_) piece.replay_own_records();
    };
    for (std::size_t i = 0; i < attrs.size(); ++i) {
        const SpeechtextTextAttrs* content = contentattrs_of(attrs[i]);
        if (!content || (previous && !differ(previous, content))) continue;
        const std::size_t cut = static_cast<std::size_t>(std::max(attrs[i].position, 0));
        add_piece(cut, i);
        previous = content;
        start = cut;
        first_record = i;
    }
    add_piece(text.size(), attrs.size());
    return pieces;
}
