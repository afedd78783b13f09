// The pass that drops records which govern nothing.
//
// One walk goes over text and records together and builds a new list of records. Marks and breaks wait until it is
// known which text attributes stand in front of them; text attributes wait until something needs them: content, a
// break, the start of an audio insert or a transcription, or, at the very end, that a text keeps at least one such
// record.
#include <algorithm>
#include <stdexcept>

#include "speechtext/speechtext.h"

namespace {

using Records = Speechtext::attrs_vector;

// This pass's own notion: a line feed is content.
bool is_content(char byte) { return byte != '\t' && byte != '\f' && byte != '\r' && byte != ' '; }

const SpeechtextTextAttrs* contentattrs_of(const SpeechtextAttrsRecord& record) {
    return record.attrs->is_contentattrs() ? static_cast<const SpeechtextTextAttrs*>(record.attrs) : nullptr;
}

class Finalisation {
public:
    Finalisation(const std::string& text, const Records& records) : text_(text), records_(records) {}

    // Appends the new records to *out, which owns them and is empty.
    void run(bool keep_final_attrs, Records* out) {
        out_ = out;
        for (std::size_t next = 0; next < records_.size() || scan_ < text_.size();) {
            scan_text(next < records_.size() ? records_[next].position : static_cast<int>(text_.size()));
            if (need_emit_ && current_) write_current();
            if (next < records_.size()) take(records_[next++]);
        }
        finish(keep_final_attrs);
    }

private:
    void scan_text(int limit) {
        const std::size_t end = std::min(static_cast<std::size_t>(std::max(limit, 0)), text_.size());
        if (end <= scan_) return;
        if (!in_force_ && !need_emit_) {
            need_emit_ = std::any_of(text_.begin() + static_cast<std::ptrdiff_t>(scan_),
                                     text_.begin() + static_cast<std::ptrdiff_t>(end), is_content);
        }
        scan_ = end;
    }

    void write_current() {
        std::size_t i = 0;
        for (; i < pending_.size() && pending_[i].position < current_position_; ++i) write_unless_repeated(pending_[i]);
        emit_current(out_->empty() ? 0 : current_position_);
        in_force_ = true;
        for (; i < pending_.size(); ++i) write_and_remember(pending_[i]);
        pending_.clear();
        pending_tail_.forget();
    }

    void emit_current(int position) {
        emitted_ = static_cast<const SpeechtextTextAttrs*>(append_clone(position, *current_));
        need_emit_ = false;
    }

    bool write_unless_repeated(const SpeechtextAttrsRecord& entry) {
        const bool repeated =
            last_plain_.attrs && entry.position == last_plain_.position && *entry.attrs == *last_plain_.attrs;
        if (!repeated) append_clone(entry.position, *entry.attrs);
        return !repeated;
    }

    void write_and_remember(const SpeechtextAttrsRecord& entry) {
        if (write_unless_repeated(entry)) last_plain_ = entry;
    }

    const SpeechtextAttrs* append_clone(int position, const SpeechtextAttrs& attrs) {
        out_->reserve(out_->size() == out_->capacity() ? std::max<std::size_t>(2 * out_->size(), 8) : 0);
        out_->push_back({position, attrs.clone()});
        return out_->back().attrs;
    }

    void take(const SpeechtextAttrsRecord& record) {
        if (const SpeechtextTextAttrs* content = contentattrs_of(record)) {
            take_content(record.position, *content);
        } else {
            take_point(record);
        }
    }

    // A break keeps its surrounding attributes alive, a mark does not.
    void take_point(const SpeechtextAttrsRecord& record) {
        if (pending_tail_.decide(pending_, record.position, *record.attrs) == AttrsTail::Merge::drop) return;
        pending_.push_back(record);
        pending_tail_.added(pending_);
        if (record.attrs->is_context_dependent() && !in_force_) need_emit_ = true;
    }

    void take_content(int position, const SpeechtextTextAttrs& attrs) {
        if (current_ && *current_ == attrs) return;
        if (current_) in_force_ = emitted_ && *emitted_ == attrs;
        current_ = &attrs;
        current_position_ = position;
        if (!in_force_ && starts_instance(attrs)) need_emit_ = true;
    }

    // Is it the start of an audio insert or a transcription that the records written so far do not run already?
    bool starts_instance(const SpeechtextTextAttrs& attrs) const {
        const unsigned int audio = emitted_ ? emitted_->audio.instance() : 0;
        const unsigned int transcription = emitted_ ? emitted_->transcription.instance() : 0;
        return (attrs.audio.instance() > 0 && attrs.audio.instance() != audio) ||
               (attrs.transcription.instance() > 0 && attrs.transcription.instance() != transcription);
    }

    void finish(bool keep_final_attrs) {
        if (current_ && !need_emit_) need_emit_ = !emitted_ || (keep_final_attrs && !(*current_ == *emitted_));
        const int final_position = need_emit_ && out_->empty() ? 0 : current_position_;
        for (const SpeechtextAttrsRecord& entry : pending_) {
            if (need_emit_ && entry.position >= final_position) emit_current(final_position);
            write_and_remember(entry);
        }
        if (need_emit_) emit_current(final_position);
    }

    const std::string& text_;
    const Records& records_;
    Records* out_ = nullptr;
    Records pending_;  // marks and breaks that wait; the objects are those of the old records
    AttrsTail pending_tail_;
    const SpeechtextTextAttrs* current_ = nullptr;  // the last text attribute record read
    int current_position_ = 0;
    const SpeechtextTextAttrs* emitted_ = nullptr;  // the last one written
    SpeechtextAttrsRecord last_plain_;              // suppresses a repeated mark or break
    bool need_emit_ = false;                        // current_ must be written at the next chance
    bool in_force_ = false;                         // current_ equals what was written last
    std::size_t scan_ = 0;
};

}  // namespace

void Speechtext::finalize(bool keep_final_attrs) {
    const auto needs_attrs = [](const SpeechtextAttrsRecord& record) { return record.attrs->is_context_dependent(); };
    const bool has_attrs = std::any_of(attrs.begin(), attrs.end(), contentattrs_of);
    if (!has_attrs &&
        (std::any_of(text.begin(), text.end(), is_content) || std::any_of(attrs.begin(), attrs.end(), needs_attrs))) {
        throw std::logic_error("Speechtext::finalize(): text without any text attributes");
    }
    quiet_empty_duplicates();
    Speechtext finalised;  // owns the new records, whatever happens
    Finalisation(text, attrs).run(keep_final_attrs, &finalised.attrs);
    attrs.swap(finalised.attrs);
    tail_.learn(attrs);
    replayable_ = false;
    ascending_ = std::is_sorted(attrs.begin(), attrs.end(),
                                [](const auto& a, const auto& b) { return a.position < b.position; });
}
