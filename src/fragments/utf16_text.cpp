// Blocks of units go through a small buffer of bytes, and from there to the end of the text.
//
// ASCII, by far the most common, is narrowed here, sixteen units a step. From the first other unit on, everything up
// to the next long stretch of ASCII is one run: its positions follow from the units alone, and its bytes come from one
// call of the platform. Lone surrogates are not in any run; each goes to the platform by itself, since what it makes
// of them is its own choice.

#include "fragments/utf16_text.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <stdexcept>

#include "fragments/ascii_units.h"
#include "fragments/host_positions.h"
#include "speechtext/speechtext.h"

namespace fragments_detail {

namespace {

// Room for what the platform's conversion gives for one character, with some to spare.
constexpr std::size_t character_bytes = 10;
constexpr std::size_t block_units = 4096;
// No character takes more than 3 bytes a unit; a lone one may take what the platform likes.
constexpr std::size_t block_bytes = 3 * block_units + character_bytes;
// So much ASCII in a row pays for ending a run.
constexpr std::size_t ascii_stretch = 32;

bool is_high_surrogate(WCHAR unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_surrogate(WCHAR unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool is_surrogate(WCHAR unit) { return unit >= 0xD800 && unit <= 0xDFFF; }
bool takes_two_bytes(WCHAR unit) { return unit >= 0x80 && unit < 0x800; }
bool takes_three_bytes(WCHAR unit) { return unit >= 0x800 && !is_surrogate(unit); }

template <typename Test>
std::size_t count_while(const WCHAR* units, std::size_t count, Test test) {
    return static_cast<std::size_t>(std::find_if_not(units, units + count, test) - units);
}

// The units of the surrogate pairs at `units`.
std::size_t count_paired(const WCHAR* units, std::size_t count) {
    std::size_t i = 0;
    while (i < count && utf16_character_length(units + i, count - i) == 2) i += 2;
    return i;
}

// Gives 0 where the platform gives no bytes. `target` has room for character_bytes.
std::size_t convert_character(const WCHAR* units, std::size_t length, char* target) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, units, static_cast<int>(length), target,
                                         static_cast<int>(character_bytes), nullptr, nullptr);
    return size > 0 ? static_cast<std::size_t>(size) : 0;
}

// `size` is what the character of `length` units was converted to. Gives the units that are done with it.
std::size_t add_position_of_character(std::size_t length, std::size_t size, std::uint32_t position,
                                      HostPositions* positions) {
    if (size == 0) return 1;
    if (size == 4 ? length == 2 : size < 4 && length == 1) {
        positions->add_characters(position, 1, static_cast<unsigned int>(size));
    } else {
        positions->add_bytes(position, size);
    }
    return length;
}

class BlockConverter {
public:
    BlockConverter(Speechtext* text, HostPositions* positions) : text_(text), positions_(positions) {}

    // Converts `count` units, at most block_units, that do not end within a pair.
    void convert(const WCHAR* units, std::size_t count, std::uint32_t first_position);

private:
    std::size_t take_ascii(const WCHAR* units, std::size_t count, std::uint32_t position);
    std::size_t take_run(const WCHAR* units, std::size_t count, std::uint32_t position);
    std::size_t take_character(const WCHAR* units, std::size_t count, std::uint32_t position);
    void flush();

    Speechtext* text_;
    HostPositions* positions_;
    bool in_runs_ = true;
    std::size_t size_ = 0;
    char bytes_[block_bytes];
};

std::size_t BlockConverter::take_ascii(const WCHAR* units, std::size_t count, std::uint32_t position) {
    const std::size_t done = narrow_ascii(units, count, bytes_ + size_);
    if (done > 0) positions_->add_characters(position, done, 1);
    size_ += done;
    return done;
}

struct Stretch {
    std::size_t units;
    std::size_t bytes;
};

// Adds the positions of the well-formed characters in front of a lone surrogate or a long stretch of ASCII.
Stretch add_positions_of_run(const WCHAR* units, std::size_t count, std::uint32_t position, HostPositions* positions) {
    Stretch run{0, 0};
    while (run.units < count) {
        const WCHAR* next = units + run.units;
        const std::size_t left = count - run.units;
        std::size_t taken;
        std::size_t characters;
        unsigned int bytes;
        if (is_ascii(*next)) {
            bytes = 1;
            taken = characters = count_while(next, std::min(left, ascii_stretch), is_ascii);
            if (taken == ascii_stretch) break;
        } else if (takes_two_bytes(*next)) {
            bytes = 2;
            taken = characters = count_while(next, left, takes_two_bytes);
        } else if (takes_three_bytes(*next)) {
            bytes = 3;
            taken = characters = count_while(next, left, takes_three_bytes);
        } else {
            bytes = 4;
            taken = count_paired(next, left);
            characters = taken / 2;
            if (taken == 0) break;
        }
        positions->add_characters(position + static_cast<std::uint32_t>(run.units), characters, bytes);
        run.units += taken;
        run.bytes += characters * bytes;
    }
    return run;
}

// Gives 0, with nothing written, at a lone surrogate. The same when the platform's answer is not as long as UTF-8 has
// it; then all that follows goes character by character.
std::size_t BlockConverter::take_run(const WCHAR* units, std::size_t count, std::uint32_t position) {
    if (is_surrogate(*units) && utf16_character_length(units, count) == 1) return 0;
    const HostPositions::Savepoint before = positions_->save();
    const Stretch run = add_positions_of_run(units, count, position, positions_);
    const int size = static_cast<int>(run.bytes);
    const int converted =
        WideCharToMultiByte(CP_UTF8, 0, units, static_cast<int>(run.units), bytes_ + size_, size, nullptr, nullptr);
    if (converted != size) {
        positions_->restore(before);
        in_runs_ = false;
        return 0;
    }
    size_ += run.bytes;
    return run.units;
}

std::size_t BlockConverter::take_character(const WCHAR* units, std::size_t count, std::uint32_t position) {
    if (size_ > block_bytes - character_bytes - 3 * (count - 1)) flush();
    const std::size_t length = utf16_character_length(units, count);
    const std::size_t size = convert_character(units, length, bytes_ + size_);
    size_ += size;
    return add_position_of_character(length, size, position, positions_);
}

void BlockConverter::flush() {
    append_bytes(text_, bytes_, size_);
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

std::size_t whole_characters(const WCHAR* units, std::size_t count, std::size_t most) {
    if (count <= most) return count;
    return utf16_character_length(units + most - 1, 2) == 2 ? most - 1 : most;
}

void throw_too_long() { throw std::length_error("text of 2 GiB or more"); }

void append_bytes(Speechtext* text, const char* bytes, std::size_t size) {
    if (size > static_cast<std::size_t>(INT_MAX) - text->size()) throw_too_long();
    text->append(bytes, size);
}

std::size_t append_character(const WCHAR* units, std::size_t length, std::uint32_t position, Speechtext* text,
                             HostPositions* positions) {
    char bytes[character_bytes];
    const std::size_t size = convert_character(units, length, bytes);
    append_bytes(text, bytes, size);
    return add_position_of_character(length, size, position, positions);
}

void append_utf16(const WCHAR* units, std::size_t count, std::uint32_t first_position, Speechtext* text,
                  HostPositions* positions) {
    BlockConverter converter(text, positions);
    // The caller reserved for ASCII. Where that runs out, there is much else, and room is made for the worst at once.
    while (count > 0) {
        const std::size_t block = whole_characters(units, count, block_units);
        if (text->text.capacity() - text->size() < 3 * block) text->reserve(text->size() + 3 * count, 0);
        converter.convert(units, block, first_position);
        units += block;
        count -= block;
        first_position += static_cast<std::uint32_t>(block);
    }
}

}  // namespace fragments_detail
