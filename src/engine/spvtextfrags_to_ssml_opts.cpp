// The mark names that this engine dispatches on when the synthesiser hands a mark back: bookmarks and pitch changes.
// Word and sentence marks are off, since the synthesiser reports words and sentences by itself.

#include "fragments/spvtextfrags_to_ssml.h"

const spvtextfrags_to_ssml_opts spvtextfrags_to_ssml_opts_impl = {
    .bookmark_prefix = "B",
    .pitch_prefix = "P",
    .sentence_prefix = nullptr,
    .word_prefix = nullptr,
};
