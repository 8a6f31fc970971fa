#include "Displays/Readouts/InputLevelMeterView.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>

#include "Core/RGBAColor.h"

namespace TarvaneApp {
namespace InputLevelMeterViewTests {

InputLevelMeterView metering(std::optional<double> levelDBFS) {
    return {.isMetering = true, .levelDBFS = levelDBFS, .heldDBFS = levelDBFS, .isClipping = false};
}

// How far the bar reaches, by (level + 60) / 60.
double barFraction(double levelDBFS) {
    const LevelBarView bar = metering(levelDBFS).bar();
    return LevelBarView::fraction(bar.valueDB, bar.range);
}

QImage picture(const InputLevelMeterView& view) {
    QImage image(400, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    paint(painter, view, layout(view, image.rect()), QRegion(image.rect()));
    return image;
}

TEST(InputLevelMeterView, theBarReachesFromSixtyBelowFullScaleUpToIt) {
    EXPECT_DOUBLE_EQ(barFraction(-60.0), 0.0);
    EXPECT_DOUBLE_EQ(barFraction(-45.0), 0.25);
    EXPECT_DOUBLE_EQ(barFraction(-6.0), 0.9);
    EXPECT_DOUBLE_EQ(barFraction(0.0), 1.0);
    EXPECT_DOUBLE_EQ(barFraction(-75.0), 0.0);
    EXPECT_DOUBLE_EQ(barFraction(3.0), 1.0);
}

TEST(InputLevelMeterView, theNumberHasOneDecimalAndAnEndBelow) {
    EXPECT_EQ(metering(-12.34).text(), QStringLiteral("-12.3"));
    EXPECT_EQ(metering(0.0).text(), QStringLiteral("0.0"));
    EXPECT_EQ(metering(-59.9).text(), QStringLiteral("-59.9"));
    EXPECT_EQ(metering(-60.0).text(), QStringLiteral("< -60"));
    EXPECT_EQ(metering(-80.0).text(), QStringLiteral("< -60"));
    EXPECT_EQ(metering(std::nullopt).text(), QStringLiteral("—"));
}

TEST(InputLevelMeterView, aClipStandsInTheNumbersPlace) {
    InputLevelMeterView view = metering(0.0);
    view.isClipping = true;
    EXPECT_EQ(view.text(), QStringLiteral("CLIP"));
    EXPECT_EQ(view.bar().color, TarvaneKit::SignalColors::red);
}

TEST(InputLevelMeterView, theBarWarnsNearFullScale) {
    EXPECT_EQ(metering(-6.1).bar().color, TarvaneKit::SignalColors::green);
    EXPECT_EQ(metering(-6.0).bar().color, TarvaneKit::SignalColors::yellow);
}

TEST(InputLevelMeterView, withoutMeteringThereIsASentenceAndNoBar) {
    const InputLevelMeterView idle;
    EXPECT_EQ(idle.text(), QStringLiteral("Start metering to see the input level."));
    EXPECT_TRUE(layout(idle, QRectF(0, 0, 400, 20)).barRect.isEmpty());
    EXPECT_NE(picture(idle), picture(metering(std::nullopt)));
}

TEST(InputLevelMeterView, whatChangesIsRepaintedAndNothingElse) {
    const QRectF rect(0.0, 0.0, 400.0, 20.0);
    for (const auto& [from, to] : {std::pair(metering(-30.0), metering(-20.0)),
                                   std::pair(metering(-30.0), metering(std::nullopt)),
                                   std::pair(metering(-20.0), InputLevelMeterView{})}) {
        const auto geometry = layout(to, rect);
        QImage image = picture(from);
        const QRegion changed = changedArea(from, to, geometry, rect, 1.0);
        EXPECT_FALSE(changed.isEmpty());
        QPainter painter(&image);
        painter.setClipRegion(changed);
        painter.fillRect(image.rect(), Qt::black);
        paint(painter, to, geometry, changed);
        painter.end();
        EXPECT_EQ(image, picture(to));
    }
    EXPECT_TRUE(
        changedArea(metering(-30.0), metering(-30.0), layout(metering(-30.0), rect), rect, 1.0)
            .isEmpty());
}

}  // namespace InputLevelMeterViewTests
}  // namespace TarvaneApp
