#include "Shell/Controls/Icon.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

namespace TarvaneApp {
namespace IconTests {

// Every symbol of the program, drawn at that scale in one colour on nothing.
QImage drawn(const QString& name, double scale) {
    QImage image(QSize(24, 24) * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    Icon::paint(painter, name, QRectF(0, 0, 24, 24), QColor(10, 200, 30));
    return image;
}

const char* const names[] = {"arrow.uturn.backward",
                             "chart.xyaxis.line",
                             "checkmark.circle.fill",
                             "chevron.down",
                             "chevron.right",
                             "circle.lefthalf.filled",
                             "ellipsis",
                             "ellipsis.circle",
                             "minus.circle",
                             "pause.circle",
                             "person.crop.circle",
                             "play.circle",
                             "play.circle.fill",
                             "plus.circle",
                             "rectangle.3.group",
                             "slider.horizontal.3",
                             "speaker.wave.3",
                             "square.3.layers.3d",
                             "square.stack.3d.up",
                             "stop.circle.fill",
                             "trash",
                             "waveform",
                             "waveform.circle"};

TEST(Icon, everySymbolIsDrawnInTheOneColourAskedFor) {
    for (const char* name : names) {
        const QImage image = drawn(QLatin1String(name), 1.0);
        int full = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qAlpha(image.pixel(x, y)) == 255) {
                    ++full;
                    EXPECT_EQ(image.pixel(x, y), qRgb(10, 200, 30)) << name;
                }
            }
        }
        EXPECT_GT(full, 0) << name;
    }
}

// An image enlarged from scale 1 has hardly a hard edge left.
TEST(Icon, symbolsAreSharpAtEveryScale) {
    for (const char* name : names) {
        for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
            const QImage image = drawn(QLatin1String(name), scale);
            int hardEdges = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 2; x < image.width(); ++x) {
                    const int step = qAlpha(image.pixel(x, y)) - qAlpha(image.pixel(x - 2, y));
                    hardEdges += std::abs(step) > 200 ? 1 : 0;
                }
            }
            EXPECT_GE(hardEdges, static_cast<int>(8 * scale)) << name << " at " << scale;
        }
    }
}

TEST(IconDeathTest, anUnknownSymbolStopsTheProgram) {
    EXPECT_DEATH(drawn(QStringLiteral("no.such.symbol"), 1.0), "exists");
}

}  // namespace IconTests
}  // namespace TarvaneApp
