// What the editor's window does, by its commands.
#include "tools/lexicon/editor.h"

#include <gtest/gtest.h>

#include "lexicon/fake_files.h"
#include "lexicon/sample.h"

namespace {

using namespace lexicon;

struct Fixture {
    FakeFiles files;
    std::optional<Editor> editor;

    explicit Fixture(const std::string& text = sample) {
        files.content["a.pls"] = text;
        editor.emplace(Session(files, "a.pls", "en"));
    }
    Editor* operator->() { return &*editor; }

    // The words in the list, the selected one in brackets.
    std::string rows() const {
        std::string result;
        for (std::size_t i = 0; i < editor->rows().size(); ++i) {
            const bool selected = editor->selected() == i;
            result +=
                (i ? " " : "") + std::string(selected ? "[" : "") + editor->rows()[i].text.word + (selected ? "]" : "");
        }
        return result;
    }
};

const std::string three = lexicon_of(
    "<lexeme><grapheme>b</grapheme><alias>bee</alias></lexeme><lexeme><grapheme>C</grapheme><alias>sea</alias></lexeme>"
    "<lexeme><grapheme>a</grapheme><phoneme>eɪ</phoneme></lexeme>");

TEST(Search, fold_case_of_any_script) { EXPECT_EQ(fold_case("ÄßΣЖ\xF0\x9F\x98\x80Z"), "äßσж\xF0\x9F\x98\x80z"); }

TEST(Editor, list_is_ordered_by_word_case_ignored) { EXPECT_EQ(Fixture(three).rows(), "a b C"); }

TEST(Editor, search_looks_into_words_and_what_is_said) {
    Fixture f(three);
    f->search("SE");
    EXPECT_EQ(f.rows(), "C");
    f->search(" e ");
    EXPECT_EQ(f.rows(), "a b C");
    f->search("zz");
    EXPECT_EQ(f.rows(), "");
    EXPECT_EQ(f->word_count(), 3u);
}

TEST(Editor, search_keeps_the_selection_while_it_is_found) {
    Fixture f(three);
    f->select(2);
    f->search("sea");
    EXPECT_EQ(f.rows(), "[C]");
    f->search("bee");
    EXPECT_EQ(f.rows(), "b");
    EXPECT_EQ(f->selected(), std::nullopt);
}

TEST(Editor, select_shows_the_word_in_the_fields) {
    Fixture f(three);
    f->select(0);
    EXPECT_EQ(f->fields(), sounds("a", "eɪ"));
    EXPECT_FALSE(f->has_pending());
    EXPECT_FALSE(f->can_change());
    EXPECT_TRUE(f->can_remove());
}

TEST(Editor, add_selects_the_new_word) {
    Fixture f(three);
    f->type(words(" B2 ", "two"));
    EXPECT_TRUE(f->has_pending());
    EXPECT_EQ(f->add(), "Added \"B2\".");
    EXPECT_EQ(f.rows(), "a b [B2] C");
    EXPECT_FALSE(f->has_pending());
}

TEST(Editor, add_ends_a_search_that_hides_the_word) {
    Fixture f(three);
    f->search("bee");
    f->type(words("d", "dee"));
    f->add();
    EXPECT_EQ(f.rows(), "a b C [d]");
    EXPECT_EQ(f->query(), "");
}

TEST(Editor, add_of_a_word_that_is_there_is_refused_and_nothing_is_lost) {
    Fixture f(three);
    f->type(words("b", "other"));
    ASSERT_TRUE(f->existing());
    EXPECT_EQ(f->existing()->text, words("b", "bee"));
    EXPECT_THROW(f->add(), BadWord);
    EXPECT_EQ(f->fields(), words("b", "other"));
    EXPECT_EQ(f->word_count(), 3u);
}

TEST(Editor, change_of_the_selected_word) {
    Fixture f(three);
    f->select(1);
    f->type(sounds("bb", "biː"));
    EXPECT_TRUE(f->can_change());
    EXPECT_EQ(f->change(), "Changed \"bb\".");
    EXPECT_EQ(f.rows(), "a [bb] C");
    f->type(sounds("C", "siː"));
    EXPECT_THROW(f->change(), BadWord);  // there is a C already
    f->clear_fields();
    EXPECT_THROW(f->change(), BadWord);
}

TEST(Editor, change_of_case_alone_is_no_second_word) {
    Fixture f(three);
    f->type(words("B", "bee"));
    EXPECT_THROW(f->add(), BadWord);
    EXPECT_EQ(f->apply(), "Changed \"B\".");
    EXPECT_EQ(f.rows(), "a [B] C");
}

TEST(Editor, change_tells_of_other_spellings) {
    Fixture f(lexicon_of("<lexeme><grapheme>grey</grapheme><grapheme>gray</grapheme><alias>a</alias></lexeme>"));
    f->select(0);
    f->type(words("gray", "b"));
    EXPECT_EQ(f->change(), "Changed \"gray\", and with it the other spellings of its entry.");
}

TEST(Editor, remove_empties_the_fields) {
    Fixture f(three);
    f->select(1);
    EXPECT_EQ(f->remove(), "Removed \"b\".");
    EXPECT_EQ(f.rows(), "a C");
    EXPECT_EQ(f->fields(), WordText());
    EXPECT_THROW(f->remove(), BadWord);
}

TEST(Editor, undo_and_redo_select_what_they_brought_back) {
    Fixture f(three);
    EXPECT_EQ(f->undo(), "");
    f->select(1);
    f->remove();
    EXPECT_EQ(f->undo(), "Undone: \"b\" is in the list.");
    EXPECT_EQ(f.rows(), "a [b] C");
    EXPECT_EQ(f->redo(), "Done again: \"b\" is removed.");
    EXPECT_EQ(f.rows(), "a C");
    f->undo();
    f->type(words("b", "be"));
    f->change();
    EXPECT_EQ(f->undo(), "Undone: \"b\" is changed.");
    EXPECT_EQ(f->fields(), words("b", "bee"));
}

TEST(Editor, apply_changes_the_word_that_is_there_and_adds_others) {
    Fixture f(three);
    f->type(words("b", "be"));
    EXPECT_EQ(f->apply(), "Changed \"b\".");
    f->type(words("new", "nu"));
    EXPECT_EQ(f->apply(), "Added \"new\".");
    f->type(words("newer", "nu"));
    EXPECT_EQ(f->apply(), "Changed \"newer\".");
    EXPECT_EQ(f.rows(), "a b C [newer]");
}

TEST(Editor, pending_is_what_stands_in_the_fields_and_in_no_row) {
    Fixture f(three);
    EXPECT_FALSE(f->has_pending());
    f->type(words("", "x"));
    EXPECT_TRUE(f->has_pending());
    f->type(words("b", " bee"));
    EXPECT_FALSE(f->has_pending());
    f->select(0);
    f->type(words("a", "ay"));
    EXPECT_TRUE(f->has_pending());
    f->type({});
    EXPECT_FALSE(f->has_pending());
}

TEST(Editor, check_is_of_the_fields) {
    Fixture f(three);
    f->type(sounds("x", "h&"));
    EXPECT_FALSE(f->check().usable);
    EXPECT_EQ(f->check().message, "& (character 2) is not an IPA sign.");
    f->type(words("x", "h&"));
    EXPECT_TRUE(f->check().usable);
    f->type(words("x", " "));
    EXPECT_FALSE(f->check().usable);
}

TEST(Editor, check_tells_of_other_alphabets_until_something_is_typed) {
    Fixture f("<lexicon alphabet='x-sampa'><lexeme><grapheme>a</grapheme><phoneme>{</phoneme></lexeme></lexicon>");
    f->select(0);
    EXPECT_TRUE(f->check().usable);
    EXPECT_EQ(f->check().message,
              "It is written in the alphabet \"x-sampa\", which the voice does not read. Type it in IPA.");
    f->type(sounds("a", "{b"));
    EXPECT_FALSE(f->check().usable);
    f->type(sounds("a", "æ"));
    EXPECT_TRUE(f->check().usable);
}

TEST(Editor, refresh_after_a_reload_keeps_what_is_typed) {
    Fixture f(three);
    f->select(1);
    f->type(words("b", "half-typed"));
    f.files.content["a.pls"] = replaced(three, ">C<", ">D<");
    f->session().reload();
    f->refresh();
    EXPECT_EQ(f.rows(), "a [b] D");
    EXPECT_EQ(f->fields(), words("b", "half-typed"));
    EXPECT_TRUE(f->has_pending());
}

}  // namespace
