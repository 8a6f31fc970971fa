#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Chapters.h"
#include "Columns.h"
#include "Core/UUID.h"
#include "MeterUnderTest.h"
#include "Metering/ChannelProcessor.h"
#include "Metrics/InputClipState.h"
#include "Support/ClassOneMeter.h"

namespace TarvaneConformance {

namespace {

using namespace TarvaneKit::Testing;

constexpr std::array rates{44100.0, 48000.0, 96000.0, 192000.0};

std::string shapeOf(const ClassOnePeak& peak, double sign) {
    return peak.cycles == 1.0 ? fmt::format("one cycle of {:g} Hz", peak.frequencyHz)
                              : fmt::format("{} half-cycle of {:g} Hz",
                                            sign > 0.0 ? "positive" : "negative", peak.frequencyHz);
}

double cPeak(const ClassOnePeak& peak, double sign, double rate) {
    Samples signal = silence(rate, 0.01);
    append(signal, sine(rate, peak.frequencyHz, sign, peak.cycles / peak.frequencyHz));
    append(signal, silence(rate, 0.2));
    SPLMetricEngine engine(rate, {});
    feed(engine, signal);
    return engine.value(SPLMetric::peak(Weighting::c));
}

Table peaks() {
    Table table{.title = "C-weighted peak level",
                .clause = "5.13, table 5",
                .text =
                    "A single cycle or half-cycle; LCpeak less the steady C-weighted level of that "
                    "frequency.",
                .labelHeading = "Signal",
                .unit = "dB"};
    table.columns = rateColumns(rates);
    for (const ClassOnePeak& peak : classOnePeaks) {
        for (const double sign : {1.0, -1.0}) {
            if (peak.cycles == 1.0 && sign < 0.0) {
                continue;
            }
            Row row{.label = shapeOf(peak, sign),
                    .goal = peak.goal,
                    .limits = Limits::within(peak.limit)};
            for (const double rate : rates) {
                row.measured.push_back(cPeak(peak, sign, rate) -
                                       steadyLevels(rate, peak.frequencyHz).c);
            }
            table.rows.push_back(std::move(row));
        }
    }
    return table;
}

constexpr double overloadRate = 48000.0;

bool overloads(double frequencyHz, double sign, double levelDB) {
    Samples signal = silence(overloadRate, 0.01);
    append(signal, sine(overloadRate, frequencyHz, sign * std::pow(10.0, levelDB / 20.0),
                        0.5 / frequencyHz));
    append(signal, silence(overloadRate, 0.01));
    TarvaneApp::ChannelProcessor processor(TarvaneKit::UUID::random(), false);
    TarvaneApp::ChannelProcessor::Configuration configuration;
    configuration.sampleRate = overloadRate;
    processor.configure(configuration);
    float peak = 0.0F;
    for (std::size_t i = 0; i < signal.size(); i += blockLength) {
        processor.ingest(&signal[i], nullptr,
                         static_cast<int>(std::min(blockLength, signal.size() - i)));
        peak = std::max(peak, processor.analyze({}, {}).peak);
    }
    return peak >= TarvaneKit::inputClipThreshold;
}

// The level of a half-cycle's peak that first lights the badge.
double overloadLevel(double frequencyHz, double sign) {
    double below = -1.0;
    double above = 1.0;
    while (above - below > 1e-4) {
        const double middle = (below + above) / 2.0;
        (overloads(frequencyHz, sign, middle) ? above : below) = middle;
    }
    return above;
}

Table overload() {
    Table table{
        .title = "Overload indication",
        .clause = "5.11",
        .text =
            "A single half-cycle of a sine that rises until CLIP lights; the level of its peak "
            "in dBFS, at 48 kHz. The badge latches until it is reset.",
        .labelHeading = "Hz",
        .unit = "dBFS",
        .columns = {"Positive", "Negative", "Difference"},
        .axis = Table::Axis::none};
    for (const double frequencyHz : {31.5, 1000.0, 4000.0}) {
        const double positive = overloadLevel(frequencyHz, 1.0);
        const double negative = overloadLevel(frequencyHz, -1.0);
        table.rows.push_back({.label = fmt::format("{:g}", frequencyHz),
                              .measured = {positive, negative, positive - negative}});
    }
    return table;
}

}  // namespace

Chapter peaksAndOverload() {
    return {
        .title = "Peak levels and overload (IEC 61672-1:2013)",
        .text =
            "The peak is that of the samples: between two of them it can't look. The badge of a "
            "channel watches the samples as they arrive, ahead of any weighting.",
        .tables = {peaks(), overload()}};
}

}  // namespace TarvaneConformance
