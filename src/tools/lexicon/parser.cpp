// One pass of expat over the whole file. Places are those of expat's events in the file's own bytes, whatever its
// encoding. What comes out of an entity has the place of the reference: such lexemes can be shown but not edited.
#include "tools/lexicon/parser.h"

#include <cstring>
#include <new>

namespace lexicon {
namespace {

constexpr char name_separator = '\n';
constexpr const char* xml_lang = "http://www.w3.org/XML/1998/namespace\nlang\nxml";

const char* attribute(const char** attributes, const char* name) {
    for (; *attributes; attributes += 2)
        if (std::strcmp(attributes[0], name) == 0) return attributes[1];
    return nullptr;
}

// Whether case="exact" is said in our own namespace, by whatever prefix; `otherwise` where nothing is said.
bool case_counts(const char** attributes, bool otherwise) {
    const std::string name = std::string(nelva_namespace) + name_separator + "case" + name_separator;
    for (; *attributes; attributes += 2)
        if (std::strncmp(attributes[0], name.c_str(), name.size()) == 0)
            return std::strcmp(attributes[1], "exact") == 0;
    return otherwise;
}

std::string value_or_empty(const char* value) { return value ? value : ""; }

}  // namespace

Parser::Parser(Document* document) : document_(document), parser_(XML_ParserCreateNS(nullptr, name_separator)) {
    if (!parser_) throw std::bad_alloc();
    XML_SetUserData(parser_, this);
    XML_SetReturnNSTriplet(parser_, 1);
    XML_SetXmlDeclHandler(parser_, on_declaration);
    XML_SetElementHandler(parser_, on_start, on_end);
    XML_SetCharacterDataHandler(parser_, on_text);
    XML_SetUnknownEncodingHandler(parser_, on_encoding, this);
}

Parser::~Parser() { XML_ParserFree(parser_); }

void Parser::run() {
    const std::string& bytes = document_->source_;
    if (bytes.size() > largest_lexicon) throw BadLexicon(BadLexicon::Reason::too_large, too_large_text);
    const XML_Status status = XML_Parse(parser_, bytes.data(), static_cast<int>(bytes.size()), 1);
    if (failure_) std::rethrow_exception(failure_);
    if (status != XML_STATUS_OK) fail();
}

void Parser::fail() const {
    const XML_Error error = XML_GetErrorCode(parser_);
    if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    if (error == XML_ERROR_UNKNOWN_ENCODING)
        throw BadLexicon(BadLexicon::Reason::encoding,
                         "It is written in the encoding \"" + refused_ +
                             "\", which cannot be edited here. Save it as UTF-8 with the program that made it.");
    throw BadLexicon(BadLexicon::Reason::not_xml, "It is not well-formed XML: " + std::string(XML_ErrorString(error)) +
                                                      ", line " + std::to_string(XML_GetCurrentLineNumber(parser_)) +
                                                      ", column " +
                                                      std::to_string(XML_GetCurrentColumnNumber(parser_) + 1) + ".");
}

// Nothing may be thrown through expat: the exception waits until XML_Parse returns.
template <typename Action>
void Parser::guarded(Action action) {
    if (failure_) return;
    try {
        action();
    } catch (...) {
        failure_ = std::current_exception();
        XML_StopParser(parser_, XML_FALSE);
    }
}

void Parser::on_declaration(void* self, const char*, const char* encoding, int) {
    auto* parser = static_cast<Parser*>(self);
    if (encoding) parser->guarded([=] { parser->declared_ = encoding; });
}

void Parser::on_start(void* self, const char* name, const char** attributes) {
    auto* parser = static_cast<Parser*>(self);
    parser->guarded([=] { parser->start(split(name), attributes); });
}

void Parser::on_end(void* self, const char*) {
    auto* parser = static_cast<Parser*>(self);
    parser->guarded([=] { parser->end(); });
}

void Parser::on_text(void* self, const char* text, int length) {
    auto* parser = static_cast<Parser*>(self);
    parser->guarded([=] {
        if (Document::Piece* piece = parser->piece()) piece->text.append(text, static_cast<std::size_t>(length));
    });
}

int Parser::on_encoding(void* self, const char* name, XML_Encoding*) {
    auto* parser = static_cast<Parser*>(self);
    parser->guarded([=] { parser->refused_ = name; });
    return XML_STATUS_ERROR;
}

// "uri", "local" and "prefix" with the separator between them; the first and the last may be absent.
Parser::Name Parser::split(const char* name) {
    const std::string_view text(name);
    const std::size_t first = text.find(name_separator);
    if (first == text.npos) return {{}, text, {}};
    const std::size_t second = text.find(name_separator, first + 1);
    if (second == text.npos) return {text.substr(0, first), text.substr(first + 1), {}};
    return {text.substr(0, first), text.substr(first + 1, second - first - 1), text.substr(second + 1)};
}

std::size_t Parser::here() const { return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_)); }

std::size_t Parser::behind() const { return here() + static_cast<std::size_t>(XML_GetCurrentByteCount(parser_)); }

bool Parser::is_tag_here() const { return document_->encoding_.ascii_at(document_->source_, here()) == '<'; }

Document::Piece* Parser::piece() {
    if (open_ == Text::none) return nullptr;
    Document::Lexeme& lexeme = document_->lexemes_.back();
    if (open_ == Text::grapheme) return &lexeme.graphemes.back();
    return &lexeme.said.back();
}

void Parser::start(const Name& name, const char** attributes) {
    ++depth_;
    if (depth_ == 1) {
        start_root(name, attributes);
    } else if (name.uri == uri_ && depth_ == 2 && name.local == "lexeme") {
        start_lexeme(attributes);
    } else if (name.uri == uri_ && depth_ == 3 && in_lexeme_) {
        start_piece(name, attributes);
    }
}

void Parser::end() {
    if (depth_ == 3 && open_ != Text::none) end_piece(piece());
    if (depth_ == 2 && in_lexeme_) end_lexeme();
    if (depth_ == 1) end_root();
    --depth_;
}

void Parser::start_root(const Name& name, const char** attributes) {
    if (name.local != "lexicon" || (!name.uri.empty() && name.uri != pls_namespace))
        throw BadLexicon(BadLexicon::Reason::not_a_lexicon,
                         "It is XML, but not a pronunciation lexicon: its outermost element is <" +
                             std::string(name.local) + ">, not the <lexicon> of PLS.");
    Document& d = *document_;
    d.encoding_ = detect_encoding(d.source_, declared_);
    uri_ = name.uri;
    if (!name.prefix.empty()) d.prefix_ = std::string(name.prefix) + ":";
    d.language_ = value_or_empty(attribute(attributes, xml_lang));
    d.exact_ = case_counts(attributes, false);
    d.alphabet_ = value_or_empty(attribute(attributes, "alphabet"));
}

void Parser::end_root() {
    Document& d = *document_;
    d.root_end_ = {here(), behind()};
    d.root_empty_ = here() == behind();
    // An empty element's end has no bytes of its own: it stands behind "/>".
    if (d.root_empty_) d.root_end_.begin -= 2 * d.encoding_.unit();
}

void Parser::start_lexeme(const char** attributes) {
    Document::Lexeme lexeme;
    lexeme.source = {here(), behind()};
    lexeme.fixed = !is_tag_here();
    lexeme.exact = case_counts(attributes, document_->exact_);
    document_->lexemes_.push_back(std::move(lexeme));
    in_lexeme_ = true;
}

void Parser::end_lexeme() {
    Document::Lexeme& lexeme = document_->lexemes_.back();
    lexeme.source.end = behind();
    if (lexeme.fixed) lexeme.source = {lexeme.source.begin, lexeme.source.begin};
    in_lexeme_ = false;
}

void Parser::start_piece(const Name& name, const char** attributes) {
    Document::Lexeme& lexeme = document_->lexemes_.back();
    Document::Said said;
    said.element = {here() - lexeme.source.begin, 0};
    said.content = {behind() - lexeme.source.begin, 0};
    if (!is_tag_here()) lexeme.fixed = true;
    if (name.local == "grapheme") {
        lexeme.graphemes.push_back(std::move(said));
        open_ = Text::grapheme;
    } else if (name.local == "phoneme" || name.local == "alias") {
        const bool sounds = name.local == "phoneme";
        said.way = sounds ? Way::sounds : Way::words;
        const char* alphabet = attribute(attributes, "alphabet");
        if (sounds) said.alphabet = alphabet ? alphabet : document_->alphabet_;
        said.preferred = value_or_empty(attribute(attributes, "prefer")) == "true";
        lexeme.said.push_back(std::move(said));
        open_ = Text::said;
    }
}

void Parser::end_piece(Document::Piece* piece) {
    const std::size_t begin = document_->lexemes_.back().source.begin;
    piece->content.end = here() - begin;
    piece->element.end = behind() - begin;
    piece->empty = here() == behind();
    piece->text = collapse_blanks(piece->text);
    open_ = Text::none;
}

}  // namespace lexicon
