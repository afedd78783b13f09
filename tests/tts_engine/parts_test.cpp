// Single parts: sentences, attribute values, mouth shapes, voice files, the places of words.
#include <gtest/gtest.h>

#include "tts_engine/characters.h"
#include "tts_engine/output_stage.h"
#include "tts_engine/pitch_mark.h"
#include "tts_engine/prosody.h"
#include "tts_engine/sentence.h"
#include "tts_engine/visemes.h"
#include "tts_engine/voice_file.h"
#include "tts_engine/word_placer.h"

namespace {

using Texts = std::vector<std::string>;

std::vector<tts::Sentence> cut(const std::string& text, const std::string& language = "en") {
    tts::SentenceCutter cutter;
    cutter.set_language(language);
    std::uint32_t at = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const tts::Decoded decoded = tts::decode_utf8(rest);
        const auto end = at + static_cast<std::uint32_t>(decoded.length);
        cutter.add({decoded.code, at, end});
        at = end;
        rest.remove_prefix(decoded.length);
    }
    cutter.finish();
    return {cutter.ready().begin(), cutter.ready().end()};
}

std::string text_of(const tts::Sentence& sentence) {
    std::string text;
    for (const tts::Character& character : sentence.text) tts::append_utf8(text, character.code);
    return text;
}

Texts sentences_of(const std::string& text, const std::string& language = "en") {
    Texts result;
    for (const tts::Sentence& sentence : cut(text, language)) result.push_back(text_of(sentence));
    return result;
}

std::string message_of(const std::string& voice_file) {
    try {
        tts::parse_voice_file(voice_file, "file");
    } catch (const std::exception& error) {
        return error.what();
    }
    return {};
}

}  // namespace

TEST(Cutter, full_stop_before_a_small_letter_or_inside_a_number_ends_nothing) {
    EXPECT_EQ(sentences_of("It is approx. five. See 3.14 now. And then"),
              (Texts{"It is approx. five.", "See 3.14 now.", "And then"}));
}

TEST(Cutter, full_stop_of_an_abbreviation_ends_nothing) {
    EXPECT_EQ(sentences_of("Dr. Smith and J. R. Jones met on Jan. 5 at No. 10 of the U.S. Mint. Fine."),
              (Texts{"Dr. Smith and J. R. Jones met on Jan. 5 at No. 10 of the U.S. Mint.", "Fine."}));
    EXPECT_EQ(sentences_of("It was no. Then it was. Next"), (Texts{"It was no.", "Then it was.", "Next"}));
}

TEST(Cutter, abbreviations_are_those_of_the_language) {
    EXPECT_EQ(sentences_of("I have ten. You lost your mag. Fine."),
              (Texts{"I have ten.", "You lost your mag.", "Fine."}));
    EXPECT_EQ(sentences_of("Vgl. Hr. Mag. Huber in Kap. 3. Gut.", "de-AT"),
              (Texts{"Vgl. Hr. Mag. Huber in Kap. 3.", "Gut."}));
    EXPECT_EQ(sentences_of("La Sra. López y D. Juan. Bien.", "es"), (Texts{"La Sra. López y D. Juan.", "Bien."}));
    EXPECT_EQ(sentences_of("Это ул. Мира и проф. Иванов. Да.", "ru"), (Texts{"Это ул. Мира и проф. Иванов.", "Да."}));
    EXPECT_EQ(sentences_of("См. А. П. Чехов. Да.", "ru"), (Texts{"См. А. П. Чехов.", "Да."}));
}

TEST(Cutter, german_ordinals_end_nothing) {
    EXPECT_EQ(sentences_of("Wir kamen am 3. Mai an. Dann im 19. Jahrhundert. Gut.", "de"),
              (Texts{"Wir kamen am 3. Mai an.", "Dann im 19. Jahrhundert.", "Gut."}));
    EXPECT_EQ(sentences_of("1. Kapitel. Berlin, 3. Mai 2021. Ich bin 30. Du bist 40.", "de"),
              (Texts{"1. Kapitel.", "Berlin, 3. Mai 2021.", "Ich bin 30.", "Du bist 40."}));
    EXPECT_EQ(sentences_of("He came on the 3. May was late. She is 30. He is not."),
              (Texts{"He came on the 3.", "May was late.", "She is 30.", "He is not."}));
}

TEST(Cutter, single_letter_of_a_script_without_capitals_is_no_initial) {
    EXPECT_EQ(sentences_of("책을 봐요. 네. 좋아요.", "ko"), (Texts{"책을 봐요.", "네.", "좋아요."}));
}

TEST(Cutter, quotes_and_brackets_belong_to_the_end) {
    EXPECT_EQ(sentences_of("\"Stop!\" (He did.) \"Why?\" she said. So"),
              (Texts{"\"Stop!\"", "(He did.)", "\"Why?\" she said.", "So"}));
}

TEST(Cutter, several_ends_are_one) {
    EXPECT_EQ(sentences_of("What?! No... Yes!!"), (Texts{"What?!", "No...", "Yes!!"}));
}

TEST(Cutter, empty_line_ends) {
    EXPECT_EQ(sentences_of("A title\n\nthe text\nof two lines"), (Texts{"A title", "the text of two lines"}));
}

TEST(Cutter, scripts_without_blanks_need_none) {
    EXPECT_EQ(sentences_of("你好。再见！「好。」完"), (Texts{"你好。", "再见！", "「好。」", "完"}));
}

TEST(Cutter, long_text_is_cut_at_blanks) {
    std::string text;
    for (int i = 0; i < 400; ++i) text += "word ";
    const auto pieces = cut(text);
    EXPECT_GT(pieces.size(), 2u);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        EXPECT_LE(pieces[i].text.size(), 520u);
        EXPECT_EQ(pieces[i].begins, i == 0);
        EXPECT_EQ(pieces[i].ends, i + 1 == pieces.size());
        EXPECT_EQ(text_of(pieces[i]).substr(0, 4), "word");
    }
}

TEST(Cutter, long_text_of_fragments_without_blanks_is_cut_at_their_borders) {
    tts::SentenceCutter cutter;
    for (int i = 0; i < 300; ++i) {
        cutter.end_word();
        for (const char c : std::string("word")) cutter.add({static_cast<unsigned char>(c), 0, 0});
    }
    cutter.finish();
    EXPECT_GT(cutter.ready().size(), 2u);
    for (const tts::Sentence& piece : cutter.ready()) {
        EXPECT_LE(piece.text.size(), 504u);
        EXPECT_EQ(piece.text.size() % 5, 4u);  // whole words with a blank between
    }
}

TEST(Cutter, text_without_a_blank_is_cut_between_characters) {
    // Each "letter" is one to a reader, though there is no one code for it; a piece of 700 characters or a few more
    // ends after a whole one.
    const std::u32string letters[] = {U"x\u0327\u0301", U"\U0001F469\u200D\U0001F680", U"\U0001F44D\U0001F3FD",
                                      U"\u1140\u1161\u11A8"};
    for (const std::u32string& letter : letters) {
        std::string text;
        for (int i = 0; i < 1000; ++i)
            for (const char32_t c : letter) tts::append_utf8(text, c);
        const auto pieces = cut(text);
        EXPECT_GT(pieces.size(), 2u);
        for (const tts::Sentence& piece : pieces) {
            EXPECT_EQ(piece.text.size() % letter.size(), 0u);
            EXPECT_LE(piece.text.size(), 700 + letter.size());
        }
    }
}

TEST(Cutter, endless_combining_marks_are_cut_too) {
    std::string text = "x";
    for (int i = 0; i < 10000; ++i) text += "\xCC\x81";
    std::size_t characters = 0;
    for (const tts::Sentence& piece : cut(text)) {
        EXPECT_LE(piece.text.size(), 800u);
        characters += piece.text.size();
    }
    EXPECT_EQ(characters, 10001u);
}

TEST(Cutter, empty_line_after_the_cut_of_a_long_text_begins_a_sentence) {
    // 300 characters up to the comma, where the text is cut.
    const auto pieces = cut(std::string(299, 'a') + ",\n\nNext");
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_TRUE(pieces[0].ends);
    EXPECT_TRUE(pieces[1].begins);
    EXPECT_TRUE(pieces[1].begins_paragraph);
}

TEST(Cutter, long_text_that_ends_where_it_could_be_cut_is_not_cut) {
    for (const std::string end : {",", "."}) {
        tts::SentenceCutter cutter;
        for (int i = 0; i < 600; ++i) cutter.add({U'a', 0, 0});
        cutter.add({static_cast<unsigned char>(end[0]), 0, 0});
        cutter.add({U' ', 0, 0});
        if (end == ",") cutter.end_sentence();
        cutter.add({U'B', 0, 0});
        cutter.finish();
        ASSERT_EQ(cutter.ready().size(), 2u);
        EXPECT_TRUE(cutter.ready()[0].ends);
        EXPECT_TRUE(cutter.ready()[1].begins);
    }
}

TEST(PitchMark, is_p_and_a_number_and_nothing_else) {
    for (const char* name : {"P0", "P10", "P-3", "P+7", "P00012345678901234567890"})
        EXPECT_TRUE(tts::is_pitch_mark(name)) << name;
    for (const char* name :
         {"", "P", "P-", "P+", "Page1", "P1a", "P 1", "P1 ", "P1.5", "P--1", "p1", "BP1", "1", "P\xD9\xA1"})
        EXPECT_FALSE(tts::is_pitch_mark(name)) << name;
}

TEST(Prosody, rate_values) {
    EXPECT_FLOAT_EQ(*tts::rate_from("1.40", 1), 1.4f);
    EXPECT_FLOAT_EQ(*tts::rate_from("140%", 2), 1.4f);
    EXPECT_FLOAT_EQ(*tts::rate_from("+50%", 2), 3);
    EXPECT_FLOAT_EQ(*tts::rate_from("-50%", 2), 1);
    EXPECT_FLOAT_EQ(*tts::rate_from("x-fast", 2), 1.4f);
    EXPECT_FLOAT_EQ(*tts::rate_from("default", 2), 1);
    for (const char* value : {"", "fastest", "0", "-1", "-100%", "1,5", "2 x", "nan", "+", "1e9"})
        EXPECT_FALSE(tts::rate_from(value, 1)) << value;
}

// Positions are reckoned by the speed at which samples are played, not by the one asked for.
TEST(OutputStage, speed_out_of_reach_is_the_nearest) {
    for (const auto& [speed, position] : {std::pair(1000.0, 1000), std::pair(1e-30, 400000)}) {
        tts::OutputStage stage(22050);
        stage.begin_piece();
        stage.set_speed(speed);
        stage.add(std::vector<std::int16_t>(20000, 1000), 1);
        EXPECT_EQ(stage.made(), static_cast<std::uint64_t>(position)) << speed;
    }
}

TEST(Prosody, rate_never_comes_to_nothing) {
    EXPECT_FLOAT_EQ(*tts::rate_from("0." + std::string(60, '0') + "1", 1), 0.01f);
    EXPECT_FLOAT_EQ(*tts::rate_from("-99.99%", 0.01f), 0.01f);
}

TEST(Prosody, pitch_values) {
    EXPECT_FLOAT_EQ(*tts::pitch_from("+100%", 1.5f, 100), 3);
    EXPECT_FLOAT_EQ(*tts::pitch_from("-12st", 1, 100), 0.5f);
    EXPECT_FLOAT_EQ(*tts::pitch_from("150Hz", 3, 100), 1.5f);  // of a voice of 100 Hz
    EXPECT_FLOAT_EQ(*tts::pitch_from("+50Hz", 1, 100), 1.5f);
    EXPECT_FLOAT_EQ(*tts::pitch_from("low", 3, 100), 0.8f);
    EXPECT_FALSE(tts::pitch_from("50", 1, 100));
}

TEST(Prosody, volume_values) {
    EXPECT_FLOAT_EQ(*tts::volume_from("50", 0.1f), 0.5f);
    EXPECT_FLOAT_EQ(*tts::volume_from("+10", 0.5f), 0.6f);
    EXPECT_FLOAT_EQ(*tts::volume_from("+10%", 0.5f), 0.55f);
    EXPECT_NEAR(*tts::volume_from("-6.0dB", 1), 0.5012, 0.0001);  // 10^-0.3
    EXPECT_FLOAT_EQ(*tts::volume_from("silent", 1), 0);
    EXPECT_FLOAT_EQ(*tts::volume_from("-80", 0.5f), 0);
    EXPECT_FALSE(tts::volume_from("louder", 1));
}

TEST(Prosody, break_values) {
    EXPECT_EQ(tts::break_milliseconds("250ms", "strong"), 250u);
    EXPECT_EQ(tts::break_milliseconds("1.5s", ""), 1500u);
    for (const char* time : {"0ms", "0s", "0", "0.0", " 0 "})
        EXPECT_EQ(tts::break_milliseconds(time, "strong"), 0u) << time;
    EXPECT_EQ(tts::break_milliseconds("7", "strong"), 700u);
    EXPECT_EQ(tts::break_milliseconds("", "none"), 0u);
    EXPECT_EQ(tts::break_milliseconds("", ""), 400u);
    EXPECT_EQ(tts::break_milliseconds("nonsense", "strong"), 700u);
    EXPECT_EQ(tts::break_milliseconds("99999999999s", ""), 4294967295u);
}

TEST(Prosody, pitch_as_the_documents_writer_puts_it) {
    EXPECT_EQ(tts::written_pitch(1, 2), "+100%");
    EXPECT_EQ(tts::written_pitch(2, 1), "default");
    EXPECT_EQ(tts::written_pitch(2, 0.5f), "-75%");
}

TEST(Viseme, of_ipa_names) {
    EXPECT_STREQ(tts::viseme_of(""), "sil");
    EXPECT_STREQ(tts::viseme_of("ˈiː"), "i");
    EXPECT_STREQ(tts::viseme_of("tʃ"), "J");
    EXPECT_STREQ(tts::viseme_of("dʒ"), "J");
    EXPECT_STREQ(tts::viseme_of("t"), "t");
    EXPECT_STREQ(tts::viseme_of("ts"), "t");
    EXPECT_STREQ(tts::viseme_of("ŋ"), "k");
    EXPECT_STREQ(tts::viseme_of("ˌɔː"), "O");
    EXPECT_STREQ(tts::viseme_of("θ"), "T");
    EXPECT_STREQ(tts::viseme_of("m̩"), "p");
    EXPECT_EQ(tts::viseme_of("ʔ"), nullptr);
    EXPECT_EQ(tts::viseme_of("˥"), nullptr);
    EXPECT_EQ(tts::viseme_of("\xC3"), nullptr);
}

TEST(VoiceFile, keys_comments_and_blanks) {
    const tts::VoiceSettings settings = tts::parse_voice_file(
        "\xEF\xBB\xBF# a comment\r\n  language =  en-us \r\n\r\nvariant=f2\nrate = 200\npitch = 60\nrange= 70\nvolume "
        "=80\nsentence-pause = 300\ncomma-pause = 0\nparagraph-pause = 900",
        "file");
    EXPECT_EQ(settings.language, "en-us");
    EXPECT_EQ(settings.variant, "f2");
    EXPECT_EQ(settings.rate, 200);
    EXPECT_EQ(settings.pitch, 60);
    EXPECT_EQ(settings.range, 70);
    EXPECT_EQ(settings.volume, 80);
    EXPECT_EQ(settings.sentence_pause, 300);
    EXPECT_EQ(settings.comma_pause, 0);
    EXPECT_EQ(settings.paragraph_pause, 900);
}

TEST(VoiceFile, faults_are_told_with_their_line) {
    EXPECT_EQ(message_of("language = de\nspeed = 5"),
              "file:2: unknown key \"speed\"; known are language, variant, rate, pitch, range, volume, sentence-pause, "
              "paragraph-pause, comma-pause, scripts and script-Xxxx");
    EXPECT_EQ(message_of("language = de\n\nrate = 12x"), "file:3: rate must be a number from 80 to 450, not \"12x\"");
    EXPECT_EQ(message_of("language = de\nrate = 451"), "file:2: rate must be a number from 80 to 450, not \"451\"");
    EXPECT_EQ(message_of("what"), "file:1: expected \"key = value\", not \"what\"");
    EXPECT_EQ(message_of("language = de\nlanguage = fr"), "file:2: \"language\" stands here a second time");
    EXPECT_EQ(message_of("# nothing\n"), "file:1: the file ends without \"language = ...\"");
    EXPECT_EQ(message_of("language = ../../etc"), "file:1: language is missing or no name: \"../../etc\"");
}

TEST(WordPlacer, sound_at_a_blank_belongs_to_the_word_before) {
    const auto sentences = cut("one two three");
    tts::WordPlacer placer;
    placer.start(sentences[0], 13);
    placer.sound(0);
    EXPECT_EQ(placer.begun(), 1u);
    placer.sound(3);
    EXPECT_EQ(placer.begun(), 1u);
    placer.sound(4);
    EXPECT_EQ(placer.begun(), 2u);
    placer.finish();
    EXPECT_EQ(placer.begun(), 3u);
}

TEST(WordPlacer, sound_at_an_opening_quote_belongs_to_the_word_after) {
    const auto sentences = cut("one \"two\"");
    tts::WordPlacer placer;
    placer.start(sentences[0], 9);
    placer.sound(4);
    EXPECT_EQ(placer.begun(), 2u);
}

TEST(WordPlacer, word_without_a_sound_begins_with_the_next_one) {
    const auto sentences = cut("one two three");
    tts::WordPlacer placer;
    placer.start(sentences[0], 13);
    placer.sound(0);
    placer.sound(8);
    EXPECT_EQ(placer.begun(), 3u);
}

TEST(WordPlacer, sound_after_the_part_begins_no_word_of_the_next_part) {
    const auto sentences = cut("one two three");
    tts::WordPlacer placer;
    placer.start(sentences[0], 7);
    placer.sound(12);
    EXPECT_EQ(placer.begun(), 2u);
}

TEST(WordPlacer, sound_of_an_earlier_character_takes_nothing_back) {
    const auto sentences = cut("one two three");
    tts::WordPlacer placer;
    placer.start(sentences[0], 13);
    placer.sound(4);
    placer.sound(0);
    EXPECT_EQ(placer.begun(), 2u);
}
