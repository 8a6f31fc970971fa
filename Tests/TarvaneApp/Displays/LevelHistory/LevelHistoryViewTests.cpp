#include "Displays/LevelHistory/LevelHistoryView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Support/LevelHistoryScenes.h"

namespace TarvaneApp {
namespace LevelHistoryViewTests {

using TarvaneTests::historyOf;
using TarvaneTests::newSession;
using TarvaneTests::overlayOf;
using testing::ElementsAre;

using Span = LevelHistoryView::Span;
using Range = LevelHistoryViewport::Range;

LevelHistoryTraces tracesOf(double minDB, double maxDB) {
    LevelHistoryTraces traces;
    traces.primary = {LevelHistoryTraces::Column{minDB, maxDB}, std::nullopt};
    return traces;
}

TEST(LevelHistoryView, thePlotLeavesRoomForLabels) {
    EXPECT_EQ(LevelHistoryView().plot({900.0, 300.0}), QRectF(40.0, 14.0, 852.0, 270.0));
    EXPECT_EQ(LevelHistoryView().plot({10.0, 10.0}), QRectF(40.0, 14.0, 1.0, 1.0));
}

TEST(LevelHistoryView, theAxisTakesWholeTensThreeDBAboutAllLevels) {
    const LevelHistoryView view;
    EXPECT_EQ(view.yRange(tracesOf(52.0, 97.0)), (Span{40.0, 100.0}));
    EXPECT_EQ(view.yRange(tracesOf(53.0, 97.1)), (Span{50.0, 110.0}));
    LevelHistoryTraces traces = tracesOf(52.0, 97.0);
    traces.secondary = {LevelHistoryTraces::Column{60.0, 108.0}};
    traces.overlays = {{LevelHistoryTraces::Column{21.0, 30.0}}};
    EXPECT_EQ(view.yRange(traces), (Span{10.0, 120.0}));
}

TEST(LevelHistoryView, aConstantLevelHasAnAxisOfTwentyDB) {
    const LevelHistoryView view;
    EXPECT_EQ(view.yRange(tracesOf(75.0, 75.0)), (Span{60.0, 80.0}));
    EXPECT_EQ(view.yRange(tracesOf(78.0, 78.0)), (Span{70.0, 90.0}));
    for (double level = -120.0; level < 140.0; level += 0.37) {
        const Span axis = view.yRange(tracesOf(level, level));
        EXPECT_GE(axis.highest - axis.lowest, 20.0);
        EXPECT_LE(axis.lowest, level);
        EXPECT_GE(axis.highest, level);
    }
}

// The offset of a damaged calibration makes such levels: the ticks of their axis would have no end.
TEST(LevelHistoryView, anAxisEndsWhereNoSoundIs) {
    const LevelHistoryView view;
    constexpr double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(view.yRange(tracesOf(-1e300, infinite)), (Span{-1010.0, 1010.0}));
    EXPECT_EQ(view.yRange(tracesOf(1e15, 1e15)), (Span{990.0, 1010.0}));
    EXPECT_LE(LevelHistoryView::levelTicks({-1010.0, 1010.0}).size(), 102U);
}

TEST(LevelHistoryView, withoutColumnsTheAxisFollowsTheUnit) {
    LevelHistoryView view;
    view.unitLabel = QStringLiteral("dB");
    EXPECT_EQ(view.yRange({}), (Span{30.0, 110.0}));
    view.unitLabel = QStringLiteral("dBFS");
    EXPECT_EQ(view.yRange({}), (Span{-80.0, 0.0}));
}

TEST(LevelHistoryView, levelAndHeightAreInverseFromEndToEnd) {
    const Span axis{30.0, 110.0};
    const QRectF plot(40.0, 14.0, 852.0, 270.0);
    EXPECT_EQ(LevelHistoryView::y(30.0, axis, plot), 284.0);
    EXPECT_EQ(LevelHistoryView::y(110.0, axis, plot), 14.0);
    EXPECT_EQ(LevelHistoryView::y(0.0, axis, plot), 284.0);
    EXPECT_EQ(LevelHistoryView::y(200.0, axis, plot), 14.0);
    for (double level = 30.0; level <= 110.0; level += 0.5) {
        EXPECT_NEAR(LevelHistoryView::levelAt(LevelHistoryView::y(level, axis, plot), axis, plot),
                    level, 1e-9);
    }
}

TEST(LevelHistoryView, timeAndPlaceAreInverseFromEndToEnd) {
    const Range range{140.0, 200.0};
    const QRectF plot(40.0, 14.0, 852.0, 270.0);
    EXPECT_EQ(LevelHistoryView::x(140.0, range, plot), 40.0);
    EXPECT_EQ(LevelHistoryView::x(200.0, range, plot), 892.0);
    for (double elapsed = 140.0; elapsed <= 200.0; elapsed += 0.5) {
        EXPECT_NEAR(
            LevelHistoryView::elapsedAt(LevelHistoryView::x(elapsed, range, plot), range, plot),
            elapsed, 1e-9);
    }
}

TEST(LevelHistoryView, levelRulesStandEveryTenOrBeyondEightyEveryTwenty) {
    EXPECT_THAT(LevelHistoryView::levelTicks({70.0, 90.0}), ElementsAre(70.0, 80.0, 90.0));
    EXPECT_EQ(LevelHistoryView::levelTicks({30.0, 110.0}).size(), 9U);
    EXPECT_THAT(LevelHistoryView::levelTicks({30.0, 120.0}),
                ElementsAre(30.0, 50.0, 70.0, 90.0, 110.0));
}

TEST(LevelHistoryView, levelsHaveLabelsFourteenPixelsApartAtLeast) {
    // Nine lines over 200 pixels are 25 apart, over 80 pixels 10, over 40 pixels 5.
    EXPECT_EQ(LevelHistoryView::levelLabels({30.0, 110.0}, 200.0).size(), 9U);
    EXPECT_THAT(LevelHistoryView::levelLabels({30.0, 110.0}, 80.0),
                ElementsAre(30.0, 50.0, 70.0, 90.0, 110.0));
    EXPECT_THAT(LevelHistoryView::levelLabels({30.0, 110.0}, 40.0), ElementsAre(30.0, 60.0, 90.0));
    EXPECT_THAT(LevelHistoryView::levelLabels({70.0, 90.0}, 5.0), ElementsAre(70.0));
}

TEST(LevelHistoryView, timeRulesAreAtLeast80PixelsApart) {
    EXPECT_EQ(LevelHistoryView::timeStep(10.0, 852.0), 1.0);
    EXPECT_EQ(LevelHistoryView::timeStep(60.0, 852.0), 10.0);  // 10.65 steps at most
    EXPECT_EQ(LevelHistoryView::timeStep(300.0, 852.0), 30.0);
    EXPECT_EQ(LevelHistoryView::timeStep(28800.0, 852.0), 3600.0);
    EXPECT_EQ(LevelHistoryView::timeStep(28800.0, 10.0), 43200.0);
    EXPECT_EQ(LevelHistoryView::timeStep(1e6, 852.0), 86400.0 * 1.0);
    for (double span = 10.0; span < 1e5; span *= 1.1) {
        for (const double width : {192.0, 852.0, 3792.0}) {
            EXPECT_GE(LevelHistoryView::timeStep(span, width) / span * width, 80.0 - 1e-9);
        }
    }
}

TEST(LevelHistoryView, timeRulesStandAtMultiplesOfTheirStepWithinTheRange) {
    EXPECT_THAT(LevelHistoryView::timeTicks({143.0, 203.0}, 500.0),
                ElementsAre(150.0, 160.0, 170.0, 180.0, 190.0, 200.0));
    EXPECT_THAT(LevelHistoryView::timeTicks({0.0, 10.0}, 200.0), ElementsAre(0.0, 5.0, 10.0));
}

TEST(LevelHistoryView, aTimeHasHoursFromOneHourOn) {
    EXPECT_EQ(LevelHistoryView::timeLabel(0.0), QStringLiteral("0:00"));
    EXPECT_EQ(LevelHistoryView::timeLabel(-1.0), QStringLiteral("0:00"));
    EXPECT_EQ(LevelHistoryView::timeLabel(65.9), QStringLiteral("1:05"));
    EXPECT_EQ(LevelHistoryView::timeLabel(3599.99), QStringLiteral("59:59"));
    EXPECT_EQ(LevelHistoryView::timeLabel(3600.0), QStringLiteral("1:00:00"));
    EXPECT_EQ(LevelHistoryView::timeLabel(36125.0), QStringLiteral("10:02:05"));
}

TEST(LevelHistoryView, aColumnsColourIsJudgedInTheTrafficLightsUnit) {
    LevelHistoryView view;
    view.trafficLight = TarvaneKit::TrafficLightConfig::defaultSPL();  // yellow from 85
    EXPECT_EQ(view.columnColor(84.9), TarvaneKit::SignalColors::green);
    EXPECT_EQ(view.columnColor(85.0), TarvaneKit::SignalColors::yellow);
    view.displayOffsetDB = 120.0;  // shown in dBFS, recorded in dB SPL
    EXPECT_EQ(view.columnColor(-35.0), TarvaneKit::SignalColors::yellow);
    view.trafficLight = TarvaneKit::TrafficLightConfig::defaultDBFS();  // red from -3
    view.trafficLightOffsetDB = 120.0;
    EXPECT_EQ(view.columnColor(-3.0), TarvaneKit::SignalColors::red);
}

TEST(LevelHistoryView, recordsOfTheSameRevisionAndSettingsCompareEqual) {
    const auto recorder = newSession();
    const LevelHistoryView view = historyOf(*recorder);
    LevelHistoryView other = view;
    EXPECT_EQ(view, other);
    other.revision = 2;
    EXPECT_NE(view, other);
    other = view;
    other.viewport.custom = {.span = 20.0, .end = std::nullopt};
    EXPECT_NE(view, other);
    other = view;
    other.overlays = {overlayOf(*recorder, {})};
    EXPECT_NE(view, other);
}

TEST(LevelHistoryView, anExtremeIsLabelledWithLevelUnitAndTime) {
    LevelHistoryView view;
    view.unitLabel = QStringLiteral("dBFS");
    view.displayOffsetDB = 120.0;
    EXPECT_EQ(view.extremeLabel({.elapsed = 65.0, .levelDB = 94.24}),
              QStringLiteral("-25.8 dBFS 1:05"));
}

}  // namespace LevelHistoryViewTests
}  // namespace TarvaneApp
