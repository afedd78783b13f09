// Which known name somebody meant.
#include "tools/host/suggest.h"

#include <gtest/gtest.h>

namespace {

using host::closest_name;

TEST(Suggest, one_letter_changed_missing_or_too_many) {
    EXPECT_EQ(closest_name("--boice", {"--voice"}), "--voice");
    EXPECT_EQ(closest_name("--voce", {"--voice"}), "--voice");
    EXPECT_EQ(closest_name("--vvoice", {"--voice"}), "--voice");
}

TEST(Suggest, swapped_neighbours_are_one_edit) { EXPECT_EQ(closest_name("rtae", {"rate"}), "rate"); }

TEST(Suggest, case_does_not_count) { EXPECT_EQ(closest_name("RATE", {"rate"}), "rate"); }

TEST(Suggest, nearest_wins_and_of_equals_the_first) {
    EXPECT_EQ(closest_name("--xm", {"--fragments", "--xml"}), "--xml");
    EXPECT_EQ(closest_name("abcdez", {"abcdex", "abcdey"}), "abcdex");
}

TEST(Suggest, too_many_edits_suggest_nothing) {
    EXPECT_EQ(closest_name("banana", {"--voice", "--rate"}), "");
    EXPECT_EQ(closest_name("ab", {"xy"}), "");
    EXPECT_EQ(closest_name("x", {}), "");
}

TEST(Suggest, huge_input_costs_nothing) { EXPECT_EQ(closest_name(std::string(50'000'000, 'x'), {"rate"}), ""); }

}  // namespace
