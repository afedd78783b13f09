// The whole text on one line, with its records inline.
#include <cstdio>

#include "speechtext/speechtext.h"

std::string Speechtext::to_debugstr() const {
    std::string out;
    int reached = 0;
    const SpeechtextTextAttrs* previous = nullptr;
    // A position behind the text's end adds what text there is.
    const auto text_up_to = [&](int end) {
        if (end <= reached) return;
        if (static_cast<std::size_t>(reached) < text.size()) out.append(text, reached, end - reached);
        reached = end;
    };
    for (const SpeechtextAttrsRecord& record : attrs) {
        text_up_to(record.position);
        if (!record.attrs->is_contentattrs()) {
            out.append("<").append(record.attrs->to_debugstr()).append(">");
            continue;
        }
        const auto* content = static_cast<const SpeechtextTextAttrs*>(record.attrs);
        const std::string form = previous ? content->to_debugstr_rel(*previous) : content->to_debugstr();
        previous = content;
        if (!form.empty()) out.append("(").append(form).append(")");
    }
    const int length = static_cast<int>(text.size());
    if (reached > length) {
        std::fprintf(stderr, "Corrupt Speechtext: found position %d but string length is %d\n", reached, length);
    }
    text_up_to(length);
    return out;
}
