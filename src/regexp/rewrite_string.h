// The evaluation of a replacement string over plain text: what the evaluation over rich text gives where there are no
// records, at a fraction of its cost.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "regexp/rewrite_parser.h"

namespace regexp_detail {

class StringRewriter : private RewriteSink {
public:
    // Both must outlive the evaluator.
    StringRewriter(std::string_view text, std::string_view rewrite)
        : text_(text), rewrite_(rewrite), walk_(rewrite, *this) {}
    StringRewriter(const StringRewriter&) = delete;
    StringRewriter& operator=(const StringRewriter&) = delete;

    // Appends the result for one match to *out. Throws regexp::invalid_regexp_replacement, with a part of the result
    // appended.
    void evaluate(const int* groups, int ngroups, std::string* out);

private:
    void literal(std::size_t pos, std::size_t n) override;
    void group(int start, int end) override;
    void escaped(const char* bytes, std::size_t n) override;
    void opened(const RewriteSubexpression& subexpression) override;
    void closed(RewriteFunction function) override;

    const std::string_view text_;
    const std::string_view rewrite_;
    RewriteWalk walk_;
    std::string* out_ = nullptr;
    // Where in *out_ the arguments at hand begin.
    std::vector<std::size_t> arguments_;
};

}  // namespace regexp_detail
