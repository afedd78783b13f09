// How far a text goes on with good characters, a block at a time.
#pragma once

#include <cstddef>

#include "text/byte_block.h"

namespace text_detail {

struct good_run {
    std::size_t bytes;       // 0 if the block holds a character that is not good
    std::size_t characters;  // in those bytes
};

// The good characters at the start of a block of 64 bytes that begins at a character: those that decode below 0xFFFF.
inline good_run good_characters(const char* block) {
    if (high_bits(block) == 0) return {block_size, block_size};
    const bit_planes planes = planes_of(block);
    const utf8_forms forms = forms_of(planes);
    if ((malformed(forms) | ffff_units(planes, forms)) != 0) return {0, 0};
    const std::size_t bytes = whole_bytes(forms);
    const byte_mask inside = ~byte_mask{0} >> (block_size - bytes);
    return {bytes, static_cast<std::size_t>(std::popcount(~forms.continuation & inside))};
}

}  // namespace text_detail
