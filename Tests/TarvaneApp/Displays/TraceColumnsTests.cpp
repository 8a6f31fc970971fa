#include "Displays/TraceColumns.h"

#include <gtest/gtest.h>

#include <cmath>

namespace TarvaneApp {
namespace TraceColumnsTests {

using Rows = TraceColumns::Rows;

constexpr int columns = 20;
constexpr int rows = 40;

struct Cut {
    Rows rows;
    std::vector<float> shares = std::vector<float>(TraceColumnsTests::rows + 2);

    float at(int row) const {
        return row >= rows.first && row < rows.end ? shares[static_cast<std::size_t>(row)] : 0.0F;
    }
    float sum() const {
        float total = 0.0F;
        for (int row = rows.first; row < rows.end; ++row) {
            total += shares[static_cast<std::size_t>(row)];
        }
        return total;
    }
};

Cut stroke(const TraceColumns& trace, int column) {
    Cut cut;
    cut.rows = trace.strokeCoverage(column, cut.shares);
    return cut;
}

Cut area(const TraceColumns& trace, int column) {
    Cut cut;
    cut.rows = trace.areaCoverage(column, cut.shares);
    return cut;
}

TraceColumns straight(const std::vector<QPointF>& points, double halfWidth) {
    TraceColumns trace;
    trace.start(columns, rows);
    trace.addStraight(points);
    trace.stroke(halfWidth);
    return trace;
}

TEST(TraceColumns, aLevelStrokeCoversItsWidthAboutItsHeight) {
    const TraceColumns trace = straight({{0.0, 10.25}, {20.0, 10.25}}, 1.0);
    const Cut cut = stroke(trace, 7);  // from 9.25 to 11.25
    EXPECT_NEAR(cut.at(8), 0.0F, 1e-5F);
    EXPECT_NEAR(cut.at(9), 0.75F, 1e-5F);
    EXPECT_NEAR(cut.at(10), 1.0F, 1e-5F);
    EXPECT_NEAR(cut.at(11), 0.25F, 1e-5F);
    EXPECT_NEAR(cut.at(12), 0.0F, 1e-5F);
}

// Along the vertical a stroke of half width h on a slope m is 2h √(1 + m²) high.
TEST(TraceColumns, aSlopingStrokeIsAsWideAcrossItself) {
    for (const double slope : {0.25, 0.5, 1.0, 1.5}) {
        const TraceColumns trace = straight({{0.0, 2.0}, {20.0, 2.0 + 20.0 * slope}}, 1.2);
        EXPECT_NEAR(stroke(trace, 10).sum(), 2.4 * std::sqrt(1.0 + slope * slope), 0.12) << slope;
    }
}

TEST(TraceColumns, aSteepStrokeIsNoThinnerThanItsWidth) {
    const TraceColumns trace = straight({{0.0, 5.0}, {10.4, 5.0}, {10.6, 35.0}, {20.0, 35.0}}, 1.0);
    double across = 0.0;
    for (int column = 5; column < 16; ++column) {
        across += stroke(trace, column).at(20);
    }
    EXPECT_NEAR(across, 2.0, 0.3);
}

TEST(TraceColumns, theAreaUnderALineIsAllThatLiesBelow) {
    const TraceColumns trace = straight({{0.0, 10.25}, {20.0, 10.25}}, 1.0);
    const Cut cut = area(trace, 7);
    EXPECT_EQ(cut.rows.first, 10);
    EXPECT_EQ(cut.rows.end, 11);  // covered all over from here
    EXPECT_NEAR(cut.at(10), 0.75F, 1e-5F);
}

TEST(TraceColumns, aColumnThatTheAreaReachesOnlyInPartIsCoveredInPartDownToTheEnd) {
    const TraceColumns trace = straight({{5.5, 10.0}, {20.0, 10.0}}, 1.0);
    const Cut cut = area(trace, 5);
    EXPECT_EQ(cut.rows.end, rows);
    EXPECT_NEAR(cut.at(30), 0.5F, 1e-5F);
    EXPECT_TRUE(area(trace, 4).rows.isEmpty());
    EXPECT_TRUE(stroke(trace, 3).rows.isEmpty());
}

TEST(TraceColumns, betweenTwoLinesThereIsNothing) {
    TraceColumns trace;
    trace.start(columns, rows);
    trace.addStraight(std::vector<QPointF>{{0.0, 10.0}, {5.0, 10.0}});
    trace.addStraight(std::vector<QPointF>{{12.0, 20.0}, {20.0, 20.0}});
    trace.stroke(0.5);
    EXPECT_NEAR(stroke(trace, 2).sum(), 1.0F, 1e-5F);
    EXPECT_NEAR(stroke(trace, 15).sum(), 1.0F, 1e-5F);
    for (int column = 6; column < 11; ++column) {
        EXPECT_TRUE(stroke(trace, column).rows.isEmpty()) << column;
    }
}

// A quadratic from middle to middle reaches (5 + 2 · 30 + 5) / 4 at its control point's place.
TEST(TraceColumns, aPeakBetweenTwoCutsIsNotLost) {
    TraceColumns trace;
    trace.start(columns, rows);
    trace.addSmoothed(
        std::vector<QPointF>{{0.0, 5.0}, {10.02, 5.0}, {10.04, 35.0}, {10.06, 5.0}, {20.0, 5.0}});
    trace.stroke(0.5);
    const Cut cut = stroke(trace, 10);
    EXPECT_GE(cut.rows.end, 27);  // (20 + 2 · 35 + 20) / 4 = 27.5
    EXPECT_LE(cut.rows.end, 29);
}

TEST(TraceColumns, whatLeavesThePictureIsCutOff) {
    const TraceColumns trace = straight({{-5.0, 0.0}, {30.0, 0.0}}, 2.0);
    EXPECT_NEAR(stroke(trace, 0).sum(), 2.0F, 1e-5F);
    EXPECT_NEAR(stroke(trace, columns - 1).sum(), 2.0F, 1e-5F);
    const TraceColumns low = straight({{0.0, 40.0}, {20.0, 40.0}}, 2.0);
    EXPECT_NEAR(stroke(low, 5).sum(), 2.0F, 1e-5F);
    EXPECT_TRUE(area(low, 5).rows.isEmpty());
}

TEST(TraceColumns, withoutPointsThereIsNothing) {
    const TraceColumns trace = straight({}, 1.0);
    EXPECT_TRUE(stroke(trace, 5).rows.isEmpty());
    EXPECT_TRUE(area(trace, 5).rows.isEmpty());
}

TEST(TraceColumns, aStrokeIsBlendedByItsShares) {
    QImage picture(columns, rows, QImage::Format_RGB32);
    picture.fill(Qt::black);
    TraceColumns trace = straight({{0.0, 10.25}, {20.0, 10.25}}, 1.0);
    trace.blendStroke(picture, qRgb(200, 100, 0));
    EXPECT_EQ(picture.pixel(7, 9), qRgb(150, 75, 0));
    EXPECT_EQ(picture.pixel(7, 10), qRgb(200, 100, 0));
    EXPECT_EQ(picture.pixel(7, 11), qRgb(50, 25, 0));
    EXPECT_EQ(picture.pixel(7, 12), qRgb(0, 0, 0));
}

}  // namespace TraceColumnsTests
}  // namespace TarvaneApp
