// The replacement-string language, over rich text and over strings.
#include <gtest/gtest.h>

#include <limits>

#include "regexp/replacer.h"
#include "regexp/rich_text.h"

using regexp::invalid_regexp_replacement;
using regexp::RE_Options;

namespace {

// Group 0 is "abcd", group 1 "bc", group 2 took no part, group 3 is empty in front of the "c".
const Speechtext sample = rich() << lang("en") << "ab" << mark("m") << "cd" << lang("de") << "ef";
int sample_groups[] = {0, 4, 1, 3, -1, -1, 2, 2};

std::string rewritten(const Speechtext& rewrite, const SpeechtextTextAttrs* attrs = nullptr,
                      const RE_Options& options = RE_Options(), const Speechtext& text = sample) {
    return shown(make_re_rewrite(text, rewrite, sample_groups, 4, options, attrs));
}

std::string rewritten(const std::string& rewrite, const SpeechtextTextAttrs* attrs = nullptr,
                      const RE_Options& options = RE_Options(), const Speechtext& text = sample) {
    return rewritten(Speechtext(rewrite), attrs, options, text);
}

std::string rewritten_string(const std::string& rewrite) {
    return make_re_rewrite(sample.as_string(), rewrite, sample_groups, 4, RE_Options());
}

// The message of the failure, which must be the same over strings.
std::string failure(const std::string& rewrite) {
    std::string message;
    try {
        return "none: " + rewritten(rewrite);
    } catch (const invalid_regexp_replacement& error) {
        message = error.what();
    }
    try {
        return "none over strings: " + rewritten_string(rewrite);
    } catch (const invalid_regexp_replacement& error) {
        EXPECT_EQ(error.what(), message);
    }
    return message;
}

const SpeechtextTextAttrs en = lang("en");
const SpeechtextTextAttrs fr = lang("fr");

const char unexpected_end[] =
    "unexpected end of replacement string; backslash must be followed by some other character";
const char close_without_open[] = "error in replacement string; '\\}' without preceding '\\{'";
const char unterminated[] = "unexpected end of replacement string: '\\{' without '\\}'";
const char digit_expected[] =
    "unexpected character in replacement string; backslash must be followed by digit (or backslash)";
const char bad_reference[] = "invalid backslash reference in replacement string";
const char wrong_length[] = "error in replacement string; wrong length of \\x, \\u or \\U sequence";
const char non_hexdigit[] =
    "unexpected character in replacement string; non-hexdigit found in \\x, \\u or \\U sequence";
const char missing_function[] = "error in replacement string; function missing in \\{...\\} subexpression";
const char unknown_function[] = "error in replacement string; unknown function in \\{...\\} subexpression";
const char no_equals_sign[] = "error in replacement string; equals sign missing in \\{break\\}";
const char invalid_parameter[] = "error in replacement string; invalid parameter given in \\{break\\}";

}  // namespace

TEST(make_re_rewrite, literal_stands_for_itself) {
    EXPECT_EQ(rewritten("x y"), "x y");
    EXPECT_EQ(rewritten_string("x{}y"), "x{}y");
}

TEST(make_re_rewrite, empty_rewrite_holds_the_given_attributes) {
    EXPECT_EQ(rewritten(""), "");
    EXPECT_EQ(rewritten("", &fr), " fr@0");
}

TEST(make_re_rewrite, group_brings_its_records) {
    EXPECT_EQ(rewritten("\\1"), "bc en@0 <m>@1");
    EXPECT_EQ(rewritten("\\0"), "abcd en@0 <m>@2");
}

TEST(make_re_rewrite, literal_behind_a_group_stands_under_the_groups_attributes) {
    EXPECT_EQ(rewritten("x\\1y", &fr), "xbcy fr@0 en@1 <m>@2");
    EXPECT_EQ(rewritten("x\\1y", &en), "xbcy en@0 <m>@2");
}

TEST(make_re_rewrite, group_takes_one_digit) {
    EXPECT_EQ(rewritten_string("\\10"), "bc0");
    EXPECT_EQ(rewritten_string("\\1\\1"), "bcbc");
}

TEST(make_re_rewrite, group_used_twice_brings_its_marks_twice) {
    EXPECT_EQ(rewritten("\\1\\1"), "bcbc en@0 <m>@1 <m>@3");
}

TEST(make_re_rewrite, group_that_took_no_part_adds_nothing) { EXPECT_EQ(rewritten("[\\2]"), "[]"); }

TEST(make_re_rewrite, empty_group_carries_attributes_but_no_mark) { EXPECT_EQ(rewritten("\\3"), " en@0"); }

TEST(make_re_rewrite, group_at_or_above_the_number_of_groups_fails) {
    EXPECT_EQ(failure("\\4"), bad_reference);
    EXPECT_EQ(failure("\\9"), bad_reference);
}

TEST(make_re_rewrite, group_offsets_behind_the_text_are_out_of_range) {
    int groups[] = {7, 9};
    EXPECT_THROW(make_re_rewrite(sample, Speechtext("\\0"), groups, 1, RE_Options(), nullptr), std::out_of_range);
    EXPECT_THROW(make_re_rewrite(std::string("abc"), std::string("\\0"), groups, 1, RE_Options()), std::out_of_range);
}

TEST(make_re_rewrite, backslash_escape) {
    EXPECT_EQ(rewritten_string("\\\\"), "\\");
    EXPECT_EQ(rewritten_string("\\\\{x}"), "\\{x}");
    EXPECT_EQ(rewritten_string("\\\\1"), "\\1");
}

TEST(make_re_rewrite, numeric_escapes_are_utf8) {
    EXPECT_EQ(rewritten_string("\\u0041b"), "Ab");
    EXPECT_EQ(rewritten_string("\\u00e9"), "\xC3\xA9");
    EXPECT_EQ(rewritten_string("\\u00E9"), "\xC3\xA9");
    EXPECT_EQ(rewritten_string("\\uFFFF"), "\xEF\xBF\xBF");
    EXPECT_EQ(rewritten_string("\\uD800"), "\xED\xA0\x80");
}

TEST(make_re_rewrite, long_numeric_escape_keeps_16_bits) {
    EXPECT_EQ(rewritten_string("\\U00010041"), "A");
    EXPECT_EQ(rewritten_string("\\U0001F600"), "\xEF\x98\x80");
    EXPECT_EQ(rewritten_string("\\UFFFFFFFF"), "\xEF\xBF\xBF");
}

TEST(make_re_rewrite, code_zero_adds_nothing) {
    EXPECT_EQ(rewritten_string("a\\u0000b"), "ab");
    EXPECT_EQ(rewritten_string("a\\U00010000b"), "ab");
}

TEST(make_re_rewrite, escape_is_not_wrapped_by_insert_raw) {
    EXPECT_EQ(rewritten("\\u0041", &en, RE_Options().set_insert_raw(true)), "A en@0");
}

TEST(make_re_rewrite, failures_of_escapes) {
    EXPECT_EQ(failure("\\u12"), wrong_length);
    EXPECT_EQ(failure("\\U1234567"), wrong_length);
    EXPECT_EQ(failure("\\u12G4"), non_hexdigit);
    EXPECT_EQ(failure("\\U0000000g"), non_hexdigit);
    EXPECT_EQ(failure("\\{raw:\\u12\\}34"), wrong_length);
    EXPECT_EQ(failure("\\u00\\\\"), non_hexdigit);
}

TEST(make_re_rewrite, failures_of_elements) {
    EXPECT_EQ(failure("x\\"), unexpected_end);
    EXPECT_EQ(failure("\\{raw:x\\"), unexpected_end);
    EXPECT_EQ(failure("x\\}"), close_without_open);
    EXPECT_EQ(failure("\\{raw:x\\}\\}"), close_without_open);
    EXPECT_EQ(failure("\\{raw:x"), unterminated);
    EXPECT_EQ(failure("\\{raw:\\{raw:x\\}"), unterminated);
    EXPECT_EQ(failure("\\x41"), digit_expected);
    EXPECT_EQ(failure("\\a"), digit_expected);
    EXPECT_EQ(failure("\\ "), digit_expected);
}

TEST(make_re_rewrite, failures_of_functions) {
    EXPECT_EQ(failure("\\{\\}"), missing_function);
    EXPECT_EQ(failure("\\{:x\\}"), missing_function);
    EXPECT_EQ(failure("\\{nosuch:x\\}"), unknown_function);
    EXPECT_EQ(failure("\\{ raw:x\\}"), unknown_function);
    EXPECT_EQ(failure("\\{Raw:x\\}"), unknown_function);
}

TEST(make_re_rewrite, failures_of_break) {
    EXPECT_EQ(failure("\\{break:time\\}"), no_equals_sign);
    EXPECT_EQ(failure("\\{break:pause=1\\}"), invalid_parameter);
    EXPECT_EQ(failure("\\{break:=1\\}"), invalid_parameter);
    EXPECT_EQ(failure("\\{break:Time=1\\}"), invalid_parameter);
}

TEST(make_re_rewrite, failures_in_the_argument_come_first) {
    EXPECT_EQ(failure("\\{nosuch:\\9\\}"), bad_reference);
    EXPECT_EQ(failure("\\{:\\9\\}"), bad_reference);
    EXPECT_EQ(failure("\\{nosuch:\\{:x\\}\\}"), missing_function);
}

TEST(make_re_rewrite, unterminated_subexpression_comes_before_its_inside) {
    EXPECT_EQ(failure("\\{raw:\\9"), unterminated);
    EXPECT_EQ(failure("\\9\\{raw:"), bad_reference);
}

TEST(make_re_rewrite, first_colon_splits_even_inside_braces) {
    EXPECT_EQ(rewritten_string("\\{raw:a:b\\}"), "a:b");
    EXPECT_EQ(failure("\\{a\\{b:c\\}\\}"), close_without_open);
    EXPECT_EQ(failure("\\{raw\\:x\\}"), unknown_function);
}

TEST(make_re_rewrite, uppercase_and_lowercase_keep_the_records) {
    EXPECT_EQ(rewritten("\\{uppercase:ab\\1\\}"), "ABBC en@2 <m>@3");
    EXPECT_EQ(rewritten("\\{lowercase:AB\\1\\}"), "abbc en@2 <m>@3");
    EXPECT_EQ(rewritten_string("<\\{uppercase:\\1\\u00e9\\}>"), "<BC\xC3\x89>");
}

TEST(make_re_rewrite, marks_first_puts_marks_ahead_of_everything) {
    EXPECT_EQ(rewritten("\\{marks-first:\\0\\}"), "abcd <m>@0 en@0");
    EXPECT_EQ(rewritten("\\{marks-first:\\0\\}", &en), "abcd en@0 <m>@0");
}

TEST(make_re_rewrite, marks_first_keeps_their_order) {
    const Speechtext text = rich() << lang("en") << "a" << mark("x") << "b" << mark("y") << "cd";
    EXPECT_EQ(rewritten("\\{marks-first:\\0\\}", nullptr, RE_Options(), text), "abcd <x>@0 <y>@0 en@0");
}

TEST(make_re_rewrite, marks_last_puts_marks_at_the_end) {
    EXPECT_EQ(rewritten("\\{marks-last:\\0\\}"), "abcd en@0 <m>@4");
    EXPECT_EQ(rewritten("x\\{marks-last:\\0\\}", &en), "xabcd en@0 <m>@5");
}

TEST(make_re_rewrite, marks_invisible_hides_marks) {
    EXPECT_EQ(rewritten("\\{marks-invisible:\\0\\}"), "abcd en@0 <m?>@2");
}

TEST(make_re_rewrite, no_marks_and_no_breaks_drop_records) {
    const Speechtext text = rich() << lang("en") << "a" << mark("x") << "b" << pause("p") << "cd";
    EXPECT_EQ(rewritten("\\{no-marks:\\0\\}", nullptr, RE_Options(), text), "abcd en@0 ~p@2");
    EXPECT_EQ(rewritten("\\{no-breaks:\\0\\}", nullptr, RE_Options(), text), "abcd en@0 <x>@1");
}

TEST(make_re_rewrite, functions_nest) {
    EXPECT_EQ(rewritten("\\{uppercase:\\{no-marks:\\0\\}x\\}"), "ABCDX en@0");
    EXPECT_EQ(rewritten_string("\\{no-marks:a\\{no-breaks:b\\{raw:c\\}d\\}e\\}"), "abcde");
}

TEST(make_re_rewrite, function_without_argument_is_empty) {
    EXPECT_EQ(rewritten("\\{no-marks\\}", &en), " en@0");
    EXPECT_EQ(rewritten("\\{uppercase:\\}"), "");
}

TEST(make_re_rewrite, raw_sets_the_flag_on_all_text_attributes) {
    EXPECT_EQ(rewritten("\\{raw:\\0\\}"), "abcd en!@0 <m>@2");
    EXPECT_EQ(rewritten("\\{raw:x\\}", &en), "x en!@0");
}

TEST(make_re_rewrite, literal_behind_raw_is_wrapped_the_other_way) {
    EXPECT_EQ(rewritten("a\\{raw:x\\}b", &en), "axb en@0 en!@1 en@2 en!@3");
}

TEST(make_re_rewrite, insert_raw_wraps_literals) {
    const RE_Options raw = RE_Options().set_insert_raw(true);
    EXPECT_EQ(rewritten("ab", &en, raw), "ab en!@0 en@2");
    EXPECT_EQ(rewritten("ab", nullptr, raw), "ab");
}

TEST(make_re_rewrite, insert_raw_leaves_groups_their_own_flag) {
    const RE_Options raw = RE_Options().set_insert_raw(true);
    EXPECT_EQ(rewritten("\\1", &en, raw), "bc en@0 <m>@1");
    EXPECT_EQ(rewritten("x\\1", &en, raw), "xbc en!@0 en@1 <m>@2");
}

TEST(make_re_rewrite, break_becomes_a_record) {
    EXPECT_EQ(rewritten("a\\{break:strength=weak time=500ms\\}b", &en), "ab en@0 ~weak,500ms@1");
    EXPECT_EQ(rewritten("\\{break\\}"), " ~@0");
    EXPECT_EQ(rewritten("\\{break:\\}", &en), " en@0 ~@0");
}

TEST(make_re_rewrite, break_takes_parameters_from_groups) { EXPECT_EQ(rewritten("\\{break:time=\\1\\}"), " ~,bc@0"); }

TEST(make_re_rewrite, break_parameters_may_repeat_and_be_empty) {
    EXPECT_EQ(rewritten("\\{break: time=1 \t time=2=3 strength=\\}"), " ~,2=3@0");
}

TEST(make_re_rewrite, break_over_a_string_adds_nothing) { EXPECT_EQ(rewritten_string("a\\{break:time=1s\\}b"), "ab"); }

TEST(make_re_rewrite, trailing_marks_that_come_in_again_are_taken_back) {
    EXPECT_EQ(rewritten("\\{marks-last:\\0\\}\\0"), "abcdabcd en@0 <m>@6");
    EXPECT_EQ(rewritten("\\{marks-last:\\0\\}\\{marks-last:\\0\\}"), "abcdabcd en@0 <m>@8");
}

TEST(make_re_rewrite, records_of_the_rewrite_travel_with_its_literals) {
    EXPECT_EQ(rewritten(rich() << lang("fr") << "x" << mark("n") << "y"), "xy fr@0 <n>@1");
    EXPECT_EQ(rewritten(rich() << lang("fr") << "x\\1y"), "xbcy fr@0 en@1 <m>@2 fr@3");
}

TEST(make_re_rewrite, argument_keeps_only_the_attributes_in_force_at_its_start) {
    const Speechtext rewrite = rich() << lang("fr") << "x\\{no-breaks:a" << mark("n") << "b\\}" << mark("o") << "y";
    EXPECT_EQ(rewritten(rewrite), "xaby fr@0 <o>@3");
}

TEST(make_re_rewrite, attributes_with_a_factor_that_is_no_number_come_along_with_each_piece) {
    SpeechtextTextAttrs odd = lang("en");
    odd.prosody.pitch_value = std::numeric_limits<float>::quiet_NaN();
    const Speechtext text = rich() << odd << "abcd";
    EXPECT_EQ(rewritten("\\1\\1", nullptr, RE_Options(), text), "bcbc en@0 en@2");
    EXPECT_EQ(rewritten("x\\1", &odd, RE_Options(), text), "xbc en@0 en@1");
    EXPECT_EQ(rewritten("x\\{no-marks:y\\}", &odd, RE_Options(), text), "xy en@0 en@1");
}

TEST(make_re_rewrite, deep_nesting_needs_no_stack) {
    const std::size_t depth = 100000;
    std::string rewrite;
    for (std::size_t i = 0; i < depth; ++i) rewrite += "\\{raw:";
    rewrite += "x";
    for (std::size_t i = 0; i < depth; ++i) rewrite += "\\}";
    EXPECT_EQ(rewritten(rewrite, &en), "x en!@0");
    EXPECT_EQ(rewritten_string(rewrite), "x");
    rewrite.pop_back();
    EXPECT_EQ(failure(rewrite), unexpected_end);
}

TEST(make_re_rewrite, any_bytes_will_do) {
    const std::string bytes("\xFF\0\x80", 3);
    EXPECT_EQ(rewritten_string(bytes), bytes);
}

TEST(make_re_rewrite_death, case_mapping_of_invalid_text_stops_the_program) {
    EXPECT_DEATH(rewritten("\\{uppercase:\xFF\\}"), "wc != WEOF");
    EXPECT_DEATH(rewritten_string("\\{lowercase:\xFF\\}"), "wc != WEOF");
}
