// Texts of many languages and scripts: every word has its event, cut out exactly and at its time, and all systems
// agree.
//
// languages/<tag>.txt are texts of this project's own. What their words are is told here without the synthesiser's
// code: what stands between blanks, without the punctuation at both ends.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <numeric>

#include "speech.h"
#include "test_file.h"
#include "word_times.h"

namespace {

namespace fs = std::filesystem;

const std::string unspaced[] = {"zh", "ja"};  // each character counts as a word
const std::string phrases_between_blanks[] = {"th", "my"};

std::string contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> languages() {
    std::vector<std::string> result;
    for (const auto& entry : fs::directory_iterator(fs::path(NELVA_TEST_DATA) / "languages"))
        result.push_back(entry.path().stem().string());
    std::sort(result.begin(), result.end());
    return result;
}

std::string text_of(const std::string& language) {
    return contents(fs::path(NELVA_TEST_DATA) / "languages" / (language + ".txt"));
}

const Texts punctuation = {".", ",", ";", ":", "!",  "?",  "\"", "'",  "(",  ")",  "-",  "—", "„",
                           "“", "”", "«", "»", "¿",  "¡",  "·",  "؛",  "،",  "؟",  "۔",  "।", "።",
                           "፤", "፣", "։", "՝", "。", "，", "、", "？", "！", "「", "」", "၊", "။"};

// Takes one punctuation mark off an end; false if there is none.
bool strip(std::string& word) {
    for (const std::string& mark : punctuation) {
        if (word.ends_with(mark)) {
            word.resize(word.size() - mark.size());
            return true;
        }
        if (!word.starts_with(mark)) continue;
        word.erase(0, mark.size());
        return true;
    }
    return false;
}

Texts words_between_blanks(const std::string& text) {
    Texts words;
    std::string word;
    for (const char c : text + " ") {
        if (c != ' ' && c != '\n') {
            word += c;
            continue;
        }
        while (!word.empty() && strip(word)) {
        }
        if (!word.empty()) words.push_back(word);
        word.clear();
    }
    return words;
}

// The text without blanks and punctuation.
std::string letters_of(std::string text) {
    for (const std::string& mark : punctuation)
        for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos;) text.erase(at, mark.size());
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    return text;
}

std::size_t character_count(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

template <std::size_t size>
bool is_one_of(const std::string (&list)[size], const std::string& language) {
    return std::count(std::begin(list), std::end(list), language) > 0;
}

// A page to listen to: 200 words, or 400 characters where words are not written apart.
bool is_long(const std::string& language) {
    if (is_one_of(unspaced, language) || is_one_of(phrases_between_blanks, language))
        return character_count(letters_of(text_of(language))) >= 400;
    return words_between_blanks(text_of(language)).size() >= 200;
}

std::string document_in(const std::string& language) {
    return "<speak version=\"1.0\" xml:lang=\"" + language + "\"><mark name=\"P0\"/>" + text_of(language) + "</speak>";
}

// Spoken once for all tests.
const Speech& speech_in(const std::string& language) {
    static std::map<std::string, Speech> known;
    const auto found = known.find(language);
    if (found != known.end()) return found->second;
    const TestVoice voice;
    return known[language] = speak(voice, document_in(language));
}

// The first words of a text: 14, or those up to the first full stop where words are not written apart.
std::string start_of(const std::string& language) {
    const std::string text = text_of(language);
    if (is_one_of(unspaced, language)) return text.substr(0, text.find("。"));
    const std::size_t words = is_one_of(phrases_between_blanks, language) ? 5 : 14;
    std::size_t end = 0;
    for (std::size_t i = 0; i < words; ++i) end = text.find_first_of(" \n", end + 1);
    return text.substr(0, end);
}

// FNV-1a.
std::uint64_t digest(std::uint64_t before, const std::string& text) {
    for (const char c : text) before = (before ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    return before;
}

constexpr std::uint64_t empty_digest = 0xCBF29CE484222325u;

std::string digest_line(const std::string& language, const Speech& speech) {
    std::uint64_t all = empty_digest;
    for (const HeardEvent& event : speech.events)
        all = digest(all, std::to_string(event.type) + event.label + event.text + std::to_string(event.sample));
    char line[100];
    std::snprintf(line, sizeof line, "%s %zu samples %zu events %016llx\n", language.c_str(), speech.samples.size(),
                  speech.events.size(), static_cast<unsigned long long>(all));
    return line;
}

// What the result depends on: the synthesiser's sources and the texts.
std::string version_of_sources() {
    std::vector<fs::path> files;
    for (const fs::path& folder : {fs::path(TTS_TEST_SOURCES), fs::path(NELVA_TEST_DATA) / "languages"})
        for (const auto& entry : fs::recursive_directory_iterator(folder))
            if (entry.is_regular_file()) files.push_back(entry.path());
    std::vector<std::uint64_t> digests;
    for (const fs::path& file : files)
        digests.push_back(digest(digest(empty_digest, file.filename().string()), contents(file)));
    const std::uint64_t all = std::accumulate(digests.begin(), digests.end(), std::uint64_t{0});
    char name[30];
    std::snprintf(name, sizeof name, "%016llx", static_cast<unsigned long long>(all));
    return name;
}

}  // namespace

TEST(Languages, are_at_least_fifty) { EXPECT_GE(languages().size(), 50u); }

TEST(Languages, have_long_texts) {
    for (const std::string& language : languages()) EXPECT_TRUE(is_long(language)) << language;
}

TEST(Languages, each_word_has_its_event_in_order) {
    for (const std::string& language : languages()) {
        if (is_one_of(unspaced, language)) continue;
        const Texts expected = words_between_blanks(text_of(language));
        EXPECT_EQ(speech_in(language).words(), expected) << language;
    }
}

TEST(Languages, without_blanks_are_covered_and_no_character_is_cut) {
    for (const std::string& language : unspaced) {
        const Texts words = speech_in(language).words();
        EXPECT_GT(words.size(), 100u);
        std::string all;
        for (const std::string& word : words) {
            EXPECT_NE(static_cast<unsigned char>(word[0]) & 0xC0, 0x80) << language;
            all += word;
        }
        EXPECT_EQ(all, letters_of(text_of(language))) << language;
    }
}

// A word without a sound begins with the next one. In these texts there are none but the Chinese characters that the
// Japanese voice does not know.
TEST(Languages, no_two_words_begin_together) {
    for (const std::string& language : languages()) {
        std::uint64_t before = ~std::uint64_t{0};
        std::size_t together = 0;
        for (const HeardEvent& event : speech_in(language).events) {
            if (event.type != TTS_EVENT_WORD) continue;
            together += event.sample == before ? 1 : 0;
            before = event.sample;
        }
        EXPECT_LE(together, language == "ja" ? 6u : 0u) << language;
    }
}

TEST(Languages, last_word_is_heard_after_its_event) {
    for (const std::string& language : languages()) {
        const Speech& speech = speech_in(language);
        std::uint64_t last = 0;
        for (const HeardEvent& event : speech.events)
            if (event.type == TTS_EVENT_WORD) last = event.sample;
        const std::size_t first = static_cast<std::size_t>(last);
        ASSERT_LT(first + whole_rate / 20, speech.samples.size()) << language;
        EXPECT_GT(speech.loudness(first, first + whole_rate / 20), 100) << language;
    }
}

// Chinese characters all have the same sound in the Japanese voice: they cannot be told from each other.
bool is_told_by_its_sound(const std::string& word, const std::string& language) {
    return language != "ja" || word < "一" || word > "龯";
}

// The time of a few words of each language. A voiced stop or a nasal is shorter at the start of a sentence, so the
// comparison is off by its length in a few of a hundred words; in no word it may be more.
TEST(Languages, words_are_on_time) {
    const TestVoice voice;
    std::size_t words = 0;
    std::size_t measured = 0;
    std::vector<WordTime> off;
    for (const std::string& language : languages()) {
        for (const WordTime& time : times_of_words(voice, start_of(language), language, 10)) {
            if (!is_told_by_its_sound(time.word, language)) continue;
            ++words;
            measured += time.measured ? 1 : 0;
            if (!time.measured || time.is_on_time()) continue;
            off.push_back(time);
            EXPECT_LE(std::max(time.early(), time.late()), 140) << language << ": " << ::testing::PrintToString(time);
        }
    }
    RecordProperty("words", static_cast<int>(words));
    RecordProperty("measured", static_cast<int>(measured));
    EXPECT_GT(words, 250u);
    EXPECT_GT(measured * 10, words * 9);
    EXPECT_LT(off.size() * 25, measured) << ::testing::PrintToString(off);
}

// Words of the Burmese dictionary that have the mark of a replacement and no replacement took the rest of the line, which
// overran the stack.
TEST(Languages, a_long_line_of_burmese_words_has_all_its_events) {
    const TestVoice voice("my-22i");
    std::string line;
    for (int i = 0; i < 5; ++i) line += "လူတိုင်းသည် တူညီ လွတ်လပ်သော ဂုဏ်သိက္ခာဖြင့် လည်းကောင်း ";
    const Speech speech = speak(voice, document_of("<lang xml:lang=\"my\">" + line + "</lang>"));
    EXPECT_EQ(speech.words().size(), 25u);
    EXPECT_GT(speech.loudness(), 100);
}

TEST(Languages, visemes_begin_and_end_with_silence) {
    for (const std::string& language : languages()) {
        const Texts visemes = speech_in(language).visemes();
        ASSERT_GT(visemes.size(), 30u) << language;
        EXPECT_EQ(visemes.front(), "sil") << language;
        EXPECT_EQ(visemes.back(), "sil") << language;
    }
}

// Each system leaves what it heard beside the builds; whoever comes second compares.
TEST(Languages, sound_the_same_on_every_system) {
#if defined(_WIN32)
    const char* const own = "windows";
    const char* const other = "native";
#else
    const char* const own = "native";
    const char* const other = "windows";
#endif
    std::string heard;
    for (const std::string& language : languages()) heard += digest_line(language, speech_in(language));
    for (const std::string variant : {"whisper", "klatt", "klatt4", "caleb"}) {
        const TestFile file("22i", "language = en-us\nvariant = " + variant + "\n");
        heard += digest_line(variant, speak(TestVoice(TTS_TEST_DATA, file.name()), document_in("en")));
    }
    const fs::path folder(TTS_TEST_DIGESTS);
    const std::string version = version_of_sources();
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    std::ofstream(folder / (version + "-" + own), std::ios::binary) << heard;
    const std::string theirs = contents(folder / (version + "-" + other));
    if (theirs.empty()) GTEST_SKIP() << "the other system has not spoken yet";
    EXPECT_EQ(heard, theirs);
}
