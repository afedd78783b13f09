// Words, bookmarks and changes of prosody at the time when the word is heard.
#include "word_times.h"

namespace {

// All words but the first are on time, and the truth of at least `least` of them can be measured.
void expect_on_time(const std::string& sentence, std::size_t least, const std::string& language = "en") {
    const TestVoice voice;
    std::size_t measured = 0;
    for (const WordTime& time : times_of_words(voice, sentence, language)) {
        if (!time.measured) continue;
        ++measured;
        EXPECT_TRUE(time.is_on_time()) << ::testing::PrintToString(time) << " in " << sentence;
    }
    EXPECT_GE(measured, least) << sentence;
}

}  // namespace

TEST(WordTimes, after_a_spaced_hyphen) { expect_on_time("London - Paris - Rome", 2); }

TEST(WordTimes, after_two_hyphens) { expect_on_time("wait -- come to London", 3); }

TEST(WordTimes, after_the_dash_of_a_list) { expect_on_time("- milk - bread - eggs", 2); }

TEST(WordTimes, after_an_underscore) { expect_on_time("hello _world_ again", 2); }

TEST(WordTimes, second_character_of_a_chinese_word_at_the_end) {
    expect_on_time("我在中国。", 3, "zh");
    expect_on_time("今天天气很好。", 5, "zh");
}

TEST(WordTimes, phrase_of_the_dictionary) {
    expect_on_time("he lives in the north", 4);
    expect_on_time("he saw the house of the king.", 6);
    expect_on_time("he is in the", 2);
}

TEST(WordTimes, phrases_of_other_languages) {
    expect_on_time("ta silmas et see on hea.", 5, "et");
    expect_on_time("राम के लिए उसे बुलाओ।", 4, "hi");
}

TEST(WordTimes, first_word_of_a_korean_clause) { expect_on_time("아침에, 아이가 이것을 봅니다.", 3, "ko"); }

TEST(WordTimes, characters_of_japanese) { expect_on_time("わたしはがくせいです。", 7, "ja"); }

TEST(WordTimes, vowel_after_a_nasal_begins_after_the_nasal) {
    expect_on_time("він чекав пісень аж до ранку.", 4, "uk");
}

// A million has no sound of its own for the zeros; they share that of the number.
TEST(WordTimes, groups_of_digits_share_their_number) {
    const TestVoice voice;
    const Speech speech = speak_flat(voice, "il y a 1 000 000 francs.", "fr");
    std::vector<double> times;
    for (const HeardEvent& event : speech.events)
        if (event.type == TTS_EVENT_WORD) times.push_back(milliseconds(event.sample));
    ASSERT_EQ(speech.words(), (Texts{"il", "y", "a", "1", "000", "000", "francs"}));
    for (std::size_t i = 4; i < times.size(); ++i) EXPECT_GT(times[i], times[i - 1] + on_time);
}

TEST(WordTimes, each_of_a_phrase_has_one_event) {
    const TestVoice voice;
    EXPECT_EQ(speak_flat(voice, "ta silmas et see on hea.", "et").words(),
              (Texts{"ta", "silmas", "et", "see", "on", "hea"}));
    EXPECT_EQ(speak_flat(voice, "राम के लिए उसे बुलाओ।", "hi").words(), (Texts{"राम", "के", "लिए", "उसे", "बुलाओ"}));
}

TEST(WordTimes, signs_between_words_part_them_as_blanks_do) {
    const TestVoice voice;
    const Speech signs = speak_flat(voice, "ሰላም፡ለዓለም፡ሁሉ።", "am");
    const Speech blanks = speak_flat(voice, "ሰላም ለዓለም ሁሉ።", "am");
    EXPECT_EQ(signs.words(), (Texts{"ሰላም", "ለዓለም", "ሁሉ"}));
    EXPECT_EQ(signs.samples, blanks.samples);
}

// ---- What comes with a word

TEST(WordTimes, bookmark_before_a_word_has_its_sample) {
    const TestVoice voice;
    const Speech speech = speak_flat(voice, "London - <mark name=\"one\"/>Paris -- in <mark name=\"two\"/>the", "en");
    EXPECT_EQ(speech.sample_of("one"), speech.sample_of("Paris"));
    EXPECT_EQ(speech.sample_of("two"), speech.sample_of("the"));
    EXPECT_LT(speech.sample_of("two"), speech.samples.size() - 1000);
}

// What is louder or silent is so from the word on: both sounds are the same before it.
TEST(WordTimes, volume_changes_with_the_word) {
    const TestVoice voice;
    for (const std::string before : {"London - ", "wait -- ", "it is in "}) {
        const auto times = times_of_words(voice, before + "the Rhone");
        const WordTime& the = times[times.size() - 2];
        ASSERT_TRUE(the.measured) << before;
        const Speech plain = speak_flat(voice, before + "the Rhone", "en");
        const Speech soft = speak_flat(voice, before + "<prosody volume=\"silent\">the Rhone</prosody>", "en");
        std::size_t differs = 0;
        while (differs < soft.samples.size() && plain.samples[differs] == soft.samples[differs]) ++differs;
        EXPECT_GE(milliseconds(differs), the.first - on_time) << before;
        EXPECT_LE(milliseconds(differs), the.last + on_time) << before;
    }
}
