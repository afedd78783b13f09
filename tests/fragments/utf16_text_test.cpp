// The conversion in runs: wherever a block, a run or a vector of units ends, nothing shows of it.

#include "fragments/utf16_text.h"

#include <gtest/gtest.h>

#include "fragments/fragment_list.h"

namespace {

struct Converted {
    Speechtext text;
    std::vector<std::uint32_t> positions;
};

Converted convert(const Wide& units, std::uint32_t first_position = 0) {
    Converted converted;
    HostPositions positions;
    append_utf16(units.data(), units.size(), first_position, &converted.text, &positions);
    converted.positions = positions.to_vector();
    converted.positions.pop_back();  // the end
    return converted;
}

// Fillers in front move a character over every place in and between blocks.
void expect_behind_filler(const Wide& filler, std::size_t filler_bytes, const Wide& units, const std::string& bytes) {
    Wide text;
    for (int i = 0; i < 4200; ++i) {
        const Converted converted = convert(text + units + NELVA_WIDE("z"));
        const std::size_t at = static_cast<std::size_t>(i) * filler_bytes;
        ASSERT_EQ(converted.text.as_string().substr(at), bytes + "z") << i;
        ASSERT_EQ(converted.positions.size(), converted.text.size()) << i;
        for (std::size_t k = 0; k < bytes.size(); ++k) ASSERT_EQ(converted.positions[at + k], text.size()) << i;
        ASSERT_EQ(converted.positions.back(), text.size() + units.size()) << i;
        text += filler;
    }
}

}  // namespace

TEST(Utf16Text, nothing_gives_nothing) {
    EXPECT_TRUE(convert(Wide()).text.empty());
    EXPECT_TRUE(convert(Wide()).positions.empty());
}

TEST(Utf16Text, length_borders_of_utf8) {
    EXPECT_EQ(convert({0x7F, 0x80}).text.as_string(), "\x7F\xC2\x80");
    EXPECT_EQ(convert({0x7FF, 0x800}).text.as_string(), "\xDF\xBF\xE0\xA0\x80");
    EXPECT_EQ(convert({0xD7FF, 0xE000, 0xFFFF}).text.as_string(), "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF");
    EXPECT_EQ(convert({0xD800, 0xDC00, 0xDBFF, 0xDFFF}).text.as_string(), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(Utf16Text, pair_behind_any_length_of_ascii) {
    expect_behind_filler(NELVA_WIDE("a"), 1, {0xD83D, 0xDE00}, "\xF0\x9F\x98\x80");
}

TEST(Utf16Text, lone_surrogate_behind_any_length_of_ascii) {
    expect_behind_filler(NELVA_WIDE("a"), 1, {0xD83D}, "\xEF\xBF\xBD");
}

TEST(Utf16Text, pair_behind_any_length_of_three_byte_characters) {
    expect_behind_filler(NELVA_WIDE("\u4E00"), 3, {0xD83D, 0xDE00}, "\xF0\x9F\x98\x80");
}

TEST(Utf16Text, lone_surrogate_behind_any_number_of_lone_surrogates) {
    expect_behind_filler({0xDE00}, 3, {0xD83D}, "\xEF\xBF\xBD");
}

TEST(Utf16Text, appends_to_what_is_there) {
    Speechtext text;
    HostPositions positions;
    text += std::string("ab");
    positions.add_characters(1, 2, 1);
    append_utf16(NELVA_WIDE("c"), 1, 9, &text, &positions);
    EXPECT_EQ(text.as_string(), "abc");
    EXPECT_EQ(positions.to_vector(), (std::vector<std::uint32_t>{1, 2, 9, 0}));
}

TEST(Utf16Text, character_length_needs_both_halves) {
    const Wide units = {0xD83D, 0xDE00, 0xD83D, 'a'};
    EXPECT_EQ(utf16_character_length(&units[0], 4), 2u);
    EXPECT_EQ(utf16_character_length(&units[0], 1), 1u);
    EXPECT_EQ(utf16_character_length(&units[1], 3), 1u);
    EXPECT_EQ(utf16_character_length(&units[2], 2), 1u);
    EXPECT_EQ(utf16_character_length(&units[3], 1), 1u);
}
