// regexp::RE::FindAndConsume and countall.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "regexp/rich_text.h"

using regexp::Match;
using regexp::RE;
using regexp::RE_Options;

namespace {

// All matches of group 1, each in brackets, and what is left.
std::string scanned(const std::string& pattern, const std::string& text, const RE_Options& options = RE_Options()) {
    RE re(pattern, options);
    Match input(text), group;
    std::string result;
    while (re.FindAndConsume(&input, &group)) result += "[" + group.as_string() + "]";
    return result + input.as_string();
}

// The same with pcrecpp alone, which checks the subject at each call.
std::string scanned_checked(const std::string& pattern, const std::string& text, const RE_Options& options) {
    const pcrecpp::RE re(pattern, options);
    pcrecpp::StringPiece input(text), group;
    std::string result;
    while (re.FindAndConsume(&input, &group)) result += "[" + group.as_string() + "]";
    return result + input.as_string();
}

int position_of(const Match& match) { return (*match.attrsiter)->position; }

}  // namespace

TEST(FindAndConsume, moves_the_input_behind_each_match) { EXPECT_EQ(scanned("(\\w+)", "one two."), "[one][two]."); }

TEST(FindAndConsume, each_call_sees_only_the_remainder) {
    EXPECT_EQ(scanned("^(a)", "aab"), "[a][a]b");
    EXPECT_EQ(scanned("(?<=a)(b)", "ab"), "[b]");
    EXPECT_EQ(scanned("(a)|(?<=a)b", "ab"), "[a]b");
}

TEST(FindAndConsume, without_groups) {
    Match input("xay");
    EXPECT_TRUE(RE("a").FindAndConsume(&input));
    EXPECT_EQ(input.as_string(), "y");
    EXPECT_FALSE(RE("a").FindAndConsume(&input));
    EXPECT_EQ(input.as_string(), "y");
}

TEST(FindAndConsume, over_an_empty_match) {
    Match input;
    EXPECT_TRUE(RE("x?").FindAndConsume(&input));
    EXPECT_FALSE(RE("x").FindAndConsume(&input));
}

TEST(FindAndConsume, failure_changes_nothing) {
    const Speechtext text = rich() << lang("en") << "abc";
    Match input(text), group("kept");
    EXPECT_FALSE(RE("(x)").FindAndConsume(&input, &group));
    EXPECT_EQ(input.as_string(), "abc");
    EXPECT_EQ(input.attrsiter, nullptr);
    EXPECT_EQ(group.as_string(), "kept");
}

TEST(FindAndConsume, more_groups_than_the_pattern_has_is_a_failure) {
    Match input("ab"), first("kept"), second("kept");
    EXPECT_FALSE(RE("(a)").FindAndConsume(&input, &first, &second));
    EXPECT_EQ(input.as_string(), "ab");
    EXPECT_EQ(first.as_string(), "kept");
}

TEST(FindAndConsume, fewer_groups_than_the_pattern_has) {
    Match input("ab"), first;
    EXPECT_TRUE(RE("(a)(b)").FindAndConsume(&input, &first));
    EXPECT_EQ(first.as_string(), "a");
}

TEST(FindAndConsume, every_number_of_groups) {
    const std::string text = "abcdefghijk";
    RE re("(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)");
    Match g[11];
    const auto last_of = [&](std::size_t n, bool matched, const Match& input) {
        EXPECT_TRUE(matched) << n;
        EXPECT_EQ(input.size(), 0) << n;
        for (std::size_t i = 0; i < n; ++i) EXPECT_EQ(g[i].as_string(), text.substr(i, 1)) << n;
        for (Match& group : g) group = Match();
    };
    const auto with = [&](auto&... groups) {
        Match input(text);
        const bool matched = re.FindAndConsume(&input, &groups...);
        last_of(sizeof...(groups), matched, input);
    };
    with();
    with(g[0]);
    with(g[0], g[1]);
    with(g[0], g[1], g[2]);
    with(g[0], g[1], g[2], g[3]);
    with(g[0], g[1], g[2], g[3], g[4]);
    with(g[0], g[1], g[2], g[3], g[4], g[5]);
    with(g[0], g[1], g[2], g[3], g[4], g[5], g[6]);
    with(g[0], g[1], g[2], g[3], g[4], g[5], g[6], g[7]);
    with(g[0], g[1], g[2], g[3], g[4], g[5], g[6], g[7], g[8]);
    with(g[0], g[1], g[2], g[3], g[4], g[5], g[6], g[7], g[8], g[9]);
    with(g[0], g[1], g[2], g[3], g[4], g[5], g[6], g[7], g[8], g[9], g[10]);
}

TEST(FindAndConsume, plain_string_leaves_groups_without_text) {
    const Speechtext text = rich() << lang("en") << "abc";
    Match input("abc"), group(text);
    ASSERT_TRUE(RE("(b)").FindAndConsume(&input, &group));
    EXPECT_FALSE(group.is_speechtext());
    EXPECT_EQ(group.attrsiter, nullptr);
    EXPECT_EQ(group.textattrs(), nullptr);
}

TEST(FindAndConsume, speechtext_gives_groups_and_input_their_records) {
    const Speechtext text = rich() << lang("en") << "ab" << mark("m") << "cd" << mark("n") << "ef";
    Match input(text), first, second;
    ASSERT_TRUE(RE("(b)c(d)").FindAndConsume(&input, &first, &second));
    EXPECT_EQ(first.text, &text);
    EXPECT_EQ(position_of(first), 2);   // starts at 1
    EXPECT_EQ(position_of(second), 4);  // starts at 3
    EXPECT_EQ(position_of(input), 4);   // starts at 4
    EXPECT_EQ(input.as_string(), "ef");
}

TEST(FindAndConsume, record_at_a_groups_start_is_the_groups) {
    const Speechtext text = rich() << lang("en") << "ab" << mark("m") << "cd";
    Match input(text), group;
    ASSERT_TRUE(RE("(c)").FindAndConsume(&input, &group));
    EXPECT_EQ(position_of(group), 2);
    EXPECT_EQ(*input.attrsiter, text.attrs_end());
}

TEST(FindAndConsume, whole_scan_knows_the_records_of_each_match) {
    const Speechtext text = rich() << lang("en") << "one " << mark("m") << "two " << lang("de") << "drei"
                                   << mark("end");
    RE re("(\\w+)");
    Match input(text), group;
    std::string result;
    while (re.FindAndConsume(&input, &group)) result += "[" + shown(group.as_speechtext()) + "]";
    EXPECT_EQ(result, "[one en@0][two en@0 <m>@0][drei de@0]");
}

TEST(FindAndConsume, null_groups_are_passed_over) {
    const Speechtext text = rich() << lang("en") << "ab";
    Match input(text), second;
    EXPECT_TRUE(RE("(a)(b)").FindAndConsume(&input, nullptr, &second));
    EXPECT_EQ(shown(second.as_speechtext()), "b en@0");
    Match plain("ab");
    EXPECT_TRUE(RE("(a)(b)").FindAndConsume(&plain, nullptr, &second));
    EXPECT_EQ(second.as_string(), "b");
}

TEST(FindAndConsume, group_that_took_no_part_is_an_empty_match_without_text) {
    const Speechtext text = rich() << lang("en") << "ab" << mark("m");
    Match input(text), unused(text), used;
    ASSERT_TRUE(RE("(x)?(a)").FindAndConsume(&input, &unused, &used));
    EXPECT_EQ(unused.data(), nullptr);
    EXPECT_EQ(unused.size(), 0);
    EXPECT_FALSE(unused.is_speechtext());
    EXPECT_EQ(unused.attrsiter, nullptr);
    EXPECT_EQ(shown(unused.as_speechtext()), "");
    EXPECT_EQ(shown(used.as_speechtext()), "a en@0");
}

TEST(FindAndConsume, last_group_that_took_no_part) {
    Match input("xab"), first, second("kept");
    ASSERT_TRUE(RE("(a)|(b)").FindAndConsume(&input, &first, &second));
    EXPECT_EQ(first.as_string(), "a");
    EXPECT_EQ(second.data(), nullptr);
}

TEST(FindAndConsume, empty_group_that_took_part_keeps_its_place) {
    const Speechtext text = rich() << lang("en") << "ab";
    Match input(text), group;
    ASSERT_TRUE(RE("()a").FindAndConsume(&input, &group));
    EXPECT_EQ(group.data(), text.data());
    EXPECT_TRUE(group.is_speechtext());
}

TEST(FindAndConsume, input_as_its_own_group_stays_the_input) {
    const Speechtext text = rich() << lang("en") << "abcd";
    Match input(text);
    ASSERT_TRUE(RE("(b)(c)").FindAndConsume(&input, &input, &input));
    EXPECT_EQ(input.as_string(), "d");
    EXPECT_EQ(input.text, &text);
}

TEST(FindAndConsume, match_without_length_leaves_the_input) {
    Match input("ab"), group;
    RE re("(x*)");
    EXPECT_TRUE(re.FindAndConsume(&input, &group));
    EXPECT_TRUE(re.FindAndConsume(&input, &group));
    EXPECT_EQ(input.as_string(), "ab");
}

TEST(FindAndConsume, invalid_utf8_anywhere_matches_nothing) {
    EXPECT_EQ(scanned("(a)", "aa\xFF"), "aa\xFF");
    EXPECT_EQ(scanned("(a)",
                      "\xC3"
                      "aa"),
              "\xC3"
              "aa");
    EXPECT_EQ(scanned("(a)", "a\xED\xA0\x80"), "a\xED\xA0\x80");
}

TEST(FindAndConsume, invalid_utf8_matches_bytewise_with_utf8_off) {
    EXPECT_EQ(scanned("(a)", "aa\xFF", RE_Options().set_utf8(false)), "[a][a]\xFF");
}

TEST(FindAndConsume, stopping_inside_a_character_ends_the_scan) {
    EXPECT_EQ(scanned("(\\C)", "a\xC3\xA9z"), "[a][\xC3]\xA9z");
}

TEST(FindAndConsume, same_results_as_with_a_check_at_each_call) {
    const char* const patterns[] = {"(a)",   "(\\w+)",      "([^a])",         "(.)",      "(\\C)", "(\\C\\C)",
                                    "a(.?)", "(\xC3\xA9+)", "(?i)(\xC3\x89)", "\\b(\\w)", "(\\X)", "(?=\\w\\K(.))\\w"};
    const std::string texts[] = {"",
                                 "banana",
                                 "\xC3\xA9\xC3\xA9 a\xE2\x82\xAC\xF0\x9F\x98\x80z",
                                 "a\xFFz",
                                 "aaa\xC3",
                                 "\x80"
                                 "aaa",
                                 std::string("a\0b\0", 4),
                                 "e\xCC\x81 a"};
    for (const char* pattern : patterns) {
        for (const std::string& text : texts) {
            for (const bool utf8 : {true, false}) {
                const RE_Options options = RE_Options().set_utf8(utf8);
                EXPECT_EQ(scanned(pattern, text, options), scanned_checked(pattern, text, options))
                    << pattern << " over " << text << " with UTF-8 " << utf8;
            }
        }
    }
}

TEST(FindAndConsume, bytewise_scan_does_not_vouch_for_the_remainder) {
    Match input(
        "a\xFF"
        "b");
    EXPECT_TRUE(RE("a", RE_Options().set_utf8(false)).FindAndConsume(&input));
    EXPECT_FALSE(RE("b").FindAndConsume(&input));
}

TEST(FindAndConsume, unchecked_scan_does_not_vouch_for_the_remainder) {
    RE_Options options;
    options.set_all_options(options.all_options() | 0x2000);  // PCRE_NO_UTF8_CHECK
    Match input("ab");
    RE unchecked("a", options);
    EXPECT_TRUE(unchecked.FindAndConsume(&input));
    EXPECT_TRUE(RE("b").FindAndConsume(&input));
}

TEST(FindAndConsume, changed_input_is_checked_anew) {
    const std::string valid = "aaab", invalid = "aab\xFF";
    Match input(valid);
    RE re("a");
    ASSERT_TRUE(re.FindAndConsume(&input));
    input.set(invalid.data(), 4);
    EXPECT_FALSE(re.FindAndConsume(&input));
    input.set(valid.data(), 4);
    ASSERT_TRUE(re.FindAndConsume(&input));
    input.remove_suffix(1);
    EXPECT_TRUE(re.FindAndConsume(&input));
}

TEST(FindAndConsume, group_filled_as_input_before_is_checked_anew) {
    std::string buffer = "ab";
    Match piece(buffer);
    ASSERT_TRUE(RE("a").FindAndConsume(&piece));
    Match input("xb"), other(buffer);
    ASSERT_TRUE(RE("(b)").FindAndConsume(&input, &piece));
    EXPECT_TRUE(RE("b").FindAndConsume(&piece));
    EXPECT_EQ(piece.size(), 0);
}

TEST(FindAndConsume, copied_scan_goes_on) {
    Match input("abab");
    RE re("(a)");
    ASSERT_TRUE(re.FindAndConsume(&input));
    Match copy(input);
    Match group;
    ASSERT_TRUE(re.FindAndConsume(&copy, &group));
    EXPECT_EQ(copy.as_string(), "b");
    EXPECT_EQ(input.as_string(), "bab");
}

TEST(FindAndConsume, takes_linear_time) {
    const std::size_t n = 1 << 18;  // checked at each call, this reads 34 GB
    const Speechtext text = rich() << lang("en") << std::string(n, 'a');
    RE re("(a)");
    Match input(text), group;
    std::size_t count = 0;
    const auto start = std::chrono::steady_clock::now();
    while (re.FindAndConsume(&input, &group)) ++count;
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(count, n);
    EXPECT_LT(taken.count(), 5.0);
}

TEST(countall, counts_the_matches) {
    EXPECT_EQ(RE::countall("an", "banana", RE_Options()), 2);
    EXPECT_EQ(RE::countall(std::string("a"), std::string("banana"), RE_Options()), 3);
    EXPECT_EQ(RE::countall("x", "banana", RE_Options()), 0);
}

TEST(countall, honours_the_options) {
    EXPECT_EQ(RE::countall("A", "banana", RE_Options().set_caseless(true)), 3);
    EXPECT_EQ(RE::countall("A", "banana", RE_Options()), 0);
}

TEST(countall, string_form_reads_behind_a_nul) {
    EXPECT_EQ(RE::countall(std::string("a"), std::string("a\0a", 3), RE_Options()), 2);
}

TEST(countall, empty_matches_behind_the_consumed_ones_do_not_count) {
    EXPECT_EQ(RE::countall("^a", "aaab", RE_Options()), 3);
}

TEST(countall, bad_pattern_and_bad_text_count_nothing) {
    EXPECT_EQ(RE::countall("(", "((", RE_Options()), 0);
    EXPECT_EQ(RE::countall("a",
                           "a\xFF"
                           "a",
                           RE_Options()),
              0);
}
