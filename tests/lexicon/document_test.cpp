// Editing a lexicon: what is changed, and that nothing else is.
#include "tools/lexicon/document.h"

#include <gtest/gtest.h>

#include "lexicon/sample.h"

namespace {

using namespace lexicon;

BadLexicon::Reason refusal(const std::string& bytes, std::string* message = nullptr) {
    try {
        Document::parse(bytes);
    } catch (const BadLexicon& error) {
        if (message) *message = error.what();
        return error.reason;
    }
    ADD_FAILURE() << "taken: " << bytes;
    return BadLexicon::Reason::not_xml;
}

TEST(Document, parse_lists_words_in_order) {
    const Document d = Document::parse(sample);
    EXPECT_EQ(listed(d), "Leicester=[ˈlɛstə] W3C=(World Wide Web Consortium)");
    EXPECT_EQ(d.language(), "en-GB");
    EXPECT_EQ(d.words()[0].alphabet, "ipa");
    EXPECT_EQ(d.words()[1].alphabet, "");
}

TEST(Document, parse_keeps_every_byte) {
    const std::string wide = replaced(sample, "UTF-8", "UTF-16");
    for (const std::string& text : {sample, replaced(sample, "\n", "\r\n"), utf16(wide, true), utf16(wide, false)})
        EXPECT_EQ(Document::parse(text).bytes(), text);
}

TEST(Document, add_goes_behind_the_last_lexeme_in_its_layout) {
    Document d = Document::parse(sample);
    d.add(sounds("Nguyen", "wɪn"));
    EXPECT_EQ(d.bytes(),
              replaced(sample, "  <x:other>",
                       "  <lexeme>\n    <grapheme>Nguyen</grapheme>\n    <phoneme>wɪn</phoneme>\n  </lexeme>\n"
                       "  <x:other>"));
}

TEST(Document, add_of_other_words_writes_an_alias) {
    Document d = Document::parse(lexicon_of("\n\t<lexeme><grapheme>a</grapheme></lexeme>\n"));
    d.add(words("DIY", "do it yourself"));
    EXPECT_EQ(d.bytes(), lexicon_of("\n\t<lexeme><grapheme>a</grapheme></lexeme>"
                                    "\n\t<lexeme>\n\t\t<grapheme>DIY</grapheme>\n\t\t<alias>do it yourself</alias>\n\t"
                                    "</lexeme>\n"));
}

TEST(Document, add_keeps_to_one_line_where_the_file_does) {
    Document d = Document::parse(lexicon_of("<lexeme><grapheme>a</grapheme></lexeme>"));
    d.add(words("b", "c"));
    EXPECT_EQ(d.bytes(), lexicon_of("<lexeme><grapheme>a</grapheme></lexeme>"
                                    "<lexeme><grapheme>b</grapheme><alias>c</alias></lexeme>"));
}

TEST(Document, add_uses_the_files_line_ends) {
    Document d = Document::parse(lexicon_of("\r\n <lexeme/>\r\n"));
    d.add(words("b", "c"));
    EXPECT_EQ(d.bytes(),
              lexicon_of("\r\n <lexeme/>\r\n <lexeme>\r\n   <grapheme>b</grapheme>\r\n   <alias>c</alias>\r\n "
                         "</lexeme>\r\n"));
}

TEST(Document, add_to_an_empty_lexicon) {
    const std::string lexeme = "\n  <lexeme>\n    <grapheme>b</grapheme>\n    <alias>c</alias>\n  </lexeme>\n";
    for (const char* content : {"", "\n", "\n\n"}) {
        Document d = Document::parse(lexicon_of(content));
        d.add(words("b", "c"));
        EXPECT_EQ(d.bytes(), lexicon_of(replaced(lexeme + content, "</lexeme>\n\n", "</lexeme>\n")));
    }
}

TEST(Document, add_opens_an_empty_root_element) {
    Document d = Document::parse("<p:lexicon xmlns:p='http://www.w3.org/2005/01/pronunciation-lexicon' />");
    d.add(words("b", "c"));
    EXPECT_EQ(d.bytes(),
              "<p:lexicon xmlns:p='http://www.w3.org/2005/01/pronunciation-lexicon' >\n   <p:lexeme>\n"
              "     <p:grapheme>b</p:grapheme>\n     <p:alias>c</p:alias>\n   </p:lexeme>\n</p:lexicon>");
    d.undo();
    EXPECT_EQ(d.bytes(), "<p:lexicon xmlns:p='http://www.w3.org/2005/01/pronunciation-lexicon' />");
}

TEST(Document, create_makes_a_lexicon_of_the_language) {
    Document d = Document::create("de-DE");
    d.add(sounds("Chemie", "keˈmiː"));
    const Document read = Document::parse(d.bytes());
    EXPECT_EQ(read.language(), "de-DE");
    EXPECT_EQ(listed(read), "Chemie=[keˈmiː]");
    EXPECT_EQ(read.words()[0].alphabet, "ipa");
}

TEST(Document, change_of_the_word_touches_its_text_alone) {
    Document d = Document::parse(sample);
    d.change(d.words()[0].id, sounds("Leicester <Sq> & \"co\"", "ˈlɛstə"));
    EXPECT_EQ(d.bytes(), replaced(sample, ">Leicester<", ">Leicester &lt;Sq&gt; &amp; &quot;co&quot;<"));
    EXPECT_EQ(d.words()[0].text.word, "Leicester <Sq> & \"co\"");
}

TEST(Document, change_of_what_is_said_keeps_attributes) {
    Document d = Document::parse(sample);
    d.change(*d.find("W3C"), words("W3C", "the web people"));
    EXPECT_EQ(d.bytes(), replaced(sample, "World Wide Web Consortium", "the web people"));
}

TEST(Document, change_of_the_way_replaces_the_element) {
    Document d = Document::parse(sample);
    d.change(*d.find("Leicester"), words("Leicester", "Lester"));
    d.change(*d.find("W3C"), sounds("W3C", "wiː"));
    EXPECT_EQ(d.bytes(), replaced(replaced(sample, "<phoneme>ˈlɛstə</phoneme>", "<alias>Lester</alias>"),
                                  "<alias  x:by='me' >World Wide Web Consortium</alias>", "<phoneme>wiː</phoneme>"));
}

TEST(Document, change_again_and_again_finds_its_places) {
    Document d = Document::parse(sample);
    const WordId id = *d.find("Leicester");
    d.change(id, sounds("Leicestershire", "ˈlɛstəʃə"));
    d.change(id, words("L", "x"));
    d.change(id, sounds("Leicester", "ˈlɛstə"));
    EXPECT_EQ(d.bytes(), sample);
    EXPECT_TRUE(d.is_changed());  // one may have come here by another way than back
}

TEST(Document, change_fills_empty_elements) {
    Document d = Document::parse(lexicon_of("<lexeme><grapheme/><phoneme prefer='true' /></lexeme>"));
    d.change(d.words()[0].id, sounds("b", "a"));
    const std::string once = lexicon_of("<lexeme><grapheme>b</grapheme><phoneme prefer='true' >a</phoneme></lexeme>");
    EXPECT_EQ(d.bytes(), once);
    d.change(d.words()[0].id, sounds("cc", "ee"));
    EXPECT_EQ(d.bytes(), replaced(replaced(once, ">b<", ">cc<"), ">a<", ">ee<"));
}

TEST(Document, change_adds_what_is_said_where_nothing_is) {
    Document d = Document::parse(lexicon_of("\n <lexeme>\n  <grapheme>a</grapheme>\n </lexeme>\n"));
    EXPECT_EQ(d.words()[0].text, sounds("a", ""));
    d.change(d.words()[0].id, words("a", "b"));
    d.change(d.words()[0].id, words("aa", "bb"));
    EXPECT_EQ(d.bytes(), lexicon_of("\n <lexeme>\n  <grapheme>aa</grapheme>\n  <alias>bb</alias>\n </lexeme>\n"));
}

TEST(Document, change_that_changes_nothing_is_no_step) {
    Document d = Document::parse(sample);
    d.change(*d.find("W3C"), words(" W3C", "World  Wide Web\tConsortium "));
    EXPECT_FALSE(d.is_changed());
    EXPECT_FALSE(d.can_undo());
}

TEST(Document, what_is_preferred_counts_else_the_first) {
    Document d =
        Document::parse(lexicon_of("<lexeme><grapheme>a</grapheme><phoneme>b</phoneme><alias prefer=\"true\">c"
                                   "</alias></lexeme><lexeme><grapheme>d</grapheme><alias>e</alias>"
                                   "<phoneme>f</phoneme></lexeme>"));
    EXPECT_EQ(listed(d), "a=(c) d=(e)");
    d.change(*d.find("a"), sounds("a", "i"));
    EXPECT_EQ(listed(Document::parse(d.bytes())), "a=[i] d=(e)");
    EXPECT_NE(d.bytes().find("<phoneme>b</phoneme><phoneme prefer=\"true\">i</phoneme>"), std::string::npos);
}

TEST(Document, spellings_of_one_lexeme_are_words_that_share_what_is_said) {
    Document d = Document::parse(
        lexicon_of("<lexeme><grapheme>grey</grapheme> <grapheme>gray</grapheme><phoneme>a</phoneme></lexeme>"));
    EXPECT_EQ(listed(d), "grey=[a] gray=[a]");
    EXPECT_TRUE(d.words()[1].shared);
    d.change(*d.find("gray"), sounds("gray", "b"));
    EXPECT_EQ(listed(d), "grey=[b] gray=[b]");
}

TEST(Document, remove_of_one_spelling_leaves_the_other) {
    const std::string both =
        "<lexeme>\n<grapheme>grey</grapheme>\n<grapheme>gray</grapheme><phoneme>a</phoneme></lexeme>";
    Document d = Document::parse(lexicon_of(both));
    d.remove(*d.find("grey"));
    EXPECT_EQ(d.bytes(), lexicon_of(replaced(both, "\n<grapheme>grey</grapheme>", "")));
    d.change(*d.find("gray"), sounds("Gray", "e"));
    EXPECT_EQ(d.bytes(), lexicon_of("<lexeme>\n<grapheme>Gray</grapheme><phoneme>e</phoneme></lexeme>"));
}

TEST(Document, remove_takes_the_lexemes_own_line_along) {
    Document d = Document::parse(sample);
    d.remove(*d.find("W3C"));
    EXPECT_EQ(d.bytes(), replaced(sample,
                                  "\n  <lexeme>\n    <grapheme>W3C</grapheme>\n    <alias  x:by='me' >"
                                  "World Wide Web Consortium</alias>\n  </lexeme>",
                                  ""));
    EXPECT_EQ(listed(d), "Leicester=[ˈlɛstə]");
}

TEST(Document, remove_of_neighbours_on_one_line) {
    Document d =
        Document::parse(lexicon_of(" <lexeme><grapheme>a</grapheme></lexeme> "
                                   "<lexeme><grapheme>b</grapheme></lexeme> "));
    d.remove(*d.find("a"));
    d.remove(*d.find("b"));
    EXPECT_EQ(d.bytes(), lexicon_of(" "));
}

TEST(Document, undo_gives_back_every_byte) {
    Document d = Document::parse(sample);
    d.add(words("a", "b"));
    d.change(*d.find("a"), words("c", "d"));
    d.remove(*d.find("Leicester"));
    d.change(*d.find("W3C"), sounds("W3C", "wiː"));
    d.remove(*d.find("c"));
    const std::string edited = d.bytes();
    while (d.can_undo()) d.undo();
    EXPECT_EQ(d.bytes(), sample);
    EXPECT_FALSE(d.is_changed());
    while (d.can_redo()) d.redo();
    EXPECT_EQ(d.bytes(), edited);
    EXPECT_TRUE(d.is_changed());
}

TEST(Document, undo_and_redo_tell_what_they_did) {
    Document d = Document::parse(sample);
    EXPECT_FALSE(d.undo());
    d.add(words("a", "b"));
    const std::optional<Edit> undone = d.undo();
    ASSERT_TRUE(undone);
    EXPECT_EQ(undone->before, words("a", "b"));
    EXPECT_EQ(undone->after, std::nullopt);
    EXPECT_EQ(d.redo()->after, words("a", "b"));
    EXPECT_FALSE(d.redo());
}

TEST(Document, edit_after_undo_drops_what_could_be_redone) {
    Document d = Document::parse(sample);
    d.add(words("a", "b"));
    d.undo();
    d.add(words("c", "d"));
    EXPECT_FALSE(d.can_redo());
    EXPECT_EQ(d.find("a"), std::nullopt);
}

TEST(Document, saved_state_is_where_changes_count_from) {
    Document d = Document::parse(sample);
    d.add(words("a", "b"));
    d.mark_saved();
    EXPECT_FALSE(d.is_changed());
    d.undo();
    EXPECT_TRUE(d.is_changed());
    d.redo();
    EXPECT_FALSE(d.is_changed());
    EXPECT_TRUE(d.edits_since_saved().empty());
}

TEST(Document, edits_since_saved_lead_through_a_way_back_that_is_cut_off) {
    Document d = Document::parse(sample);
    d.add(words("a", "b"));
    d.mark_saved();
    const std::string saved = d.bytes();
    d.undo();
    d.add(words("c", "d"));
    Document other = Document::parse(saved);
    repeat_edits(&other, d.edits_since_saved());
    EXPECT_EQ(listed(other), "Leicester=[ˈlɛstə] W3C=(World Wide Web Consortium) c=(d)");
    EXPECT_TRUE(d.is_changed());
}

TEST(Document, repeat_edits_in_a_file_that_changed_meanwhile) {
    Document d = Document::parse(sample);
    d.change(*d.find("W3C"), words("W3C", "web"));
    d.add(words("a", "mine"));
    d.remove(*d.find("Leicester"));
    Document other = Document::parse(lexicon_of("<lexeme><grapheme>a</grapheme><alias>theirs</alias></lexeme>"));
    repeat_edits(&other, d.edits_since_saved());
    EXPECT_EQ(listed(other), "a=(mine) W3C=(web)");
}

TEST(Document, edits_refuse_what_is_no_word) {
    Document d = Document::parse(sample);
    EXPECT_THROW(d.add(words("", "b")), BadWord);
    EXPECT_THROW(d.add(words(" \t", "b")), BadWord);
    EXPECT_THROW(d.add(words("a", "")), BadWord);
    EXPECT_THROW(d.add(words("a\x01", "b")), BadWord);
    EXPECT_THROW(d.add(words("a", "b\xFF")), BadWord);
    EXPECT_THROW(d.add(words("a", "\xEF\xBF\xBE")), BadWord);
    EXPECT_THROW(d.change({7, 0}, words("a", "b")), BadWord);
    EXPECT_THROW(d.remove({0, 1}), BadWord);
    EXPECT_EQ(d.bytes(), sample);
    EXPECT_FALSE(d.can_undo());
}

TEST(Document, words_out_of_entities_are_shown_and_kept) {
    const std::string text =
        "<!DOCTYPE lexicon [<!ENTITY w '<lexeme><grapheme>w</grapheme><alias>x</alias></lexeme>'>"
        "<!ENTITY g '<grapheme>g</grapheme>'> <!ENTITY t 'tea'>]><lexicon>&w; <lexeme>&g;<alias>y"
        "</alias></lexeme><lexeme><grapheme>&t;</grapheme><alias>z</alias></lexeme></lexicon>";
    Document d = Document::parse(text);
    EXPECT_EQ(listed(d), "w=(x) g=(y) tea=(z)");
    EXPECT_THROW(d.remove(*d.find("w")), BadWord);
    EXPECT_THROW(d.change(*d.find("g"), words("g", "z")), BadWord);
    d.change(*d.find("tea"), words("tee", "z"));
    EXPECT_EQ(d.bytes(), replaced(text, "&t;", "tee"));
}

TEST(Document, only_the_lexicons_own_elements_are_words) {
    const Document d = Document::parse(lexicon_of(
        "<lexeme><x xmlns=''><grapheme>no</grapheme></x><grapheme xmlns='urn:x'>no</grapheme><grapheme>yes"
        "<!-- c --> sir</grapheme><example>no</example></lexeme><y><lexeme><grapheme>no</grapheme></lexeme></y>"));
    EXPECT_EQ(listed(d), "yes sir=[]");
}

TEST(Document, phonemes_of_another_alphabet_stay_until_they_are_changed_into_ipa) {
    Document d = Document::parse(
        "<lexicon alphabet='x-sampa'><lexeme><grapheme>a</grapheme><phoneme>\"a</phoneme></lexeme>"
        "<lexeme><grapheme>b</grapheme><phoneme alphabet='ipa'>b</phoneme></lexeme></lexicon>");
    EXPECT_EQ(d.words()[0].alphabet, "x-sampa");
    EXPECT_EQ(d.words()[1].alphabet, "ipa");
    d.change(*d.find("a"), sounds("A", "\"a"));
    EXPECT_NE(d.bytes().find("<phoneme>\"a</phoneme>"), std::string::npos);
    d.change(*d.find("A"), sounds("A", "ə"));
    d.add(sounds("c", "k"));
    EXPECT_NE(d.bytes().find("<phoneme alphabet=\"ipa\">ə</phoneme>"), std::string::npos);
    EXPECT_NE(d.bytes().find("<phoneme alphabet=\"ipa\">k</phoneme>"), std::string::npos);
}

TEST(Document, find_ignores_case_unless_the_file_says_that_it_counts) {
    const std::string text = lexicon_of(
        "<lexeme><grapheme>Äpfel</grapheme></lexeme><lexeme n:case='exact' xmlns:n="
        "'urn:nelva:lexicon'><grapheme>US</grapheme></lexeme>");
    const Document d = Document::parse(text);
    EXPECT_TRUE(d.find("äPFEL"));
    EXPECT_TRUE(d.find("US"));
    EXPECT_FALSE(d.find("us"));
    const Document exact =
        Document::parse(replaced(replaced(text, "<lexicon ", "<lexicon xmlns:m='urn:nelva:lexicon' m:case='exact' "),
                                 "n:case='exact'", "n:case='any'"));
    EXPECT_FALSE(exact.find("äPFEL"));
    EXPECT_TRUE(exact.find("us"));
}

TEST(Document, find_takes_the_same_spelling_before_another_case) {
    const Document d = Document::parse(
        lexicon_of("<lexeme><grapheme>polish</grapheme></lexeme><lexeme><grapheme>Polish</grapheme></lexeme>"));
    EXPECT_EQ(*d.find("Polish"), (WordId{1, 0}));
    EXPECT_EQ(*d.find("POLISH"), (WordId{0, 0}));
}

TEST(Document, find_follows_edits_and_their_way_back) {
    Document d = Document::parse(lexicon_of("<lexeme><grapheme>One</grapheme><grapheme>ONE</grapheme></lexeme>"));
    ASSERT_EQ(d.find("one"), (WordId{0, 0}));
    d.change({0, 0}, words("Two", "x"));
    EXPECT_EQ(d.find("one"), (WordId{0, 1}));
    EXPECT_EQ(d.find("two"), (WordId{0, 0}));
    const WordId added = d.add(words("one", "y"));
    EXPECT_EQ(d.find("one"), added);
    d.remove({0, 1});
    EXPECT_EQ(d.find("ONE"), added);
    for (int i = 0; i < 3; ++i) d.undo();
    EXPECT_EQ(d.find("one"), (WordId{0, 0}));
    EXPECT_EQ(d.find("two"), std::nullopt);
    d.redo();
    EXPECT_EQ(d.find("Two"), (WordId{0, 0}));
}

TEST(Document, utf16_is_edited_as_utf16) {
    for (const bool little : {true, false}) {
        Document d = Document::parse(utf16(replaced(sample, "UTF-8", "UTF-16"), little));
        d.change(*d.find("W3C"), sounds("W3C \xF0\x9F\x98\x80", "wiː"));
        d.remove(*d.find("Leicester"));
        d.add(words("é", "e"));
        EXPECT_EQ(listed(Document::parse(d.bytes())), "W3C 😀=[wiː] é=(e)");
        const std::string text = replaced(sample, "UTF-8", "UTF-16");
        const std::size_t begin = text.find("\n  <lexeme xml:id"), end = text.find("\n  <lexeme>");
        std::string expected = text.substr(0, begin) + text.substr(end);
        expected = replaced(expected, "<alias  x:by='me' >World Wide Web Consortium</alias>", "<phoneme>wiː</phoneme>");
        expected = replaced(expected, ">W3C<", ">W3C \xF0\x9F\x98\x80<");
        expected = replaced(expected, "  <x:other>",
                            "  <lexeme>\n    <grapheme>é</grapheme>\n    <alias>e</alias>\n"
                            "  </lexeme>\n  <x:other>");
        EXPECT_EQ(d.bytes(), utf16(expected, little));
    }
}

TEST(Document, small_encodings_take_other_characters_as_references) {
    const std::string head = "<?xml version='1.0' encoding='ISO-8859-1'?>";
    Document latin = Document::parse(head + lexicon_of("<lexeme><grapheme>caf\xE9</grapheme></lexeme>"));
    EXPECT_EQ(listed(latin), "café=[]");
    latin.change(latin.words()[0].id, sounds("cafés", "kæ"));
    EXPECT_EQ(latin.bytes(),
              head + lexicon_of("<lexeme><grapheme>caf\xE9s</grapheme><phoneme>k\xE6</phoneme></lexeme>"));
    latin.change(latin.words()[0].id, sounds("cafés", "kə"));
    EXPECT_NE(latin.bytes().find("<phoneme>k&#x259;</phoneme>"), std::string::npos);
    Document ascii = Document::parse(replaced(head, "ISO-8859-1", "US-ASCII") + lexicon_of(""));
    ascii.add(words("é", "\xF0\x9F\x98\x80"));
    EXPECT_NE(ascii.bytes().find("<grapheme>&#xE9;</grapheme>\n    <alias>&#x1F600;</alias>"), std::string::npos);
}

TEST(Document, refuses_what_is_not_xml_and_says_where) {
    std::string message;
    EXPECT_EQ(refusal("Dear diary,\n", &message), BadLexicon::Reason::not_xml);
    EXPECT_NE(message.find("line 1, column 1"), std::string::npos);
    EXPECT_EQ(refusal("<lexicon>\n<lexeme></lexicon>", &message), BadLexicon::Reason::not_xml);
    EXPECT_NE(message.find("line 2, column"), std::string::npos);
    EXPECT_EQ(refusal(sample.substr(0, sample.size() / 2)), BadLexicon::Reason::not_xml);
    EXPECT_EQ(refusal(lexicon_of("\xFF")), BadLexicon::Reason::not_xml);
}

TEST(Document, refuses_other_xml) {
    std::string message;
    EXPECT_EQ(refusal("<html/>", &message), BadLexicon::Reason::not_a_lexicon);
    EXPECT_NE(message.find("<html>"), std::string::npos);
    EXPECT_EQ(refusal("<lexicon xmlns='urn:other'/>"), BadLexicon::Reason::not_a_lexicon);
}

TEST(Document, refuses_other_encodings_by_name) {
    std::string message;
    EXPECT_EQ(refusal("<?xml version='1.0' encoding='Shift_JIS'?><lexicon/>", &message), BadLexicon::Reason::encoding);
    EXPECT_NE(message.find("\"Shift_JIS\""), std::string::npos);
}

TEST(Document, refuses_entities_that_explode) {
    std::string text = "<!DOCTYPE lexicon [<!ENTITY a0 'aaaaaaaaaa'>";
    for (int i = 1; i < 10; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        text += "<!ENTITY a" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k) text += inner;
        text += "'>";
    }
    EXPECT_EQ(refusal(text + "]><lexicon><lexeme><grapheme>&a9;</grapheme></lexeme></lexicon>"),
              BadLexicon::Reason::not_xml);
}

TEST(Document, each_cut_of_a_file_is_refused_or_taken_whole) {
    const std::string text = replaced(sample, "<!-- end -->\n", "");
    for (std::size_t size = 0; size + 1 < text.size(); ++size) refusal(text.substr(0, size));
}

TEST(Document, large_files_take_time_in_proportion) {
    std::string content;
    for (int i = 0; i < 50000; ++i)
        content += "<lexeme><grapheme>w" + std::to_string(i) + "</grapheme><alias>x</alias></lexeme>\n";
    Document d = Document::parse(lexicon_of(content));
    const std::vector<Word> all = d.words();
    ASSERT_EQ(all.size(), 50000u);
    for (const Word& word : all) d.change(word.id, words(word.text.word, "yy"));
    EXPECT_EQ(d.bytes().size(), lexicon_of(content).size() + 50000);
}

// With a walk through the lexicon for each edit these would be 10,000,000,000 comparisons.
TEST(Document, many_edits_are_repeated_in_a_large_file_in_time_in_proportion) {
    std::string content;
    std::vector<Edit> edits;
    for (int i = 0; i < 200000; ++i) {
        const std::string word = "w" + std::to_string(i);
        content += "<lexeme><grapheme>" + word + "</grapheme><alias>x</alias></lexeme>\n";
        if (i % 4 == 0) edits.push_back({words(word, "x"), words(word, "yy")});
    }
    Document d = Document::parse(lexicon_of(content));
    repeat_edits(&d, edits);
    EXPECT_EQ(d.bytes().size(), lexicon_of(content).size() + 50000);
}

}  // namespace
