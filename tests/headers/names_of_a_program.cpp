// A program may use short names of its own. Were the library's inner classes called the same, in the global namespace,
// the linker would take the functions of one for those of the other; here they would not compile.
enum class Draft { first };
enum class DraftStore { first };
enum class Edit { first };
enum class RecordIndex { first };
enum class RichView { first };
enum class RewriteSink { first };
enum class RewriteWalk { first };
enum class StringEdits { first };
enum class StringRewriter { first };
enum class TextEdits { first };
enum class TextRewriter { first };
using RecordSpan = int;

#include "regexp/edits.h"
#include "regexp/rewrite_functions.h"
#include "regexp/rewrite_string.h"
#include "regexp/rewrite_text.h"
