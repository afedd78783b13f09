// Patterns over rich text.
//
// A pattern runs on the UTF-8 string of a Speechtext, and what it finds still knows the attribute records of the text
// that it came from: a Match is a piece of a string with a pointer to its Speechtext and an iterator into the records.
// An RE is a compiled pattern; its FindAndConsume() moves a Match through a text and keeps the iterators right.
//
//     regexp::RE word("(\\w+)\\s*");
//     regexp::Match rest(text), found;
//     while (word.FindAndConsume(&rest, &found)) use(found.as_speechtext(), found.textattrs());
//
// Offsets and lengths are bytes. Who keeps what alive: a Match owns neither its bytes nor its text. The Speechtext (or,
// for a Match over a plain string, the bytes) must outlive it unchanged. One thread at a time uses a Match; an RE may
// be shared by threads.
//
// The pattern language is PCRE's. UTF-8 mode is on by default, and a text that is not valid UTF-8 then matches nothing.
// A pattern that does not compile matches nothing either, without a message; see RE::re for its error().
#pragma once

#include <pcrecpp.h>

#include <atomic>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "speechtext/attrsrecord.h"

class Speechtext;
class SpeechtextTextAttrs;

namespace regexp {

// The one exception of the rewriting layer: bad replacement strings, bad patterns in a substitution, too many roles.
class invalid_regexp_replacement : public std::logic_error {
public:
    explicit invalid_regexp_replacement(const std::string& message);
    ~invalid_regexp_replacement() override;
};

// PCRE's options with three switches of the rewriting layer. The setters return *this, to be chained.
class RE_Options : public pcrecpp::RE_Options {
public:
    // Caseless off, UTF-8 on, insert_raw off, preserve_marks on, preserve_breaks off; else as in pcrecpp.
    RE_Options();

    RE_Options& set_caseless(bool caseless);
    RE_Options& set_utf8(bool utf8);
    // The value of the raw flag over text that a rewrite inserts.
    RE_Options& set_insert_raw(bool insert_raw);
    // Do marks (breaks) inside a replaced range survive?
    RE_Options& set_preserve_marks(bool preserve_marks);
    RE_Options& set_preserve_breaks(bool preserve_breaks);

    bool caseless() const { return pcrecpp::RE_Options::caseless(); }
    bool utf8() const { return pcrecpp::RE_Options::utf8(); }
    bool insert_raw() const { return insert_raw_; }
    bool preserve_marks() const { return preserve_marks_; }
    bool preserve_breaks() const { return preserve_breaks_; }

    // The option word of a substitution's pattern: PCRE_CASELESS and PCRE_UTF8, and no other option.
    int pcre_options() const;

private:
    bool insert_raw_ = false;
    bool preserve_marks_ = true;
    bool preserve_breaks_ = false;
};

// A piece of a string: data(), size() and as_string() are the piece's. One that was found in a Speechtext knows it and
// the place of its records there. Converts from strings and texts, and so serves as the parameter for either.
class Match : public pcrecpp::StringPiece {
public:
    typedef std::vector<SpeechtextAttrsRecord>::const_iterator iterator;

    // The text whose string the piece points into; null for a piece of a plain string.
    const Speechtext* text = nullptr;
    // Stands at the first record at or behind the piece's start, as far as the scan that found the piece could tell
    // (see RE::FindAndConsume). Null with a text: from the first record. Owned.
    iterator* attrsiter = nullptr;

    // No bytes, no text.
    Match();
    // Bytes without a text. More than 2,147,483,647 bytes are cut there.
    Match(const char* string);
    Match(const char* bytes, std::size_t n);
    Match(const std::string& string);
    // The whole text, from its first record.
    Match(const Speechtext& whole);
    // A copy of a match with a text and no iterator holds an iterator at the first record. Assigning does as copying.
    Match(const Match& other);
    Match& operator=(const Match& other);
    ~Match();

    bool is_speechtext() const { return text != nullptr; }

    // A heap copy of the iterator, one at the first record if there is none, null without a text. The caller owns it.
    iterator* get_attrsitercopy() const;
    // Holds a copy of *it, or none if it is null.
    void set_attrsiter(const iterator* it);

    // The match as a text of its own: its bytes under the text attributes in force at its start, with the records of
    // the range at positions from the match's start. Records at its very end are left out, so that the copy of a whole
    // text loses its trailing ones. Where no text attribute record stands in front of the match, but other records do,
    // these come along at negative positions.
    Speechtext as_speechtext() const;
    // Adds the records that as_speechtext() selects to dest, all at position 0, but of the text attribute records only
    // the one in force at the start. A match without iterator loses marks and breaks at its very start and brings every
    // later record of its range. Without a text, nothing is added.
    void copy_attrs_to_text(Speechtext& dest) const;

    // The part of this match in front of other, which must start inside or at the end of this one; and the part from
    // other's start on, which may lie in front of this one in the same text. Otherwise a line on the standard error
    // stream and an empty match; so also for another's start from a piece without bytes, and, in starting_from(), for a
    // match of another text. Without a text nobody can see whether other points into the same bytes: it must.
    Match up_to(const Match& other) const;
    Match starting_from(const Match& other) const;

    // The text attributes in force at the match's start, found from the iterator. Null without any, without a text, and
    // behind the last record of the text, although some are in force there. Lives as long as the text's record.
    const SpeechtextTextAttrs* textattrs() const;
    // Token::has_role() on these; false without any.
    bool has_role(const std::string& role) const;

    // Bytes only.
    bool operator==(const Match& other) const;
    bool operator!=(const Match& other) const { return !(*this == other); }

private:
    friend class RE;

    // A scan's piece was seen to be valid UTF-8 from checked_from_ up to checked_end_: says nothing any more as soon as
    // the piece is another.
    const char* checked_from_ = nullptr;
    const char* checked_end_ = nullptr;

    void forget_check() { checked_from_ = checked_end_ = nullptr; }
};

// A compiled pattern.
class RE {
public:
    RE(const std::string& pattern);
    // The options go to pcrecpp.
    RE(const std::string& pattern, const RE_Options& options);
    RE(const RE& other);
    RE& operator=(const RE& other);
    ~RE();

    // Always the defaults, whatever the constructor was given.
    RE_Options options;
    // The compiled pattern, to be read: pattern(), error(), NumberOfCapturingGroups().
    pcrecpp::RE re;

    // Finds the next match in *input, moves *input behind it and sets the groups, in order, to what the pattern's
    // groups matched. False, with nothing changed, if there is no match, or if the pattern has fewer groups than were
    // asked for. A null group is passed over. A match of no length at the start of *input leaves *input where it is.
    //
    // The groups and *input get the text of *input, if it has one, and iterators into its records, all found in one
    // forward pass over a whole scan: a group that starts in front of an earlier group argument gets an iterator that
    // stands behind its own start (Match::textattrs() walks back from there). A group that took no part in the match
    // becomes an empty Match without text.
    //
    // UTF-8 is checked once in a scan, not at each call.
    bool FindAndConsume(Match* input);
    bool FindAndConsume(Match* input, Match* g1);
    bool FindAndConsume(Match* input, Match* g1, Match* g2);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7,
                        Match* g8);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7,
                        Match* g8, Match* g9);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7,
                        Match* g8, Match* g9, Match* g10);
    bool FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7,
                        Match* g8, Match* g9, Match* g10, Match* g11);

    // Does the pattern match somewhere in the text; does it match the whole text? Compiled anew at each call.
    static bool search(const char* pattern, const std::string& text, const RE_Options& options);
    static bool search(const std::string& pattern, const std::string& text, const RE_Options& options);
    static bool search(const char* pattern, const Speechtext& text, const RE_Options& options);
    static bool search(const std::string& pattern, const Speechtext& text, const RE_Options& options);
    static bool match(const char* pattern, const std::string& text, const RE_Options& options);
    static bool match(const std::string& pattern, const std::string& text, const RE_Options& options);
    static bool match(const char* pattern, const Speechtext& text, const RE_Options& options);
    static bool match(const std::string& pattern, const Speechtext& text, const RE_Options& options);

    // The number of matches, as FindAndConsume() finds them. DOES NOT RETURN if the pattern comes to match without any
    // length, as "a*" does in front of a "b": the scan then stays where it is.
    static int countall(const char* pattern, const char* text, const RE_Options& options);
    static int countall(const std::string& pattern, const std::string& text, const RE_Options& options);

    // Replace each match, or the span of group 1 in each match, by the value of the replacement string (its language is
    // told in regexp/replacer.h). True if there was one. The text changes at the end only: not if
    // invalid_regexp_replacement is thrown, for a pattern that does not compile or a bad replacement string. A text
    // that is not valid UTF-8 has no match; a match in which more than 15 groups take part ends the search, as does
    // what PCRE cannot match within its limits.
    //
    // Behind a match without length the search looks for one with length at the same place, then moves on by one
    // character: "a*" to "-" makes "-b--" of "baaa". sub1 goes on behind group 1, not behind the match. Where that
    // would make the same edit again, which it would do for ever, the search moves on by one character instead. A group
    // 1 that took no part, or that the pattern does not have, puts the new bytes at the very front of the text, and the
    // search ends.
    //
    // Of a Speechtext, options say whether marks and breaks inside a replaced range survive, see do_replacements().
    static bool sub(const std::string& pattern, const std::string& rewrite, std::string* str,
                    const RE_Options& options);
    static bool sub(const std::string& pattern, const std::string& rewrite, Speechtext* text,
                    const RE_Options& options);
    static bool sub1(const std::string& pattern, const std::string& rewrite, std::string* str,
                     const RE_Options& options);
    static bool sub1(const std::string& pattern, const std::string& rewrite, Speechtext* text,
                     const RE_Options& options);
    // The same for the span of any group (0 is the match). One of str and text is null; with both null there is nothing
    // to do, and the result is false. If both are given, text is rewritten.
    static bool substitute_match(const std::string& pattern, int group, const std::string& rewrite, std::string* str,
                                 Speechtext* text, const RE_Options& options);

    // The text with token roles over the groups of all matches: roles are separated by "|", the i-th is for group i, at
    // most 6. A group that carries a role somewhere already keeps all it has, unless force. A group that took no part
    // gets none. A "|" at the very end asks for one group more, which gets none. With more roles than the pattern has
    // groups nothing matches. Throws invalid_regexp_replacement for more than 6 roles, std::logic_error for text
    // without text attributes (see do_setroles() in regexp/replacer.h).
    //
    // DOES NOT RETURN if the pattern comes to match without any length, see countall().
    static Speechtext setrole(RE& re, const Speechtext& text, const std::string& roles, bool force);
    static Speechtext setrole(const std::string& pattern, const Speechtext& text, const std::string& roles, bool force,
                              const RE_Options& options);

    // A pattern that matches the text literally: a backslash stands in front of every ASCII byte but letters, digits,
    // underscore and blank; NUL becomes "\0", which an octal digit behind it extends ("\01" is the byte 1); other bytes
    // stay, so that UTF-8 sequences stay whole. The third form is for literals, which could be either of the others; a
    // null pointer reads as an empty text there.
    static std::string QuoteMeta(const std::string& text);
    static std::string QuoteMeta(const pcrecpp::StringPiece& text);
    static std::string QuoteMeta(const char* text);

private:
    bool scan(Match* input, Match* const* groups, std::size_t count);
    bool consume(const Match& input, pcrecpp::StringPiece* rest, pcrecpp::StringPiece* found, std::size_t count);
    void note_check(Match* input, const pcrecpp::StringPiece& rest) const;
    const pcrecpp::RE& unchecked();

    // What the pattern was compiled with, and the same pattern with the check of the subject turned off, compiled when
    // a scan first needs it.
    pcrecpp::RE_Options compiled_with_;
    std::atomic<const pcrecpp::RE*> unchecked_{nullptr};
};

}  // namespace regexp
