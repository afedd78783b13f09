// The tags of raw text that count.
#include "speechtext/raw_tags.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// As "+0 -7": opening and closing tags with their offsets.
std::string tags_in(std::string_view bytes) {
    std::string out;
    RawTagScanner scanner(bytes);
    for (RawTag tag; scanner.next(&tag);) {
        out += (out.empty() ? "" : " ") + std::string(tag.closing ? "-" : "+") + std::to_string(tag.offset);
    }
    return out;
}

TEST(RawTags, opening_and_closing) { EXPECT_EQ(tags_in("<sub alias='x'>a</sub>"), "+0 -16"); }

TEST(RawTags, names_are_whole_and_case_sensitive) {
    EXPECT_EQ(tags_in("<desc><phoneme><say-as><sub><token><w>"), "+0 +6 +15 +23 +28 +35");
    EXPECT_EQ(tags_in("<Sub><tokens><s><w-x><say>"), "");
}

TEST(RawTags, name_ends_at_the_first_byte_that_is_no_letter) { EXPECT_EQ(tags_in("<sub1><w_><w:x>"), "+0 +6 +10"); }

TEST(RawTags, self_closing_is_passed_over) { EXPECT_EQ(tags_in("<sub/><sub a='b' /></sub/><w>"), "+26"); }

TEST(RawTags, slash_inside_attributes_makes_it_none) { EXPECT_EQ(tags_in("<sub alias='a/b'><w>"), "+17"); }

TEST(RawTags, may_reach_over_line_ends_and_other_brackets) { EXPECT_EQ(tags_in("<sub\n<w>"), "+0"); }

TEST(RawTags, needs_a_name_and_an_end) {
    EXPECT_EQ(tags_in("<>< w></><<w"), "");
    EXPECT_EQ(tags_in("<<w>"), "+1");
    EXPECT_EQ(tags_in("</"), "");
    EXPECT_EQ(tags_in("<w/"), "");
    EXPECT_EQ(tags_in(""), "");
}

TEST(RawTags, bytes_that_are_not_utf8_hold_none) {
    EXPECT_EQ(tags_in("<w>\xC3\xA9<w>"), "+0 +5");
    EXPECT_EQ(tags_in("<w>\xC3<w>"), "");
    EXPECT_EQ(tags_in("<w>\xED\xA0\x80"), "");
    EXPECT_EQ(tags_in("<w>\xF0\x9F\x98\x80"), "+0");
}

TEST(RawTags, nul_is_a_byte_like_others) { EXPECT_EQ(tags_in(std::string_view("\0<w\0>", 5)), "+1"); }

}  // namespace
