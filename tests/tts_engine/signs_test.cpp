// Signs that are said by their names.
#include "tts_engine/signs.h"

#include <filesystem>
#include <fstream>
#include <map>

#include "speech.h"
#include "tts_engine/characters.h"

namespace {

namespace fs = std::filesystem;

// ---- Every sign in every language

// The voice files, one for each language.
Texts voices() {
    std::map<std::string, std::string> by_language;
    for (const auto& entry : fs::directory_iterator(TTS_TEST_VOICES)) {
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);)
            if (line.starts_with("language =")) by_language.emplace(line, entry.path().filename().string());
    }
    Texts result;
    for (const auto& [language, voice] : by_language) result.push_back(voice);
    return result;
}

Texts characters_of(std::string_view text) {
    Texts result;
    while (!text.empty()) {
        const std::size_t length = tts::decode_utf8(text).length;
        result.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return result;
}

// U+0021 to U+007E without letters and digits, and signs of other scripts.
Texts signs() {
    return characters_of(
        "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"
        "¡¢£¤¥¦§¨©«¬®¯°±´¶·¸»¿×÷…‐‑–—―‘’‚“”„†‡•‰′″‹›‼⁇⁈⁉€₹₽№™←→√∞≠≤≥☃♥"
        "😀"
        "🎉"
        "（）！？，．：；、。「」『』【】《》〈〉・؟،؛۔٪।॥፡።፣፤፥፦՝՞՜։֊၊။។៖־׃༺་།᠂᠃๏");
}

std::string written(const std::string& character) {
    if (character == "&") return "&amp;";
    return character == "<" ? "&lt;" : character;
}

std::string spelled(const std::string& text) {
    return "<speak><say-as interpret-as=\"characters\">" + text + "</say-as></speak>";
}

std::string plain(const std::string& text) { return "<speak>" + text + "</speak>"; }

bool is_heard(const Speech& speech) {
    return std::any_of(speech.samples.begin(), speech.samples.end(), [](int sample) { return std::abs(sample) > 300; });
}

// Every fourth pair of a language and a character, so that each language and each character is there.
template <typename Check>
void for_each_pair(const Texts& characters, Check check) {
    const Texts all = voices();
    ASSERT_GT(all.size(), 90u);
    for (std::size_t v = 0; v < all.size(); ++v) {
        const TestVoice voice(all[v]);
        for (std::size_t c = v % 4; c < characters.size(); c += 4) {
            SCOPED_TRACE(all[v] + " " + characters[c]);
            check(voice, written(characters[c]));
        }
    }
}

void expect_one_word(tts_voice voice, const std::string& document, const std::string& character) {
    const Speech speech = speak(voice, document, 22050);
    EXPECT_EQ(speech.words(), Texts{character});
    EXPECT_TRUE(is_heard(speech));
}

Texts words_of(const std::string& document) { return speak(document).words(); }

Texts visemes_of(const std::string& document, const std::string& voice = "en-us-22i") {
    return speak(TestVoice(voice), document).visemes();
}

// ---- Names that a test makes up

std::u32string wide(std::string_view text) {
    std::u32string result;
    for (const std::string& one : characters_of(text)) result.push_back(tts::decode_utf8(one).code);
    return result;
}

std::string said(const std::string& sign) {
    static const std::map<std::string, std::string> names = {
        {",", "comma"}, {" ", "blank"}, {"??", "symbol "}, {"👍", "thumb"}, {"🏽", "tone"},        {"🇩🇪", "germany"},
        {"❤", "heart"}, {"2", "two"},   {"6", "six"},      {"0", "zero"},  {"a", "_^_en ay _^_de"}, {"3", "three"}};
    return tts::say_sign(wide(sign), [](const std::string& text) {
        const auto found = names.find(text);
        return found == names.end() ? std::string() : found->second;
    });
}

std::vector<std::pair<unsigned, unsigned>> named(const std::string& text, tts::SayAs say_as) {
    std::vector<tts::Character> characters;
    std::uint32_t at = 0;
    for (const char32_t code : wide(text)) {
        characters.push_back({code, at, at + 1});
        ++at;
    }
    tts::Attributes attributes;
    attributes.say_as = say_as;
    std::vector<std::pair<unsigned, unsigned>> result;
    for (const tts::Token& sign : tts::named_signs(characters, {{0, attributes}}))
        result.emplace_back(sign.first, sign.last);
    return result;
}

using Ranges = std::vector<std::pair<unsigned, unsigned>>;

}  // namespace

TEST(NamedSigns, are_those_of_spelled_text_with_its_blanks) {
    EXPECT_EQ(named("a, b", tts::SayAs::characters), (Ranges{{1, 2}, {2, 3}}));
    EXPECT_EQ(named("a, b", tts::SayAs::signs), (Ranges{{1, 2}}));
    EXPECT_EQ(named("a, b", tts::SayAs::text), Ranges{});
    EXPECT_EQ(named("1, 2", tts::SayAs::digits), Ranges{});
}

TEST(NamedSigns, take_in_what_combines_with_them) {
    EXPECT_EQ(named("❤️!", tts::SayAs::signs), (Ranges{{0, 2}, {2, 3}}));
    EXPECT_EQ(named("👍🏽👍", tts::SayAs::signs), (Ranges{{0, 2}, {2, 3}}));
    EXPECT_EQ(named("🇩🇪🇫🇷", tts::SayAs::signs), (Ranges{{0, 2}, {2, 4}}));
    EXPECT_EQ(named("👩\u200D❤\u200D👨", tts::SayAs::signs), (Ranges{{0, 5}}));
}

TEST(NamedSigns, blanks_around_a_line_end_are_layout) {
    EXPECT_EQ(named("a  \n b ", tts::SayAs::characters), (Ranges{{6, 7}}));
    EXPECT_EQ(named("a\t b", tts::SayAs::characters), Ranges{});
}

TEST(SaySign, by_its_own_name) { EXPECT_EQ(said(","), "comma"); }

TEST(SaySign, whole_sequence_before_its_parts) {
    EXPECT_EQ(said("🇩🇪"), "germany");
    EXPECT_EQ(said("👍🏽"), "thumb tone");
    EXPECT_EQ(said("❤️"), "heart");
}

TEST(SaySign, of_another_script_by_the_latin_one_that_means_the_same) {
    EXPECT_EQ(said("，"), "comma");
    EXPECT_EQ(said("、"), "comma");
    EXPECT_EQ(said("፡"), "blank");
}

TEST(SaySign, every_blank_has_one_name) { EXPECT_EQ(said("\xC2\xA0"), "blank"); }

TEST(SaySign, without_any_name_by_its_code_point) {
    EXPECT_EQ(said("☃"), "symbol two six zero three");
    EXPECT_EQ(said("⚊"), "symbol two six _^_en ay _^_de");  // "8" of U+268A has no name here
}

TEST(Spelling, sign_is_heard_and_is_one_word_in_every_language) {
    for_each_pair(signs(),
                  [](tts_voice voice, const std::string& sign) { expect_one_word(voice, spelled(sign), sign); });
}

TEST(Spelling, blank_is_heard_and_is_one_word_in_every_language) {
    for (const std::string& name : voices()) {
        SCOPED_TRACE(name);
        expect_one_word(TestVoice(name), spelled(" "), " ");
    }
}

TEST(Spelling, letter_or_digit_is_heard_and_is_one_word_in_every_language) {
    for_each_pair(characters_of("abcdefghijklmnopqrstuvwxyz0123456789"),
                  [](tts_voice voice, const std::string& letter) { expect_one_word(voice, spelled(letter), letter); });
}

TEST(Spelling, each_sign_and_each_blank_is_a_word_of_its_own) {
    EXPECT_EQ(words_of(spelled("a, b")), (Texts{"a", ",", " ", "b"}));
    EXPECT_EQ(words_of(spelled("well-known.")), (Texts{"well", "-", "known", "."}));
    EXPECT_EQ(words_of(spelled("A&amp;B")), (Texts{"A", "&amp;", "B"}));
    EXPECT_EQ(words_of(spelled("x  y ")), (Texts{"x", " ", " ", "y", " "}));
    EXPECT_EQ(words_of(spelled("Hi! You?")), (Texts{"Hi", "!", " ", "You", "?"}));
    EXPECT_EQ(words_of(spelled("C:\\a_b")), (Texts{"C", ":", "\\", "a", "_", "b"}));
}

TEST(Spelling, layout_of_the_document_is_not_said) {
    EXPECT_EQ(words_of(spelled("\n    a b\n  ")), (Texts{"a", " ", "b"}));
    EXPECT_EQ(words_of(spelled("a  \n  b")), (Texts{"a", "b"}));
}

TEST(Spelling, ends_with_its_element) {
    EXPECT_EQ(words_of("<speak>See <say-as interpret-as=\"characters\">a.</say-as> or b, c.</speak>"),
              (Texts{"See", "a", ".", "or", "b", "c"}));
}

TEST(Spelling, sign_sounds_like_its_name) {
    const std::pair<std::string, std::string> names[] = {{",", "comma"}, {":", "colon"},    {"#", "hash"},
                                                         {"+", "plus"},  {"*", "asterisk"}, {" ", "space"},
                                                         {"，", "comma"}};
    for (const auto& [sign, name] : names) EXPECT_EQ(visemes_of(spelled(sign)), visemes_of(plain(name))) << sign;
    EXPECT_EQ(visemes_of(spelled(","), "de-22i"), visemes_of(plain("Komma"), "de-22i"));
    EXPECT_EQ(visemes_of(spelled("☃"), "de-22i"), visemes_of(plain("Schneemann im Schnee"), "de-22i"));
}

TEST(Spelling, sign_without_a_name_in_the_language_has_the_english_one) {
    EXPECT_EQ(visemes_of(spelled(","), "hi-22i"), visemes_of(plain("comma"), "en-gb-22i"));
}

TEST(Spelling, sign_without_any_name_is_its_code_point) {
    EXPECT_EQ(visemes_of(spelled("₽")), visemes_of(plain("symbol two zero b d")));
}

TEST(Spelling, long_name_harms_nothing) {
    // It is longer than what espeak-ng has room for.
    expect_one_word(TestVoice("ru-22i"), spelled("®"), "®");
    EXPECT_EQ(speak(TestVoice("ru-22i"), spelled("а®б")).words(), (Texts{"а", "®", "б"}));
}

TEST(Spelling, letter_with_a_phoneme_that_the_voice_lacks_harms_nothing) {
    expect_one_word(TestVoice("kl-22i"), spelled("å"), "å");
}

TEST(Spelling, of_many_signs_has_each_in_order) {
    std::string text;
    Texts expected;
    for (int i = 0; i < 200; ++i) {
        expected.insert(expected.end(), {"x", ";", "[", "["});
        text += "x;[[";
    }
    EXPECT_EQ(words_of(spelled(text)), expected);
}

TEST(Spelling, private_codes_of_the_synthesiser_stay_silent) {
    EXPECT_FALSE(is_heard(speak(spelled("&#xE02C;"))));
    EXPECT_FALSE(is_heard(speak(spelled("&#1;"))));
}

TEST(DocumentOfSigns, each_is_heard_and_is_one_word_in_every_language) {
    for_each_pair(signs(), [](tts_voice voice, const std::string& sign) { expect_one_word(voice, plain(sign), sign); });
}

TEST(DocumentOfSigns, letter_is_heard_and_is_one_word_in_every_language) {
    for_each_pair(characters_of("abcdefghijklmnopqrstuvwxyz"),
                  [](tts_voice voice, const std::string& letter) { expect_one_word(voice, plain(letter), letter); });
}

TEST(SingleLetter, without_a_sound_of_its_own_is_said_by_its_name) {
    const std::pair<std::string, std::string> letters[] = {{"kk-22i", "ь"}, {"kk-22i", "Ъ"}, {"haw-22i", "B"},
                                                           {"lb-22i", "é"}, {"th-22i", "อ"}, {"ja-22i", "っ"},
                                                           {"gu-22i", "ઽ"}, {"ky-22i", "ц"}, {"fa-22i", "ـ"}};
    for (const auto& [name, letter] : letters) {
        SCOPED_TRACE(name + " " + letter);
        const TestVoice voice(name);
        expect_one_word(voice, plain(letter), letter);
        expect_one_word(voice, spelled(letter), letter);
    }
}

TEST(SingleLetter, silenced_by_the_document_stays_silent) {
    EXPECT_FALSE(is_heard(speak("<speak><sub alias=\",\">a</sub></speak>")));
    EXPECT_FALSE(is_heard(speak("<speak><prosody volume=\"silent\">a</prosody></speak>")));
}

TEST(DocumentOfSigns, each_sign_is_a_word_and_blanks_are_not) {
    EXPECT_EQ(words_of(plain("... (?)\n")), (Texts{".", ".", ".", "(", "?", ")"}));
    EXPECT_EQ(words_of(plain("<p>—</p><p>!</p>")), (Texts{"—", "!"}));
}

TEST(DocumentOfSigns, word_anywhere_makes_signs_punctuation_again) {
    EXPECT_EQ(words_of(plain("!!! ... <p>---</p> Well")), Texts{"Well"});
    EXPECT_EQ(words_of(plain("<p>...</p><sub alias=\"yes\">!</sub>")), Texts{"!"});
}

TEST(DocumentOfSigns, long_one_has_each_in_order) {
    EXPECT_EQ(words_of(plain(std::string(2000, '-'))), Texts(2000, "-"));
}

TEST(DocumentOfSigns, is_heard_from_a_jump_on) {
    const TestVoice voice;
    const std::string document = plain("<p>!</p><p>?</p>");
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    ASSERT_NE(streamer, nullptr);
    EXPECT_EQ(tts_streamer_jump(streamer, 1), 0);
    Speech speech;
    hear_rest(speech, streamer, document);
    tts_streamer_stop(streamer);
    EXPECT_EQ(speech.words(), Texts{"?"});
}
