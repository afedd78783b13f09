// User lexicons: what they mean, what is refused, and that they are heard.
#include "tts_engine/lexicon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "speech.h"
#include "test_file.h"

namespace {

std::string lexicon_of(const std::string& lexemes, const std::string& attributes = "alphabet=\"ipa\" xml:lang=\"en\"") {
    return "<?xml version=\"1.0\"?>\n<lexicon version=\"1.0\" "
           "xmlns=\"http://www.w3.org/2005/01/pronunciation-lexicon\" xmlns:n=\"urn:nelva:lexicon\" " +
           attributes + ">\n" + lexemes + "\n</lexicon>\n";
}

std::string alias(const std::string& word, const std::string& said) {
    return "<lexeme><grapheme>" + word + "</grapheme><alias>" + said + "</alias></lexeme>";
}

// What a lexicon says for some words: "count kind text", or nothing.
std::string found(const std::string& lexicon, const std::string& words, const std::string& language = "en-us") {
    const tts::Lexicon parsed = tts::parse_lexicon(lexicon, "file");
    std::vector<std::string> list;
    std::istringstream stream(words);
    for (std::string word; stream >> word;) list.push_back(word);
    const tts::Lexicon::Match match = parsed.find(list, language);
    if (match.count == 0) return {};
    const bool ipa = match.pronunciation->kind == tts::Lexicon::Kind::ipa;
    return std::to_string(match.count) + (ipa ? " ipa " : " alias ") + std::string(match.pronunciation->text);
}

std::string failure_of(const std::string& text) {
    try {
        tts::parse_lexicon(text, "file");
    } catch (const std::exception& error) {
        return error.what();
    }
    return {};
}

// A voice with a lexicon.
Speech spoken_with(const std::string& lexicon, const std::string& document) {
    const TestFile file("words.pls", lexicon);
    const TestVoice voice;
    EXPECT_EQ(tts_dict_load(voice, file.name().c_str()), 0) << tts_errmsg();
    return speak(voice, document);
}

}  // namespace

TEST(Lexicon, phonemes_and_aliases) {
    const std::string lexicon =
        lexicon_of("<lexeme><grapheme>Nguyen</grapheme><phoneme>wɪn</phoneme></lexeme>" + alias("W3C", "the web"));
    EXPECT_EQ(found(lexicon, "Nguyen"), "1 ipa wɪn");
    EXPECT_EQ(found(lexicon, "W3C"), "1 alias the web");
    EXPECT_EQ(found(lexicon, "other"), "");
}

TEST(Lexicon, case_counts_only_where_it_is_marked) {
    const std::string lexicon =
        lexicon_of("<lexeme n:case=\"exact\"><grapheme>US</grapheme><alias>States</alias></lexeme>" +
                   alias("ΛΌΓΟΣ", "word") + alias("It", "that"));
    EXPECT_EQ(found(lexicon, "US"), "1 alias States");
    EXPECT_EQ(found(lexicon, "us"), "");
    EXPECT_EQ(found(lexicon, "λόγος"), "1 alias word");
    EXPECT_EQ(found(lexicon, "IT"), "1 alias that");
    EXPECT_EQ(found(lexicon_of(alias("US", "x"), "xml:lang=\"en\" n:case=\"exact\""), "us"), "");
}

TEST(Lexicon, several_words_the_longest_first) {
    const std::string lexicon =
        lexicon_of(alias("New York", "NY") + alias("New", "old") + alias("new york  city", "NYC"));
    EXPECT_EQ(found(lexicon, "New York City is"), "3 alias NYC");
    EXPECT_EQ(found(lexicon, "new York is"), "2 alias NY");
    EXPECT_EQ(found(lexicon, "new"), "1 alias old");
    EXPECT_EQ(found(lexicon, "York"), "");
}

TEST(Lexicon, several_graphemes_are_said_the_same) {
    const std::string lexicon =
        lexicon_of("<lexeme><grapheme>colour</grapheme><grapheme>color</grapheme><phoneme>ˈkʌlə</phoneme></lexeme>");
    EXPECT_EQ(found(lexicon, "colour"), found(lexicon, "color"));
}

TEST(Lexicon, first_lexeme_counts) {
    EXPECT_EQ(found(lexicon_of(alias("read", "one") + alias("Read", "two")), "read"), "1 alias one");
}

TEST(Lexicon, preferred_pronunciation_counts_else_the_first) {
    const std::string start = "<lexeme><grapheme>a</grapheme>";
    EXPECT_EQ(found(lexicon_of(start + "<phoneme>b</phoneme><alias>c</alias></lexeme>"), "a"), "1 ipa b");
    EXPECT_EQ(found(lexicon_of(start + "<phoneme>b</phoneme><alias prefer=\"true\">c</alias></lexeme>"), "a"),
              "1 alias c");
    EXPECT_EQ(found(lexicon_of(start + "<phoneme alphabet=\"x-sampa\">b</phoneme><alias>c</alias></lexeme>"), "a"),
              "1 alias c");
}

TEST(Lexicon, language_must_agree_up_to_its_first_part) {
    const std::string lexicon = lexicon_of(alias("a", "b"), "alphabet=\"ipa\" xml:lang=\"en-GB\"");
    EXPECT_EQ(found(lexicon, "a", "en-us"), "1 alias b");
    EXPECT_EQ(found(lexicon, "a", "de"), "");
    EXPECT_EQ(found(lexicon_of(alias("a", "b"), ""), "a", "de"), "1 alias b");
}

TEST(Lexicon, comments_metadata_and_foreign_elements_are_passed_over) {
    const std::string lexicon = lexicon_of(
        "<meta name=\"x\" content=\"y\"/><metadata><n:lexeme/></metadata><!-- no -->"
        "<lexeme><n:note>see</n:note><grapheme>a</grapheme><alias>b</alias><example>c</example></lexeme>");
    EXPECT_EQ(found(lexicon, "a"), "1 alias b");
}

TEST(Lexicon, other_encodings_are_read) {
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><lexicon xmlns="
        "\"http://www.w3.org/2005/01/pronunciation-lexicon\">" +
        alias("caf\xE9", "bar") + "</lexicon>";
    EXPECT_EQ(found(text, "Café"), "1 alias bar");
}

TEST(Lexicon, faults_are_told_with_their_line) {
    EXPECT_EQ(failure_of(lexicon_of("<lexeme>")), "file:4: mismatched tag");
    EXPECT_EQ(failure_of("<html/>"), "file:1: this is no pronunciation lexicon (PLS)");
    EXPECT_EQ(failure_of(lexicon_of("\n<lexeme><alias>b</alias></lexeme>")), "file:4: this lexeme has no grapheme");
    EXPECT_EQ(failure_of(lexicon_of("<lexeme n:case=\"no\"/>")), "file:3: case must be \"exact\" or \"any\"");
    EXPECT_EQ(failure_of(""), "file:1: no element found");
}

TEST(Lexicon, entities_of_its_own_are_refused) {
    EXPECT_EQ(
        failure_of("<!DOCTYPE lexicon [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">]><lexicon>&b;</lexicon>"),
        "file:1: a lexicon may not declare entities or elements of its own");
}

TEST(Lexicon, exact_lexeme_counts_before_a_later_one_for_any_case) {
    const std::string exact = "<lexeme n:case=\"exact\"><grapheme>US</grapheme><alias>States</alias></lexeme>";
    EXPECT_EQ(found(lexicon_of(exact + alias("us", "we")), "US"), "1 alias States");
    EXPECT_EQ(found(lexicon_of(exact + alias("us", "we")), "us"), "1 alias we");
    EXPECT_EQ(found(lexicon_of(alias("us", "we") + exact), "US"), "1 alias we");
}

TEST(Lexicon, lexeme_of_the_language_and_one_of_all_the_first_counts) {
    const std::string german = "<lexeme xml:lang=\"de\"><grapheme>a</grapheme><alias>b</alias></lexeme>";
    EXPECT_EQ(found(lexicon_of(german + alias("a", "c"), ""), "a", "de"), "1 alias b");
    EXPECT_EQ(found(lexicon_of(german + alias("a", "c"), ""), "a", "en"), "1 alias c");
    EXPECT_EQ(found(lexicon_of(alias("a", "c") + german, ""), "a", "de"), "1 alias c");
}

TEST(Lexicon, words_of_many_scripts) {
    for (const std::string word : {"naïve", "Łódź", "Москва", "ёлка", "λόγος", "東", "don't", "C++", "3.14"})
        EXPECT_EQ(found(lexicon_of(alias(word, "x")), word), "1 alias x") << word;
    EXPECT_EQ(found(lexicon_of(alias(" Ünder  die  Brücke ", "x")), "ünder die brücke"), "3 alias x");
    EXPECT_EQ(found(lexicon_of(alias("×", "x")), "×"), "1 alias x");
}

// However long what is said for them is, and however many they are.
TEST(Lexicon, graphemes_of_a_lexeme_share_what_is_said) {
    std::string lexeme = "<lexeme>";
    for (int i = 0; i < 20000; ++i) lexeme += "<grapheme>w" + std::to_string(i) + "</grapheme>";
    const tts::Lexicon parsed =
        tts::parse_lexicon(lexicon_of(lexeme + "<alias>" + std::string(20000, 'x') + "</alias></lexeme>"), "file");
    const std::vector<std::string> first{"w0"}, last{"w19999"};
    ASSERT_EQ(parsed.find(last, "en").count, 1u);
    EXPECT_EQ(parsed.find(first, "en").pronunciation, parsed.find(last, "en").pronunciation);
}

TEST(Lexicon, grapheme_or_pronunciation_that_is_too_long_does_not_count) {
    EXPECT_EQ(found(lexicon_of(alias(std::string(2000, 'a'), "x")), std::string(2000, 'a')), "1 alias x");
    EXPECT_EQ(found(lexicon_of(alias(std::string(2001, 'a'), "x")), std::string(2001, 'a')), "");
    EXPECT_EQ(found(lexicon_of(alias("a", std::string(20001, 'x'))), "a"), "");
}

TEST(Lexicon, two_hundred_thousand_words_are_read) {
    std::string lexemes;
    for (int i = 0; i < 200000; ++i) lexemes += "  " + alias("w" + std::to_string(i), "said otherwise") + "\n";
    EXPECT_EQ(found(lexicon_of(lexemes), "w199999"), "1 alias said otherwise");
}

TEST(Lexicon, too_much_is_refused_with_the_reason) {
    const auto repeated = [](const std::string& part, int count) {
        std::string text;
        for (int i = 0; i < count; ++i) text += part;
        return text;
    };
    EXPECT_NE(failure_of(std::string(25 << 20, ' ')).find("file: the lexicon is too large: it may have 24 MB"),
              std::string::npos);
    EXPECT_NE(failure_of(lexicon_of(repeated("<a/>", 1500001))).find("too large"), std::string::npos);
    EXPECT_NE(failure_of(lexicon_of("<a " + repeated("a=\"\" ", 10001) + "/>")).find("too large"), std::string::npos);
    EXPECT_NE(failure_of(lexicon_of(repeated("<a/>", 50001))).find("does not know"), std::string::npos);
    EXPECT_NE(failure_of(lexicon_of(repeated("<meta xmlns:a=\"u\"/>", 1001))).find("too many namespaces"),
              std::string::npos);
    EXPECT_NE(
        failure_of(lexicon_of("<lexeme>" + repeated("<grapheme>-</grapheme>", 500000) + "</lexeme>")).find("too many"),
        std::string::npos);
}

TEST(LexiconHeard, word_is_said_otherwise_and_pointed_at_as_written) {
    const std::string lexicon = lexicon_of(alias("ab", "a much longer thing to say") + alias("New York", "York"));
    const Speech plain = speak("Say AB now. New York.");
    const Speech speech = spoken_with(lexicon, "Say AB now. New York.");
    EXPECT_EQ(speech.words(), (Texts{"Say", "AB", "now", "New", "York"}));
    EXPECT_EQ(speech.sentences(), plain.sentences());
    EXPECT_GT(speech.sample_of("now"), plain.sample_of("now") + 11025);  // half a second
    EXPECT_LT(speech.samples.size() - speech.sample_of("New"), plain.samples.size() - plain.sample_of("New"));
}

TEST(LexiconHeard, phonemes_sound_like_the_word_that_has_them) {
    const std::string lexicon = lexicon_of("<lexeme><grapheme>Qx</grapheme><phoneme>ˈfɑːðɚ</phoneme></lexeme>");
    EXPECT_EQ(spoken_with(lexicon, "Qx").visemes(), speak("father").visemes());
}

TEST(LexiconHeard, text_of_another_language_is_left_alone) {
    const std::string lexicon = lexicon_of(alias("Haus", "a much longer thing to say"));
    const std::string document = "<speak><lang xml:lang=\"de\">Haus</lang></speak>";
    EXPECT_EQ(spoken_with(lexicon, document), speak(document));
}

TEST(LexiconHeard, spelled_text_is_left_alone) {
    const std::string document = "<speak><say-as interpret-as=\"characters\">ab</say-as></speak>";
    EXPECT_EQ(spoken_with(lexicon_of(alias("ab", "a much longer thing")), document), speak(document));
}

TEST(LexiconHeard, cleanup_empties_it) {
    const TestFile file("words.pls", lexicon_of(alias("hello", "a much longer thing to say")));
    const TestVoice voice;
    const Speech plain = speak(voice, "Hello.");
    EXPECT_EQ(tts_dict_load(voice, file.name().c_str()), 0);
    EXPECT_FALSE(speak(voice, "Hello.") == plain);
    tts_dict_cleanup(voice);
    EXPECT_TRUE(speak(voice, "Hello.") == plain);
}

TEST(LexiconHeard, bad_one_loads_nothing_and_tells_why) {
    const TestFile good("good.pls", lexicon_of(alias("hello", "a much longer thing to say")));
    const TestFile bad("bad.pls", lexicon_of(alias("hello", "good bye") + "\n<lexeme>"));
    const TestVoice voice;
    const Speech plain = speak(voice, "Hello.");
    EXPECT_EQ(tts_dict_load(voice, good.name().c_str()), 0);
    EXPECT_NE(tts_dict_load(voice, bad.name().c_str()), 0);
    EXPECT_NE(std::string(tts_errmsg()).find("bad.pls:5: mismatched tag"), std::string::npos) << tts_errmsg();
    EXPECT_TRUE(speak(voice, "Hello.") == plain);
}

TEST(LexiconHeard, changed_file_counts_from_the_next_load_on) {
    const std::string text = lexicon_of(alias("hello", "good bye"));
    const TestFile file("words.pls", text);
    const TestVoice voice;
    const auto load_and_speak = [&] {
        EXPECT_EQ(tts_dict_load(voice, file.name().c_str()), 0) << tts_errmsg();
        return speak(voice, "Hello.");
    };
    const Speech before = load_and_speak();
    EXPECT_TRUE(load_and_speak() == before);
    std::ofstream(file.name(), std::ios::binary) << lexicon_of(alias("hello", "good day"));  // of the same size
    EXPECT_FALSE(load_and_speak() == before);
    std::ofstream(file.name(), std::ios::binary) << text;
    EXPECT_TRUE(load_and_speak() == before);
}

TEST(LexiconHeard, voices_do_not_share_one) {
    const TestFile file("words.pls", lexicon_of(alias("hello", "a much longer thing to say")));
    const TestVoice one, other;
    const Speech plain = speak(other, "Hello.");
    EXPECT_EQ(tts_dict_load(one, file.name().c_str()), 0);
    EXPECT_TRUE(speak(other, "Hello.") == plain);
}

TEST(LexiconHeard, document_keeps_the_one_that_it_began_with) {
    const TestFile file("words.pls", lexicon_of(alias("hello", "a much longer thing to say")));
    const TestVoice voice;
    EXPECT_EQ(tts_dict_load(voice, file.name().c_str()), 0);
    const Speech whole = speak(voice, "Hello.");
    tts_streamer streamer = tts_streamer_start(voice, "Hello.", -1);
    tts_dict_cleanup(voice);
    Speech speech;
    hear_rest(speech, streamer, "Hello.");
    tts_streamer_stop(streamer);
    EXPECT_EQ(speech.samples, whole.samples);
}

// Names are UTF-8 on every system, whatever its code page.
TEST(FileNames, need_not_be_of_the_code_page) {
    const TestFile lexicon("words.pls", lexicon_of(alias("hello", "a much longer thing to say")), u8"слова-語彙-");
    const TestFile file("22i", "language = en-us\n", u8"голос-声-");
    const TestVoice voice(TTS_TEST_DATA, file.name());
    const Speech plain = speak(voice, "Hello.");
    EXPECT_EQ(tts_dict_load(voice, lexicon.name().c_str()), 0) << tts_errmsg();
    EXPECT_GT(speak(voice, "Hello.").seconds(), plain.seconds());
}
