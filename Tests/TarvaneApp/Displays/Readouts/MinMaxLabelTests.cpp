#include "Displays/Readouts/MinMaxLabel.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>

#include "Support/PinnedTypeface.h"

namespace TarvaneApp {
namespace MinMaxLabelTests {

bool hasPixelOf(const QColor& color, double valueDB) {
    const Typeface& typeface = TarvaneTests::pinnedTypeface();
    const QSizeF size = MinMaxLabel::size(1.0, typeface);
    constexpr double enlarged = 6.0;  // so that strokes have their full colour
    QImage image((size * enlarged).toSize(), QImage::Format_RGB32);
    image.fill(Theme::panelBackground);
    QPainter painter(&image);
    painter.scale(enlarged, enlarged);
    // No title, which has a colour of its own.
    MinMaxLabel{.title = {}, .valueDB = valueDB}.paint(painter, {{}, size}, 1.0, typeface);
    painter.end();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color.rgb()) {
                return true;
            }
        }
    }
    return false;
}

TEST(MinMaxLabel, aDashIsNotDrawnAsAReading) {
    EXPECT_TRUE(hasPixelOf(Theme::primaryText, -23.0));
    EXPECT_FALSE(hasPixelOf(Theme::axisText, -23.0));
    for (const double none : {std::nan(""), -HUGE_VAL, HUGE_VAL}) {
        EXPECT_TRUE(hasPixelOf(Theme::axisText, none));
        EXPECT_FALSE(hasPixelOf(Theme::primaryText, none));
    }
}

}  // namespace MinMaxLabelTests
}  // namespace TarvaneApp
