// The container: construction, copying, appending, reading. The merging rule itself is in attrs_tail.cpp.
#include "speechtext/speechtext.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "speechtext/record_prefetch.h"

namespace {

// Positions are signed and bounds unsigned; a position in front of the text is below any bound.
bool below(int position, std::size_t bound) { return position < 0 || static_cast<std::size_t>(position) < bound; }

int shifted(int position, std::size_t offset) { return static_cast<int>(static_cast<std::size_t>(position) + offset); }

}  // namespace

Speechtext::Speechtext(const Speechtext& other) : Speechtext() { *this = other; }

Speechtext::Speechtext(Speechtext&& other) noexcept { *this = std::move(other); }

Speechtext& Speechtext::operator=(const Speechtext& other) {
    if (this == &other) return *this;
    reserve_records(other.attrs.size());
    text = other.text;
    delete_records();
    append_shifted(other, 0);
    return *this;
}

Speechtext& Speechtext::operator=(Speechtext&& other) noexcept {
    if (this == &other) return *this;
    delete_records();
    text = std::move(other.text);
    attrs = std::move(other.attrs);
    tail_ = std::move(other.tail_);
    replayable_ = other.replayable_;
    ascending_ = other.ascending_;
    other.text.clear();
    other.delete_records();
    if (!replayable_ || !tail_.knows_all(attrs)) replay_own_records();
    return *this;
}

Speechtext::~Speechtext() { delete_records(); }

void Speechtext::delete_records() {
    for (std::size_t i = 0; i < attrs.size(); ++i) {
        prefetch_records_behind(attrs, i);
        delete attrs[i].attrs;
    }
    attrs.clear();
    tail_.forget();
    replayable_ = ascending_ = true;
}

// For records that came into the vector past the merging rule.
void Speechtext::learn_records(bool replayable) noexcept {
    tail_.learn(attrs);
    replayable_ = replayable;
    ascending_ = std::is_sorted(attrs.begin(), attrs.end(),
                                [](const auto& a, const auto& b) { return a.position < b.position; });
}

// Keeps the vector's growth geometric: reserving exactly, append by append, would move it each time.
void Speechtext::reserve_records(std::size_t count) {
    if (count > attrs.capacity()) attrs.reserve(std::max(count, 2 * attrs.capacity()));
}

void Speechtext::append_shifted(const Speechtext& other, std::size_t base) {
    for (std::size_t i = 0; i < other.attrs.size(); ++i) {
        prefetch_records_behind(other.attrs, i);
        append_attrs(shifted(other.attrs[i].position, base), *other.attrs[i].attrs);
    }
}

// A moved text has to hold what a copied one would.
void Speechtext::replay_own_records() noexcept {
    tail_.forget();
    attrs.resize(merge_records(attrs, &tail_, [](SpeechtextAttrs* dropped) { delete dropped; }));
}

Speechtext& Speechtext::operator+=(char c) {
    text += c;
    return *this;
}

Speechtext& Speechtext::operator+=(const std::string& bytes) {
    text += bytes;
    return *this;
}

Speechtext& Speechtext::operator+=(const SpeechtextAttrs& record) {
    append_attrs(static_cast<int>(text.size()), record);
    return *this;
}

Speechtext& Speechtext::operator+=(const Speechtext& other) {
    if (this == &other) return *this += Speechtext(other);
    const std::size_t base = text.size();
    text += other.text;
    reserve_records(attrs.size() + other.attrs.size());
    append_shifted(other, base);
    return *this;
}

Speechtext Speechtext::operator+(char c) const {
    Speechtext sum(*this);
    sum += c;
    return sum;
}

Speechtext Speechtext::operator+(const std::string& bytes) const {
    Speechtext sum(*this);
    sum += bytes;
    return sum;
}

Speechtext Speechtext::operator+(const SpeechtextAttrs& record) const {
    Speechtext sum(*this);
    sum += record;
    return sum;
}

Speechtext Speechtext::operator+(const Speechtext& other) const {
    Speechtext sum(*this);
    sum += other;
    return sum;
}

void Speechtext::append(const char* bytes, std::size_t n) { text.append(bytes, n); }

void Speechtext::append(const char* string, std::size_t pos, std::size_t n) {
    text.append(std::string(string), pos, n);
}

// The index of the first record that does not stand in front of pos.
std::size_t Speechtext::first_record_at(std::size_t pos) const {
    const auto in_front = [pos](const SpeechtextAttrsRecord& record) { return below(record.position, pos); };
    const auto found = ascending_ && tail_.knows_all(attrs) ? std::partition_point(attrs.begin(), attrs.end(), in_front)
                                                            : std::find_if_not(attrs.begin(), attrs.end(), in_front);
    return static_cast<std::size_t>(found - attrs.begin());
}

void Speechtext::append(const Speechtext& source, std::size_t pos, std::size_t n) {
    if (this == &source) return append(Speechtext(source), pos, n);
    const std::size_t base = text.size();
    const std::size_t bound = pos + n;
    std::size_t at = source.first_record_at(pos);
    const bool taken_over = at < source.attrs.size() && source.attrs[at].attrs->is_contentattrs() &&
                            source.attrs[at].position == static_cast<long long>(pos);
    const SpeechtextTextAttrs* carried = taken_over ? nullptr : source.tail_.last_contentattrs(source.attrs, at);
    if (carried) append_attrs(static_cast<int>(base), *carried);
    text.append(source.text, pos, n);
    for (; at < source.attrs.size() && below(source.attrs[at].position, bound); ++at) {
        append_attrs(shifted(source.attrs[at].position, base - pos), *source.attrs[at].attrs);
    }
}

void Speechtext::append_attrs(int position, const SpeechtextAttrs& record) {
    const AttrsTail::Merge merge = tail_.decide(attrs, position, record);
    if (merge == AttrsTail::Merge::drop) return;
    if (!tail_.knows_all(attrs)) replayable_ = ascending_ = false;  // the vector was edited past this class
    std::unique_ptr<SpeechtextAttrs> copy(record.clone());
    if (merge == AttrsTail::Merge::replace_last) {
        delete std::exchange(attrs.back().attrs, copy.release());
        tail_.replaced(attrs);
        // The new record may repeat the one in force before the replaced one: a copy would then drop it.
        if (attrs.size() > 1) replayable_ = false;
        return;
    }
    if (!attrs.empty() && position < attrs.back().position) ascending_ = false;
    attrs.push_back({position, copy.get()});
    copy.release();
    tail_.added(attrs);
}

void Speechtext::pop_attrs() {
    if (attrs.empty()) return;
    tail_.popping(attrs);
    attrs.pop_back();
}

void Speechtext::reserve(std::size_t text_bytes, std::size_t records) {
    text.reserve(text_bytes);
    attrs.reserve(records);
}

Speechtext Speechtext::substr(std::size_t pos, std::size_t n) const {
    Speechtext slice;
    slice.append(*this, pos, n);
    return slice;
}

const SpeechtextTextAttrs* Speechtext::contentattrs_at_end() const { return tail_.last_contentattrs(attrs); }

bool Speechtext::sentence_set_at_start() const {
    if (attrs.empty() || !attrs.front().attrs->is_contentattrs()) return false;
    return static_cast<const SpeechtextTextAttrs*>(attrs.front().attrs)->location.sentence_set();
}
