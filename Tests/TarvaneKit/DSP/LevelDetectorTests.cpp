#include "DSP/LevelDetector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace TarvaneKit {
namespace LevelDetectorTests {

constexpr double sampleRate = 48000.0;

std::vector<double> constant(double amplitude, int count) {
    return std::vector<double>(static_cast<std::size_t>(count), amplitude);
}

TEST(LevelDetector, silenceReadsTheFloor) {
    for (const TimeWeighting timeWeighting : allCases<TimeWeighting>()) {
        LevelDetector detector(timeWeighting, sampleRate);
        EXPECT_EQ(detector.levelDB(), -240.0);
        detector.processBlock(constant(0.0, 256));
        EXPECT_EQ(detector.levelDB(), -240.0);
        detector.processBlock(constant(1.0, 256));
        detector.reset();
        detector.processBlock(constant(0.0, 256));
        EXPECT_EQ(detector.levelDB(), -240.0);
    }
}

TEST(LevelDetector, anEmptyBlockChangesNothing) {
    for (const TimeWeighting timeWeighting : allCases<TimeWeighting>()) {
        LevelDetector detector(timeWeighting, sampleRate);
        detector.processBlock(constant(0.5, 100));
        const double meanSquare = detector.meanSquare();
        const double sampleCount = detector.sampleCount();
        detector.processBlock({});
        EXPECT_EQ(detector.meanSquare(), meanSquare);
        EXPECT_EQ(detector.sampleCount(), sampleCount);
    }
}

TEST(LevelDetector, noneIsTheMeanSquareOfTheLastBlock) {
    LevelDetector detector(TimeWeighting::none, sampleRate);
    detector.processBlock(constant(1.0, 100));
    detector.processBlock(std::vector{0.3, -0.5, 0.1, 0.0});
    EXPECT_DOUBLE_EQ(detector.meanSquare(), (0.09 + 0.25 + 0.01) / 4.0);
}

TEST(LevelDetector, infiniteIsTheMeanSinceTheReset) {
    LevelDetector detector(TimeWeighting::infinite, sampleRate);
    const std::vector block{0.3, -0.5, 0.1, 0.0};
    detector.processBlock(block);
    const double once = detector.levelDB();
    detector.processBlock(block);
    EXPECT_NEAR(detector.levelDB(), once, 1e-12);
    EXPECT_EQ(detector.sampleCount(), 8.0);
    detector.processBlock(constant(1.0, 12));
    EXPECT_NEAR(detector.meanSquare(), (2.0 * 0.35 + 12.0) / 20.0, 1e-15);
    detector.reset();
    EXPECT_EQ(detector.sampleCount(), 0.0);
    EXPECT_EQ(detector.meanSquare(), 0.0);
}

// A step response of 1 - exp(-t/tau) (IEC 61672-1, 5.7), whatever the cut into blocks.
TEST(LevelDetector, theExponentialStepIsExactForAnyBlockLength) {
    const struct {
        TimeWeighting timeWeighting;
        double seconds;
    } cases[] = {{TimeWeighting::fast, 0.125}, {TimeWeighting::slow, 1.0}};
    for (const auto& [timeWeighting, seconds] : cases) {
        for (const int blockLength : {1, 7, 256, 4800}) {
            LevelDetector detector(timeWeighting, sampleRate);
            int count = 0;
            while (count < 6000) {
                const int length = std::min(blockLength, 6000 - count);
                detector.processBlock(constant(1.0, length));
                count += length;
            }
            EXPECT_NEAR(detector.meanSquare(), 1.0 - std::exp(-6000.0 / sampleRate / seconds),
                        1e-12)
                << blockLength;
        }
    }
}

TEST(LevelDetector, anotherTimeWeightingCarriesOnFromTheMeanSquare) {
    LevelDetector detector(TimeWeighting::fast, sampleRate);
    detector.processBlock(constant(1.0, 4800));
    const double before = detector.meanSquare();
    detector.setTimeWeighting(TimeWeighting::slow);
    EXPECT_EQ(detector.meanSquare(), before);
    detector.processBlock(constant(0.0, 4800));
    EXPECT_NEAR(detector.meanSquare(), before * std::exp(-0.1), 1e-15);
}

TEST(LevelDetector, advancingByASumIsProcessingTheBlock) {
    for (const TimeWeighting timeWeighting : allCases<TimeWeighting>()) {
        LevelDetector bySamples(timeWeighting, sampleRate);
        LevelDetector bySums(timeWeighting, sampleRate);
        for (const int length : {3, 256, 256, 1, 1000}) {
            bySamples.processBlock(constant(0.5, length));
            bySums.advance(0.25 * length, length);
            EXPECT_DOUBLE_EQ(bySamples.meanSquare(), bySums.meanSquare());
            EXPECT_EQ(bySamples.sampleCount(), bySums.sampleCount());
        }
    }
}

TEST(LevelDetectorDeathTest, aSampleRateIsPositive) {
    EXPECT_DEATH(LevelDetector(TimeWeighting::fast, 0.0), "sampleRate");
}

}  // namespace LevelDetectorTests
}  // namespace TarvaneKit
