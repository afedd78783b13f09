// Blocks of units go through two small buffers, bytes and positions, and from there to the ends of text and vector.
//
// ASCII, by far the most common, is narrowed here, eight units a step. From the first other unit on, everything up to
// the next long stretch of ASCII is one run: its positions follow from the units alone, and its bytes come from one
// call of the platform. Lone surrogates are not in any run; each goes to the platform by itself, since what it makes
// of them is its own choice.

#include "fragments/utf16_text.h"

#include <algorithm>
#include <climits>
#include <stdexcept>

#include "speechtext/speechtext.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr std::size_t block_units = 1024;
// No character takes more than 3 bytes a unit; a lone one may take what the platform likes.
constexpr std::size_t block_bytes = 3 * block_units + character_bytes;
// So much ASCII in a row pays for ending a run.
constexpr std::size_t ascii_stretch = 32;

bool is_high_surrogate(WCHAR unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(WCHAR unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool is_surrogate(WCHAR unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

class BlockConverter {
public:
    BlockConverter(Speechtext* text, std::vector<std::uint32_t>* positions) : text_(text), positions_(positions) {}

    // Converts `count` units, at most block_units, that do not end within a pair.
    void convert(const WCHAR* units, std::size_t count, std::uint32_t first_position);

private:
    std::size_t take_ascii(const WCHAR* units, std::size_t count, std::uint32_t position);
    std::size_t take_run(const WCHAR* units, std::size_t count, std::uint32_t position);
    std::size_t take_character(const WCHAR* units, std::size_t count, std::uint32_t position);
    void flush();

    Speechtext* text_;
    std::vector<std::uint32_t>* positions_;
    bool in_runs_ = true;
    std::size_t size_ = 0;  // of both buffers
    char bytes_[block_bytes];
    // A run writes four entries for each character, whatever its length, and goes on behind those that count.
    std::uint32_t byte_positions_[block_bytes + 4];
};

#ifdef __SSE2__
// Narrows eight units at a time while they are ASCII; gives the number done.
std::size_t narrow_ascii_blocks(const WCHAR* units, std::size_t count, std::uint32_t position, char* bytes,
                                std::uint32_t* positions) {
    const __m128i beyond_ascii = _mm_set1_epi16(static_cast<short>(0xFF80));
    const __m128i eight = _mm_set1_epi32(8);
    __m128i low = _mm_add_epi32(_mm_set1_epi32(static_cast<int>(position)), _mm_setr_epi32(0, 1, 2, 3));
    __m128i high = _mm_add_epi32(low, _mm_set1_epi32(4));
    std::size_t i = 0;
    for (; count - i >= 8; i += 8) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units + i));
        const __m128i ascii = _mm_cmpeq_epi16(_mm_and_si128(block, beyond_ascii), _mm_setzero_si128());
        if (_mm_movemask_epi8(ascii) != 0xFFFF) break;
        _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes + i), _mm_packus_epi16(block, block));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(positions + i), low);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(positions + i + 4), high);
        low = _mm_add_epi32(low, eight);
        high = _mm_add_epi32(high, eight);
    }
    return i;
}
#endif

std::size_t BlockConverter::take_ascii(const WCHAR* units, std::size_t count, std::uint32_t position) {
    char* bytes = bytes_ + size_;
    std::uint32_t* positions = byte_positions_ + size_;
    std::size_t i = 0;
#ifdef __SSE2__
    i = narrow_ascii_blocks(units, count, position, bytes, positions);
#endif
    for (; i < count && units[i] < 0x80; ++i) {
        bytes[i] = static_cast<char>(units[i]);
        positions[i] = position + static_cast<std::uint32_t>(i);
    }
    size_ += i;
    return i;
}

// The well-formed characters from a unit that is not ASCII up to a long stretch of ASCII. Gives 0, with nothing
// written, at a lone surrogate. The same when the platform's answer is not as long as UTF-8 has it; then all that
// follows goes character by character.
std::size_t BlockConverter::take_run(const WCHAR* units, std::size_t count, std::uint32_t position) {
    std::size_t i = 0;
    std::size_t ascii = 0;
    std::size_t end = size_;
    while (i < count && ascii < ascii_stretch) {
        const std::size_t length = utf16_character_length(units + i, count - i);
        const WCHAR unit = units[i];
        if (length == 1 && is_surrogate(unit)) break;
        const std::size_t bytes = length == 2 ? 4 : unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
        std::fill_n(byte_positions_ + end, 4, position + static_cast<std::uint32_t>(i));
        ascii = unit < 0x80 ? ascii + 1 : 0;
        end += bytes;
        i += length;
    }
    if (i == 0) return 0;
    const std::size_t size = end - size_;
    const int converted = WideCharToMultiByte(CP_UTF8, 0, units, static_cast<int>(i), bytes_ + size_,
                                              static_cast<int>(size), nullptr, nullptr);
    in_runs_ = converted == static_cast<int>(size);
    if (!in_runs_) return 0;
    size_ = end;
    return i;
}

std::size_t BlockConverter::take_character(const WCHAR* units, std::size_t count, std::uint32_t position) {
    char bytes[character_bytes];
    const std::size_t length = utf16_character_length(units, count);
    const std::size_t size = convert_character(units, length, bytes);
    if (size_ + size > block_bytes - 3 * (count - 1)) flush();
    for (std::size_t k = 0; k < size; ++k) {
        bytes_[size_ + k] = bytes[k];
        byte_positions_[size_ + k] = position;
    }
    size_ += size;
    return size == 0 ? 1 : length;
}

void BlockConverter::flush() {
    append_bytes(text_, bytes_, size_);
    positions_->insert(positions_->end(), byte_positions_, byte_positions_ + size_);
    size_ = 0;
}

void BlockConverter::convert(const WCHAR* units, std::size_t count, std::uint32_t first_position) {
    std::size_t i = 0;
    while (i < count) {
        const std::uint32_t position = first_position + static_cast<std::uint32_t>(i);
        std::size_t taken = take_ascii(units + i, count - i, position);
        if (taken == 0 && in_runs_) taken = take_run(units + i, count - i, position);
        if (taken == 0) taken = take_character(units + i, count - i, position);
        i += taken;
    }
    flush();
}

}  // namespace

std::size_t utf16_character_length(const WCHAR* units, std::size_t remaining) {
    return remaining >= 2 && is_high_surrogate(units[0]) && is_low_surrogate(units[1]) ? 2 : 1;
}

std::size_t convert_character(const WCHAR* units, std::size_t length, char (&target)[character_bytes]) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, units, static_cast<int>(length), target,
                                         static_cast<int>(character_bytes), nullptr, nullptr);
    return size > 0 ? static_cast<std::size_t>(size) : 0;
}

std::size_t utf8_size_bound(const WCHAR* units, std::size_t count) {
    std::size_t bound = count;
    while (count > 0) {
        // Sixteen bits for the sum let the compiler count eight units a step.
        const std::size_t block = count < 16384 ? count : 16384;
        std::uint16_t more = 0;
        for (std::size_t i = 0; i < block; ++i) {
            more = static_cast<std::uint16_t>(more + (units[i] >= 0x80) + (units[i] >= 0x800));
        }
        bound += more;
        units += block;
        count -= block;
    }
    return bound;
}

void throw_too_long() { throw std::length_error("text of 2 GiB or more"); }

void append_bytes(Speechtext* text, const char* bytes, std::size_t size) {
    if (size > static_cast<std::size_t>(INT_MAX) - text->size()) throw_too_long();
    text->append(bytes, size);
}

void append_utf16(const WCHAR* units, std::size_t count, std::uint32_t first_position, Speechtext* text,
                  std::vector<std::uint32_t>* positions) {
    BlockConverter converter(text, positions);
    while (count > 0) {
        std::size_t block = count < block_units ? count : block_units;
        // A pair must not be cut. One that stays whole in the next block is no loss.
        if (block < count && is_high_surrogate(units[block - 1]) && is_low_surrogate(units[block])) --block;
        converter.convert(units, block, first_position);
        units += block;
        count -= block;
        first_position += static_cast<std::uint32_t>(block);
    }
}
