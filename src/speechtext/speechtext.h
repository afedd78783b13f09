// Rich text: a UTF-8 string and, beside it, records at byte positions. The chief header of the library's model.
//
// A Speechtext is a value: it is built by appending text and records at its end, copied, cut and joined, and written as
// SSML with to_ssml(). It owns its records' objects; whatever is appended is cloned. One thread at a time.
//
// Positions are byte offsets into the text, 0 up to and including its length, and do not decrease along the vector. The
// class does not check that: who appends records, appends in ascending order. Records at one position keep the order in
// which they came. The attributes of a byte are those of the last text attribute record at or in front of it. A text
// must stay below 2 GiB. Nothing here checks the encoding, except where a function says so.
//
// All records go through append_attrs(), which drops or merges those that would change nothing. A copy goes through it
// again, and so may be shorter by a record than its source. Moving a text leaves the source empty and otherwise gives
// what copying gives.
//
//     SpeechtextTextAttrs attrs;
//     attrs.set_language("en");
//     Speechtext text;
//     text += attrs;
//     text += std::string("one ");
//     text += SpeechtextMark(1, "here");
//     text += std::string("two");
//     std::string document = text.to_ssml();
#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <vector>

#include "regexp/regexp.h"
#include "speechtext/attributes.h"
#include "speechtext/attrs_tail.h"
#include "speechtext/attrsrecord.h"

namespace regexp_detail {
class Draft;
}

class Speechtext {
public:
    using attrs_vector = std::vector<SpeechtextAttrsRecord>;
    using const_iterator = attrs_vector::const_iterator;
    using const_reverse_iterator = attrs_vector::const_reverse_iterator;

    // The string, and the records in order of insertion. The members below are the way to change them; who edits attrs
    // past them keeps the ownership and the order of positions right.
    std::string text;
    attrs_vector attrs;

    Speechtext() = default;
    Speechtext(const Speechtext& other);
    Speechtext(Speechtext&& other) noexcept;
    // The match as a text of its own; defined with regexp::Match. As a Match can be made from a string, this makes a
    // text from a plain string, too.
    Speechtext(const regexp::Match& match);
    Speechtext& operator=(const Speechtext& other);
    Speechtext& operator=(Speechtext&& other) noexcept;
    Speechtext& operator=(const regexp::Match& match);
    ~Speechtext();

    // --- Appending ---

    Speechtext& operator+=(char c);
    Speechtext& operator+=(const std::string& bytes);
    Speechtext& operator+=(const SpeechtextAttrs& record);
    Speechtext& operator+=(const Speechtext& other);
    Speechtext operator+(char c) const;
    Speechtext operator+(const std::string& bytes) const;
    Speechtext operator+(const SpeechtextAttrs& record) const;
    Speechtext operator+(const Speechtext& other) const;

    void append(const char* bytes, std::size_t n);
    // Up to n bytes from offset pos of the NUL-terminated string; std::out_of_range if pos lies behind its end.
    void append(const char* string, std::size_t pos, std::size_t n);
    // The bytes [pos, pos + n) of source under the attributes in force at pos, with the records in [pos, pos + n).
    // pos + n wraps: with pos above 0 and n = npos, only the attributes in force come along. std::out_of_range if pos
    // lies behind the end of source; the attributes in force are appended by then.
    void append(const Speechtext& source, std::size_t pos, std::size_t n);

    // Appends a clone of record at position, unless it would change nothing: text attributes that are in force already,
    // or a mark or break that stands at this position already, are dropped. Text attributes replace those at the same
    // position, if the last record is such a one and stands for no audio insert or transcription.
    void append_attrs(int position, const SpeechtextAttrs& record);
    // Removes the last entry without deleting its object: that passes to the caller, who takes it from attrs_rbegin()
    // before. Nothing happens without an entry.
    void pop_attrs();
    void reserve(std::size_t text_bytes, std::size_t records);

    // --- Reading ---

    const std::string& as_string() const { return text; }
    const char* data() const { return text.data(); }
    std::size_t size() const { return text.size(); }
    std::size_t length() const { return text.length(); }
    bool empty() const { return text.empty(); }

    const_iterator attrs_begin() const { return attrs.begin(); }
    const_iterator attrs_end() const { return attrs.end(); }
    const_reverse_iterator attrs_rbegin() const { return attrs.rbegin(); }
    const_reverse_iterator attrs_rend() const { return attrs.rend(); }
    std::size_t attrsvec_size() const { return attrs.size(); }

    // The slice append to an empty text.
    Speechtext substr(std::size_t pos, std::size_t n) const;
    // The text attributes in force at the end, null without any. Valid until the records change.
    const SpeechtextTextAttrs* contentattrs_at_end() const;
    // Is the very first record a text attribute record with a sentence number?
    bool sentence_set_at_start() const;

    // Bytes only; an empty match matches. Defined with regexp::Match.
    bool startswith(const regexp::Match& match) const;
    bool endswith(const regexp::Match& match) const;
    // This text's string under the records of the match or the other text, all at position 0. Defined with
    // regexp::Match.
    Speechtext with_attrs_from(const regexp::Match& match) const;
    Speechtext with_attrs_from(const Speechtext& other) const;

    // The text as one SSML document for the synthesiser; see ssml_encoder.h.
    std::string to_ssml() const;
    // Text and records inline, each text attribute record relative to the one before. A position behind the text's end
    // is reported on the standard error stream.
    std::string to_debugstr() const;

    // --- Passes over a finished text. None calls another, except finalize() its first step. ---

    // Drops text attribute records that govern no content and repeated marks and breaks; the first text attribute
    // record left moves to position 0. One under which no content stands at the end stays if keep_final_attrs. A text
    // with content or a break, but without any text attribute record, is outside the domain: std::logic_error, nothing
    // changed.
    void finalize(bool keep_final_attrs);
    // Takes the audio or transcription instance off records that cover no text, if the same instance covers text
    // elsewhere.
    void quiet_empty_duplicates();
    // Each run of white space becomes its first character, none stays in front, bytes that are not UTF-8 go and are
    // counted on the standard error stream. One such byte places the record that follows it too early.
    Speechtext adjust_whitespace() const;
    // Moves each break behind the punctuation that follows it directly, opening brackets excepted.
    void adjust_breaks();

    // --- Walks that leave the text as it is ---

    // Gives every byte once, in stretches that cross no record, and every record, in order. Null pointers are skipped.
    void scan_and_do_callbacks(void* context, void (*on_text)(void*, int position, unsigned long long length),
                               void (*on_textattrs)(void*, int position, const SpeechtextTextAttrs*),
                               void (*on_other)(void*, int position, const SpeechtextAttrs*)) const;
    // Cuts where differ(record that opened the piece, this record) is true. Marks and breaks in front of the first text
    // attribute record are lost if no text stands there.
    std::list<Speechtext> split_by_contextattrs(bool (*differ)(const SpeechtextTextAttrs* previous,
                                                               const SpeechtextTextAttrs* next)) const;
    // Maps every character; records stay between the same two characters. The text must be valid: a failed assertion
    // stops the process otherwise, in every build.
    Speechtext transform_utf8(unsigned short (*fn)(unsigned short)) const;

private:
    friend class SpeechtextSsmlEncoder;
    friend class regexp_detail::Draft;

    void delete_records();
    void learn_records(bool replayable) noexcept;
    void reserve_records(std::size_t count);
    void append_shifted(const Speechtext& other, std::size_t base);
    void replay_own_records() noexcept;
    std::size_t first_record_at(std::size_t pos) const;

    AttrsTail tail_;
    // Would a copy hold the very same records? False when that is not known.
    bool replayable_ = true;
    // Do the positions not decrease? False when that is not known.
    bool ascending_ = true;
};

// --- String utilities over rich text (the plain ones are in text/qm_stringutils.h) ---

// The records stay between the same two characters. Bad UTF-8 stops the process, as in transform_utf8().
Speechtext makelower(const Speechtext& text);
Speechtext makeupper(const Speechtext& text);
// Strict: a text neither starts nor ends with all of itself.
bool startswith(const Speechtext& text, const std::string& prefix);
bool endswith(const Speechtext& text, const std::string& suffix);
int str2int(const Speechtext& text);
int str2int(const regexp::Match& match);
double str2float(const Speechtext& text);
double str2float(const regexp::Match& match);
