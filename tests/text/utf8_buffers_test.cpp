// The conversions between buffers, and above all how they end.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text/textencoding.h"

namespace {

// Buffers of exactly the size told, so that a step beyond is caught.
std::vector<char> bytes(const std::string& text) { return {text.begin(), text.end()}; }

using units = std::vector<unsigned short>;

unsigned short same(unsigned short wc) { return wc; }
unsigned short to_euro(unsigned short) { return 0x20AC; }
unsigned short to_nul(unsigned short) { return 0; }

TEST(WideToUtf8, terminates_without_counting) {
    const units in = {'a', 0xE9, 0x20AC};
    std::vector<char> out(7, 'x');
    EXPECT_EQ(wide_to_utf8(out.data(), 7, in.data(), 3), 6);
    EXPECT_EQ(out, bytes(std::string("a\xC3\xA9\xE2\x82\xAC\0", 7)));
}

TEST(WideToUtf8, empty_input_writes_terminator) {
    std::vector<char> out(2, 'x');
    EXPECT_EQ(wide_to_utf8(out.data(), 2, nullptr, 0), 0);
    EXPECT_EQ(out, bytes(std::string("\0x", 2)));
}

TEST(WideToUtf8, full_at_terminated_end_gives_count) {
    const units in = {'a', 'b', 0};
    std::vector<char> out(2, 'x');
    EXPECT_EQ(wide_to_utf8(out.data(), 2, in.data(), 2), 2);
    EXPECT_EQ(out, bytes("ab"));
}

TEST(WideToUtf8, full_at_unterminated_end_gives_zero) {
    const units in = {'a', 'b', 'c'};
    std::vector<char> out(2, 'x');
    EXPECT_EQ(wide_to_utf8(out.data(), 2, in.data(), 2), 0);
    EXPECT_EQ(out, bytes("ab"));
}

TEST(WideToUtf8, full_before_end_gives_zero) {
    const units in = {'a', 'b', 'c', 0};
    std::vector<char> out(2, 'x');
    EXPECT_EQ(wide_to_utf8(out.data(), 2, in.data(), 3), 0);
}

TEST(WideToUtf8, full_in_front_of_inner_nul_gives_count) {
    const units in = {'a', 'b', 0, 'c'};
    std::vector<char> out(2, 'x');
    EXPECT_EQ(wide_to_utf8(out.data(), 2, in.data(), 4), 2);
}

TEST(WideToUtf8, nul_units_are_converted) {
    const units in = {'a', 0, 'b'};
    std::vector<char> out(4, 'x');
    EXPECT_EQ(wide_to_utf8(out.data(), 4, in.data(), 3), 3);
    EXPECT_EQ(out, bytes(std::string("a\0b\0", 4)));
}

TEST(WideToUtf8, unit_that_does_not_fit_gives_minus_one) {
    const units in = {'a', 0x20AC, 0};
    std::vector<char> out(3, 'x');
    EXPECT_EQ(wide_to_utf8(out.data(), 3, in.data(), 2), -1);
    EXPECT_EQ(out, bytes("axx"));
}

TEST(WideToUtf8, no_output_gives_zero_without_reading) {
    EXPECT_EQ(wide_to_utf8(nullptr, 0, nullptr, 0), 0);
    const units in = {'a', 0};
    EXPECT_EQ(wide_to_utf8(nullptr, 0, in.data(), 1), 0);
}

TEST(WideFromUtf8, terminates_without_counting) {
    const std::vector<char> in = bytes("a\xC3\xA9\xE2\x82\xAC");
    units out(4, 7);
    EXPECT_EQ(wide_from_utf8(out.data(), 4, in.data(), in.size()), 3);
    EXPECT_EQ(out, (units{'a', 0xE9, 0x20AC, 0}));
}

TEST(WideFromUtf8, bad_sequence_gives_minus_one) {
    units out(8, 7);
    const std::vector<char> stray = bytes("a\xFFz");
    EXPECT_EQ(wide_from_utf8(out.data(), 8, stray.data(), stray.size()), -1);
    const std::vector<char> cut = bytes("a\xE2\x82");
    EXPECT_EQ(wide_from_utf8(out.data(), 8, cut.data(), cut.size()), -1);
    const std::vector<char> ffff = bytes("\xEF\xBF\xBF");
    EXPECT_EQ(wide_from_utf8(out.data(), 8, ffff.data(), ffff.size()), -1);
}

TEST(WideFromUtf8, full_at_terminated_end_gives_count) {
    units out(2, 7);
    EXPECT_EQ(wide_from_utf8(out.data(), 2, "ab", 2), 2);
    EXPECT_EQ(out, (units{'a', 'b'}));
}

TEST(WideFromUtf8, full_while_input_remains_gives_zero) {
    units out(2, 7);
    EXPECT_EQ(wide_from_utf8(out.data(), 2, "abc", 3), 0);
    EXPECT_EQ(wide_from_utf8(out.data(), 2, "abc", 2), 0);
}

TEST(WideFromUtf8, full_in_front_of_inner_nul_gives_count) {
    units out(1, 7);
    EXPECT_EQ(wide_from_utf8(out.data(), 1, "a\0b", 3), 1);
}

TEST(WideFromUtf8, nul_bytes_are_converted) {
    units out(4, 7);
    EXPECT_EQ(wide_from_utf8(out.data(), 4, "a\0b", 3), 3);
    EXPECT_EQ(out, (units{'a', 0, 'b', 0}));
}

TEST(WideFromUtf8, empty_input_writes_terminator) {
    units out(1, 7);
    EXPECT_EQ(wide_from_utf8(out.data(), 1, nullptr, 0), 0);
    EXPECT_EQ(out, (units{0}));
}

TEST(CopyAndTransformMbs, maps_and_terminates) {
    std::vector<char> out(8, 'x');
    const std::vector<char> in = bytes("aB\xC3\xA9");
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 8, in.data(), in.size(), to_uppercase_wchar), 4);
    EXPECT_EQ(out, bytes(std::string("AB\xC3\x89\0xxx", 8)));
}

TEST(CopyAndTransformMbs, stops_at_nul_byte) {
    std::vector<char> out(4, 'x');
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 4, "a\0b", 3, same), 1);
    EXPECT_EQ(out, bytes(std::string("a\0xx", 4)));
}

TEST(CopyAndTransformMbs, overlong_nul_does_not_stop) {
    std::vector<char> out(4, 'x');
    const std::vector<char> in = bytes(
        "\xC0\x80"
        "b");
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 4, in.data(), in.size(), same), 2);
    EXPECT_EQ(out, bytes(std::string("\0b\0x", 4)));
}

TEST(CopyAndTransformMbs, mapping_to_nul_goes_on) {
    std::vector<char> out(4, 'x');
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 4, "ab", 2, to_nul), 2);
    EXPECT_EQ(out, bytes(std::string("\0\0\0x", 4)));
}

TEST(CopyAndTransformMbs, bad_sequence_gives_minus_two) {
    std::vector<char> out(8, 'x');
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 8, "a\xFF", 2, same), -2);
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 8, "\xEF\xBF\xBF", 3, same), -2);
}

TEST(CopyAndTransformMbs, longer_result_that_does_not_fit_gives_minus_one) {
    std::vector<char> out(5, 'x');
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 5, "ab", 2, to_euro), -1);
    EXPECT_EQ(out, bytes("\xE2\x82\xACxx"));
}

TEST(CopyAndTransformMbs, bad_sequence_comes_before_room) {
    std::vector<char> out(4, 'x');
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 4, "a\xC3", 2, to_euro), -2);
}

TEST(CopyAndTransformMbs, full_output_asks_the_byte_at_the_cursor) {
    std::vector<char> out(2, 'x');
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 2, "ab", 2, same), 2);
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 2, "abc", 3, same), 0);
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 2, "abc", 2, same), 0);
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 2, "ab\0c", 4, same), 2);
}

TEST(CopyAndTransformMbs, empty_input_writes_terminator) {
    std::vector<char> out(1, 'x');
    EXPECT_EQ(copy_and_transform_mbs(out.data(), 1, nullptr, 0, same), 0);
    EXPECT_EQ(out, bytes(std::string(1, '\0')));
}

TEST(CopyAndTransformMbs, no_output_gives_zero) { EXPECT_EQ(copy_and_transform_mbs(nullptr, 0, "a", 1, same), 0); }

}  // namespace
