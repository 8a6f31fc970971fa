#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "Chapters.h"
#include "Columns.h"
#include "MeterUnderTest.h"
#include "Support/AnalogWeightings.h"
#include "Support/ClassOneWeightings.h"

namespace TarvaneConformance {

namespace {

constexpr std::array rates{44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0};

Table tableOf(Weighting weighting) {
    Table table{
        .title = fmt::format("{} weighting", rawValue(weighting)),
        .clause = "5.5, table 3, annex E",
        .text =
            "A steady sine at the exact third-octave frequency, 1000 · 10^(n/10) Hz; the "
            "time-averaged level over whole cycles, in dB re that at 1 kHz. The goal is that "
            "of the formulas.",
        .labelHeading = "Hz",
        .unit = "dB",
        .axis = Table::Axis::logarithmic};
    table.columns = rateColumns(rates);
    return table;
}

}  // namespace

Chapter frequencyWeightings() {
    std::vector<Table> tables;
    for (const Weighting weighting : TarvaneKit::allCases<Weighting>()) {
        tables.push_back(tableOf(weighting));
    }
    std::vector<SteadyLevels> references;
    for (const double rate : rates) {
        references.push_back(steadyLevels(rate, 1000.0));
    }
    double lowestAt20kHz = 0.0;
    double highest = 0.0;
    for (const auto& entry : TarvaneKit::Testing::classOneWeightings()) {
        const double f = entry.exactFrequencyHz;
        std::vector<SteadyLevels> levels;
        for (const double rate : rates) {
            levels.push_back(steadyLevels(rate, f));
        }
        for (std::size_t w = 0; w < tables.size(); ++w) {
            const Weighting weighting = TarvaneKit::allCases<Weighting>()[w];
            Row row{.label = fmt::format("{:g}", entry.nominalFrequencyHz),
                    .place = f,
                    .goal = TarvaneKit::Testing::analogWeightingDB(weighting, f),
                    .limits = Limits{entry.lowerLimit, entry.upperLimit}};
            for (std::size_t i = 0; i < levels.size(); ++i) {
                row.measured.push_back(levels[i].of(weighting) - references[i].of(weighting));
                highest = std::max(highest, row.measured.back() - *row.goal);
            }
            if (weighting == Weighting::a) {
                lowestAt20kHz = row.measured.front() - *row.goal;  // the last row's stays
            }
            tables[w].rows.push_back(std::move(row));
        }
    }
    return {
        .title = "Frequency weightings (IEC 61672-1:2013)",
        .text = fmt::format(
            "A and C are the bilinear transforms of the analog curves, each pole prewarped by "
            "itself. Towards half the sample rate such a curve bends away from the analog one: at "
            "low rates it first rises, by {:.2f} dB at most, and then falls. At 44.1 kHz A is "
            "{:.1f} dB low at 20 kHz, where class 1 sets no lower limit.",
            highest, -lowestAt20kHz),
        .tables = std::move(tables)};
}

}  // namespace TarvaneConformance
