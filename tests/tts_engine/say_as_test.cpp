// What is said for the text of say-as elements.
#include "tts_engine/say_as.h"

#include "speech.h"
#include "tts_engine/english_numbers.h"

namespace {

std::string said(const std::string& kind, const std::string& format, const std::string& text,
                 const std::string& language = "en") {
    return tts::say_as_text(kind, format, text, language).value_or("(as written)");
}

std::string element(const std::string& kind, const std::string& format, const std::string& text) {
    return document_of("<say-as interpret-as=\"" + kind + "\"" + (format.empty() ? "" : " format=\"" + format + "\"") +
                       ">" + text + "</say-as>");
}

}  // namespace

TEST(EnglishNumbers, cardinals) {
    EXPECT_EQ(tts::cardinal_words(0), "zero");
    EXPECT_EQ(tts::cardinal_words(21), "twenty one");
    EXPECT_EQ(tts::cardinal_words(100), "one hundred");
    EXPECT_EQ(tts::cardinal_words(1234), "one thousand two hundred thirty four");
    EXPECT_EQ(tts::cardinal_words(1000000), "one million");
    EXPECT_EQ(tts::cardinal_words(12000000000005), "twelve trillion five");
}

TEST(EnglishNumbers, ordinals) {
    EXPECT_EQ(tts::ordinal_words(1), "first");
    EXPECT_EQ(tts::ordinal_words(12), "twelfth");
    EXPECT_EQ(tts::ordinal_words(20), "twentieth");
    EXPECT_EQ(tts::ordinal_words(23), "twenty third");
    EXPECT_EQ(tts::ordinal_words(100), "one hundredth");
}

TEST(EnglishNumbers, years) {
    EXPECT_EQ(tts::year_words(1999), "nineteen ninety nine");
    EXPECT_EQ(tts::year_words(2021), "twenty twenty one");
    EXPECT_EQ(tts::year_words(1905), "nineteen oh five");
    EXPECT_EQ(tts::year_words(2005), "two thousand five");
    EXPECT_EQ(tts::year_words(1800), "eighteen hundred");
    EXPECT_EQ(tts::year_words(2000), "two thousand");
}

TEST(SayAsText, date_in_each_format) {
    EXPECT_EQ(said("date", "mdy", "3/4/2021"), "March fourth twenty twenty one");
    EXPECT_EQ(said("date", "dmy", "3.4.2021"), "the third of April twenty twenty one");
    EXPECT_EQ(said("date", "ymd", "2021-03-04"), "March fourth twenty twenty one");
    EXPECT_EQ(said("date", "ymd", "20210304"), "March fourth twenty twenty one");
    EXPECT_EQ(said("date", "md", "3/4"), "March fourth");
    EXPECT_EQ(said("date", "dm", "3/4"), "the third of April");
    EXPECT_EQ(said("date", "my", "3/1999"), "March nineteen ninety nine");
    EXPECT_EQ(said("date", "ym", "1999-3"), "March nineteen ninety nine");
    EXPECT_EQ(said("date", "y", "1999"), "nineteen ninety nine");
    EXPECT_EQ(said("date", "m", "3"), "March");
    EXPECT_EQ(said("date", "d", "3"), "third");
    EXPECT_EQ(said("date", "MDY", "3/4/99"), "March fourth nineteen ninety nine");
    EXPECT_EQ(said("date", "mdy", "3/4/21"), "March fourth twenty twenty one");
}

TEST(SayAsText, date_with_a_month_by_its_name) {
    EXPECT_EQ(said("date", "mdy", "March 4th, 2021"), "March fourth twenty twenty one");
    EXPECT_EQ(said("date", "dmy", "4 Sept. 2021"), "the fourth of September twenty twenty one");
}

TEST(SayAsText, date_without_a_format) {
    EXPECT_EQ(said("date", "", "2021-03-04"), "March fourth twenty twenty one");
    EXPECT_EQ(said("date", "", "3/4/2021", "en-US"), "March fourth twenty twenty one");
    EXPECT_EQ(said("date", "", "3/4/2021", "en-GB"), "the third of April twenty twenty one");
    EXPECT_EQ(said("date", "nonsense", "4 March"), "the fourth of March");
}

TEST(SayAsText, date_that_is_none_stays) {
    for (const char* text : {"13/4/2021", "3/32/2021", "3/4", "soon", "3/4/2021/5", "99999999999999999999/1/1"})
        EXPECT_EQ(said("date", "mdy", text), "(as written)") << text;
}

TEST(SayAsText, date_in_another_language_is_its_numbers_in_order) {
    EXPECT_EQ(said("date", "dmy", "03.04.2021", "de"), "3 4 2021");
    EXPECT_EQ(said("date", "dmy", "3. Mai 2021", "de"), "(as written)");
}

TEST(SayAsText, time_of_day) {
    EXPECT_EQ(said("time", "", "2:30"), "two thirty");
    EXPECT_EQ(said("time", "", "14:05"), "fourteen oh five");
    EXPECT_EQ(said("time", "", "5:00"), "five o'clock");
    EXPECT_EQ(said("time", "", "17:00"), "seventeen hundred");
    EXPECT_EQ(said("time", "", "7pm"), "seven P M");
    EXPECT_EQ(said("time", "", "7:15 a.m."), "seven fifteen A M");
    EXPECT_EQ(said("time", "", "1:02:03"), "one oh two and three seconds");
    EXPECT_EQ(said("time", "", "1430"), "fourteen thirty");
    EXPECT_EQ(said("time", "", "14h30", "fr"), "14 30");
    EXPECT_EQ(said("time", "", "25:00"), "(as written)");
    EXPECT_EQ(said("time", "", "12:60"), "(as written)");
    // A date's format carries over to what follows and means nothing there.
    EXPECT_EQ(said("time", "mdy", "2:30"), "two thirty");
}

TEST(SayAsText, cardinal) {
    EXPECT_EQ(said("cardinal", "", "1,234"), "one thousand two hundred thirty four");
    EXPECT_EQ(said("cardinal", "", "-5"), "minus five");
    EXPECT_EQ(said("cardinal", "", "XIV"), "fourteen");
    EXPECT_EQ(said("cardinal", "", "IIX"), "(as written)");
    EXPECT_EQ(said("cardinal", "", "1,234", "de"), "1234");
    EXPECT_EQ(said("cardinal", "", "1234567890123456"), "(as written)");
    EXPECT_EQ(said("number", "cardinal", "12"), "twelve");
}

TEST(SayAsText, ordinal) {
    EXPECT_EQ(said("ordinal", "", "21"), "twenty first");
    EXPECT_EQ(said("ordinal", "", "3rd"), "third");
    EXPECT_EQ(said("ordinal", "", "IV"), "fourth");
    EXPECT_EQ(said("ordinal", "", "3", "fr"), "3e");
    EXPECT_EQ(said("ordinal", "", "3", "es"), "3º");
    EXPECT_EQ(said("ordinal", "", "many"), "(as written)");
}

TEST(SayAsText, fraction) {
    EXPECT_EQ(said("fraction", "", "1/2"), "one half");
    EXPECT_EQ(said("fraction", "", "3/4"), "three quarters");
    EXPECT_EQ(said("fraction", "", "2/3"), "two thirds");
    EXPECT_EQ(said("fraction", "", "2 3/4"), "two and three quarters");
    EXPECT_EQ(said("fraction", "", "2½"), "two and one half");
    EXPECT_EQ(said("fraction", "", "5/0"), "(as written)");
    EXPECT_EQ(said("fraction", "", "34"), "(as written)");
}

TEST(SayAsText, number) {
    EXPECT_EQ(said("number", "", "3.14"), "three point one four");
    EXPECT_EQ(said("number", "", "-0.05"), "minus zero point zero five");
    EXPECT_EQ(said("number", "", "1,000"), "one thousand");
    EXPECT_EQ(said("number", "", "50%"), "fifty percent");
    EXPECT_EQ(said("number", "", "3,14", "de"), "(as written)");
    EXPECT_EQ(said("number", "", "1.2.3"), "(as written)");
}

TEST(SayAsText, telephone) {
    EXPECT_EQ(said("telephone", "", "(555) 010-9"), "five five five, zero one zero, nine");
    EXPECT_EQ(said("telephone", "", "+49 30"), "plus four nine, three zero");
    EXPECT_EQ(said("telephone", "", "555x12"), "five five five, extension, one two");
    EXPECT_EQ(said("telephone", "", "030 12", "de"), "0 3 0, 1 2");
}

TEST(SayAsText, address) {
    EXPECT_EQ(said("address", "", "123 Main St., Springfield, IL 62704"),
              "one twenty three Main Street, Springfield, I L six two seven zero four");
    EXPECT_EQ(said("address", "", "St. Paul Ave. 5"), "Saint Paul Avenue five");
    EXPECT_EQ(said("address", "", "Hauptstr. 5", "de"), "(as written)");
}

TEST(SayAsText, other_kinds_stay) {
    for (const char* kind : {"", "name", "Date", "currency", "spell-out"})
        EXPECT_EQ(said(kind, "", "3"), "(as written)") << kind;
}

TEST(SayAs, each_kind_sounds_like_its_words_and_has_the_written_word) {
    const TestVoice voice;
    const std::string cases[][4] = {{"date", "mdy", "3/4/2021", "March fourth twenty twenty one"},
                                    {"date", "dmy", "3/4/2021", "the third of April twenty twenty one"},
                                    {"time", "", "2:30", "two thirty"},
                                    {"cardinal", "", "1,234", "one thousand two hundred thirty four"},
                                    {"ordinal", "", "21", "twenty first"},
                                    {"fraction", "", "3/4", "three quarters"},
                                    {"number", "", "3.14", "three point one four"},
                                    {"telephone", "", "555-0109", "five five five, zero one zero nine"}};
    for (const auto& [kind, format, text, words] : cases) {
        const Speech speech = speak(voice, element(kind, format, text));
        EXPECT_EQ(speech.words(), Texts{text}) << kind;
        EXPECT_TRUE(speech.samples == speak(voice, document_of(words)).samples) << kind;
    }
}

TEST(SayAs, several_written_words_each_have_their_event) {
    EXPECT_EQ(speak(element("date", "mdy", "March 4, 2021")).words(), (Texts{"March", "4", "2021"}));
    EXPECT_EQ(speak(element("telephone", "", "(555) 010-9999")).words(), (Texts{"555", "010-9999"}));
    EXPECT_EQ(speak(element("address", "", "123 Main St., Springfield")).words(),
              (Texts{"123", "Main", "St", "Springfield"}));
}

TEST(SayAs, full_stop_inside_ends_no_sentence) {
    EXPECT_EQ(speak(document_of("On <say-as interpret-as=\"date\" format=\"dm\">3. 4.</say-as> We met.")).sentences(),
              Texts{"On <say-as interpret-as=\"date\" format=\"dm\">3. 4.</say-as> We met."});
}
