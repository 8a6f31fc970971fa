#include "DSP/LeqAccumulator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace TarvaneKit {
namespace LeqAccumulatorTests {

constexpr double minusInfinity = -std::numeric_limits<double>::infinity();

std::vector<double> constant(double amplitude, int count) {
    return std::vector<double>(static_cast<std::size_t>(count), amplitude);
}

TEST(LeqAccumulator, hasNoValueBeforeTheFirstSample) {
    LeqAccumulator leq(1.0, 1000.0);
    EXPECT_EQ(leq.currentLeqDB(), minusInfinity);
    leq.processBlock({});
    EXPECT_EQ(leq.currentLeqDB(), minusInfinity);
    EXPECT_EQ(leq.elapsedSeconds(), 0.0);
}

TEST(LeqAccumulator, silenceReadsTheFloor) {
    LeqAccumulator leq(1.0, 1000.0);
    leq.processBlock(constant(0.0, 10));
    EXPECT_EQ(leq.currentLeqDB(), -240.0);
}

TEST(LeqAccumulator, isTheMeanOverEverything) {
    LeqAccumulator leq(1.0, 1000.0);
    leq.processBlock(constant(1.0, 100));
    leq.processBlock(constant(0.0, 900));
    EXPECT_NEAR(leq.currentLeqDB(), -10.0, 1e-12);
    EXPECT_DOUBLE_EQ(leq.sumOfSquares(), 100.0);
    EXPECT_DOUBLE_EQ(leq.elapsedSeconds(), 1.0);
}

TEST(LeqAccumulator, goesOnAfterItsIntegrationTime) {
    LeqAccumulator leq(0.5, 1000.0);
    leq.processBlock(constant(1.0, 250));
    EXPECT_FALSE(leq.isComplete());
    EXPECT_DOUBLE_EQ(leq.elapsedFraction(), 0.5);
    leq.processBlock(constant(1.0, 250));
    EXPECT_TRUE(leq.isComplete());
    EXPECT_EQ(leq.elapsedFraction(), 1.0);
    leq.processBlock(constant(0.0, 500));
    EXPECT_EQ(leq.elapsedFraction(), 1.0);
    EXPECT_NEAR(leq.currentLeqDB(), 10.0 * std::log10(0.5), 1e-12);
}

TEST(LeqAccumulator, anIntegrationTimeOfZeroIsCompleteAtOnce) {
    const LeqAccumulator leq(0.0, 1000.0);
    EXPECT_EQ(leq.elapsedFraction(), 0.0);
    EXPECT_TRUE(leq.isComplete());
}

TEST(LeqAccumulator, resetKeepsTheIntegrationTimeAndANewOneStartsOver) {
    LeqAccumulator leq(2.0, 1000.0);
    leq.processBlock(constant(1.0, 100));
    leq.reset();
    EXPECT_EQ(leq.currentLeqDB(), minusInfinity);
    EXPECT_EQ(leq.integrationSeconds(), 2.0);
    leq.processBlock(constant(1.0, 100));
    leq.setIntegrationSeconds(3.0);
    EXPECT_EQ(leq.integrationSeconds(), 3.0);
    EXPECT_EQ(leq.sumOfSquares(), 0.0);
    EXPECT_EQ(leq.elapsedSeconds(), 0.0);
}

TEST(LeqAccumulatorDeathTest, aSampleRateIsPositive) {
    EXPECT_DEATH(LeqAccumulator(1.0, 0.0), "sampleRate");
}

}  // namespace LeqAccumulatorTests
}  // namespace TarvaneKit
