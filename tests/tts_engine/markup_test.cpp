// The two readers of markup: on what is well-formed they say the same.
#include "tts_engine/markup.h"

#include <gtest/gtest.h>

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
