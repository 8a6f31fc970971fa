#include "Displays/ColumnTiles.h"

#include <gtest/gtest.h>

namespace TarvaneApp {
namespace ColumnTilesTests {

// A pixel that tells its place.
QRgb pixelAt(int x, int y) {
    return qRgb(x, y, 128);
}

TEST(ColumnTiles, everyPixelOfAnAreaIsWrittenAtItsPlaceAndNoOther) {
    const QRgb ground = qRgb(255, 0, 0);
    ColumnTiles tiles;
    for (const int width : {1, 3, 15, 16, 17, 32, 45}) {
        for (const int height : {1, 2, 3, 4, 5, 8, 30, 31}) {
            const QRect area(5, 3, width, height);
            QImage picture(60, 40, QImage::Format_RGB32);
            picture.fill(ground);
            tiles.draw(picture, area, [&](int x, QRgb* pixels) {
                for (int y = 0; y < height; ++y) {
                    pixels[y] = pixelAt(x, area.top() + y);
                }
            });
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    ASSERT_EQ(picture.pixel(x, y), area.contains(x, y) ? pixelAt(x, y) : ground)
                        << width << " x " << height << " at " << x << ", " << y;
                }
            }
        }
    }
}

TEST(ColumnTiles, ofEachTileTheRowsGivenAreDrawnAndNoOther) {
    const QRgb ground = qRgb(255, 0, 0);
    const QRect area(5, 3, 45, 30);  // three tiles, the last one narrow
    const std::vector<PixelRows> rows{{0, 30}, {7, 18}, {29, 29}};
    QImage picture(60, 40, QImage::Format_RGB32);
    picture.fill(ground);
    ColumnTiles tiles;
    tiles.draw(
        picture, area, [&](int tile) { return rows[static_cast<std::size_t>(tile)]; },
        [&](int x, PixelRows drawn, QRgb* pixels) {
            for (int y = drawn.first; y < drawn.end; ++y) {
                pixels[y] = pixelAt(x, area.top() + y);
            }
        });
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const bool isDrawn =
                area.contains(x, y) &&
                rows[static_cast<std::size_t>((x - area.left()) / ColumnTiles::tileColumns)]
                    .contains(y - area.top());
            ASSERT_EQ(picture.pixel(x, y), isDrawn ? pixelAt(x, y) : ground) << x << ", " << y;
        }
    }
}

}  // namespace ColumnTilesTests
}  // namespace TarvaneApp
