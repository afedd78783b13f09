// Runs the registered benchmarks and prints, behind Google Benchmark's own table, the ratios that are to be kept.
//
//     int main(int argc, char** argv) {
//         return run_benchmarks_and_print_ratios(argc, argv, {{"twice the text", "convert/2", "convert/1", 1, 2.2}});
//     }
//
// Both sides of a ratio come from one run, their repetitions shuffled into each other, and the fastest repetition
// counts: what else the machine does makes repetitions slower and never faster.

#ifndef NELVA_BENCH_RATIO_TABLE_H
#define NELVA_BENCH_RATIO_TABLE_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// time of `numerator` / (`scale` * time of `denominator`), which should be at most `limit`; a limit of 0 means that
// the ratio is only shown.
struct Ratio {
    const char* measure;
    const char* numerator;
    const char* denominator;
    double scale;
    double limit;
};

inline void print_ratio_heading() { std::printf("\n%-76s %9s %9s\n", "ratio", "measured", "at most"); }

// Prints one row; gives whether the limit is kept.
inline bool print_ratio(const char* measure, double value, double limit) {
    std::printf("%-76s %9.2f ", measure, value);
    if (limit == 0) {
        std::printf("%9s\n", "-");
        return true;
    }
    std::printf("%9.2f  %s\n", limit, value <= limit ? "kept" : "MISSED");
    return value <= limit;
}

// Registers what every benchmark with a row in the table needs.
inline benchmark::internal::Benchmark* repeated(benchmark::internal::Benchmark* benchmark) {
    return benchmark->Unit(benchmark::kMicrosecond)
        ->Repetitions(9)
        ->ComputeStatistics(
            "min", [](const std::vector<double>& times) { return *std::min_element(times.begin(), times.end()); })
        ->DisplayAggregatesOnly(true);
}

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "min") {
                fastest_[run.run_name.function_name] = run.GetAdjustedCPUTime();
            }
        }
    }

    // Gives 0 when the benchmark did not run.
    double fastest(const char* benchmark) const {
        const auto found = fastest_.find(benchmark);
        return found == fastest_.end() ? 0 : found->second;
    }

private:
    std::map<std::string, double> fastest_;
};

// Gives 0 when all limits are kept, else 1. Rows of benchmarks that a filter left out are not printed.
inline int run_benchmarks_and_print_ratios(int argc, char** argv, const std::vector<Ratio>& ratios) {
    std::string shuffle = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, shuffle.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    bool kept = true;
    print_ratio_heading();
    for (const Ratio& ratio : ratios) {
        const double numerator = reporter.fastest(ratio.numerator);
        const double denominator = reporter.fastest(ratio.denominator);
        if (numerator == 0 || denominator == 0) continue;
        kept &= print_ratio(ratio.measure, numerator / (ratio.scale * denominator), ratio.limit);
    }
    return kept ? 0 : 1;
}

#endif
