// Words of other scripts: which language speaks them, where it changes, and that they are heard.
#include "tts_engine/scripts.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "pitch.h"
#include "speech.h"
#include "test_file.h"
#include "tts_engine/characters.h"
#include "tts_engine/document.h"
#include "tts_engine/voice_file.h"

namespace {

// A document's text with the language of each run in front of it: "a [ru]б". The voice's own is not written.
std::string runs_of(const std::string& text, const std::string& voice = "en-us", const std::string& settings = {}) {
    const tts::VoiceSettings parsed = tts::parse_voice_file("language = " + voice + "\n" + settings, "file");
    tts::Document document(text, voice, 100, parsed.scripts);
    std::string result;
    tts::Sentence sentence;
    while (document.next(sentence)) {
        std::string language;
        std::size_t run = 0;
        for (std::uint32_t i = 0; i < sentence.text.size(); ++i) {
            while (run + 1 < sentence.runs.size() && sentence.runs[run + 1].first <= i) ++run;
            const std::string& here = document.language(sentence.runs[run].attributes.language);
            if (here != language) result += "[" + here + "]";
            language = here;
            tts::append_utf8(result, sentence.text[i].code);
        }
        result += "|";
    }
    return result;
}

std::string failure_of(const std::string& voice_file) {
    try {
        tts::parse_voice_file(voice_file, "file");
    } catch (const std::exception& error) {
        return error.what();
    }
    return {};
}

// A voice from a file of its own.
struct FileVoice {
    explicit FileVoice(const std::string& text) : file("voice-22i", text), voice(TTS_TEST_DATA, file.name()) {}
    TestFile file;
    TestVoice voice;
};

std::string spoken_by(const std::string& language, const std::string& text) {
    return "<lang xml:lang=\"" + language + "\">" + text + "</lang>";
}

}  // namespace

TEST(Scripts, each_has_its_language) {
    const std::vector<std::pair<std::string, std::string>> words = {
        {"привет", "ru"}, {"Ελλάδα", "el"}, {"Հայ", "hy"},      {"ქართ", "ka"},     {"שלום", "he"}, {"سلام", "ar"},
        {"ሰላም", "am"},    {"हिन्दी", "hi"},  {"বাংলা", "bn"},    {"ਪੰਜ", "pa"},       {"ગુજ", "gu"},   {"ଓଡ଼ିଆ", "or"},
        {"தமிழ்", "ta"},   {"తెలు", "te"},    {"ಕನ್ನಡ", "kn"},     {"മലയാ", "ml"},     {"සිංහල", "si"}, {"ไทย", "th"},
        {"မြန်မာ", "my"},  {"中文", "cmn"},  {"ひらがな", "ja"}, {"カタカナ", "ja"}, {"한국", "ko"}};
    for (const auto& [word, language] : words)
        EXPECT_EQ(runs_of("One " + word + " two"),
                  "One [" + language + "]" + runs_of(word, language).substr(0, word.size()) + " []two|")
            << word;
}

TEST(Scripts, the_text_of_each_voice_in_its_own_script_keeps_it) {
    const std::filesystem::path folder = std::filesystem::path(TTS_TEST_SOURCES) / "../../tests/tts_engine/languages";
    int texts = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::stringstream text;
        text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        const std::string language = entry.path().stem().string();
        EXPECT_EQ(runs_of(text.str(), language).find('['), std::string::npos)
            << language << ": " << runs_of(text.str(), language);
        ++texts;
    }
    EXPECT_GT(texts, 40);
}

TEST(Scripts, a_voice_that_writes_the_script_keeps_it) {
    EXPECT_EQ(runs_of("Київ і Кривий Ріг", "uk"), "Київ і Кривий Ріг|");
    EXPECT_EQ(runs_of("日本語のテキスト", "ja"), "日本語のテキスト|");
    EXPECT_EQ(runs_of("Београд и Beograd", "sr"), "Београд и Beograd|");
    EXPECT_EQ(runs_of("नमस्ते", "mr"), "नमस्ते|");
    EXPECT_EQ(runs_of("漢字", "ko"), "[cmn]漢字|");
}

TEST(Scripts, latin_words_change_only_for_voices_that_would_spell_them) {
    EXPECT_EQ(runs_of("Это Windows здесь", "ru"), "Это Windows здесь|");
    EXPECT_EQ(runs_of("これは Windows です", "ja"), "これは [en]Windows []です|");
    EXPECT_EQ(runs_of("これは A です", "ja"), "これは A です|");
}

TEST(Scripts, characters_that_are_no_letters_stay_with_the_letter_before) {
    EXPECT_EQ(runs_of("Say привет, 5 кошек, now"), "Say [ru]привет, 5 кошек, []now|");
    EXPECT_EQ(runs_of("5 кошек"), "5 [ru]кошек|");
    EXPECT_EQ(runs_of("Слово. 5 cats"), "[ru]Слово.|5 cats|");
}

TEST(Scripts, what_begins_a_word_belongs_to_it) {
    EXPECT_EQ(runs_of("the word \"привет\" (hello)"), "the word [ru]\"привет\" [](hello)|");
    EXPECT_EQ(runs_of("on 21-го мая"), "on [ru]21-го мая|");
    EXPECT_EQ(runs_of("слово «word»"), "[ru]слово []«word»|");
}

TEST(Scripts, a_word_of_two_scripts_changes_inside) {
    EXPECT_EQ(runs_of("an iPhoneом now"), "an iPhone[ru]ом []now|");
    EXPECT_EQ(runs_of("iPhone(ом) now"), "iPhone[ru](ом) []now|");
}

TEST(Scripts, a_single_greek_letter_keeps_the_voice) {
    EXPECT_EQ(runs_of("The angle α is 5 μm, not π."), "The angle α is 5 μm, not π.|");
    EXPECT_EQ(runs_of("The word και is"), "The word [el]και []is|");
    EXPECT_EQ(runs_of("The letter я is"), "The letter [ru]я []is|");
}

TEST(Scripts, marks_stay_with_their_letter) {
    EXPECT_EQ(runs_of("a हिन्दी b"), "a [hi]हिन्दी []b|");
    EXPECT_EQ(runs_of("привѐт\u0301ом"), "[ru]привѐт\u0301ом|");
}

TEST(Scripts, a_language_of_the_document_wins_where_it_is_written_so) {
    EXPECT_EQ(runs_of(spoken_by("uk", "Київ")), "[uk]Київ|");
    EXPECT_EQ(runs_of(spoken_by("ja", "漢字")), "[ja]漢字|");
    EXPECT_EQ(runs_of(spoken_by("fr", "mot слово mot")), "[fr]mot [ru]слово [fr]mot|");
    EXPECT_EQ(runs_of(spoken_by("en", "word слово"), "uk"), "[en]word [uk]слово|");
    EXPECT_EQ(runs_of("слово " + spoken_by("fr", "5") + " word"), "[ru]слово [fr]5 []word|");
}

TEST(Scripts, voice_file_names_languages_and_turns_them_off) {
    EXPECT_EQ(runs_of("a слово b", "en", "script-Cyrl = bg"), "a [bg]слово []b|");
    EXPECT_EQ(runs_of("a слово 中文 b", "en", "script-Cyrl = own"), "a слово [cmn]中文 []b|");
    EXPECT_EQ(runs_of("a слово 中文 b", "en", "scripts = own"), "a слово 中文 b|");
    EXPECT_EQ(runs_of("a слово 中文 b", "en", "scripts = own\nscript-Hani = yue"), "a слово [yue]中文 []b|");
    EXPECT_EQ(runs_of("слово word", "ru", "script-Latn = de\nscripts = switch"), "слово [de]word|");
    EXPECT_EQ(runs_of("слово", "uk", "script-Cyrl = ru"), "слово|");
}

TEST(Scripts, wrong_lines_of_a_voice_file_are_refused) {
    EXPECT_NE(failure_of("language = en\nscript-Foo = ru").find("file:2: unknown script \"Foo\"; known are Latn, Cyrl"),
              std::string::npos);
    EXPECT_NE(failure_of("language = en\nscript-Cyrl = ").find("file:2: the language of script Cyrl is missing"),
              std::string::npos);
    EXPECT_EQ(failure_of("language = en\nscripts = off"), "file:2: scripts must be \"switch\" or \"own\", not \"off\"");
    EXPECT_NE(failure_of("language = en\nscript-Cyrl = ru\nscript-Cyrl = uk").find("a second time"), std::string::npos);
}

TEST(Scripts, what_is_said_instead_decides_for_all_of_its_characters) {
    EXPECT_EQ(runs_of("a <sub alias=\"слово два\">x y</sub> b"), "a [ru]x y []b|");
    EXPECT_EQ(runs_of("a <sub alias=\"word\">слово два</sub> b"), "a слово два b|");
    EXPECT_EQ(runs_of("a <phoneme ph=\"slovə\">слово</phoneme> b"), "a слово b|");
}

TEST(Scripts, text_that_changes_with_each_letter_is_read_in_linear_time) {
    std::string text;
    for (int i = 0; i < 200000; ++i) text += i % 2 == 0 ? "a" : "б";
    std::string letters;
    for (const char c : runs_of(text))
        if (c != '[' && c != ']' && c != 'r' && c != 'u' && c != '|') letters += c;
    EXPECT_EQ(letters, text);
}

TEST(Scripts, words_sound_as_in_their_language) {
    for (const auto& [voice, other, word] :
         std::vector<std::tuple<std::string, std::string, std::string>>{{"en-us-22i", "ru", "привет"},
                                                                        {"en-us-22i", "cmn", "中"},
                                                                        {"de-22i", "he", "שלום"},
                                                                        {"ja-22i", "en", "Windows"}}) {
        const TestVoice speaker(voice);
        const std::string own = voice == "ja-22i" ? "これは" : "one";
        const Speech heard = speak(speaker, own + " " + word + " " + own);
        EXPECT_EQ(heard.samples, speak(speaker, own + " " + spoken_by(other, word) + " " + own).samples) << word;
        EXPECT_EQ(heard.words(), speak(speaker, own + " " + spoken_by(other, word) + " " + own).words());
    }
}

TEST(Scripts, words_have_their_events_in_time) {
    const Speech speech = speak("The word привет means hello.");
    EXPECT_EQ(speech.words(), (Texts{"The", "word", "привет", "means", "hello"}));
    EXPECT_EQ(speech.sentences(), Texts{"The word привет means hello."});
    // Up to the Russian word, the sound is that of the words before it.
    const std::uint64_t before = speak("The word,").sample_of("word");
    EXPECT_EQ(speech.sample_of("word"), before);
    EXPECT_GT(speech.sample_of("means"), speech.sample_of("привет") + 4000);
}

TEST(Scripts, no_pause_stands_between_them) {
    const Speech speech = speak("The word привет means hello.");
    std::size_t quiet = 0;
    std::size_t longest = 0;
    for (std::size_t i = 0; i < speech.sample_of("hello"); ++i) {
        quiet = std::abs(speech.samples[i]) < 100 ? quiet + 1 : 0;
        longest = std::max(longest, quiet);
    }
    EXPECT_LT(longest, samples_per_second * 0.12);  // a closed consonant
}

TEST(Scripts, the_sentence_goes_on_after_a_quote_too) {
    // What is before the Russian word sounds as before a comma, not as at the sentence's end.
    const Speech quoted = speak("He said \"yes\" привет.");
    const Speech comma = speak("He said \"yes\", привет.");
    const auto end = static_cast<std::ptrdiff_t>(quoted.sample_of("привет"));
    ASSERT_GT(end, 5000);
    EXPECT_TRUE(std::equal(quoted.samples.begin(), quoted.samples.begin() + end - 100, comma.samples.begin()));
}

TEST(Scripts, a_word_of_two_scripts_has_one_event_where_it_begins) {
    const Speech speech = speak("An iPhoneом now.");
    EXPECT_EQ(speech.words(), (Texts{"An", "iPhoneом", "now"}));
    EXPECT_EQ(speech.sample_of("iPhoneом"), speak("An iPhone,").sample_of("iPhone"));
}

TEST(Scripts, the_voice_keeps_its_pitch) {
    // Māori is spoken higher than other languages.
    const FileVoice voice("language = mi\nrange = 0\n");
    const Speech own = speak(voice.voice, "mama mama mama");
    const Speech other = speak(voice.voice, "мама мама мама");
    EXPECT_NEAR(pitch_of(other), pitch_of(own), pitch_of(own) * 0.05);
}

TEST(Scripts, the_voice_keeps_its_variant) {
    const FileVoice woman("language = en-us\nvariant = f2\n");
    const FileVoice russian("language = ru\nvariant = f2\n");
    EXPECT_EQ(speak(woman.voice, "привет").samples, speak(russian.voice, "привет").samples);
}

TEST(Scripts, turned_off_the_voice_spells_them) {
    const FileVoice off("language = en-us\nscripts = own\n");
    const TestVoice on;
    EXPECT_GT(speak(off.voice, "привет").seconds(), 2 * speak(on, "привет").seconds());
}

TEST(Scripts, a_language_that_is_not_there_keeps_the_voice) {
    const FileVoice unknown("language = en-us\nscript-Cyrl = xx\n");
    const FileVoice off("language = en-us\nscripts = own\n");
    EXPECT_EQ(speak(unknown.voice, "one привет").samples, speak(off.voice, "one привет").samples);
}

TEST(Scripts, a_lexicon_of_the_voices_language_has_words_of_other_scripts) {
    const TestFile file("words.pls",
                        "<lexicon version=\"1.0\" "
                        "xmlns=\"http://www.w3.org/2005/01/pronunciation-lexicon\" alphabet=\"ipa\" "
                        "xml:lang=\"en\"><lexeme><grapheme>привет</grapheme><alias>пока</alias></lexeme>"
                        "</lexicon>");
    const TestVoice voice;
    ASSERT_EQ(tts_dict_load(voice, file.name().c_str()), 0);
    EXPECT_EQ(speak(voice, "one привет two").samples, speak(voice, "one пока two").samples);
}
