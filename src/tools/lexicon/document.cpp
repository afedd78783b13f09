// Edits as splices of single lexemes, undo as an exchange of a lexeme's states. See document.h.
#include "tools/lexicon/document.h"

#include <algorithm>
#include <new>
#include <utility>

#include "tools/lexicon/parser.h"
#include "tools/lexicon/search.h"

namespace lexicon {
namespace {

bool is_blank(char c) { return c == ' ' || c == '\t'; }

bool is_newline(char c) { return c == '\n' || c == '\r'; }

std::string attribute_text(const std::string& value) { return "\"" + escape(value) + "\""; }

// What is written of a typed word. Throws BadWord.
WordText checked(const WordText& typed) {
    if (!is_xml_text(typed.word) || !is_xml_text(typed.said))
        throw BadWord("There is a control character in the text, which a lexicon cannot hold.");
    WordText result{collapse_blanks(typed.word), typed.way, collapse_blanks(typed.said)};
    if (result.word.empty()) throw BadWord("The word is missing.");
    if (result.said.empty()) throw BadWord("It is missing how the word is said.");
    return result;
}

const char* element_name(Way way) { return way == Way::sounds ? "phoneme" : "alias"; }

Edit reversed(const Edit& edit) { return {edit.after, edit.before}; }

}  // namespace

// ---- Reading and writing the file

Document Document::parse(std::string bytes) {
    Document result;
    result.source_ = std::move(bytes);
    Parser(&result).run();
    result.parsed_ = result.lexemes_.size();
    result.find_layout();
    return result;
}

Document Document::create(const std::string& language) {
    return parse("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<lexicon version=\"1.0\" xmlns=" +
                 attribute_text(std::string(pls_namespace)) +
                 "\n         alphabet=\"ipa\" xml:lang=" + attribute_text(language) + ">\n</lexicon>\n");
}

// Where a run of blanks begins that ends at `at`. With `one_line` it takes one line end along at most.
std::size_t Document::blanks_before(std::string_view bytes, std::size_t at, bool one_line) const {
    const std::size_t unit = encoding_.unit();
    const auto before = [&] { return at >= unit ? encoding_.ascii_at(bytes, at - unit) : '\0'; };
    while (is_blank(before()) || (!one_line && is_newline(before()))) at -= unit;
    if (!one_line) return at;
    if (before() == '\n') at -= unit;
    if (before() == '\r') at -= unit;
    return at;
}

// New lexemes go behind the last one and are laid out like it; without one, in front of the root's end.
void Document::find_layout() {
    const auto last = std::find_if(lexemes_.rbegin(), lexemes_.rend(), [](const Lexeme& l) { return !l.fixed; });
    const bool any = last != lexemes_.rend();
    const std::size_t model = any ? last->source.begin : root_end_.begin;
    const std::size_t line = blanks_before(source_, model, true);
    std::size_t at = line;
    for (; at < model; at += encoding_.unit()) {
        const char c = encoding_.ascii_at(source_, at);
        (is_newline(c) ? newline_ : indent_).push_back(c);
    }
    insert_at_ = any ? last->source.end : root_empty_ ? root_end_.begin : blanks_before(source_, model, false);
    if (any) return;
    if (newline_.empty()) newline_ = "\n";
    indent_ += "  ";
    newline_behind_ = root_empty_ || insert_at_ == root_end_.begin;
}

std::string_view Document::bytes_of(const Lexeme& lexeme) const {
    if (lexeme.own) return *lexeme.own;
    return std::string_view(source_).substr(lexeme.source.begin, lexeme.source.end - lexeme.source.begin);
}

std::string Document::added_bytes() const {
    std::string result;
    for (std::size_t i = parsed_; i < lexemes_.size(); ++i)
        if (lexemes_[i].present) result += encoding_.encode(newline_ + indent_) + *lexemes_[i].own;
    if (result.empty()) return result;
    if (root_empty_) result = encoding_.encode(">") + result;
    if (newline_behind_) result += encoding_.encode(newline_);
    if (root_empty_) result += encoding_.encode("</" + tag("lexicon") + ">");
    return result;
}

std::string Document::bytes() const {
    std::string result;
    std::size_t done = 0;
    const auto put = [&](Span place, std::string_view with) {
        result.append(source_, done, place.begin - done).append(with);
        done = place.end;
    };
    for (std::size_t i = 0; i < parsed_; ++i) {
        const Lexeme& lexeme = lexemes_[i];
        if (!lexeme.present) {
            put({std::max(done, blanks_before(source_, lexeme.source.begin, true)), lexeme.source.end}, {});
        } else if (lexeme.own) {
            put(lexeme.source, *lexeme.own);
        }
    }
    const std::string added = added_bytes();
    if (!added.empty()) put({insert_at_, root_empty_ ? root_end_.end : insert_at_}, added);
    return result.append(source_, done);
}

// ---- Words

const Document::Said* Document::said_of(const Lexeme& lexeme) {
    for (const Said& said : lexeme.said)
        if (said.preferred) return &said;
    return lexeme.said.empty() ? nullptr : &lexeme.said.front();
}

WordText Document::text_of(const Lexeme& lexeme, std::size_t grapheme) {
    WordText result;
    result.word = lexeme.graphemes[grapheme].text;
    if (const Said* said = said_of(lexeme)) {
        result.way = said->way;
        result.said = said->text;
    }
    return result;
}

Word Document::word(WordId id) const {
    const Lexeme& lexeme = lexemes_[id.lexeme];
    const Said* said = said_of(lexeme);
    return {id, text_of(lexeme, id.grapheme), said ? said->alphabet : std::string(), lexeme.graphemes.size() > 1};
}

std::vector<Word> Document::words() const {
    std::vector<Word> result;
    for (std::size_t i = 0; i < lexemes_.size(); ++i)
        for (std::size_t g = 0; lexemes_[i].present && g < lexemes_[i].graphemes.size(); ++g)
            result.push_back(word({i, g}));
    return result;
}

const WordIndex& Document::index() const {
    if (index_) return *index_;
    WordIndex result;
    for (std::size_t i = 0; i < lexemes_.size(); ++i)
        for (std::size_t g = 0; lexemes_[i].present && g < lexemes_[i].graphemes.size(); ++g)
            result.add(lexemes_[i].graphemes[g].text, i);
    return index_.emplace(std::move(result));
}

std::optional<WordId> Document::find(std::string_view word) const {
    const std::string folded = fold_case(word);
    std::optional<WordId> result;
    for (const std::size_t i : index().find(word)) {
        const Lexeme& lexeme = lexemes_[i];
        for (std::size_t g = 0; g < lexeme.graphemes.size(); ++g) {
            if (lexeme.graphemes[g].text == word) return WordId{i, g};
            if (!result && !lexeme.exact && fold_case(lexeme.graphemes[g].text) == folded) result = WordId{i, g};
        }
    }
    return result;
}

const Document::Lexeme& Document::editable(WordId id) const {
    if (id.lexeme >= lexemes_.size() || !lexemes_[id.lexeme].present ||
        id.grapheme >= lexemes_[id.lexeme].graphemes.size())
        throw BadWord("The word is not in the list any more.");
    if (lexemes_[id.lexeme].fixed)
        throw BadWord("The file defines this word by way of an entity, which cannot be edited here.");
    return lexemes_[id.lexeme];
}

WordId Document::add(const WordText& typed) {
    const WordText word = checked(typed);
    Lexeme lexeme = new_lexeme(word);
    const std::size_t index = lexemes_.size();
    lexemes_.push_back({});
    lexemes_.back().present = false;
    take_step(index, std::move(lexeme), {std::nullopt, word});
    return {index, 0};
}

void Document::change(WordId id, const WordText& typed) {
    const WordText to = checked(typed);
    Lexeme lexeme = editable(id);
    const WordText before = text_of(lexeme, id.grapheme);
    if (before == to) return;
    if (before.word != to.word) replace_text(&lexeme, &lexeme.graphemes[id.grapheme], to.word);
    if (before.said != to.said || before.way != to.way) replace_said(&lexeme, to);
    take_step(id.lexeme, std::move(lexeme), {before, to});
}

void Document::remove(WordId id) {
    Lexeme lexeme = editable(id);
    const WordText before = text_of(lexeme, id.grapheme);
    if (lexeme.graphemes.size() == 1) {
        lexeme.present = false;
    } else {
        remove_grapheme(&lexeme, id.grapheme);
    }
    take_step(id.lexeme, std::move(lexeme), {before, std::nullopt});
}

// ---- Splices in one lexeme

// Replaces `place`, and moves what stands behind it. The caller sets the places of an element that the edit is inside
// of.
void Document::splice(Lexeme* lexeme, Span place, const std::string& with) const {
    std::string bytes(bytes_of(*lexeme));
    bytes.replace(place.begin, place.end - place.begin, with);
    lexeme->own = std::move(bytes);
    const std::size_t delta = with.size() - (place.end - place.begin);  // may wrap around, and back when it is added
    const auto move = [&](Span* span) {
        if (span->begin >= place.end) span->begin += delta;
        if (span->end > place.begin) span->end += delta;
    };
    for (Piece& piece : lexeme->graphemes) move(&piece.element), move(&piece.content);
    for (Piece& piece : lexeme->said) move(&piece.element), move(&piece.content);
}

void Document::replace_text(Lexeme* lexeme, Piece* piece, const std::string& text) const {
    const Piece old = *piece;
    std::string before, behind;
    Span place = old.content;
    if (old.empty) {
        place = {old.element.end - 2 * encoding_.unit(), old.element.end};
        before = encoding_.encode(">");
        behind = encoding_.encode("</") + raw_name(*lexeme, old) + encoding_.encode(">");
    }
    const std::string content = encoding_.encode(escape(text));
    splice(lexeme, place, before + content + behind);
    const std::size_t begin = place.begin + before.size();
    piece->content = {begin, begin + content.size()};
    piece->element = {old.element.begin,
                      piece->content.end + (old.empty ? behind.size() : old.element.end - place.end)};
    piece->empty = false;
    piece->text = text;
}

// The element's name as the file spells it.
std::string Document::raw_name(const Lexeme& lexeme, const Piece& piece) const {
    const std::string_view bytes = bytes_of(lexeme);
    const std::size_t begin = piece.element.begin + encoding_.unit();
    std::size_t end = begin;
    for (; end < piece.element.end; end += encoding_.unit()) {
        const char c = encoding_.ascii_at(bytes, end);
        if (is_blank(c) || is_newline(c) || c == '/' || c == '>') break;
    }
    return std::string(bytes.substr(begin, end - begin));
}

void Document::replace_said(Lexeme* lexeme, const WordText& to) const {
    const Said* chosen = said_of(*lexeme);
    if (!chosen) return insert_said(lexeme, to);
    Said& said = lexeme->said[static_cast<std::size_t>(chosen - lexeme->said.data())];
    // What is typed is IPA: phonemes of another alphabet get another element.
    const bool other_alphabet = said.way == Way::sounds && !said.alphabet.empty() && said.alphabet != "ipa";
    if (said.way == to.way && !other_alphabet) return replace_text(lexeme, &said, to.said);
    const std::size_t begin = said.element.begin;
    std::string bytes;
    Said written = append_said(&bytes, to, said.preferred, begin);
    splice(lexeme, said.element, bytes);
    said = std::move(written);
}

// Behind the last spelling, laid out like it.
void Document::insert_said(Lexeme* lexeme, const WordText& to) const {
    const Span model = lexeme->graphemes.back().element;
    const std::string_view bytes = bytes_of(*lexeme);
    const std::size_t line = blanks_before(bytes, model.begin, true);
    std::string with(bytes.substr(line, model.begin - line));
    Said written = append_said(&with, to, false, model.end);
    splice(lexeme, {model.end, model.end}, with);
    lexeme->said.push_back(std::move(written));
}

void Document::remove_grapheme(Lexeme* lexeme, std::size_t grapheme) const {
    const Span element = lexeme->graphemes[grapheme].element;
    lexeme->graphemes.erase(lexeme->graphemes.begin() + static_cast<std::ptrdiff_t>(grapheme));
    splice(lexeme, {blanks_before(bytes_of(*lexeme), element.begin, true), element.end}, {});
}

// Appends an element whose bytes will stand `base` behind those of its lexeme.
void Document::append_element(std::string* out, Piece* piece, const std::string& name, const std::string& attributes,
                              const std::string& text, std::size_t base) const {
    piece->element.begin = base + out->size();
    *out += encoding_.encode("<" + tag(name) + attributes + ">");
    piece->content.begin = base + out->size();
    *out += encoding_.encode(escape(text));
    piece->content.end = base + out->size();
    *out += encoding_.encode("</" + tag(name) + ">");
    piece->element.end = base + out->size();
    piece->text = text;
}

Document::Said Document::append_said(std::string* out, const WordText& word, bool preferred, std::size_t base) const {
    Said said;
    said.way = word.way;
    said.preferred = preferred;
    if (word.way == Way::sounds) said.alphabet = "ipa";
    std::string attributes = preferred ? " prefer=\"true\"" : "";
    if (word.way == Way::sounds && alphabet_ != "ipa") attributes += " alphabet=\"ipa\"";
    append_element(out, &said, element_name(word.way), attributes, word.said, base);
    return said;
}

Document::Lexeme Document::new_lexeme(const WordText& word) const {
    const std::string inner = newline_.empty() ? "" : newline_ + indent_ + (indent_[0] == '\t' ? "\t" : "  ");
    Lexeme lexeme;
    lexeme.exact = exact_;
    lexeme.graphemes.emplace_back();
    std::string bytes = encoding_.encode("<" + tag("lexeme") + ">" + inner);
    append_element(&bytes, &lexeme.graphemes.back(), "grapheme", "", word.word, 0);
    bytes += encoding_.encode(inner);
    lexeme.said.push_back(append_said(&bytes, word, false, 0));
    bytes += encoding_.encode((newline_.empty() ? "" : newline_ + indent_) + "</" + tag("lexeme") + ">");
    lexeme.own = std::move(bytes);
    return lexeme;
}

// ---- Steps

void Document::take_step(std::size_t lexeme, Lexeme state, Edit edit) {
    if (saved_ > done_) {
        edits_before_ = edits_since_saved();
        saved_ = done_;
    }
    steps_.resize(done_);
    steps_.push_back({lexeme, std::move(state), std::move(edit)});
    redo();
}

std::optional<Edit> Document::undo() {
    if (!can_undo()) return std::nullopt;
    swap_step(&steps_[--done_]);
    return reversed(steps_[done_].edit);
}

std::optional<Edit> Document::redo() {
    if (!can_redo()) return std::nullopt;
    swap_step(&steps_[done_]);
    return steps_[done_++].edit;
}

// The index is only a help: where there is no memory to keep it, the next look-up makes it anew.
void Document::swap_step(Step* step) {
    Lexeme& lexeme = lexemes_[step->lexeme];
    std::swap(lexeme, step->other);
    if (!index_) return;
    try {
        for (const Piece& piece : step->other.graphemes) index_->remove(piece.text, step->lexeme);
        for (const Piece& piece : lexeme.graphemes)
            if (lexeme.present) index_->add(piece.text, step->lexeme);
    } catch (const std::bad_alloc&) {
        index_.reset();
    }
}

void Document::mark_saved() {
    saved_ = done_;
    edits_before_.clear();
}

std::vector<Edit> Document::edits_since_saved() const {
    std::vector<Edit> result = edits_before_;
    for (std::size_t i = saved_; i < done_; ++i) result.push_back(steps_[i].edit);
    for (std::size_t i = saved_; i > done_; --i) result.push_back(reversed(steps_[i - 1].edit));
    return result;
}

void repeat_edits(Document* document, const std::vector<Edit>& edits) {
    for (const Edit& edit : edits) {
        std::optional<WordId> at;
        if (edit.before) at = document->find(edit.before->word);
        if (!at && edit.after) at = document->find(edit.after->word);
        if (!edit.after) {
            if (at) document->remove(*at);
        } else if (at) {
            document->change(*at, *edit.after);
        } else {
            document->add(*edit.after);
        }
    }
}

}  // namespace lexicon
