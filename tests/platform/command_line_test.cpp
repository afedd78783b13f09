// Command lines cut into arguments as Windows' C run-time does it.

#ifndef _WIN32

#include <gtest/gtest.h>

#include "platform/native/command_line.h"

namespace {

using Words = std::vector<std::u16string>;
using platform_native::split_command_line;

}  // namespace

TEST(CommandLine, blanks_and_tabs_separate) {
    EXPECT_EQ(split_command_line(u"prog  a\t b "), (Words{u"prog", u"a", u"b"}));
    EXPECT_EQ(split_command_line(u"prog"), Words{u"prog"});
    EXPECT_EQ(split_command_line(u""), Words{u""});
}

TEST(CommandLine, quotes_group) {
    EXPECT_EQ(split_command_line(uR"("C:\Program Files\ed.exe" --lex "a b.dic" c"d e"f)"),
              (Words{uR"(C:\Program Files\ed.exe)", u"--lex", u"a b.dic", u"cd ef"}));
    EXPECT_EQ(split_command_line(uR"(prog "" x)"), (Words{u"prog", u"", u"x"}));
}

TEST(CommandLine, backslashes_are_plain_but_in_front_of_a_quote) {
    EXPECT_EQ(split_command_line(uR"(prog a\b c\\d e\)"), (Words{u"prog", uR"(a\b)", uR"(c\\d)", uR"(e\)"}));
    EXPECT_EQ(split_command_line(uR"(prog a\"b)"), (Words{u"prog", uR"(a"b)"}));
    EXPECT_EQ(split_command_line(uR"(prog "a\\" b)"), (Words{u"prog", uR"(a\)", u"b"}));
    EXPECT_EQ(split_command_line(uR"(prog "a\\\" b")"), (Words{u"prog", uR"(a\" b)"}));
}

TEST(CommandLine, path_that_ends_in_a_backslash_swallows_the_quote) {
    EXPECT_EQ(split_command_line(uR"(prog "C:\dir\" x)"), (Words{u"prog", uR"(C:\dir" x)"}));
}

TEST(CommandLine, doubled_quote_within_quotes_is_one) {
    EXPECT_EQ(split_command_line(uR"(prog "a""b")"), (Words{u"prog", uR"(a"b)"}));
    EXPECT_EQ(split_command_line(uR"(prog """x""")"), (Words{u"prog", uR"("x")"}));
}

TEST(CommandLine, open_quote_runs_to_the_end) {
    EXPECT_EQ(split_command_line(uR"(prog "a b)"), (Words{u"prog", u"a b"}));
    EXPECT_EQ(split_command_line(uR"("prog a)"), Words{u"prog a"});
}

TEST(CommandLine, backslashes_in_the_program_are_always_plain) {
    EXPECT_EQ(split_command_line(uR"("C:\dir\" x)"), (Words{uR"(C:\dir\)", u"x"}));
    EXPECT_EQ(split_command_line(u" x"), (Words{u"", u"x"}));
}

#endif
