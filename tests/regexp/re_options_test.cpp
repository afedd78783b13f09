// regexp::RE_Options.
#include <gtest/gtest.h>

#include "regexp/regexp.h"

using regexp::RE_Options;

TEST(RE_Options, defaults_are_utf8_and_preserved_marks) {
    const RE_Options options;
    EXPECT_FALSE(options.caseless());
    EXPECT_TRUE(options.utf8());
    EXPECT_FALSE(options.insert_raw());
    EXPECT_TRUE(options.preserve_marks());
    EXPECT_FALSE(options.preserve_breaks());
}

TEST(RE_Options, defaults_leave_the_other_options_to_pcrecpp) {
    const RE_Options options;
    EXPECT_FALSE(options.multiline());
    EXPECT_FALSE(options.dotall());
    EXPECT_EQ(options.match_limit(), 0);
}

TEST(RE_Options, setters_chain) {
    const RE_Options options = RE_Options()
                                   .set_caseless(true)
                                   .set_utf8(false)
                                   .set_insert_raw(true)
                                   .set_preserve_marks(false)
                                   .set_preserve_breaks(true);
    EXPECT_TRUE(options.caseless());
    EXPECT_FALSE(options.utf8());
    EXPECT_TRUE(options.insert_raw());
    EXPECT_FALSE(options.preserve_marks());
    EXPECT_TRUE(options.preserve_breaks());
}

TEST(RE_Options, pcre_options_of_the_defaults_is_utf8_alone) { EXPECT_EQ(RE_Options().pcre_options(), 2048); }

TEST(RE_Options, pcre_options_caseless_is_bit_one) {
    EXPECT_EQ(RE_Options().set_caseless(true).pcre_options(), 2049);
    EXPECT_EQ(RE_Options().set_caseless(true).set_utf8(false).pcre_options(), 1);
}

TEST(RE_Options, pcre_options_takes_no_other_option) {
    RE_Options options;
    options.set_multiline(true).set_dotall(true).set_ungreedy(true);
    EXPECT_EQ(options.pcre_options(), 2048);
}

TEST(RE_Options, passes_where_pcrecpp_takes_options) {
    EXPECT_TRUE(pcrecpp::RE("AB", RE_Options().set_caseless(true)).FullMatch("ab"));
}

TEST(invalid_regexp_replacement, what_is_the_message) {
    const regexp::invalid_regexp_replacement error("bad one");
    const std::logic_error& base = error;
    EXPECT_STREQ(base.what(), "bad one");
}
