// The command line of nelva-voices.
#include "tools/host/voices_options.h"

#include <gtest/gtest.h>

namespace {

using namespace host;

std::string error_of(const std::vector<std::string>& arguments) {
    try {
        parse_voices_options(arguments);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "no error";
}

TEST(VoicesOptions, add_takes_languages_and_how_they_sound) {
    const VoicesOptions options = parse_voices_options({"add", "en-us", "--variant", "f2", "--rate=16i-mf", "de"});
    EXPECT_EQ(options.command, VoicesCommand::add);
    EXPECT_EQ(options.names, (std::vector<std::string>{"en-us", "de"}));
    EXPECT_EQ(options.variant, "f2");
    EXPECT_EQ(options.rate, "16i-mf");
}

TEST(VoicesOptions, usual_rate_is_22i) { EXPECT_EQ(parse_voices_options({"add", "de"}).rate, "22i"); }

TEST(VoicesOptions, lexicon_and_editor_may_be_empty) {
    EXPECT_EQ(parse_voices_options({"add", "de"}).lexicon, std::nullopt);
    EXPECT_EQ(parse_voices_options({"add", "de", "--lexicon", ""}).lexicon, "");
    EXPECT_EQ(parse_voices_options({"add", "de", "--editor", "e.exe"}).editor, "e.exe");
}

TEST(VoicesOptions, help_goes_before_everything) {
    EXPECT_EQ(parse_voices_options({"frobnicate", "--help"}).command, VoicesCommand::help);
    EXPECT_EQ(parse_voices_options({"-h"}).command, VoicesCommand::help);
    EXPECT_EQ(parse_voices_options({"help"}).command, VoicesCommand::help);
}

TEST(VoicesOptions, unknown_names_get_did_you_mean) {
    EXPECT_EQ(error_of({"remvoe"}), "unknown command 'remvoe': did you mean 'remove'?");
    EXPECT_EQ(error_of({"frobnicate"}), "unknown command 'frobnicate'; nelva-voices --help shows all");
    EXPECT_EQ(error_of({"add", "de", "--varaint", "f2"}), "unknown option '--varaint': did you mean '--variant'?");
}

TEST(VoicesOptions, each_option_goes_with_its_commands) {
    EXPECT_EQ(error_of({"list", "--variant", "f2"}), "--variant does not go with list");
    EXPECT_EQ(error_of({"list", "--all"}), "--all does not go with list");
    EXPECT_EQ(error_of({"remove", "x", "--lexicon", "y"}), "--lexicon does not go with remove");
    EXPECT_EQ(error_of({"check", "--quiet"}), "no error");
}

TEST(VoicesOptions, values_are_there_or_not_as_the_option_says) {
    EXPECT_EQ(error_of({"add", "de", "--variant"}), "--variant needs a value: --variant NAME");
    EXPECT_EQ(error_of({"add", "--all=yes"}), "--all takes no value");
    EXPECT_EQ(error_of({"add", "de", "--rate", "44"}), "--rate is 22i, 16i-mf or 8v, not '44'");
}

TEST(VoicesOptions, what_does_not_go_together) {
    EXPECT_EQ(error_of({}), "no command: list, add, remove or check; nelva-voices --help shows all");
    EXPECT_EQ(error_of({"add"}), "add which language? give its name, such as en-us, or --all");
    EXPECT_EQ(error_of({"add", "de", "--all"}), "--all or names, not both");
    EXPECT_EQ(error_of({"remove"}), "remove which voice? give its id, or --all; nelva-voices list shows them");
    EXPECT_EQ(error_of({"list", "x"}), "list takes no names");
    EXPECT_EQ(error_of({"add", ""}), "a name is empty");
    EXPECT_EQ(error_of({"add", "de", "fr", "--langid", "409"}), "--name and --langid are for one language at a time");
    EXPECT_EQ(error_of({"add", "--all", "--variant", "f2"}),
              "--variant, --name and --langid are for languages by name: they do not go with --all");
}

TEST(VoicesOptions, the_other_worlds_store_is_told_apart) {
#ifdef _WIN32
    EXPECT_TRUE(parse_voices_options({"list", "--user"}).user);
    EXPECT_EQ(error_of({"list", "--tokens", "x"}),
              "--tokens is for systems without a registry: --user adds voices of your own");
#else
    EXPECT_EQ(parse_voices_options({"list", "--tokens", "x"}).tokens, "x");
    EXPECT_EQ(error_of({"list", "--user"}), "--user is for Windows: --tokens FOLDER names a folder of your own");
#endif
}

}  // namespace
