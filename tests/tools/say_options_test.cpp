// The command line: what it means, and what is wrong with it.
#include "tools/host/say_options.h"

#include <gtest/gtest.h>

namespace {

using namespace host;
using Arguments = std::vector<std::string>;

std::string error_of(const Arguments& arguments) {
    try {
        parse_say_options(arguments);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "no error";
}

TEST(SayOptions, words_are_joined_by_one_blank) {
    EXPECT_EQ(parse_say_options({"Hello,", "world.", "-o", "a.wav", ""}).text, "Hello, world. ");
}

TEST(SayOptions, without_text_standard_input_is_meant) {
    const SayOptions options = parse_say_options({"-o", "a.wav"});
    EXPECT_FALSE(options.text || options.file || options.fragments);
}

TEST(SayOptions, every_option_sets_its_field) {
    const SayOptions options = parse_say_options({"-f", "in", "--xml", "--voice", "v", "-o", "a", "--events", "e",
                                                  "--ssml", "s", "--rate", "-3", "--volume", "70"});
    EXPECT_EQ(options.file, "in");
    EXPECT_TRUE(options.xml);
    EXPECT_EQ(options.voice, "v");
    EXPECT_EQ(options.audio, "a");
    EXPECT_EQ(options.events, "e");
    EXPECT_EQ(options.ssml, "s");
    EXPECT_EQ(options.rate, -3);
    EXPECT_EQ(options.volume, 70);
    EXPECT_EQ(parse_say_options({"--fragments", "f", "-o", "a"}).fragments, "f");
}

TEST(SayOptions, value_may_stand_behind_an_equals_sign) {
    const SayOptions options = parse_say_options({"--rate=+4", "--voice=a=b", "-o", "x"});
    EXPECT_EQ(options.rate, 4);
    EXPECT_EQ(options.voice, "a=b");
}

TEST(SayOptions, two_dashes_end_the_options) {
    EXPECT_EQ(parse_say_options({"-o", "a", "--", "--xml", "-", "--"}).text, "--xml - --");
}

TEST(SayOptions, value_may_look_like_an_option) { EXPECT_EQ(parse_say_options({"-o", "--xml"}).audio, "--xml"); }

TEST(SayOptions, listing_and_help_need_nothing_else) {
    EXPECT_TRUE(parse_say_options({"--list-voices"}).list_voices);
    EXPECT_TRUE(parse_say_options({"--help"}).help);
    EXPECT_TRUE(parse_say_options({"-h"}).help);
}

TEST(SayOptions, events_or_document_alone_are_enough) {
    EXPECT_NO_THROW(parse_say_options({"--events", "e", "x"}));
    EXPECT_NO_THROW(parse_say_options({"--ssml", "s", "x"}));
}

TEST(SayOptions, unknown_options_get_a_suggestion) {
    EXPECT_EQ(error_of({"--vioce", "x"}), "unknown option '--vioce': did you mean '--voice'?");
    EXPECT_EQ(error_of({"-voice", "x"}), "unknown option '-voice': did you mean '--voice'?");
    EXPECT_EQ(error_of({"--vioce=x"}), "unknown option '--vioce': did you mean '--voice'?");
    EXPECT_EQ(error_of({"--output", "x"}), "unknown option '--output': did you mean '-o'?");
    EXPECT_EQ(
        error_of({"-5", "degrees"}),
        "unknown option '-5': put '--' in front of text that begins with '-'; nelva-say --help shows all options");
}

TEST(SayOptions, missing_and_superfluous_values) {
    EXPECT_EQ(error_of({"-o"}), "-o needs a value: -o FILE.wav");
    EXPECT_EQ(error_of({"--rate"}), "--rate needs a value: --rate N");
    EXPECT_EQ(error_of({"--xml=1"}), "--xml takes no value");
    EXPECT_EQ(error_of({"-o", ""}), "the file name of -o is empty");
    EXPECT_EQ(error_of({"--voice="}), "--voice needs the id of a voice; --list-voices shows them");
}

TEST(SayOptions, numbers_have_the_range_of_what_the_site_answers) {
    EXPECT_EQ(parse_say_options({"-o", "x", "--rate", "-2147483648"}).rate, INT32_MIN);
    EXPECT_EQ(parse_say_options({"-o", "x", "--volume", "65535"}).volume, 65535);
    EXPECT_EQ(error_of({"--rate", "2147483648"}),
              "--rate needs a whole number from -2147483648 to 2147483647, not '2147483648'");
    EXPECT_EQ(error_of({"--volume", "-1"}), "--volume needs a whole number from 0 to 65535, not '-1'");
    for (const char* bad : {"", "x", "1.5", "1e3", " 1", "--1", "+", "0x10", "99999999999999999999"})
        EXPECT_NE(error_of({"--rate", bad}), "no error") << bad;
}

TEST(SayOptions, only_one_source_of_text) {
    EXPECT_EQ(error_of({"-o", "a", "-f", "x", "text"}), "text comes either as TEXT or with -f FILE, not both");
    EXPECT_EQ(error_of({"-o", "a", "--fragments", "x", "text"}),
              "--fragments takes the place of text: leave out either it or the text");
    EXPECT_EQ(error_of({"-o", "a", "--fragments", "x", "--xml"}), "--xml is for text: it does not go with --fragments");
    EXPECT_EQ(error_of({"-o", "a", "-f", "x", "-f", "y"}), "-f is given twice");
    EXPECT_EQ(error_of({"-o", "a", "-"}), "'-' alone is no text: give -f - for standard input");
}

TEST(SayOptions, only_one_output_can_be_standard_output) {
    EXPECT_NO_THROW(parse_say_options({"-o", "-", "--events", "e"}));
    EXPECT_EQ(error_of({"-o", "-", "--events", "-"}), "only one of -o, --events and --ssml can be standard output");
}

TEST(SayOptions, usage_names_every_option) {
    for (const char* name : {"-f FILE", "--xml", "--fragments FILE.json", "--voice ID", "--list-voices", "-o FILE.wav",
                             "--events FILE", "--ssml FILE", "--rate N", "--volume N", "--help"})
        EXPECT_NE(say_usage().find(std::string("\n  ") + name), std::string::npos) << name;
}

TEST(SayOptions, without_an_output_the_audio_is_played) {
    EXPECT_TRUE(parse_say_options({"Hi"}).plays());
    EXPECT_FALSE(parse_say_options({"-o", "a.wav", "Hi"}).plays());
    EXPECT_FALSE(parse_say_options({"--events", "-", "Hi"}).plays());
    EXPECT_FALSE(parse_say_options({"--ssml", "-", "Hi"}).plays());
}

}  // namespace
