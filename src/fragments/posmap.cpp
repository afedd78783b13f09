// One walk over the finished document, in three kinds of stretches: a tag, an entity, a run of text bytes.
//
// It finds the text bytes again without knowing what the writer did, so it holds for what the writer itself puts
// out. Raw markup of a host may hold text between its tags, for which there are no positions: then the cursor runs
// ahead, and it is held at the end entry.

#include "fragments/posmap.h"

#include <algorithm>
#include <cstring>

#include "fragments/host_positions.h"
#include "fragments/spvtextfrags_to_ssml.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace fragments_detail {

namespace {

// A cursor over positions written out one by one, with the same operations as a HostPositionCursor. It counts on for
// ever but never reads behind the end entry.
class VectorCursor {
public:
    explicit VectorCursor(const std::vector<std::uint32_t>& positions)
        : positions_(positions.data()), count_(positions.size()) {}

    std::uint32_t next() const { return count_ == 0 ? 0 : positions_[std::min(cursor_, count_ - 1)]; }
    std::uint32_t end() const { return count_ == 0 ? 0 : positions_[count_ - 1]; }
    void skip_one() { ++cursor_; }

    void take(std::uint32_t* map, std::size_t n) {
        const std::size_t own = cursor_ < count_ ? std::min(n, count_ - cursor_) : 0;
        std::copy_n(positions_ + (own == 0 ? 0 : cursor_), own, map);
        std::fill_n(map + own, n - own, end());
        cursor_ += n;
    }

private:
    const std::uint32_t* positions_;
    std::size_t count_;
    std::size_t cursor_ = 0;
};

bool opens_markup(char c) { return c == '<' || c == '&'; }

// The first offset at or behind `i` that holds "<" or "&", or the document's length.
std::size_t find_markup(std::string_view ssml, std::size_t i) {
#ifdef __SSE2__
    const __m128i tag = _mm_set1_epi8('<');
    const __m128i entity = _mm_set1_epi8('&');
    for (; ssml.size() - i >= 16; i += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(ssml.data() + i));
        const __m128i hits = _mm_or_si128(_mm_cmpeq_epi8(block, tag), _mm_cmpeq_epi8(block, entity));
        const int mask = _mm_movemask_epi8(hits);
        if (mask != 0) return i + static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned>(mask)));
    }
#endif
    while (i < ssml.size() && !opens_markup(ssml[i])) ++i;
    return i;
}

// Tells where a tag ends, byte by byte. A ">" between quotes does not end it, and only the quote that opened closes
// again.
class TagEnd {
public:
    bool is_at(char c) {
        if (quote_ != 0) {
            if (c == quote_) quote_ = 0;
        } else if (c == '"' || c == '\'') {
            quote_ = c;
        } else {
            return c == '>';
        }
        return false;
    }

private:
    char quote_ = 0;
};

// The offset behind the tag that opens at `i`. Bytes that mean nothing to its end are passed over in blocks.
std::size_t behind_tag(std::string_view ssml, std::size_t i) {
    TagEnd end;
#ifdef __SSE2__
    for (; ssml.size() - i >= 16; i += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(ssml.data() + i));
        const auto holds = [block](char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
        const __m128i hits = _mm_or_si128(holds('>'), _mm_or_si128(holds('"'), holds('\'')));
        for (auto mask = static_cast<unsigned>(_mm_movemask_epi8(hits)); mask != 0; mask &= mask - 1) {
            const std::size_t at = i + static_cast<std::size_t>(__builtin_ctz(mask));
            if (end.is_at(ssml[at])) return at + 1;
        }
    }
#endif
    while (i < ssml.size()) {
        if (end.is_at(ssml[i++])) break;
    }
    return i;
}

std::size_t behind_entity(std::string_view ssml, std::size_t i) {
    const std::size_t semicolon = ssml.find(';', i);
    return semicolon == std::string_view::npos ? ssml.size() : semicolon + 1;
}

// Writes `position` to [target, target_end), in front of room_end. Tags are short and many, so where there is room
// whole blocks are written, and what follows goes over what is too much.
void fill_tag(std::uint32_t* target, const std::uint32_t* target_end, const std::uint32_t* room_end,
              std::uint32_t position) {
    constexpr std::ptrdiff_t block = 8;
    while (target < target_end && room_end - target >= block) {
        for (std::ptrdiff_t k = 0; k < block; ++k) target[k] = position;
        target += block;
    }
    while (target < target_end) *target++ = position;
}

// Gives the number of text bytes that it found.
template <typename Cursor>
std::size_t fill(std::uint32_t* map, std::string_view ssml, Cursor text) {
    const std::uint32_t* const map_end = map + ssml.size() + 1;
    std::size_t found = 0;
    std::size_t i = 0;
    while (i < ssml.size()) {
        const std::size_t start = i;
        if (ssml[i] == '<') {
            i = behind_tag(ssml, i);
            fill_tag(map + start, map + i, map_end, text.next());
        } else if (ssml[i] == '&') {
            i = behind_entity(ssml, i);
            std::fill_n(map + start, i - start, text.next());
            text.skip_one();
            ++found;
        } else {
            i = find_markup(ssml, i);
            text.take(map + start, i - start);
            found += i - start;
        }
    }
    map[ssml.size()] = text.end();
    return found;
}

}  // namespace

bool is_whole_tags(std::string_view markup) {
    bool in_tag = false;
    TagEnd end;
    for (const char c : markup) {
        if (!in_tag && c != '<') return false;
        in_tag = !in_tag || !end.is_at(c);
    }
    return !in_tag;
}

std::size_t fill_ssml_sapi_posmap(std::uint32_t* map, std::string_view ssml, const HostPositions& positions) {
    return fill(map, ssml, HostPositionCursor(positions));
}

}  // namespace fragments_detail

void build_ssml_sapi_posmap(std::vector<std::uint32_t>* map, const std::string& ssml,
                            const std::vector<std::uint32_t>& positions) {
    map->resize(ssml.size() + 1);
    fragments_detail::fill(map->data(), ssml, fragments_detail::VectorCursor(positions));
}
