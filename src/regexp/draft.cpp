// Rich text under construction.
#include "regexp/draft.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace regexp_detail {

namespace {

// How many records are walked back over before all are looked at once and for all.
constexpr std::size_t walked_records = 16;

bool falls(const SpeechtextAttrsRecord& a, const SpeechtextAttrsRecord& b) { return a.position > b.position; }

std::vector<const SpeechtextAttrs*> all_content_before(RecordSpan records) {
    std::vector<const SpeechtextAttrs*> content_before;
    content_before.reserve(records.size() + 1);
    const SpeechtextAttrs* content = nullptr;
    for (const SpeechtextAttrsRecord& record : records) {
        content_before.push_back(content);
        if (record.attrs->is_contentattrs()) content = record.attrs;
    }
    content_before.push_back(content);
    return content_before;
}

}  // namespace

RecordIndex::RecordIndex(RecordSpan records)
    : records_(records), ascending_(std::adjacent_find(records.begin(), records.end(), falls) == records.end()) {}

std::size_t RecordIndex::first_not_before(std::size_t pos) const {
    const auto before = [pos](const SpeechtextAttrsRecord& record) { return position_below(record.position, pos); };
    const auto found = ascending_ ? std::partition_point(records_.begin(), records_.end(), before)
                                  : std::find_if_not(records_.begin(), records_.end(), before);
    return static_cast<std::size_t>(found - records_.begin());
}

const SpeechtextAttrs* RecordIndex::content_before(std::size_t index) const {
    const std::size_t stop = index > walked_records ? index - walked_records : 0;
    for (std::size_t at = index; at > stop; --at) {
        if (records_[at - 1].attrs->is_contentattrs()) return records_[at - 1].attrs;
    }
    if (stop == 0) return nullptr;
    if (content_before_.empty()) content_before_ = all_content_before(records_);
    return content_before_[index];
}

AttrsTail::Merge Draft::append_attrs(int position, const SpeechtextAttrs* borrowed) {
    // Nothing is ever changed through the pointer; the record type has no const form.
    SpeechtextAttrs* const object = const_cast<SpeechtextAttrs*>(borrowed);
    const AttrsTail::Merge merge = tail_.decide(records, position, *object, AttrsTail::Objects::borrowed);
    if (merge == AttrsTail::Merge::replace_last) {
        records.back().attrs = object;
        tail_.replaced(records);
        if (records.size() > 1) replaced_ = true;
    } else if (merge == AttrsTail::Merge::add) {
        records.push_back({position, object});
        tail_.added(records);
    }
    return merge;
}

// The slice append of Speechtext: the bytes [pos, pos + n) under the attributes in force at pos, with the records of
// the range. The bound wraps.
void Draft::append(const RichView& source, std::size_t pos, std::size_t n) {
    if (pos > source.text.size()) throw std::out_of_range("Draft::append");
    const std::size_t base = text.size();
    const std::size_t bound = pos + n;
    std::size_t at = source.first_not_before(pos);
    const bool taken_over = at < source.records.size() && source.records[at].attrs->is_contentattrs() &&
                            source.records[at].position == static_cast<long long>(pos);
    const SpeechtextAttrs* carried = taken_over ? nullptr : source.content_before(at);
    if (carried) append_at_end(carried);
    text.append(source.text.substr(pos, n));
    for (; at < source.records.size() && position_below(source.records[at].position, bound); ++at) {
        append_attrs(position_shifted(source.records[at].position, base - pos), source.records[at].attrs);
    }
}

void Draft::pop_attrs() {
    tail_.popping(records);
    records.pop_back();
}

void Draft::clear() {
    text.clear();
    records.clear();
    tail_.forget();
    replaced_ = false;
}

// One result object, returned without a move: a moved text may merge its records anew.
Speechtext Draft::finished() const {
    Speechtext result;
    result.reserve(text.size(), records.size());
    result += text;
    for (const SpeechtextAttrsRecord& record : records) {
        result.attrs.push_back({record.position, nullptr});
        result.attrs.back().attrs = record.attrs->clone();
    }
    result.learn_records(!replaced_);
    return result;
}

Speechtext Draft::finished(std::span<SpeechtextAttrs** const> owners) && {
    const auto owner = [owners](std::size_t i) { return owners.empty() ? nullptr : owners[i]; };
    Speechtext result;
    result.attrs.reserve(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        result.attrs.push_back({records[i].position, nullptr});
        if (!owner(i)) result.attrs.back().attrs = records[i].attrs->clone();
    }
    // Nothing fails from here on.
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (owner(i)) result.attrs[i].attrs = std::exchange(*owner(i), nullptr);
    }
    result.text = std::move(text);
    result.learn_records(!replaced_);
    return result;
}

const Speechtext& DraftStore::keep(Speechtext&& text) {
    texts_.push_back(std::move(text));
    return texts_.back();
}

const SpeechtextAttrs* DraftStore::keep(std::unique_ptr<SpeechtextAttrs> made) {
    made_.push_back(std::move(made));
    return made_.back().get();
}

const SpeechtextTextAttrs* DraftStore::with_raw(const SpeechtextTextAttrs* attrs, bool raw) {
    const SpeechtextTextAttrs*& held = with_raw_[raw ? 1 : 0][attrs];
    if (!held) {
        auto copy = std::make_unique<SpeechtextTextAttrs>(*attrs);
        copy->raw = raw;
        held = copy.get();
        made_.push_back(std::move(copy));
    }
    return held;
}

}  // namespace regexp_detail
