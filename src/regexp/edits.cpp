// Making all edits of a list in one pass, with one running position in the old text and one in the new.
#include "regexp/edits.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "regexp/replacer.h"

void EditList::add(int start, std::size_t length, std::size_t bytes_at, std::size_t records_at, bool preserves_marks,
                   bool preserves_breaks) {
    edits.push_back({start, length, bytes_at, bytes.size() - bytes_at, records_at, records.size() - records_at,
                     preserves_marks, preserves_breaks});
}

namespace {

using Edit = EditList::Edit;

bool start_falls(const std::vector<Edit>& edits) {
    int last = 0;
    for (const Edit& edit : edits) {
        if (edit.start < last) return true;
        last = edit.start;
    }
    return false;
}

void sort_if_start_falls(std::vector<Edit>& edits) {
    if (!start_falls(edits)) return;
    std::stable_sort(edits.begin(), edits.end(), [](const Edit& a, const Edit& b) {
        return std::tie(a.start, a.length, a.bytes_count) < std::tie(b.start, b.length, b.bytes_count);
    });
    for (Edit& edit : edits) {
        edit.preserves_marks = true;
        edit.preserves_breaks = false;
    }
}

// Overlapping edits can add up to less than nothing: then nothing is reserved.
std::size_t expected_size(std::size_t old_size, const EditList& list) {
    std::size_t size = old_size + list.bytes.size();
    const std::size_t most = size;
    for (const Edit& edit : list.edits) size -= edit.length;
    return size <= most ? size : 0;
}

// How many old bytes stand between the point reached and the edit.
std::size_t bytes_up_to(int start, std::size_t in) {
    return start >= 0 && static_cast<std::size_t>(start) > in ? static_cast<std::size_t>(start) - in : 0;
}

std::string_view slice(const std::string& text, std::size_t pos, std::size_t n) {
    return pos < text.size() ? std::string_view(text).substr(pos, n) : std::string_view();
}

// The making of a rich text from an old one and the edits. The names of the steps follow do_replacements()'s contract.
class RichEdit {
public:
    RichEdit(const Speechtext& text, const EditList& list) : old_(text), list_(list), it_(text.attrs_begin()) {
        result_.text.reserve(expected_size(text.size(), list));
        result_.records.reserve(text.attrsvec_size() + list.records.size());
    }

    Speechtext run() {
        for (const Edit& edit : list_.edits) make(edit);
        for (; it_ != old_.attrs_end(); ++it_) {
            if (!position_below(it_->position, in_)) add_moved(*it_);
        }
        result_.text += slice(old_.as_string(), in_, std::string::npos);
        return result_.finished();
    }

private:
    struct MarkLess {
        bool operator()(const SpeechtextAttrs* a, const SpeechtextAttrs* b) const {
            return static_cast<const SpeechtextMark*>(a)->compare_mark_identity_less(
                *static_cast<const SpeechtextMark*>(b));
        }
    };
    struct BreakLess {
        bool operator()(const SpeechtextAttrs* a, const SpeechtextAttrs* b) const {
            return *static_cast<const SpeechtextBreak*>(a) < *b;
        }
    };

    void make(const Edit& edit) {
        collect(edit);
        old_records_up_to(edit.start);
        old_bytes_up_to(edit.start);
        in_ += edit.length;
        records_of_range(edit);
        for (const SpeechtextAttrsRecord& record : list_.new_records(edit)) {
            result_.append_attrs(position_shifted(record.position, result_.text.size()), record.attrs);
        }
        result_.text += list_.new_bytes(edit);
        if (content_) result_.append_at_end(content_);
    }

    // What the new text brings must not come out of the old one as well.
    void collect(const Edit& edit) {
        marks_.clear();
        breaks_.clear();
        for (const SpeechtextAttrsRecord& record : list_.new_records(edit)) {
            if (record.attrs->is_mark()) marks_.insert(record.attrs);
            if (record.attrs->is_break() && edit.preserves_breaks) breaks_.insert(record.attrs);
        }
    }

    void old_records_up_to(int start) {
        for (; it_ != old_.attrs_end() && it_->position <= start; ++it_) {
            if (it_->attrs->is_mark() && marks_.count(it_->attrs)) continue;
            add_moved(*it_);
            if (it_->attrs->is_contentattrs()) content_ = it_->attrs;
        }
    }

    void old_bytes_up_to(int start) {
        const std::size_t n = bytes_up_to(start, in_);
        if (n == 0) return;
        result_.text += slice(old_.as_string(), in_, n);
        in_ += n;
    }

    void records_of_range(const Edit& edit) {
        for (; it_ != old_.attrs_end() && position_below(it_->position, in_); ++it_) {
            const SpeechtextAttrs* attrs = it_->attrs;
            const bool mark_stays = edit.preserves_marks && attrs->is_mark() && !marks_.count(attrs);
            const bool break_stays = edit.preserves_breaks && attrs->is_break() && !breaks_.count(attrs);
            if (attrs->is_contentattrs()) {
                content_ = attrs;
            } else if (mark_stays || break_stays) {
                result_.append_at_end(attrs);
            }
        }
    }

    void add_moved(const SpeechtextAttrsRecord& record) {
        result_.append_attrs(position_shifted(record.position, result_.text.size() - in_), record.attrs);
    }

    const Speechtext& old_;
    const EditList& list_;
    Speechtext::const_iterator it_;
    std::size_t in_ = 0;
    Draft result_;
    const SpeechtextAttrs* content_ = nullptr;  // the last text attribute record passed
    std::set<const SpeechtextAttrs*, MarkLess> marks_;
    std::set<const SpeechtextAttrs*, BreakLess> breaks_;
};

EditList listed(const std::list<replacement>& edits) {
    EditList list;
    for (const replacement& edit : edits) {
        const std::size_t bytes_at = list.bytes.size();
        const std::size_t records_at = list.records.size();
        list.bytes += edit.repl_string ? *edit.repl_string : edit.repl_text->as_string();
        list.records.insert(list.records.end(), edit.replattrs_begin(), edit.replattrs_end());
        list.add(edit.start(), edit.length(), bytes_at, records_at, edit.preserves_marks(), edit.preserves_breaks());
    }
    return list;
}

}  // namespace

std::string apply_edits(const std::string& text, EditList& list) {
    sort_if_start_falls(list.edits);
    std::string result;
    result.reserve(expected_size(text.size(), list));
    std::size_t in = 0;
    for (const Edit& edit : list.edits) {
        const std::size_t n = bytes_up_to(edit.start, in);
        result += slice(text, in, n);
        result += list.new_bytes(edit);
        in += n + edit.length;
    }
    result += slice(text, in, std::string::npos);
    return result;
}

Speechtext apply_edits(const Speechtext& text, EditList& list) {
    sort_if_start_falls(list.edits);
    return RichEdit(text, list).run();
}

std::string do_replacements(const std::string& text, const std::list<replacement>& edits) {
    EditList list = listed(edits);
    return apply_edits(text, list);
}

Speechtext do_replacements(const Speechtext& text, const std::list<replacement>& edits) {
    EditList list = listed(edits);
    return apply_edits(text, list);
}

std::string do_replacement(const std::string& text, const replacement& edit) { return do_replacements(text, {edit}); }

Speechtext do_replacement(const Speechtext& text, const replacement& edit) { return do_replacements(text, {edit}); }
