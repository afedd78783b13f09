// What a fragment's SAPI state becomes in the rich text's attributes.

#ifndef NELVA_FRAGMENTS_FRAGMENT_ATTRS_H
#define NELVA_FRAGMENTS_FRAGMENT_ATTRS_H

#include "platform/sapi.h"

class SpeechtextTextAttrs;

namespace fragments_detail {

// Brings the running attributes up to date for `fragment`: language, emphasis, prosody and say-as. Whatever the state
// does not speak of stays as the fragments before left it; so does the format of a date, also where no date follows.
//
// `previous` is the fragment before, null for the first one. `language` is for a LangID of 0 and must not be null.
// Gives false when nothing was written because the two fragments' states agree in all that is read here; true says
// only that something was written, not that it differs.
bool update_fragment_attrs(SpeechtextTextAttrs* attrs, const SPVTEXTFRAG& fragment, const SPVTEXTFRAG* previous,
                           const char* language);

}  // namespace fragments_detail

#endif
