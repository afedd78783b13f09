// Making edits of a text in one pass, with one running position in the old text and one in the new.
//
// An edit says where it takes effect in the old text and what it brings. StringEdits and TextEdits take edits one by
// one, as they are found, and make the new text beside the old one, as do_replacements() tells; the old one stays as it
// is. That needs edits in which start never falls. Others wait in a list and are sorted before they are made.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "regexp/draft.h"

namespace regexp_detail {

struct Edit {
    int start;
    std::size_t length;
    // What is new, owned by others.
    std::string_view bytes;
    RecordSpan records;
    bool preserves_marks;
    bool preserves_breaks;
};

// Does start ever fall, the first one being compared with 0?
bool start_falls(const std::vector<Edit>& edits);
// By start, length and the number of new bytes, all with the default flags; a list in which start does not fall stays.
void sort_if_start_falls(std::vector<Edit>& edits);

class StringEdits {
public:
    explicit StringEdits(const std::string& old) : old_(old) {}

    void reserve(std::size_t bytes) { result_.reserve(bytes); }
    // An edit in two halves: gives the new string with the old bytes up to the edit, to which the caller appends the
    // new bytes; then passes over the replaced range.
    std::string& begin(int start);
    void end(std::size_t length) { in_ += length; }
    void make(const Edit& edit);
    // The rest of the old bytes follows.
    std::string finish();

private:
    const std::string& old_;
    std::string result_;
    std::size_t in_ = 0;
};

class TextEdits {
public:
    // The new text gets clones of the old one's records.
    explicit TextEdits(const Speechtext& old);
    // The new text takes over those records of the old one that stay, so that the old one must be given another value
    // when finish() has returned. Until then it is untouched.
    struct Consuming {};
    TextEdits(Speechtext& old, Consuming);

    void reserve(std::size_t bytes, std::size_t records);
    void make(const Edit& edit);
    // The rest of the old text follows.
    Speechtext finish();

private:
    struct MarkLess {
        bool operator()(const SpeechtextAttrs* a, const SpeechtextAttrs* b) const;
    };
    struct BreakLess {
        bool operator()(const SpeechtextAttrs* a, const SpeechtextAttrs* b) const;
    };

    void collect(const Edit& edit);
    void old_records_up_to(int start);
    void old_bytes_up_to(int start);
    void records_of_range(const Edit& edit);
    void restore_content();
    void add_moved(std::size_t index);
    bool add(int position, const SpeechtextAttrs* attrs, SpeechtextAttrs** owner);

    const Speechtext& old_;
    Speechtext* const consumed_;
    Draft result_;
    std::vector<SpeechtextAttrs**> owners_;      // of the result's records; empty unless the old text is consumed
    std::size_t in_ = 0;                         // the position in the old text
    std::size_t next_ = 0;                       // the old record that the walk has come to
    const SpeechtextAttrs* content_ = nullptr;   // the last text attribute record passed,
    SpeechtextAttrs** content_owner_ = nullptr;  // and who owns it, if it may still be taken from there
    std::set<const SpeechtextAttrs*, MarkLess> marks_;  // of the new text of the edit at hand
    std::set<const SpeechtextAttrs*, BreakLess> breaks_;
};

// The text with the edits made, sorted before if start falls.
std::string apply_edits(const std::string& text, std::vector<Edit>& edits);
Speechtext apply_edits(const Speechtext& text, std::vector<Edit>& edits);

}  // namespace regexp_detail
