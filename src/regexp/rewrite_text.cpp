// The evaluation of a replacement string over rich text: what is put where. The functions are in rewrite_functions.cpp.
#include "regexp/rewrite_text.h"

#include <set>

#include "regexp/replacer.h"
#include "regexp/rewrite_functions.h"

namespace regexp_detail {

namespace {

constexpr auto npos = std::string::npos;

using MarkSet = std::set<SpeechtextMark, Compare_SpeechtextMark_identity_less>;

// The marks of the range, both its ends included. The bound wraps.
MarkSet marks_in(const RichView& source, std::size_t pos, std::size_t n) {
    MarkSet marks;
    const std::size_t bound = pos + n;
    for (std::size_t at = source.first_not_before(pos); at < source.records.size(); ++at) {
        const SpeechtextAttrsRecord& record = source.records[at];
        const bool in_front = position_below(record.position, pos);
        if (!in_front && static_cast<std::size_t>(record.position) > bound) break;
        if (!in_front && record.attrs->is_mark()) marks.insert(static_cast<const SpeechtextMark&>(*record.attrs));
    }
    return marks;
}

// A trailing mark that does not come in again is meant to keep the evaluation here. The volatile object makes this
// endless loop one that the language allows.
[[noreturn]] void stay_here() {
    for (volatile bool forever = true;;) {
        if (!forever) forever = true;
    }
}

}  // namespace

TextRewriter::TextRewriter(const Speechtext& text, const Speechtext& rewrite, const regexp::RE_Options& options)
    : text_index_(text.attrs),
      rewrite_index_(rewrite.attrs),
      text_{text.as_string(), text.attrs, &text_index_},
      rewrite_(rewrite),
      rewrite_view_{rewrite.as_string(), rewrite.attrs, &rewrite_index_},
      options_(options),
      walk_(rewrite.as_string(), *this),
      literals_(rewrite_view_) {}

const Draft& TextRewriter::evaluate(const int* groups, int ngroups, const SpeechtextTextAttrs* attrs) {
    depth_ = 0;
    literals_ = rewrite_view_;
    literals_base_ = 0;
    begin_level(attrs);
    walk_.run(groups, ngroups);
    return levels_.front().out;
}

void TextRewriter::begin_level(const SpeechtextTextAttrs* attrs) {
    if (depth_ == levels_.size()) levels_.emplace_back();
    Level& level = levels_[depth_++];
    level.out.clear();
    level.attrs = attrs;
    if (attrs) level.out.append_at_end(attrs);
}

void TextRewriter::literal(std::size_t pos, std::size_t n) { append(literals_, pos - literals_base_, n); }

void TextRewriter::group(int start, int end) {
    append(text_, static_cast<std::size_t>(start), group_length(start, end));
}

void TextRewriter::escaped(const char* bytes, std::size_t n) { levels_[depth_ - 1].out.text.append(bytes, n); }

void TextRewriter::opened(const RewriteSubexpression& subexpression) {
    if (depth_ == 1 && !rewrite_view_.records.empty()) take_argument(subexpression);
    begin_level(levels_[depth_ - 1].out.contentattrs_at_end());
}

// The argument is cut out of the replacement string as a text of its own. Of its records only the text attributes in
// force at its start come along, and no subexpression inside it has any others.
void TextRewriter::take_argument(const RewriteSubexpression& subexpression) {
    auto held = arguments_.find(subexpression.begin);
    if (held == arguments_.end()) {
        const Speechtext inside = rewrite_.substr(subexpression.begin, subexpression.end - subexpression.begin);
        held = arguments_
                   .try_emplace(subexpression.begin, inside.substr(subexpression.argument - subexpression.begin, npos))
                   .first;
    }
    const Argument& argument = held->second;
    literals_ = {argument.text.as_string(), argument.text.attrs, &argument.index};
    literals_base_ = subexpression.argument;
}

void TextRewriter::closed(RewriteFunction function) {
    Level& inner = levels_[depth_ - 1];
    apply_rewrite_function(function, inner.attrs, inner.out, store_);
    --depth_;
    append({inner.out.text, inner.out.records, nullptr}, 0, npos);
    if (depth_ == 1) {
        literals_ = rewrite_view_;
        literals_base_ = 0;
    }
}

void TextRewriter::append(const RichView& source, std::size_t pos, std::size_t n) {
    Draft& out = levels_[depth_ - 1].out;
    take_back_marks(source, pos, n);
    const SpeechtextTextAttrs* current = out.contentattrs_at_end();
    if (n == 0 || !current || options_.insert_raw() == current->raw) return out.append(source, pos, n);
    out.append_at_end(store_.with_raw(current, options_.insert_raw()));
    out.append(source, pos, n);
    out.append_at_end(current);
}

// A mark that stands at the very end of the output already and comes in again must not stand there twice.
void TextRewriter::take_back_marks(const RichView& source, std::size_t pos, std::size_t n) {
    Draft& out = levels_[depth_ - 1].out;
    const auto ends_in_mark = [&out] {
        return !out.records.empty() && out.records.back().position == static_cast<int>(out.text.size()) &&
               out.records.back().attrs->is_mark();
    };
    if (!ends_in_mark()) return;
    const MarkSet incoming = marks_in(source, pos, n);
    while (ends_in_mark()) {
        if (!incoming.count(static_cast<const SpeechtextMark&>(*out.records.back().attrs))) stay_here();
        out.pop_attrs();
    }
}

}  // namespace regexp_detail

Speechtext make_re_rewrite(const Speechtext& text, const Speechtext& rewrite, int* groups, int ngroups,
                           const regexp::RE_Options& options, const SpeechtextTextAttrs* attrs) {
    return regexp_detail::TextRewriter(text, rewrite, options).evaluate(groups, ngroups, attrs).finished();
}
