// One character at a time: getwc_utf8, putwc_utf8 and their forms over a FILE.
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>

#include "text/reference.h"
#include "text/textencoding.h"
#include "text/utf8_inputs.h"

namespace {

struct decoded {
    unsigned short unit;
    std::size_t consumed;
    int error;
    bool operator==(const decoded&) const = default;
};

decoded decode(const std::string& text, std::size_t available) {
    errno = 0;
    const char* cursor = text.data();
    const unsigned short unit = getwc_utf8(&cursor, available);
    return {unit, static_cast<std::size_t>(cursor - text.data()), errno};
}
decoded decode(const std::string& text) { return decode(text, text.size()); }

decoded good(unsigned short unit, std::size_t consumed) { return {unit, consumed, 0}; }
decoded bad(std::size_t consumed) { return {0xFFFF, consumed, 42}; }

std::string encoded(unsigned short unit) {
    char out[8];
    const int octets = putwc_utf8(out, unit, sizeof out);
    return octets < 0 ? "failed" : std::string(out, static_cast<std::size_t>(octets));
}

TEST(GetwcUtf8, one_byte_is_itself) {
    EXPECT_EQ(decode("A"), good(0x41, 1));
    EXPECT_EQ(decode("\x7F"), good(0x7F, 1));
    EXPECT_EQ(decode(std::string(1, '\0')), good(0, 1));
}

TEST(GetwcUtf8, two_bytes) {
    EXPECT_EQ(decode("\xC3\xA9"), good(0xE9, 2));
    EXPECT_EQ(decode("\xDF\xBF"), good(0x7FF, 2));
}

TEST(GetwcUtf8, three_bytes) {
    EXPECT_EQ(decode("\xE2\x82\xAC"), good(0x20AC, 3));
    EXPECT_EQ(decode("\xEF\xBF\xBE"), good(0xFFFE, 3));
}

TEST(GetwcUtf8, four_bytes_keep_low_16_bits) {
    EXPECT_EQ(decode("\xF0\x9F\x98\x80"), good(0xF600, 4));  // U+1F600
    EXPECT_EQ(decode("\xF0\x90\x81\x81"), good(0x41, 4));    // U+10041
    EXPECT_EQ(decode("\xF7\xBF\xBF\xBE"), good(0xFFFE, 4));  // beyond Unicode, yet a form
}

TEST(GetwcUtf8, reads_only_its_own_bytes) {
    EXPECT_EQ(decode("A\xFF"), good(0x41, 1));
    EXPECT_EQ(decode("\xC3\xA9\xA9"), good(0xE9, 2));
}

TEST(GetwcUtf8, nothing_available_leaves_cursor) { EXPECT_EQ(decode("A", 0), bad(0)); }

TEST(GetwcUtf8, stray_continuation_is_consumed) {
    EXPECT_EQ(decode("\x80"
                     "A"),
              bad(1));
    EXPECT_EQ(decode("\xBF"
                     "A"),
              bad(1));
}

TEST(GetwcUtf8, f8_and_above_consume_one) {
    EXPECT_EQ(decode("\xF8\x80\x80\x80\x80"), bad(1));
    EXPECT_EQ(decode("\xFF"), bad(1));
}

TEST(GetwcUtf8, missing_continuation_loses_all_bytes_read) {
    EXPECT_EQ(decode("\xC3"
                     "A"),
              bad(2));
    EXPECT_EQ(decode("\xE2"
                     "AB"),
              bad(3));
    EXPECT_EQ(decode("\xE2\x82"
                     "A"),
              bad(3));
    EXPECT_EQ(decode("\xF0\x9F\x98"
                     "A"),
              bad(4));
    EXPECT_EQ(decode("\xF0"
                     "A\x98\x80"),
              bad(4));
}

TEST(GetwcUtf8, lead_as_continuation_fails) { EXPECT_EQ(decode("\xC3\xC3"), bad(2)); }

TEST(GetwcUtf8, cut_form_consumes_lead_alone) {
    EXPECT_EQ(decode("\xC3\xA9", 1), bad(1));
    EXPECT_EQ(decode("\xE2\x82\xAC", 1), bad(1));
    EXPECT_EQ(decode("\xE2\x82\xAC", 2), bad(1));
    EXPECT_EQ(decode("\xF0\x9F\x98\x80", 3), bad(1));
}

TEST(GetwcUtf8, overlong_forms_pass) {
    EXPECT_EQ(decode("\xC0\x80"), good(0, 2));
    EXPECT_EQ(decode("\xE0\x80\xA2"), good(0x22, 3));
}

TEST(GetwcUtf8, surrogate_is_a_unit) { EXPECT_EQ(decode("\xED\xA0\x80"), good(0xD800, 3)); }

TEST(GetwcUtf8, ffff_is_weof_without_errno) {
    EXPECT_EQ(decode("\xEF\xBF\xBF"), good(0xFFFF, 3));
    EXPECT_EQ(decode("\xF0\x9F\xBF\xBF"), good(0xFFFF, 4));
}

TEST(GetwcUtf8, all_short_inputs_like_reference) {
    const auto check = [](const std::string& text) {
        std::size_t place = 0;
        const unsigned int unit = reference::decode(text, &place);
        const decoded found = decode(text);
        ASSERT_EQ(found.unit, unit) << testing::PrintToString(text);
        ASSERT_EQ(found.consumed, place) << testing::PrintToString(text);
    };
    inputs::one_and_two_bytes(check);
    inputs::three_and_four_bytes(check);
}

TEST(PutwcUtf8, borders_of_lengths) {
    EXPECT_EQ(encoded(0), std::string(1, '\0'));
    EXPECT_EQ(encoded(0x7F), "\x7F");
    EXPECT_EQ(encoded(0x80), "\xC2\x80");
    EXPECT_EQ(encoded(0x7FF), "\xDF\xBF");
    EXPECT_EQ(encoded(0x800), "\xE0\xA0\x80");
    EXPECT_EQ(encoded(0x20AC), "\xE2\x82\xAC");
    EXPECT_EQ(encoded(0xFFFF), "\xEF\xBF\xBF");
}

TEST(PutwcUtf8, surrogate_is_three_bytes) { EXPECT_EQ(encoded(0xD83D), "\xED\xA0\xBD"); }

TEST(PutwcUtf8, no_room_writes_nothing) {
    char out[4] = "xyz";
    EXPECT_EQ(putwc_utf8(out, 'A', 0), -1);
    EXPECT_EQ(putwc_utf8(out, 0xE9, 1), -1);
    EXPECT_EQ(putwc_utf8(out, 0x20AC, 2), -1);
    EXPECT_STREQ(out, "xyz");
}

TEST(PutwcUtf8, exact_room_is_enough) {
    char out[4] = "xyz";
    EXPECT_EQ(putwc_utf8(out, 'A', 1), 1);
    EXPECT_STREQ(out, "Ayz");
    EXPECT_EQ(putwc_utf8(out, 0xE9, 2), 2);
    EXPECT_STREQ(out, "\xC3\xA9z");
    EXPECT_EQ(putwc_utf8(out, 0x20AC, 3), 3);
    EXPECT_STREQ(out, "\xE2\x82\xAC");
}

TEST(PutwcUtf8, every_unit_comes_back) {
    for (unsigned int unit = 0; unit < 0x10000; ++unit) {
        const std::string bytes = encoded(static_cast<unsigned short>(unit));
        ASSERT_EQ(bytes, reference::encode(unit));
        ASSERT_EQ(decode(bytes), good(static_cast<unsigned short>(unit), bytes.size()));
    }
}

using file_ptr = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

file_ptr file_with(const std::string& content) {
    file_ptr file(std::tmpfile(), std::fclose);
    std::fwrite(content.data(), 1, content.size(), file.get());
    std::rewind(file.get());
    return file;
}

struct from_file {
    unsigned short unit;
    int error;
    long place;
    bool operator==(const from_file&) const = default;
};

from_file next_of(const file_ptr& file) {
    errno = 0;
    const unsigned short unit = getwc_utf8file(file.get());
    return {unit, errno, std::ftell(file.get())};
}

TEST(GetwcUtf8file, each_length_then_end) {
    const file_ptr file = file_with("A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(next_of(file), (from_file{0x41, 0, 1}));
    EXPECT_EQ(next_of(file), (from_file{0xE9, 0, 3}));
    EXPECT_EQ(next_of(file), (from_file{0x20AC, 0, 6}));
    EXPECT_EQ(next_of(file), (from_file{0xF600, 0, 10}));
    EXPECT_EQ(next_of(file), (from_file{0xFFFF, 0, 10}));
}

TEST(GetwcUtf8file, stray_continuation_sets_errno) {
    const file_ptr file = file_with(
        "\x80"
        "A");
    EXPECT_EQ(next_of(file), (from_file{0xFFFF, 42, 1}));
    EXPECT_EQ(next_of(file), (from_file{0x41, 0, 2}));
}

TEST(GetwcUtf8file, end_within_sequence_is_weof) {
    const file_ptr file = file_with("\xE2\x82");
    EXPECT_EQ(next_of(file), (from_file{0xFFFF, 0, 2}));
}

TEST(GetwcUtf8file, bad_continuation_consumes_the_whole_form) {
    const file_ptr file = file_with(
        "\xC3"
        "AB");
    EXPECT_EQ(next_of(file), (from_file{0xFFFF, 42, 2}));
    EXPECT_EQ(next_of(file), (from_file{0x42, 0, 3}));
}

TEST(GetwcUtf8file, f8_takes_four_bytes_and_fails) {
    const file_ptr file = file_with(
        "\xF8"
        "ABCD");
    EXPECT_EQ(next_of(file), (from_file{0xFFFF, 42, 4}));
    EXPECT_EQ(next_of(file), (from_file{0x44, 0, 5}));
}

TEST(PutwcUtf8file, writes_and_returns_the_unit) {
    const file_ptr file = file_with("");
    EXPECT_EQ(putwc_utf8file(file.get(), 'A'), 'A');
    EXPECT_EQ(putwc_utf8file(file.get(), 0x20AC), 0x20AC);
    std::rewind(file.get());
    char content[8] = "";
    EXPECT_EQ(std::fread(content, 1, sizeof content, file.get()), 4u);
    EXPECT_STREQ(content, "A\xE2\x82\xAC");
}

TEST(PutwcUtf8file, short_write_is_weof) {
    const std::string path = testing::TempDir() + "putwc_utf8file_short_write";
    file_ptr(std::fopen(path.c_str(), "wb"), std::fclose);
    {
        const file_ptr read_only(std::fopen(path.c_str(), "rb"), std::fclose);
        EXPECT_EQ(putwc_utf8file(read_only.get(), 'A'), wide_eof);
    }
    std::remove(path.c_str());
}

}  // namespace
