#include "DSP/SpectrumSmoothing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Core/RealtimeScope.h"
#include "Support/AllNear.h"
#include "Support/EachVectorTarget.h"
#include "Support/RealtimeGuard.h"
#include "Support/ScalarSpectrum.h"
#include "Support/Signals.h"

namespace TarvaneKit {
namespace SpectrumSmoothingTests {

using Testing::PlainAverage;
using Testing::plainSmoothedLevels;
using Testing::roughLevels;

class SpectrumSmoothing : public Testing::EachVectorTarget {
  protected:
    std::vector<double> smooth(const std::vector<double>& levels, TimeWeighting timeWeighting,
                               double elapsedSeconds) {
        std::vector<double> smoothed(levels.size());
        smoothedLevelsDB(levels, average, timeWeighting, elapsedSeconds, smoothed);
        return smoothed;
    }
    SpectrumAverage average;
};

TEST_P(SpectrumSmoothing, isThePlainReadingOfItsFormulas) {
    for (const auto timeWeighting : allCases<TimeWeighting>()) {
        for (const int count : {1, 7, 485, 2048}) {
            average.reset();
            PlainAverage plain;
            for (std::uint32_t frame = 0; frame < 50; ++frame) {
                const auto levels = roughLevels(count, frame);
                const double elapsed = frame % 5 == 4 ? 0.4 : 1.0 / 60.0;
                const auto smoothed = smooth(levels, timeWeighting, elapsed);
                const auto expected = plainSmoothedLevels(levels, plain, timeWeighting, elapsed);
                ASSERT_TRUE(Testing::allNear(smoothed, expected, 1e-9)) << rawValue(timeWeighting);
            }
        }
    }
}

TEST_P(SpectrumSmoothing, theFirstFrameAndOneOfAnotherLengthComeBackAsTheyAre) {
    EXPECT_EQ(smooth({-200.0, 10.0}, TimeWeighting::slow, 0.1), (std::vector{-200.0, 10.0}));
    EXPECT_EQ(smooth({-300.0, 5.0, 0.0}, TimeWeighting::slow, 0.1),
              (std::vector{-300.0, 5.0, 0.0}));
}

// 1 - exp(-t / tau) of a step from nothing to 0 dB.
TEST_P(SpectrumSmoothing, fastAndSlowRiseByTheirTimeConstants) {
    for (const auto& [timeWeighting, tau] :
         {std::pair{TimeWeighting::fast, 0.125}, std::pair{TimeWeighting::slow, 1.0}}) {
        average.reset();
        smooth({-240.0}, timeWeighting, 0.1);
        double level = 0.0;
        for (int i = 0; i < 10; ++i) {
            level = smooth({0.0}, timeWeighting, tau / 10.0)[0];
        }
        EXPECT_NEAR(level, 10.0 * std::log10(1.0 - std::exp(-1.0)), 1e-9);
    }
}

TEST_P(SpectrumSmoothing, theSpacingOfFramesDoesNotMatter) {
    SpectrumAverage coarse{{1.0}, 0.0};
    average = coarse;
    std::vector<double> coarseDB(1);
    smoothedLevelsDB(std::vector{-60.0}, coarse, TimeWeighting::fast, 0.3, coarseDB);
    double fineDB = 0.0;
    for (int i = 0; i < 30; ++i) {
        fineDB = smooth({-60.0}, TimeWeighting::fast, 0.01)[0];
    }
    EXPECT_NEAR(fineDB, coarseDB[0], 1e-9);
}

// (1 * 1 s + 0.1 * 3 s) / 4 s.
TEST_P(SpectrumSmoothing, infiniteIsTheMeanOverTime) {
    smooth({0.0}, TimeWeighting::infinite, 1.0);
    smooth({-10.0}, TimeWeighting::infinite, 2.0);
    EXPECT_NEAR(smooth({-10.0}, TimeWeighting::infinite, 1.0)[0], 10.0 * std::log10(1.3 / 4.0),
                1e-9);
    EXPECT_EQ(average.totalWeight, 4.0);
    average.reset();
    EXPECT_EQ(smooth({-10.0}, TimeWeighting::infinite, 1.0)[0], -10.0);
}

TEST_P(SpectrumSmoothing, infiniteOverNoTimeIsTheNewestFrame) {
    smooth({0.0}, TimeWeighting::infinite, 0.0);
    EXPECT_NEAR(smooth({-10.0}, TimeWeighting::infinite, 0.0)[0], -10.0, 1e-12);
    EXPECT_NEAR(smooth({-10.0}, TimeWeighting::infinite, 1.0)[0], -10.0, 1e-12);
}

TEST_P(SpectrumSmoothing, noneIsTheFrameAlone) {
    smooth({60.0}, TimeWeighting::none, 0.1);
    EXPECT_NEAR(smooth({-90.0}, TimeWeighting::none, 0.1)[0], -90.0, 1e-12);
}

TEST_P(SpectrumSmoothing, endsAtTheFloorExactly) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto timeWeighting : allCases<TimeWeighting>()) {
        average.reset();
        smooth({-240.0, -180.0, nan}, timeWeighting, 0.1);
        EXPECT_EQ(smooth({-240.0, -180.0, nan}, timeWeighting, 0.1), std::vector(3, -120.0));
    }
}

TEST_P(SpectrumSmoothing, allocatesNothingAfterTheFirstFrame) {
    const auto levels = roughLevels(2048);
    std::vector<double> smoothed(levels.size());
    smoothedLevelsDB(levels, average, TimeWeighting::fast, 0.1, smoothed);
    const auto before = TarvaneTests::RealtimeGuard::counts().allocations;
    {
        const RealtimeScope scope;
        smoothedLevelsDB(levels, average, TimeWeighting::fast, 0.1, smoothed);
    }
    EXPECT_EQ(TarvaneTests::RealtimeGuard::counts().allocations, before);
}

TARVANE_ON_EACH_VECTOR_TARGET(SpectrumSmoothing);

}  // namespace SpectrumSmoothingTests
}  // namespace TarvaneKit
