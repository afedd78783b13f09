// White space and breaks put in order.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "speechtext/speechtext.h"
#include "text/textencoding.h"

namespace {

// Collapses white space while it copies a text to *out, which is empty.
class WhitespaceAdjustment {
public:
    WhitespaceAdjustment(const std::string& text, Speechtext* out) : text_(text), out_(*out) {}

    // Copies characters until the reading reaches limit, or up to one invalid byte, which is dropped.
    void read_up_to(std::size_t limit) {
        while (at_ < limit) {
            const char* cursor = text_.data() + at_;
            const unsigned short wc = getwc_utf8(&cursor, text_.size() - at_);
            if (wc == wide_eof) {
                ++garbage_;
                ++at_;
                return;
            }
            const std::size_t next = static_cast<std::size_t>(cursor - text_.data());
            take_character(is_whitespace_wchar(wc), next - at_);
            at_ = next;
        }
    }

    // A record directly behind a word stays there; one in white space moves to the next character that is none.
    void take_record(const SpeechtextAttrs& record) {
        if (after_word_) {
            out_ += record;
        } else {
            deferred_.push_back(&record);
        }
    }

    bool at_end() const { return at_ >= text_.size(); }

    void finish() {
        append_deferred();
        if (garbage_ >= 1) {
            std::fprintf(stderr, "Speechtext::adjust_whitespace(): %d byte%s of non-utf8 garbage dropped!\n", garbage_,
                         garbage_ == 1 ? "" : "s");
        }
    }

private:
    void take_character(bool is_whitespace, std::size_t bytes) {
        if (!is_whitespace) append_deferred();
        if (!is_whitespace || after_word_) out_.append(text_.data() + at_, bytes);
        after_word_ = !is_whitespace;
    }

    void append_deferred() {
        for (const SpeechtextAttrs* record : deferred_) out_ += *record;
        deferred_.clear();
    }

    const std::string& text_;
    std::size_t at_ = 0;
    Speechtext& out_;
    std::vector<const SpeechtextAttrs*> deferred_;
    bool after_word_ = false;
    int garbage_ = 0;
};

// The offset behind the last punctuation of the punctuation and white space that begins at start; start without any.
std::size_t behind_punctuation(const std::string& text, std::size_t start, std::size_t end) {
    std::size_t found = start;
    const char* const stop = text.data() + end;
    for (const char* cursor = text.data() + start; cursor < stop;) {
        const unsigned short wc = getwc_utf8(&cursor, static_cast<std::size_t>(stop - cursor));
        if (wc == wide_eof) break;
        if (is_punct_wchar(wc) && wc != '(' && wc != '[') {
            found = static_cast<std::size_t>(cursor - text.data());
        } else if (!is_whitespace_wchar(wc)) {
            break;
        }
    }
    return found;
}

}  // namespace

Speechtext Speechtext::adjust_whitespace() const {
    Speechtext adjusted;
    WhitespaceAdjustment adjustment(text, &adjusted);
    std::size_t next = 0;
    while (next < attrs.size() || !adjustment.at_end()) {
        const std::size_t position =
            next < attrs.size() && attrs[next].position > 0 ? static_cast<std::size_t>(attrs[next].position) : 0;
        adjustment.read_up_to(next < attrs.size() ? std::min(position, text.size()) : text.size());
        if (next < attrs.size()) adjustment.take_record(*attrs[next++].attrs);
    }
    adjustment.finish();
    return adjusted;
}

void Speechtext::adjust_breaks() {
    for (std::size_t i = 0; i < attrs.size(); ++i) {
        if (!attrs[i].attrs->is_break() || attrs[i].position < 0) continue;
        const std::size_t start = static_cast<std::size_t>(attrs[i].position);
        const int next = i + 1 < attrs.size() ? attrs[i + 1].position : static_cast<int>(text.size());
        const std::size_t end = std::min(static_cast<std::size_t>(std::max(next, 0)), text.size());
        if (start >= end) continue;
        attrs[i].position = static_cast<int>(behind_punctuation(text, start, end));
        // It may stand at the place of an equal one now, which a copy would drop.
        replayable_ = false;
    }
}
