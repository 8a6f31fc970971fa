// The loudness meter on the signals of EBU Tech 3341 (2016), table 1, and EBU Tech 3342 (2016),
// table 1: a 1 kHz tone in both channels in phase, levels in dBFS of its peak.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "Metrics/LoudnessMeter.h"
#include "Support/LoudnessCases.h"
#include "Support/TestSignals.h"

namespace TarvaneKit {
namespace LoudnessStandardTests {

using namespace Testing;

class StereoTone {
  public:
    explicit StereoTone(double sampleRate = 48000) : meter(sampleRate, {1.0, 1.0}) {}

    // The largest and smallest of a metric, read at each 100 ms once `fromSeconds` are over.
    struct Extremes {
        double smallest = std::numeric_limits<double>::infinity();
        double largest = silent;
    };

    Extremes play(const Programme& parts, LoudnessMetric metric = LoudnessMetric::momentary,
                  double fromSeconds = 1e9) {
        Samples samples;
        for (const ProgrammePart& part : parts) {
            append(samples,
                   sine(meter.sampleRate(), 1000, std::pow(10.0, part.peakDB / 20), part.seconds));
        }
        Extremes extremes;
        const std::size_t step = static_cast<std::size_t>(meter.sampleRate() / 10);
        for (std::size_t i = 0; i < samples.size(); i += step) {
            const auto block =
                std::span<const float>(samples).subspan(i, std::min(step, samples.size() - i));
            const std::array<std::span<const float>, 2> channels{block, block};
            meter.process(channels);
            const double seconds = static_cast<double>(i + block.size()) / meter.sampleRate();
            if (seconds >= fromSeconds - 1e-9) {
                const double value = meter.value(metric);
                extremes.smallest = std::min(extremes.smallest, value);
                extremes.largest = std::max(extremes.largest, value);
            }
        }
        return extremes;
    }

    LoudnessMeter meter;
};

class LoudnessStandard : public testing::TestWithParam<double> {
  protected:
    StereoTone tone{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(, LoudnessStandard, testing::Values(44100.0, 48000.0, 96000.0));

TEST_P(LoudnessStandard, tech3341Cases1To5) {
    for (const IntegratedCase& c : integratedCases()) {
        SCOPED_TRACE(c.number);
        StereoTone programme(GetParam());
        programme.play(c.programme);
        const LoudnessReadings read = programme.meter.readings();
        EXPECT_NEAR(read.integrated, c.loudness, loudnessToleranceLU);
        if (c.number <= 2) {
            EXPECT_NEAR(read.momentary, c.loudness, loudnessToleranceLU);
            EXPECT_NEAR(read.shortTerm, c.loudness, loudnessToleranceLU);
        }
    }
}

TEST_P(LoudnessStandard, tech3341Case9) {
    const auto read = tone.play(constantShortTerm(), LoudnessMetric::shortTerm, 3.0);
    EXPECT_NEAR(read.smallest, -23, loudnessToleranceLU);
    EXPECT_NEAR(read.largest, -23, loudnessToleranceLU);
}

TEST_P(LoudnessStandard, tech3341Case10) {
    for (int i = 0; i < segmentCount; ++i) {
        StereoTone segment(GetParam());
        segment.play(shortTermSegment(i));
        EXPECT_NEAR(segment.meter.readings().shortTermMax, -23, loudnessToleranceLU) << i;
    }
}

TEST_P(LoudnessStandard, tech3341Case12) {
    const auto read = tone.play(constantMomentary(), LoudnessMetric::momentary, 1.0);
    EXPECT_NEAR(read.smallest, -23, loudnessToleranceLU);
    EXPECT_NEAR(read.largest, -23, loudnessToleranceLU);
}

// A momentary block ends each 100 ms, so that a tone of 400 ms fills none of them wholly when it
// begins up to 50 ms beside a step: 10 log10(350/400) = -0.58 LU at the worst of such places. Of
// the case's starts, at multiples of 20 ms, the worst is 40 ms off: 10 log10(360/400) = -0.46.
TEST_P(LoudnessStandard, tech3341Case13LosesWhatTheStepsCutOff) {
    double largestLoss = 0.0;
    for (int i = 0; i < segmentCount; ++i) {
        StereoTone segment(GetParam());
        segment.play(momentarySegment(i));
        const double maximum = segment.meter.readings().momentaryMax;
        const double beside = std::abs(0.02 * i - 0.1 * std::round(0.2 * i));
        EXPECT_NEAR(maximum, -23 + 10 * std::log10((0.4 - beside) / 0.4), loudnessToleranceLU) << i;
        largestLoss = std::max(largestLoss, -23 - maximum);
    }
    RecordProperty("largestLossLU", std::to_string(largestLoss));
    std::printf("Tech 3341 case 13 at %.0f Hz: at most %.2f LU low\n", GetParam(), largestLoss);
    EXPECT_LT(largestLoss, 0.46 + 0.02);
}

class TruePeakStandard : public testing::TestWithParam<double> {};
INSTANTIATE_TEST_SUITE_P(, TruePeakStandard, testing::Values(44100.0, 48000.0));

TEST_P(TruePeakStandard, tech3341Cases15To19) {
    for (const TruePeakCase& c : truePeakCases) {
        LoudnessMeter meter(GetParam(), {1.0, 1.0});
        const double hertz = GetParam() / c.samplesPerPeriod;
        Samples tone = sine(GetParam(), hertz, c.amplitude, 0.5, c.phaseDegrees);
        for (std::size_t i = 0; i < 4800; ++i) {  // no edges, which have peaks of their own
            const float gain = static_cast<float>(i) / 4800.0F;
            tone[i] *= gain;
            tone[tone.size() - 1 - i] *= gain;
        }
        const std::array<std::span<const float>, 2> channels{tone, tone};
        meter.process(channels);
        EXPECT_LT(meter.readings().truePeakMax, c.expectedDB + truePeakAbove) << c.number;
        EXPECT_GT(meter.readings().truePeakMax, c.expectedDB + truePeakBelow) << c.number;
    }
}

TEST_P(LoudnessStandard, tech3342Cases1To4) {
    for (const RangeCase& c : rangeCases()) {
        StereoTone steps(GetParam());
        steps.play(c.programme);
        EXPECT_NEAR(steps.meter.readings().range, c.rangeLU, rangeToleranceLU) << c.number;
    }
}

}  // namespace LoudnessStandardTests
}  // namespace TarvaneKit
