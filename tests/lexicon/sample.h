// A lexicon with most of what people and programs put into one, and helpers to look at documents.
#ifndef NELVA_TESTS_LEXICON_SAMPLE_H
#define NELVA_TESTS_LEXICON_SAMPLE_H

#include <string>

#include "tools/lexicon/document.h"

inline const std::string sample =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- kept by hand -->\n"
    "<lexicon version=\"1.0\" xmlns=\"http://www.w3.org/2005/01/pronunciation-lexicon\"\n"
    "    xmlns:x=\"urn:x\" alphabet=\"ipa\" xml:lang=\"en-GB\">\n"
    "  <meta name=\"author\" content=\"me\"/>\n"
    "  <lexeme xml:id=\"a\"><!-- city -->\n"
    "    <grapheme>Leicester</grapheme>\n"
    "    <phoneme>\xCB\x88l\xC9\x9Bst\xC9\x99</phoneme>\n"
    "  </lexeme>\n"
    "  <lexeme>\n"
    "    <grapheme>W3C</grapheme>\n"
    "    <alias  x:by='me' >World Wide Web Consortium</alias>\n"
    "  </lexeme>\n"
    "  <x:other><grapheme>no word</grapheme></x:other>\n"
    "</lexicon>\n"
    "<!-- end -->\n";

// The text with the first `from` in it replaced; the text itself where it has none.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    return at == text.npos ? text : text.replace(at, from.size(), to);
}

inline std::string lexicon_of(const std::string& content) {
    return "<lexicon version=\"1.0\" xmlns=\"http://www.w3.org/2005/01/pronunciation-lexicon\" alphabet=\"ipa\" "
           "xml:lang=\"en\">" +
           content + "</lexicon>";
}

// "Leicester=[ˈlɛstə] W3C=(World Wide Web Consortium)"
inline std::string listed(const lexicon::Document& document) {
    std::string result;
    for (const lexicon::Word& word : document.words()) {
        const bool sounds = word.text.way == lexicon::Way::sounds;
        result += (result.empty() ? "" : " ") + word.text.word + (sounds ? "=[" : "=(") + word.text.said +
                  (sounds ? "]" : ")");
    }
    return result;
}

inline lexicon::WordText sounds(const std::string& word, const std::string& said) {
    return {word, lexicon::Way::sounds, said};
}

inline lexicon::WordText words(const std::string& word, const std::string& said) {
    return {word, lexicon::Way::words, said};
}

// The same document in UTF-16, a byte order mark in front.
inline std::string utf16(const std::string& text, bool little) {
    std::string result = little ? "\xFF\xFE" : "\xFE\xFF";
    return result + lexicon::Encoding{little ? lexicon::Charset::utf16le : lexicon::Charset::utf16be}.encode(text);
}

#endif
