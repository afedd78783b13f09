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

// The offset behind the tag that opens at `i`. A ">" between quotes does not end it, and only the quote that opened
// closes again.
std::size_t behind_tag(std::string_view ssml, std::size_t i) {
    char quote = 0;
    while (i < ssml.size()) {
        const char c = ssml[i++];
        if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            break;
        }
    }
    return i;
}

std::size_t behind_entity(std::string_view ssml, std::size_t i) {
    const std::size_t semicolon = ssml.find(';', i);
    return semicolon == std::string_view::npos ? ssml.size() : semicolon + 1;
}

template <typename Cursor>
void fill(std::uint32_t* map, std::string_view ssml, Cursor text) {
    std::size_t i = 0;
    while (i < ssml.size()) {
        const std::size_t start = i;
        if (ssml[i] == '<') {
            i = behind_tag(ssml, i);
            std::fill_n(map + start, i - start, text.next());
        } else if (ssml[i] == '&') {
            i = behind_entity(ssml, i);
            std::fill_n(map + start, i - start, text.next());
            text.skip_one();
        } else {
            i = find_markup(ssml, i);
            text.take(map + start, i - start);
        }
    }
    map[ssml.size()] = text.end();
}

}  // namespace

void fill_ssml_sapi_posmap(std::uint32_t* map, std::string_view ssml, const HostPositions& positions) {
    fill(map, ssml, HostPositionCursor(positions));
}

void build_ssml_sapi_posmap(std::vector<std::uint32_t>* map, const std::string& ssml,
                            const std::vector<std::uint32_t>& positions) {
    map->resize(ssml.size() + 1);
    fill(map->data(), ssml, VectorCursor(positions));
}
