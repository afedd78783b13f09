// Rewriting of strings and rich texts: replacement strings, lists of edits, edits of text attributes.
//
// Offsets and lengths are bytes. No text is changed in place while matches or edits are found: a list of edits speaks
// of the unchanged text, and the new text is made from it in one pass. A text must stay below 2 GiB.
#pragma once

#include <cstddef>
#include <list>
#include <string>

#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

// ---- Replacement strings ------------------------------------------------------------------------------------------

// The value of a replacement string for one match. groups is PCRE's offset vector over text (group i from element 2i to
// element 2i + 1, a negative start for a group that took no part), ngroups the number of pairs in it. The language:
//
//     \0 ... \9         the text of a group, with its records; one digit only
//     \\                a backslash
//     \uXXXX            the character with that code, in UTF-8; the code 0 adds nothing
//     \UXXXXXXXX        the same; the code is cut to its low 16 bits
//     \{name:text\}     a function of a text that is itself a replacement string; nests
//     any other byte    itself
//
// and its functions:
//
//     break             a pause; the text is "strength=... time=...", each optional
//     lowercase uppercase               stop the program on text that is not valid UTF-8
//     marks-first marks-last            all marks at the start, or the end, of the text
//     marks-invisible                   all marks as invisible ones
//     no-breaks no-marks                without breaks, or marks
//     raw                               all text attributes with the raw flag
//
// Throws regexp::invalid_regexp_replacement for what is not of this form, and for a group number at or above ngroups;
// std::out_of_range for a group that starts behind the text.
//
// Of the options only insert_raw matters: the raw flag under which literal parts stand. attrs, which may be null, are
// the text attributes under which the result begins. A record of rewrite travels along with the literal part under it.
//
// DOES NOT RETURN when "marks-last" has put a mark at the very end of the output and a piece follows that does not
// bring the same mark: \{marks-last:\1\} must end the replacement string or be followed by \1.
Speechtext make_re_rewrite(const Speechtext& text, const Speechtext& rewrite, int* groups, int ngroups,
                           const regexp::RE_Options& options, const SpeechtextTextAttrs* attrs);
// The same over plain text: all of the language works, records are not there, and a break adds nothing.
std::string make_re_rewrite(const std::string& text, const std::string& rewrite, int* groups, int ngroups,
                            const regexp::RE_Options& options);

// ---- Lists of edits -----------------------------------------------------------------------------------------------

// One edit: the bytes [start, start + length) of the old text become the new string or rich text. Length 0 inserts in
// front of start. A copy always has the default flags: marks are preserved, breaks not.
class replacement {
public:
    replacement(int start, std::size_t length, const Speechtext& repl);
    replacement(int start, std::size_t length, const std::string& repl);
    replacement(const replacement& other);
    replacement& operator=(const replacement& other);
    ~replacement();

    // What the edit was built from; owned. Exactly one is set.
    std::string* repl_string = nullptr;
    Speechtext* repl_text = nullptr;
    // Bit 0: marks inside the replaced range survive. Bit 1: breaks do.
    unsigned int flags = 1;

    int start() const { return start_; }
    std::size_t length() const { return length_; }
    // A copy of the new bytes.
    std::string repl() const;
    bool is_speechtext() const { return repl_text != nullptr; }
    // The records of the new rich text; an empty range for a string.
    Speechtext::const_iterator replattrs_begin() const;
    Speechtext::const_iterator replattrs_end() const;
    std::size_t replattrs_length() const;
    bool preserves_marks() const { return (flags & 1u) != 0; }
    bool preserves_breaks() const { return (flags & 2u) != 0; }
    void preserves_marks(bool preserves) { flags = preserves ? flags | 1u : flags & ~1u; }
    void preserves_breaks(bool preserves) { flags = preserves ? flags | 2u : flags & ~2u; }

    // By start, then by length, then by the number of new bytes: an insertion comes before what consumes bytes.
    bool operator<(const replacement& other) const;

    // As in: replace [2..4]: string "new" (with marks preserved)
    std::string to_debugstr() const;

private:
    int start_;
    std::size_t length_;
};

// The debug forms, joined by ", ".
std::string replacements_to_debugstr(const std::list<replacement>& edits);

// The text with all edits made. A list in which start ever falls (below 0 at first) is made in sorted order and with
// the default flags; in any other, edits keep their order and their flags. Overlap is not looked for: an edit that
// starts behind the point reached copies nothing, and its length counts from there. Edits behind the end take place at
// the end.
//
// In a rich text, the records at the place of an edit come out in this order: old ones at or in front of start;
// preserved marks and breaks of the replaced range; those of the new text; the text attributes in force behind the
// range, unless they are in force already. Other records of the range go. Marks (and, where they are preserved, breaks)
// that the new text brings are taken out of the old one, in the range and directly in front of it.
std::string do_replacements(const std::string& text, const std::list<replacement>& edits);
Speechtext do_replacements(const Speechtext& text, const std::list<replacement>& edits);
// A list of a copy of that one edit, and so with the default flags.
std::string do_replacement(const std::string& text, const replacement& edit);
Speechtext do_replacement(const Speechtext& text, const replacement& edit);

// ---- Edits of text attributes -------------------------------------------------------------------------------------

// Over the bytes [start, start + length) of a text, one property of its text attributes is to be set. What the property
// is, the two functions of the caller know.
struct textattrmod_base {
    int start;
    std::size_t length;
    bool force;  // in spite of a conflict

    // How the engine, which is written once for all types of values, reaches the caller's functions.
    struct functions_record {
        bool (*conflict_check_wrapper)(const functions_record* functions, const SpeechtextTextAttrs* attrs,
                                       const textattrmod_base* mod);
        void (*update_wrapper)(const functions_record* functions, SpeechtextTextAttrs* attrs,
                               const textattrmod_base* mod);
        // Does this record hold something that the edit must not overwrite?
        bool (*conflict_check)(const SpeechtextTextAttrs* attrs, const std::string& value);
        // Sets the value in one record.
        void (*update)(SpeechtextTextAttrs* attrs, const std::string& value);
    };

    // The text is not kept.
    textattrmod_base(const Speechtext& text, int start_at, std::size_t byte_length, bool forced);

    // A new text with the edits made, in the order given, which should be that of their ranges, without overlap; that
    // is neither sorted nor looked at, and other orders give records out of order.
    //
    // An edit changes the attributes in force at its start and every text attribute record strictly inside its range,
    // and puts back at its end what the text has in force there. It is made whole or not at all: not if a record that
    // it would change conflicts, unless it is forced. Throws std::logic_error, "Cannot tag attribute-less text", when
    // an edit is to be made with no text attribute record at or in front of its start.
    //
    // Two properties are kept on purpose. Behind an edit that was not made, the next one starts from the attributes at
    // that edit's start, unless a record stands between them. And where no record stands between two edits, those
    // inside the first come out once more, behind what is there, with the second edit's value.
    static Speechtext do_textattrmods_generic(const Speechtext& text, const std::list<const textattrmod_base*>& mods,
                                              const functions_record* functions);
};

template <class T>
struct textattrmod : textattrmod_base {
    T value;

    using check_function = bool (*)(const SpeechtextTextAttrs* attrs, const std::string& value);
    using update_function = void (*)(SpeechtextTextAttrs* attrs, const std::string& value);

    // The range is the match's, which must point into the string of text.
    textattrmod(const Speechtext& text, const regexp::Match& match, const T& new_value, bool forced);

    static Speechtext do_textattrmod(const Speechtext& text, textattrmod mod, check_function check,
                                     update_function update);
    static Speechtext do_textattrmods(const Speechtext& text, const std::list<textattrmod>& mods, check_function check,
                                      update_function update);

    static bool attribute_conflict_check_wrapper(const functions_record* functions, const SpeechtextTextAttrs* attrs,
                                                 const textattrmod_base* mod);
    static void attribute_update_wrapper(const functions_record* functions, SpeechtextTextAttrs* attrs,
                                         const textattrmod_base* mod);
};

// The one type of value there is.
extern template struct textattrmod<std::string>;

// Sets token roles. Any role in the range, the same one too, is a conflict.
Speechtext do_setrole(const Speechtext& text, const textattrmod<std::string>& mod);
Speechtext do_setroles(const Speechtext& text, const std::list<textattrmod<std::string>>& mods);
