// Edits of text attributes made the literal way, step by step, to compare the library's walk with.
#pragma once

#include <memory>
#include <stdexcept>
#include <vector>

#include "regexp/replacer.h"

inline Speechtext literal_setroles(const Speechtext& text, const std::list<textattrmod<std::string>>& edits) {
    const auto content_of = [](Speechtext::const_iterator it) {
        return it->attrs->is_contentattrs() ? static_cast<const SpeechtextTextAttrs*>(it->attrs) : nullptr;
    };
    const auto conflicts = [](const SpeechtextTextAttrs* attrs) { return !attrs->token.role().empty(); };
    const auto updated = [](const SpeechtextTextAttrs& attrs, const std::string& role) {
        SpeechtextTextAttrs copy(attrs);
        copy.token.set_role(role);
        return copy;
    };
    if (edits.empty()) return text;
    Speechtext work;
    work += text.as_string();
    auto record = text.attrs_begin(), segment = record;
    const SpeechtextTextAttrs* current = nullptr;
    for (auto edit = edits.begin(); edit != edits.end() || record != text.attrs_end();) {
        for (; record != text.attrs_end() && (edit == edits.end() || record->position <= edit->start);) {
            work.append_attrs(record->position, *record->attrs);
            if (content_of(record)) current = content_of(record);
            segment = ++record;
        }
        if (edit == edits.end()) continue;
        const int end = edit->start + static_cast<int>(edit->length);
        bool conflict = current && conflicts(current);
        for (; record != text.attrs_end() && record->position < end; ++record) {
            if (content_of(record) && conflicts(content_of(record))) conflict = true;
        }
        const bool apply = edit->force || !conflict;
        if (apply && !current) throw std::logic_error("no attributes");
        if (apply) {
            const SpeechtextTextAttrs changed = updated(*current, edit->value);
            if (changed != *current) work.append_attrs(edit->start, changed);
        }
        for (auto inside = segment; inside != record; ++inside) {
            if (content_of(inside) && apply) {
                current = content_of(inside);
                work.append_attrs(inside->position, updated(*current, edit->value));
            } else {
                work.append_attrs(inside->position, *inside->attrs);
            }
        }
        if (apply) work.append_attrs(end, *current);
        ++edit;
    }
    return work;
}
