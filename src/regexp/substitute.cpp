// Search and replace.
//
// PCRE is called directly, since a replacement string needs the offsets of all groups. The text stays as it is while
// matches are found. Each becomes an edit, which is made in a new text at once. Where an edit comes that does not stand
// behind the one before (a group in front of its match, or one that took no part), that is dropped, and the search
// begins anew with a list of all edits.
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

using namespace regexp_detail;

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

// The search goes on from the place of an edit, so that an edit that is made a second time would be made for ever.
enum class Seen { never, before, unknown };

// Knows where edits were made as long as each of them lies behind the one before, which is nearly always so.
class RisingPlaces {
public:
    Seen add(Place place) {
        if (place == last_) return Seen::before;
        if (place < last_) return Seen::unknown;
        last_ = place;
        return Seen::never;
    }

private:
    Place last_ = {0, -1};
};

// Knows where edits were made.
class AllPlaces {
public:
    Seen add(Place place) { return places_.insert(place).second ? Seen::never : Seen::before; }

private:
    std::set<Place> places_;
};

std::size_t next_character(const std::string& subject, std::size_t pos, bool utf8) {
    ++pos;
    while (utf8 && pos < subject.size() && is_continuation(subject[pos])) ++pos;
    return pos;
}

// Calls add_edit(place of the group, offsets of all groups, their number) for each match that is to be replaced. Behind
// a match without length, one with length is sought at the same place before the search moves on by one character.
// Gives up, with false, at a place that is not known to be new.
template <class Places, class AddEdit>
bool for_each_edit(Search& search, const std::string& subject, int group, bool utf8, Places places, AddEdit add_edit) {
    bool after_empty = false;
    for (std::size_t pos = 0; pos <= subject.size();) {
        const int count = search.find(pos, after_empty ? PCRE_ANCHORED | PCRE_NOTEMPTY : 0);
        const bool found = count > 0;
        if (!found && !after_empty) return true;
        const Place place = search.span(group);
        const Seen seen = found ? places.add(place) : Seen::before;
        if (seen == Seen::unknown) return false;
        if (seen == Seen::before) {
            pos = next_character(subject, pos, utf8);
            after_empty = false;
            continue;
        }
        add_edit(place, search.offsets(), count);
        pos = static_cast<std::size_t>(place.second);
        after_empty = place.first == place.second;
    }
    return true;
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

// Edits that cannot be made as they are found: all new bytes in one string, all new records in one vector.
class WaitingEdits {
public:
    std::string bytes;
    std::vector<SpeechtextAttrsRecord> records;  // borrowed objects

    // The edit's new bytes and records are those that were added since the last edit.
    void add(Place place, const RE_Options& options) {
        edits_.push_back({place.first,
                          group_length(place.first, place.second),
                          {},
                          {},
                          options.preserve_marks(),
                          options.preserve_breaks()});
        ends_.emplace_back(bytes.size(), records.size());
    }

    // To be called once, when all are there.
    std::vector<Edit>& edits() {
        std::pair<std::size_t, std::size_t> from;
        for (std::size_t i = 0; i < edits_.size(); ++i) {
            edits_[i].bytes = std::string_view(bytes).substr(from.first, ends_[i].first - from.first);
            edits_[i].records = RecordSpan(records).subspan(from.second, ends_[i].second - from.second);
            from = ends_[i];
        }
        return edits_;
    }

private:
    std::vector<Edit> edits_;
    std::vector<std::pair<std::size_t, std::size_t>> ends_;  // of their bytes and records
};

// Room for a text that gets a little longer.
std::size_t expected_size(std::size_t old_size) { return old_size + old_size / 8; }

std::string with_waiting_edits(Search& search, int group, StringRewriter& rewriter, const std::string& str,
                               const RE_Options& options) {
    WaitingEdits waiting;
    for_each_edit(search, str, group, options.utf8(), AllPlaces(), [&](Place place, const int* groups, int count) {
        rewriter.evaluate(groups, count, &waiting.bytes);
        waiting.add(place, options);
    });
    return apply_edits(str, waiting.edits());
}

Speechtext with_waiting_edits(Search& search, int group, TextRewriter& rewriter, const Speechtext& text,
                              const RE_Options& options) {
    WaitingEdits waiting;
    AttributesInForce attributes(text);
    for_each_edit(search, text.as_string(), group, options.utf8(), AllPlaces(),
                  [&](Place place, const int* groups, int count) {
                      const Draft& result = rewriter.evaluate(groups, count, attributes.at(place.first));
                      waiting.bytes += result.text;
                      waiting.records.insert(waiting.records.end(), result.records.begin(), result.records.end());
                      waiting.add(place, options);
                  });
    return apply_edits(text, waiting.edits());
}

bool substitute_in_string(Search& search, int group, const std::string& rewrite, std::string* str,
                          const RE_Options& options) {
    StringRewriter rewriter(*str, rewrite);
    StringEdits edits(*str);
    bool found = false;
    const bool all = for_each_edit(search, *str, group, options.utf8(), RisingPlaces(),
                                   [&](Place place, const int* groups, int count) {
                                       if (!found) edits.reserve(expected_size(str->size()));
                                       found = true;
                                       rewriter.evaluate(groups, count, &edits.begin(place.first));
                                       edits.end(group_length(place.first, place.second));
                                   });
    if (all && !found) return false;
    *str = all ? edits.finish() : with_waiting_edits(search, group, rewriter, *str, options);
    return true;
}

bool substitute_in_text(Search& search, int group, const std::string& rewrite, Speechtext* text,
                        const RE_Options& options) {
    const Speechtext rich_rewrite((Match(rewrite)));
    TextRewriter rewriter(*text, rich_rewrite, options);
    TextEdits edits(*text, TextEdits::Consuming());
    AttributesInForce attributes(*text);
    bool found = false;
    const bool all =
        for_each_edit(search, text->as_string(), group, options.utf8(), RisingPlaces(),
                      [&](Place place, const int* groups, int count) {
                          if (!found) edits.reserve(expected_size(text->size()), text->attrsvec_size());
                          found = true;
                          const Draft& result = rewriter.evaluate(groups, count, attributes.at(place.first));
                          edits.make({place.first, group_length(place.first, place.second), result.text, result.records,
                                      options.preserve_marks(), options.preserve_breaks()});
                      });
    if (all && !found) return false;
    *text = all ? edits.finish() : with_waiting_edits(search, group, rewriter, *text, options);
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
