// Prints the usual table and keeps the medians for a table of one's own.
#pragma once

#include <benchmark/benchmark.h>

#include <limits>
#include <map>
#include <vector>

#include "base/text.h"

namespace tb {

class MedianReporter : public benchmark::ConsoleReporter {
public:
    MedianReporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") m_Medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
        }
    }
    // Nanoseconds of the benchmark of that name; not a number when it did not run.
    double Median(const Text& name) const {
        const auto found = m_Medians.find(name);
        return found == m_Medians.end() ? std::numeric_limits<double>::quiet_NaN() : found->second;
    }

private:
    std::map<Text, double> m_Medians;
};

// Five repetitions of `function(state, kind)` under the name `what` + "/" + `kind`.
template <typename Function>
void Register(const Text& what, const Text& kind, Function function) {
    benchmark::RegisterBenchmark((what + "/" + kind).c_str(), function, kind)
        ->MinTime(0.2)
        ->Repetitions(5)
        ->ReportAggregatesOnly();
}

}  // namespace tb
