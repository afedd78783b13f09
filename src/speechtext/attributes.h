// The attribute objects that stand at positions of a Speechtext.
//
// A mark is a named point, a break a pause at a point, and a text attribute record a snapshot of all properties of the
// text from its position to the next such record. Records are built as local objects; a Speechtext stores clones and
// owns those. A snapshot is never a difference: to change one property, copy the record in force, change it, append the
// copy.
#pragma once

#include <concepts>
#include <string>

#include "speechtext/attribute_values.h"

// What all records have in common. A class that answers true to is_contentattrs() derives from SpeechtextTextAttrs, one
// that answers true to is_mark() from SpeechtextMark, and one that answers true to is_break() from SpeechtextBreak.
class SpeechtextAttrs {
public:
    virtual ~SpeechtextAttrs() = default;
    virtual bool is_break() const { return false; }
    virtual bool is_contentattrs() const { return false; }
    virtual bool is_mark() const { return false; }
    // Does the record's effect depend on the text attributes around it, so that they must be kept for it?
    virtual bool is_context_dependent() const = 0;
    virtual std::string to_debugstr() const = 0;
    // A copy on the heap, owned by the caller.
    virtual SpeechtextAttrs* clone() const = 0;
    // Objects of different classes are unequal, and an object always equals itself.
    virtual bool operator==(const SpeechtextAttrs& other) const = 0;
    bool operator!=(const SpeechtextAttrs& other) const { return !this->operator==(other); }

protected:
    SpeechtextAttrs() = default;
    SpeechtextAttrs(const SpeechtextAttrs&) = default;
    SpeechtextAttrs& operator=(const SpeechtextAttrs&) = default;
};

// Two records of any static types: C++20 would otherwise find the virtual operator of either side equally good.
template <std::derived_from<SpeechtextAttrs> Left, std::derived_from<SpeechtextAttrs> Right>
bool operator==(const Left& left, const Right& right) {
    return static_cast<const SpeechtextAttrs&>(left).operator==(static_cast<const SpeechtextAttrs&>(right));
}

// A named point. It takes up no text.
class SpeechtextMark : public SpeechtextAttrs {
public:
    unsigned int instance;  // given by the producer; tells apart marks of one name

    SpeechtextMark(unsigned int instance_number, const std::string& id) : instance(instance_number), id_(id) {}
    SpeechtextMark(const SpeechtextMark&) = default;
    SpeechtextMark& operator=(const SpeechtextMark&) = default;

    std::string id() const { return id_; }
    // An invisible mark stays in the text and is written with qm:invisible="true".
    bool invisible() const { return invisible_; }
    void invisible(bool invisible) { invisible_ = invisible; }

    bool is_mark() const override { return true; }
    bool is_context_dependent() const override { return false; }
    std::string to_debugstr() const override;
    SpeechtextMark* clone() const override { return new SpeechtextMark(*this); }
    // All three fields.
    bool operator==(const SpeechtextAttrs& other) const override;
    // By id, then instance, then invisible; false between records of different classes.
    virtual bool operator<(const SpeechtextAttrs& other) const;

    // The order without invisible: a mark made invisible keeps its identity.
    bool compare_mark_identity_less(const SpeechtextMark& other) const;
    // A hash that equal marks share.
    std::size_t hash() const;

private:
    friend class SpeechtextSsmlEncoder;  // reads the id without copying it

    std::string id_;
    bool invisible_ = false;
};

// Orders a std::set of marks by identity.
struct Compare_SpeechtextMark_identity_less {
    bool operator()(const SpeechtextMark& a, const SpeechtextMark& b) const { return a.compare_mark_identity_less(b); }
};

// A pause. Strength and time are taken as they are and never parsed here; both may be empty.
class SpeechtextBreak : public SpeechtextAttrs {
public:
    unsigned int instance;  // given by the producer

    SpeechtextBreak(unsigned int instance_number, const std::string& strength, const std::string& time)
        : instance(instance_number), strength_(strength), time_(time) {}
    SpeechtextBreak(const SpeechtextBreak&) = default;
    SpeechtextBreak& operator=(const SpeechtextBreak&) = default;

    std::string strength() const { return strength_; }
    std::string time() const { return time_; }

    bool is_break() const override { return true; }
    bool is_context_dependent() const override { return true; }
    std::string to_debugstr() const override;
    SpeechtextBreak* clone() const override { return new SpeechtextBreak(*this); }
    // All three fields.
    bool operator==(const SpeechtextAttrs& other) const override;
    // By instance, then strength, then time; false between records of different classes.
    virtual bool operator<(const SpeechtextAttrs& other) const;

    // A hash that equal breaks share.
    std::size_t hash() const;

private:
    std::string strength_;
    std::string time_;
};

// A snapshot of all text properties, in force from its position to the next such record.
class SpeechtextTextAttrs : public SpeechtextAttrs {
public:
    Audio audio;
    Emphasis emphasis;
    Lexiconinfo lexicon;
    Prosody prosody;
    SayAs say_as;
    Textlocation location;
    Token token;
    Transcription transcription;
    Voiceinfo voice;
    std::string language;
    bool raw = false;  // the text run is literal markup, to be copied through

    SpeechtextTextAttrs() = default;
    SpeechtextTextAttrs(const SpeechtextTextAttrs&) = default;
    SpeechtextTextAttrs& operator=(const SpeechtextTextAttrs&) = default;

    void set_language(const char* tag) { language = tag; }
    void set_language(const std::string& tag) { language = tag; }

    bool is_contentattrs() const override { return true; }
    bool is_context_dependent() const override { return false; }
    std::string to_debugstr() const override;
    SpeechtextTextAttrs* clone() const override { return new SpeechtextTextAttrs(*this); }
    bool operator==(const SpeechtextAttrs& other) const override;
    // What changed against previous; empty if nothing did.
    virtual std::string to_debugstr_rel(const SpeechtextTextAttrs& previous) const;
};
