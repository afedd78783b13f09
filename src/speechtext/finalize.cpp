// The pass that drops records which govern nothing.
//
// One walk goes over text and records together and builds a new list of records. Marks and breaks wait until it is
// known which text attributes stand in front of them; text attributes wait until something needs them: content, a
// break, the start of an audio insert or a transcription, or, at the very end, that a text keeps at least one such
// record.
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

#include "speechtext/record_prefetch.h"
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

    // Makes the new list of records, of objects of the old one: each goes into it once at most. (One of them may have
    // to stand there twice, which takes a clone.)
    void run(bool keep_final_attrs) {
        kept_.assign(records_.size(), false);
        for (std::size_t next = 0; next < records_.size() || scan_ < text_.size();) {
            scan_text(next < records_.size() ? records_[next].position : static_cast<int>(text_.size()));
            if (need_emit_ && current_) write_current();
            if (next < records_.size()) {
                prefetch_records_behind(records_, next);
                take(next++);
            }
        }
        finish(keep_final_attrs);
    }

    // Hands the clone over together with the list.
    Records& take_new_records() {
        again_.release();
        return out_;
    }
    bool is_kept(std::size_t index) const { return kept_[index]; }

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
        for (; i < pending_.size() && pending_[i].position < current_position_; ++i) write_unless_repeated(i);
        emit_current(out_.empty() ? 0 : current_position_);
        in_force_ = true;
        for (; i < pending_.size(); ++i) write_and_remember(i);
        pending_.clear();
        pending_from_.clear();
        pending_tail_.forget();
    }

    void emit_current(int position) {
        if (kept_[current_from_]) {
            again_.reset(current_->clone());
            out_.push_back({position, again_.get()});
        } else {
            keep(current_from_, position);
        }
        emitted_ = current_;
        need_emit_ = false;
    }

    bool write_unless_repeated(std::size_t pending) {
        const SpeechtextAttrsRecord& entry = pending_[pending];
        const bool repeated =
            last_plain_.attrs && entry.position == last_plain_.position && *entry.attrs == *last_plain_.attrs;
        if (!repeated) keep(pending_from_[pending], entry.position);
        return !repeated;
    }

    void write_and_remember(std::size_t pending) {
        if (write_unless_repeated(pending)) last_plain_ = pending_[pending];
    }

    void keep(std::size_t index, int position) {
        out_.push_back({position, records_[index].attrs});
        kept_[index] = true;
    }

    void take(std::size_t index) {
        if (const SpeechtextTextAttrs* content = contentattrs_of(records_[index])) {
            take_content(index, *content);
        } else {
            take_point(index);
        }
    }

    // A break keeps its surrounding attributes alive, a mark does not.
    void take_point(std::size_t index) {
        const SpeechtextAttrsRecord& record = records_[index];
        if (pending_tail_.decide(pending_, record.position, *record.attrs) == AttrsTail::Merge::drop) return;
        pending_.push_back(record);
        pending_from_.push_back(index);
        pending_tail_.added(pending_);
        if (record.attrs->is_context_dependent() && !in_force_) need_emit_ = true;
    }

    void take_content(std::size_t index, const SpeechtextTextAttrs& attrs) {
        if (current_ && *current_ == attrs) return;
        if (current_) in_force_ = emitted_ && *emitted_ == attrs;
        current_ = &attrs;
        current_from_ = index;
        current_position_ = records_[index].position;
        if (!in_force_ && starts_instance(attrs)) need_emit_ = true;
    }

    // Is it the start of an audio insert or a transcription that the records written so far do not run already?
    bool starts_instance(const SpeechtextTextAttrs& attrs) const {
        const unsigned int audio = emitted_ ? emitted_->audio.instance() : 0;
        const unsigned int transcription = emitted_ ? emitted_->transcription.instance() : 0;
        return (attrs.audio.instance() > 0 && attrs.audio.instance() != audio) ||
               (attrs.transcription.instance() > 0 && attrs.transcription.instance() != transcription);
    }

    // By value also if they are one object: a factor that is not a number differs from itself.
    bool current_differs_from_emitted() const {
        return !(*current_ == *emitted_) || current_->prosody != emitted_->prosody;
    }

    void finish(bool keep_final_attrs) {
        if (current_ && !need_emit_) need_emit_ = !emitted_ || (keep_final_attrs && current_differs_from_emitted());
        const int final_position = need_emit_ && out_.empty() ? 0 : current_position_;
        for (std::size_t i = 0; i < pending_.size(); ++i) {
            if (need_emit_ && pending_[i].position >= final_position) emit_current(final_position);
            write_and_remember(i);
        }
        if (need_emit_) emit_current(final_position);
    }

    const std::string& text_;
    const Records& records_;
    Records out_;
    std::unique_ptr<SpeechtextTextAttrs> again_;
    std::vector<bool> kept_;                 // which of the records are in out_
    Records pending_;                        // marks and breaks that wait,
    std::vector<std::size_t> pending_from_;  // and their indices among the records
    AttrsTail pending_tail_;
    const SpeechtextTextAttrs* current_ = nullptr;  // the last text attribute record read
    std::size_t current_from_ = 0;
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
    Finalisation finalisation(text, attrs);
    finalisation.run(keep_final_attrs);
    for (std::size_t i = 0; i < attrs.size(); ++i) {
        if (!finalisation.is_kept(i)) delete attrs[i].attrs;
    }
    attrs.swap(finalisation.take_new_records());
    learn_records(false);
}
