// What the dictionary editor's window shows and does, without the window: a list that follows a search, two fields for
// a word, and the commands.
//
//     Editor editor(Session(system_files(), "my.pls", "en-US"));
//     editor.type({"Nguyen", Way::sounds, "wɪn"});
//     editor.add();
//     editor.session().save();
//
// Commands throw BadWord and then have changed nothing; the fields keep what was typed.
#ifndef NELVA_TOOLS_LEXICON_EDITOR_H
#define NELVA_TOOLS_LEXICON_EDITOR_H

#include <optional>
#include <string>
#include <vector>

#include "tools/lexicon/search.h"
#include "tools/lexicon/session.h"

namespace lexicon {

class Editor {
public:
    explicit Editor(Session session);

    Session& session() { return session_; }
    const Session& session() const { return session_; }

    const std::vector<Word>& rows() const { return rows_; }
    std::size_t word_count() const { return word_count_; }
    const std::string& query() const { return query_; }
    std::optional<std::size_t> selected() const { return selected_; }
    const WordText& fields() const { return fields_; }

    void search(const std::string& query);  // the selection stays on its word as long as that is found
    void select(std::size_t row);           // the fields show that word
    void clear_fields();                    // and nothing is selected
    void type(const WordText& fields);

    // Whether the fields hold something that is in no row yet.
    bool has_pending() const;

    // What the fields' text is worth: of phonemes whether they are IPA, of anything whether it is there.
    struct Verdict {
        bool usable = false;
        std::string message;
    };
    Verdict check() const;

    bool can_add() const;     // there is a word in the fields
    bool can_change() const;  // and another one, or said in another way, than in the selected row
    bool can_remove() const { return selected_.has_value(); }

    // The word in the fields where it is in the lexicon already; a second one would never be heard.
    std::optional<Word> existing() const;

    // They give what to tell the user: "Added \"Nguyen\"." The row is selected afterwards; a search that would hide it
    // ends.
    std::string add();
    std::string change();
    std::string remove();  // the fields are empty afterwards
    std::string undo();    // empty where there is nothing to undo
    std::string redo();

    // add() or change(), whichever the fields call for: a change of the selected row, or of the row that has this word
    // already; otherwise a new word.
    std::string apply();

    // After the session read the file anew.
    void refresh();

private:
    void list_rows();
    void select_word(std::optional<WordId> id);
    std::string change_word(const Word& word);
    std::string tell(const char* what, const std::optional<Edit>& edit);

    Session session_;
    std::string query_;
    std::vector<Word> rows_;
    std::size_t word_count_ = 0;
    std::optional<std::size_t> selected_;
    WordText fields_;
};

}  // namespace lexicon

#endif
