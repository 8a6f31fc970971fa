#include "Displays/Spectrum/SpectrumGeometry.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Displays/Spectrum/SpectrumView.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneApp {
namespace SpectrumGeometryTests {

using TarvaneTests::bandBetween;
using TarvaneTests::spectrumInDBFS;

// 48000 / 4096 = 11.72 Hz a line: lines 0 and 1 lie under 20 Hz, and line 2 at 23.44 Hz.
TEST(SpectrumGeometry, at48kHzTheFirstPointIsThatOfLine2) {
    const SpectrumView view;
    const std::vector<double> levels(2048, 70.0);
    const auto points = linePoints(view, levels, {900.0, 300.0});
    EXPECT_NEAR(points.front().x(), 300.0 * std::log10(2 * 48000.0 / 4096.0 / 20.0), 1e-9);
    EXPECT_EQ(points.front().y(), 150.0);
    EXPECT_EQ(points.size(), 1705U);  // lines 2 to 1706: 1706 · 11.71875 Hz = 19992 Hz
}

// 96000 / 4096 = 23.44 Hz a line: line 853 lies at 19992 Hz, line 854 at 20016 Hz.
TEST(SpectrumGeometry, at96kHzTheWalkStopsAtLine854) {
    SpectrumView view;
    view.sampleRate = 96000.0;
    const auto points = linePoints(view, std::vector<double>(2048, 70.0), {900.0, 300.0});
    EXPECT_EQ(points.size(), 853U);  // 1 to 853
    EXPECT_NEAR(points.back().x(), 300.0 * std::log10(853 * 96000.0 / 4096.0 / 20.0), 1e-9);
}

TEST(SpectrumGeometry, anotherRateAndOffsetReplaceTheViewsOwn) {
    SpectrumView view;
    view.levelOffsetDB = 10.0;
    const std::vector<double> levels(2048, 70.0);
    EXPECT_EQ(linePoints(view, levels, {900.0, 140.0}).front().y(), 80.0);
    const auto other = linePoints(view, levels, {900.0, 140.0}, 96000.0, 30.0);
    EXPECT_EQ(other.front().y(), 100.0);
    EXPECT_NEAR(other.front().x(), 300.0 * std::log10(96000.0 / 4096.0 / 20.0), 1e-9);
    EXPECT_TRUE(linePoints(view, {}, {900.0, 140.0}).empty());
}

TEST(SpectrumGeometry, underThreePointsALineHasNoCurve) {
    EXPECT_TRUE(smoothedPath({}).isEmpty());
    const QPainterPath two = smoothedPath({{0.0, 0.0}, {10.0, 20.0}});
    ASSERT_EQ(two.elementCount(), 2);
    EXPECT_TRUE(two.elementAt(1).isLineTo());
    EXPECT_EQ(QPointF(two.elementAt(1)), QPointF(10.0, 20.0));
}

TEST(SpectrumGeometry, aSmoothedLineRunsThroughTheMiddlesBetweenItsPoints) {
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

TEST(SpectrumGeometry, aSmoothedLineClosesDownToItsBaseline) {
    const QPainterPath path = smoothedPath({{5.0, 1.0}, {10.0, 2.0}, {20.0, 3.0}}, 100.0);
    EXPECT_EQ(QPointF(path.elementAt(0)), QPointF(5.0, 100.0));
    EXPECT_EQ(QPointF(path.elementAt(1)), QPointF(5.0, 1.0));
    EXPECT_EQ(path.currentPosition(), QPointF(5.0, 100.0));
    EXPECT_TRUE(path.contains(QPointF(19.0, 99.0)));
}

TEST(SpectrumGeometry, barsLeaveOnePixelOfAirAndReachTheBottom) {
    const SpectrumView view;
    const QRectF bar =
        bandBar(view, view.frequencyAxis(), bandBetween(200.0, 2000.0), 70.0, {900.0, 300.0});
    EXPECT_NEAR(bar.left(), 300.5, 1e-9);
    EXPECT_NEAR(bar.right(), 599.5, 1e-9);
    EXPECT_NEAR(bar.top(), 150.0, 1e-9);
    EXPECT_NEAR(bar.bottom(), 300.0, 1e-9);
}

TEST(SpectrumGeometry, aBandHalfAPixelWideStillShowsABarOfOne) {
    const SpectrumView view;
    // On 300 pixels per decade: half a pixel is a ratio of 10^(0.5 / 300).
    const QRectF bar =
        bandBar(view, view.frequencyAxis(),
                bandBetween(1000.0, 1000.0 * std::pow(10.0, 0.5 / 300.0)), 70.0, {900.0, 300.0});
    EXPECT_NEAR(bar.width(), 1.0, 1e-9);
}

TEST(SpectrumGeometry, wideBarsStandOnWholePixelsOneApartAndNarrowOnesStayWhereTheyAre) {
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

TEST(SpectrumGeometry, theTargetCurveTakes201PointsAndNoOffset) {
    SpectrumView view = spectrumInDBFS();
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

}  // namespace SpectrumGeometryTests
}  // namespace TarvaneApp
