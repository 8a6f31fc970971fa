#include "Displays/LevelHistory/LevelHistoryHover.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Support/LevelHistoryScenes.h"
#include "Support/PinnedTypeface.h"

namespace TarvaneApp {
namespace LevelHistoryHoverTests {

using TarvaneTests::constant;
using TarvaneTests::historyOf;
using TarvaneTests::newSession;
using TarvaneTests::record;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

TEST(LevelHistoryHover, theReadoutTellsTimeClockRangeAndSecondMetric) {
    const auto recorder = newSession();  // from 19:30:00
    record(*recorder, 0.0, 100.0,
           [](double elapsed) { return std::fmod(elapsed, 0.1) < 0.05 ? 80.0 : 82.04; });
    LevelHistoryView view = historyOf(*recorder);
    view.hover.xPosition = 40.0 + 655.0;
    LevelHistoryGeometry geometry = layout(view, {1048.0, 300.0});  // ten pixels a second
    EXPECT_EQ(hoverText(view, geometry), QStringLiteral("1:05  (19:31:05)  80.0–82.0 dB"));
    view.secondaryMetricIndex = 1;
    geometry = layout(view, {1048.0, 300.0});
    EXPECT_TRUE(hoverText(view, geometry).contains(QStringLiteral(" dB  M max ")));
}

TEST(LevelHistoryHover, theReadoutOfASteadyColumnTellsOneLevel) {
    const auto recorder = newSession();
    recorder->reset(std::nullopt);
    record(*recorder, 0.0, 12.0, constant(80.0));
    LevelHistoryView view = historyOf(*recorder);
    view.hover.xPosition = 100.0;
    EXPECT_EQ(hoverText(view, layout(view, {900.0, 300.0})).section(QStringLiteral("  "), -1),
              QStringLiteral("80.0 dB"));
}

TEST(LevelHistoryHover, aDashBetweenNegativeLevelsHasAirAroundIt) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 100.0,
           [](double elapsed) { return std::fmod(elapsed, 0.1) < 0.05 ? -26.0 : -23.96; });
    LevelHistoryView view = historyOf(*recorder);
    view.unitLabel = QStringLiteral("dBFS");
    view.hover.xPosition = 40.0 + 655.0;
    EXPECT_TRUE(hoverText(view, layout(view, {1048.0, 300.0}))
                    .endsWith(QStringLiteral("  -26.0 – -24.0 dBFS")));
}

TEST(LevelHistoryHover, anEmptyHistoryHasNoReadout) {
    const auto recorder = newSession();
    LevelHistoryView view = historyOf(*recorder);
    view.hover.xPosition = 100.0;
    EXPECT_TRUE(hoverText(view, layout(view, {900.0, 300.0})).isEmpty());
    view.recorder = nullptr;
    EXPECT_TRUE(hoverText(view, layout(view, {900.0, 300.0})).isEmpty());
}

TEST(LevelHistoryHover, outsideThePlotAndOnPagesThereIsNoReadout) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(80.0));
    LevelHistoryView view = historyOf(*recorder);
    const LevelHistoryGeometry geometry = layout(view, {900.0, 300.0});
    view.hover.xPosition = 39.0;
    EXPECT_TRUE(hoverText(view, geometry).isEmpty());
    view.hover.xPosition = 893.0;
    EXPECT_TRUE(hoverText(view, geometry).isEmpty());
    view.hover.xPosition = 100.0;
    EXPECT_FALSE(hoverText(view, geometry).isEmpty());
    view.isInteractive = false;
    EXPECT_TRUE(hoverText(view, geometry).isEmpty());
}

TEST(LevelHistoryHover, theReadoutStaysInsideAtEveryWidth) {
    const auto recorder = TarvaneTests::concert(120.0);
    LevelHistoryView view = historyOf(*recorder);
    view.secondaryMetricIndex = 1;
    for (const double width : {420.0, 900.0, 3840.0}) {
        const QSizeF size(width, 300.0);
        const LevelHistoryGeometry geometry = layout(view, size);
        for (double x = 41.0; x < width - 9.0; x += width / 40.0) {
            view.hover.xPosition = x;
            EXPECT_TRUE(QRectF(QPointF(), size).contains(hoverPlate(view, geometry, size, pinned)))
                << x << " of " << width;
        }
    }
}

}  // namespace LevelHistoryHoverTests
}  // namespace TarvaneApp
