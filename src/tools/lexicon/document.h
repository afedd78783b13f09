// A pronunciation lexicon (W3C PLS 1.0) that can be edited without disturbing what is around the edits.
//
// The file's bytes are kept, with the places of the lexemes in them; an edit replaces a few bytes of one lexeme.
// Comments, metadata, unknown elements and attributes, line ends and the encoding stay as they were:
//
//     Document d = Document::parse(bytes);
//     d.add({"Nguyen", Way::sounds, "wɪn"});
//     d.bytes();      // as before, and one lexeme more behind the last one
//     d.undo();
//     d.bytes();      // exactly the bytes that were parsed
//
// A word is one grapheme of a lexeme, so a lexeme that gives two spellings shows as two words. They share what is said:
// changing that for the one changes it for the other.
//
// A lexeme may list several pronunciations. What is said is the one marked prefer="true", or the first; the others are
// kept and not shown.
//
// All text is UTF-8, whatever the file's encoding. Files of up to 256 MiB are taken; everything but undo and redo costs
// time in proportion to the file's size at most, and a look-up or an edit only its own.
#ifndef NELVA_TOOLS_LEXICON_DOCUMENT_H
#define NELVA_TOOLS_LEXICON_DOCUMENT_H

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/lexicon/encoding.h"
#include "tools/lexicon/word_index.h"

namespace lexicon {

inline constexpr std::string_view pls_namespace = "http://www.w3.org/2005/01/pronunciation-lexicon";
// Of the attribute case="exact", which the synthesiser reads.
inline constexpr std::string_view nelva_namespace = "urn:nelva:lexicon";
inline constexpr std::size_t largest_lexicon = std::size_t{256} << 20;
inline constexpr const char* too_large_text = "It is larger than 256 MB, which is more than can be edited here.";

// Why a file cannot be edited here. what() is a sentence for its owner, without the file's name.
struct BadLexicon : std::runtime_error {
    enum class Reason { not_xml, not_a_lexicon, encoding, too_large };
    BadLexicon(Reason why, const std::string& what) : std::runtime_error(what), reason(why) {}
    Reason reason;
};

// Why an edit was not made; nothing has changed then. what() is a sentence for whoever typed it.
struct BadWord : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// By phonemes (<phoneme>) or by other words in its place (<alias>).
enum class Way { sounds, words };

// What a person types. Blanks at the ends and runs of them mean nothing.
struct WordText {
    std::string word;
    Way way = Way::sounds;
    std::string said;
    bool operator==(const WordText&) const = default;
};

// Which word: valid until the next edit, undo or redo.
struct WordId {
    std::size_t lexeme = 0, grapheme = 0;
    bool operator==(const WordId&) const = default;
};

struct Word {
    WordId id;
    WordText text;         // said is empty where the lexeme has neither phonemes nor an alias
    std::string alphabet;  // of the phonemes: "ipa" in all but rare files; empty for an alias
    bool shared = false;   // other spellings of the same lexeme are said so too
};

// One edit as a person sees it: nothing before is an addition, nothing after a removal.
struct Edit {
    std::optional<WordText> before, after;
};

class Document {
public:
    // Throws BadLexicon.
    static Document parse(std::string bytes);

    // No words yet; `language` is that of xml:lang ("en-US").
    static Document create(const std::string& language);

    // The file as it is to be written.
    std::string bytes() const;

    // In the order of the file.
    std::vector<Word> words() const;
    Word word(WordId id) const;  // of one that is there

    // xml:lang of the file, empty without one.
    const std::string& language() const { return language_; }

    // The word that the voice takes for this one: with exactly this spelling, else one that differs in case alone; the
    // first of several. Where the file says case="exact" in the namespace urn:nelva:lexicon, case counts.
    std::optional<WordId> find(std::string_view word) const;

    // Edits. Each is one step for undo; one that changes nothing is none. They throw BadWord when a text is empty or
    // holds what XML cannot, and when the lexeme comes out of an entity, whose text stands elsewhere.
    WordId add(const WordText& word);
    void change(WordId id, const WordText& to);
    void remove(WordId id);

    bool can_undo() const { return done_ > 0; }
    bool can_redo() const { return done_ < steps_.size(); }

    // They give what they did, undo the edit turned round; nothing where nothing can be done.
    std::optional<Edit> undo();
    std::optional<Edit> redo();

    // Whether bytes() differ from what was parsed, or from what was there at the last mark_saved().
    bool is_changed() const { return done_ != saved_ || !edits_before_.empty(); }
    void mark_saved();

    // What leads from there to here, in an order in which it can be done.
    std::vector<Edit> edits_since_saved() const;

private:
    friend class Parser;

    struct Span {
        std::size_t begin = 0, end = 0;
    };
    // An element inside a lexeme; places count from the lexeme's first byte.
    struct Piece {
        Span element, content;
        bool empty = false;  // <grapheme/>: there is no end tag
        std::string text;
    };
    struct Said : Piece {
        Way way = Way::sounds;
        std::string alphabet;
        bool preferred = false;
    };
    struct Lexeme {
        Span source;  // of one that was parsed
        bool present = true;
        bool fixed = false;              // out of an entity
        bool exact = false;              // case counts
        std::optional<std::string> own;  // its bytes where they are not those of the source
        std::vector<Piece> graphemes;
        std::vector<Said> said;
    };
    struct Step {
        std::size_t lexeme;
        Lexeme other;  // the state on the other side of the step
        Edit edit;
    };

    static const Said* said_of(const Lexeme& lexeme);
    static WordText text_of(const Lexeme& lexeme, std::size_t grapheme);
    std::string_view bytes_of(const Lexeme& lexeme) const;
    std::string raw_name(const Lexeme& lexeme, const Piece& piece) const;
    const Lexeme& editable(WordId id) const;

    void splice(Lexeme* lexeme, Span place, const std::string& with) const;
    void replace_text(Lexeme* lexeme, Piece* piece, const std::string& text) const;
    void replace_said(Lexeme* lexeme, const WordText& to) const;
    void insert_said(Lexeme* lexeme, const WordText& to) const;
    void remove_grapheme(Lexeme* lexeme, std::size_t grapheme) const;
    void append_element(std::string* out, Piece* piece, const std::string& name, const std::string& attributes,
                        const std::string& text, std::size_t base) const;
    Said append_said(std::string* out, const WordText& word, bool preferred, std::size_t base) const;
    Lexeme new_lexeme(const WordText& word) const;

    std::string tag(const std::string& name) const { return prefix_ + name; }
    std::size_t blanks_before(std::string_view bytes, std::size_t at, bool one_line) const;
    void find_layout();
    std::string added_bytes() const;
    void take_step(std::size_t lexeme, Lexeme state, Edit edit);
    void swap_step(Step* step);
    const WordIndex& index() const;

    std::string source_;
    Encoding encoding_;
    std::string prefix_;  // "p:" where the file's elements are <p:lexeme>
    std::string language_;
    std::string alphabet_;  // of the root element
    bool exact_ = false;    // its case="exact"
    Span root_end_;         // the end tag, or "/>" of an empty root element
    bool root_empty_ = false;

    std::size_t insert_at_ = 0;     // where new lexemes go
    std::string newline_, indent_;  // before a new lexeme; newline_ is empty where the file has all in one line
    bool newline_behind_ = false;   // the root's end tag wants a line of its own

    std::vector<Lexeme> lexemes_;  // parsed ones in the file's order, then new ones
    std::size_t parsed_ = 0;
    mutable std::optional<WordIndex> index_;  // of the lexemes that are present; from the first look-up on

    std::vector<Step> steps_;
    std::size_t done_ = 0, saved_ = 0;
    std::vector<Edit> edits_before_;  // from the saved state to that at saved_, once the way back there is cut off
};

// The edits done again in a file that may have changed meanwhile: a word that is gone is added, one that is there
// already is changed, one to remove that is gone is left.
void repeat_edits(Document* document, const std::vector<Edit>& edits);

}  // namespace lexicon

#endif
