// How a lexicon's file spells its characters: enough of it to put new text between bytes that stay as they are.
//
//     Encoding e = detect_encoding(bytes, "ISO-8859-1");
//     bytes.insert(at, e.encode("<grapheme>" + escape("caf\u00e9 & co") + "</grapheme>"));
#ifndef NELVA_TOOLS_LEXICON_ENCODING_H
#define NELVA_TOOLS_LEXICON_ENCODING_H

#include <cstddef>
#include <string>
#include <string_view>

namespace lexicon {

enum class Charset { utf8, utf16le, utf16be, latin1, ascii };

struct Encoding {
    Charset charset = Charset::utf8;

    // Bytes of one unit: blanks, line ends and markup take one each.
    std::size_t unit() const { return charset == Charset::utf16le || charset == Charset::utf16be ? 2 : 1; }

    // Well-formed UTF-8 as the file spells it. What it has no character for becomes a reference, &#x259; for instance,
    // so `text` must be for a place where references are understood: element content or an attribute's value.
    std::string encode(std::string_view text) const;

    // The unit at `at` where it is an ASCII character, else NUL. `at + unit()` must not lie behind the end.
    char ascii_at(std::string_view bytes, std::size_t at) const;
};

// The encoding of a document that expat accepted, which declared this one (empty: none).
Encoding detect_encoding(std::string_view bytes, std::string_view declared);

// Text as it stands in an element or between double quotes: & < > " as entities.
std::string escape(std::string_view text);

// Runs of blanks as one space, none at either end: what XML's readers make of a word.
std::string collapse_blanks(std::string_view text);

// False for text that no XML document can hold: control characters, ill-formed UTF-8, U+FFFE, U+FFFF.
bool is_xml_text(std::string_view text);

// The character at `*at`, which is moved behind it. An ill-formed byte gives 0xFFFFFFFF and moves by one.
char32_t next_character(std::string_view text, std::size_t* at);

void append_character(std::string* out, char32_t character);

}  // namespace lexicon

#endif
