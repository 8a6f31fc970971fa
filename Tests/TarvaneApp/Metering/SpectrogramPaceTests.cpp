#include "Metering/SpectrogramPace.h"

#include <gtest/gtest.h>

#include <cmath>

namespace TarvaneApp {
namespace SpectrogramPaceTests {

// A row that tells which tick it came from.
std::vector<float> rowOf(int tick) {
    return std::vector<float>(1024, static_cast<float>(tick));
}

TEST(SpectrogramPaceTests, ticksAtSixtyASecondGiveOneRowEachAndNoDebt) {
    SpectrogramPace pace;
    for (int tick = 0; tick < 1000; ++tick) {
        const auto rows = pace.rows(rowOf(tick), 1.0 / 60.0);
        ASSERT_EQ(rows.size(), 1U);
        EXPECT_EQ(rows[0], rowOf(tick));
        EXPECT_NEAR(pace.debt(), 0.0, 1e-9);
    }
}

TEST(SpectrogramPaceTests, ticksAtThirtyASecondGiveTwoRowsTheFirstHalfwayFromTheOneBefore) {
    SpectrogramPace pace;
    // The first tick owes a row and has none before it to go halfway from.
    EXPECT_EQ(pace.rows(rowOf(0), 1.0 / 30.0).size(), 1U);
    for (int tick = 1; tick < 1000; ++tick) {
        const auto rows = pace.rows(rowOf(tick), 1.0 / 30.0);
        ASSERT_EQ(rows.size(), 2U);
        EXPECT_EQ(rows[0][17], static_cast<float>(tick) - 0.5F);
        EXPECT_EQ(rows[1], rowOf(tick));
    }
}

TEST(SpectrogramPaceTests, ticksAtAHundredAndTwentyASecondGiveARowEverySecondTick) {
    SpectrogramPace pace;
    int given = 0;
    int longestPause = 0;
    int pause = 0;
    for (int tick = 0; tick < 1000; ++tick) {
        const auto rows = pace.rows(rowOf(tick), 1.0 / 120.0);
        ASSERT_LE(rows.size(), 1U);
        given += static_cast<int>(rows.size());
        pause = rows.empty() ? pause + 1 : 0;
        longestPause = std::max(longestPause, pause);
    }
    // Half of them, and the row and a half that may be ahead.
    EXPECT_NEAR(given, 500, 2);
    EXPECT_EQ(longestPause, 1);
}

TEST(SpectrogramPaceTests, anyJitterGivesSixtyRowsASecondInTheLongRun) {
    SpectrogramPace pace;
    double seconds = 0.0;
    std::size_t given = 0;
    for (int tick = 0; tick < 5000; ++tick) {
        const double elapsed = (1.0 + 0.8 * std::sin(0.37 * tick)) / 60.0;
        seconds += elapsed;
        given += pace.rows(rowOf(tick), elapsed).size();
    }
    EXPECT_NEAR(static_cast<double>(given), seconds * 60.0, 3.0);
}

TEST(SpectrogramPaceTests, aLongStallIsPaidBackOneRowATickAndNoFurtherThanHalfASecond) {
    SpectrogramPace pace;
    pace.rows(rowOf(0), 1.0 / 60.0);
    EXPECT_EQ(pace.rows(rowOf(1), 3600.0).size(), 2U);
    EXPECT_NEAR(pace.debt(), 29.0, 1e-9);
    int extra = 0;
    for (int tick = 2; tick < 200; ++tick) {
        extra += static_cast<int>(pace.rows(rowOf(tick), 1.0 / 60.0).size()) - 1;
    }
    // Down to the first value below a row and a half.
    EXPECT_EQ(extra, 28);
    EXPECT_NEAR(pace.debt(), 1.0, 1e-9);
}

TEST(SpectrogramPaceTests, aClockThatStepsBackCountsAsNoTime) {
    SpectrogramPace pace;
    EXPECT_EQ(pace.rows(rowOf(0), -100.0).size(), 1U);
    EXPECT_EQ(pace.debt(), -1.0);
}

TEST(SpectrogramPaceTests, forgettingTheDebtKeepsTheRowBefore) {
    SpectrogramPace pace;
    pace.rows(rowOf(4), 1.0);
    pace.forgetDebt();
    EXPECT_EQ(pace.debt(), 0.0);
    const auto rows = pace.rows(rowOf(6), 3.0 / 60.0);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0][0], 5.0F);
}

}  // namespace SpectrogramPaceTests
}  // namespace TarvaneApp
