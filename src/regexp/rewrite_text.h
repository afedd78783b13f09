// The evaluation of a replacement string over rich text.
#pragma once

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "regexp/draft.h"
#include "regexp/regexp.h"
#include "regexp/rewrite_parser.h"

namespace regexp_detail {

// One evaluator serves all matches of a subject text with one replacement string. Both must outlive it; so must it the
// drafts that it gives.
class TextRewriter : private RewriteSink {
public:
    TextRewriter(const Speechtext& text, const Speechtext& rewrite, const regexp::RE_Options& options);
    TextRewriter(const TextRewriter&) = delete;
    TextRewriter& operator=(const TextRewriter&) = delete;

    // The result for one match, valid until the next call; the objects that its records point to stay. attrs, which may
    // be null, are the text attributes under which it begins. Throws regexp::invalid_regexp_replacement.
    //
    // DOES NOT RETURN when a mark that "marks-last" put at the very end of the output is followed by a piece that does
    // not bring the same mark.
    const Draft& evaluate(const int* groups, int ngroups, const SpeechtextTextAttrs* attrs);

private:
    // The output of the replacement string, or of an argument, that is being evaluated.
    struct Level {
        Draft out;
        const SpeechtextTextAttrs* attrs = nullptr;
    };

    // The argument of an outermost subexpression of a replacement string that has records.
    struct Argument {
        explicit Argument(Speechtext&& cut_out) : text(std::move(cut_out)), index(text.attrs) {}
        const Speechtext text;
        const RecordIndex index;
    };

    void literal(std::size_t pos, std::size_t n) override;
    void group(int start, int end) override;
    void escaped(const char* bytes, std::size_t n) override;
    void opened(const RewriteSubexpression& subexpression) override;
    void closed(RewriteFunction function) override;

    void begin_level(const SpeechtextTextAttrs* attrs);
    void take_argument(const RewriteSubexpression& subexpression);
    void append(const RichView& source, std::size_t pos, std::size_t n);
    void take_back_marks(const RichView& source, std::size_t pos, std::size_t n);

    const RecordIndex text_index_;
    const RecordIndex rewrite_index_;
    const RichView text_;
    const Speechtext& rewrite_;
    const RichView rewrite_view_;
    const regexp::RE_Options& options_;
    RewriteWalk walk_;

    DraftStore store_;
    std::vector<Level> levels_;  // kept from match to match; the first depth_ are in use
    std::size_t depth_ = 0;
    // What literals are copied from: the replacement string itself, or the argument of the outermost subexpression,
    // which begins at literals_base_.
    RichView literals_;
    std::size_t literals_base_ = 0;
    std::map<std::size_t, Argument> arguments_;  // by their beginning
};

}  // namespace regexp_detail
