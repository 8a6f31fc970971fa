#include "Displays/Readouts/LevelBarView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <limits>

namespace TarvaneApp {
namespace LevelBarViewTests {

using testing::ElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr LevelBarView::Range digital{-60.0, 0.0};

TEST(LevelBarView, aFractionIsTheDistanceFromTheLowerBoundOverTheWidth) {
    EXPECT_DOUBLE_EQ(LevelBarView::fraction(-60.0, digital), 0.0);
    EXPECT_DOUBLE_EQ(LevelBarView::fraction(-30.0, digital), 0.5);
    EXPECT_DOUBLE_EQ(LevelBarView::fraction(0.0, digital), 1.0);
    EXPECT_DOUBLE_EQ(LevelBarView::fraction(79.3, {64.3, 124.3}), 0.25);
}

TEST(LevelBarView, aFractionIsLimitedToTheRange) {
    EXPECT_EQ(LevelBarView::fraction(-61.0, digital), 0.0);
    EXPECT_EQ(LevelBarView::fraction(3.0, digital), 1.0);
    EXPECT_EQ(LevelBarView::fraction(-infinity, digital), 0.0);
    EXPECT_EQ(LevelBarView::fraction(infinity, digital), 1.0);
    EXPECT_EQ(LevelBarView::fraction(std::nan(""), digital), 0.0);
    EXPECT_EQ(LevelBarView::fraction(5.0, {5.0, 5.0}), 0.0);
}

TEST(LevelBarView, levelAndFractionAreInverse) {
    for (const LevelBarView::Range range : {digital, LevelBarView::Range{64.3, 124.3}}) {
        for (int i = 0; i <= 100; ++i) {
            const double fraction = i / 100.0;
            EXPECT_NEAR(LevelBarView::fraction(LevelBarView::level(fraction, range), range),
                        fraction, 1e-12);
        }
    }
}

TEST(LevelBarView, ticksStandAtWholeTens) {
    EXPECT_THAT(LevelBarView::ticks(digital),
                ElementsAre(-60.0, -50.0, -40.0, -30.0, -20.0, -10.0, 0.0));
    EXPECT_THAT(LevelBarView::ticks({64.3, 124.3}),
                ElementsAre(70.0, 80.0, 90.0, 100.0, 110.0, 120.0));
}

TEST(LevelBarView, ticksOfARangeWiderThan60StandAtWholeTwenties) {
    EXPECT_THAT(LevelBarView::ticks({-61.0, 0.0}), ElementsAre(-60.0, -40.0, -20.0, 0.0));
    EXPECT_THAT(LevelBarView::ticks({0.0, 140.0}),
                ElementsAre(0.0, 20.0, 40.0, 60.0, 80.0, 100.0, 120.0, 140.0));
}

TEST(LevelBarView, aRangeWithoutEndsHasNoTicks) {
    EXPECT_TRUE(LevelBarView::ticks({-infinity, 0.0}).empty());
}

LevelBarView sample(double valueDB, double markerDB) {
    return {.valueDB = valueDB,
            .markerDB = markerDB,
            .range = digital,
            .color = {0.0, 1.0, 0.0, 1.0},
            .unitLabel = QStringLiteral("PEAK dBFS"),
            .targetBand = std::nullopt,
            .legend = QStringLiteral("LINE PEAK HOLD")};
}

TEST(LevelBarView, tickLabelsStayInsideAndApartAtEveryWidth) {
    for (const double width : {200.0, 288.0, 480.0, 836.0, 1856.0, 3776.0}) {
        for (const double height : {44.0, 88.0, 132.0}) {
            const QRectF rect(16.0, 100.0, width, height);
            const LevelBarGeometry geometry = layout(sample(-20.0, -10.0), rect);
            double right = -infinity;
            int labels = 0;
            for (const auto& tick : geometry.ticks) {
                if (tick.label.isEmpty()) {
                    continue;
                }
                ++labels;
                EXPECT_TRUE(rect.contains(tick.label)) << width << 'x' << height;
                EXPECT_GT(tick.label.left(), right);
                EXPECT_FALSE(tick.label.intersects(geometry.track));
                right = tick.label.right();
            }
            EXPECT_GE(labels, 3);
            EXPECT_TRUE(rect.contains(geometry.track));
            EXPECT_FALSE(geometry.captions.intersects(geometry.track));
        }
    }
}

QImage drawn(const LevelBarView& view, const QRectF& rect) {
    QImage image(700, 60, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    paint(painter, view, layout(view, rect), image.rect());
    return image;
}

TEST(LevelBarView, theBarEndsAtTheLevelAndTheLineStandsAtTheMarker) {
    const QRectF rect(10.0, 5.0, 600.0, 44.0);  // 10 pixels per dB
    const QImage image = drawn(sample(-30.0, -12.0), rect);
    const int y = static_cast<int>(layout(sample(-30.0, -12.0), rect).track.center().y());
    EXPECT_EQ(image.pixel(308, y), qRgb(0, 255, 0));
    EXPECT_NE(image.pixel(311, y), qRgb(0, 255, 0));
    EXPECT_EQ(QColor(image.pixel(490, y)), QColor(Theme::primaryText.rgb()));
    EXPECT_NE(QColor(image.pixel(486, y)), QColor(Theme::primaryText.rgb()));
}

TEST(LevelBarView, minusInfinityDrawsNeitherBarNorLine) {
    const QRectF rect(10.0, 5.0, 600.0, 44.0);
    const QImage image = drawn(sample(-infinity, -infinity), rect);
    const int y = static_cast<int>(layout(sample(0.0, 0.0), rect).track.center().y());
    for (int x = 10; x < 610; ++x) {
        EXPECT_EQ(QColor(image.pixel(x, y)), QColor(Theme::gridLine.rgb())) << x;
    }
}

TEST(LevelBarView, theTargetIsShadedAlsoUnderALevelBeyondIt) {
    const QRectF rect(10.0, 5.0, 600.0, 44.0);  // 10 pixels per dB
    LevelBarView view = sample(-10.0, -infinity);
    view.targetBand = LevelBarView::Range{-24.0, -22.0};
    const int y = static_cast<int>(layout(view, rect).track.center().y());
    for (const double valueDB : {-10.0, -50.0}) {
        view.valueDB = valueDB;
        const QImage image = drawn(view, rect);
        const QRgb outside = image.pixel(10 + 355, y);
        for (const int x : {362, 370, 378}) {
            EXPECT_NE(image.pixel(10 + x, y), outside);
        }
        EXPECT_EQ(image.pixel(10 + 385, y), outside);
    }
}

TEST(LevelBarView, whereThereIsLittleHeightTheTrackStandsAlone) {
    const QRectF rect(10.0, 5.0, 260.0, LevelBarGeometry::bareHeight);
    const LevelBarGeometry geometry = layout(sample(-20.0, -10.0), rect);
    EXPECT_TRUE(rect.contains(geometry.track));
    EXPECT_TRUE(geometry.ticks.empty());
    EXPECT_TRUE(geometry.captions.isEmpty());
}

TEST(LevelBarView, onlyAMoveByAPixelIsAChange) {
    const QRectF rect(10.0, 5.0, 600.0, 44.0);
    const LevelBarView before = sample(-30.0, -12.0);
    const LevelBarGeometry geometry = layout(before, rect);
    EXPECT_TRUE(changedArea(before, sample(-30.01, -12.01), geometry, rect, 1.0).isEmpty());
    EXPECT_FALSE(changedArea(before, sample(-30.2, -12.0), geometry, rect, 1.0).isEmpty());
    EXPECT_FALSE(changedArea(before, sample(-30.0, -infinity), geometry, rect, 1.0).isEmpty());
}

}  // namespace LevelBarViewTests
}  // namespace TarvaneApp
