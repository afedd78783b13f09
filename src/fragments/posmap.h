// The position map over plain arrays: what build_ssml_sapi_posmap does, for callers that own the memory themselves.

#ifndef NELVA_FRAGMENTS_POSMAP_H
#define NELVA_FRAGMENTS_POSMAP_H

#include <cstddef>
#include <cstdint>
#include <string_view>

// Writes ssml.size() + 1 entries to `map`. `positions` may be null when `count` is 0; the map is all zeroes then.
void fill_ssml_sapi_posmap(std::uint32_t* map, std::string_view ssml, const std::uint32_t* positions,
                           std::size_t count);

#endif
