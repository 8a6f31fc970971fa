#include "Displays/LevelHistory/LevelHistoryViewport.h"

#include <gtest/gtest.h>

#include <cmath>

namespace TarvaneApp {
namespace LevelHistoryViewportTests {

using Range = LevelHistoryViewport::Range;
using Session = LevelHistoryViewport::Session;

Session session(double duration, std::optional<double> presetWindow = std::nullopt) {
    return {.duration = duration, .presetWindow = presetWindow};
}

LevelHistoryViewport zoomed(double span, std::optional<double> end = std::nullopt) {
    LevelHistoryViewport viewport;
    viewport.custom = {.span = span, .end = end};
    return viewport;
}

void expectRange(const Range& range, double from, double to) {
    EXPECT_NEAR(range.from, from, 1e-9);
    EXPECT_NEAR(range.to, to, 1e-9);
}

// --- the visible range

TEST(LevelHistoryViewport, presetsAreWindowsOfSecondsAndTheSessionIsNone) {
    EXPECT_EQ(windowSeconds(LevelHistoryZoom::session), std::nullopt);
    EXPECT_EQ(windowSeconds(LevelHistoryZoom::last1Min), 60.0);
    EXPECT_EQ(windowSeconds(LevelHistoryZoom::last5Min), 300.0);
    EXPECT_EQ(windowSeconds(LevelHistoryZoom::last15Min), 900.0);
}

TEST(LevelHistoryViewport, aSessionOfThreeSecondsShowsTen) {
    expectRange(LevelHistoryViewport().range(session(3.0)), 0.0, 10.0);
    expectRange(LevelHistoryViewport().range(session(0.0)), 0.0, 10.0);
    expectRange(LevelHistoryViewport().range(session(4000.0)), 0.0, 4000.0);
}

TEST(LevelHistoryViewport, aPresetShowsItsWindowUpToTheLiveEdge) {
    expectRange(LevelHistoryViewport().range(session(200.0, 60.0)), 140.0, 200.0);
    expectRange(LevelHistoryViewport().range(session(20.0, 60.0)), 0.0, 60.0);
}

TEST(LevelHistoryViewport, aRangeOfTheUsersFollowsTheLiveEdgeOrStandsStill) {
    expectRange(zoomed(30.0).range(session(200.0, 60.0)), 170.0, 200.0);
    expectRange(zoomed(30.0).range(session(20.0)), 0.0, 30.0);
    expectRange(zoomed(30.0, 100.0).range(session(200.0)), 70.0, 100.0);
    expectRange(zoomed(30.0, 100.0).range(session(300.0)), 70.0, 100.0);
    expectRange(zoomed(30.0, 500.0).range(session(200.0)), 170.0, 200.0);
    expectRange(zoomed(30.0, 10.0).range(session(200.0)), 0.0, 30.0);
}

// --- setting a range

TEST(LevelHistoryViewport, aRangeInTheMiddleStandsStill) {
    LevelHistoryViewport viewport;
    EXPECT_TRUE(viewport.show(50.0, 30.0, 200.0));
    EXPECT_EQ(viewport.custom, (LevelHistoryViewport::Custom{30.0, 80.0}));
}

TEST(LevelHistoryViewport, aRangeStaysWithinTheSession) {
    LevelHistoryViewport viewport;
    EXPECT_TRUE(viewport.show(-20.0, 30.0, 200.0));
    expectRange(viewport.range(session(200.0)), 0.0, 30.0);
    EXPECT_TRUE(viewport.show(500.0, 30.0, 200.0));
    expectRange(viewport.range(session(200.0)), 170.0, 200.0);
}

TEST(LevelHistoryViewport, withinTwoPercentOfItsSpanARangeAttachesToTheLiveEdge) {
    LevelHistoryViewport viewport;
    // 200 - 0.02 · 50 = 199 is the border.
    EXPECT_TRUE(viewport.show(149.01, 50.0, 200.0));
    EXPECT_EQ(viewport.custom->end, std::nullopt);
    EXPECT_TRUE(viewport.show(148.99, 50.0, 200.0));
    EXPECT_NEAR(*viewport.custom->end, 198.99, 1e-9);
}

TEST(LevelHistoryViewport, aRangeThatReachesTheSessionIsGivenUp) {
    LevelHistoryViewport viewport = zoomed(30.0, 100.0);
    EXPECT_FALSE(viewport.show(0.0, 200.0, 200.0));
    EXPECT_EQ(viewport.custom, std::nullopt);
    EXPECT_TRUE(viewport.show(0.0, 199.9, 200.0));
    EXPECT_FALSE(viewport.show(3.0, 30.0, 5.0));  // a session shorter than the shortest range
}

TEST(LevelHistoryViewport, noRangeIsShorterThanTenSeconds) {
    LevelHistoryViewport viewport;
    EXPECT_TRUE(viewport.show(50.0, 1.0, 200.0));
    EXPECT_EQ(viewport.custom->span, 10.0);
}

// --- gestures

TEST(LevelHistoryViewport, draggingRightGoesBackInTime) {
    LevelHistoryViewport viewport = zoomed(40.0, 100.0);
    viewport.pan(250.0, 1000.0, session(200.0));
    expectRange(viewport.range(session(200.0)), 50.0, 90.0);
    viewport.pan(-250.0, 1000.0, session(200.0));  // the same drag: from where it began
    expectRange(viewport.range(session(200.0)), 70.0, 110.0);
    viewport.endPan();
    viewport.pan(-250.0, 1000.0, session(200.0));
    expectRange(viewport.range(session(200.0)), 80.0, 120.0);
}

TEST(LevelHistoryViewport, draggingToTheLiveEdgeFollowsIt) {
    LevelHistoryViewport viewport = zoomed(40.0, 180.0);
    viewport.pan(-495.0, 1000.0, session(200.0));  // to 199.8
    EXPECT_EQ(viewport.custom->end, std::nullopt);
    expectRange(viewport.range(session(230.0)), 190.0, 230.0);
}

TEST(LevelHistoryViewport, zoomingHoldsTheInstantUnderThePointer) {
    for (const double fraction : {0.0, 0.25, 0.8, 1.0}) {
        LevelHistoryViewport viewport = zoomed(100.0, 150.0);
        const double instant = 50.0 + fraction * 100.0;
        EXPECT_TRUE(viewport.zoom(0.5, fraction, session(400.0)));
        const Range range = viewport.range(session(400.0));
        EXPECT_NEAR(range.span(), 50.0, 1e-9);
        EXPECT_NEAR(range.from + fraction * range.span(), instant, 1e-9);
    }
}

TEST(LevelHistoryViewport, aPointerBesideThePlotZoomsAtItsEnd) {
    LevelHistoryViewport viewport = zoomed(100.0, 150.0);
    viewport.zoom(0.5, -3.0, session(400.0));
    expectRange(viewport.range(session(400.0)), 50.0, 100.0);
}

TEST(LevelHistoryViewport, atTenSecondsZoomingInStaysAtTen) {
    LevelHistoryViewport viewport = zoomed(10.0, 100.0);
    EXPECT_TRUE(viewport.scroll({.deltaY = 3.0}, 0.5, 1000.0, session(200.0)));
    EXPECT_EQ(viewport.custom->span, 10.0);
}

TEST(LevelHistoryViewport, zoomingOutToTheSessionGivesTheRangeUpAndSaysSo) {
    LevelHistoryViewport viewport = zoomed(100.0, 150.0);
    EXPECT_FALSE(viewport.zoom(3.0, 0.5, session(200.0)));
    EXPECT_EQ(viewport.custom, std::nullopt);
    viewport = zoomed(100.0, 150.0);
    EXPECT_FALSE(viewport.scroll({.deltaY = -20.0}, 0.5, 1000.0, session(200.0)));
    viewport = zoomed(100.0, 150.0);
    EXPECT_FALSE(viewport.magnify(-0.9, 0.5, session(200.0)));
}

TEST(LevelHistoryViewport, aNotchOfTheWheelZoomsBy13PercentAndSoDo30Pixels) {
    LevelHistoryViewport viewport = zoomed(100.0, 150.0);
    viewport.scroll({.deltaY = 1.0}, 0.5, 1000.0, session(400.0));
    EXPECT_NEAR(viewport.custom->span, 87.0, 1e-9);
    viewport = zoomed(100.0, 150.0);
    viewport.scroll({.deltaY = -60.0, .isPrecise = true}, 0.5, 1000.0, session(400.0));
    EXPECT_NEAR(viewport.custom->span, 100.0 / (0.87 * 0.87), 1e-9);
}

TEST(LevelHistoryViewport, scrollingSidewaysPansByPixelsOrTenANotch) {
    LevelHistoryViewport viewport = zoomed(100.0, 150.0);
    viewport.scroll({.deltaX = 50.0, .deltaY = 49.0, .isPrecise = true}, 0.5, 1000.0,
                    session(400.0));
    expectRange(viewport.range(session(400.0)), 45.0, 145.0);
    viewport = zoomed(100.0, 150.0);
    viewport.scroll({.deltaX = -2.0}, 0.5, 1000.0, session(400.0));
    expectRange(viewport.range(session(400.0)), 52.0, 152.0);
}

TEST(LevelHistoryViewport, aScrollOfNothingChangesNothing) {
    LevelHistoryViewport viewport;
    EXPECT_TRUE(viewport.scroll({}, 0.5, 1000.0, session(400.0)));
    EXPECT_EQ(viewport.custom, std::nullopt);
}

TEST(LevelHistoryViewport, aPinchZoomsByOneOverOnePlusItself) {
    LevelHistoryViewport viewport = zoomed(100.0, 150.0);
    EXPECT_TRUE(viewport.magnify(0.25, 0.5, session(400.0)));
    EXPECT_NEAR(viewport.custom->span, 80.0, 1e-9);
}

TEST(LevelHistoryViewport, aMomentIsShownWithHalfAMinuteOnEachSide) {
    LevelHistoryViewport viewport;
    viewport.showMoment(300.0, session(1000.0));
    expectRange(viewport.range(session(1000.0)), 270.0, 330.0);
    viewport = zoomed(20.0, 100.0);
    viewport.showMoment(300.0, session(1000.0));
    expectRange(viewport.range(session(1000.0)), 290.0, 310.0);
    viewport.showMoment(1.0, session(1000.0));
    expectRange(viewport.range(session(1000.0)), 0.0, 20.0);
}

}  // namespace LevelHistoryViewportTests
}  // namespace TarvaneApp
