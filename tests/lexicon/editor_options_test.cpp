// The command line that the settings page gives, and others.
#include "tools/lexicon/editor_options.h"

#include <gtest/gtest.h>

namespace {

using namespace lexicon;

std::string refusal(const std::vector<std::string>& arguments) {
    try {
        parse_editor_options(arguments);
    } catch (const BadOptions& error) {
        return error.what();
    }
    return {};
}

TEST(EditorOptions, settings_page_gives_all_four) {
    const EditorOptions options = parse_editor_options(
        {"--nolistenbutton", "--nodictionaryvoicedropdown", "--lex", "C:\\my words.pls", "--vendor", "NELVA"});
    EXPECT_EQ(options.lexicon, "C:\\my words.pls");
    EXPECT_EQ(options.vendor, "NELVA");
    EXPECT_FALSE(options.can_listen);
    EXPECT_FALSE(options.can_choose_voice);
}

TEST(EditorOptions, lexicon_is_enough) {
    const EditorOptions options = parse_editor_options({"--lex", "--a.pls"});
    EXPECT_EQ(options.lexicon, "--a.pls");
    EXPECT_EQ(options.vendor, "");
    EXPECT_TRUE(options.can_listen);
    EXPECT_TRUE(options.can_choose_voice);
}

TEST(EditorOptions, last_of_several_counts) {
    EXPECT_EQ(parse_editor_options({"--lex", "a", "--lex", "b"}).lexicon, "b");
}

TEST(EditorOptions, wrong_ones_are_told) {
    EXPECT_EQ(refusal({}), "No lexicon is named. Start this program as: nelva-dictionary-editor --lex \"FILE\"");
    EXPECT_EQ(refusal({"--lex", ""}), refusal({}));
    EXPECT_EQ(refusal({"--lex"}), "Behind --lex a value is missing.");
    EXPECT_EQ(refusal({"--lex", "a", "--vendor"}), "Behind --vendor a value is missing.");
    EXPECT_EQ(refusal({"--lx", "a"}), "\"--lx\" is not an option of this program. Is --lex meant?");
    EXPECT_EQ(refusal({"a.pls"}), "\"a.pls\" is not an option of this program.");
}

}  // namespace
