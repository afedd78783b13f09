// Writes one Speechtext as one SSML document, the text that goes to the synthesiser.
//
// The model has no nesting: a text is a flat run of snapshots. The writer keeps a stack of open elements, each with
// what held just before it opened, and derives from each snapshot what closes, what opens and in which order. The
// document has no XML declaration. Elements: speak, voice, lang, p, s, prosody, say-as, mark, break. Text runs are
// XML-encoded; raw runs are copied through as they are, unbalanced if they are; attribute values are written as they
// stand. Marks and breaks inside a raw element that must stay in one piece (see raw_tags.h) move in front of it. Text
// without any text attribute record has no root element. Nothing fails but the allocation of memory.
//
// Usually reached through Speechtext::to_ssml(), which also chooses the version:
//
//     SpeechtextSsmlEncoder encoder("1.1");
//     encoder.set_text(text);
//     std::string document = encoder.get_ssml();
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "speechtext/attributes.h"
#include "speechtext/attrsrecord.h"
#include "speechtext/speechtext.h"
#include "speechtext/ssml_lookahead.h"

namespace fragments_detail {
class DirectDocument;
}

class SpeechtextSsmlEncoder {
public:
    // "1.0" or "1.1"; decides the language element and the units of rate and volume.
    SpeechtextSsmlEncoder(const std::string& version);

    // Takes a copy.
    void set_text(const Speechtext& text);
    // Writes the whole document and returns it. To be called once: the state stays, and a second document would be
    // written behind the first.
    std::string get_ssml();

private:
    friend class Speechtext;
    friend class fragments_detail::DirectDocument;  // writes the document piece by piece
    friend struct SsmlEncoderTestAccess;

    // What the open elements have established at the end of the document. The other text properties are never written,
    // so that nothing is ever in force for them.
    struct InForce {
        std::string language;
        Textlocation location;
        Prosody prosody;
        Voiceinfo voice;
        bool raw = false;
    };
    struct OpenElement {
        const char* name;
        InForce outside;  // what held just before it opened
    };
    // Tags to be put in at an offset of the document.
    struct Insertion {
        std::size_t offset;
        std::string tags;
    };

    using Records = std::span<const SpeechtextAttrsRecord>;

    // With the tail of an empty copy, stops and gives false as soon as the copy would not take a record as it stands.
    bool write_document(std::string_view text, Records records, AttrsTail* copy);
    void write_header(const SpeechtextTextAttrs& first);
    void write_point(const SpeechtextAttrs& point);
    void write_run(std::string_view text, std::size_t begin, std::size_t end);
    void write_end(std::string_view rest);
    void count_raw_tags(std::string_view bytes);

    void change_attrs(std::size_t index, const SpeechtextTextAttrs& ta, SsmlLookahead* lookahead);
    void close_for(const SpeechtextTextAttrs& ta);
    bool location_closes_top(const Textlocation& location) const;
    bool change_closes_top(const SpeechtextTextAttrs& ta) const;
    void start_with_lookahead(std::size_t index, const SpeechtextTextAttrs& ta, SsmlLookahead* lookahead);
    void start_language(const std::string& language);
    void start_say_as(const SayAs& say_as);

    const std::string& tag_of(const SpeechtextMark& mark);
    void add_ssml_mark(const SpeechtextMark& mark);
    void add_ssml_break(const SpeechtextBreak& pause);
    void add_ssml_start_p(const SpeechtextTextAttrs& ta);
    void add_ssml_start_s(const SpeechtextTextAttrs& ta);
    void add_ssml_start_voice(const SpeechtextTextAttrs& ta);
    void add_ssml_start_prosody(const SpeechtextTextAttrs& ta);
    void add_ssml_start_prosody_legacy(const SpeechtextTextAttrs& ta);
    void add_ssml_lang_attribute(const std::string& language, std::string* tag);

    void push(const char* name);
    void append_closing_tag(const char* name);
    void close_top();

    // The document's size with the insertions, and the insertion of tags at raw_insert_at.
    std::size_t ssml_size() const { return ssml.size() + inserted; }
    void insert_tag(const std::string& tag);
    void apply_insertions();

    Speechtext text;
    // The document so far, without the insertions: these are put in at the end, all in one pass, since each one would
    // move all that stands behind it. The offsets below count them in, as if they were in place.
    std::string ssml;
    std::vector<Insertion> insertions;
    std::size_t inserted = 0;
    std::vector<OpenElement> open_elements;  // the innermost is the last
    InForce current;
    std::size_t raw_depth = 0;       // how many raw elements are open that must stay in one piece
    std::size_t raw_insert_at = 0;   // where marks and breaks go while there is one
    std::size_t last_break_end = 0;  // just behind the last break written
    std::size_t plain_end = 0;       // the text from the run written last up to here needs no encoding
    std::string version;

    // The tag made last, and for which mark. Most marks of a document bear the name of the one before.
    std::string mark_tag;
    std::string mark_tag_id;
    bool mark_tag_invisible = false;
};
