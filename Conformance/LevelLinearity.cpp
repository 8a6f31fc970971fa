#include <fmt/format.h>

#include <array>
#include <cmath>

#include "Chapters.h"
#include "MeterUnderTest.h"
#include "Support/ClassOneMeter.h"

namespace TarvaneConformance {

namespace {

using namespace TarvaneKit::Testing;

constexpr double rate = 48000.0;
constexpr std::array frequenciesHz{31.5, 1000.0, 8000.0};
constexpr int startingLevelDB = -20;
constexpr int lowestLevelDB = -120;

// Steps of 1 dB near either end, of 5 dB between.
std::vector<int> levels() {
    std::vector<int> all;
    for (int level = 0; level >= lowestLevelDB;) {
        all.push_back(level);
        level -= level > -5 || level <= lowestLevelDB + 5 ? 1 : 5;
    }
    return all;
}

// The A-weighted Fast level of a settled tone.
double settledLevel(double frequencyHz, double levelDB) {
    SPLMetricEngine engine(rate, {});
    feed(engine, sine(rate, frequencyHz, std::pow(10.0, levelDB / 20.0), 2.0));
    return fastLevel(engine, Weighting::a);
}

std::vector<std::string> frequencyColumns() {
    return {"31.5 Hz", "1 kHz", "8 kHz"};
}

Table overTheRange(std::vector<std::array<double, 3>>& readings) {
    Table table{
        .title = "Level linearity",
        .clause = "5.6",
        .text =
            "A steady tone at falling levels, its peak in dBFS; the A-weighted Fast level, less "
            "that at -20 dBFS. Samples are 32-bit floats, as the audio server delivers "
            "them; noise and steps of a converter are the device's own.",
        .labelHeading = "dBFS",
        .unit = "dB",
        .columns = frequencyColumns(),
        .axis = Table::Axis::linear};
    std::array<double, 3> start{};
    for (std::size_t i = 0; i < 3; ++i) {
        start[i] = settledLevel(frequenciesHz[i], startingLevelDB);
    }
    for (const int level : levels()) {
        Row row{.label = fmt::format("{}", level),
                .place = static_cast<double>(level),
                .goal = level - startingLevelDB,
                .limits = Limits::within(linearityLimit)};
        std::array<double, 3> read{};
        for (std::size_t i = 0; i < 3; ++i) {
            read[i] = settledLevel(frequenciesHz[i], level);
            row.measured.push_back(read[i] - start[i]);
        }
        readings.push_back(read);
        table.rows.push_back(std::move(row));
    }
    return table;
}

// Of all pairs of the levels above that are so many dB apart, the change that is furthest off.
Table ofChanges(const std::vector<std::array<double, 3>>& readings) {
    Table table{
        .title = "Changes of level",
        .clause = "5.6",
        .text =
            "Of all changes of that size between the levels above, the one whose reading is "
            "furthest off.",
        .labelHeading = "Change, dB",
        .unit = "dB",
        .columns = frequencyColumns()};
    const std::vector<int> all = levels();
    for (int change = 1; change <= 10; ++change) {
        Row row{.label = fmt::format("{}", change),
                .place = static_cast<double>(change),
                .goal = change,
                .limits = Limits::within(levelChangeLimit),
                .measured = std::vector<double>(3, change)};
        for (std::size_t from = 0; from < all.size(); ++from) {
            for (std::size_t to = from + 1; to < all.size(); ++to) {
                for (std::size_t i = 0; i < 3 && all[from] - all[to] == change; ++i) {
                    const double read = readings[from][i] - readings[to][i];
                    if (std::abs(read - change) > std::abs(row.measured[i] - change)) {
                        row.measured[i] = read;
                    }
                }
            }
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

Table ofSilence() {
    SPLMetricEngine engine(rate, {});
    feed(engine, silence(rate, 1.0));
    Table table{.title = "Self-generated noise",
                .clause = "5.7",
                .text = "Digital silence. The meter has no noise of its own: it reads its floor.",
                .labelHeading = "Reading",
                .unit = "dBFS",
                .columns = {"Fast"},
                .decimals = 1,
                .axis = Table::Axis::none};
    for (const Weighting weighting : TarvaneKit::allCases<Weighting>()) {
        table.rows.push_back({.label = std::string(rawValue(weighting)),
                              .measured = {fastLevel(engine, weighting)}});
    }
    return table;
}

}  // namespace

Chapter levelLinearity() {
    std::vector<std::array<double, 3>> readings;
    Table range = overTheRange(readings);
    return {.title = "Level linearity and noise (IEC 61672-1:2013)",
            .text =
                "All arithmetic behind the samples is done in 64 bits, so that the meter is linear "
                "far beyond any converter.",
            .tables = {std::move(range), ofChanges(readings), ofSilence()}};
}

}  // namespace TarvaneConformance
