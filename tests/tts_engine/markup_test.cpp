// The two readers of markup: on what is well-formed they say the same.
#include "tts_engine/markup.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tts_engine/characters.h"

namespace {

// Everything a reader tells, in one line: <name a=b> </name> and characters with their bytes.
class Recorder : public tts::MarkupHandler {
public:
    std::string told;

    void start_element(std::string_view name, const tts::MarkupAttributes& attributes) override {
        told += "<" + std::string(name);
        for (const auto& [key, value] : attributes) told += " " + key + "=" + value;
        told += ">";
    }
    void end_element(std::string_view name) override { told += "</" + std::string(name) + ">"; }
    void text(std::string_view text, std::uint32_t begin) override {
        while (!text.empty()) {
            const tts::Decoded decoded = tts::decode_utf8(text);
            const auto end = begin + static_cast<std::uint32_t>(decoded.length);
            character(decoded.code, begin, end);
            begin = end;
            text.remove_prefix(decoded.length);
        }
    }
    void character(char32_t code, std::uint32_t begin, std::uint32_t end) override {
        tts::append_utf8(told, code);
        if (end - begin != 1) told += "[" + std::to_string(begin) + "," + std::to_string(end) + "]";
    }
};

std::string read(const std::string& document, bool tolerant) {
    Recorder recorder;
    tts::MarkupReader reader(document, recorder);
    if (tolerant) reader.be_tolerant();
    while (reader.step()) {
    }
    return recorder.told;
}

}  // namespace

TEST(Markup, readers_agree_on_what_is_well_formed) {
    for (const char* document : {
             "<speak>plain text</speak>",
             "<speak a='1' b=\"2\"  c = \"x y\" ><b/>text<c d='>'/> more</speak>",
             "<speak>&lt;&gt;&amp;&quot;&apos;&#65;&#x1F600;é😀</speak>",
             "<?xml version=\"1.0\"?><!-- c --><speak><!-- <x> & --><?p i?><![CDATA[<&>]]>t</speak>",
             "<speak><mark name=\"B&lt;&#233;&quot;\" qm:invisible=\"true\"/></speak>",
             "<speak>\xEF\xBB\xBF</speak>",
             "\xEF\xBB\xBF<speak>x</speak>",
         }) {
        EXPECT_EQ(read(document, true), read(document, false)) << document;
    }
}

TEST(Markup, entity_covers_all_its_bytes) { EXPECT_EQ(read("<a>x&amp;é</a>", false), "<a>x&[4,9]é[9,11]</a>"); }

TEST(Markup, line_end_of_two_bytes_is_one_character_of_both) {
    EXPECT_EQ(read("<a>x\r\ny</a>", false), "<a>x\n[4,6]y</a>");
}

TEST(Markup, tolerant_reader_goes_on_behind_the_last_that_was_understood) {
    EXPECT_EQ(read("<a>one<b>two</a>three</b>", false), "<a>one<b>two</a>three</b>");
    EXPECT_EQ(read("<a>1<m n=\"x\"y\"/>2</a>", false), "<a>1<m n=x\"y></m>2</a>");
    EXPECT_EQ(read("<a>1</a><a>2</a>", false), "<a>1</a><a>2</a>");
}

TEST(Markup, broken_cdata_stays_text_up_to_its_end) {
    EXPECT_EQ(read("<a><![CDATA[<b>\xFF&amp;]]>c</a>", false), "<a><b>&amp;c</a>");
}

TEST(Markup, document_longer_than_a_step_is_read_whole) {
    std::string document = "<a>";
    for (int i = 0; i < 5000; ++i) document += "é<b/>";
    document += "</a>";
    EXPECT_EQ(read(document, false), read(document, true));
}

TEST(Markup, own_entity_stands_for_its_text_and_tags_and_covers_its_bytes) {
    EXPECT_EQ(read("<!DOCTYPE a [<!ENTITY x \"1<b/>2\"><!ENTITY y \"(&x;)\">]><a>&y;.</a>", false),
              "<a>([57,60]1[57,60]<b></b>2[57,60])[57,60].</a>");
}

// `count` entities, each ten times the one before it; the first is ten times "x".
std::string tenfold(int count) {
    std::string text = "<!DOCTYPE a [<!ENTITY e0 \"x\">";
    for (int i = 1; i <= count; ++i) {
        text += "<!ENTITY e" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k) text += "&e" + std::to_string(i - 1) + ";";
        text += "\">";
    }
    return text + "]>";
}

// Counts characters, and how much is told at a time.
class Counter : public tts::MarkupHandler {
public:
    std::size_t told = 0;
    std::size_t most = 0;
    std::string last;

    void read(const std::string& document) {
        tts::MarkupReader reader(document, *this);
        for (bool more = true; more;) {
            const std::size_t before = told;
            more = reader.step();
            most = std::max(most, told - before);
        }
    }
    void start_element(std::string_view, const tts::MarkupAttributes& attributes) override {
        for (const auto& [name, value] : attributes) told += value.size();
    }
    void end_element(std::string_view) override {}
    void text(std::string_view text, std::uint32_t) override {
        told += text.size();
        last.append(text);
    }
    void character(char32_t, std::uint32_t, std::uint32_t) override { ++told; }
};

TEST(Markup, own_entities_up_to_the_bound_are_told_whole) {
    Counter counter;
    counter.read(tenfold(4) + "<a>&e4;after</a>");
    EXPECT_EQ(counter.told, 10005u);
    EXPECT_EQ(counter.last, "after");
}

TEST(Markup, own_entity_above_the_bound_is_cut_short_and_the_text_after_it_is_told) {
    Counter counter;
    const std::string document = tenfold(9) + "<a>&e9;after &e1; it</a>";
    counter.read(document);
    EXPECT_GT(counter.told, 10000u);
    EXPECT_LT(counter.told, 65536u);
    EXPECT_EQ(counter.last, "after &e1; it");
}

TEST(Markup, own_entity_above_the_bound_in_an_attribute_leaves_the_element_to_the_tolerant_reader) {
    Counter counter;
    counter.read(tenfold(9) + "<a>one <b c=\"&e9;\">two</b> three</a>");
    EXPECT_EQ(counter.last, "one two three");
    EXPECT_EQ(counter.told, 13u + 4u);
}

TEST(Markup, own_entities_stay_below_sixteen_times_what_was_read) {
    std::string document = tenfold(3) + "<a>";
    const std::size_t start = document.size();
    for (int i = 0; i < 20000; ++i) document += "&e3;";
    Counter counter;
    counter.read(document + "</a>");
    EXPECT_LE(counter.told, 65536u + 16 * (document.size() - start));
}

TEST(Markup, step_tells_a_bounded_amount) {
    const std::string entity = "<!DOCTYPE a [<!ENTITY e '" + std::string(1000, 'x') + "'>]><a>";
    std::string entities = entity;
    std::string attributes = entity;
    for (int i = 0; i < 60; ++i) entities += "&e;";
    for (int i = 0; i < 60; ++i) attributes += "<b c='&e;'/>";
    const std::string large = "<!DOCTYPE a [<!ENTITY e '" + std::string(50000, 'x') + "'>]><a>&e;</a>";
    // Expat gets more and more of a comment that does not end, and with its end the text after it.
    const std::string comment = "<a><!--" + std::string(5000000, ' ') + "-->" + std::string(3000000, 'x') + "</a>";
    for (const std::string& document : {entities + "</a>", attributes + "</a>", large, comment}) {
        Counter counter;
        counter.read(document);
        EXPECT_GE(counter.told, 50000u);
        EXPECT_LE(counter.most, 16384u + 4096u) << document.size();
    }
}

TEST(Markup, text_over_several_steps_keeps_its_bytes) {
    std::string text;
    while (text.size() < 40000) text += "aé€😀";
    const std::string start = "<!DOCTYPE a [<!ENTITY e '" + text + "'>]><a><!--" + std::string(100000, ' ') + "-->";
    Recorder expected;
    expected.start_element("a", {});
    expected.text(text, static_cast<std::uint32_t>(start.size()));
    expected.start_element("b", {});
    expected.end_element("b");
    const auto reference = static_cast<std::uint32_t>(start.size() + text.size() + 4);
    for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(tts::decode_utf8(rest).length))
        expected.character(tts::decode_utf8(rest).code, reference, reference + 3);
    expected.end_element("a");
    EXPECT_EQ(read(start + text + "<b/>&e;</a>", false), expected.told);
}

TEST(Characters, text_is_cut_between_them) {
    EXPECT_EQ(tts::first_characters("aé€😀", 100), "aé€😀");
    EXPECT_EQ(tts::first_characters("aé€😀", 10), "aé€😀");
    for (const std::size_t most : {6, 7, 8, 9}) EXPECT_EQ(tts::first_characters("aé€😀", most), "aé€");
    for (const std::size_t most : {3, 4, 5}) EXPECT_EQ(tts::first_characters("aé€😀", most), "aé");
    EXPECT_EQ(tts::first_characters("aé€😀", 2), "a");
    EXPECT_EQ(tts::first_characters("é", 1), "");
    EXPECT_EQ(tts::first_characters("", 0), "");
    EXPECT_EQ(tts::first_characters("\x80\x80\x80\x80\x80\x80", 5).size(), 5u);
}

TEST(Utf8, wrong_forms_are_no_character) {
    for (const char* bytes : {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80",
                              "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xC3", "\xE2\x82", "\xF0\x9F\x98"}) {
        EXPECT_EQ(tts::decode_utf8(bytes).code, 0u);
        EXPECT_EQ(tts::decode_utf8(bytes).length, 1u);
    }
}

TEST(Utf8, borders_of_each_length_come_back) {
    for (const char32_t code : {0x1u, 0x7Fu, 0x80u, 0x7FFu, 0x800u, 0xD7FFu, 0xE000u, 0xFFFFu, 0x10000u, 0x10FFFFu}) {
        std::string text;
        tts::append_utf8(text, code);
        EXPECT_EQ(tts::decode_utf8(text).code, code);
        EXPECT_EQ(tts::decode_utf8(text).length, text.size());
    }
}
