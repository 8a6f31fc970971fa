// What the tests of all graphs' drawings share: a picture by the plain drawing, and the sizes that
// a raster must manage.
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "Displays/Theme.h"
#include "Support/PinnedTypeface.h"

namespace TarvaneTests {

/// Drawn with any painter, on a panel's ground.
template <class View>
QImage graphPicture(const View& view, const QSize& size, double scale = 1.0) {
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(TarvaneApp::Theme::panelBackground);
    QPainter painter(&image);
    paint(painter, view, QSizeF(size), pinnedTypeface());
    return image;
}

template <class Raster, class View>
void expectPicturesOfAllSmallSizes(Raster& raster, const View& view) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        for (int width = 1; width < 80; width += 7) {
            for (int height = 1; height < 60; height += 9) {
                const QImage& image = raster.image(view, QSizeF(width, height), scale);
                EXPECT_EQ(image.size(), QSize(qRound(width * scale), qRound(height * scale)));
            }
        }
    }
}

}  // namespace TarvaneTests
