// Answers of the platform's conversion that it does not give on any known system, but may: no bytes for a character,
// or others than UTF-8 has. The linker hands the library's calls to the function below; natively only.
#ifndef _WIN32

#include <gtest/gtest.h>

#include "fragments/fragment_list.h"

namespace {

// What becomes of a unit when it is converted alone, null for the real answer.
const char* (*answer_for)(WCHAR unit) = nullptr;
bool refuses_runs = false;
bool refuses_pairs = false;
long calls = 0;

}  // namespace

int real_conversion(UINT, DWORD, LPCWCH, int, LPSTR, int, LPCCH,
                    LPBOOL) __asm__("__real__Z19WideCharToMultiBytejjPKDsiPciPKcPi");
int wrapped_conversion(UINT, DWORD, LPCWCH, int, LPSTR, int, LPCCH,
                       LPBOOL) __asm__("__wrap__Z19WideCharToMultiBytejjPKDsiPciPKcPi");

int wrapped_conversion(UINT code_page, DWORD flags, LPCWCH source, int count, LPSTR target, int size,
                       LPCCH default_char, LPBOOL used_default_char) {
    ++calls;
    if (refuses_runs && count > 2) return 0;
    if (refuses_pairs && count > 1) return 0;
    const char* answer = answer_for != nullptr && count == 1 ? answer_for(*source) : nullptr;
    if (answer == nullptr) {
        return real_conversion(code_page, flags, source, count, target, size, default_char, used_default_char);
    }
    const std::string bytes = answer;
    bytes.copy(target, static_cast<std::size_t>(size));
    return static_cast<int>(bytes.size());
}

namespace {

using Positions = std::vector<std::uint32_t>;

class PlatformAnswers : public ::testing::Test {
protected:
    void SetUp() override { calls = 0; }
    void TearDown() override {
        answer_for = nullptr;
        refuses_runs = false;
        refuses_pairs = false;
    }
};

bool is_surrogate(WCHAR unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

}  // namespace

TEST_F(PlatformAnswers, unit_without_bytes_is_left_out) {
    answer_for = [](WCHAR unit) { return is_surrogate(unit) ? "" : nullptr; };
    FragmentList list;
    list.speak(Wide{'a', 0xD800, 0xD801, 'b', 0xDC00}, 10);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "ab");
    EXPECT_EQ(walked.positions, (Positions{10, 13, 15}));
}

TEST_F(PlatformAnswers, unit_without_bytes_becomes_the_last_character_all_the_same) {
    // Were it passed over, the full stop would still be the last character, and the blank would end the sentence.
    answer_for = [](WCHAR unit) { return is_surrogate(unit) ? "" : nullptr; };
    FragmentList list;
    list.speak(Wide{'a', '.', 0xD800, ' ', 'b'});
    EXPECT_EQ(walk(list, {"B", "P", "S", nullptr}).records(), "P0@0 {}@0 S0_5@0");
}

TEST_F(PlatformAnswers, unit_may_give_any_number_of_bytes) {
    for (const char* answer : {"?", "??", "????", "??????????"}) {
        static const char* given;
        given = answer;
        answer_for = [](WCHAR unit) { return is_surrogate(unit) ? given : nullptr; };
        FragmentList list;
        list.speak(Wide{'a', 0xD800, 'b'}, 10);
        const Walked walked = walk(list);
        EXPECT_EQ(walked.text.as_string(), std::string("a") + answer + "b");
        Positions expected(std::string(answer).size(), 11);
        expected.insert(expected.begin(), 10);
        expected.insert(expected.end(), {12, 13});
        EXPECT_EQ(walked.positions, expected);
    }
}

TEST_F(PlatformAnswers, units_that_give_many_bytes_do_not_overrun_a_block) {
    answer_for = [](WCHAR unit) { return is_surrogate(unit) ? "0123456789" : nullptr; };
    FragmentList list;
    list.speak(Wide(10000, 0xD800) + Wide(5000, 'a'));
    const Walked walked = walk(list);
    ASSERT_EQ(walked.text.size(), 105000u);
    EXPECT_EQ(walked.positions[99999], 9999u);
    EXPECT_EQ(walked.positions[100000], 10000u);
}

TEST_F(PlatformAnswers, refused_run_is_converted_by_characters) {
    const Wide text = NELVA_WIDE("a\u00E9\u4E00b\U0001F600\u00E9c");
    FragmentList list;
    list.speak(text);
    const Walked runs = walk(list);
    refuses_runs = true;
    const Walked characters = walk(list);
    EXPECT_EQ(characters.text.as_string(),
              "a\xC3\xA9\xE4\xB8\x80"
              "b\xF0\x9F\x98\x80\xC3\xA9"
              "c");
    EXPECT_EQ(characters.text.as_string(), runs.text.as_string());
    EXPECT_EQ(characters.positions, runs.positions);
}

TEST_F(PlatformAnswers, refused_pair_is_passed_by_one_unit_and_its_second_half_stands_alone) {
    refuses_pairs = true;
    FragmentList list;
    list.speak(Wide{'a', 0xD83D, 0xDE00, 'b'}, 10);
    for (const spvtextfrags_to_ssml_opts& opts :
         {spvtextfrags_to_ssml_opts_impl, spvtextfrags_to_ssml_opts{"B", "P", nullptr, ""}}) {
        const Walked walked = walk(list, opts);
        EXPECT_EQ(walked.text.as_string(),
                  "a\xEF\xBF\xBD"
                  "b");
        EXPECT_EQ(walked.positions, (Positions{10, 12, 12, 12, 13, 14}));
    }
}

TEST_F(PlatformAnswers, refused_runs_are_not_tried_over_and_over) {
    refuses_runs = true;
    FragmentList list;
    list.speak(Wide(4000, 0x4E00));
    walk(list);
    EXPECT_LE(calls, 4001);
}

TEST_F(PlatformAnswers, text_is_converted_in_few_calls) {
    FragmentList list;
    list.speak(Wide(100000, 'a'));
    list.speak(Wide(100000, 0x4E00));
    walk(list);
    EXPECT_LE(calls, 30);
}

#endif
