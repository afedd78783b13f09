// One sentence of a document, as it goes to be spoken, and what cuts a document into them.
#ifndef TTS_ENGINE_SENTENCE_H
#define TTS_ENGINE_SENTENCE_H

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "tts_engine/composition.h"

namespace tts {

// A character and the bytes of the document that stand for it (an entity takes several).
struct Character {
    char32_t code;
    std::uint32_t begin;
    std::uint32_t end;
};

// A character of a sentence that stands for an element without text. Text never holds it: there it is a blank.
constexpr char32_t object_character = 0xFFFC;

// As words; character by character, signs and blanks included; signs by their names and the rest as words; digit by
// digit.
enum class SayAs : std::uint8_t { text, characters, signs, digits };

// How text is to be spoken. Factors are relative to the voice.
struct Attributes {
    float rate = 1;
    float pitch = 1;
    float range = 1;
    float volume = 1;
    SayAs say_as = SayAs::text;
    std::uint16_t language = 0;  // number of a language of the document; 0 is the voice's own
    bool operator==(const Attributes&) const = default;
};

// Text from character `first` on is spoken with these attributes.
struct Run {
    std::uint32_t first;
    Attributes attributes;
};

// A mark or a pause that stands in front of character `position` (or behind the last).
struct Anchor {
    enum class Kind : std::uint8_t { mark, pause };
    Kind kind;
    std::uint32_t position;
    std::uint32_t milliseconds;  // of a pause
    std::string name;            // of a mark
};

// A word or number as it stands in the text: characters `first` up to, not including, `last`.
struct Token {
    std::uint32_t first;
    std::uint32_t last;
};

// What is said in place of characters `first` up to, not including, `last`: other text, or sounds in IPA.
struct Spoken {
    enum class Kind : std::uint8_t { text, ipa };
    Kind kind;
    std::uint32_t first;
    std::uint32_t last;
    std::string text;
};

struct Sentence {
    std::vector<Character> text;
    std::vector<Run> runs;        // the first at character 0 if there is text
    std::vector<Spoken> spoken;   // in order, apart from each other
    std::vector<Anchor> anchors;  // by position
    std::vector<Token> tokens;
    std::vector<Token> signs;       // the characters that are said by their names, in order
    bool begins = true;             // false for what goes on with a sentence that was too long for one piece
    bool ends = true;               // false if the next piece goes on with it
    bool begins_paragraph = false;  // a paragraph ends between it and what is before it
    std::uint32_t whole_end = 0;    // the byte where the event of a sentence that begins here ends
    bool has_text() const { return !text.empty(); }
};

// Takes a document's text, marks and changes of attributes in order and gives sentences.
//
// A sentence ends at . ! ? and their kin where a blank follows (where . follows an abbreviation of the language, an
// initial or a German ordinal, or precedes a small letter, it does not), at the ends of scripts without blanks, at an
// empty line, and where the document says so. A sentence that does not end is cut at a blank, or where there is none
// between characters as a reader sees them, so that no piece grows without bound. Blanks at both ends of a sentence
// belong to none. Marks after a sentence's end are at the start of the next.
//
// Text is composed as it arrives (composition.h): a mark and its letter are one character, whose range is that of both.
// Invisible characters are left out, unless they change how something is read or the text is spelled.
//
// A span is the text of an element that is one thing: no sentence ends in it, unless it is long or the document says
// so. Its text may be taken as one word, or something else may be said for it.
class SentenceCutter {
public:
    void add(Character character);
    void add_mark(std::string name);
    void add_pause(std::uint32_t milliseconds);
    void set_attributes(const Attributes& attributes);
    void name_signs();  // signs are said by their names wherever they are, from the document's start on
    void set_language(std::string_view tag);  // of what comes, for its abbreviations; English at the start
    void end_word();                          // a fragment's border: what follows is another word
    void end_sentence();                      // the document says that a sentence ends here
    void end_paragraph();                     // the same of a paragraph
    void finish();                            // the document ends

    // The next character begins a span. Spans nest.
    void open_span();

    // Whether the innermost span has no character yet.
    bool is_span_empty() const { return !spans_.empty() && !spans_.back().started; }

    // The innermost span ends. Its characters, without blanks at both ends; empty if it has none or if it lies in two
    // sentences.
    Token close_span();

    // Characters `range` of the sentence that is in work, as UTF-8.
    std::string text_of(Token range) const;

    // What the caller makes of a span that has just been closed: one word; something else to say, whose full stops end
    // no sentence.
    void set_word(Token range);
    void set_spoken(Spoken spoken);

    // The sentences that are complete, oldest first; the caller takes them out.
    std::deque<Sentence>& ready() { return ready_; }

private:
    enum class End : std::uint8_t { none, full_stop, strong, wide };

    struct Span {
        bool started;
        std::uint64_t piece;  // number of the piece where it started
        std::uint32_t first;
    };

    // Whether a span that has started lies in more than the piece in work.
    bool is_broken(const Span& span) const { return span.piece != piece_; }

    void add_blank(Character character);
    void note_blank(char32_t code);
    bool is_gap(char32_t code) const;
    bool is_spelled(char32_t blank) const;
    bool in_spelled_run() const;
    void start_run();
    void drop_blanks_at_end();
    bool in_span() const;
    void start_spans();
    bool ends_before(char32_t code) const;
    bool too_long_at_blank() const;
    bool too_long_inside(char32_t code) const;
    bool take_up(Character& character);
    bool is_left_out(char32_t code) const;
    void add_composed(Character character, const Cluster& codes);
    bool join(Character& character);
    void append(Character character);
    void move_pauses();
    void append_blank_at_border(const Character& next);
    void cut(bool next_begins);

    Sentence current_;
    Attributes attributes_;
    std::string language_ = "en";
    std::deque<Sentence> ready_;
    std::vector<Span> spans_;
    std::uint64_t piece_ = 0;   // number of the piece in work
    bool paragraph_ = false;    // a paragraph has ended since the last text
    std::vector<Token> words_;  // the words that are set, by position
    End end_ = End::none;       // what the text so far ends with, but for closing quotes and brackets
    bool closed_ = false;       // closing quotes or brackets follow that end
    bool blank_ = false;        // and blanks after that
    unsigned newlines_ = 0;     // how many of those are line ends
    bool layout_ = false;       // one of those breaks lines or columns
    bool names_signs_ = false;
    bool border_ = false;          // a word ends at a fragment's border
    std::uint32_t end_index_ = 0;  // where in the text the end's first character stands
};

}  // namespace tts

#endif
