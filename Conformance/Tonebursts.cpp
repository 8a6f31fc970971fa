#include <fmt/format.h>

#include <array>
#include <cmath>
#include <utility>

#include "Chapters.h"
#include "Columns.h"
#include "MeterUnderTest.h"
#include "Support/ClassOneMeter.h"

namespace TarvaneConformance {

namespace {

using namespace TarvaneKit::Testing;

constexpr std::array rates{44100.0, 48000.0, 96000.0, 192000.0};

// Where in a block the burst begins: a block is one step of the average, so that it matters.
constexpr std::array starts{0, 37, 101, 128, 190, 255};

// Of one burst, re the steady level of its weighting.
struct BurstReadings {
    Range fast, slow;                // A
    std::array<Range, 3> exposures;  // by weighting, re 1 s too
};

void play(BurstReadings& readings, const ClassOneBurst& burst, double rate, int start,
          const SteadyLevels& steady) {
    Samples signal(static_cast<std::size_t>(start));
    append(signal, sine(rate, burstFrequencyHz, 1.0, burst.milliseconds / 1000.0));
    append(signal, silence(rate, 0.5));
    SPLMetricEngine engine(rate, {});
    averageAll(engine);
    Range fast;
    Range slow;
    feed(engine, signal, [&] {
        fast.take(fastLevel(engine, Weighting::a));
        slow.take(slowLevel(engine, Weighting::a));
    });
    readings.fast.take(fast.highest - steady.a);
    readings.slow.take(slow.highest - steady.a);
    const double seconds = static_cast<double>(signal.size()) / rate;
    for (std::size_t w = 0; w < 3; ++w) {
        const Weighting weighting = TarvaneKit::allCases<Weighting>()[w];
        readings.exposures[w].take(averageLevel(engine, weighting) + 10.0 * std::log10(seconds) -
                                   steady.of(weighting));
    }
}

Table burstTable(std::string title, std::string text) {
    return {.title = std::move(title),
            .clause = "5.9, table 4",
            .text = std::move(text),
            .labelHeading = "ms",
            .unit = "dB",
            .columns = {"Lowest", "Highest"},
            .axis = Table::Axis::logarithmic};
}

Row burstRow(const ClassOneBurst& burst, double goal, const AcceptanceLimits& limits,
             const Range& readings) {
    return {.label = fmt::format("{:g}", burst.milliseconds),
            .place = burst.milliseconds,
            .goal = goal,
            .limits = Limits{limits.lower, limits.upper},
            .measured = readings.figures()};
}

std::vector<Table> singleBursts(const std::vector<SteadyLevels>& steady) {
    const std::string across =
        " The lowest and highest of 44.1, 48, 96 and 192 kHz and of six places in a block.";
    Table fast =
        burstTable("Fast: LAFmax - LA",
                   "One burst of 4 kHz; the largest Fast level re the steady one. The goal is "
                   "10 lg(1 - exp(-T/0.125 s))." +
                       across);
    Table slow = burstTable("Slow: LASmax - LA",
                            "The same under Slow; the goal is 10 lg(1 - exp(-T/1 s))." + across);
    std::array<Table, 3> exposures;
    for (std::size_t w = 0; w < 3; ++w) {
        const auto name = rawValue(TarvaneKit::allCases<Weighting>()[w]);
        exposures[w] = burstTable(
            fmt::format("Sound exposure: L{}E - L{}", name, name),
            "The time-averaged level over a burst and the silence about it, re 1 s and the steady "
            "level. The goal is 10 lg(T/1 s), the limits are those of Fast." +
                across);
    }
    for (const ClassOneBurst& burst : classOneBursts) {
        BurstReadings readings;
        for (std::size_t i = 0; i < rates.size(); ++i) {
            for (const int start : starts) {
                play(readings, burst, rates[i], start, steady[i]);
            }
        }
        const double seconds = burst.milliseconds / 1000.0;
        fast.rows.push_back(
            burstRow(burst, burstMaximumDB(seconds, 0.125), burst.fast, readings.fast));
        if (burst.slowGoal) {
            slow.rows.push_back(
                burstRow(burst, burstMaximumDB(seconds, 1.0), burst.slow, readings.slow));
        }
        for (std::size_t w = 0; w < 3; ++w) {
            exposures[w].rows.push_back(
                burstRow(burst, burstExposureDB(seconds), burst.fast, readings.exposures[w]));
        }
    }
    return {std::move(fast), std::move(slow), std::move(exposures[0]), std::move(exposures[1]),
            std::move(exposures[2])};
}

Table repeatedBursts(const std::vector<SteadyLevels>& steady) {
    constexpr int count = 5;
    Table table =
        burstTable("Repeated bursts: LAeq - LA",
                   "Five bursts, each followed by three times its length of silence, and half "
                   "a second of silence behind them; the time-averaged level over all of it. "
                   "The goal is 10 lg(5 T / duration).");
    table.clause = "5.10, table 4";
    table.columns = rateColumns(rates);
    for (const ClassOneBurst& burst : classOneBursts) {
        const double seconds = burst.milliseconds / 1000.0;
        const double duration = count * 4.0 * seconds + 0.5;
        Row row = burstRow(burst, 10.0 * std::log10(count * seconds / duration), burst.fast, {});
        row.measured.clear();
        for (std::size_t i = 0; i < rates.size(); ++i) {
            Samples signal;
            for (int k = 0; k < count; ++k) {
                append(signal, sine(rates[i], burstFrequencyHz, 1.0, seconds));
                append(signal, silence(rates[i], 3.0 * seconds));
            }
            append(signal, silence(rates[i], 0.5));
            SPLMetricEngine engine(rates[i], {});
            averageAll(engine);
            feed(engine, signal);
            row.measured.push_back(averageLevel(engine, Weighting::a) - steady[i].a);
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

}  // namespace

Chapter tonebursts() {
    std::vector<SteadyLevels> steady;
    for (const double rate : rates) {
        steady.push_back(steadyLevels(rate, burstFrequencyHz));
    }
    std::vector<Table> tables = singleBursts(steady);
    tables.push_back(repeatedBursts(steady));
    return {
        .title = "Tonebursts (IEC 61672-1:2013)",
        .text =
            "A burst begins at a zero crossing and has whole cycles where the sample rate gives "
            "them; 0.25 ms is one cycle. A block counts as one step of the average, which costs "
            "Fast up to 0.3 dB at 256 frames and 48 kHz, whichever way the burst lies in it. An "
            "audio server that is told to use blocks of 1024 frames widens that to -1.1 and "
            "+0.4 dB.",
        .tables = std::move(tables)};
}

}  // namespace TarvaneConformance
