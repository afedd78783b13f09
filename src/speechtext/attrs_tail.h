// The merging rule at the end of a record vector, and what is remembered to apply it in constant time.
//
// The rule looks only at the vector's tail: the last record, the records that share its position, and the way back to
// the last text attribute record. Both ways can be long (a bookmark list of 100,000 entries at one position), so the
// place of the last text attribute record is remembered, and records that share the last position are hashed once there
// are many.
//
// An AttrsTail belongs to one vector, which it is given at each call. It notices most edits that went past it (by the
// vector's size and the address of the last known object) and then looks anew.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>

#include "speechtext/attributes.h"
#include "speechtext/attrsrecord.h"

class AttrsTail {
public:
    using Records = std::span<const SpeechtextAttrsRecord>;
    enum class Merge { drop, replace_last, add };

    AttrsTail();
    AttrsTail(AttrsTail&& other) noexcept;
    AttrsTail& operator=(AttrsTail&& other) noexcept;
    AttrsTail(const AttrsTail&) = delete;
    AttrsTail& operator=(const AttrsTail&) = delete;
    ~AttrsTail();

    // What becomes of attrs, given at position behind records. The records are clones, so that attrs is one of them
    // only if it was taken from there; of borrowed objects the same one may stand for several clones. That matters for
    // text attributes that hold a NaN: they equal themselves, but no clone.
    enum class Objects { clones, borrowed };
    Merge decide(Records records, int position, const SpeechtextAttrs& attrs, Objects objects = Objects::clones);

    // To be told after a record was pushed or the last one's object replaced, and before the last one is popped.
    void added(Records records) noexcept;
    void replaced(Records records) noexcept;
    void popping(Records records) noexcept;
    // Looks at all records anew, or knows of none.
    void learn(Records records) noexcept;
    void forget() noexcept;
    // Was every record told of, and did none change past this object?
    bool knows_all(Records records) const { return known_count_ == records.size() && knows(records); }

    // The last text attribute record of the first count records; null without one.
    const SpeechtextTextAttrs* last_contentattrs(Records records, std::size_t count) const;
    const SpeechtextTextAttrs* last_contentattrs(Records records) const;

private:
    struct Index;

    bool knows(Records records) const;
    std::size_t content_end(Records records, std::size_t count) const;
    Merge decide_content(Records records, int position, const SpeechtextAttrs& attrs, Objects objects) const;
    bool repeated_at_last(Records records, const SpeechtextAttrs& attrs);
    const Index* index_for(Records records);

    // The first known_count_ records are known: the last text attribute record among them is the one before
    // content_end_ (0: none), and known_last_ is the object of the last of them.
    std::size_t known_count_ = 0;
    std::size_t content_end_ = 0;
    const SpeechtextAttrs* known_last_ = nullptr;
    std::unique_ptr<Index> index_;
};

inline bool AttrsTail::knows(Records records) const {
    if (known_count_ == 0) return true;
    return known_count_ <= records.size() && records[known_count_ - 1].attrs == known_last_ &&
           (content_end_ == 0 || records[content_end_ - 1].attrs->is_contentattrs());
}

// A mark or break at a new position, the common case, is decided at once.
inline AttrsTail::Merge AttrsTail::decide(Records records, int position, const SpeechtextAttrs& attrs,
                                          Objects objects) {
    if (attrs.is_contentattrs()) return decide_content(records, position, attrs, objects);
    const bool is_first_here = records.empty() || records.back().position != position;
    return is_first_here || !repeated_at_last(records, attrs) ? Merge::add : Merge::drop;
}

// Applies the rule to records as if they were appended one by one to an empty vector, in place, without cloning.
// dropped(object) gets each object that does not stay. Returns how many records stay, at the front.
template <typename Dropped>
std::size_t merge_records(std::span<SpeechtextAttrsRecord> records, AttrsTail* tail, Dropped dropped) {
    std::size_t kept = 0;
    for (const SpeechtextAttrsRecord record : records) {
        switch (tail->decide(records.first(kept), record.position, *record.attrs)) {
            case AttrsTail::Merge::drop:
                dropped(record.attrs);
                break;
            case AttrsTail::Merge::replace_last:
                dropped(std::exchange(records[kept - 1].attrs, record.attrs));
                tail->replaced(records.first(kept));
                break;
            case AttrsTail::Merge::add:
                records[kept++] = record;
                tail->added(records.first(kept));
                break;
        }
    }
    return kept;
}
