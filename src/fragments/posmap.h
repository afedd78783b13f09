// The position map in memory that the caller owns, from the positions as the fragment walk leaves them.

#ifndef NELVA_FRAGMENTS_POSMAP_H
#define NELVA_FRAGMENTS_POSMAP_H

#include <cstdint>
#include <string_view>

class HostPositions;

// Writes ssml.size() + 1 entries to `map`, by the rules of build_ssml_sapi_posmap.
void fill_ssml_sapi_posmap(std::uint32_t* map, std::string_view ssml, const HostPositions& positions);

#endif
