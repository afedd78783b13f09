// The masks over 64 bytes, each against the plain question put to every byte or character.
#include "text/byte_block.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "text/reference.h"
#include "text/utf8_inputs.h"

namespace {

using namespace text_detail;

byte_mask bit(std::size_t place) { return byte_mask{1} << place; }

std::string random_block(std::mt19937* random) {
    std::string block;
    for (std::size_t i = 0; i < block_size; ++i) block += static_cast<char>((*random)());
    return block;
}

void expect_same_planes(const bit_planes& found, const std::string& block) {
    for (unsigned int k = 0; k < 8; ++k) {
        for (std::size_t i = 0; i < block_size; ++i) {
            ASSERT_EQ((found.bit[k] & bit(i)) != 0, (reference::byte_at(block, i) >> k & 1) != 0) << k << ' ' << i;
        }
    }
}

TEST(ByteBlock, planes_hold_each_bit_of_each_byte) {
    std::mt19937 random(1);
    for (int i = 0; i < 50; ++i) {
        const std::string block = random_block(&random);
        expect_same_planes(planes_of(block.data()), block);
        expect_same_planes(planes_portable(block.data()), block);
    }
}

TEST(ByteBlock, high_bits_are_the_seventh_plane) {
    std::string block(64, 'a');
    block[0] = block[17] = block[63] = static_cast<char>(0x80);
    EXPECT_EQ(high_bits(block.data()), bit(0) | bit(17) | bit(63));
    EXPECT_EQ(high_bits_portable(block.data()), bit(0) | bit(17) | bit(63));
}

TEST(ByteBlock, not_plain_for_every_byte_at_every_place) {
    for (int byte = 0; byte < 0x100; ++byte) {
        const std::string one = inputs::bytes({byte});
        const bool plain = byte < 0x80 && reference::encode_xml(one, 0) == one;
        for (std::size_t place = 0; place < block_size; ++place) {
            std::string block(64, 'a');
            block[place] = static_cast<char>(byte);
            ASSERT_EQ(not_plain(block.data()), plain ? 0 : bit(place)) << byte;
            ASSERT_EQ(not_plain_portable(block.data()), plain ? 0 : bit(place)) << byte;
        }
    }
}

struct found_units {
    bool malformed;
    bool ffff;
    bool rewritten;
    std::size_t whole;
};

found_units look_at(const std::string& block) {
    const bit_planes planes = planes_of(block.data());
    const utf8_forms forms = forms_of(planes);
    return {malformed(forms) != 0, ffff_units(planes, forms) != 0, rewritten_units(planes, forms) != 0,
            whole_bytes(forms)};
}

// `text` at `place` in a block of 'a'. It fits.
std::string in_block(const std::string& text, std::size_t place) {
    std::string block(64, 'a');
    return block.replace(place, text.size(), text);
}

TEST(ByteBlock, malformed_when_one_character_is_bad) {
    const auto check = [](const std::string& text) {
        for (const std::size_t place : {std::size_t{0}, std::size_t{31}}) {
            const std::string block = in_block(text, place);
            bool bad = false;
            for (std::size_t at = 0; at < block.size();) {
                const std::size_t start = at;
                const unsigned int unit = reference::decode(block, &at);
                bad = bad || (unit == 0xFFFF && block.substr(start, at - start).find("\xBF\xBF") == std::string::npos);
            }
            ASSERT_EQ(look_at(block).malformed, bad) << testing::PrintToString(text);
        }
    };
    inputs::one_and_two_bytes(check);
}

TEST(ByteBlock, good_forms_are_not_malformed_wherever_they_stand) {
    for (const std::string form : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
        for (std::size_t place = 0; place + form.size() <= block_size; ++place) {
            const found_units found = look_at(in_block(form, place));
            ASSERT_FALSE(found.malformed || found.ffff || found.rewritten);
            ASSERT_EQ(found.whole, 64u);
        }
    }
}

TEST(ByteBlock, malformed_at_the_border) {
    EXPECT_TRUE(look_at(in_block("\x80", 0)).malformed);
    EXPECT_TRUE(look_at(in_block("\x80", 63)).malformed);
    EXPECT_TRUE(look_at(in_block("\xF8", 63)).malformed);
    EXPECT_TRUE(look_at(in_block("\xC3"
                                 "a",
                                 62))
                    .malformed);
}

TEST(ByteBlock, cut_form_is_not_malformed_and_not_whole) {
    for (const std::string form : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
        for (std::size_t kept = 1; kept < form.size(); ++kept) {
            const found_units found = look_at(in_block(form.substr(0, kept), 64 - kept));
            ASSERT_FALSE(found.malformed);
            ASSERT_EQ(found.whole, 64 - kept);
        }
    }
}

// The 64 bytes hold 16 four-byte forms or 21 three-byte ones; each unit is put into the midst of them.
void expect_units(const std::string& forms, std::size_t length) {
    for (std::size_t start = 0; start < forms.size(); start += length) {
        const std::string form = forms.substr(start, length);
        std::size_t place = 0;
        const unsigned int unit = reference::decode(form, &place);
        const found_units found = look_at(in_block(form, 10 + unit % 50));
        ASSERT_FALSE(found.malformed) << unit;
        ASSERT_EQ(found.ffff, unit == 0xFFFF) << unit;
        ASSERT_EQ(found.rewritten, reference::encode_xml(form, 0) != form) << unit;
    }
}

TEST(ByteBlock, every_unit_of_three_bytes) { expect_units(inputs::all_three_byte_forms(), 3); }

TEST(ByteBlock, every_unit_of_four_bytes) { expect_units(inputs::all_four_byte_units(), 4); }

TEST(ByteBlock, every_form_of_two_bytes) {
    std::string forms;
    for (int unit = 0; unit < 0x800; ++unit) forms += inputs::bytes({0xC0 | unit >> 6, 0x80 | (unit & 0x3F)});
    expect_units(forms, 2);
}

}  // namespace
