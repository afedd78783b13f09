// Text as XML: each row of the rules by hand, then everything against the reference.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text/reference.h"
#include "text/textencoding.h"
#include "text/utf8_inputs.h"

namespace {

constexpr char header[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

std::string plain(const std::string& text) { return encode_xml_utf8(text, 0); }
std::string high(const std::string& text) { return encode_xml_utf8(text, encode_xml_opt::entity_encode_high); }

TEST(EncodeXml, flags_have_their_numbers) {
    EXPECT_EQ(encode_xml_opt::entity_encode_high, 1);
    EXPECT_EQ(encode_xml_opt::generate_header, 2);
}

TEST(EncodeXml, special_characters_become_entities) {
    EXPECT_EQ(plain("a<b"), "a&lt;b");
    EXPECT_EQ(plain("\"&'<>"), "&quot;&amp;&apos;&lt;&gt;");
    EXPECT_EQ(plain("&amp;"), "&amp;amp;");
}

TEST(EncodeXml, ordinary_ascii_stays) {
    std::string text;
    for (char c = 0x20; c < 0x7F; ++c) {
        if (std::string("\"&'<>").find(c) == std::string::npos) text += c;
    }
    text += '\x7F';
    EXPECT_EQ(plain(text), text);
}

TEST(PlainXmlLength, goes_up_to_the_first_byte_that_is_changed_or_not_ascii) {
    for (const std::size_t length : {0U, 1U, 63U, 64U, 65U, 127U, 128U, 200U}) {
        const std::string front(length, '~');
        EXPECT_EQ(plain_xml_length(front.data(), front.size()), length);
        for (const char* next : {"&", "<", ">", "\"", "'", "\v", "\x1F", "\x80", "\xC3\xA9"}) {
            const std::string text = front + next + "more";
            EXPECT_EQ(plain_xml_length(text.data(), text.size()), length) << length << next;
        }
    }
}

TEST(PlainXmlLength, takes_tab_line_ends_and_delete_along) {
    const std::string text = "\t\r\n \x7F~";
    EXPECT_EQ(plain_xml_length(text.data(), text.size()), text.size());
}

TEST(PlainXmlLength, stops_at_a_nul) { EXPECT_EQ(plain_xml_length("ab\0c", 4), 2U); }

TEST(EncodeXml, tab_and_line_ends_stay) { EXPECT_EQ(plain("\t\n\r"), "\t\n\r"); }

TEST(EncodeXml, vertical_tab_and_form_feed_become_blanks) { EXPECT_EQ(plain("a\vb\fc"), "a b c"); }

TEST(EncodeXml, other_controls_vanish) {
    std::string controls("\0", 1);
    for (char c = 1; c < 0x20; ++c) {
        if (std::string("\t\n\v\f\r").find(c) == std::string::npos) controls += c;
    }
    EXPECT_EQ(plain("a" + controls + "b"), "ab");
}

TEST(EncodeXml, high_characters_keep_their_bytes) {
    EXPECT_EQ(plain("\xC3\xA9"), "\xC3\xA9");
    EXPECT_EQ(plain("\xE2\x82\xAC"), "\xE2\x82\xAC");
    EXPECT_EQ(plain("\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80");
}

TEST(EncodeXml, high_characters_as_entities) {
    EXPECT_EQ(high("\xC3\xA9"), "&#xE9;");
    EXPECT_EQ(high("\xC2\x80"), "&#x80;");
    EXPECT_EQ(high("\xDF\xBF"), "&#x7FF;");
    EXPECT_EQ(high("\xE2\x82\xAC"), "&#x20AC;");
    EXPECT_EQ(high("\xF0\x9F\x98\x80"), "&#xF600;");
    EXPECT_EQ(high("a<\x7F"), "a&lt;\x7F");
}

TEST(EncodeXml, four_bytes_go_by_their_low_16_bits) {
    EXPECT_EQ(plain("\xF0\x90\x80\xBC"), "&lt;");  // U+1003C
    EXPECT_EQ(plain("\xF0\x90\x81\x81"), "A");     // U+10041
    EXPECT_EQ(plain("\xF0\x90\x80\x8C"), " ");     // U+1000C, a form feed
    EXPECT_EQ(plain("\xF0\x9D\xA0\x80"), "");      // U+1D800
    EXPECT_EQ(plain("\xF0\x9F\xBF\xBE"), "");      // U+1FFFE
    EXPECT_EQ(plain("\xF0\x9F\xBF\xBF"), "");      // U+1FFFF
}

TEST(EncodeXml, overlong_forms_go_by_their_unit) {
    EXPECT_EQ(plain("a\xC0\x80z"), "az");
    EXPECT_EQ(plain("\xC1\x81"), "A");
    EXPECT_EQ(plain("\xC0\xA2"), "&quot;");
    EXPECT_EQ(plain("\xE0\x80\xA6"), "&amp;");
    EXPECT_EQ(plain("\xE0\x82\x80"), "\xE0\x82\x80");  // the unit 0x80 is above 0x7F: its own bytes
}

TEST(EncodeXml, surrogates_and_noncharacters_vanish) {
    EXPECT_EQ(plain("a\xED\xA0\x80z\xED\xBF\xBFy"), "azy");                    // D800, DFFF
    EXPECT_EQ(plain("\xED\x9F\xBF\xEE\x80\x80"), "\xED\x9F\xBF\xEE\x80\x80");  // D7FF, E000
    EXPECT_EQ(plain("a\xEF\xBF\xBE\xEF\xBF\xBFz"), "az");
    EXPECT_EQ(plain("\xEF\xBF\xBD"), "\xEF\xBF\xBD");
    EXPECT_EQ(high("a\xED\xA0\x80\xEF\xBF\xBEz"), "az");
}

TEST(EncodeXml, bad_sequences_vanish_with_what_the_codec_consumed) {
    EXPECT_EQ(plain("a\xFFz"), "az");
    EXPECT_EQ(plain("\xC3"
                    "AB"),
              "B");
    EXPECT_EQ(plain("a\xE2\x82"), "a");
    EXPECT_EQ(plain("a\xE2"), "a");
}

TEST(EncodeXml, header_stands_in_front) {
    EXPECT_EQ(encode_xml_utf8("", 2), header);
    EXPECT_EQ(encode_xml_utf8("a<b", 2), std::string(header) + "a&lt;b");
    EXPECT_EQ(encode_xml_utf8("\xC3\xA9", 3), std::string(header) + "&#xE9;");
}

TEST(EncodeXml, empty_input_gives_empty) {
    EXPECT_EQ(plain(""), "");
    EXPECT_EQ(encode_xml_utf8_bytes(nullptr, 0, 0), "");
}

TEST(EncodeXml, takes_just_the_bytes_told) {
    EXPECT_EQ(encode_xml_utf8_bytes("a<b>c", 3, 0), "a&lt;b");
    EXPECT_EQ(encode_xml_utf8_bytes("a\0b", 3, 0), "ab");
    EXPECT_EQ(encode_xml_utf8_bytes("\xC3\xA9", 1, 0), "");
}

TEST(EncodeXml, longest_expansion_over_many_blocks) {
    std::string expected;
    for (int i = 0; i < 5000; ++i) expected += "&quot;";
    EXPECT_EQ(plain(std::string(5000, '"')), expected);
}

TEST(EncodeXml, special_character_at_every_place_of_long_text) {
    for (std::size_t place = 0; place <= 200; ++place) {
        const std::string front(place, 'x');
        const std::string back(200 - place, 'y');
        ASSERT_EQ(plain(front + "&" + back), front + "&amp;" + back);
        ASSERT_EQ(plain(front + "\xE2\x82\xAC" + back), front + "\xE2\x82\xAC" + back);
    }
}

// From memory of exactly the input's size, so that reading beyond is caught.
std::string encode_exact(const std::string& text, int flags) {
    const std::vector<char> exact(text.begin(), text.end());
    return encode_xml_utf8_bytes(exact.data(), exact.size(), flags);
}

TEST(EncodeXml, all_families_like_reference) {
    inputs::all_families([](const std::string& text) {
        ASSERT_EQ(encode_exact(text, 0), reference::encode_xml(text, 0)) << testing::PrintToString(text);
    });
}

TEST(EncodeXml, all_families_as_entities_like_reference) {
    inputs::random_text random(7);
    for (int i = 0; i < 5000; ++i) {
        const std::string text = random.next();
        ASSERT_EQ(encode_exact(text, 1), reference::encode_xml(text, 1)) << testing::PrintToString(text);
    }
    const std::string forms = inputs::all_three_byte_forms();
    EXPECT_EQ(encode_exact(forms, 1), reference::encode_xml(forms, 1));
}

TEST(AppendEncodedXml, keeps_what_is_there) {
    std::string out = "<p>";
    append_encoded_xml_utf8(&out, "a<b", 3, 0);
    append_encoded_xml_utf8(&out, nullptr, 0, 0);
    append_encoded_xml_utf8(&out, "\xC3\xA9", 2, 1);
    EXPECT_EQ(out, "<p>a&lt;b&#xE9;");
}

TEST(AppendEncodedXml, appends_what_the_returning_form_gives) {
    inputs::random_text random(8);
    std::string out;
    std::string expected;
    for (int flags = 0; flags < 400; ++flags) {
        const std::string text = random.next();
        append_encoded_xml_utf8(&out, text.data(), text.size(), flags % 4);
        expected += encode_xml_utf8(text, flags % 4);
    }
    EXPECT_EQ(out, expected);
}

TEST(AppendEncodedXml, growth_is_amortised) {
    std::string out;
    int growths = 0;
    for (int i = 0; i < 100000; ++i) {
        const std::size_t before = out.capacity();
        append_encoded_xml_utf8(&out, "ab", 2, 0);
        if (out.capacity() != before) ++growths;
    }
    EXPECT_LT(growths, 30);
}

}  // namespace
