#include <fmt/format.h>

#include <array>
#include <utility>

#include "Chapters.h"
#include "Columns.h"
#include "MeterUnderTest.h"
#include "Support/ClassOneMeter.h"

namespace TarvaneConformance {

namespace {

using namespace TarvaneKit::Testing;

constexpr std::array rates{44100.0, 48000.0, 96000.0, 192000.0};

struct Decay {
    double fast, slow;  // dB per second
};

Decay decayAt(double rate) {
    SPLMetricEngine engine(rate, {});
    feed(engine, wholeCycles(rate, 4000.0, 2.0));
    // The weighting's own tail is over by then.
    feed(engine, silence(rate, 0.25));
    const Decay first{fastLevel(engine, Weighting::a), slowLevel(engine, Weighting::a)};
    constexpr double seconds = 0.5;
    feed(engine, silence(rate, seconds));
    return {(first.fast - fastLevel(engine, Weighting::a)) / seconds,
            (first.slow - slowLevel(engine, Weighting::a)) / seconds};
}

Table decays() {
    Table table{.title = "Decay of Fast and Slow",
                .clause = "5.8.2",
                .text =
                    "A steady tone of 4 kHz stops; how fast the A-weighted level falls over half a "
                    "second, in dB per second. The goal is 10 lg(e) / τ, in tenths.",
                .labelHeading = "Time weighting",
                .unit = "dB/s",
                .columns = rateColumns(rates)};
    Row fast{.label = "Fast",
             .goal = fastDecay.goal,
             .limits = Limits{fastDecay.limits.lower, fastDecay.limits.upper}};
    Row slow{.label = "Slow",
             .goal = slowDecay.goal,
             .limits = Limits{slowDecay.limits.lower, slowDecay.limits.upper}};
    for (const double rate : rates) {
        const Decay decay = decayAt(rate);
        fast.measured.push_back(decay.fast);
        slow.measured.push_back(decay.slow);
    }
    table.rows = {std::move(fast), std::move(slow)};
    return table;
}

Table steadyReadings() {
    Table table{
        .title = "Fast, Slow and the time average on a steady tone",
        .clause = "5.8.3",
        .text = "A steady tone of 1 kHz for 12 s; Slow and the time-averaged level re Fast.",
        .labelHeading = "Difference",
        .unit = "dB",
        .columns = rateColumns(rates)};
    for (const Weighting weighting : TarvaneKit::allCases<Weighting>()) {
        for (const char* const what : {"Slow", "average"}) {
            table.rows.push_back({.label = fmt::format("{}: {} - Fast", rawValue(weighting), what),
                                  .goal = 0.0,
                                  .limits = Limits::within(steadyReadingsLimit)});
        }
    }
    for (const double rate : rates) {
        SPLMetricEngine engine(rate, {});
        const Samples second = sine(rate, 1000.0, 1.0, 1.0);  // whole cycles
        for (int i = 0; i < 12; ++i) {
            if (i == 2) {  // the filters have settled
                averageAll(engine);
            }
            feed(engine, second);
        }
        std::size_t row = 0;
        for (const Weighting weighting : TarvaneKit::allCases<Weighting>()) {
            const double fast = fastLevel(engine, weighting);
            table.rows[row++].measured.push_back(slowLevel(engine, weighting) - fast);
            table.rows[row++].measured.push_back(averageLevel(engine, weighting) - fast);
        }
    }
    return table;
}

}  // namespace

Chapter timeWeightings() {
    return {
        .title = "Time weightings (IEC 61672-1:2013)",
        .text =
            "Fast and Slow average exponentially with 0.125 s and 1 s. A block of samples is one "
            "step of the average, exact in its elapsed time.",
        .tables = {decays(), steadyReadings()}};
}

}  // namespace TarvaneConformance
