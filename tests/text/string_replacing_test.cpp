// replace_substr, by hand and against its rule written down step by step.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <stdexcept>
#include <string>

#include "text/qm_stringutils.h"

namespace {

std::string replaced(std::string s, const std::string& from, const std::string& to, int count) {
    replace_substr(s, from, to, count);
    return s;
}

TEST(ReplaceSubstr, all_with_count_zero) {
    EXPECT_EQ(replaced("aXbXc", "X", "--", 0), "a--b--c");
    EXPECT_EQ(replaced("abab", "ab", "", 0), "");
    EXPECT_EQ(replaced("abc", "x", "y", 0), "abc");
    EXPECT_EQ(replaced("", "x", "y", 0), "");
}

TEST(ReplaceSubstr, inserted_text_is_not_searched) {
    EXPECT_EQ(replaced("aa", "a", "aa", 0), "aaaa");
    EXPECT_EQ(replaced("aab", "ab", "b", 0), "ab");  // the seam makes a new "ab", which stays
}

TEST(ReplaceSubstr, occurrences_do_not_overlap) {
    EXPECT_EQ(replaced("aaa", "aa", "b", 0), "ba");
    EXPECT_EQ(replaced("abababa", "aba", "x", 0), "xbx");
}

TEST(ReplaceSubstr, at_most_count) {
    EXPECT_EQ(replaced("aaa", "a", "b", 2), "bba");
    EXPECT_EQ(replaced("aaa", "a", "b", 3), "bbb");
    EXPECT_EQ(replaced("aaa", "a", "a", 2), "aaa");
}

TEST(ReplaceSubstr, more_than_there_are_stops_quietly_when_none_is_left) {
    EXPECT_EQ(replaced("aXa", "a", "b", 5), "bXb");
    EXPECT_EQ(replaced("xyz", "a", "b", 5), "xyz");
}

TEST(ReplaceSubstr, occurrence_left_in_front_throws_after_the_replacements) {
    std::string s = "aXa";
    EXPECT_THROW(replace_substr(s, "a", "a", 5), std::out_of_range);
    EXPECT_EQ(s, "aXa");
    s = "a-a";
    EXPECT_THROW(replace_substr(s, "a", "<a>", 3), std::out_of_range);
    EXPECT_EQ(s, "<a>-<a>");
}

TEST(ReplaceSubstr, occurrence_made_at_a_seam_throws) {
    std::string s = "aab";
    EXPECT_THROW(replace_substr(s, "ab", "b", 2), std::out_of_range);
    EXPECT_EQ(s, "ab");
}

TEST(ReplaceSubstr, exact_count_does_not_throw) { EXPECT_EQ(replaced("a-a", "a", "<a>", 2), "<a>-<a>"); }

TEST(ReplaceSubstr, negative_count_does_nothing) { EXPECT_EQ(replaced("aaa", "a", "b", -1), "aaa"); }

TEST(ReplaceSubstr, empty_from_replaces_nothing_without_count) {
    EXPECT_EQ(replaced("abc", "", "x", 0), "abc");
    EXPECT_EQ(replaced("", "", "x", 0), "");
}

TEST(ReplaceSubstr, empty_from_puts_to_in_front_count_times) {
    EXPECT_EQ(replaced("abc", "", "xy", 2), "xyxyabc");
    EXPECT_EQ(replaced("", "", "x", 3), "xxx");
    EXPECT_EQ(replaced("abc", "", "", 2000000000), "abc");
    EXPECT_EQ(replaced("abc", "", "x", -1), "abc");
}

TEST(ReplaceSubstr, arguments_may_be_the_string_itself) {
    std::string s = "ab";
    replace_substr(s, s, "x", 0);
    EXPECT_EQ(s, "x");
    replace_substr(s, "x", s, 1);
    EXPECT_EQ(s, "x");
}

// The rule with a count, word by word.
void replace_step_by_step(std::string* s, const std::string& from, const std::string& to, int count) {
    std::size_t place = 0;
    for (int i = 0; i < count; ++i) {
        if (s->find(from) == std::string::npos) return;
        place = s->find(from, place);
        s->replace(place, from.size(), to);  // throws std::out_of_range for npos
        place += to.size();
    }
}

std::string outcome(void (*replace)(std::string*, const std::string&, const std::string&, int), std::string s,
                    const std::string& from, const std::string& to, int count) {
    try {
        replace(&s, from, to, count);
    } catch (const std::out_of_range&) {
        s += " thrown";
    }
    return s;
}

TEST(ReplaceSubstr, counted_like_the_rule_for_random_text) {
    std::mt19937 random(5);
    const auto word = [&](unsigned int limit) {
        std::string text;
        for (unsigned int length = random() % limit; length != 0; --length) text += "ab"[random() % 2];
        return text;
    };
    const auto ours = [](std::string* s, const std::string& from, const std::string& to, int count) {
        replace_substr(*s, from, to, count);
    };
    for (int i = 0; i < 100000; ++i) {
        const std::string s = word(14);
        const std::string from = word(5);
        const std::string to = word(4);
        const int count = 1 + static_cast<int>(random() % 5);
        ASSERT_EQ(outcome(ours, s, from, to, count), outcome(replace_step_by_step, s, from, to, count))
            << s << ' ' << from << ' ' << to << ' ' << count;
    }
}

TEST(ReplaceSubstr, repetitive_text_takes_linear_time) {
    // A search that starts anew behind each place would take 10^11 steps here.
    const std::string text(1000000, 'a');
    const std::string from = std::string(200000, 'a') + "b";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(replaced(text, from, "x", 0), text);
    EXPECT_EQ(replaced(text, "a", "bb", 0).size(), 2000000u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
