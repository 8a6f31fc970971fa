#include "AudioIO/BlockContinuity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace TarvaneKit {
namespace BlockContinuityTests {

struct Turn {
    std::uint64_t ticks;
    double blockTicks;
};

// What is told at each block.
std::vector<double> told(BlockContinuity& continuity, const std::vector<Turn>& turns) {
    std::vector<double> result;
    for (const Turn& turn : turns) {
        result.push_back(continuity.missingTicks(turn.ticks, turn.blockTicks));
    }
    return result;
}

std::vector<double> told(const std::vector<Turn>& turns) {
    BlockContinuity continuity;
    return told(continuity, turns);
}

std::vector<double> nothing(std::size_t count) {
    return std::vector<double>(count, 0);
}

TEST(BlockContinuity, theFirstBlockFollowsOnNothing) {
    EXPECT_EQ(told({{70000, 256}, {70256, 256}, {70512, 256}, {70768, 256}}), nothing(4));
}

TEST(BlockContinuity, turnsThatWerePassedOverAreToldTwoBlocksLater) {
    EXPECT_EQ(told({{0, 256}, {1024, 256}, {1280, 256}, {1536, 256}, {1792, 256}}),
              (std::vector<double>{0, 0, 0, 768, 0}));
}

TEST(BlockContinuity, gapsInARowAreEachTold) {
    EXPECT_EQ(told({{0, 64}, {128, 64}, {256, 64}, {640, 64}, {704, 64}, {768, 64}}),
              (std::vector<double>{0, 0, 0, 64, 64, 320}));
}

TEST(BlockContinuity, aBlockOfNoMoreThanAGapsLengthIsEnoughForIt) {
    EXPECT_EQ(told({{0, 32}, {64, 32}, {96, 32}, {128, 32}}), (std::vector<double>{0, 0, 0, 32}));
}

TEST(BlockContinuity, anotherBlockLengthIsNoGap) {
    EXPECT_EQ(told({{0, 256},
                    {256, 1024},
                    {1280, 1024},
                    {2304, 64},
                    {2368, 64},
                    {2432, 8192},
                    {10624, 8192},
                    {18816, 256},
                    {19072, 256}}),
              nothing(9));
}

TEST(BlockContinuity, aGapBesideAnotherBlockLengthIsOne) {
    EXPECT_EQ(told({{0, 64}, {128, 1024}, {1152, 1024}, {2176, 1024}}),
              (std::vector<double>{0, 0, 0, 64}));
    EXPECT_EQ(told({{0, 1024}, {1088, 64}, {1152, 64}, {1216, 64}}),
              (std::vector<double>{0, 0, 0, 64}));
}

// 44.1 kHz out of a graph of 48 kHz, turns of 256: blocks of 235 and 236 frames, the first of 206
// since the resampler fills up.
struct Resampled {
    BlockContinuity continuity;
    std::uint64_t ticks = 0;
    double owed = 0;

    double turn(double tooShort = 0) {
        owed += 256 * 44100.0 / 48000.0 - tooShort;
        const double frames = std::floor(owed);
        owed -= frames;
        const double told = continuity.missingTicks(ticks, frames * 48000.0 / 44100.0);
        ticks += 256;
        return told;
    }
};

TEST(BlockContinuity, resampledBlocksOfVaryingLengthHaveNoGap) {
    Resampled resampled;
    EXPECT_EQ(resampled.turn(29), 0);
    for (int i = 0; i < 100000; ++i) {
        ASSERT_EQ(resampled.turn(), 0) << i;
    }
}

TEST(BlockContinuity, aResampledStreamsGapIsTold) {
    Resampled resampled;
    resampled.turn(29);
    for (int i = 0; i < 1000; ++i) {
        resampled.turn();
    }
    resampled.ticks += 256;
    EXPECT_EQ(resampled.turn(), 0);
    EXPECT_EQ(resampled.turn(), 0);
    EXPECT_NEAR(resampled.turn(), 256, 2);
    EXPECT_EQ(resampled.turn(), 0);
}

TEST(BlockContinuity, aClockThatRunsOffByMillionthsHasNoGap) {
    BlockContinuity continuity;
    for (std::uint64_t i = 0; i < 1000000; ++i) {
        ASSERT_EQ(continuity.missingTicks(256 * i, 256 * (1 - 20e-6)), 0) << i;
    }
}

TEST(BlockContinuity, blocksThatAreEachCutShortALittleAreToldAsTheyAddUp) {
    BlockContinuity continuity;
    double told = 0;
    for (std::uint64_t i = 0; i < 1000; ++i) {
        told += continuity.missingTicks(1500 * i, 8192.0 / 6);
    }
    EXPECT_NEAR(told, 1000 * (1500 - 8192.0 / 6), 6000);
}

// As a busy machine has them: a late turn reads the clock of the one after it.
TEST(BlockContinuity, aLateTurnIsNoGap) {
    EXPECT_EQ(told({{0, 256}, {512, 256}, {512, 256}, {768, 256}, {1024, 256}}), nothing(5));
}

TEST(BlockContinuity, twoLateTurnsInARowAreNoGap) {
    EXPECT_EQ(told({{0, 128}, {256, 128}, {384, 128}, {384, 128}, {512, 128}, {640, 128}}),
              nothing(6));
}

TEST(BlockContinuity, aLateTurnOfAnotherBlockLengthIsNoGap) {
    EXPECT_EQ(told({{0, 64}, {128, 64}, {128, 1024}, {1152, 1024}, {2176, 1024}}), nothing(5));
}

TEST(BlockContinuity, aLateTurnAfterAGapTakesBackOnlyItsOwn) {
    EXPECT_EQ(told({{0, 256}, {768, 256}, {768, 256}, {1024, 256}, {1280, 256}}),
              (std::vector<double>{0, 0, 0, 256, 0}));
    EXPECT_EQ(told({{0, 64}, {384, 64}, {512, 64}, {640, 64}, {640, 64}, {704, 64}, {768, 64}}),
              (std::vector<double>{0, 0, 0, 320, 64, 0, 0}));
}

TEST(BlockContinuity, whatComesAfterARestartFollowsOnNothing) {
    BlockContinuity continuity;
    told(continuity, {{0, 256}, {256, 256}});
    EXPECT_EQ(continuity.restart(), 0);
    EXPECT_EQ(told(continuity, {{90000, 512}, {90512, 512}, {91024, 512}, {91536, 512}}),
              nothing(4));
}

TEST(BlockContinuity, aRestartTellsAGapThatWasSeenButNoLateTurn) {
    BlockContinuity continuity;
    told(continuity, {{0, 256}, {2560, 256}});
    EXPECT_EQ(continuity.restart(), 2304 - 256);
    told(continuity, {{0, 256}, {512, 256}});
    EXPECT_EQ(continuity.restart(), 0);
}

}  // namespace BlockContinuityTests
}  // namespace TarvaneKit
