// A list of edits in few pieces of memory: all new bytes in one string, all new records in one vector.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "regexp/draft.h"

class EditList {
public:
    struct Edit {
        int start;
        std::size_t length;
        std::size_t bytes_at;
        std::size_t bytes_count;
        std::size_t records_at;
        std::size_t records_count;
        bool preserves_marks;
        bool preserves_breaks;
    };

    std::string bytes;
    std::vector<SpeechtextAttrsRecord> records;  // borrowed objects
    std::vector<Edit> edits;

    // Adds an edit to whose new text belong the bytes and records behind these points.
    void add(int start, std::size_t length, std::size_t bytes_at, std::size_t records_at, bool preserves_marks,
             bool preserves_breaks);

    std::string_view new_bytes(const Edit& edit) const {
        return std::string_view(bytes).substr(edit.bytes_at, edit.bytes_count);
    }
    RecordSpan new_records(const Edit& edit) const {
        return RecordSpan(records).subspan(edit.records_at, edit.records_count);
    }
};

// The text with the edits made, as do_replacements() tells. A list in which start falls gets sorted.
std::string apply_edits(const std::string& text, EditList& list);
Speechtext apply_edits(const Speechtext& text, EditList& list);
