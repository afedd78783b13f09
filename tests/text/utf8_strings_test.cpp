// The codec over whole strings.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <vector>

#include "text/reference.h"
#include "text/textencoding.h"
#include "text/utf8_inputs.h"

namespace {

wide_string wide(std::initializer_list<unsigned short> units) { return wide_string(units); }

unsigned short same(unsigned short wc) { return wc; }
unsigned short to_euro(unsigned short) { return 0x20AC; }

TEST(WstringToUtf8, each_length) {
    EXPECT_EQ(wstring_to_utf8(wide({'a', 0xE9, 0x20AC})), "a\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(wstring_to_utf8(wide_string()), "");
}

TEST(WstringToUtf8, nul_and_surrogates_are_units) {
    EXPECT_EQ(wstring_to_utf8(wide({'a', 0, 'b'})), std::string("a\0b", 3));
    EXPECT_EQ(wstring_to_utf8(wide({0xD83D, 0xDE00})), "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(WstringToUtf8, longest_form_throughout) {
    EXPECT_EQ(wstring_to_utf8(wide_string(2, 0xFFFF)), "\xEF\xBF\xBF\xEF\xBF\xBF");
}

TEST(WstringFromUtf8, each_length) {
    EXPECT_EQ(wstring_from_utf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), wide({'a', 0xE9, 0x20AC, 0xF600}));
    EXPECT_EQ(wstring_from_utf8("abc"), wide({'a', 'b', 'c'}));
    EXPECT_EQ(wstring_from_utf8(""), wide_string());
}

TEST(WstringFromUtf8, nul_bytes_stay) {
    EXPECT_EQ(wstring_from_utf8(std::string("a\0b", 3)), wide({'a', 0, 'b'}));
    EXPECT_EQ(wstring_from_utf8(std::string("\0", 1)), wide({0}));
}

TEST(WstringFromUtf8, bad_sequence_gives_empty) {
    EXPECT_EQ(wstring_from_utf8("abc\xFF"), wide_string());
    EXPECT_EQ(wstring_from_utf8("\xC3"), wide_string());
    EXPECT_EQ(wstring_from_utf8("a\xEF\xBF\xBF"), wide_string());
}

std::ptrdiff_t skipped(const std::string& text, bool (*test)(unsigned short), bool wanted) {
    const std::unique_ptr<char[]> exact(new char[text.size()]);
    std::copy(text.begin(), text.end(), exact.get());
    return skip_matching_utf8(exact.get(), test, wanted, exact.get() + text.size()) - exact.get();
}

std::ptrdiff_t skipped_to_nul(const std::string& text, bool (*test)(unsigned short), bool wanted) {
    const std::unique_ptr<char[]> exact(new char[text.size() + 1]);
    std::copy(text.c_str(), text.c_str() + text.size() + 1, exact.get());
    return skip_matching_utf8(exact.get(), test, wanted, nullptr) - exact.get();
}

TEST(SkipMatchingUtf8, stops_at_first_that_differs) {
    EXPECT_EQ(skipped("abc1", is_alpha_wchar, true), 3);
    EXPECT_EQ(skipped("123a", is_alpha_wchar, false), 3);
    EXPECT_EQ(skipped("\xC3\xA9t\xC3\xA9 la", is_alpha_wchar, true), 5);
}

TEST(SkipMatchingUtf8, stops_at_end) {
    EXPECT_EQ(skipped("abc", is_alpha_wchar, true), 3);
    EXPECT_EQ(skipped("", is_alpha_wchar, true), 0);
}

TEST(SkipMatchingUtf8, stops_at_nul_though_it_matches) {
    EXPECT_EQ(skipped(std::string(" \0 ", 3), is_whitespace_wchar, true), 1);
    EXPECT_EQ(skipped(" \xC0\x80 ", is_whitespace_wchar, true), 1);
}

TEST(SkipMatchingUtf8, stops_in_front_of_bad_sequence) {
    EXPECT_EQ(skipped("ab\xC3"
                      "cd",
                      is_alpha_wchar, true),
              2);
    EXPECT_EQ(skipped("12\xFF", is_alpha_wchar, false), 2);
    EXPECT_EQ(skipped("ab\xE2\x82", is_alpha_wchar, false), 0);
}

TEST(SkipMatchingUtf8, null_end_stops_at_terminator) {
    EXPECT_EQ(skipped_to_nul("abc", is_alpha_wchar, true), 3);
    EXPECT_EQ(skipped_to_nul("ab \xE2\x82\xAC", is_alpha_wchar, true), 2);
    EXPECT_EQ(skipped_to_nul("", is_whitespace_wchar, true), 0);
}

TEST(SkipMatchingUtf8, null_end_reads_nothing_behind_a_cut_sequence) {
    EXPECT_EQ(skipped_to_nul("1\xC3", is_alpha_wchar, false), 1);
    EXPECT_EQ(skipped_to_nul("1\xE2\x82", is_alpha_wchar, false), 1);
    EXPECT_EQ(skipped_to_nul("1\xF0\x9F\x98", is_alpha_wchar, false), 1);
}

TEST(SkipMatchingUtf8, null_end_takes_whole_four_byte_forms) {
    EXPECT_EQ(skipped_to_nul("\xF0\x90\x81\x81"
                             "1",
                             is_alpha_wchar, true),
              4);  // U+10041 is 'A' to the codec
}

TEST(StrtransformUtf8, maps_each_character) {
    EXPECT_EQ(strtransform_utf8("a\xC3\xA9", to_uppercase_wchar), "A\xC3\x89");
    EXPECT_EQ(strtransform_utf8("a\xC3\xA9\xE2\x82\xAC!", same), "a\xC3\xA9\xE2\x82\xAC!");
    EXPECT_EQ(strtransform_utf8("", to_uppercase_wchar), "");
    EXPECT_EQ(strtransform_utf8(nullptr, 0, to_uppercase_wchar), "");
}

TEST(StrtransformUtf8, takes_just_the_bytes_told) { EXPECT_EQ(strtransform_utf8("abcd", 2, to_uppercase_wchar), "AB"); }

TEST(StrtransformUtf8, lengths_may_change) {
    EXPECT_EQ(strtransform_utf8("ab", to_euro), "\xE2\x82\xAC\xE2\x82\xAC");
    EXPECT_EQ(strtransform_utf8("\xC3\xBF", to_uppercase_wchar), "\xC5\xB8");  // y with diaeresis
}

TEST(StrtransformUtf8, four_bytes_become_their_low_16_bits) {
    EXPECT_EQ(strtransform_utf8("\xF0\x9F\x98\x80", same), "\xEF\x98\x80");  // U+1F600 to U+F600
    EXPECT_EQ(strtransform_utf8("\xF0\x90\x81\x81", same), "A");             // U+10041
}

TEST(StrtransformUtf8, nul_and_overlong_nul_are_characters) {
    EXPECT_EQ(strtransform_utf8(std::string("a\0b", 3), to_uppercase_wchar), std::string("A\0B", 3));
    EXPECT_EQ(strtransform_utf8("a\xC0\x80", same), std::string("a\0", 2));
}

TEST(StrtransformUtf8, long_text_keeps_order) {
    std::string text;
    std::string expected;
    for (int i = 0; i < 2000; ++i) {
        text += static_cast<char>('a' + i % 26);
        text += "\xC3\xA9";
        expected += static_cast<char>('A' + i % 26);
        expected += "\xC3\x89";
    }
    EXPECT_EQ(strtransform_utf8(text, to_uppercase_wchar), expected);
    EXPECT_EQ(strtransform_utf8(std::string(5000, 'x'), to_euro).size(), 15000u);
}

std::vector<unsigned short>& calls() {
    static std::vector<unsigned short> units;
    return units;
}
unsigned short record(unsigned short wc) {
    calls().push_back(wc);
    return wc;
}

TEST(StrtransformUtf8, calls_once_for_each_character_in_order) {
    calls().clear();
    strtransform_utf8(
        "ab\xC3\xA9"
        "a",
        record);
    EXPECT_EQ(calls(), (std::vector<unsigned short>{'a', 'b', 0xE9, 'a'}));
}

constexpr char stops_at_weof[] = "textencoding:572: strtransform_utf8: Assertion .wc != WEOF. failed";

TEST(StrtransformUtf8, bad_sequence_stops_the_program) {
    EXPECT_DEATH(strtransform_utf8("a\xFF", same), stops_at_weof);
    EXPECT_DEATH(strtransform_utf8("\xC3", same), stops_at_weof);
}

TEST(StrtransformUtf8, ffff_stops_the_program) { EXPECT_DEATH(strtransform_utf8("\xEF\xBF\xBF", same), stops_at_weof); }

TEST(StrtransformUtf8, all_good_forms_like_reference) {
    std::string all;
    std::size_t removed = 0;
    all = reference::clean(inputs::all_three_byte_forms() + inputs::all_four_byte_units(), &removed);
    std::string expected;
    for (std::size_t place = 0; place < all.size();) expected += reference::encode(reference::decode(all, &place));
    EXPECT_EQ(strtransform_utf8(all, same), expected);
}

}  // namespace
