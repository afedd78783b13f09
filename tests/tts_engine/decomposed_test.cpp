// Decomposed text and invisible characters: they sound and match as composed text does, and keep their places.
#include <gtest/gtest.h>
#include <utf8proc.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "speech.h"
#include "test_file.h"
#include "tts_engine/characters.h"
#include "tts_engine/composition.h"
#include "tts_engine/sentence.h"

namespace {

std::string mapped(const std::string& text, utf8proc_uint8_t* (*map)(const utf8proc_uint8_t*)) {
    utf8proc_uint8_t* const result = map(reinterpret_cast<const utf8proc_uint8_t*>(text.c_str()));
    const std::string copy = reinterpret_cast<const char*>(result);
    std::free(result);
    return copy;
}
std::string decomposed(const std::string& text) { return mapped(text, utf8proc_NFD); }
std::string composed(const std::string& text) { return mapped(text, utf8proc_NFC); }

std::u32string codes_of(const std::string& text) {
    std::u32string codes;
    for (std::string_view rest = text; !rest.empty();) {
        const tts::Decoded decoded = tts::decode_utf8(rest);
        codes.push_back(decoded.code);
        rest.remove_prefix(decoded.length);
    }
    return codes;
}

std::u32string appended(const std::u32string& codes) {
    std::u32string text;
    for (const char32_t code : codes) tts::append_composed(text, code);
    return text;
}

// The characters that a text's sentences have, each sentence followed by a line end.
std::u32string cut(const std::string& text) {
    tts::SentenceCutter cutter;
    std::uint32_t at = 0;
    for (const char32_t code : codes_of(text)) {
        cutter.add({code, at, at + 1});
        ++at;
    }
    cutter.finish();
    std::u32string result;
    for (const tts::Sentence& sentence : cutter.ready()) {
        for (const tts::Character& character : sentence.text) result.push_back(character.code);
        result.push_back(U'\n');
    }
    return result;
}

// Both texts sound the same, and the words of `written` are those.
void expect_sounds_like(const std::string& voice, const std::string& written, const std::string& plain,
                        const Texts& words) {
    const TestVoice speaker(voice);
    const Speech heard = speak(speaker, written);
    EXPECT_EQ(heard.samples, speak(speaker, plain).samples) << voice << ": " << written;
    EXPECT_EQ(heard.words(), words) << voice;
}

}  // namespace

TEST(Composition, letters_and_their_marks_become_one_character) {
    EXPECT_EQ(appended(U"e\u0301"), U"\u00E9");
    EXPECT_EQ(appended(U"cafe\u0301s"), U"caf\u00E9s");
    EXPECT_EQ(appended(U"e\u0302\u0301"), U"\u1EBF");
    EXPECT_EQ(appended(U"\u0915\u093C"), U"\u0915\u093C");  // a composition that NFC excludes
    EXPECT_EQ(appended(U"\u09C7\u09BE"), U"\u09CB");        // Bengali vowel in two parts, neither a mark of a class
    EXPECT_EQ(appended(U"x\u0301"), U"x\u0301");
    EXPECT_EQ(appended(U"\u0301"), U"\u0301");
}

TEST(Composition, korean_syllables_come_from_their_parts) {
    EXPECT_EQ(appended(U"\u1112\u1161\u11AB\u1100\u116E\u11A8"), U"\uD55C\uAD6D");
    EXPECT_EQ(appended(U"\uD558\u11AB"), U"\uD55C");
    EXPECT_EQ(appended(U"a\u1161"), U"a\u1161");
}

TEST(Composition, marks_out_of_order_are_put_in_order) {
    EXPECT_EQ(appended(U"\u00EA\u0323"), U"\u1EC7");  // as some Vietnamese keyboards write it
    EXPECT_EQ(appended(U"a\u0301\u0323"), U"\u1EA1\u0301");
    EXPECT_EQ(appended(U"l\u0304\u0323"), U"\u1E39");
}

TEST(Composition, a_letter_that_another_one_is_composed_of_is_replaced) {
    EXPECT_EQ(appended(U"\u212B"), U"\u00C5");  // the sign of the unit
    EXPECT_EQ(appended(U"\uF9DD"), U"\u5229");  // a compatibility ideograph
    EXPECT_EQ(appended(U"\u0958"), U"\u0915\u093C");
    EXPECT_EQ(appended(U"\u037E"), U"\u037E");  // a question mark, not a semicolon
}

TEST(Composition, bengali_letters_with_a_nukta_are_one) {
    EXPECT_EQ(appended(U"\u09A1\u09BC"), U"\u09DC");
    EXPECT_EQ(appended(U"\u09A2\u09BC"), U"\u09DD");
    EXPECT_EQ(appended(U"\u09AF\u09BC"), U"\u09DF");
    EXPECT_EQ(appended(U"\u09DC"), U"\u09DC");
    EXPECT_EQ(appended(U"\u09DC\u0981"), U"\u09DC\u0981");
}

TEST(Composition, every_character_of_unicode_becomes_its_composed_form) {
    for (char32_t code = 0x80; code <= 0x10FFFF; ++code) {
        if (code >= 0xD800 && code <= 0xDFFF) continue;
        const auto* property = utf8proc_get_property(static_cast<utf8proc_int32_t>(code));
        const bool letter = property->category >= UTF8PROC_CATEGORY_LU && property->category <= UTF8PROC_CATEGORY_MC;
        if (!letter || (code >= 0x9DC && code <= 0x9DF)) continue;
        std::string bytes;
        tts::append_utf8(bytes, code);
        ASSERT_EQ(appended(std::u32string(1, code)), codes_of(composed(bytes))) << static_cast<unsigned>(code);
        ASSERT_EQ(appended(codes_of(decomposed(bytes))), codes_of(composed(bytes))) << static_cast<unsigned>(code);
    }
}

TEST(Composition, a_run_of_many_marks_is_kept_and_costs_no_more_than_its_length) {
    const std::u32string marks = U"a" + std::u32string(100000, U'\u0316');
    EXPECT_EQ(appended(marks), marks);
    // Alternating classes, which are put in order again and again.
    std::u32string mixed = U"a";
    for (int i = 0; i < 50000; ++i) mixed += U"\u0301\u0316";
    EXPECT_EQ(appended(mixed).size(), mixed.size() - 1);  // the first makes an á
}

TEST(Decomposed, every_language_has_the_sentences_of_its_composed_text) {
    const std::filesystem::path folder = std::filesystem::path(TTS_TEST_SOURCES) / "../../tests/tts_engine/languages";
    int texts = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::stringstream text;
        text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        EXPECT_EQ(cut(decomposed(text.str())), cut(composed(text.str()))) << entry.path();
        ++texts;
    }
    EXPECT_GT(texts, 40);
}

TEST(Decomposed, text_sounds_like_its_composed_form_with_the_words_as_written) {
    for (const auto& [voice, text] : std::vector<std::pair<std::string, std::string>>{{"en-us-22i", "café"},
                                                                                      {"fr-22i", "été"},
                                                                                      {"de-22i", "Über"},
                                                                                      {"vi-22i", "Việt"},
                                                                                      {"ko-22i", "한국어"},
                                                                                      {"ru-22i", "йод"},
                                                                                      {"bn-22i", "বাড়ি"},
                                                                                      {"el-22i", "ώρα"},
                                                                                      {"ja-22i", "が"}})
        expect_sounds_like(voice, decomposed(text) + " x", composed(text) + " x", {decomposed(text), "x"});
}

TEST(Decomposed, a_bengali_letter_with_a_nukta_sounds_as_its_dictionary_has_it) {
    const TestVoice voice("bn-22i");
    EXPECT_EQ(speak(voice, "বা\u09A1\u09BCি").samples, speak(voice, "বা\u09DCি").samples);
}

TEST(Decomposed, a_mark_after_a_tag_or_in_an_entity_joins_its_letter) {
    const Speech speech = speak("<speak>cafe<mark name=\"here\"/>&#x301; now</speak>");
    EXPECT_EQ(speech.words(), (Texts{"cafe<mark name=\"here\"/>&#x301;", "now"}));
    EXPECT_EQ(speech.marks(), Texts{"here"});
    EXPECT_EQ(speech.samples, speak("<speak>café now</speak>").samples);
}

TEST(Decomposed, a_mark_before_any_letter_is_harmless) {
    EXPECT_EQ(speak("\u0301 hello").words().back(), "hello");
    EXPECT_EQ(speak("<speak>e<sub alias=\"one\">\u0301</sub> two</speak>").words().back(), "two");
}

TEST(Decomposed, an_alias_is_composed) {
    EXPECT_EQ(speak("<speak><sub alias=\"cafe\u0301\">x</sub></speak>").samples,
              speak("<speak><sub alias=\"café\">x</sub></speak>").samples);
}

TEST(Decomposed, a_lexicon_matches_whichever_way_it_and_the_text_are_written) {
    for (const std::string& key : {composed("Zoë"), decomposed("Zoë")}) {
        const TestFile file("words.pls",
                            "<lexicon version=\"1.0\" "
                            "xmlns=\"http://www.w3.org/2005/01/pronunciation-lexicon\" alphabet=\"ipa\">"
                            "<lexeme><grapheme>" +
                                key +
                                "</grapheme><alias>window</alias></lexeme>"
                                "</lexicon>");
        const TestVoice voice;
        ASSERT_EQ(tts_dict_load(voice, file.name().c_str()), 0);
        const Speech window = speak(voice, "window");
        EXPECT_EQ(speak(voice, composed("Zoë")).samples, window.samples);
        EXPECT_EQ(speak(voice, decomposed("Zoë")).samples, window.samples);
        EXPECT_EQ(speak(voice, decomposed("ZO\u00AD\u200EË")).samples, window.samples);
    }
}

TEST(Invisible, characters_inside_a_word_neither_part_nor_silence_it) {
    for (const char* invisible :
         {"\u00AD", "\u200C", "\u200D", "\u200E", "\u200F", "\u202A", "\u202B", "\u202C", "\u202D", "\u202E", "\u2060",
          "\u2066", "\u2067", "\u2068", "\u2069", "\uFEFF", "\u034F", "\u061C", "\uFE00"}) {
        const std::string written = std::string("hel") + invisible + "lo";
        expect_sounds_like("en-us-22i", written + " there", "hello there", {written, "there"});
    }
}

TEST(Invisible, characters_around_a_word_do_not_belong_to_it) {
    expect_sounds_like("en-us-22i", "\uFEFF\u2066hello\u2069\u200F, \u202Athere\u202C.", "hello, there.",
                       {"hello", "there"});
}

TEST(Invisible, between_a_letter_and_its_mark_nothing_changes) {
    expect_sounds_like("en-us-22i", "cafe\u034F\u0301", "café", {"cafe\u034F\u0301"});
}

TEST(Invisible, joiners_that_a_script_asks_for_part_no_word) {
    expect_sounds_like("si-22i", "ශ්\u200Dරී", "ශ්රී", {"ශ්\u200Dරී"});
    expect_sounds_like("hi-22i", "क्\u200Dषमा", "क्षमा", {"क्\u200Dषमा"});
    expect_sounds_like("ne-22i", "गर्\u200Dयो", "गर्यो", {"गर्\u200Dयो"});
}

TEST(Invisible, joiners_that_espeak_reads_reach_it) {
    const TestVoice persian("fa-22i");
    EXPECT_NE(speak(persian, "ق\u200Cم").samples, speak(persian, "قم").samples);  // an abbreviation and a town
    EXPECT_EQ(speak(persian, "می\u200Cخواهم").words(), Texts{"می\u200Cخواهم"});
    const TestVoice english;
    EXPECT_NE(speak(english, "\U0001F469\u200D\U0001F467").samples, speak(english, "\U0001F469\U0001F467").samples);
    const TestVoice malayalam("ml-22i");
    EXPECT_EQ(speak(malayalam, "അവന്\u200D").samples, speak(malayalam, "അവൻ").samples);
}

TEST(Invisible, a_document_of_nothing_else_is_silent) {
    EXPECT_EQ(speak("\u200E\u200F\uFEFF\u00AD").samples.size(), 0u);
}
