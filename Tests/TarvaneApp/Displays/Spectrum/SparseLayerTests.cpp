#include "Displays/Spectrum/SparseLayer.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "Support/ImageSimilarity.h"

namespace TarvaneApp {
namespace SparseLayerTests {

PixelRows allRows(int) {
    return {.first = 0, .end = 40};
}

QImage layerPicture() {
    QImage picture(60, 40, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(255, 100, 50, 180), 2.5));
    painter.drawLine(QPointF(0.0, 3.0), QPointF(60.0, 35.0));
    painter.fillRect(QRect(50, 0, 10, 10), QColor(20, 200, 90, 120));  // at the right edge
    return picture;
}

TEST(SparseLayer, blendedItLooksAsThePictureDrawn) {
    QImage drawn(60, 40, QImage::Format_RGB32);
    drawn.fill(QColor(30, 60, 90));
    QImage blended = drawn;
    SparseLayer(layerPicture()).blendInto(blended, allRows);
    QPainter painter(&drawn);
    painter.drawImage(0, 0, layerPicture());
    painter.end();
    EXPECT_LE(TarvaneTests::largestDifference(drawn, blended), 1);
}

TEST(SparseLayer, ofEachTileOnlyTheRowsAskedForAreBlended) {
    QImage ground(60, 40, QImage::Format_RGB32);
    ground.fill(QColor(30, 60, 90));
    QImage whole = ground;
    QImage part = ground;
    const SparseLayer layer(layerPicture());
    const auto rowsOf = [](int tile) { return PixelRows{.first = 4 * tile, .end = 25}; };
    layer.blendInto(whole, allRows);
    layer.blendInto(part, rowsOf);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 60; ++x) {
            const QImage& expected =
                rowsOf(x / ColumnTiles::tileColumns).contains(y) ? whole : ground;
            ASSERT_EQ(part.pixel(x, y), expected.pixel(x, y)) << x << ", " << y;
        }
    }
    EXPECT_NE(part, whole);
}

TEST(SparseLayer, anEmptyLayerChangesNothing) {
    QImage empty(60, 40, QImage::Format_ARGB32_Premultiplied);
    empty.fill(Qt::transparent);
    QImage picture(60, 40, QImage::Format_RGB32);
    picture.fill(QColor(30, 60, 90));
    const QImage before = picture;
    SparseLayer(empty).blendInto(picture, allRows);
    SparseLayer().blendInto(picture, allRows);
    EXPECT_EQ(picture, before);
}

}  // namespace SparseLayerTests
}  // namespace TarvaneApp
