// Walks over text and records that leave the text as it is: callbacks and splitting.
#include <algorithm>
#include <utility>

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
    Speechtext piece;
    const SpeechtextTextAttrs* previous = nullptr;
    std::size_t start = 0;
    const auto end_piece = [&](std::size_t end) {
        if (end > start && start < text.size()) piece.append(text.data() + start, std::min(end, text.size()) - start);
        if (previous || !piece.empty()) pieces.push_back(std::move(piece));
        piece = Speechtext();
    };
    for (const SpeechtextAttrsRecord& record : attrs) {
        const SpeechtextTextAttrs* content = contentattrs_of(record);
        if (content && (!previous || differ(previous, content))) {
            const std::size_t cut = static_cast<std::size_t>(std::max(record.position, 0));
            end_piece(cut);
            previous = content;
            start = cut;
        }
        piece.append_attrs(record.position - static_cast<int>(start), *record.attrs);
    }
    end_piece(text.size());
    return pieces;
}
