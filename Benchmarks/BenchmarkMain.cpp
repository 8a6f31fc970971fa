// Runs the benchmarks, then prints the table of comparisons: medians of the repetitions.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FrameCost.h"

namespace TarvaneBenchmarks {

namespace {

std::vector<CostComparison>& comparisons() {
    static std::vector<CostComparison> all;
    return all;
}

// Prints as usual and keeps each benchmark's cost: the median where it was repeated.
class CollectingReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto cost = run.counters.find("ns/frame");
            const bool isOneOfOne = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
            if (cost != run.counters.end() && (isOneOfOne || run.aggregate_name == "median")) {
                costs_[run.run_name.function_name + "/" + run.run_name.args] = cost->second.value;
            }
        }
    }

    std::optional<double> cost(const std::string& name) const {
        const auto found = costs_.find(name);
        return found == costs_.end() ? std::nullopt : std::optional(found->second);
    }

  private:
    std::map<std::string, double> costs_;
};

void printComparisons(const CollectingReporter& reporter) {
    std::printf("\n%-40s %9s %9s %9s %9s %9s %9s\n", "medians", "ns/frame", "share", "plain/it",
                "peer/it", "to beat", "it/that");
    for (const CostComparison& row : comparisons()) {
        const auto cost = reporter.cost(row.name);
        const auto plain = reporter.cost(row.plain);
        if (!cost || !plain) {
            continue;
        }
        std::printf("%-40s %9.2f %8.4f%% %9.1f", row.name.c_str(), *cost,
                    *cost * 1e-7 * benchmarkSampleRate, *plain / *cost);
        if (const auto peer = reporter.cost(row.peer)) {
            std::printf(" %9.1f", *peer / *cost);
        } else {
            std::printf(" %9s", "");
        }
        if (row.nsToBeat) {
            std::printf(" %9.2f %9.2f", *row.nsToBeat, *cost / *row.nsToBeat);
        }
        std::printf("\n");
    }
}

}  // namespace

void compareCost(CostComparison comparison) {
    comparisons().push_back(std::move(comparison));
}

}  // namespace TarvaneBenchmarks

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    TarvaneBenchmarks::CollectingReporter reporter;
    if (benchmark::RunSpecifiedBenchmarks(&reporter) == 0) {
        return 1;
    }
    TarvaneBenchmarks::printComparisons(reporter);
    benchmark::Shutdown();
    return 0;
}
