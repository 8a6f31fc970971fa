#include "DSP/WeightingFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Support/AnalogWeightings.h"
#include "Support/ClassOneWeightings.h"

namespace TarvaneKit {
namespace WeightingFilterTests {

using Testing::ClassOneWeighting;
using Testing::classOneWeightings;

constexpr double f1 = WeightingFilter::f1;
constexpr double f2 = WeightingFilter::f2;
constexpr double f3 = WeightingFilter::f3;
constexpr double f4 = WeightingFilter::f4;

// |H| of the analog prototypes (IEC 61672-1, annex E), frequency and corners each passed through
// `axis`; not normalised.
template <class Axis>
double prototype(Weighting weighting, double frequencyHz, Axis axis) {
    const double f = axis(frequencyHz);
    const auto pole = [&](double corner) { return std::hypot(f, axis(corner)); };
    const double c = f * f / (pole(f1) * pole(f1) * pole(f4) * pole(f4));
    return weighting == Weighting::a ? c * f * f / (pole(f2) * pole(f3)) : c;
}

template <class Axis>
double prototypeDB(Weighting weighting, double frequencyHz, Axis axis) {
    return 20.0 *
           std::log10(prototype(weighting, frequencyHz, axis) / prototype(weighting, 1000.0, axis));
}

// To the digits that the corners are given with; table 3 rounds to tenths.
TEST(WeightingFilter, cornersAndTabledGoalsAreThoseOfAnnexE) {
    const Testing::AnalogCorners corners = Testing::analogCorners();
    EXPECT_NEAR(f1 / corners.f1, 1.0, 1e-7);
    EXPECT_NEAR(f2 / corners.f2, 1.0, 1e-7);
    EXPECT_NEAR(f3 / corners.f3, 1.0, 1e-7);
    EXPECT_NEAR(f4 / corners.f4, 1.0, 1e-7);
    for (const ClassOneWeighting& row : classOneWeightings()) {
        const double f = row.exactFrequencyHz;
        EXPECT_NEAR(Testing::analogWeightingDB(Weighting::a, f), row.a, 0.0501) << f;
        EXPECT_NEAR(Testing::analogWeightingDB(Weighting::c, f), row.c, 0.0501) << f;
        EXPECT_EQ(Testing::analogWeightingDB(Weighting::z, f), 0.0);
    }
}

TEST(WeightingFilter, sectionsStandInTheirOrder) {
    const WeightingFilter a(Weighting::a, 48000.0);
    const WeightingFilter c(Weighting::c, 48000.0);
    ASSERT_EQ(a.sections().size(), 6U);
    ASSERT_EQ(c.sections().size(), 4U);
    EXPECT_TRUE(WeightingFilter(Weighting::z, 48000.0).sections().empty());
    const auto pole = [](double corner) {
        const double t = std::tan(std::numbers::pi * corner / 48000.0);
        return (t - 1.0) / (t + 1.0);
    };
    const double cornersA[] = {f1, f1, f4, f4, f2, f3};
    const double cornersC[] = {f1, f1, f4, f4};
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_NEAR(a.sections()[i].a1, pole(cornersA[i]), 1e-12);
        const double sign = i < 4 ? -1.0 : 1.0;
        EXPECT_EQ(a.sections()[i].b1, sign * a.sections()[i].b0);
    }
    for (const double corner : {f1, f2, f3, f4}) {
        EXPECT_NEAR(WeightingFilter::pole(corner, 48000.0), -pole(corner), 1e-12);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(c.sections()[i].a1, pole(cornersC[i]), 1e-12);
        const double sign = i < 2 ? -1.0 : 1.0;
        EXPECT_EQ(c.sections()[i].b1, sign * c.sections()[i].b0);
    }
}

// The definition's figures, to the five digits it gives.
TEST(WeightingFilter, gainAt48kHz) {
    EXPECT_NEAR(WeightingFilter(Weighting::a, 48000.0).gain(), 1.2172e10, 0.00005e10);
    EXPECT_NEAR(WeightingFilter(Weighting::c, 48000.0).gain(), 9.7405e9, 0.00005e9);
    EXPECT_EQ(WeightingFilter(Weighting::z, 48000.0).gain(), 1.0);
}

// The definition's response at 48 kHz, to the second decimal.
TEST(WeightingFilter, responseAt48kHz) {
    const WeightingFilter a(Weighting::a, 48000.0);
    const WeightingFilter c(Weighting::c, 48000.0);
    const struct {
        double frequencyHz, a, c;
    } table[] = {{31.5, -39.56, -3.05},    {100.0, -19.17, -0.32},  {1000.0, 0.00, 0.00},
                 {4000.0, 1.26, -0.53},    {10000.0, -1.90, -3.82}, {16000.0, -9.74, -11.67},
                 {20000.0, -21.09, -23.03}};
    for (const auto& row : table) {
        EXPECT_NEAR(a.responseDB(row.frequencyHz, 48000.0), row.a, 0.005) << row.frequencyHz;
        EXPECT_NEAR(c.responseDB(row.frequencyHz, 48000.0), row.c, 0.005) << row.frequencyHz;
    }
}

// The bilinear transform maps a frequency f to tan(pi f / fs); with each pole prewarped by itself
// the digital curve is the analog one with that axis for the frequency and for the corners.
TEST(WeightingFilter, responseIsTheAnalogPrototypeOnTheBilinearAxis) {
    for (const double sampleRate : {44100.0, 48000.0, 96000.0, 192000.0, 384000.0}) {
        const auto bilinear = [&](double f) { return std::tan(std::numbers::pi * f / sampleRate); };
        for (const Weighting weighting : {Weighting::a, Weighting::c}) {
            const WeightingFilter filter(weighting, sampleRate);
            for (double f = 1.0; f < 0.49 * sampleRate; f *= 1.1) {
                const double expected = prototypeDB(weighting, f, bilinear);
                if (expected > -240.0) {
                    // 1 - cos loses digits towards 0 Hz: 1e-16 / (2 pi f / fs)^2.
                    EXPECT_NEAR(filter.responseDB(f, sampleRate), expected, 1e-5)
                        << rawValue(weighting) << " " << f << " Hz at " << sampleRate;
                }
            }
        }
    }
}

// IEC 61672-1, 5.5 and table 3, class 1, at the exact frequencies below half the sample rate. The
// bilinear curve bends down at the top of the band and stays inside.
TEST(WeightingFilter, staysInsideTheClassOneLimits) {
    for (const double sampleRate : {44100.0, 48000.0, 96000.0, 192000.0, 384000.0}) {
        const WeightingFilter a(Weighting::a, sampleRate);
        const WeightingFilter c(Weighting::c, sampleRate);
        for (const ClassOneWeighting& row : classOneWeightings()) {
            if (row.exactFrequencyHz >= sampleRate / 2.0) {
                continue;
            }
            SCOPED_TRACE(row.nominalFrequencyHz);
            const double departureA = a.responseDB(row.exactFrequencyHz, sampleRate) - row.a;
            const double departureC = c.responseDB(row.exactFrequencyHz, sampleRate) - row.c;
            EXPECT_LE(departureA, row.upperLimit) << sampleRate;
            EXPECT_LE(departureC, row.upperLimit) << sampleRate;
            EXPECT_GE(departureA, row.lowerLimit) << sampleRate;
            EXPECT_GE(departureC, row.lowerLimit) << sampleRate;
        }
    }
}

// How far A bends away from the analog curve, computed from the closed forms of both outside this
// program: it rises by up to `largestRise` about 8 kHz and falls towards half the sample rate.
TEST(WeightingFilter, departsFromTheAnalogCurveAtTheTopOfTheBandAlone) {
    const auto analog = [](double f) { return f; };
    const struct {
        double sampleRate, withinATenthUpToHz, largestRise, at16kHz, at20kHz;
    } table[] = {{44100.0, 2190.0, 0.858, -3.893, -18.971},
                 {48000.0, 2350.0, 0.704, -2.848, -11.579},
                 {96000.0, 4820.0, 0.158, -0.455, -1.344},
                 {192000.0, 10000.0, 0.039, -0.104, -0.295}};
    for (const auto& row : table) {
        SCOPED_TRACE(row.sampleRate);
        const WeightingFilter filter(Weighting::a, row.sampleRate);
        const auto departure = [&](double f) {
            return filter.responseDB(f, row.sampleRate) - prototypeDB(Weighting::a, f, analog);
        };
        double largestRise = 0.0;
        for (double f = 10.0; f < 20000.0; f *= 1.01) {
            largestRise = std::max(largestRise, departure(f));
            if (f < row.withinATenthUpToHz) {
                EXPECT_NEAR(departure(f), 0.0, 0.1) << f;
            }
        }
        EXPECT_NEAR(largestRise, row.largestRise, 0.002);
        EXPECT_NEAR(departure(1000.0 * std::pow(10.0, 1.2)), row.at16kHz, 0.001);
        EXPECT_NEAR(departure(1000.0 * std::pow(10.0, 1.3)), row.at20kHz, 0.001);
    }
}

TEST(WeightingFilter, isZeroDBAt1kHzAtItsOwnSampleRate) {
    for (const double sampleRate : {44100.0, 48000.0, 96000.0, 192000.0, 384000.0}) {
        EXPECT_NEAR(WeightingFilter(Weighting::a, sampleRate).responseDB(1000.0, sampleRate), 0.0,
                    1e-12);
        EXPECT_NEAR(WeightingFilter(Weighting::c, sampleRate).responseDB(1000.0, sampleRate), 0.0,
                    1e-12);
    }
}

TEST(WeightingFilter, zIsZeroDBEverywhereAndLeavesSamplesAlone) {
    WeightingFilter z(Weighting::z, 48000.0);
    for (const double f : {0.0, 1.0, 1000.0, 24000.0, 1e6}) {
        EXPECT_EQ(z.responseDB(f, 48000.0), 0.0);
    }
    EXPECT_EQ(z.process(0.1), 0.1);
    EXPECT_EQ(z.process(-3.0), -3.0);
}

TEST(WeightingFilter, responseReachesNoLowerThanTheFloor) {
    EXPECT_DOUBLE_EQ(WeightingFilter(Weighting::a, 48000.0).responseDB(0.0, 48000.0), -240.0);
    EXPECT_DOUBLE_EQ(WeightingFilter(Weighting::c, 48000.0).responseDB(0.0, 48000.0), -240.0);
}

TEST(WeightingFilter, evaluatesAtTheSampleRateGiven) {
    const WeightingFilter a(Weighting::a, 48000.0);
    EXPECT_DOUBLE_EQ(a.responseDB(2000.0, 96000.0), a.responseDB(1000.0, 48000.0));
}

// Amplitude 1 comes out as amplitude 1 at 1 kHz, where the curves are normalised.
TEST(WeightingFilter, aSineAt1kHzKeepsItsAmplitude) {
    for (const Weighting weighting : allCases<Weighting>()) {
        WeightingFilter filter(weighting, 48000.0);
        double sumOfSquares = 0.0;
        for (int i = 0; i < 96000; ++i) {
            const double y = filter.process(std::sin(2.0 * std::numbers::pi * i / 48.0));
            if (i >= 48000) {
                sumOfSquares += y * y;
            }
        }
        EXPECT_NEAR(sumOfSquares / 48000.0, 0.5, 1e-6) << rawValue(weighting);
    }
}

TEST(WeightingFilter, resetStartsTheStreamAnew) {
    WeightingFilter filter(Weighting::a, 48000.0);
    const double first = filter.process(1.0);
    filter.process(0.5);
    filter.reset();
    EXPECT_EQ(filter.process(1.0), first);
    EXPECT_EQ(filter.sections().front().b0,
              WeightingFilter(Weighting::a, 48000.0).sections()[0].b0);
}

TEST(WeightingFilterDeathTest, aSampleRateIsPositive) {
    EXPECT_DEATH(WeightingFilter(Weighting::a, 0.0), "sampleRate");
    EXPECT_DEATH(WeightingFilter(Weighting::z, -48000.0), "sampleRate");
}

}  // namespace WeightingFilterTests
}  // namespace TarvaneKit
