// Rich text under construction, without a clone for each record.
//
// A rewrite puts the same few records into its output at every match: the attributes in force, the records of a group.
// A Draft is a text whose records point to objects that others own, put together by the same merging rule as a
// Speechtext; objects that are the same need no comparison field by field. Only what is left at the end is cloned.
// Whatever a Draft points to must outlive it: the subject text, the replacement string, and what a DraftStore holds.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "speechtext/attrs_tail.h"
#include "speechtext/speechtext.h"

// Not global, as the library's own names are: a program may well have an Edit or a Draft too, and its functions must
// not be taken for these when it is linked.
namespace regexp_detail {

using RecordSpan = std::span<const SpeechtextAttrsRecord>;

// Finds the records of a slice in logarithmic time. Belongs to a vector that does not change meanwhile. One thread at a
// time uses it.
class RecordIndex {
public:
    explicit RecordIndex(RecordSpan records);

    // The index of the first record that does not stand in front of pos.
    std::size_t first_not_before(std::size_t pos) const;
    // The last text attribute record in front of the record with this index; null without one.
    const SpeechtextAttrs* content_before(std::size_t index) const;

private:
    RecordSpan records_;
    bool ascending_ = true;
    // Made when it is first needed: for most texts a short walk back does.
    mutable std::vector<const SpeechtextAttrs*> content_before_;
};

// What slices are taken from.
struct RichView {
    std::string_view text;
    RecordSpan records;
    const RecordIndex* index;  // null if all is taken and no position is below 0

    std::size_t first_not_before(std::size_t pos) const { return index ? index->first_not_before(pos) : 0; }
    const SpeechtextAttrs* content_before(std::size_t at) const { return index ? index->content_before(at) : nullptr; }
};

class Draft {
public:
    std::string text;
    // Borrowed objects.
    std::vector<SpeechtextAttrsRecord> records;

    // As the Speechtext operations of these names; they tell what became of the record.
    AttrsTail::Merge append_attrs(int position, const SpeechtextAttrs* borrowed);
    AttrsTail::Merge append_at_end(const SpeechtextAttrs* borrowed) {
        return append_attrs(static_cast<int>(text.size()), borrowed);
    }
    void append(const RichView& source, std::size_t pos, std::size_t n);
    void pop_attrs();
    const SpeechtextTextAttrs* contentattrs_at_end() const { return tail_.last_contentattrs(records); }

    // Empties the draft and keeps its memory.
    void clear();
    // The text with clones of the records, these and no others.
    Speechtext finished() const;
    // The same, leaving this draft without its text. owners is empty, or says of each record which pointer owns its
    // object, null for none: such an object is taken, and null left in its place, instead of being cloned. No owner may
    // be named twice. Nothing is taken if this throws.
    Speechtext finished(std::span<SpeechtextAttrs** const> owners) &&;

private:
    AttrsTail tail_;
    // Did a record take the place of one behind another? Its neighbours may be such as the rule would merge now.
    bool replaced_ = false;
};

// Objects made during a rewrite, for drafts to point to.
class DraftStore {
public:
    const Speechtext& keep(Speechtext&& text);
    const SpeechtextAttrs* keep(std::unique_ptr<SpeechtextAttrs> made);
    // A copy of the attributes with this raw flag, the same one at each call.
    const SpeechtextTextAttrs* with_raw(const SpeechtextTextAttrs* attrs, bool raw);

private:
    std::deque<Speechtext> texts_;
    std::deque<std::unique_ptr<SpeechtextAttrs>> made_;
    std::unordered_map<const SpeechtextTextAttrs*, const SpeechtextTextAttrs*> with_raw_[2];
};

// Positions are signed and bounds unsigned; a position in front of the text is below any bound.
inline bool position_below(int position, std::size_t bound) {
    return position < 0 || static_cast<std::size_t>(position) < bound;
}

// A position in one text as a position in another; the sum wraps and is cut to 32 bits.
inline int position_shifted(int position, std::size_t offset) {
    return static_cast<int>(static_cast<std::size_t>(position) + offset);
}

}  // namespace regexp_detail
