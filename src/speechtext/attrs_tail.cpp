// The merging rule and the memory behind it. Failing to build or extend the hash index is no failure: it is an
// accelerator, and without it the records are walked.
#include "speechtext/attrs_tail.h"

#include <typeinfo>
#include <unordered_map>

namespace {

// Up to this many records at one position, walking them is cheaper than hashing.
constexpr std::size_t walked_records = 16;

bool is_hashed_class(const SpeechtextAttrs& attrs) {
    return typeid(attrs) == typeid(SpeechtextMark) || typeid(attrs) == typeid(SpeechtextBreak);
}

// Only for a class that is_hashed_class().
std::size_t hash_of(const SpeechtextAttrs& attrs) {
    if (attrs.is_mark()) return static_cast<const SpeechtextMark&>(attrs).hash();
    return ~static_cast<const SpeechtextBreak&>(attrs).hash();
}

bool repeats(const SpeechtextTextAttrs& there, const SpeechtextAttrs& attrs, AttrsTail::Objects objects) {
    if (objects == AttrsTail::Objects::borrowed && &there == &attrs) return there.prosody == there.prosody;
    return there == attrs;
}

}  // namespace

// The marks and breaks among the records [begin, end), which share one position.
struct AttrsTail::Index {
    std::size_t begin = 0;
    std::size_t end = 0;
    const SpeechtextAttrs* last = nullptr;
    bool foreign = false;  // a class of another maker is among them, whose equality is not known here
    std::unordered_multimap<std::size_t, const SpeechtextAttrs*> by_hash;

    bool covers(Records records) const { return end == records.size() && end > begin && last == records.back().attrs; }

    void add(const SpeechtextAttrs& attrs) {
        if (is_hashed_class(attrs)) {
            by_hash.emplace(hash_of(attrs), &attrs);
        } else if (typeid(attrs) != typeid(SpeechtextTextAttrs)) {
            foreign = true;
        }
        last = &attrs;
        ++end;
    }

    void remove_last(Records records) {
        const SpeechtextAttrs& attrs = *records.back().attrs;
        if (is_hashed_class(attrs)) {
            auto [at, stop] = by_hash.equal_range(hash_of(attrs));
            while (at != stop && at->second != &attrs) ++at;
            if (at != stop) by_hash.erase(at);
        }
        --end;
        last = end > begin ? records[end - 1].attrs : nullptr;
    }

    bool holds(const SpeechtextAttrs& attrs) const {
        auto [at, stop] = by_hash.equal_range(hash_of(attrs));
        while (at != stop && !(*at->second == attrs)) ++at;
        return at != stop;
    }
};

AttrsTail::AttrsTail() = default;

AttrsTail::AttrsTail(AttrsTail&& other) noexcept { *this = std::move(other); }

AttrsTail& AttrsTail::operator=(AttrsTail&& other) noexcept {
    known_count_ = other.known_count_;
    content_end_ = other.content_end_;
    known_last_ = other.known_last_;
    index_ = std::move(other.index_);
    other.forget();
    return *this;
}

AttrsTail::~AttrsTail() = default;

void AttrsTail::forget() noexcept {
    known_count_ = 0;
    content_end_ = 0;
    known_last_ = nullptr;
    index_.reset();
}

void AttrsTail::learn(Records records) noexcept {
    forget();
    content_end_ = content_end(records, records.size());
    known_count_ = records.size();
    known_last_ = records.empty() ? nullptr : records.back().attrs;
}

// One past the last text attribute record of the first count records, 0 without one.
std::size_t AttrsTail::content_end(Records records, std::size_t count) const {
    const bool known = knows(records) && content_end_ <= count;
    const std::size_t unknown_from = known ? std::min(known_count_, count) : 0;
    std::size_t end = count;
    while (end > unknown_from && !records[end - 1].attrs->is_contentattrs()) --end;
    return end == unknown_from && known ? content_end_ : end;
}

const SpeechtextTextAttrs* AttrsTail::last_contentattrs(Records records, std::size_t count) const {
    const std::size_t end = content_end(records, count);
    return end == 0 ? nullptr : static_cast<const SpeechtextTextAttrs*>(records[end - 1].attrs);
}

const SpeechtextTextAttrs* AttrsTail::last_contentattrs(Records records) const {
    return last_contentattrs(records, records.size());
}

void AttrsTail::added(Records records) noexcept {
    const Records before = records.first(records.size() - 1);
    if (records.back().attrs->is_contentattrs()) {
        content_end_ = records.size();
    } else if (!knows_all(before)) {
        content_end_ = content_end(before, before.size());
    }
    known_count_ = records.size();
    known_last_ = records.back().attrs;
    if (!index_) return;
    const bool continues = index_->covers(before) && before.back().position == records.back().position;
    try {
        if (continues) index_->add(*records.back().attrs);
    } catch (const std::bad_alloc&) {
        index_.reset();
    }
    if (!continues) index_.reset();
}

void AttrsTail::replaced(Records records) noexcept {
    // Only text attribute records are ever replaced, and the index holds none of them but as the last record.
    if (index_ && index_->end == records.size()) index_->last = records.back().attrs;
    known_count_ = content_end_ = records.size();
    known_last_ = records.back().attrs;
}

void AttrsTail::popping(Records records) noexcept {
    const Records rest = records.first(records.size() - 1);
    if (index_ && index_->covers(records)) {
        index_->remove_last(records);
    } else {
        index_.reset();
    }
    content_end_ = content_end(records, rest.size());
    known_count_ = rest.size();
    known_last_ = rest.empty() ? nullptr : rest.back().attrs;
}

AttrsTail::Merge AttrsTail::decide_content(Records records, int position, const SpeechtextAttrs& attrs,
                                           Objects objects) const {
    if (!records.empty() && records.back().position == position && records.back().attrs->is_contentattrs()) {
        const auto& last = static_cast<const SpeechtextTextAttrs&>(*records.back().attrs);
        if (repeats(last, attrs, objects)) return Merge::drop;
        const bool stands_for_itself = last.audio.instance() != 0 || last.transcription.instance() != 0;
        return stands_for_itself ? Merge::add : Merge::replace_last;
    }
    const SpeechtextTextAttrs* in_force = last_contentattrs(records);
    return in_force && repeats(*in_force, attrs, objects) ? Merge::drop : Merge::add;
}

// Is there an equal record among those at the last position?
bool AttrsTail::repeated_at_last(Records records, const SpeechtextAttrs& attrs) {
    const int position = records.back().position;
    if (is_hashed_class(attrs)) {
        const Index* index = index_for(records);
        if (index && !index->foreign) return index->holds(attrs);
    }
    for (auto at = records.rbegin(); at != records.rend() && at->position == position; ++at) {
        if (*at->attrs == attrs) return true;
    }
    return false;
}

// The index over the records at the last position; null if they are few.
const AttrsTail::Index* AttrsTail::index_for(Records records) {
    if (index_ && index_->covers(records)) return index_.get();
    index_.reset();
    const int position = records.back().position;
    std::size_t begin = records.size();
    while (begin > 0 && records[begin - 1].position == position && records.size() - begin <= walked_records) --begin;
    if (records.size() - begin <= walked_records) return nullptr;
    while (begin > 0 && records[begin - 1].position == position) --begin;
    try {
        auto index = std::make_unique<Index>();
        index->begin = index->end = begin;
        for (const SpeechtextAttrsRecord& record : records.subspan(begin)) index->add(*record.attrs);
        index_ = std::move(index);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    return index_.get();
}
