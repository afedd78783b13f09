// The walk from a host's fragments to the rich text. Private to this folder and its tests.

#ifndef NELVA_FRAGMENTS_FRAGMENT_WALK_H
#define NELVA_FRAGMENTS_FRAGMENT_WALK_H

#include <cstdint>
#include <vector>

#include "fragments/spvtextfrags_to_ssml.h"

class Speechtext;

namespace fragments_detail {

class HostPositions;

// Overwrites *text with the fragments' rich text, and *positions with the host position of each of its bytes outside
// raw markup and, as the end, that behind the last text fragment.
//
// Each fragment adds its pitch mark and, where its state differs from the one before, a record of text attributes;
// then, by its action, text, a break, a bookmark mark or raw markup. A fragment that cannot be converted adds less.
// A fragment with a length but no text (a null pTextStart) counts as one without text.
//
// `language` is read only where a fragment's LangID is 0; null is taken as "". The result is always 0. A text whose
// bytes do not fit into signed 32 bits throws std::length_error before anything behind it is read; std::bad_alloc
// passes through. What the two outputs hold then is not settled.
int spvtextfrags_to_speechtext(const SPVTEXTFRAG* fragments, Speechtext* text, HostPositions* positions,
                               const char* language, const spvtextfrags_to_ssml_opts& opts);

// The same with the engine's mark prefixes, and with the positions written out: one for each byte and a last one, the
// end.
int spvtextfrags_to_speechtext(const SPVTEXTFRAG* fragments, Speechtext* text,
                               std::vector<std::uint32_t>* text_positions, const char* language);

}  // namespace fragments_detail

#endif
