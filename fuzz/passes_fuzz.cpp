// The passes over a finished rich text, and the walks that leave it as it is.
//
//     line 1   "k" keeps the final attributes in finalize()
//     rest     the rich text (see fuzz/rich_text_input.h)
#include <cstdint>
#include <stdexcept>

#include "fuzz/input_lines.h"
#include "fuzz/property.h"
#include "fuzz/rich_text_input.h"
#include "speechtext/literal_finalize.h"
#include "text/textencoding.h"

namespace {

std::vector<LiteralRecord> literal_records(const Speechtext& text) {
    std::vector<LiteralRecord> records;
    for (auto it = text.attrs_begin(); it != text.attrs_end(); ++it) {
        records.push_back({it->position, std::shared_ptr<SpeechtextAttrs>(it->attrs->clone())});
    }
    return records;
}

std::string told_in_full(const std::string& bytes, const std::vector<LiteralRecord>& records) {
    std::string told;
    for (const LiteralRecord& record : records) {
        told += std::to_string(record.position) + ":" + record.attrs->to_debugstr() + " ";
    }
    return told + "\"" + bytes + "\"";
}

bool has_text_attrs(const Speechtext& text) {
    for (auto it = text.attrs_begin(); it != text.attrs_end(); ++it) {
        if (it->attrs->is_contentattrs()) return true;
    }
    return false;
}

void check_finalize(const Speechtext& text, bool keep_final_attrs) {
    Speechtext quiet = text;
    quiet.quiet_empty_duplicates();
    Speechtext final = text;
    try {
        final.finalize(keep_final_attrs);
    } catch (const std::logic_error&) {
        property(!has_text_attrs(text), "text attributes suffice for finalize");
        property(same_texts(final, text), "a refused text stays");
        return;
    }
    const auto expected = LiteralFinalize(quiet.as_string(), literal_records(quiet)).run(keep_final_attrs);
    property_equal(told_in_full(final), told_in_full(quiet.as_string(), expected), "finalize, step by step");
}

void check_whitespace(const Speechtext& text) {
    const Speechtext adjusted = text.adjust_whitespace();
    const std::string& bytes = adjusted.as_string();
    property(clean_utf8(bytes) == bytes, "what is not UTF-8 is gone");
    bool blank = true;  // nothing blank stands in front
    const char* const end = bytes.data() + bytes.size();
    for (const char* p = bytes.data(); p != end;) {
        const bool is_blank = is_whitespace_wchar(getwc_utf8(&p, static_cast<std::size_t>(end - p)));
        property(!is_blank || !blank, "no blank stands behind another, or in front");
        blank = is_blank;
    }
    // The records need not: those that came together at one place may merge in the next copy.
    property(adjusted.adjust_whitespace().as_string() == bytes, "the bytes of an adjusted text stay");
    property(adjusted.attrsvec_size() <= text.attrsvec_size(), "no record is added");
}

void check_order(const Speechtext& text) {
    int before = 0;
    for (auto it = text.attrs_begin(); it != text.attrs_end(); ++it) {
        property(it->position >= before && it->position <= static_cast<int>(text.size()), "positions stay in order");
        before = it->position;
    }
}

// Pieces together again what the walk gives.
struct Walk {
    const Speechtext& source;
    Speechtext copy;

    static void text(void* walk, int position, unsigned long long length) {
        Walk& self = *static_cast<Walk*>(walk);
        self.copy += self.source.as_string().substr(static_cast<std::size_t>(position), length);
    }
    static void attrs(void* walk, int, const SpeechtextTextAttrs* record) { static_cast<Walk*>(walk)->copy += *record; }
    static void other(void* walk, int, const SpeechtextAttrs* record) { static_cast<Walk*>(walk)->copy += *record; }
};

void check_walks(const Speechtext& text) {
    Walk walk{text, {}};
    text.scan_and_do_callbacks(&walk, Walk::text, Walk::attrs, Walk::other);
    property(same_texts(walk.copy, Speechtext(text)), "the walk gives every byte and every record");

    std::string bytes;
    const auto by_language = [](const SpeechtextTextAttrs* a, const SpeechtextTextAttrs* b) {
        return a->language != b->language;
    };
    for (const Speechtext& piece : text.split_by_contextattrs(by_language)) {
        check_order(piece);
        bytes += piece.as_string();
    }
    property(bytes == text.as_string(), "the pieces hold every byte");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputLines input(data, size);
    const bool keep_final_attrs = input.line() == "k";
    const Speechtext text = rich_text(input.rest());
    check_finalize(text, keep_final_attrs);
    check_whitespace(text);
    Speechtext adjusted = text;
    adjusted.adjust_breaks();
    check_order(adjusted);
    property(adjusted.as_string() == text.as_string(), "breaks move, the text stays");
    property(adjusted.attrsvec_size() == text.attrsvec_size(), "breaks move, none comes or goes");
    check_walks(text);
    text.to_debugstr();
    // Mapping stops the program on text that is not clean.
    if (clean_utf8(text.as_string()) == text.as_string()) {
        const Speechtext mapped = text.transform_utf8(to_uppercase_wchar);
        property(utf8_size(mapped.as_string()) == utf8_size(text.as_string()), "mapping keeps the characters");
        check_order(mapped);
    }
    return 0;
}
