#include "Displays/LevelHistory/LevelHistoryGeometry.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Support/LevelHistoryScenes.h"

namespace TarvaneApp {
namespace LevelHistoryGeometryTests {

using TarvaneTests::constant;
using TarvaneTests::historyOf;
using TarvaneTests::newSession;
using TarvaneTests::overlayOf;
using TarvaneTests::record;

using Span = LevelHistoryView::Span;
using Range = LevelHistoryViewport::Range;

TEST(LevelHistoryGeometry, aSessionOfThreeSecondsFills30PercentOfTheWidth) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 3.0, constant(80.0));
    const LevelHistoryGeometry geometry = layout(historyOf(*recorder), {1048.0, 300.0});
    EXPECT_EQ(geometry.range, (Range{0.0, 10.0}));
    ASSERT_EQ(geometry.traces.primary.size(), 1000U);
    // Filled up to the end of the 30th bucket of 0.1 s.
    EXPECT_TRUE(geometry.traces.primary[299]);
    EXPECT_FALSE(geometry.traces.primary[300]);
}

TEST(LevelHistoryGeometry, aViewWithoutWidthHasOneColumn) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(80.0));
    EXPECT_EQ(layout(historyOf(*recorder), {0.0, 300.0}).traces.primary.size(), 1U);
}

TEST(LevelHistoryGeometry, columnsAreShownLessTheDisplayOffset) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(94.0));
    LevelHistoryView view = historyOf(*recorder);
    view.displayOffsetDB = 120.0;
    const auto traces = layout(view, {900.0, 300.0}).traces;
    EXPECT_NEAR(traces.primary.front()->maxDB, -26.0, 1e-5);
}

TEST(LevelHistoryGeometry, aLoudnessChannelKeepsItsAxisWhateverTheLevel) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(-90.0));
    LevelHistoryView view = historyOf(*recorder);
    view.fixedDBRange = {.lowest = -60.0, .highest = 0.0};
    EXPECT_EQ(layout(view, {900.0, 300.0}).axis, (Span{-60.0, 0.0}));
}

TEST(LevelHistoryGeometry, aColumnOfOneLevelIsStillOnePixelHigh) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(80.0));
    const LevelHistoryView view = historyOf(*recorder);
    const auto columns = historyColumns(view, layout(view, {900.0, 300.0}), 1.0);
    ASSERT_FALSE(columns.empty());
    for (const LevelHistoryColumn& column : columns) {
        EXPECT_NEAR(column.bottom - column.top, 1.0, 1e-9);
    }
}

TEST(LevelHistoryGeometry, columnsStandSideBySideOnWholeDevicePixels) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(80.0));
    const LevelHistoryView view = historyOf(*recorder);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const auto columns = historyColumns(view, layout(view, {901.3, 300.0}), ratio);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            EXPECT_NEAR(columns[i].left * ratio, std::round(columns[i].left * ratio), 1e-9);
            EXPECT_GT(columns[i].right, columns[i].left);
            if (i > 0) {
                EXPECT_EQ(columns[i].left, columns[i - 1].right);
            }
        }
    }
}

TEST(LevelHistoryGeometry, aPauseIsAGapInColumnsAndLines) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 20.0, constant(80.0));
    record(*recorder, 40.0, 60.0, constant(90.0));
    const auto other = newSession();
    record(*other, 0.0, 20.0, constant(70.0));
    record(*other, 40.0, 60.0, constant(75.0));
    LevelHistoryView view = historyOf(*recorder);
    view.secondaryMetricIndex = 1;
    view.overlays = {overlayOf(*other, {0.0, 0.0, 1.0, 1.0})};
    const LevelHistoryGeometry geometry = layout(view, {648.0, 300.0});  // ten pixels a second
    for (int second = 0; second < 60; ++second) {
        const bool isPaused = second >= 20 && second < 40;
        EXPECT_EQ(geometry.traces.primary[static_cast<std::size_t>(second) * 10 + 5].has_value(),
                  !isPaused)
            << second;
    }
    const auto lines = historyLines(view, geometry);
    ASSERT_EQ(lines.size(), 2U);
    for (const LevelHistoryLine& line : lines) {
        ASSERT_EQ(line.parts.size(), 2U);
        EXPECT_LT(line.parts[0].back().x(), 40.0 + 202.0);
        EXPECT_GT(line.parts[1].front().x(), 40.0 + 398.0);
    }
}

TEST(LevelHistoryGeometry, aLineRunsThroughTheMaximaInTheMiddlesOfItsColumns) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 10.0, [](double elapsed) { return elapsed < 5.0 ? 60.0 : 90.0; });
    const auto other = newSession();
    record(*other, 0.0, 10.0, constant(70.0));
    LevelHistoryView view = historyOf(*recorder);
    view.overlays = {overlayOf(*other, {0.0, 0.0, 1.0, 1.0})};
    const LevelHistoryGeometry geometry = layout(view, {148.0, 300.0});  // 100 columns
    const auto lines = historyLines(view, geometry);
    EXPECT_EQ(lines[0].parts[0][0].x(), 40.5);
    EXPECT_NEAR(lines[0].parts[0][0].y(), LevelHistoryView::y(70.0, geometry.axis, geometry.plot),
                1e-9);
}

TEST(LevelHistoryGeometry, aMetricThatTheRecorderDoesntHoldShowsTheEmptyGrid) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(80.0));
    LevelHistoryView view = historyOf(*recorder);
    view.metricIndex = 7;
    EXPECT_TRUE(historyColumns(view, layout(view, {900.0, 300.0}), 1.0).empty());
    EXPECT_EQ(layout(view, {900.0, 300.0}).axis, (Span{30.0, 110.0}));
}

}  // namespace LevelHistoryGeometryTests
}  // namespace TarvaneApp
