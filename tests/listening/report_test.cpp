// What is printed of measurements.
#include "tools/listening/report.h"

#include <gtest/gtest.h>

using namespace listening;

namespace {

const Measurement script = {"script", "words not read", "words", nullptr};
const Measurement waits = {"waits", "first samples", "waits", nullptr};

VoiceReport report_with(std::size_t checked, std::size_t faults) {
    Result result;
    result.checked = checked;
    for (std::size_t i = 0; i < faults; ++i) result.fault("fault " + std::to_string(i));
    Result wait;
    wait.checked = 4;
    wait.figure = "2 ms";
    return {"tones", "en", {{&script, result}, {&waits, wait}}};
}

}  // namespace

TEST(ListeningReport, text_has_a_line_for_each_measurement_and_the_first_examples) {
    EXPECT_EQ(as_text(report_with(30, 3), 2),
              "tones\n"
              "  words not read      3 of 30 words\n"
              "      fault 0\n"
              "      fault 1\n"
              "  first samples       2 ms\n");
}

TEST(ListeningReport, table_has_a_row_for_each_voice) {
    EXPECT_EQ(as_table({report_with(30, 0), report_with(0, 0), report_with(10, 2)}),
              "| Voice | Reads its script | words not read | first samples |\n"
              "|---|---|---|---|\n"
              "| tones | yes | 0 | 2 ms |\n"
              "| tones | yes | - | 2 ms |\n"
              "| tones | **no** | 2 of 10 | 2 ms |\n");
}

TEST(ListeningReport, a_voice_reads_its_script_up_to_one_fault_in_ten) {
    EXPECT_TRUE(reads_own_script(report_with(30, 3)));
    EXPECT_FALSE(reads_own_script(report_with(30, 4)));
}
