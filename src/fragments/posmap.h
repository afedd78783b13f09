// The position map in memory that the caller owns, from the positions as the fragment walk leaves them.

#ifndef NELVA_FRAGMENTS_POSMAP_H
#define NELVA_FRAGMENTS_POSMAP_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace fragments_detail {

class HostPositions;

// Writes ssml.size() + 1 entries to `map`, by the rules of build_ssml_sapi_posmap. Gives the number of text bytes that
// it found in the document, which is that of `positions` unless the writer left some out or a host's markup has text.
std::size_t fill_ssml_sapi_posmap(std::uint32_t* map, std::string_view ssml, const HostPositions& positions);

// Does the map see nothing but tags in `markup`, the last of them ended?
bool is_whole_tags(std::string_view markup);

}  // namespace fragments_detail

#endif
