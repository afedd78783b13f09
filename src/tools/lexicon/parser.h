// Reads a lexicon with expat and notes where in the bytes its words stand.
#ifndef NELVA_TOOLS_LEXICON_PARSER_H
#define NELVA_TOOLS_LEXICON_PARSER_H

#include <expat.h>

#include <exception>
#include <string>

#include "tools/lexicon/document.h"

namespace lexicon {

// Fills a Document whose source_ is set already; used once.
class Parser {
public:
    explicit Parser(Document* document);
    ~Parser();
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    void run();  // throws BadLexicon

private:
    struct Name {
        std::string_view uri, local, prefix;
    };
    enum class Text { none, grapheme, said };

    static void on_declaration(void* self, const char* version, const char* encoding, int standalone);
    static void on_start(void* self, const char* name, const char** attributes);
    static void on_end(void* self, const char* name);
    static void on_text(void* self, const char* text, int length);
    static int on_encoding(void* self, const char* name, XML_Encoding*);

    template <typename Action>
    void guarded(Action action);

    void start(const Name& name, const char** attributes);
    void end();
    void start_root(const Name& name, const char** attributes);
    void start_lexeme(const char** attributes);
    void start_piece(const Name& name, const char** attributes);
    void end_root();
    void end_lexeme();
    void end_piece(Document::Piece* piece);

    static Name split(const char* name);
    std::size_t here() const;
    std::size_t behind() const;
    bool is_tag_here() const;
    Document::Piece* piece();
    [[noreturn]] void fail() const;

    Document* document_;
    XML_Parser parser_;
    std::exception_ptr failure_;
    std::string declared_, refused_;  // the encoding, and one that expat does not know
    std::string uri_;                 // of the root element: the lexicon's own elements share it
    std::size_t depth_ = 0;           // of open elements
    bool in_lexeme_ = false;
    Text open_ = Text::none;  // the element whose text is being gathered, at depth 3
};

}  // namespace lexicon

#endif
