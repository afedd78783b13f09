// The functions of the replacement-string language. Those that keep the text put its records down anew, in the order
// that they want, under the merging rule.
#include "regexp/rewrite_functions.h"

#include <utility>

namespace regexp_detail {

namespace {

using Records = std::vector<SpeechtextAttrsRecord>;

bool is_mark(const SpeechtextAttrsRecord& record) { return record.attrs->is_mark(); }
bool is_break(const SpeechtextAttrsRecord& record) { return record.attrs->is_break(); }

// Takes all records off.
Records taken(Draft& value) {
    const Records records = value.records;
    std::string text = std::move(value.text);
    value.clear();
    value.text = std::move(text);
    return records;
}

void put(Draft& value, const SpeechtextAttrsRecord& record) { value.append_attrs(record.position, record.attrs); }

template <class Test>
void drop_records(Draft& value, Test dropped) {
    for (const SpeechtextAttrsRecord& record : taken(value)) {
        if (!dropped(record)) put(value, record);
    }
}

void marks_first(Draft& value) {
    const Records records = taken(value);
    for (const SpeechtextAttrsRecord& record : records) {
        if (is_mark(record)) value.append_attrs(0, record.attrs);
    }
    for (const SpeechtextAttrsRecord& record : records) {
        if (!is_mark(record)) put(value, record);
    }
}

void marks_last(Draft& value) {
    const Records records = taken(value);
    for (const SpeechtextAttrsRecord& record : records) {
        if (!is_mark(record)) put(value, record);
    }
    for (const SpeechtextAttrsRecord& record : records) {
        if (is_mark(record)) value.append_at_end(record.attrs);
    }
}

void marks_invisible(Draft& value, DraftStore& store) {
    for (SpeechtextAttrsRecord record : taken(value)) {
        if (is_mark(record)) {
            auto mark = std::make_unique<SpeechtextMark>(static_cast<const SpeechtextMark&>(*record.attrs));
            mark->invisible(true);
            value.append_attrs(record.position, store.keep(std::move(mark)));
        } else {
            put(value, record);
        }
    }
}

void make_raw(Draft& value, DraftStore& store) {
    for (const SpeechtextAttrsRecord& record : taken(value)) {
        if (record.attrs->is_contentattrs()) {
            const auto* attrs = static_cast<const SpeechtextTextAttrs*>(record.attrs);
            value.append_attrs(record.position, store.with_raw(attrs, true));
        } else {
            put(value, record);
        }
    }
}

void map_case(Draft& value, DraftStore& store, Speechtext (*mapped)(const Speechtext&)) {
    const Speechtext& result = store.keep(mapped(value.finished()));
    value.clear();
    value.text = result.as_string();
    for (const SpeechtextAttrsRecord& record : result.attrs) put(value, record);
}

void make_break(Draft& value, const SpeechtextTextAttrs* attrs, DraftStore& store) {
    const RewriteBreak parsed = parse_rewrite_break(value.text);
    value.clear();
    if (attrs) value.append_attrs(0, attrs);
    value.append_attrs(0, store.keep(std::make_unique<SpeechtextBreak>(0, parsed.strength, parsed.time)));
}

}  // namespace

void apply_rewrite_function(RewriteFunction function, const SpeechtextTextAttrs* attrs, Draft& value,
                            DraftStore& store) {
    switch (function) {
        case RewriteFunction::pause:
            return make_break(value, attrs, store);
        case RewriteFunction::lowercase:
            return map_case(value, store, makelower);
        case RewriteFunction::marks_first:
            return marks_first(value);
        case RewriteFunction::marks_invisible:
            return marks_invisible(value, store);
        case RewriteFunction::marks_last:
            return marks_last(value);
        case RewriteFunction::no_breaks:
            return drop_records(value, is_break);
        case RewriteFunction::no_marks:
            return drop_records(value, is_mark);
        case RewriteFunction::raw:
            return make_raw(value, store);
        case RewriteFunction::uppercase:
            return map_case(value, store, makeupper);
    }
}

}  // namespace regexp_detail
