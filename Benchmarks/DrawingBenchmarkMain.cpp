// Runs the benchmarks of the drawn displays, then prints the table of comparisons: medians of
// the repetitions.

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QString>
#include <cstdio>
#include <map>
#include <optional>

#include "DrawingCost.h"

namespace TarvaneBenchmarks {

namespace {

struct TableRow {
    std::string label;
    std::string fast;
    std::string plain;
    double msToBeat;
};

std::vector<TableRow>& table() {
    static std::vector<TableRow> rows;
    return rows;
}

// Prints as usual and keeps each benchmark's cost: the median where it was repeated.
class CollectingReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const bool isOneOfOne = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
            if (isOneOfOne || run.aggregate_name == "median") {
                costs_[run.run_name.function_name + "/" + run.run_name.args] =
                    run.GetAdjustedCPUTime();
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

void printTable(const CollectingReporter& reporter) {
    std::printf("\n%-40s %9s %9s %9s %9s %9s\n", "medians", "ms", "plain ms", "plain/it", "to beat",
                "it/that");
    for (const TableRow& row : table()) {
        const auto fast = reporter.cost(row.fast);
        const auto plain = reporter.cost(row.plain);
        if (!fast || !plain) {
            continue;
        }
        std::printf("%-40s %9.3f %9.2f %9.1f", row.label.c_str(), *fast, *plain, *plain / *fast);
        if (row.msToBeat > 0.0) {
            std::printf(" %9.2f %9.2f", row.msToBeat, *fast / row.msToBeat);
        }
        std::printf("\n");
    }
}

}  // namespace

void compareDrawing(const DrawingComparison& comparison) {
    const std::string fastName = comparison.name + "/fast";
    const std::string plainName = comparison.name + "/plain";
    for (const DrawingCase& drawing : comparison.cases) {
        const std::vector<std::int64_t> arguments{drawing.width, drawing.height, drawing.scale,
                                                  drawing.count};
        const auto add = [&](const std::string& name, auto function) {
            benchmark::RegisterBenchmark(name.c_str(), function)
                ->Args(arguments)
                ->Unit(benchmark::kMillisecond)
                ->MeasureProcessCPUTime();
        };
        add(fastName, comparison.fast);
        add(plainName, comparison.plain);
        const std::string suffix = QStringLiteral("%1/%2/%3/%4")
                                       .arg(drawing.width)
                                       .arg(drawing.height)
                                       .arg(drawing.scale)
                                       .arg(drawing.count)
                                       .toStdString();
        table().push_back({comparison.name + " " + suffix, fastName + "/" + suffix,
                           plainName + "/" + suffix, drawing.msToBeat});
    }
}

}  // namespace TarvaneBenchmarks

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    TarvaneBenchmarks::CollectingReporter reporter;
    if (benchmark::RunSpecifiedBenchmarks(&reporter) == 0) {
        return 1;
    }
    TarvaneBenchmarks::printTable(reporter);
    return 0;
}
