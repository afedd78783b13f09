// The nine functions of the replacement-string language, over rich text.
#pragma once

#include "regexp/draft.h"
#include "regexp/rewrite_parser.h"

namespace regexp_detail {

// Changes the argument's value into the function's. attrs, which may be null, are those under which the argument began.
// What is made on the way goes into the store. "lowercase" and "uppercase" stop the program on text that is not valid
// UTF-8; "break" throws regexp::invalid_regexp_replacement.
void apply_rewrite_function(RewriteFunction function, const SpeechtextTextAttrs* attrs, Draft& value,
                            DraftStore& store);

}  // namespace regexp_detail
