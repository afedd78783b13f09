// Search and replace.
//
// PCRE is called directly, since a replacement string needs the offsets of all groups. The text stays as it is while
// matches are found; each becomes an edit, and all edits are made at the end.
#include <pcre.h>

#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "regexp/edits.h"
#include "regexp/regexp.h"
#include "regexp/rewrite_string.h"
#include "regexp/rewrite_text.h"
#include "speechtext/speechtext.h"

namespace regexp {

namespace {

constexpr int most_groups = 15;
constexpr int vector_size = 3 * (1 + most_groups);

bool is_continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

using Place = std::pair<int, int>;  // start and end

struct PcreFree {
    void operator()(pcre* compiled) const { pcre_free(compiled); }
};

// A compiled pattern on one subject. UTF-8 is checked until a call has gone through, and not again: the subject does
// not change.
class Search {
public:
    Search(const std::string& pattern, const std::string& subject, const RE_Options& options) : subject_(subject) {
        const char* error = nullptr;
        int error_offset = 0;
        compiled_.reset(pcre_compile(pattern.c_str(), options.pcre_options(), &error, &error_offset, nullptr));
        if (!compiled_) throw invalid_regexp_replacement(std::string("Error compiling regular expression: ") + error);
        unsigned long int compiled_options = 0;
        pcre_fullinfo(compiled_.get(), nullptr, PCRE_INFO_OPTIONS, &compiled_options);
        pcre_fullinfo(compiled_.get(), nullptr, PCRE_INFO_CAPTURECOUNT, &groups_);
        decodes_ = (compiled_options & PCRE_UTF8) != 0;
    }

    // The number of valid groups; 0 or less if there is no match from pos on, for whatever reason.
    int find(std::size_t pos, int options) {
        if (checked_ && decodes_) {
            // The check that is left out would refuse to start inside a character.
            if (pos < subject_.size() && is_continuation(subject_[pos])) return PCRE_ERROR_BADUTF8_OFFSET;
            options |= PCRE_NO_UTF8_CHECK;
        }
        pcre_extra extra = {};
        const int count = pcre_exec(compiled_.get(), &extra, subject_.data(), static_cast<int>(subject_.size()),
                                    static_cast<int>(pos), options, offsets_, vector_size);
        if (count >= 0 || count == PCRE_ERROR_NOMATCH) checked_ = true;
        return count;
    }

    const int* offsets() const { return offsets_; }
    // The start and end of a group of the last match: -1 if it took no part or is none.
    Place span(int group) const {
        if (group < 0 || group > groups_ || group > most_groups) return {-1, -1};
        return {offsets_[2 * group], offsets_[2 * group + 1]};
    }

private:
    const std::string& subject_;
    std::unique_ptr<pcre, PcreFree> compiled_;
    int groups_ = 0;
    bool decodes_ = false;
    bool checked_ = false;
    int offsets_[vector_size] = {};
};

// Knows where edits were made. The search goes on from the place of an edit, so that an edit that is made a second time
// would be made for ever.
class Places {
public:
    // False if this place was given before.
    bool add(Place place) {
        // Nearly always each place lies behind all others.
        if (places_.empty() || places_.back() < place) {
            if (!sorted_.empty()) sorted_.insert(place);
            places_.push_back(place);
            return true;
        }
        if (sorted_.empty()) sorted_.insert(places_.begin(), places_.end());
        return sorted_.insert(place).second;
    }

private:
    std::vector<Place> places_;  // rising
    std::set<Place> sorted_;     // all, as soon as one came out of order
};

std::size_t next_character(const std::string& subject, std::size_t pos, bool utf8) {
    ++pos;
    while (utf8 && pos < subject.size() && is_continuation(subject[pos])) ++pos;
    return pos;
}

// Calls add_edit(place of the group, offsets of all groups, their number) for each match that is to be replaced. Behind
// a match without length, one with length is sought at the same place before the search moves on by one character.
template <class AddEdit>
void for_each_edit(Search& search, const std::string& subject, int group, bool utf8, AddEdit add_edit) {
    Places places;
    bool after_empty = false;
    for (std::size_t pos = 0; pos <= subject.size();) {
        const int count = search.find(pos, after_empty ? PCRE_ANCHORED | PCRE_NOTEMPTY : 0);
        const bool found = count > 0;
        if (!found && !after_empty) return;
        const Place place = search.span(group);
        if (!found || !places.add(place)) {
            pos = next_character(subject, pos, utf8);
            after_empty = false;
            continue;
        }
        add_edit(place, search.offsets(), count);
        pos = static_cast<std::size_t>(place.second);
        after_empty = place.first == place.second;
    }
}

// The text attributes in force at the starts of the edits, found in one walk.
class AttributesInForce {
public:
    explicit AttributesInForce(const Speechtext& text) : it_(text.attrs_begin()), end_(text.attrs_end()) {}

    const SpeechtextTextAttrs* at(int start) {
        for (; it_ != end_; ++it_) {
            if (!it_->attrs->is_contentattrs()) continue;
            if (it_->position <= start) content_ = static_cast<const SpeechtextTextAttrs*>(it_->attrs);
            if (it_->position >= start) break;
        }
        return content_;
    }

private:
    Speechtext::const_iterator it_;
    const Speechtext::const_iterator end_;
    const SpeechtextTextAttrs* content_ = nullptr;
};

bool substitute_in_string(Search& search, int group, const std::string& rewrite, std::string* str,
                          const RE_Options& options) {
    EditList list;
    StringRewriter rewriter(*str, rewrite);
    for_each_edit(search, *str, group, options.utf8(), [&](Place place, const int* groups, int count) {
        const std::size_t bytes_at = list.bytes.size();
        rewriter.evaluate(groups, count, &list.bytes);
        list.add(place.first, group_length(place.first, place.second), bytes_at, 0, options.preserve_marks(),
                 options.preserve_breaks());
    });
    if (list.edits.empty()) return false;
    *str = apply_edits(*str, list);
    return true;
}

bool substitute_in_text(Search& search, int group, const std::string& rewrite, Speechtext* text,
                        const RE_Options& options) {
    EditList list;
    const Speechtext rich_rewrite((Match(rewrite)));
    TextRewriter rewriter(*text, rich_rewrite, options);
    AttributesInForce attributes(*text);
    for_each_edit(search, text->as_string(), group, options.utf8(), [&](Place place, const int* groups, int count) {
        const std::size_t bytes_at = list.bytes.size();
        const std::size_t records_at = list.records.size();
        const Draft& result = rewriter.evaluate(groups, count, attributes.at(place.first));
        list.bytes += result.text;
        list.records.insert(list.records.end(), result.records.begin(), result.records.end());
        list.add(place.first, group_length(place.first, place.second), bytes_at, records_at, options.preserve_marks(),
                 options.preserve_breaks());
    });
    if (list.edits.empty()) return false;
    *text = apply_edits(*text, list);
    return true;
}

}  // namespace

bool RE::substitute_match(const std::string& pattern, int group, const std::string& rewrite, std::string* str,
                          Speechtext* text, const RE_Options& options) {
    if (!str && !text) return false;
    Search search(pattern, text ? text->as_string() : *str, options);
    return text ? substitute_in_text(search, group, rewrite, text, options)
                : substitute_in_string(search, group, rewrite, str, options);
}

bool RE::sub(const std::string& pattern, const std::string& rewrite, std::string* str, const RE_Options& options) {
    return substitute_match(pattern, 0, rewrite, str, nullptr, options);
}

bool RE::sub(const std::string& pattern, const std::string& rewrite, Speechtext* text, const RE_Options& options) {
    return substitute_match(pattern, 0, rewrite, nullptr, text, options);
}

bool RE::sub1(const std::string& pattern, const std::string& rewrite, std::string* str, const RE_Options& options) {
    return substitute_match(pattern, 1, rewrite, str, nullptr, options);
}

bool RE::sub1(const std::string& pattern, const std::string& rewrite, Speechtext* text, const RE_Options& options) {
    return substitute_match(pattern, 1, rewrite, nullptr, text, options);
}

}  // namespace regexp
