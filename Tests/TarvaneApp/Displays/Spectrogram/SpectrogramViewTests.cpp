#include "Displays/Spectrogram/SpectrogramView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <deque>
#include <limits>

#include "Displays/Spectrogram/SpectrogramFrequencyAxisView.h"
#include "Displays/Spectrogram/SpectrogramStatusBadge.h"
#include "Support/GoldenImage.h"
#include "Support/PinnedTypeface.h"
#include "Support/SpectrogramScenes.h"

namespace TarvaneApp {
namespace SpectrogramViewTests {

using TarvaneKit::RGBAColor;
using TarvaneTests::GoldenImage;
using TarvaneTests::SpectrogramHistory;
using TarvaneTests::spectrogramOf;

using Stops = std::vector<SpectrogramColorStop>;
using VisibleRows = SpectrogramView::VisibleRows;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

SpectrogramColorStop stop(double position, const RGBAColor& color) {
    return {.id = TarvaneKit::UUID::main(), .position = position, .color = color};
}

constexpr RGBAColor black{0.0, 0.0, 0.0, 1.0};
constexpr RGBAColor red{1.0, 0.0, 0.0, 1.0};
constexpr RGBAColor blue{0.0, 0.0, 1.0, 1.0};

// --- colour

TEST(SpectrogramView, theDefaultRampRunsFromNearBlackToWhite) {
    const auto& stops = defaultSpectrogramColorStops();
    EXPECT_EQ(SpectrogramView::colorForT(0.0, stops), qRgb(5, 5, 12));
    EXPECT_EQ(SpectrogramView::colorForT(0.378, stops), qRgb(70, 15, 65));
    EXPECT_EQ(SpectrogramView::colorForT(0.535, stops), qRgb(12, 26, 110));
    EXPECT_EQ(SpectrogramView::colorForT(0.655, stops), qRgb(15, 114, 209));
    EXPECT_EQ(SpectrogramView::colorForT(0.756, stops), qRgb(0, 183, 148));
    EXPECT_EQ(SpectrogramView::colorForT(0.845, stops), qRgb(136, 214, 42));
    EXPECT_EQ(SpectrogramView::colorForT(0.926, stops), qRgb(255, 157, 0));
    EXPECT_EQ(SpectrogramView::colorForT(0.963, stops), qRgb(255, 105, 180));
    EXPECT_EQ(SpectrogramView::colorForT(1.0, stops), qRgb(255, 255, 255));
    EXPECT_EQ(stops.size(), 9U);
}

TEST(SpectrogramView, betweenTwoStopsTheColourIsLinearInSRGB) {
    const Stops stops{stop(0.2, black), stop(0.6, red)};
    EXPECT_EQ(SpectrogramView::colorForT(0.3, stops), qRgb(64, 0, 0));   // 0.25 · 255 = 63.75
    EXPECT_EQ(SpectrogramView::colorForT(0.4, stops), qRgb(128, 0, 0));  // 127.5, away from zero
}

TEST(SpectrogramView, aColourBeyondWhatColoursCanBeEndsAtTheNearest) {
    const Stops stops{stop(0.0, {1e308, -1e308, 1.0, 1.0}), stop(1.0, {1e308, 2.0, -1.0, 1.0})};
    EXPECT_EQ(SpectrogramView::colorForT(0.0, stops), qRgb(255, 0, 255));
    EXPECT_EQ(SpectrogramView::colorForT(1.0, stops), qRgb(255, 255, 0));
}

TEST(SpectrogramView, beyondItsStopsARampKeepsItsEnds) {
    const Stops stops{stop(0.2, red), stop(0.6, blue)};
    EXPECT_EQ(SpectrogramView::colorForT(-1.0, stops), qRgb(255, 0, 0));
    EXPECT_EQ(SpectrogramView::colorForT(0.1, stops), qRgb(255, 0, 0));
    EXPECT_EQ(SpectrogramView::colorForT(0.7, stops), qRgb(0, 0, 255));
    EXPECT_EQ(SpectrogramView::colorForT(2.0, stops), qRgb(0, 0, 255));
    EXPECT_EQ(SpectrogramView::colorForT(0.5, {stop(0.9, red)}), qRgb(255, 0, 0));
}

TEST(SpectrogramView, stopsAreTakenInTheOrderOfTheirPlaces) {
    const Stops stops{stop(1.0, blue), stop(0.0, red)};
    EXPECT_EQ(SpectrogramView::colorForT(0.0, stops), qRgb(255, 0, 0));
    EXPECT_EQ(SpectrogramView::colorForT(1.0, stops), qRgb(0, 0, 255));
}

TEST(SpectrogramView, twoStopsOnOnePlaceAreAHardStep) {
    const Stops stops{stop(0.0, red), stop(0.5, red), stop(0.5, blue), stop(1.0, blue)};
    const auto lut = SpectrogramView::colorLUT(stops);
    for (std::size_t i = 0; i < lut.size(); ++i) {
        EXPECT_EQ(lut[i], i < 128 ? qRgb(255, 0, 0) : qRgb(0, 0, 255)) << i;
    }
}

TEST(SpectrogramView, aRampWithoutStopsIsWhiteAtEveryLevel) {
    EXPECT_THAT(SpectrogramView::colorLUT({}), testing::Each(qRgb(255, 255, 255)));
}

TEST(SpectrogramView, theTableHas256EqualSteps) {
    const auto lut = SpectrogramView::colorLUT({stop(0.0, black), stop(1.0, red)});
    for (std::size_t i = 0; i < lut.size(); ++i) {
        EXPECT_EQ(lut[i], qRgb(static_cast<int>(i), 0, 0));
    }
}

// --- rows

TEST(SpectrogramView, rowsAreSpanTimesPaceOverSliceHeight) {
    SpectrogramView view;
    EXPECT_EQ(view.rows(), 120);
    view.timeSpanSeconds = 12.0;
    EXPECT_EQ(view.rows(), 720);
    view.sliceHeightMultiplier = 16.0;
    EXPECT_EQ(view.rows(), 45);
    view.timeSpanSeconds = 0.475;  // 28.5 rows, away from zero
    view.sliceHeightMultiplier = 1.0;
    EXPECT_EQ(view.rows(), 29);
    view.timeSpanSeconds = 1e308;
    EXPECT_EQ(view.rows(), 1'000'000);  // more than any history
}

TEST(SpectrogramView, aSliceHeightUnderAHundredthCountsAsAHundredthAndThereIsAlwaysARow) {
    SpectrogramView view;
    view.timeSpanSeconds = 0.1;
    view.sliceHeightMultiplier = 0.0;
    EXPECT_EQ(view.rows(), 600);  // 6 rows / 0.01
    view.sliceHeightMultiplier = 1000.0;
    EXPECT_EQ(view.rows(), 1);
}

TEST(SpectrogramView, theNewestRowsAreShownAndScrolledBackOlderOnes) {
    const SpectrogramHistory history(300, std::vector<float>(4));
    SpectrogramView view = spectrogramOf(history);
    EXPECT_EQ(view.visibleRows(), (VisibleRows{180, 300, true}));
    view.scrollState.rowOffset = 50;
    EXPECT_EQ(view.visibleRows(), (VisibleRows{130, 250, false}));
    view.scrollState.rowOffset = 1000;
    EXPECT_EQ(view.visibleRows(), (VisibleRows{0, 120, false}));
}

TEST(SpectrogramView, aShortHistoryFillsThePlotAndIsLiveWhateverTheOffset) {
    const SpectrogramHistory history(30, std::vector<float>(4));
    SpectrogramView view = spectrogramOf(history);
    view.scrollState.rowOffset = 10;
    EXPECT_EQ(view.visibleRows(), (VisibleRows{0, 30, true}));
}

TEST(SpectrogramRows, anyContainerOfRowsIsSeenAsRows) {
    const std::deque<std::vector<float>> kept{{1.0F}, {2.0F}, {3.0F}, {4.0F}};
    const SpectrogramRows rows(kept);
    EXPECT_EQ(rows.count(), 4);
    const SpectrogramRows part = rows.slice(1, 4).slice(1, 3);
    ASSERT_EQ(part.count(), 2);
    EXPECT_EQ(part[0].front(), 3.0F);
    EXPECT_EQ(part[1].front(), 4.0F);
    EXPECT_EQ(SpectrogramRows().count(), 0);
}

// --- scrolling

TEST(SpectrogramScrollState, draggingDownByThePlotsHeightGoesBackByAllItsRows) {
    SpectrogramScrollState state;
    state.drag(300.0, 300.0, 120, 7200);
    EXPECT_EQ(state.rowOffset, 120);
    state.drag(31.0, 300.0, 120, 7200);  // the same drag: from where it began
    EXPECT_EQ(state.rowOffset, 12);      // 12.4
    state.endDrag();
    state.drag(25.0, 300.0, 120, 7200);
    EXPECT_EQ(state.rowOffset, 22);
}

TEST(SpectrogramScrollState, aDragStopsAtBothEndsOfTheHistory) {
    SpectrogramScrollState state;
    state.drag(-100.0, 300.0, 120, 7200);
    EXPECT_EQ(state.rowOffset, 0);
    state.drag(1e9, 300.0, 120, 7200);
    EXPECT_EQ(state.rowOffset, 7080);
}

TEST(SpectrogramScrollState, withoutMoreRowsThanFitADragCantMove) {
    SpectrogramScrollState state;
    state.drag(500.0, 300.0, 120, 120);
    EXPECT_EQ(state.rowOffset, 0);
    EXPECT_TRUE(state.isDragging);
    EXPECT_EQ(SpectrogramStatusBadge{state.rowOffset == 0}.text(), QStringLiteral("LIVE"));
}

TEST(SpectrogramScrollState, resumingGoesBackToLiveAndEndsTheDrag) {
    SpectrogramScrollState state;
    state.drag(100.0, 300.0, 120, 7200);
    state.resume();
    EXPECT_EQ(state.rowOffset, 0);
    EXPECT_FALSE(state.isDragging);
}

TEST(SpectrogramScrollState, aPlotWithoutHeightScrollsByItsRowsPerPixel) {
    SpectrogramScrollState state;
    state.drag(1.0, 0.0, 120, 7200);
    EXPECT_EQ(state.rowOffset, 120);
}

// --- axis strip and badge

TEST(SpectrogramFrequencyAxisView, labelsStandUnderTheirRulesAndTheEndsOnTheStrip) {
    const auto labels = SpectrogramFrequencyAxisView().labels(900.0, pinned);
    EXPECT_EQ(labels.size(), 10U);
    for (const auto& label : labels) {
        if (label.text == QStringLiteral("200")) {
            EXPECT_NEAR(label.rect.center().x(), 300.0, 1e-9);
        }
        if (label.text == QStringLiteral("20")) {
            EXPECT_NEAR(label.rect.center().x(), 12.0, 1e-9);
        }
        if (label.text == QStringLiteral("20k")) {
            EXPECT_NEAR(label.rect.center().x(), 888.0, 1e-9);
        }
    }
}

TEST(SpectrogramFrequencyAxisView, noLabelTouchesAnotherOrLeavesTheStrip) {
    for (const double width : {120.0, 240.0, 480.0, 900.0, 3840.0}) {
        const auto labels = SpectrogramFrequencyAxisView().labels(width, pinned);
        EXPECT_GE(labels.size(), 3U) << width;
        for (std::size_t i = 0; i < labels.size(); ++i) {
            EXPECT_GE(labels[i].rect.left(), 0.0);
            EXPECT_LE(labels[i].rect.right(), width);
            for (std::size_t j = i + 1; j < labels.size(); ++j) {
                EXPECT_FALSE(labels[i].rect.intersects(labels[j].rect)) << width;
            }
        }
    }
}

TEST(SpectrogramStatusBadge, itTellsLiveFromHistoryAndStaysInside) {
    EXPECT_EQ(SpectrogramStatusBadge{true}.text(), QStringLiteral("LIVE"));
    EXPECT_EQ(SpectrogramStatusBadge{false}.text(),
              QStringLiteral("HISTORY · double-click to resume"));
    const QRectF rect = SpectrogramStatusBadge{true}.rect({900.0, 300.0}, pinned);
    EXPECT_EQ(rect.right(), 894.0);
    EXPECT_EQ(rect.top(), 6.0);
    for (const double width : {100.0, 240.0, 900.0}) {
        const QSizeF plot(width, 200.0);
        EXPECT_TRUE(
            QRectF(QPointF(), plot).contains(SpectrogramStatusBadge{false}.rect(plot, pinned)));
    }
}

// --- the drawing

QImage drawn(const SpectrogramView& view, const QSize& size, double scale = 1.0) {
    QImage image(size * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Theme::panelBackground);
    QPainter painter(&image);
    const QSizeF plot(size.width(), size.height() - SpectrogramFrequencyAxisView::height);
    SpectrogramRasterCache raster;
    paint(painter, view, raster, plot);
    SpectrogramStatusBadge{view.scrollState.rowOffset == 0}.paint(painter, plot, pinned);
    painter.translate(0.0, plot.height());
    paint(painter, SpectrogramFrequencyAxisView(), plot.width(), pinned);
    return image;
}

TEST(SpectrogramView, withoutRowsOrColumnsThereIsTheGridAlone) {
    const QImage empty = drawn(SpectrogramView(), {600, 216});
    EXPECT_EQ(QColor(empty.pixel(100, 100)), QColor(Theme::background.rgb()));
    const SpectrogramHistory history = TarvaneTests::spectrogramHistory(10);
    SpectrogramView noColumns = spectrogramOf(history);
    noColumns.frequencies = {};
    EXPECT_EQ(drawn(noColumns, {600, 216}), empty);
}

// 1.5 kHz lies at log10(75) / 3 of the width, clear of the rules.
TEST(SpectrogramView, aToneStandsAtItsFrequencyAndTheNewestRowAtTheBottom) {
    SpectrogramHistory history(120, std::vector<float>(1024, 0.0F));
    const auto tone = static_cast<std::size_t>(1023.0 * std::log10(75.0) / 3.0);
    for (std::size_t row = 90; row < 120; ++row) {
        history[row][tone] = history[row][tone + 1] = 110.0F;
    }
    const QImage image = drawn(spectrogramOf(history), {600, 216});
    const int x = static_cast<int>(600.0 * std::log10(75.0) / 3.0);
    const auto isLit = [&](int y) {
        return qGreen(image.pixel(x, y)) > 150 || qGreen(image.pixel(x - 1, y)) > 150;
    };
    EXPECT_TRUE(isLit(199));
    EXPECT_TRUE(isLit(155));  // a quarter of 200
    EXPECT_FALSE(isLit(145));
    EXPECT_FALSE(isLit(0));
}

struct Golden {
    const char* name;
    SpectrogramView view;
    QSize size;
};

TEST(SpectrogramView, looksAsItsGoldenImages) {
    constexpr double smooth = 0.0;
    const SpectrogramHistory history = TarvaneTests::spectrogramHistory(900, smooth);
    const SpectrogramHistory started = TarvaneTests::spectrogramHistory(7, smooth);
    SpectrogramView scrolled = spectrogramOf(history);
    scrolled.scrollState.rowOffset = 300;
    SpectrogramView extreme = spectrogramOf(history);
    extreme.floorDB = 54.0;
    extreme.ceilingDB = 57.0;  // the narrowest range
    SpectrogramHistory holes = TarvaneTests::spectrogramHistory(120, smooth);
    for (std::size_t row = 40; row < 60; ++row) {
        holes[row].resize(400);
        holes[row][100] = std::numeric_limits<float>::quiet_NaN();
    }
    const QSize ordinary(600, 216);
    const std::vector<Golden> goldens{{"empty", SpectrogramView(), ordinary},
                                      {"started", spectrogramOf(started), ordinary},
                                      {"ordinary", spectrogramOf(history), ordinary},
                                      {"long", spectrogramOf(history, 12.0), ordinary},
                                      {"history", scrolled, ordinary},
                                      {"extreme", extreme, ordinary},
                                      {"holes", spectrogramOf(holes), ordinary},
                                      {"narrow", spectrogramOf(history), {240, 120}},
                                      {"huge", spectrogramOf(history), {1900, 600}}};
    for (const Golden& golden : goldens) {
        for (const int scale : {1, 2}) {
            const QString name =
                QStringLiteral("spectrogram-%1@%2x").arg(QLatin1String(golden.name)).arg(scale);
            EXPECT_TRUE(GoldenImage::matches(name, drawn(golden.view, golden.size, scale)));
        }
    }
}

TEST(SpectrogramView, anotherBadgeIsMoreThanAGoldenImageTolerates) {
    const SpectrogramHistory history = TarvaneTests::spectrogramHistory(60);
    const SpectrogramView live = spectrogramOf(history);
    SpectrogramView other = live;
    other.scrollState.rowOffset = 1;  // too short to scroll: the same rows under the other badge
    EXPECT_GT(GoldenImage::differingPixels(drawn(live, {240, 120}), drawn(other, {240, 120})),
              GoldenImage::tolerance);
}

// --- the stored record

TEST(SpectrogramColorStop, aStopWithoutAnIDGetsAFreshOne) {
    const std::string text = R"({"position":0.5,"color":{"red":1,"green":0,"blue":0,"alpha":1}})";
    const auto first = TarvaneKit::decode<SpectrogramColorStop>(text);
    const auto second = TarvaneKit::decode<SpectrogramColorStop>(text);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->position, 0.5);
    EXPECT_EQ(first->color, red);
    EXPECT_NE(first->id, second->id);
}

TEST(SpectrogramColorStop, placeAndColourAreRequired) {
    EXPECT_FALSE(TarvaneKit::decode<SpectrogramColorStop>(R"({"position":0.5})"));
    EXPECT_FALSE(TarvaneKit::decode<SpectrogramColorStop>(
        R"({"color":{"red":1,"green":0,"blue":0,"alpha":1}})"));
}

TEST(SpectrogramColorStop, aPresetIsReadBackAsItWasWritten) {
    const SpectrogramColorPreset preset{"Mine", defaultSpectrogramColorStops()};
    EXPECT_EQ(TarvaneKit::decode<SpectrogramColorPreset>(*TarvaneKit::encode(preset)), preset);
}

}  // namespace SpectrogramViewTests
}  // namespace TarvaneApp
