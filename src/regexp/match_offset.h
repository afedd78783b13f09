// Where a match stands in its text.
#pragma once

#include <cstdint>
#include <string>

#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

namespace regexp {

// Addresses as numbers: these may be compared and subtracted whatever they point to, also when one is null.
inline std::uintptr_t address(const char* bytes) { return reinterpret_cast<std::uintptr_t>(bytes); }

// The byte offset of the piece in the string of text, as the records' positions count.
inline int match_offset(const pcrecpp::StringPiece& piece, const Speechtext& text) {
    return static_cast<int>(address(piece.data()) - address(text.as_string().data()));
}

}  // namespace regexp
