// UTF-16 to UTF-8 and back as Windows does it. The same tests run against the stand-in and against the system.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "platform/win32.h"

namespace {

using Wide = std::basic_string<WCHAR>;

Wide units(std::initializer_list<unsigned> values) {
    Wide text;
    for (const unsigned value : values) text += static_cast<WCHAR>(value);
    return text;
}

int utf8_size(const Wide& text) {
    return WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
}

// Measures, converts into a block of that size exactly, and expects both to tell the same count.
std::string to_utf8(const Wide& text, DWORD flags = 0) {
    const int count = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, flags, text.data(), count, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(size), '?');
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, flags, text.data(), count, out.data(), size, nullptr, nullptr), size);
    return out;
}

Wide to_wide(const std::string& text, DWORD flags = 0) {
    const int count = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_UTF8, flags, text.data(), count, nullptr, 0);
    Wide out(static_cast<std::size_t>(size), static_cast<WCHAR>('?'));
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, flags, text.data(), count, out.data(), size), size);
    return out;
}

// Expects a failing call: 0 and this last error.
template <typename Call>
void expect_refused(DWORD error, Call call) {
    SetLastError(0);
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(GetLastError(), error);
}

const std::string replacement = "\xEF\xBF\xBD";

}  // namespace

TEST(WideCharToMultiByte, each_length_at_its_ends) {
    EXPECT_EQ(to_utf8(units({0x01})), "\x01");
    EXPECT_EQ(to_utf8(units({0x7F})), "\x7F");
    EXPECT_EQ(to_utf8(units({0x80})), "\xC2\x80");
    EXPECT_EQ(to_utf8(units({0x7FF})), "\xDF\xBF");
    EXPECT_EQ(to_utf8(units({0x800})), "\xE0\xA0\x80");
    EXPECT_EQ(to_utf8(units({0xD7FF})), "\xED\x9F\xBF");
    EXPECT_EQ(to_utf8(units({0xE000})), "\xEE\x80\x80");
    EXPECT_EQ(to_utf8(units({0xFFFF})), "\xEF\xBF\xBF");
    EXPECT_EQ(to_utf8(units({0xD800, 0xDC00})), "\xF0\x90\x80\x80");
    EXPECT_EQ(to_utf8(units({0xDBFF, 0xDFFF})), "\xF4\x8F\xBF\xBF");
}

TEST(WideCharToMultiByte, each_lone_surrogate_is_a_replacement_character) {
    EXPECT_EQ(to_utf8(units({0xD800})), replacement);
    EXPECT_EQ(to_utf8(units({0xDFFF})), replacement);
    EXPECT_EQ(to_utf8(units({0xDC00, 0xD800})), replacement + replacement);
    EXPECT_EQ(to_utf8(units({'a', 0xDBFF, 'b'})), "a" + replacement + "b");
    EXPECT_EQ(to_utf8(units({0xD83D, 0xD83D, 0xDE00})), replacement + "\xF0\x9F\x98\x80");
    EXPECT_EQ(to_utf8(units({0xD83D, 0xDE00, 0xDE00})), "\xF0\x9F\x98\x80" + replacement);
}

TEST(WideCharToMultiByte, counted_text_keeps_its_nuls) {
    EXPECT_EQ(to_utf8(units({'a', 0, 'b', 0})), std::string("a\0b\0", 4));
}

TEST(WideCharToMultiByte, count_minus_one_takes_the_terminator_along) {
    const Wide text = units({'h', 0xE9});
    char out[4] = {'?', '?', '?', '?'};
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr), 4);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, out, 4, nullptr, nullptr), 4);
    EXPECT_EQ(std::string(out, 4), std::string("h\xC3\xA9\0", 4));
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, Wide().c_str(), -1, out, 4, nullptr, nullptr), 1);
}

TEST(WideCharToMultiByte, size_zero_only_measures) {
    char untouched = 'x';
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, NELVA_WIDE("ab"), 2, &untouched, 0, nullptr, nullptr), 2);
    EXPECT_EQ(untouched, 'x');
}

TEST(WideCharToMultiByte, too_small_a_target_fails_and_keeps_what_fits) {
    char out[4] = {'x', 'x', 'x', 'x'};
    const Wide text = units({'a', 'b', 0xE9});
    expect_refused(ERROR_INSUFFICIENT_BUFFER,
                   [&] { return WideCharToMultiByte(CP_UTF8, 0, text.data(), 3, out, 3, nullptr, nullptr); });
    EXPECT_EQ(std::string(out, 4), "abxx");
}

TEST(WideCharToMultiByte, too_small_by_one_at_every_length) {
    for (std::size_t length = 1; length <= 40; ++length) {
        const Wide text(length, static_cast<WCHAR>('a'));
        std::string out(length, '?');
        const int count = static_cast<int>(length);
        EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), count, out.data(), count, nullptr, nullptr), count);
        if (length == 1) continue;
        expect_refused(ERROR_INSUFFICIENT_BUFFER, [&] {
            return WideCharToMultiByte(CP_UTF8, 0, text.data(), count, out.data(), count - 1, nullptr, nullptr);
        });
    }
}

TEST(WideCharToMultiByte, wrong_arguments_give_zero) {
    char out[4];
    const LPCWSTR text = NELVA_WIDE("ab");
    const auto convert = [&](LPCWSTR source, int count, LPSTR target, int size) {
        expect_refused(ERROR_INVALID_PARAMETER,
                       [&] { return WideCharToMultiByte(CP_UTF8, 0, source, count, target, size, nullptr, nullptr); });
    };
    convert(nullptr, 2, out, 4);
    convert(nullptr, -1, out, 4);
    convert(text, 0, out, 4);
    convert(text, 2, nullptr, 4);
    convert(text, 2, out, -1);
}

TEST(WideCharToMultiByte, unknown_flag_is_refused) {
    expect_refused(ERROR_INVALID_FLAGS,
                   [] { return WideCharToMultiByte(CP_UTF8, 1, NELVA_WIDE("a"), 1, nullptr, 0, nullptr, nullptr); });
}

TEST(WideCharToMultiByte, strict_flag_refuses_lone_surrogates_only) {
    EXPECT_EQ(to_utf8(units({0xD83D, 0xDE00, 'a'}), WC_ERR_INVALID_CHARS),
              "\xF0\x9F\x98\x80"
              "a");
    const Wide text = units({'a', 0xD83D});
    expect_refused(ERROR_NO_UNICODE_TRANSLATION, [&] {
        return WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), 2, nullptr, 0, nullptr, nullptr);
    });
}

// Blocks of ASCII take a way of their own: every place of another character in and around a block.
TEST(WideCharToMultiByte, other_character_at_every_place_among_ascii) {
    for (std::size_t length = 1; length <= 70; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            Wide text(length, static_cast<WCHAR>('a'));
            text[place] = static_cast<WCHAR>(0x4E00);
            ASSERT_EQ(to_utf8(text), std::string(place, 'a') + "\xE4\xB8\x80" + std::string(length - place - 1, 'a'));
        }
    }
}

TEST(WideCharToMultiByte, surrogate_pair_across_every_place) {
    for (std::size_t place = 0; place <= 40; ++place) {
        const Wide text =
            Wide(place, static_cast<WCHAR>('a')) + units({0xD83D, 0xDE00}) + Wide(20, static_cast<WCHAR>('b'));
        ASSERT_EQ(to_utf8(text), std::string(place, 'a') + "\xF0\x9F\x98\x80" + std::string(20, 'b'));
    }
}

// A plain conversion to compare with, written for clarity.
static std::string expected_utf8(const Wide& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned long c = static_cast<unsigned short>(text[i]);
        if (c >= 0xD800 && c <= 0xDFFF) {
            const bool pair = c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
            c = pair ? 0x10000 + (c - 0xD800) * 0x400 + (text[++i] - 0xDC00) : 0xFFFD;
        }
        const auto tail = [&](int shift) { out += static_cast<char>(0x80 + (c >> shift) % 64); };
        if (c < 0x80) out += static_cast<char>(c);
        if (c >= 0x80 && c < 0x800) out += static_cast<char>(0xC0 + c / 64), tail(0);
        if (c >= 0x800 && c < 0x10000) out += static_cast<char>(0xE0 + c / 4096), tail(6), tail(0);
        if (c >= 0x10000) out += static_cast<char>(0xF0 + c / 262144), tail(12), tail(6), tail(0);
    }
    return out;
}

TEST(WideCharToMultiByte, random_units_as_a_plain_conversion_gives_them) {
    std::mt19937 random(7);
    const unsigned ranges[][2] = {{0, 0x7F}, {0x80, 0x7FF}, {0x800, 0xFFFF}, {0xD700, 0xE0FF}};
    for (int round = 0; round < 2000; ++round) {
        Wide text;
        while (random() % 60 != 0) {
            const auto& range = ranges[random() % 4];
            for (auto run = random() % 30; run > 0; --run)
                text += static_cast<WCHAR>(range[0] + random() % (range[1] - range[0] + 1));
        }
        if (text.empty()) continue;
        ASSERT_EQ(to_utf8(text), expected_utf8(text)) << "round " << round;
        ASSERT_EQ(static_cast<std::size_t>(utf8_size(text)), expected_utf8(text).size());
    }
}

TEST(MultiByteToWideChar, each_length_at_its_ends) {
    EXPECT_EQ(to_wide("\x7F"), units({0x7F}));
    EXPECT_EQ(to_wide("\xC2\x80"), units({0x80}));
    EXPECT_EQ(to_wide("\xDF\xBF"), units({0x7FF}));
    EXPECT_EQ(to_wide("\xE0\xA0\x80"), units({0x800}));
    EXPECT_EQ(to_wide("\xED\x9F\xBF"), units({0xD7FF}));
    EXPECT_EQ(to_wide("\xEE\x80\x80"), units({0xE000}));
    EXPECT_EQ(to_wide("\xEF\xBF\xBF"), units({0xFFFF}));
    EXPECT_EQ(to_wide("\xF0\x90\x80\x80"), units({0xD800, 0xDC00}));
    EXPECT_EQ(to_wide("\xF4\x8F\xBF\xBF"), units({0xDBFF, 0xDFFF}));
}

TEST(MultiByteToWideChar, truncated_sequence_is_one_replacement_character) {
    EXPECT_EQ(to_wide("\xC3"), units({0xFFFD}));
    EXPECT_EQ(to_wide("\xE2\x82"), units({0xFFFD}));
    EXPECT_EQ(to_wide("\xE2\x82z"), units({0xFFFD, 'z'}));
    EXPECT_EQ(to_wide("\xF0\x9F\x98"), units({0xFFFD}));
    EXPECT_EQ(to_wide("\xF0\x9F\x98z"), units({0xFFFD, 'z'}));
    EXPECT_EQ(to_wide("\xF0\x9F\xC3\xA9"), units({0xFFFD, 0xE9}));
}

TEST(MultiByteToWideChar, byte_that_leads_nothing_is_one_replacement_character) {
    EXPECT_EQ(to_wide("\x80\xBF"), units({0xFFFD, 0xFFFD}));
    EXPECT_EQ(to_wide("\xC0\x80"), units({0xFFFD, 0xFFFD}));
    EXPECT_EQ(to_wide("\xC1\xBF"), units({0xFFFD, 0xFFFD}));
    EXPECT_EQ(to_wide("\xF5\x80\x80\x80"), units({0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}));
    EXPECT_EQ(to_wide("\xFE\xFF"), units({0xFFFD, 0xFFFD}));
}

// Windows lets the lead byte take an impossible second byte along; the rest stand alone.
TEST(MultiByteToWideChar, too_long_surrogate_or_too_large_counts_two_bytes_as_one) {
    EXPECT_EQ(to_wide("\xE0\x80\x80"), units({0xFFFD, 0xFFFD}));
    EXPECT_EQ(to_wide("\xE0\x9F\xBF"), units({0xFFFD, 0xFFFD}));
    EXPECT_EQ(to_wide("\xED\xA0\x80"), units({0xFFFD, 0xFFFD}));
    EXPECT_EQ(to_wide("\xF0\x80\x80\x80"), units({0xFFFD, 0xFFFD, 0xFFFD}));
    EXPECT_EQ(to_wide("\xF4\x90\x80\x80"), units({0xFFFD, 0xFFFD, 0xFFFD}));
}

TEST(MultiByteToWideChar, counts_and_terminators) {
    WCHAR out[4];
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "\xC3\xA9z", -1, nullptr, 0), 3);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "\xC3\xA9z", -1, out, 4), 3);
    EXPECT_EQ(Wide(out, 3), units({0xE9, 'z', 0}));
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "", -1, out, 4), 1);
    EXPECT_EQ(to_wide(std::string("a\0b", 3)), units({'a', 0, 'b'}));
}

TEST(MultiByteToWideChar, strict_flag_refuses_what_is_ill_formed) {
    EXPECT_EQ(to_wide("\xEF\xBF\xBD", MB_ERR_INVALID_CHARS), units({0xFFFD}));
    for (const char* text : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xC0\x80", "\xF4\x90\x80\x80"})
        expect_refused(ERROR_NO_UNICODE_TRANSLATION,
                       [&] { return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text, -1, nullptr, 0); });
}

TEST(MultiByteToWideChar, wrong_arguments_give_zero) {
    WCHAR out[4];
    const auto convert = [&](LPCSTR source, int count, LPWSTR target, int size) {
        expect_refused(ERROR_INVALID_PARAMETER,
                       [&] { return MultiByteToWideChar(CP_UTF8, 0, source, count, target, size); });
    };
    convert(nullptr, 2, out, 4);
    convert("ab", 0, out, 4);
    convert("ab", 2, nullptr, 4);
    convert("ab", 2, out, -1);
    expect_refused(ERROR_INSUFFICIENT_BUFFER, [&] { return MultiByteToWideChar(CP_UTF8, 0, "abc", 3, out, 2); });
}

TEST(MultiByteToWideChar, other_character_at_every_place_among_ascii) {
    for (std::size_t length = 0; length <= 70; ++length) {
        for (std::size_t place = 0; place <= length; ++place) {
            const std::string text = std::string(place, 'a') + "\xC3\xA9" + std::string(length - place, 'a');
            Wide expected(length + 1, static_cast<WCHAR>('a'));
            expected[place] = static_cast<WCHAR>(0xE9);
            ASSERT_EQ(to_wide(text), expected);
        }
    }
}

TEST(MultiByteToWideChar, every_unit_but_surrogates_comes_back) {
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        if (unit >= 0xD800 && unit <= 0xDFFF) continue;
        ASSERT_EQ(to_wide(to_utf8(units({unit}))), units({unit}));
    }
}

// Windows documents these as errors; Wine 8 takes them.
#ifndef _WIN32

TEST(WideCharToMultiByte, default_character_is_refused) {
    BOOL used = FALSE;
    expect_refused(ERROR_INVALID_PARAMETER,
                   [] { return WideCharToMultiByte(CP_UTF8, 0, u"a", 1, nullptr, 0, "?", nullptr); });
    expect_refused(ERROR_INVALID_PARAMETER,
                   [&] { return WideCharToMultiByte(CP_UTF8, 0, u"a", 1, nullptr, 0, nullptr, &used); });
}

TEST(WideCharToMultiByte, target_that_is_the_source_is_refused) {
    WCHAR text[4] = u"abc";
    expect_refused(ERROR_INVALID_PARAMETER, [&] {
        return WideCharToMultiByte(CP_UTF8, 0, text, 3, reinterpret_cast<char*>(text), 8, nullptr, nullptr);
    });
}

TEST(WideCharToMultiByte, best_fit_flag_is_refused) {
    expect_refused(ERROR_INVALID_FLAGS,
                   [] { return WideCharToMultiByte(CP_UTF8, 0x400, u"a", 1, nullptr, 0, nullptr, nullptr); });
}

TEST(WideCharToMultiByte, other_code_pages_are_refused) {
    expect_refused(ERROR_INVALID_PARAMETER,
                   [] { return WideCharToMultiByte(1252, 0, u"a", 1, nullptr, 0, nullptr, nullptr); });
}

TEST(MultiByteToWideChar, precomposed_flag_is_refused) {
    expect_refused(ERROR_INVALID_FLAGS, [] { return MultiByteToWideChar(CP_UTF8, 1, "a", 1, nullptr, 0); });
}

TEST(MultiByteToWideChar, surrogate_pair_is_never_cut) {
    WCHAR out[3] = {'x', 'x', 'x'};
    expect_refused(ERROR_INSUFFICIENT_BUFFER,
                   [&] { return MultiByteToWideChar(CP_UTF8, 0, "ab\xF0\x9F\x98\x80", 6, out, 3); });
    EXPECT_EQ(Wide(out, 3), u"abx");
}

#endif
