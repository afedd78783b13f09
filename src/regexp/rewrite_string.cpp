// The evaluation of a replacement string over plain text.
#include "regexp/rewrite_string.h"

#include <stdexcept>

#include "regexp/replacer.h"
#include "regexp/rewrite_functions.h"
#include "speechtext/speechtext.h"

namespace regexp_detail {

void StringRewriter::evaluate(const int* groups, int ngroups, std::string* out) {
    out_ = out;
    arguments_.clear();
    walk_.run(groups, ngroups);
}

void StringRewriter::literal(std::size_t pos, std::size_t n) { out_->append(rewrite_.substr(pos, n)); }

// substr() throws std::out_of_range for a start behind the text, and takes what there is of a longer range.
void StringRewriter::group(int start, int end) {
    out_->append(text_.substr(static_cast<std::size_t>(start), group_length(start, end)));
}

void StringRewriter::escaped(const char* bytes, std::size_t n) { out_->append(bytes, n); }

void StringRewriter::opened(const RewriteSubexpression&) { arguments_.push_back(out_->size()); }

void StringRewriter::closed(RewriteFunction function) {
    const std::size_t begin = arguments_.back();
    arguments_.pop_back();
    const bool changes_case = function == RewriteFunction::lowercase || function == RewriteFunction::uppercase;
    if (!changes_case && function != RewriteFunction::pause) return;

    const std::string argument = out_->substr(begin);
    out_->resize(begin);
    if (function == RewriteFunction::pause) {
        parse_rewrite_break(argument);
    } else {
        // By way of rich text, so that text which is not valid stops the program with the same words.
        const Speechtext text((regexp::Match(argument)));
        *out_ += (function == RewriteFunction::lowercase ? makelower(text) : makeupper(text)).as_string();
    }
}

}  // namespace regexp_detail

std::string make_re_rewrite(const std::string& text, const std::string& rewrite, int* groups, int ngroups,
                            const regexp::RE_Options&) {
    std::string result;
    regexp_detail::StringRewriter(text, rewrite).evaluate(groups, ngroups, &result);
    return result;
}
