// Formatting. See report.h.
#include "tools/listening/report.h"

#include <algorithm>
#include <cstdio>

namespace listening {
namespace {

std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(text.size() < width ? width - text.size() : 1, ' ');
}

std::string verdict(const Result& result) {
    if (result.checked == 0) return "not measured";
    return std::to_string(result.faults) + " of " + std::to_string(result.checked);
}

std::string cell(const Result& result) {
    std::string text = result.checked == 0 ? "-" : result.faults == 0 ? "0" : verdict(result);
    if (!result.figure.empty()) text += result.faults > 0 ? " (" + result.figure + ")" : "";
    return text;
}

// What has no limit is its figure.
bool is_figure_alone(const Measurement& measurement) { return std::string(measurement.name) == "waits"; }

}  // namespace

std::string as_text(const VoiceReport& report, std::size_t examples) {
    std::string text = report.voice + "\n";
    for (const Row& row : report.rows) {
        const std::string counts =
            is_figure_alone(*row.measurement) ? row.result.figure : verdict(row.result) + " " + row.measurement->counts;
        text += "  " + padded(row.measurement->title, 20) + counts;
        if (!is_figure_alone(*row.measurement) && !row.result.figure.empty()) text += ", " + row.result.figure;
        text += "\n";
        const std::size_t shown = std::min(examples, row.result.examples.size());
        for (std::size_t i = 0; i < shown; ++i) text += "      " + row.result.examples[i] + "\n";
    }
    return text;
}

std::string as_table(const std::vector<VoiceReport>& reports) {
    if (reports.empty()) return {};
    std::string head = "| Voice | Reads its script |", line = "|---|---|";
    for (const Row& row : reports[0].rows) {
        head += std::string(" ") + row.measurement->title + " |";
        line += "---|";
    }
    std::string table = head + "\n" + line + "\n";
    for (const VoiceReport& report : reports) {
        table += "| " + report.voice + " | " + (reads_own_script(report) ? "yes" : "**no**") + " |";
        for (const Row& row : report.rows)
            table += " " + (is_figure_alone(*row.measurement) ? row.result.figure : cell(row.result)) + " |";
        table += "\n";
    }
    return table;
}

bool reads_own_script(const VoiceReport& report) {
    return std::all_of(report.rows.begin(), report.rows.end(), [](const Row& row) {
        return std::string(row.measurement->name) != "script" || row.result.faults * 10 <= row.result.checked;
    });
}

}  // namespace listening
