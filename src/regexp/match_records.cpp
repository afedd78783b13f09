// The records of a match.
//
// Both ways of copying them begin alike: find the text attribute record that governs the match's start, then take the
// records of the range. How the search goes depends on whether the match holds an iterator, with differences in what is
// taken; texts that were written with the one or the other rely on them.
#include <memory>

#include "regexp/match_offset.h"
#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

namespace regexp {

namespace {

using Records = Match::iterator;

bool is_content(Records it) { return it->attrs->is_contentattrs(); }

// Where a match with an iterator begins to copy.
struct Beginning {
    const SpeechtextAttrs* governing;  // to be added at position 0; null if none was found in front
    Records first;
};

// Unless a text attribute record at exactly start takes over, goes back to the one in force. Without one, the records
// on the way back are taken as well: first is then the text's very first record.
Beginning beginning_from(Records it, const Speechtext& text, int start) {
    const Records begin = text.attrs_begin();
    const Records end = text.attrs_end();
    if (it != end && it->position == start && is_content(it)) return {nullptr, it};
    Records back = it;
    while (back != begin) {
        --back;
        if (is_content(back)) break;
    }
    if (back != end && is_content(back)) return {back->attrs, it};
    return {nullptr, back};
}

void add_shifted(Records it, const Speechtext& text, int start, int end, Speechtext& result) {
    for (; it != text.attrs_end() && it->position < end; ++it) result.append_attrs(it->position - start, *it->attrs);
}

// The whole selection of a match without an iterator, from the first record on.
void add_from_first(const Speechtext& text, int start, int end, Speechtext& result) {
    const SpeechtextAttrs* governing = nullptr;
    Records it = text.attrs_begin();
    for (; it != text.attrs_end() && it->position < start; ++it) {
        if (is_content(it)) governing = it->attrs;
    }
    const bool repeated = governing && it != text.attrs_end() && it->position == start && *it->attrs == *governing;
    if (governing && !repeated) result.append_attrs(0, *governing);
    add_shifted(it, text, start, end, result);
}

void copy_from_first(const Speechtext& text, int start, int end, Speechtext& dest) {
    const SpeechtextAttrs* governing = nullptr;
    Records it = text.attrs_begin();
    for (; it != text.attrs_end() && it->position <= start; ++it) {
        if (is_content(it)) governing = it->attrs;
    }
    if (governing) dest.append_attrs(0, *governing);
    for (; it != text.attrs_end() && it->position < end; ++it) dest.append_attrs(0, *it->attrs);
}

void copy_from(const Beginning& beginning, const Speechtext& text, int start, int end, Speechtext& dest) {
    if (beginning.governing) dest.append_attrs(0, *beginning.governing);
    for (Records it = beginning.first; it != text.attrs_end() && it->position < end; ++it) {
        if (it->position == start || !is_content(it)) dest.append_attrs(0, *it->attrs);
    }
}

const SpeechtextTextAttrs* content_of(Records it) { return static_cast<const SpeechtextTextAttrs*>(it->attrs); }

}  // namespace

Speechtext Match::as_speechtext() const {
    Speechtext result;
    if (text) {
        const int start = match_offset(*this, *text);
        const int end = start + size();
        if (attrsiter) {
            const Beginning beginning = beginning_from(*attrsiter, *text, start);
            if (beginning.governing) result.append_attrs(0, *beginning.governing);
            add_shifted(beginning.first, *text, start, end, result);
        } else {
            add_from_first(*text, start, end, result);
        }
    }
    result.append(data(), static_cast<std::size_t>(size()));
    return result;
}

void Match::copy_attrs_to_text(Speechtext& dest) const {
    if (!text) return;
    if (&dest == text) {
        Speechtext changed(dest);
        copy_attrs_to_text(changed);
        dest = changed;
        return;
    }
    const int start = match_offset(*this, *text);
    const int end = start + size();
    if (attrsiter) {
        copy_from(beginning_from(*attrsiter, *text, start), *text, start, end, dest);
    } else {
        copy_from_first(*text, start, end, dest);
    }
}

const SpeechtextTextAttrs* Match::textattrs() const {
    if (!text) return nullptr;
    const Records begin = text->attrs_begin();
    const Records end = text->attrs_end();
    const Records held = attrsiter ? *attrsiter : begin;
    const int start = match_offset(*this, *text);

    const SpeechtextTextAttrs* at_start = nullptr;
    for (Records it = held; it != end && it->position == start; ++it) {
        if (is_content(it)) at_start = content_of(it);
    }
    if (at_start) return at_start;

    // An iterator at the end is not walked back from, on purpose.
    if (held == end) return nullptr;
    for (Records it = held; it != begin;) {
        --it;
        if (is_content(it) && it->position <= start) return content_of(it);
    }
    return nullptr;
}

bool Match::has_role(const std::string& role) const {
    const SpeechtextTextAttrs* attrs = textattrs();
    return attrs && attrs->token.has_role(role);
}

}  // namespace regexp
