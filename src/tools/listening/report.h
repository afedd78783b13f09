// What was measured, as text for a person or as a table of a document.
#ifndef NELVA_TOOLS_LISTENING_REPORT_H
#define NELVA_TOOLS_LISTENING_REPORT_H

#include <string>
#include <vector>

#include "tools/listening/measurement.h"

namespace listening {

struct Row {
    const Measurement* measurement;
    Result result;
};

// One voice and its measurements.
struct VoiceReport {
    std::string voice;
    std::string language;
    std::vector<Row> rows;
};

// A line for each measurement, and below it the first `examples` of its faults.
std::string as_text(const VoiceReport& report, std::size_t examples);

// A Markdown table with a row for each voice and a column for each measurement: faults of how many were checked.
std::string as_table(const std::vector<VoiceReport>& reports);

// Whether the voice reads the script of its own language: of ten words at most one is not read.
bool reads_own_script(const VoiceReport& report);

}  // namespace listening

#endif
