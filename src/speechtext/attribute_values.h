// The value classes that a text attribute record is composed of.
//
// Each is a plain value: default-constructed to "nothing asked for", copied field by field, compared with == and !=,
// and printed on one line for debugging with to_string(). Fields without an accessor of the same name are public.
// Nothing here checks or parses what it is given, except the setters that say so. Strings are UTF-8.
#pragma once

#include <list>
#include <string>
#include <utility>

// An audio insert. All records that belong to one insert carry the same instance number.
class Audio {
public:
    std::string source;
    float speed = 1.0F;   // playback speed as a factor
    float volume = 1.0F;  // playback volume as a factor

    // 0: no audio.
    unsigned int instance() const { return instance_; }
    void set_instance(unsigned int instance) { instance_ = instance; }

    // Takes a percentage text ("150%" is 1.5). What is not above 0, or no number, gives 1.0.
    void set_speed(const std::string& percentage);
    // Takes a signed decibel text ("+6dB") and replaces the volume by it. Text without a sign is ignored.
    void set_volume(const std::string& decibels);

    // instance and source decide; two values that differ only in speed or volume are equal, on purpose.
    bool operator==(const Audio& other) const;
    bool operator!=(const Audio& other) const { return !(*this == other); }

    // "-" without audio; otherwise "#instance:source", cut at 199 bytes.
    std::string to_string() const;

private:
    unsigned int instance_ = 0;
};

class Emphasis {
public:
    std::string level;  // "moderate" or empty on the speak path

    void set_emphasis(const std::string& new_level) { level = new_level; }

    bool operator==(const Emphasis& other) const { return level == other.level; }
    bool operator!=(const Emphasis& other) const { return !(*this == other); }

    std::string to_string() const { return level; }
};

// References to lexicons. Carried and compared; no text form shows them.
class Lexiconinfo {
public:
    std::list<std::pair<std::string, std::string>> entries;

    bool operator==(const Lexiconinfo& other) const { return entries == other.entries; }
    bool operator!=(const Lexiconinfo& other) const { return !(*this == other); }
};

// Pitch, rate and volume: what was asked for, as text, and what it comes to, as factors of the voice's defaults.
class Prosody {
public:
    unsigned int instance = 0;
    std::string contour;
    std::string duration;
    float pitch_value = 1.0F;
    std::string pitch;
    std::string range;
    float rate_value = 1.0F;
    std::string rate;
    float volume_value = 1.0F;
    std::string volume;

    float pitch_computed() const { return pitch_value; }
    float rate_computed() const { return rate_value; }
    float volume_computed() const { return volume_value; }

    // Takes SSML texts. A relative value applies to the factor that the object holds, so that nested settings compose
    // on a copy of the enclosing value. An empty text empties its string and leaves its factor alone; what is not
    // understood is kept as a string only. A percentage without sign as rate multiplies by 1 plus it if
    // percent_is_relative.
    void set_prosody(unsigned int instance, const std::string& contour, const std::string& duration,
                     const std::string& pitch, const std::string& range, const std::string& rate,
                     const std::string& volume, bool percent_is_relative);
    // Stores the factors as they are; pitch, rate and volume become "(absolute)", the other strings stay.
    void set_prosody_absolute(unsigned int instance, float pitch, float rate, float volume);

    // All fields. A factor that is not a number is unequal to everything, also to itself.
    bool operator==(const Prosody& other) const;
    bool operator!=(const Prosody& other) const { return !(*this == other); }

    std::string to_string() const;
};

// How the text run is to be interpreted. No setter for detail: no producer may set it.
class SayAs {
public:
    std::string detail() const { return detail_; }
    std::string format() const { return format_; }
    std::string interpret_as() const { return interpret_as_; }
    void set_format(const std::string& format) { format_ = format; }
    void set_interpret_as(const std::string& interpret_as) { interpret_as_ = interpret_as; }

    bool operator==(const SayAs& other) const;
    bool operator!=(const SayAs& other) const { return !(*this == other); }

    std::string to_string() const { return detail_ + "," + format_ + "," + interpret_as_; }

private:
    std::string detail_;
    std::string format_;
    std::string interpret_as_;
};

// Paragraph and sentence numbers; 0 means in no numbered one.
class Textlocation {
public:
    unsigned int paragraph = 0;
    unsigned int sentence = 0;

    Textlocation() = default;
    Textlocation(unsigned int paragraph_number, unsigned int sentence_number)
        : paragraph(paragraph_number), sentence(sentence_number) {}

    bool sentence_set() const { return sentence != 0; }
    // Takes the sentence number alone over.
    void set_sentence(const Textlocation& other) { sentence = other.sentence; }

    static bool same_paragraph(const Textlocation& a, const Textlocation& b) { return a.paragraph == b.paragraph; }
    static bool same_sentence(const Textlocation& a, const Textlocation& b) {
        return same_paragraph(a, b) && a.sentence == b.sentence;
    }

    bool operator==(const Textlocation& other) const { return same_sentence(*this, other); }
    bool operator!=(const Textlocation& other) const { return !(*this == other); }

    std::string to_string() const;
};

// The role of a text run: items "name:value,value" between ASCII blanks. Names are compared as bytes. An argument
// called item has the form of one item; its first colon divides it.
class Token {
public:
    unsigned int instance = 0;
    std::string label;

    std::string role() const { return role_; }
    void set_role(const std::string& role);
    // Are all values of the item there, over all items of its name? Without a colon, whole items are looked at.
    bool has_role(const std::string& item) const;
    // The value list of the first item with this name; only a blank or the start may stand in front of it.
    std::string get_role_content(const std::string& name) const;
    // Sets or replaces one item; an item without values is removed, and the blank in front of it stays.
    void replace_role(const std::string& item);
    // Appends the item's values unless all are there.
    void add_role(const std::string& item);
    // Takes the item's value part, as one piece of text, out of the list.
    void remove_role(const std::string& item);
    // Applies "name:+value,-value" edit by edit.
    void modify_role(const std::string& edits);

    bool operator==(const Token& other) const;
    bool operator!=(const Token& other) const { return !(*this == other); }

    std::string to_string() const;

private:
    std::string role_;
};

// A phonetic transcription of a stretch of text. All records of one stretch carry the same instance number.
class Transcription {
public:
    std::string alphabet = "ipa";
    std::string phonemes;
    std::string qualifier;

    // 0: no transcription.
    unsigned int instance() const { return instance_; }
    void set_instance(unsigned int instance) { instance_ = instance; }

    bool operator==(const Transcription& other) const;
    bool operator!=(const Transcription& other) const { return !(*this == other); }

    std::string to_string() const;

private:
    unsigned int instance_ = 0;
};

// The voice asked for; a negative number and an empty string mean unset.
class Voiceinfo {
public:
    int age = -1;
    std::string gender;
    std::string name;
    int variant = -1;

    bool operator==(const Voiceinfo& other) const;
    bool operator!=(const Voiceinfo& other) const { return !(*this == other); }

    // Cut at 99 bytes.
    std::string to_string() const;
};
