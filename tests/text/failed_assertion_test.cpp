// The line that a programming error leaves behind.
#include "text/failed_assertion.h"

#include <gtest/gtest.h>

namespace {

TEST(FailedAssertion, names_place_and_condition) {
    EXPECT_DEATH(failed_assertion("a < b", "module", 12, "function"), "module:12: function: Assertion .a < b. failed.");
}

TEST(FailedAssertion, leaves_out_an_unknown_line) {
    EXPECT_DEATH(failed_assertion("a < b", "module", 0, "function"), "module: function: Assertion .a < b. failed.");
}

}  // namespace
