#include "Displays/LevelHistory/LevelHistoryView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>

#include "Displays/LevelHistory/LevelHistoryDrawing.h"
#include "Displays/LevelHistory/LevelHistoryGeometry.h"
#include "Displays/LevelHistory/LevelHistoryHover.h"
#include "Support/GoldenImage.h"
#include "Support/LevelHistoryScenes.h"
#include "Support/PinnedTypeface.h"

namespace TarvaneApp {
namespace {

using TarvaneTests::GoldenImage;
using TarvaneTests::historyOf;
using TarvaneTests::newSession;
using TarvaneTests::record;
using TarvaneTests::Recorder;
using testing::ElementsAre;

using Span = LevelHistoryView::Span;
using Range = LevelHistoryViewport::Range;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

auto constant(double levelDB) {
    return [levelDB](double) { return levelDB; };
}

LevelHistoryTraces tracesOf(double minDB, double maxDB) {
    LevelHistoryTraces traces;
    traces.primary = {LevelHistoryTraces::Column{minDB, maxDB}, std::nullopt};
    return traces;
}

LevelHistoryOverlay overlayOf(const Recorder& recorder, const TarvaneKit::RGBAColor& color) {
    return {.id = TarvaneKit::UUID::main(),
            .recorder = &recorder,
            .revision = 1,
            .metricIndex = 0,
            .color = color,
            .displayOffsetDB = 0.0};
}

// --- arithmetic

TEST(LevelHistoryView, thePlotLeavesRoomForLabels) {
    EXPECT_EQ(LevelHistoryView().plot({900.0, 300.0}), QRectF(40.0, 14.0, 852.0, 270.0));
    EXPECT_EQ(LevelHistoryView().plot({10.0, 10.0}), QRectF(40.0, 14.0, 1.0, 1.0));
}

TEST(LevelHistoryView, aSessionOfThreeSecondsFills30PercentOfTheWidth) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 3.0, constant(80.0));
    const LevelHistoryGeometry geometry = layout(historyOf(*recorder), {1048.0, 300.0});
    EXPECT_EQ(geometry.range, (Range{0.0, 10.0}));
    ASSERT_EQ(geometry.traces.primary.size(), 1000U);
    // Filled up to the end of the 30th bucket of 0.1 s.
    EXPECT_TRUE(geometry.traces.primary[299]);
    EXPECT_FALSE(geometry.traces.primary[300]);
}

TEST(LevelHistoryView, aViewWithoutWidthHasOneColumn) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(80.0));
    EXPECT_EQ(layout(historyOf(*recorder), {0.0, 300.0}).traces.primary.size(), 1U);
}

TEST(LevelHistoryView, columnsAreShownLessTheDisplayOffset) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(94.0));
    LevelHistoryView view = historyOf(*recorder);
    view.displayOffsetDB = 120.0;
    const auto traces = layout(view, {900.0, 300.0}).traces;
    EXPECT_NEAR(traces.primary.front()->maxDB, -26.0, 1e-5);
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

TEST(LevelHistoryView, withoutColumnsTheAxisFollowsTheUnit) {
    LevelHistoryView view;
    view.unitLabel = QStringLiteral("dB");
    EXPECT_EQ(view.yRange({}), (Span{30.0, 110.0}));
    view.unitLabel = QStringLiteral("dBFS");
    EXPECT_EQ(view.yRange({}), (Span{-80.0, 0.0}));
}

TEST(LevelHistoryView, aLoudnessChannelKeepsItsAxisWhateverTheLevel) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(-90.0));
    LevelHistoryView view = historyOf(*recorder);
    view.fixedDBRange = {.lowest = -60.0, .highest = 0.0};
    EXPECT_EQ(layout(view, {900.0, 300.0}).axis, (Span{-60.0, 0.0}));
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

TEST(LevelHistoryView, aColumnOfOneLevelIsStillOnePixelHigh) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(80.0));
    const LevelHistoryView view = historyOf(*recorder);
    const auto columns = historyColumns(view, layout(view, {900.0, 300.0}), 1.0);
    ASSERT_FALSE(columns.empty());
    for (const LevelHistoryColumn& column : columns) {
        EXPECT_NEAR(column.bottom - column.top, 1.0, 1e-9);
    }
}

TEST(LevelHistoryView, columnsStandSideBySideOnWholeDevicePixels) {
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

TEST(LevelHistoryView, aPauseIsAGapInColumnsAndLines) {
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

TEST(LevelHistoryView, aLineRunsThroughTheMaximaInTheMiddlesOfItsColumns) {
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

TEST(LevelHistoryView, aMetricThatTheRecorderDoesntHoldShowsTheEmptyGrid) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 12.0, constant(80.0));
    LevelHistoryView view = historyOf(*recorder);
    view.metricIndex = 7;
    EXPECT_TRUE(historyColumns(view, layout(view, {900.0, 300.0}), 1.0).empty());
    EXPECT_EQ(layout(view, {900.0, 300.0}).axis, (Span{30.0, 110.0}));
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

TEST(LevelHistoryView, anExtremeIsToldWithUnitAndTime) {
    LevelHistoryView view;
    view.unitLabel = QStringLiteral("dBFS");
    view.displayOffsetDB = 120.0;
    EXPECT_EQ(view.extremeLabel({.elapsed = 65.0, .levelDB = 94.24}),
              QStringLiteral("-25.8 dBFS 1:05"));
}

// --- hover

TEST(LevelHistoryView, theReadOutTellsTimeClockRangeAndSecondMetric) {
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

TEST(LevelHistoryView, theReadOutOfASteadyColumnTellsOneLevel) {
    const auto recorder = newSession();
    recorder->reset(std::nullopt);
    record(*recorder, 0.0, 12.0, constant(80.0));
    LevelHistoryView view = historyOf(*recorder);
    view.hover.xPosition = 100.0;
    EXPECT_EQ(hoverText(view, layout(view, {900.0, 300.0})).section(QStringLiteral("  "), -1),
              QStringLiteral("80.0 dB"));
}

TEST(LevelHistoryView, outsideThePlotAndOnPagesThereIsNoReadOut) {
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

TEST(LevelHistoryView, theReadOutStaysInsideAtEveryWidth) {
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

// --- the drawing

QImage drawn(const LevelHistoryView& view, const QSize& size, double scale = 1.0) {
    QImage image(size * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Theme::panelBackground);
    QPainter painter(&image);
    paint(painter, view, QSizeF(size), pinned);
    drawHover(painter, view, layout(view, QSizeF(size)), QSizeF(size), pinned);
    return image;
}

TEST(LevelHistoryView, marksStandAtTheExtremesWithinTheRange) {
    const auto recorder = newSession();
    record(*recorder, 0.0, 100.0,
           [](double elapsed) { return elapsed > 50.0 && elapsed < 50.5 ? 95.0 : 80.0; });
    const LevelHistoryView view = historyOf(*recorder);
    const QImage with = drawn(view, {1048, 300});
    LevelHistoryView page = view;
    page.isInteractive = false;
    const QImage without = drawn(page, {1048, 300});
    const LevelHistoryGeometry geometry = layout(view, {1048.0, 300.0});
    const QPoint tip(540,
                     static_cast<int>(LevelHistoryView::y(95.0, geometry.axis, geometry.plot)));
    EXPECT_NE(with.pixel(tip - QPoint(0, 8)), without.pixel(tip - QPoint(0, 8)));
    LevelHistoryView late = view;
    late.viewport.custom = {.span = 20.0, .end = std::nullopt};
    LevelHistoryView latePage = late;
    latePage.isInteractive = false;
    EXPECT_EQ(drawn(late, {1048, 300}), drawn(latePage, {1048, 300}));
}

TEST(LevelHistoryView, anEmptyRecorderAsksForAStart) {
    const auto recorder = newSession();
    const QImage empty = drawn(historyOf(*recorder), {900, 300});
    record(*recorder, 0.0, 0.02, constant(-240.0));  // no value yet
    EXPECT_EQ(drawn(historyOf(*recorder), {900, 300}), empty);
    record(*recorder, 0.02, 0.2, constant(80.0));
    EXPECT_GT(GoldenImage::differingPixels(drawn(historyOf(*recorder), {900, 300}), empty),
              GoldenImage::tolerance);
}

struct Golden {
    const char* name;
    LevelHistoryView view;
    QSize size;
};

TEST(LevelHistoryView, looksAsItsGoldenImages) {
    const auto none = newSession();
    const auto start = TarvaneTests::concert(3.0);
    const auto show = TarvaneTests::concert(600.0);
    const auto quieter = TarvaneTests::concert(600.0, 88.0);
    const auto loudness = TarvaneTests::concert(300.0, -18.0);
    const auto paused = newSession();
    record(*paused, 0.0, 60.0, TarvaneTests::Concert(98.0));
    record(*paused, 100.0, 150.0, TarvaneTests::Concert(104.0));
    const auto pausedToo = newSession();
    record(*pausedToo, 0.0, 60.0, constant(70.0));
    record(*pausedToo, 100.0, 150.0, constant(75.0));
    const auto steady = newSession();
    record(*steady, 0.0, 30.0, constant(94.0));
    // Four hours from near silence to far beyond any sound.
    const auto extreme = newSession();
    record(
        *extreme, 0.0, 14400.0, [](double elapsed) { return -190.0 + elapsed / 14400.0 * 390.0; },
        1.0);

    LevelHistoryView overlays = historyOf(*show);
    overlays.secondaryMetricIndex = 1;
    overlays.overlays = {overlayOf(*quieter, {0.35, 0.65, 1.0, 1.0})};
    LevelHistoryView lufs = historyOf(*loudness);
    lufs.unitLabel = QStringLiteral("LUFS");
    lufs.fixedDBRange = {.lowest = -60.0, .highest = 0.0};
    lufs.secondaryMetricIndex = 1;
    lufs.trafficLight = TarvaneKit::TrafficLightConfig::defaultDBFS();
    LevelHistoryView gap = historyOf(*paused);
    gap.overlays = {overlayOf(*pausedToo, {0.35, 0.65, 1.0, 1.0})};
    LevelHistoryView hovered = historyOf(*show);
    hovered.viewport.custom = {.span = 60.0, .end = 330.0};
    hovered.hover.xPosition = 300.0;
    LevelHistoryView digital = historyOf(*show);
    digital.displayOffsetDB = 124.3;
    digital.unitLabel = QStringLiteral("dBFS");
    LevelHistoryView page = historyOf(*show);
    page.isInteractive = false;
    const QSize ordinary(600, 220);
    const std::vector<Golden> goldens{{"empty", historyOf(*none), ordinary},
                                      {"started", historyOf(*start), ordinary},
                                      {"session", historyOf(*show), ordinary},
                                      {"overlays", overlays, ordinary},
                                      {"lufs", lufs, ordinary},
                                      {"gap", gap, ordinary},
                                      {"hover", hovered, ordinary},
                                      {"dbfs", digital, ordinary},
                                      {"steady", historyOf(*steady), ordinary},
                                      {"page", page, ordinary},
                                      {"extreme", historyOf(*extreme), ordinary},
                                      {"narrow", overlays, {240, 120}},
                                      {"huge", overlays, {1900, 600}}};
    for (const Golden& golden : goldens) {
        for (const int scale : {1, 2}) {
            const QString name =
                QStringLiteral("history-%1@%2x").arg(QLatin1String(golden.name)).arg(scale);
            EXPECT_TRUE(GoldenImage::matches(name, drawn(golden.view, golden.size, scale)));
        }
    }
}

TEST(LevelHistoryView, aMissingMarkUnitOrLineIsMoreThanAGoldenImageTolerates) {
    const auto show = TarvaneTests::concert(120.0);
    LevelHistoryView view = historyOf(*show);
    view.secondaryMetricIndex = 1;
    const QSize size(240, 120);
    const QImage whole = drawn(view, size);
    LevelHistoryView other = view;
    other.isInteractive = false;
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
    other = view;
    other.unitLabel.clear();
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
    other = view;
    other.secondaryMetricIndex.reset();
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
}

}  // namespace
}  // namespace TarvaneApp
