// Making all edits of a list in one pass.
#include "regexp/edits.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "regexp/replacer.h"
#include "speechtext/record_prefetch.h"

namespace regexp_detail {

namespace {

std::size_t new_bytes(const std::vector<Edit>& edits) {
    std::size_t bytes = 0;
    for (const Edit& edit : edits) bytes += edit.bytes.size();
    return bytes;
}

// Overlapping edits can add up to less than nothing: then nothing is reserved.
std::size_t expected_size(std::size_t old_size, const std::vector<Edit>& edits) {
    const std::size_t most = old_size + new_bytes(edits);
    std::size_t size = most;
    for (const Edit& edit : edits) size -= edit.length;
    return size <= most ? size : 0;
}

// How many old bytes stand between the point reached and the edit.
std::size_t bytes_up_to(int start, std::size_t in) {
    return start >= 0 && static_cast<std::size_t>(start) > in ? static_cast<std::size_t>(start) - in : 0;
}

std::string_view slice(const std::string& text, std::size_t pos, std::size_t n) {
    return pos < text.size() ? std::string_view(text).substr(pos, n) : std::string_view();
}

std::vector<Edit> listed(const std::list<replacement>& edits) {
    std::vector<Edit> list;
    list.reserve(edits.size());
    for (const replacement& edit : edits) {
        const std::string& bytes = edit.repl_string ? *edit.repl_string : edit.repl_text->as_string();
        list.push_back({edit.start(), edit.length(), bytes, RecordSpan(edit.replattrs_begin(), edit.replattrs_end()),
                        edit.preserves_marks(), edit.preserves_breaks()});
    }
    return list;
}

}  // namespace

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
        return std::make_tuple(a.start, a.length, a.bytes.size()) < std::make_tuple(b.start, b.length, b.bytes.size());
    });
    for (Edit& edit : edits) {
        edit.preserves_marks = true;
        edit.preserves_breaks = false;
    }
}

// ---- Strings -------------------------------------------------------------------------------------------------------

std::string& StringEdits::begin(int start) {
    const std::size_t n = bytes_up_to(start, in_);
    result_ += slice(old_, in_, n);
    in_ += n;
    return result_;
}

void StringEdits::make(const Edit& edit) {
    begin(edit.start) += edit.bytes;
    end(edit.length);
}

std::string StringEdits::finish() {
    result_ += slice(old_, in_, std::string::npos);
    return std::move(result_);
}

// ---- Rich texts. The names of the steps follow do_replacements()'s contract. ---------------------------------------

bool TextEdits::MarkLess::operator()(const SpeechtextAttrs* a, const SpeechtextAttrs* b) const {
    return static_cast<const SpeechtextMark*>(a)->compare_mark_identity_less(*static_cast<const SpeechtextMark*>(b));
}

bool TextEdits::BreakLess::operator()(const SpeechtextAttrs* a, const SpeechtextAttrs* b) const {
    return *static_cast<const SpeechtextBreak*>(a) < *b;
}

TextEdits::TextEdits(const Speechtext& old) : old_(old), consumed_(nullptr) {}

TextEdits::TextEdits(Speechtext& old, Consuming) : old_(old), consumed_(&old) {}

void TextEdits::reserve(std::size_t bytes, std::size_t records) {
    result_.text.reserve(bytes);
    result_.records.reserve(records);
    if (consumed_) owners_.reserve(records);
}

void TextEdits::make(const Edit& edit) {
    collect(edit);
    old_records_up_to(edit.start);
    old_bytes_up_to(edit.start);
    in_ += edit.length;
    records_of_range(edit);
    for (const SpeechtextAttrsRecord& record : edit.records) {
        add(position_shifted(record.position, result_.text.size()), record.attrs, nullptr);
    }
    result_.text += edit.bytes;
    restore_content();
}

Speechtext TextEdits::finish() {
    for (; next_ != old_.attrs.size(); ++next_) {
        if (!position_below(old_.attrs[next_].position, in_)) add_moved(next_);
    }
    result_.text += slice(old_.as_string(), in_, std::string::npos);
    return std::move(result_).finished(owners_);
}

// What the new text brings must not come out of the old one as well.
void TextEdits::collect(const Edit& edit) {
    marks_.clear();
    breaks_.clear();
    for (const SpeechtextAttrsRecord& record : edit.records) {
        if (record.attrs->is_mark()) marks_.insert(record.attrs);
        if (record.attrs->is_break() && edit.preserves_breaks) breaks_.insert(record.attrs);
    }
}

void TextEdits::old_records_up_to(int start) {
    for (; next_ != old_.attrs.size() && old_.attrs[next_].position <= start; ++next_) {
        const SpeechtextAttrs* const attrs = old_.attrs[next_].attrs;
        if (!marks_.empty() && attrs->is_mark() && marks_.count(attrs)) continue;
        add_moved(next_);
        if (!attrs->is_contentattrs()) continue;
        content_ = attrs;
        content_owner_ = nullptr;
    }
}

void TextEdits::old_bytes_up_to(int start) {
    const std::size_t n = bytes_up_to(start, in_);
    if (n == 0) return;
    result_.text += slice(old_.as_string(), in_, n);
    in_ += n;
}

void TextEdits::records_of_range(const Edit& edit) {
    for (; next_ != old_.attrs.size() && position_below(old_.attrs[next_].position, in_); ++next_) {
        const SpeechtextAttrs* const attrs = old_.attrs[next_].attrs;
        SpeechtextAttrs** const owner = consumed_ ? &consumed_->attrs[next_].attrs : nullptr;
        const bool mark_stays = edit.preserves_marks && attrs->is_mark() && !marks_.count(attrs);
        const bool break_stays = edit.preserves_breaks && attrs->is_break() && !breaks_.count(attrs);
        if (attrs->is_contentattrs()) {
            content_ = attrs;
            content_owner_ = owner;
        } else if (mark_stays || break_stays) {
            add(static_cast<int>(result_.text.size()), attrs, owner);
        }
    }
}

// The same record may have to be put back behind many edits: only the first time can it be taken.
void TextEdits::restore_content() {
    if (!content_) return;
    if (add(static_cast<int>(result_.text.size()), content_, content_owner_)) content_owner_ = nullptr;
}

void TextEdits::add_moved(std::size_t index) {
    const SpeechtextAttrsRecord& record = old_.attrs[index];
    prefetch_records_behind(old_.attrs, index);
    add(position_shifted(record.position, result_.text.size() - in_), record.attrs,
        consumed_ ? &consumed_->attrs[index].attrs : nullptr);
}

// Gives whether the record stands in the result now.
bool TextEdits::add(int position, const SpeechtextAttrs* attrs, SpeechtextAttrs** owner) {
    const AttrsTail::Merge merge = result_.append_attrs(position, attrs);
    if (merge == AttrsTail::Merge::drop) return false;
    if (!consumed_) return true;
    if (merge == AttrsTail::Merge::add) {
        owners_.push_back(owner);
    } else {
        owners_.back() = owner;
    }
    return true;
}

// ---- Lists ---------------------------------------------------------------------------------------------------------

std::string apply_edits(const std::string& text, std::vector<Edit>& edits) {
    sort_if_start_falls(edits);
    StringEdits result(text);
    result.reserve(expected_size(text.size(), edits));
    for (const Edit& edit : edits) result.make(edit);
    return result.finish();
}

Speechtext apply_edits(const Speechtext& text, std::vector<Edit>& edits) {
    sort_if_start_falls(edits);
    std::size_t records = text.attrsvec_size();
    for (const Edit& edit : edits) records += edit.records.size();
    TextEdits result(text);
    result.reserve(expected_size(text.size(), edits), records);
    for (const Edit& edit : edits) result.make(edit);
    return result.finish();
}

}  // namespace regexp_detail

std::string do_replacements(const std::string& text, const std::list<replacement>& edits) {
    std::vector<regexp_detail::Edit> list = regexp_detail::listed(edits);
    return regexp_detail::apply_edits(text, list);
}

Speechtext do_replacements(const Speechtext& text, const std::list<replacement>& edits) {
    std::vector<regexp_detail::Edit> list = regexp_detail::listed(edits);
    return regexp_detail::apply_edits(text, list);
}

std::string do_replacement(const std::string& text, const replacement& edit) { return do_replacements(text, {edit}); }

Speechtext do_replacement(const Speechtext& text, const replacement& edit) { return do_replacements(text, {edit}); }
