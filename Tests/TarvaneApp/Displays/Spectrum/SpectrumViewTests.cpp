#include "Displays/Spectrum/SpectrumView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <limits>

#include "Displays/Spectrum/SpectrumDrawing.h"
#include "Displays/Spectrum/SpectrumGeometry.h"
#include "Displays/Spectrum/SpectrumHover.h"
#include "Displays/Spectrum/SpectrumLabels.h"
#include "Support/GoldenImage.h"
#include "Support/PinnedTypeface.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneApp {
namespace {

using TarvaneKit::OctaveBand;
using TarvaneTests::GoldenImage;
using testing::ElementsAre;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

SpectrumView digital() {
    SpectrumView view;
    view.scale = RTAScale::dbfs;
    return view;
}

OctaveBand band(double lowerHz, double upperHz) {
    return {.centerFrequencyHz = std::sqrt(lowerHz * upperHz),
            .lowerEdgeHz = lowerHz,
            .upperEdgeHz = upperHz,
            .label = {}};
}

// --- arithmetic

TEST(SpectrumView, theFrequencyAxisRunsInDecadesFromEdgeToEdge) {
    const FrequencyAxis axis = SpectrumView().frequencyAxis();
    EXPECT_NEAR(axis.x(20.0, 900.0), 0.0, 1e-9);
    EXPECT_NEAR(axis.x(200.0, 900.0), 300.0, 1e-9);
    EXPECT_NEAR(axis.x(2000.0, 900.0), 600.0, 1e-9);
    EXPECT_NEAR(axis.x(20000.0, 900.0), 900.0, 1e-9);
}

TEST(SpectrumView, aFrequencyUnderTheAxisPinsToItAndOneAboveRunsOn) {
    const FrequencyAxis axis = SpectrumView().frequencyAxis();
    EXPECT_EQ(axis.x(5.0, 900.0), 0.0);
    EXPECT_EQ(axis.x(0.0, 900.0), 0.0);
    EXPECT_NEAR(axis.x(200000.0, 900.0), 1200.0, 1e-9);
}

TEST(SpectrumView, frequencyAndPlaceAreInverseFromEndToEnd) {
    const FrequencyAxis axis = SpectrumView().frequencyAxis();
    for (const double width : {240.0, 900.0, 3840.0}) {
        for (int i = 0; i <= 100; ++i) {
            const double x = width * i / 100.0;
            EXPECT_NEAR(axis.x(axis.frequencyHz(x, width), width), x, 1e-9);
            const double frequencyHz = 20.0 * std::pow(1000.0, i / 100.0);
            EXPECT_NEAR(axis.frequencyHz(axis.x(frequencyHz, width), width) / frequencyHz, 1.0,
                        1e-12);
        }
    }
}

TEST(SpectrumView, levelAndHeightAreInverseFromEndToEnd) {
    for (const SpectrumView& view : {SpectrumView(), digital()}) {
        for (int i = 0; i <= 140; ++i) {
            const double levelDB = view.axisBottomDB() + i;
            EXPECT_NEAR(view.levelAt(view.y(levelDB, 300.0), 300.0), levelDB, 1e-9);
            EXPECT_NEAR(view.y(view.levelAt(300.0 * i / 140.0, 300.0), 300.0), 300.0 * i / 140.0,
                        1e-9);
        }
    }
}

TEST(SpectrumView, zeroInSPLLiesOnTheBottomEdgeAnd141OnTheTopEdge) {
    const SpectrumView view;
    EXPECT_EQ(view.y(0.0, 300.0), 300.0);
    EXPECT_EQ(view.y(-20.0, 300.0), 300.0);
    EXPECT_EQ(view.y(141.0, 300.0), 0.0);
    EXPECT_EQ(view.y(70.0, 300.0), 150.0);
}

TEST(SpectrumView, minus140AndLessInDBFSLieOnTheBottomEdge) {
    EXPECT_EQ(digital().y(-140.0, 300.0), 300.0);
    EXPECT_EQ(digital().y(-180.0, 300.0), 300.0);
    EXPECT_EQ(digital().y(-70.0, 300.0), 150.0);
    EXPECT_EQ(digital().y(0.5, 300.0), 0.0);
}

TEST(SpectrumView, aLevelThatIsNoNumberLiesOnTheBottomEdge) {
    EXPECT_EQ(SpectrumView().y(std::nan(""), 300.0), 300.0);
    EXPECT_EQ(digital().y(-std::numeric_limits<double>::infinity(), 300.0), 300.0);
}

TEST(SpectrumView, levelRulesStandEvery20dBFromBottomToTop) {
    EXPECT_THAT(SpectrumView().levelGridLines(),
                ElementsAre(0.0, 20.0, 40.0, 60.0, 80.0, 100.0, 120.0, 140.0));
    EXPECT_THAT(digital().levelGridLines(),
                ElementsAre(-140.0, -120.0, -100.0, -80.0, -60.0, -40.0, -20.0, 0.0));
}

// 48000 / 4096 = 11.72 Hz a line: lines 0 and 1 lie under 20 Hz, and line 2 at 23.44 Hz.
TEST(SpectrumView, at48kHzTheFirstPointIsThatOfLine2) {
    const SpectrumView view;
    const std::vector<double> levels(2048, 70.0);
    const auto points = linePoints(view, levels, {900.0, 300.0});
    EXPECT_NEAR(points.front().x(), 300.0 * std::log10(2 * 48000.0 / 4096.0 / 20.0), 1e-9);
    EXPECT_EQ(points.front().y(), 150.0);
    EXPECT_EQ(points.size(), 1705U);  // lines 2 to 1706: 1706 · 11.71875 Hz = 19992 Hz
}

// 96000 / 4096 = 23.44 Hz a line: line 853 lies at 19992 Hz, line 854 at 20016 Hz.
TEST(SpectrumView, at96kHzTheWalkStopsAtLine854) {
    SpectrumView view;
    view.sampleRate = 96000.0;
    const auto points = linePoints(view, std::vector<double>(2048, 70.0), {900.0, 300.0});
    EXPECT_EQ(points.size(), 853U);  // 1 to 853
    EXPECT_NEAR(points.back().x(), 300.0 * std::log10(853 * 96000.0 / 4096.0 / 20.0), 1e-9);
}

TEST(SpectrumView, anotherRateAndOffsetReplaceTheViewsOwn) {
    SpectrumView view;
    view.levelOffsetDB = 10.0;
    const std::vector<double> levels(2048, 70.0);
    EXPECT_EQ(linePoints(view, levels, {900.0, 140.0}).front().y(), 80.0);
    const auto other = linePoints(view, levels, {900.0, 140.0}, 96000.0, 30.0);
    EXPECT_EQ(other.front().y(), 100.0);
    EXPECT_NEAR(other.front().x(), 300.0 * std::log10(96000.0 / 4096.0 / 20.0), 1e-9);
    EXPECT_TRUE(linePoints(view, {}, {900.0, 140.0}).empty());
}

TEST(SpectrumView, underThreePointsALineHasNoCurve) {
    EXPECT_TRUE(smoothedPath({}).isEmpty());
    const QPainterPath two = smoothedPath({{0.0, 0.0}, {10.0, 20.0}});
    ASSERT_EQ(two.elementCount(), 2);
    EXPECT_TRUE(two.elementAt(1).isLineTo());
    EXPECT_EQ(QPointF(two.elementAt(1)), QPointF(10.0, 20.0));
}

TEST(SpectrumView, aSmoothedLineRunsThroughTheMiddlesBetweenItsPoints) {
    const QPainterPath path = smoothedPath({{0.0, 0.0}, {10.0, 20.0}, {20.0, 0.0}});
    // To the middle of the last two, then straight to the last.
    EXPECT_EQ(path.currentPosition(), QPointF(20.0, 0.0));
    EXPECT_EQ(QPointF(path.elementAt(3)), QPointF(15.0, 10.0));
    EXPECT_TRUE(path.elementAt(4).isLineTo());
    // A quadratic in the middle of its way: (0 + 2 · 20 + 10) / 4.
    const QPainterPath curve = smoothedPath({{0.0, 0.0}, {10.0, 20.0}, {20.0, 0.0}});
    EXPECT_LT(curve.boundingRect().bottom(), 20.0);
    EXPECT_GE(curve.boundingRect().bottom(), 12.5);
}

TEST(SpectrumView, aSmoothedLineClosesDownToItsBaseline) {
    const QPainterPath path = smoothedPath({{5.0, 1.0}, {10.0, 2.0}, {20.0, 3.0}}, 100.0);
    EXPECT_EQ(QPointF(path.elementAt(0)), QPointF(5.0, 100.0));
    EXPECT_EQ(QPointF(path.elementAt(1)), QPointF(5.0, 1.0));
    EXPECT_EQ(path.currentPosition(), QPointF(5.0, 100.0));
    EXPECT_TRUE(path.contains(QPointF(19.0, 99.0)));
}

TEST(SpectrumView, barsLeaveOnePixelOfAirAndReachTheBottom) {
    const SpectrumView view;
    const QRectF bar =
        bandBar(view, view.frequencyAxis(), band(200.0, 2000.0), 70.0, {900.0, 300.0});
    EXPECT_NEAR(bar.left(), 300.5, 1e-9);
    EXPECT_NEAR(bar.right(), 599.5, 1e-9);
    EXPECT_NEAR(bar.top(), 150.0, 1e-9);
    EXPECT_NEAR(bar.bottom(), 300.0, 1e-9);
}

TEST(SpectrumView, aBandHalfAPixelWideStillShowsABarOfOne) {
    const SpectrumView view;
    // On 300 pixels per decade: half a pixel is a ratio of 10^(0.5 / 300).
    const QRectF bar =
        bandBar(view, view.frequencyAxis(), band(1000.0, 1000.0 * std::pow(10.0, 0.5 / 300.0)),
                70.0, {900.0, 300.0});
    EXPECT_NEAR(bar.width(), 1.0, 1e-9);
}

TEST(SpectrumView, wideBarsStandOnWholePixelsOneApartAndNarrowOnesStayWhereTheyAre) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const PixelGrid grid(scale);
        const QRectF left = sharpened(QRectF(10.27 + 0.5, 0.0, 12.3 - 1.0, 5.0), grid);
        const QRectF right = sharpened(QRectF(22.57 + 0.5, 0.0, 12.3 - 1.0, 5.0), grid);
        EXPECT_NEAR(left.left() * scale, std::round(left.left() * scale), 1e-9);
        EXPECT_NEAR(left.right() * scale, std::round(left.right() * scale), 1e-9);
        EXPECT_NEAR(right.left() - left.right(), 1.0, 0.5 / scale + 1e-9);
    }
    const QRectF narrow(10.27, 0.0, 1.4, 5.0);
    EXPECT_EQ(sharpened(narrow, PixelGrid(1.0)), narrow);
}

TEST(SpectrumView, aRuleOnTheEndsOfTheAxisIsNotDrawn) {
    SpectrumView view;
    EXPECT_FALSE(view.ruleY(0.0, 300.0));
    EXPECT_FALSE(view.ruleY(140.0, 300.0));
    EXPECT_FALSE(view.ruleY(std::nullopt, 300.0));
    EXPECT_EQ(view.ruleY(70.0, 300.0), 150.0);
    EXPECT_FALSE(digital().ruleY(-140.0, 300.0));
    EXPECT_FALSE(digital().ruleY(0.0, 300.0));
    EXPECT_EQ(digital().ruleY(-70.0, 300.0), 150.0);
    view.spectrogramFloorDB = 0.0;
    view.spectrogramCeilingDB = 140.0;
    EXPECT_TRUE(layoutLabels(view, {900.0, 300.0}, pinned).floorCeiling.empty());
}

TEST(SpectrumView, theTargetCurveTakes201PointsAndNoOffset) {
    SpectrumView view = digital();
    view.levelOffsetDB = 100.0;
    view.targetCurveReferenceDB = -20.0;
    const auto curve = TarvaneKit::TargetCurve::create("Flat", {{20.0, -8.0}, {20000.0, -8.0}});
    const auto points = targetCurvePoints(view, curve, {900.0, 140.0});
    ASSERT_EQ(points.size(), 201U);
    EXPECT_EQ(points.front().x(), 0.0);
    EXPECT_EQ(points.back().x(), 900.0);
    EXPECT_EQ(points[100].y(), 28.0);  // -28 dBFS, a pixel per dB
    EXPECT_TRUE(targetCurvePoints(view, {}, {900.0, 140.0}).empty());
}

// --- hover

TEST(SpectrumView, thePointerAtTheFarLeftReads20HzAndAtTheFarRight20kHz) {
    const SpectrumView view;
    const FrequencyAxis axis = view.frequencyAxis();
    EXPECT_EQ(view.hoverLabel(*SpectrumHoverState::at(0.0, 900.0, axis).frequencyHz),
              QStringLiteral("20 Hz"));
    EXPECT_EQ(view.hoverLabel(*SpectrumHoverState::at(900.0, 900.0, axis).frequencyHz),
              QStringLiteral("20.00 kHz"));
    EXPECT_EQ(SpectrumHoverState::at(10.0, 0.0, axis).frequencyHz, 20.0);
}

TEST(SpectrumView, theReadOutTellsFrequencyLevelAndUnit) {
    SpectrumView view;
    view.lineSpectrumDB.assign(2048, 40.0);
    view.lineSpectrumDB[85] = 62.1;  // round(1000 · 4096 / 48000) = round(85.3)
    EXPECT_EQ(view.hoverLabel(1000.0), QStringLiteral("1.00 kHz  62.1 dB"));
    EXPECT_EQ(view.hoverLabel(100.0), QStringLiteral("100 Hz  40.0 dB"));
    view.scale = RTAScale::dbfs;
    view.levelOffsetDB = 120.0;
    EXPECT_EQ(view.hoverLabel(1000.0), QStringLiteral("1.00 kHz  -57.9 dBFS"));
}

TEST(SpectrumView, theReadOutFallsBackToTheBandAndThenToTheFrequencyAlone) {
    SpectrumView view;
    view.bands = {band(100.0, 200.0), band(200.0, 400.0)};
    view.bandLevelsDB = {50.0, 60.0};
    view.levelOffsetDB = 5.0;
    EXPECT_EQ(view.levelDB(100.0), 45.0);
    EXPECT_EQ(view.levelDB(200.0), 55.0);
    EXPECT_EQ(view.levelDB(400.0), std::nullopt);
    EXPECT_EQ(view.hoverLabel(400.0), QStringLiteral("400 Hz"));
    view.lineSpectrumDB.assign(20, 33.0);  // up to 223 Hz
    view.viewMode = SpectrumViewMode::banded;
    EXPECT_EQ(view.levelDB(100.0), 28.0);
    EXPECT_EQ(view.levelDB(300.0), 55.0);
}

TEST(SpectrumView, theReadOutShowsTheLevelThatIsDrawnAndCurveAndRulesKeepTheirs) {
    SpectrumView view = digital();
    view.levelOffsetDB = 110.0;
    view.lineSpectrumDB.assign(2048, 60.0);
    const auto points = linePoints(view, view.lineSpectrumDB, {900.0, 140.0});
    EXPECT_NEAR(*view.levelDB(1000.0), view.levelAt(points[83].y(), 140.0), 1e-9);
    EXPECT_EQ(view.ruleY(-50.0, 140.0), 50.0);
}

TEST(SpectrumView, theReadOutStaysInsideAtEveryWidth) {
    SpectrumView view = digital();
    view.lineSpectrumDB.assign(2048, -101.9);
    for (const double width : {180.0, 240.0, 900.0, 3840.0}) {
        for (int i = 0; i <= 20; ++i) {
            view.hover = SpectrumHoverState::at(width * i / 20.0, width, view.frequencyAxis());
            EXPECT_TRUE(
                QRectF(0.0, 0.0, width, 300.0).contains(hoverPlate(view, {width, 300.0}, pinned)))
                << width << ' ' << i;
        }
    }
    view.hover = {};
    EXPECT_TRUE(hoverPlate(view, {900.0, 300.0}, pinned).isEmpty());
}

// --- labels

std::vector<std::string> texts(const std::vector<SpectrumLabel>& labels) {
    std::vector<std::string> all;
    for (const SpectrumLabel& label : labels) {
        all.push_back(label.text.toStdString());
    }
    return all;
}

const SpectrumLabel* find(const std::vector<SpectrumLabel>& labels, const char* text) {
    const auto found = std::ranges::find(labels, QLatin1String(text), &SpectrumLabel::text);
    return found != labels.end() ? &*found : nullptr;
}

TEST(SpectrumView, allLabelsStandAtAnOrdinarySize) {
    const auto labels = layoutLabels(TarvaneTests::ordinarySpectrum(), {900.0, 300.0}, pinned);
    EXPECT_THAT(texts(labels.grid),
                testing::UnorderedElementsAre("20", "50", "100", "200", "500", "1k", "2k", "5k",
                                              "10k", "20k", "0", "+20", "+40", "+60", "+80", "+100",
                                              "+120", "+140"));
    EXPECT_THAT(texts(labels.floorCeiling), testing::UnorderedElementsAre("FLOOR", "CEILING"));
}

TEST(SpectrumView, labelsStandBesideTheirRules) {
    const auto labels = layoutLabels(TarvaneTests::ordinarySpectrum(), {900.0, 300.0}, pinned);
    EXPECT_NEAR(find(labels.grid, "200")->rect.left(), 303.0, 1e-9);
    EXPECT_NEAR(find(labels.grid, "20k")->rect.right(), 897.0, 1e-9);  // on the inner side
    EXPECT_NEAR(find(labels.grid, "20k")->rect.top(), 290.0, 1e-9);
    EXPECT_LE(find(labels.grid, "0")->rect.top(), 280.0);
    EXPECT_LT(find(labels.grid, "0")->plate().bottom(), find(labels.grid, "20")->plate().top());
    EXPECT_NEAR(find(labels.grid, "+140")->rect.top(), 2.0, 1e-9);
    EXPECT_NEAR(find(labels.grid, "+60")->rect.top(), 300.0 * 80.0 / 140.0 - 6.0, 1e-9);
    EXPECT_NEAR(find(labels.floorCeiling, "FLOOR")->rect.right(), 896.0, 1e-9);
    EXPECT_NEAR(find(labels.floorCeiling, "FLOOR")->rect.top(), 300.0 * 110.0 / 140.0 - 15.0, 1e-9);
}

TEST(SpectrumView, labelsOfDBFSHaveThePlainMinus) {
    const auto labels = layoutLabels(digital(), {900.0, 300.0}, pinned);
    EXPECT_NE(find(labels.grid, "-140"), nullptr);
    EXPECT_NE(find(labels.grid, "0"), nullptr);
}

TEST(SpectrumView, noLabelTouchesAnotherOrLeavesTheGraphAtAnySize) {
    SpectrumView view = TarvaneTests::ordinarySpectrum();
    for (const double width : {120.0, 240.0, 320.0, 480.0, 900.0, 1900.0, 3840.0}) {
        for (const double height : {60.0, 100.0, 150.0, 170.0, 200.0, 300.0, 2160.0}) {
            for (const auto& [floorDB, ceilingDB] :
                 {std::pair{30.0, 110.0}, {1.0, 139.5}, {60.0, 63.0}, {2.0, 5.0}}) {
                view.spectrogramFloorDB = floorDB;
                view.spectrogramCeilingDB = ceilingDB;
                const SpectrumLabels labels = layoutLabels(view, {width, height}, pinned);
                std::vector<SpectrumLabel> all = labels.grid;
                all.insert(all.end(), labels.floorCeiling.begin(), labels.floorCeiling.end());
                EXPECT_NE(find(all, "1k"), nullptr) << width << 'x' << height;
                for (std::size_t i = 0; i < all.size(); ++i) {
                    EXPECT_GE(all[i].rect.left(), 0.0);
                    EXPECT_LE(all[i].rect.right(), width);
                    EXPECT_GE(all[i].rect.top(), 0.0);
                    EXPECT_LE(all[i].rect.top() + 9.0, height);
                    for (std::size_t j = i + 1; j < all.size(); ++j) {
                        EXPECT_FALSE(all[i].plate().intersects(all[j].plate()))
                            << all[i].text.toStdString() << " and " << all[j].text.toStdString()
                            << " at " << width << 'x' << height;
                    }
                }
            }
        }
    }
}

// --- the drawing

QImage drawn(const SpectrumView& view, const QSize& size, double scale = 1.0) {
    QImage image(size * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Theme::panelBackground);
    QPainter painter(&image);
    paint(painter, view, QSizeF(size), pinned);
    paintHover(painter, view, QSizeF(size), pinned);
    return image;
}

TEST(SpectrumView, rulesAreSharpAtEveryScale) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage image = drawn(SpectrumView(), {900, 300}, scale);
        const int y = static_cast<int>(20.0 * scale);  // between rules and labels
        const int hairline = static_cast<int>(std::max(std::round(scale), 1.0));
        int onRules = 0;
        for (int x = 0; x < image.width(); ++x) {
            const QColor color(image.pixel(x, y));
            EXPECT_TRUE(color == QColor(Theme::panelBackground.rgb()) ||
                        color == QColor(Theme::gridLine.rgb()))
                << x << " at scale " << scale;
            onRules += color == QColor(Theme::gridLine.rgb()) ? 1 : 0;
        }
        EXPECT_EQ(onRules, 10 * hairline);
    }
}

TEST(SpectrumView, theStrongRuleIsZeroAtTheBottomInSPLAndAtTheTopInDBFS) {
    const QImage spl = drawn(SpectrumView(), {900, 300});
    EXPECT_EQ(QColor(spl.pixel(450, 299)), QColor(Theme::gridLineStrong.rgb()));
    EXPECT_EQ(QColor(spl.pixel(450, 0)), QColor(Theme::gridLine.rgb()));
    const QImage dbfs = drawn(digital(), {900, 300});
    EXPECT_EQ(QColor(dbfs.pixel(450, 0)), QColor(Theme::gridLineStrong.rgb()));
    EXPECT_EQ(QColor(dbfs.pixel(450, 299)), QColor(Theme::gridLine.rgb()));
}

TEST(SpectrumView, piecesWhoseArraysDontMatchAreLeftOut) {
    SpectrumView view = TarvaneTests::ordinarySpectrum();
    view.bandLevelsDB.pop_back();
    view.bandPeakHoldDB.pop_back();
    view.linePeakHoldDB.pop_back();
    SpectrumView lineAlone = view;
    lineAlone.viewMode = SpectrumViewMode::line;
    lineAlone.showPeakHold = false;
    EXPECT_EQ(drawn(view, {900, 300}), drawn(lineAlone, {900, 300}));
    view.lineSpectrumDB.clear();
    SpectrumView empty;
    empty.spectrogramFloorDB = view.spectrogramFloorDB;
    empty.spectrogramCeilingDB = view.spectrogramCeilingDB;
    EXPECT_EQ(drawn(view, {900, 300}), drawn(empty, {900, 300}));
}

TEST(SpectrumView, floorAndCeilingAreDashesOfFiveAndFour) {
    SpectrumView view;
    view.spectrogramFloorDB = 70.0;
    const QImage image = drawn(view, {900, 280});  // rules every 40 pixels, the floor at 140
    for (int x = 100; x < 190; ++x) {
        const bool isOn = x % 9 < 5;
        const bool isLit = qGreen(image.pixel(x, 140)) > 100 || qGreen(image.pixel(x, 139)) > 100;
        EXPECT_EQ(isLit, isOn) << x;
    }
}

// --- golden images

struct Golden {
    const char* name;
    SpectrumView view;
    QSize size;
};

std::vector<Golden> goldens() {
    SpectrumView empty = SpectrumView();
    empty.spectrogramFloorDB = 30.0;
    empty.spectrogramCeilingDB = 110.0;
    SpectrumView banded = TarvaneTests::ordinarySpectrum();
    banded.viewMode = SpectrumViewMode::banded;
    SpectrumView line = TarvaneTests::ordinarySpectrum();
    line.viewMode = SpectrumViewMode::line;
    line.hover = SpectrumHoverState::at(360.0, 600.0, line.frequencyAxis());
    SpectrumView extreme = TarvaneTests::ordinarySpectrum();
    extreme.scale = RTAScale::dbfs;
    for (std::size_t i = 0; i < extreme.lineSpectrumDB.size(); ++i) {
        extreme.lineSpectrumDB[i] = i / 100 % 2 == 0 ? 90.0 : -240.0;
    }
    extreme.bandLevelsDB = TarvaneTests::bandsOf(extreme.lineSpectrumDB, extreme.bands);
    extreme.spectrogramFloorDB = -139.0;
    extreme.spectrogramCeilingDB = -1.0;
    SpectrumView overlays = TarvaneTests::fullSpectrum();
    overlays.activeRingAlert.reset();
    SpectrumView bandedOverlays = overlays;
    bandedOverlays.viewMode = SpectrumViewMode::banded;
    const QSize ordinary(600, 220);
    return {{"empty", empty, ordinary},
            {"banded", banded, ordinary},
            {"line", line, ordinary},
            {"both", TarvaneTests::ordinarySpectrum(), ordinary},
            {"extreme", extreme, ordinary},
            {"overlays", overlays, ordinary},
            {"banded-overlays", bandedOverlays, ordinary},
            {"ring", TarvaneTests::fullSpectrum(), ordinary},
            {"narrow", TarvaneTests::fullSpectrum(), {240, 120}},
            {"huge", TarvaneTests::fullSpectrum(), {1900, 600}}};
}

TEST(SpectrumView, looksAsItsGoldenImages) {
    for (const Golden& golden : goldens()) {
        for (const int scale : {1, 2}) {
            const QString name =
                QStringLiteral("spectrum-%1@%2x").arg(QLatin1String(golden.name)).arg(scale);
            EXPECT_TRUE(GoldenImage::matches(name, drawn(golden.view, golden.size, scale)));
        }
    }
}

TEST(SpectrumView, aMissingLabelOrTraceIsMoreThanAGoldenImageTolerates) {
    const QSize size(240, 120);
    const QImage whole = drawn(TarvaneTests::fullSpectrum(), size);
    const auto changes = [&](auto change) {
        SpectrumView other = TarvaneTests::fullSpectrum();
        change(other);
        return GoldenImage::differingPixels(whole, drawn(other, size));
    };
    EXPECT_GT(changes([](SpectrumView& view) { view.spectrogramFloorDB.reset(); }),
              GoldenImage::tolerance);
    EXPECT_GT(changes([](SpectrumView& view) { view.activeRingAlert.reset(); }),
              GoldenImage::tolerance);
    EXPECT_GT(changes([](SpectrumView& view) { view.targetCurve.reset(); }),
              GoldenImage::tolerance);
    EXPECT_GT(changes([](SpectrumView& view) { view.overlays.pop_back(); }),
              GoldenImage::tolerance);
    EXPECT_GT(changes([](SpectrumView& view) { view.showPeakHold = false; }),
              GoldenImage::tolerance);
}

}  // namespace
}  // namespace TarvaneApp
