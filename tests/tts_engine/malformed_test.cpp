// Documents that are not well-formed: what text there is, is spoken.
#include <chrono>

#include "speech.h"

namespace {

Texts words_of(const std::string& document) { return speak(document).words(); }

std::string repeated(const std::string& part, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += part;
    return result;
}

// Reads a whole document as fast as a jump far beyond its end does, and gives the seconds.
double seconds_to_read(tts_voice voice, const std::string& document) {
    const auto start = std::chrono::steady_clock::now();
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    tts_streamer_jump(streamer, 1 << 30);
    tts_streamer_stop(streamer);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

TEST(Malformed, quote_in_a_marks_name_stays_in_it) {
    const Speech speech = speak(document_of("One <mark name=\"Ba\"b\"/>two three."));
    EXPECT_EQ(speech.words(), (Texts{"One", "two", "three"}));
    EXPECT_EQ(speech.marks(), (Texts{"P0", "Ba\"b"}));
}

TEST(Malformed, less_than_and_ampersand_in_a_marks_name) {
    const Speech speech = speak(document_of("One <mark name=\"Ba<b & c\"/>two."));
    EXPECT_EQ(speech.words(), (Texts{"One", "two"}));
    EXPECT_EQ(speech.marks(), (Texts{"P0", "Ba<b & c"}));
}

TEST(Malformed, raw_element_not_closed) {
    EXPECT_EQ(words_of(document_of("One <b>two three. <emphasis>Four")), (Texts{"One", "two", "three", "Four"}));
}

TEST(Malformed, stray_end_tag) {
    EXPECT_EQ(words_of(document_of("One </b>two</prosody> three.")), (Texts{"One", "two", "three"}));
}

TEST(Malformed, elements_closed_in_the_wrong_order) {
    const Speech speech = speak(document_of("<b><prosody rate=\"2.00\">One</b></prosody> two three four five six."));
    EXPECT_EQ(speech.words(), (Texts{"One", "two", "three", "four", "five", "six"}));
}

TEST(Malformed, element_closed_from_outside_ends_its_effect) {
    const std::string text = "This is a sentence of some length.";
    const Speech speech = speak("<speak><s><prosody rate=\"3.00\">Fast.</s>" + text + "</speak>");
    EXPECT_NEAR(speech.seconds() - speak("<speak><s><prosody rate=\"3.00\">Fast.</s></speak>").seconds(),
                speak("<speak>" + text + "</speak>").seconds(), 0.01);
}

TEST(Malformed, two_roots) {
    EXPECT_EQ(words_of("<speak>One.</speak><speak>Two.</speak> Three."), (Texts{"One", "Two", "Three"}));
}

TEST(Malformed, no_root) {
    EXPECT_EQ(words_of("Just some text &amp; an <mark name=\"B1\"/>entity."),
              (Texts{"Just", "some", "text", "an", "entity"}));
}

TEST(Malformed, end_in_the_middle) {
    EXPECT_EQ(words_of("<speak>One two"), (Texts{"One", "two"}));
    EXPECT_EQ(words_of("<speak>One two</spe"), (Texts{"One", "two</spe"}));
    EXPECT_EQ(words_of("<speak>One <mark name=\"B"), (Texts{"One", "<mark", "name=\"B"}));
    EXPECT_EQ(words_of("<speak>One &am"), (Texts{"One", "am"}));
}

TEST(Malformed, bytes_that_are_no_utf8) {
    EXPECT_EQ(words_of("<speak>One \xFFtwo \xC3</speak>"), (Texts{"One", "two"}));
    EXPECT_EQ(words_of("<speak>a\xC3 b\xE2\x82 c\xED\xA0\x80 d\xF4\x90\x80\x80 e</speak>").size(), 5u);
    EXPECT_TRUE(words_of("\xFF\xFE\x80").empty());
}

TEST(Malformed, control_characters_are_blanks) {
    EXPECT_EQ(words_of("<speak>One\x01two\x02\x1F three</speak>"), (Texts{"One", "two", "three"}));
}

TEST(Malformed, commands_of_the_synthesiser_below_are_not_obeyed) {
    const Speech plain = speak("<speak>One two three.</speak>");
    EXPECT_EQ(speak("<speak>One\x01 two\x01 three.</speak>").samples, plain.samples);
    EXPECT_EQ(speak("<speak>One [[two]] three.</speak>").words(), (Texts{"One", "two", "three"}));
}

TEST(Malformed, unknown_entities_are_text) {
    EXPECT_EQ(words_of("<speak>One &nbsp; two &#0; &#xD800; &; & three</speak>"),
              (Texts{"One", "nbsp", "two", "three"}));
}

TEST(Malformed, attribute_twice_or_unquoted) {
    EXPECT_EQ(words_of("<speak><prosody rate=\"1\" rate=\"2\">One</prosody> <prosody rate=2>two</prosody></speak>"),
              (Texts{"One", "two"}));
}

TEST(Malformed, value_that_is_never_closed_does_not_eat_the_text) {
    EXPECT_EQ(words_of("<speak><b x=\"foo>One two</b> three</speak>"), (Texts{"One", "two", "three"}));
}

TEST(Malformed, less_than_as_text) {
    EXPECT_EQ(words_of("<speak>1 < 2 and a<3</speak>"), (Texts{"1", "<", "2", "and", "a<3"}));
}

TEST(Malformed, comments_and_instructions_are_not_spoken) {
    EXPECT_EQ(words_of("One <!-- not this --> two <?nor this?> three <!DOCTYPE x> four <![CDATA[<five>]]>"),
              (Texts{"One", "two", "three", "four", "<five>"}));
    EXPECT_EQ(words_of("One <!-- never closed"), (Texts{"One", "<", "never", "closed"}));
}

TEST(Malformed, byte_order_mark_in_front) {
    EXPECT_EQ(words_of("\xEF\xBB\xBF<speak>One</speak>"), Texts{"One"});
    EXPECT_EQ(words_of("\xEF\xBB\xBFOne & two"), (Texts{"One", "two"}));
}

TEST(Malformed, empty_documents_give_no_record) {
    const TestVoice voice;
    for (const char* document : {"", " ", "<speak/>", "<speak></speak>", "<speak> \n </speak>",
                                 "<speak version=\"1.0\" xml:lang=\"en\"><mark name=\"P0\"/></speak>", "</speak>"}) {
        const Speech speech = speak(voice, document);
        EXPECT_TRUE(speech.samples.empty()) << document;
        EXPECT_TRUE(speech.words().empty()) << document;
    }
}

TEST(Malformed, hostile_markup_is_read_in_linear_time) {
    const TestVoice voice;
    constexpr int count = 100000;
    for (const char* part :
         {"<a b=\"", "<a b='x\" ", "<a ", "</a", "<!--", "<?", "<![CDATA[", "&#", "<a b=\">c", "<a>", "</p>", "<p>",
          "<a b=\"<a b=\"x\" <", "\xFF", "\"'><", "<mark name=\"", "<s><prosody>", "&amp", "]]>"}) {
        EXPECT_LT(seconds_to_read(voice, repeated(part, count)), 20) << part;
        EXPECT_LT(seconds_to_read(voice, "<speak>" + repeated(part, count)), 20) << part;
    }
}

TEST(Malformed, entities_that_grow_are_not_followed) {
    std::string document = "<!DOCTYPE speak [<!ENTITY a0 \"word \">";
    for (int i = 1; i < 12; ++i) {
        const std::string name = "&a" + std::to_string(i - 1) + ";";
        document += "<!ENTITY a" + std::to_string(i) + " \"" + repeated(name, 10) + "\">";
    }
    document += "]><speak>One &a11; two</speak>";
    const TestVoice voice;
    EXPECT_LT(seconds_to_read(voice, document), 20);
}
