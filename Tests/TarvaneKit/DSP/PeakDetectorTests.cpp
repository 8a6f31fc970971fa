#include "DSP/PeakDetector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace TarvaneKit {
namespace PeakDetectorTests {

std::vector<double> silence(int count) {
    return std::vector<double>(static_cast<std::size_t>(count), 0.0);
}

TEST(PeakDetector, silenceReadsTheFloor) {
    PeakDetector detector(48000.0);
    EXPECT_EQ(detector.peakDB(), -240.0);
    detector.processBlock(silence(1000));
    EXPECT_EQ(detector.peakDB(), -240.0);
    detector.processBlock(std::vector{1.0});
    detector.reset();
    EXPECT_EQ(detector.peakDB(), -240.0);
    EXPECT_EQ(detector.currentSegment(), 0);
    EXPECT_EQ(detector.samplesInCurrentSegment(), 0);
}

TEST(PeakDetector, anEmptyBlockChangesNothing) {
    PeakDetector detector(48000.0);
    detector.processBlock(std::vector{0.5, -0.25});
    detector.processBlock({});
    EXPECT_EQ(detector.samplesInCurrentSegment(), 2);
    EXPECT_DOUBLE_EQ(detector.peakDB(), 20.0 * std::log10(0.5));
}

TEST(PeakDetector, aSegmentIsATenthOfTheWindowAndAtLeastOneSample) {
    EXPECT_EQ(PeakDetector(48000.0).segmentLength(), 4800);
    EXPECT_EQ(PeakDetector(44100.0).segmentLength(), 4410);
    EXPECT_EQ(PeakDetector(25.0).segmentLength(), 3);  // 2.5, half away from zero
    EXPECT_EQ(PeakDetector(1.0).segmentLength(), 1);
    EXPECT_EQ(PeakDetector(48000.0, 1e-6).segmentLength(), 1);
}

TEST(PeakDetector, negativeSamplesCountByTheirMagnitude) {
    PeakDetector detector(48000.0);
    detector.processBlock(std::vector{0.1, -0.8, 0.2});
    EXPECT_DOUBLE_EQ(detector.peakDB(), 20.0 * std::log10(0.8));
}

// The impulse at sample p of its segment falls out when that segment is reused, which is after
// the rest of its segment and nine more: 10 * 4800 - p samples counted with the impulse.
TEST(PeakDetector, anImpulseIsHeldUntilItsSegmentIsReused) {
    for (const int position : {0, 1, 2400, 4799}) {
        for (const int blockLength : {1, 64, 256, 5000}) {
            PeakDetector detector(48000.0);
            detector.processBlock(silence(position));
            detector.processBlock(std::vector{1.0});
            const int held = 48000 - position;
            EXPECT_GE(held, 43200);
            EXPECT_LE(held, 48000);
            int count = 1;
            while (count < held - 1) {
                const int length = std::min(blockLength, held - 1 - count);
                detector.processBlock(silence(length));
                count += length;
            }
            EXPECT_EQ(detector.peakDB(), 0.0) << position << ", blocks of " << blockLength;
            detector.processBlock(silence(1));
            EXPECT_EQ(detector.peakDB(), -240.0) << position << ", blocks of " << blockLength;
        }
    }
}

TEST(PeakDetector, segmentsTurnAroundSampleBySample) {
    PeakDetector detector(30.0);  // segments of 3
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(detector.currentSegment(), i / 3 % 10);
        EXPECT_EQ(detector.samplesInCurrentSegment(), i % 3);
        EXPECT_EQ(detector.samplesToSegmentEnd(), 3 - i % 3);
        detector.processBlock(std::vector{0.5});
    }
}

TEST(PeakDetectorDeathTest, aRunMayNotReachPastItsSegment) {
    PeakDetector detector(30.0);
    EXPECT_DEATH(detector.advance(1.0, 4), "samplesToSegmentEnd");
}

TEST(PeakDetectorDeathTest, aSampleRateIsPositive) {
    EXPECT_DEATH(PeakDetector(-1.0), "sampleRate");
}

}  // namespace PeakDetectorTests
}  // namespace TarvaneKit
