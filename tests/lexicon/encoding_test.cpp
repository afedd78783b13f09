// Characters between UTF-8 and a file's bytes.
#include "tools/lexicon/encoding.h"

#include <gtest/gtest.h>

namespace {

using namespace lexicon;
using namespace std::string_literals;

TEST(Encoding, encodes_each_charset) {
    const std::string text = "a\xC3\xA9\xC9\x99\xF0\x9F\x98\x80";  // a, U+E9, U+259, U+1F600
    EXPECT_EQ(Encoding{Charset::utf8}.encode(text), text);
    EXPECT_EQ(Encoding{Charset::utf16le}.encode(text), "a\0\xE9\0\x59\x02\x3D\xD8\x00\xDE"s);
    EXPECT_EQ(Encoding{Charset::utf16be}.encode(text), "\0a\0\xE9\x02\x59\xD8\x3D\xDE\x00"s);
    EXPECT_EQ(Encoding{Charset::latin1}.encode(text), "a\xE9&#x259;&#x1F600;");
    EXPECT_EQ(Encoding{Charset::ascii}.encode(text), "a&#xE9;&#x259;&#x1F600;");
}

TEST(Encoding, detects_by_first_bytes_then_by_declaration) {
    EXPECT_EQ(detect_encoding("\xFF\xFE<\0"s, "UTF-16").charset, Charset::utf16le);
    EXPECT_EQ(detect_encoding("\xFE\xFF\0<"s, "UTF-16").charset, Charset::utf16be);
    EXPECT_EQ(detect_encoding("<\0?\0"s, "").charset, Charset::utf16le);
    EXPECT_EQ(detect_encoding("\0<\0?"s, "").charset, Charset::utf16be);
    EXPECT_EQ(detect_encoding("<?xml", "ISO-8859-1").charset, Charset::latin1);
    EXPECT_EQ(detect_encoding("<?xml", "us-ascii").charset, Charset::ascii);
    EXPECT_EQ(detect_encoding("\xEF\xBB\xBF<?xml", "").charset, Charset::utf8);
    EXPECT_EQ(detect_encoding("<?xml", "utf-8").charset, Charset::utf8);
}

TEST(Encoding, ascii_at_sees_ascii_only) {
    EXPECT_EQ(Encoding{Charset::utf16le}.ascii_at("<\0<\x01"s, 0), '<');
    EXPECT_EQ(Encoding{Charset::utf16le}.ascii_at("<\0<\x01"s, 2), '\0');
    EXPECT_EQ(Encoding{Charset::utf16be}.ascii_at("\0<"s, 0), '<');
    EXPECT_EQ(Encoding{Charset::utf8}.ascii_at("\xC3", 0), '\0');
}

TEST(Encoding, next_character_refuses_what_is_not_utf8) {
    for (const char* bad :
         {"\x80", "\xC0\xAF", "\xC3", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5", "\xC3("}) {
        std::size_t at = 0;
        EXPECT_GT(next_character(bad, &at), 0x10FFFFu) << bad;
        EXPECT_EQ(at, 1u);
    }
    for (const char32_t c : {U'a', U'é', U'ə', U'\uFFFF', U'\U00010000', U'\U0010FFFF'}) {
        std::string text;
        append_character(&text, c);
        std::size_t at = 0;
        EXPECT_EQ(next_character(text, &at), c);
        EXPECT_EQ(at, text.size());
    }
}

TEST(Encoding, collapse_blanks_as_readers_of_xml_do) {
    EXPECT_EQ(collapse_blanks(" \ta \r\n b\n"), "a b");
    EXPECT_EQ(collapse_blanks(" \n"), "");
    EXPECT_EQ(collapse_blanks("a\xC2\xA0"), "a\xC2\xA0");  // a no-break space is no blank of XML
}

TEST(Encoding, is_xml_text_knows_what_xml_cannot_hold) {
    EXPECT_TRUE(is_xml_text("a\t\xED\x9F\xBF\xEE\x80\x80"));
    for (const char* bad : {"\x01", "\x1F", "\xFF", "\xEF\xBF\xBE", "\xEF\xBF\xBF"}) EXPECT_FALSE(is_xml_text(bad));
    EXPECT_FALSE(is_xml_text("a\0"s));
}

}  // namespace
