// The loudness meter on the signals of EBU Tech 3341 (2016), table 1, and EBU Tech 3342 (2016),
// table 1: a 1 kHz tone in both channels in phase, levels in dBFS of its peak.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "Metrics/LoudnessMeter.h"
#include "Support/TestSignals.h"

namespace TarvaneKit {
namespace LoudnessStandardTests {

using namespace Testing;

struct Part {
    double peakDB;  // minus infinity: silence
    double seconds;
};

constexpr double none = -std::numeric_limits<double>::infinity();
constexpr double toleranceLU = 0.1;  // Tech 3341, 2.9
constexpr double truePeakAbove = 0.2;
constexpr double truePeakBelow = 0.4;

class StereoTone {
  public:
    explicit StereoTone(double sampleRate = 48000) : meter(sampleRate, {1.0, 1.0}) {}

    // The largest and smallest of a metric, read at each 100 ms once `fromSeconds` are over.
    struct Extremes {
        double smallest = std::numeric_limits<double>::infinity();
        double largest = none;
    };

    Extremes play(const std::vector<Part>& parts, LoudnessMetric metric = LoudnessMetric::momentary,
                  double fromSeconds = 1e9) {
        Samples samples;
        for (const Part& part : parts) {
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

TEST_P(LoudnessStandard, tech3341Case1) {
    tone.play({{-23, 20}});
    EXPECT_NEAR(tone.meter.readings().momentary, -23, toleranceLU);
    EXPECT_NEAR(tone.meter.readings().shortTerm, -23, toleranceLU);
    EXPECT_NEAR(tone.meter.readings().integrated, -23, toleranceLU);
}

TEST_P(LoudnessStandard, tech3341Case2) {
    tone.play({{-33, 20}});
    EXPECT_NEAR(tone.meter.readings().momentary, -33, toleranceLU);
    EXPECT_NEAR(tone.meter.readings().shortTerm, -33, toleranceLU);
    EXPECT_NEAR(tone.meter.readings().integrated, -33, toleranceLU);
}

TEST_P(LoudnessStandard, tech3341Case3) {
    tone.play({{-36, 10}, {-23, 60}, {-36, 10}});
    EXPECT_NEAR(tone.meter.readings().integrated, -23, toleranceLU);
}

TEST_P(LoudnessStandard, tech3341Case4) {
    tone.play({{-72, 10}, {-36, 10}, {-23, 60}, {-36, 10}, {-72, 10}});
    EXPECT_NEAR(tone.meter.readings().integrated, -23, toleranceLU);
}

TEST_P(LoudnessStandard, tech3341Case5) {
    tone.play({{-26, 20}, {-20, 20.1}, {-26, 20}});
    EXPECT_NEAR(tone.meter.readings().integrated, -23, toleranceLU);
}

TEST_P(LoudnessStandard, tech3341Case9) {
    std::vector<Part> parts;
    for (int i = 0; i < 5; ++i) {
        parts.push_back({-20, 1.34});
        parts.push_back({-30, 1.66});
    }
    const auto read = tone.play(parts, LoudnessMetric::shortTerm, 3.0);
    EXPECT_NEAR(read.smallest, -23, toleranceLU);
    EXPECT_NEAR(read.largest, -23, toleranceLU);
}

TEST_P(LoudnessStandard, tech3341Case10) {
    for (int i = 0; i < 20; ++i) {
        StereoTone segment(GetParam());
        segment.play({{none, 0.15 * i}, {-23, 3}, {none, 1}});
        EXPECT_NEAR(segment.meter.readings().shortTermMax, -23, toleranceLU) << i;
    }
}

TEST_P(LoudnessStandard, tech3341Case12) {
    std::vector<Part> parts;
    for (int i = 0; i < 25; ++i) {
        parts.push_back({-20, 0.18});
        parts.push_back({-30, 0.22});
    }
    const auto read = tone.play(parts, LoudnessMetric::momentary, 1.0);
    EXPECT_NEAR(read.smallest, -23, toleranceLU);
    EXPECT_NEAR(read.largest, -23, toleranceLU);
}

// A momentary block ends each 100 ms, so that a tone of 400 ms fills none of them wholly when it
// begins up to 50 ms beside a step: 10 log10(350/400) = -0.58 LU at the worst of such places. Of
// the case's starts, at multiples of 20 ms, the worst is 40 ms off: 10 log10(360/400) = -0.46.
TEST_P(LoudnessStandard, tech3341Case13LosesWhatTheStepsCutOff) {
    double largestLoss = 0.0;
    for (int i = 0; i < 20; ++i) {
        StereoTone segment(GetParam());
        segment.play({{none, 0.02 * i}, {-23, 0.4}, {none, 1}});
        const double maximum = segment.meter.readings().momentaryMax;
        const double beside = std::abs(0.02 * i - 0.1 * std::round(0.2 * i));
        EXPECT_NEAR(maximum, -23 + 10 * std::log10((0.4 - beside) / 0.4), toleranceLU) << i;
        largestLoss = std::max(largestLoss, -23 - maximum);
    }
    RecordProperty("largestLossLU", std::to_string(largestLoss));
    std::printf("Tech 3341 case 13 at %.0f Hz: at most %.2f LU low\n", GetParam(), largestLoss);
    EXPECT_LT(largestLoss, 0.46 + 0.02);
}

struct TruePeakCase {
    int number;
    double samplesPerPeriod;
    double amplitude;
    double phaseDegrees;
    double expectedDB;
};

class TruePeakStandard : public testing::TestWithParam<double> {};
INSTANTIATE_TEST_SUITE_P(, TruePeakStandard, testing::Values(44100.0, 48000.0));

TEST_P(TruePeakStandard, tech3341Cases15To19) {
    for (const TruePeakCase& c :
         {TruePeakCase{15, 4, 0.50, 0, -6}, TruePeakCase{16, 4, 0.50, 45, -6},
          TruePeakCase{17, 6, 0.50, 60, -6}, TruePeakCase{18, 8, 0.50, 67.5, -6},
          TruePeakCase{19, 4, 1.41, 45, 3}}) {
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
        EXPECT_GT(meter.readings().truePeakMax, c.expectedDB - truePeakBelow) << c.number;
    }
}

TEST_P(LoudnessStandard, tech3342Cases1To4) {
    const std::vector<std::pair<std::vector<Part>, double>> cases{
        {{{-20, 20}, {-30, 20}}, 10},
        {{{-20, 20}, {-15, 20}}, 5},
        {{{-40, 20}, {-20, 20}}, 20},
        {{{-50, 20}, {-35, 20}, {-20, 20}, {-35, 20}, {-50, 20}}, 15}};
    for (const auto& [parts, expectedLU] : cases) {
        StereoTone steps(GetParam());
        steps.play(parts);
        EXPECT_NEAR(steps.meter.readings().range, expectedLU, 1.0);
    }
}

}  // namespace LoudnessStandardTests
}  // namespace TarvaneKit
