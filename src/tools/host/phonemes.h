// SAPI's phoneme ids for American English, the symbols of <pron sym="...">.
#ifndef NELVA_TOOLS_HOST_PHONEMES_H
#define NELVA_TOOLS_HOST_PHONEMES_H

#include "tools/host/utf.h"

namespace host {

// The ids of the symbols in a list that blanks separate, case ignored. Symbols of other languages have no id here and
// are left out.
WideString phoneme_ids(WideView symbols);

}  // namespace host

#endif
