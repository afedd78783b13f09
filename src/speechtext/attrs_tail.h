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
#include <unordered_map>
#include <vector>

#include "speechtext/attributes.h"
#include "speechtext/attrsrecord.h"

class AttrsTail {
public:
    using Records = std::vector<SpeechtextAttrsRecord>;
    enum class Merge { drop, replace_last, add };

    AttrsTail();
    AttrsTail(AttrsTail&& other) noexcept;
    AttrsTail& operator=(AttrsTail&& other) noexcept;
    AttrsTail(const AttrsTail&) = delete;
    AttrsTail& operator=(const AttrsTail&) = delete;
    ~AttrsTail();

    // What becomes of attrs, given at position behind records.
    Merge decide(const Records& records, int position, const SpeechtextAttrs& attrs);

    // To be told after a record was pushed or the last one's object replaced, and before the last one is popped.
    void added(const Records& records);
    void replaced(const Records& records);
    void popping(const Records& records);
    // Nothing is known any more.
    void forget();

    // The last text attribute record, null without one.
    const SpeechtextTextAttrs* last_contentattrs(const Records& records) const;

private:
    struct Index;

    bool knows(const Records& records) const;
    std::size_t find_last_content(const Records& records) const;
    Merge decide_content(const Records& records, int position, const SpeechtextTextAttrs& attrs);
    bool repeated_at(const Records& records, int position, const SpeechtextAttrs& attrs);
    bool repeated_before(const Records& records, std::size_t end, int position, const SpeechtextAttrs& attrs) const;
    Index* index_for(const Records& records, int position);

    // The first known_count_ records are known: the last text attribute record among them is the one before
    // content_end_ (0: none). known_last_ is the object of the last of them.
    std::size_t known_count_ = 0;
    std::size_t content_end_ = 0;
    const SpeechtextAttrs* known_last_ = nullptr;
    std::unique_ptr<Index> index_;
};
