// The commands on the list and the fields. See editor.h.
#include "tools/lexicon/editor.h"

#include <utility>

#include "tools/lexicon/phoneme_check.h"

namespace lexicon {
namespace {

WordText tidy(const WordText& typed) { return {collapse_blanks(typed.word), typed.way, collapse_blanks(typed.said)}; }

bool is_ipa(const std::string& alphabet) { return alphabet.empty() || alphabet == "ipa"; }

std::string quoted(const std::string& word) { return "\"" + word + "\""; }

}  // namespace

Editor::Editor(Session session) : session_(std::move(session)) { list_rows(); }

void Editor::list_rows() {
    std::vector<Word> words = session_.document().words();
    word_count_ = words.size();
    rows_ = search_words(std::move(words), query_);
}

// Selects the row with this word, ending a search that hides it; without one, nothing is selected.
void Editor::select_word(std::optional<WordId> id) {
    list_rows();
    selected_.reset();
    if (!id) return;
    for (int attempt = 0; attempt < 2 && !selected_; ++attempt) {
        for (std::size_t i = 0; i < rows_.size() && !selected_; ++i)
            if (rows_[i].id == *id) selected_ = i;
        if (selected_ || query_.empty()) break;
        query_.clear();
        list_rows();
    }
    if (selected_) fields_ = rows_[*selected_].text;
}

void Editor::search(const std::string& query) {
    const std::optional<WordId> id = selected_ ? std::optional(rows_[*selected_].id) : std::nullopt;
    query_ = query;
    list_rows();
    selected_.reset();
    for (std::size_t i = 0; id && i < rows_.size(); ++i)
        if (rows_[i].id == *id) selected_ = i;
}

void Editor::select(std::size_t row) {
    if (row >= rows_.size()) return;
    selected_ = row;
    fields_ = rows_[row].text;
}

void Editor::clear_fields() {
    selected_.reset();
    fields_ = {};
}

void Editor::type(const WordText& fields) { fields_ = fields; }

bool Editor::has_pending() const {
    const WordText typed = tidy(fields_);
    if (selected_) return typed != rows_[*selected_].text && !(typed.word.empty() && typed.said.empty());
    if (typed.word.empty() && typed.said.empty()) return false;
    const std::optional<Word> there = existing();
    return !there || there->text != typed;
}

Editor::Verdict Editor::check() const {
    const WordText typed = tidy(fields_);
    if (typed.way == Way::words)
        return {!typed.said.empty(), typed.said.empty() ? "Type the words that are to be read instead." : "OK."};
    if (selected_ && typed.said == rows_[*selected_].text.said && !is_ipa(rows_[*selected_].alphabet))
        return {true, "It is written in the alphabet " + quoted(rows_[*selected_].alphabet) +
                          ", which the voice does not read. Type it in IPA."};
    const PhonemeCheck check = check_phonemes(typed.said);
    return {check.is_usable(), check.message};
}

bool Editor::can_add() const {
    const WordText typed = tidy(fields_);
    return !typed.word.empty() && !typed.said.empty();
}

bool Editor::can_change() const { return selected_ && can_add() && tidy(fields_) != rows_[*selected_].text; }

std::optional<Word> Editor::existing() const {
    const std::optional<WordId> id = session_.document().find(collapse_blanks(fields_.word));
    if (!id) return std::nullopt;
    return session_.document().word(*id);
}

std::string Editor::add() {
    if (existing()) throw BadWord(quoted(collapse_blanks(fields_.word)) + " is in the list already.");
    select_word(session_.document().add(fields_));
    return "Added " + quoted(fields_.word) + ".";
}

std::string Editor::change() {
    if (!selected_) throw BadWord("No word is selected in the list.");
    return change_word(rows_[*selected_]);
}

std::string Editor::change_word(const Word& word) {
    const std::optional<Word> there = existing();
    if (there && there->id != word.id) throw BadWord(quoted(there->text.word) + " is in the list already.");
    const WordId id = word.id;
    const bool shared = word.shared && tidy(fields_).said != word.text.said;
    session_.document().change(id, fields_);
    select_word(id);
    return "Changed " + quoted(fields_.word) + (shared ? ", and with it the other spellings of its entry." : ".");
}

std::string Editor::remove() {
    if (!selected_) throw BadWord("No word is selected in the list.");
    const Word word = rows_[*selected_];
    session_.document().remove(word.id);
    clear_fields();
    list_rows();
    return "Removed " + quoted(word.text.word) + ".";
}

std::string Editor::apply() {
    const std::optional<Word> there = existing();
    if (!there && selected_ && tidy(fields_).said == rows_[*selected_].text.said) return change();
    return there ? change_word(*there) : add();
}

std::string Editor::undo() { return tell("Undone: ", session_.document().undo()); }

std::string Editor::redo() { return tell("Done again: ", session_.document().redo()); }

std::string Editor::tell(const char* what, const std::optional<Edit>& edit) {
    if (!edit) return {};
    const std::string& word = edit->after ? edit->after->word : edit->before->word;
    clear_fields();
    select_word(edit->after ? session_.document().find(word) : std::nullopt);
    const char* state = edit->before && edit->after ? " is changed."
                        : edit->after               ? " is in the list."
                                                    : " is removed.";
    return what + quoted(word) + state;
}

void Editor::refresh() {
    const WordText typed = fields_;
    const bool pending = has_pending();
    select_word(session_.document().find(collapse_blanks(typed.word)));
    if (pending) {
        fields_ = typed;
    } else if (!selected_) {
        fields_ = {};
    }
}

}  // namespace lexicon
