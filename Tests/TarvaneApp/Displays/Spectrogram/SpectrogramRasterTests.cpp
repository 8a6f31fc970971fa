#include "Displays/Spectrogram/SpectrogramRaster.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <cmath>
#include <limits>

#include "Displays/Theme.h"
#include "Support/GraphPictures.h"
#include "Support/ImageSimilarity.h"
#include "Support/SpectrogramScenes.h"

namespace TarvaneApp {
namespace SpectrogramRasterTests {

using TarvaneTests::spectrogramHistory;
using TarvaneTests::SpectrogramHistory;
using TarvaneTests::spectrogramOf;

SpectrogramColorStop stop(double position, double red) {
    return {.id = TarvaneKit::UUID::main(), .position = position, .color = {red, 0.0, 0.0, 1.0}};
}

// Entry i of its table is red i.
const std::vector<SpectrogramColorStop> redRamp{stop(0.0, 0.0), stop(1.0, 1.0)};

// A cache with a history that it is shown; `update` tells how many rows it painted.
struct Shown {
    SpectrogramHistory history;
    std::int64_t rowsAdded = 0;
    SpectrogramRasterCache cache;
    double floorDB = 0.0;
    double ceilingDB = 255.0;

    void add(int count) {
        for (int i = 0; i < count; ++i) {
            history.push_back({static_cast<float>(rowsAdded++ % 256)});
        }
    }
    int update(int first, int end, bool isLive) {
        return cache.update(SpectrogramRows(history).slice(first, end), rowsAdded, isLive, 1,
                            floorDB, ceilingDB, redRamp);
    }
    // The newest `height` rows.
    int updateLive(int height) {
        const int count = static_cast<int>(history.size());
        return update(count - height, count, true);
    }
    // Each row's red is the row's number.
    void expectShows(std::int64_t oldest, int height) {
        ASSERT_EQ(cache.key()->height, height);
        for (int row = 0; row < height; ++row) {
            EXPECT_EQ(qRed(*cache.rowAtSlot(cache.slot(row))), (oldest + row) % 256) << row;
        }
    }
};

Shown running() {
    Shown shown;
    shown.add(100);
    EXPECT_EQ(shown.updateLive(50), 50);
    return shown;
}

TEST(SpectrogramRasterCache, whileLiveOnlyNewRowsArePainted) {
    Shown shown = running();
    shown.add(1);
    EXPECT_EQ(shown.updateLive(50), 1);
    shown.expectShows(51, 50);
    shown.add(7);
    EXPECT_EQ(shown.updateLive(50), 7);
    shown.expectShows(58, 50);
    for (int i = 0; i < 200; ++i) {
        shown.add(1);
        EXPECT_EQ(shown.updateLive(50), 1);
    }
    shown.expectShows(258, 50);
}

TEST(SpectrogramRasterCache, aFrameWithoutANewRowKeepsThePicture) {
    Shown shown = running();
    const auto image = [&] {
        return shown.cache.image(SpectrogramRows(shown.history).slice(50, 100), shown.rowsAdded,
                                 true, 1, 0.0, 255.0, redRamp);
    };
    const qint64 before = image().cacheKey();
    EXPECT_EQ(image().cacheKey(), before);
    EXPECT_EQ(shown.updateLive(50), 0);
}

TEST(SpectrogramRasterCache, anotherFloorPaintsAll) {
    Shown shown = running();
    shown.floorDB = 1.0;
    EXPECT_EQ(shown.updateLive(50), 50);
    EXPECT_EQ(shown.updateLive(50), 0);
}

TEST(SpectrogramRasterCache, anotherNumberOfRowsPaintsAll) {
    Shown shown = running();
    EXPECT_EQ(shown.updateLive(60), 60);
    shown.expectShows(40, 60);
}

TEST(SpectrogramRasterCache, anotherRampPaintsAllInItsColours) {
    Shown shown = running();
    EXPECT_EQ(shown.cache.update(SpectrogramRows(shown.history).slice(50, 100), shown.rowsAdded,
                                 true, 1, 0.0, 255.0, {}),
              50);
    EXPECT_EQ(*shown.cache.rowAtSlot(0), qRgb(255, 255, 255));
}

TEST(SpectrogramRasterCache, asManyRowsAtOnceAsThePictureHasPaintAll) {
    Shown shown = running();
    shown.add(49);
    EXPECT_EQ(shown.updateLive(50), 49);
    shown.add(50);
    EXPECT_EQ(shown.updateLive(50), 50);
    shown.expectShows(149, 50);
    shown.add(500);
    EXPECT_EQ(shown.updateLive(50), 50);
}

TEST(SpectrogramRasterCache, aHistoryThatStartedAnewPaintsAll) {
    Shown shown = running();
    shown.history.clear();
    shown.rowsAdded = 0;
    shown.add(50);
    EXPECT_EQ(shown.updateLive(50), 50);
    shown.expectShows(0, 50);
}

TEST(SpectrogramRasterCache, scrolledBackPaintsAllAndSoDoesTheFirstFrameBackLive) {
    Shown shown = running();
    EXPECT_EQ(shown.update(10, 60, false), 50);
    shown.expectShows(10, 50);
    EXPECT_EQ(shown.update(10, 60, false), 50);
    shown.add(1);
    EXPECT_EQ(shown.updateLive(50), 50);
    shown.expectShows(51, 50);
    shown.add(1);
    EXPECT_EQ(shown.updateLive(50), 1);
    shown.expectShows(52, 50);
}

TEST(SpectrogramRasterCache, withoutRowsOrColumnsItStaysAsItWas) {
    Shown shown = running();
    EXPECT_EQ(shown.update(0, 0, true), 0);
    EXPECT_EQ(shown.cache.update(SpectrogramRows(shown.history), shown.rowsAdded, true, 0, 0.0,
                                 255.0, redRamp),
              0);
    shown.expectShows(50, 50);
    EXPECT_TRUE(shown.cache.image(SpectrogramRows(), 0, true, 1, 0.0, 255.0, redRamp).isNull());
}

TEST(SpectrogramRasterCache, levelsTakeTheWholePartOfTheirPlaceInTheTable) {
    const SpectrogramHistory history{
        {0.0F, 127.9F, 128.0F, 255.0F, 300.0F, -5.0F, std::numeric_limits<float>::quiet_NaN(),
         std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity()}};
    SpectrogramRasterCache cache;
    cache.update(SpectrogramRows(history), 1, true, 11, 0.0, 255.0, redRamp);
    const std::vector<int> reds{0, 127, 128, 255, 255, 0, 0, 255, 0, 0, 0};  // the last two absent
    for (std::size_t i = 0; i < reds.size(); ++i) {
        EXPECT_EQ(qRed(cache.rowAtSlot(0)[i]), reds[i]) << i;
    }
}

TEST(SpectrogramRasterCache, aFloorOnTheCeilingSaturates) {
    const SpectrogramHistory history{{49.0F, 50.0F, 51.0F}};
    SpectrogramRasterCache cache;
    cache.update(SpectrogramRows(history), 1, true, 3, 50.0, 50.0, redRamp);
    EXPECT_EQ(qRed(cache.rowAtSlot(0)[0]), 0);
    EXPECT_EQ(qRed(cache.rowAtSlot(0)[1]), 0);
    EXPECT_EQ(qRed(cache.rowAtSlot(0)[2]), 255);
}

// --- the fast drawing

QImage plain(const SpectrogramView& view, const QSize& size, double scale) {
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Theme::background);
    QPainter painter(&image);
    SpectrogramRasterCache cache;
    paint(painter, view, cache, QSizeF(size));
    return image;
}

QImage fast(const SpectrogramView& view, const QSize& size, double scale) {
    SpectrogramRaster raster;
    return raster.image(view, QSizeF(size), scale);
}

TEST(SpectrogramRaster, looksLikeThePlainDrawing) {
    const SpectrogramHistory history = spectrogramHistory(720);
    for (const QSize size : {QSize(900, 300), QSize(1200, 400), QSize(300, 150)}) {
        for (const double scale : {1.0, 2.0}) {
            const SpectrogramView view = spectrogramOf(history);
            EXPECT_GT(TarvaneTests::peakSignalToNoiseDB(plain(view, size, scale),
                                                        fast(view, size, scale)),
                      33.0)
                << size.width() << '@' << scale;
        }
    }
}

TEST(SpectrogramRaster, aShortSoundIsSeenHoweverManyRowsFallIntoALine) {
    SpectrogramHistory history(720, std::vector<float>(1024, 0.0F));
    for (int row = 0; row < 720; row += 7) {
        SpectrogramHistory one = history;
        one[static_cast<std::size_t>(row)].assign(1024, 255.0F);
        SpectrogramView view = spectrogramOf(one, 12.0);
        view.floorDB = 0.0;
        view.ceilingDB = 255.0;
        view.colorStops = redRamp;
        const QImage image = fast(view, {100, 72}, 1.0);
        int brightest = 0;
        for (int y = 0; y < 72; ++y) {
            brightest = std::max(brightest, qRed(image.pixel(50, y)));
        }
        EXPECT_NEAR(brightest, 25.5, 1.5) << row;  // one of the ten rows of its line
    }
}

TEST(SpectrogramRaster, aPictureOfOneCellAPixelIsTheCells) {
    const SpectrogramHistory history = spectrogramHistory(120);
    const SpectrogramView view = spectrogramOf(history);
    EXPECT_LE(TarvaneTests::largestDifference(plain(view, {1024, 120}, 1.0),
                                              fast(view, {1024, 120}, 1.0)),
              1);
}

TEST(SpectrogramRaster, whileLiveOnlyNewRowsAreTouchedAndThePictureIsThatOfANewRaster) {
    SpectrogramHistory history = spectrogramHistory(200);
    SpectrogramRaster raster;
    raster.image(spectrogramOf(history), {480.0, 200.0}, 1.0);
    EXPECT_EQ(raster.rowsPainted(), 120);
    for (int i = 0; i < 150; ++i) {
        history.push_back(TarvaneTests::spectrogramRow(static_cast<int>(history.size())));
        raster.image(spectrogramOf(history), {480.0, 200.0}, 1.0);
    }
    EXPECT_EQ(raster.rowsPainted(), 120 + 150);
    const SpectrogramView view = spectrogramOf(history);
    EXPECT_EQ(raster.image(view, {480.0, 200.0}, 1.0), fast(view, {480, 200}, 1.0));
    const qint64 before = raster.image(view, {480.0, 200.0}, 1.0).cacheKey();
    EXPECT_EQ(raster.image(view, {480.0, 200.0}, 1.0).cacheKey(), before);
}

TEST(SpectrogramRaster, afterAnyChangeThePictureIsThatOfANewRaster) {
    const SpectrogramHistory history = spectrogramHistory(400);
    SpectrogramRaster raster;
    SpectrogramView view = spectrogramOf(history);
    const auto expectSame = [&](const QSize& size, double scale) {
        EXPECT_EQ(raster.image(view, QSizeF(size), scale), fast(view, size, scale));
    };
    expectSame({480, 200}, 1.0);
    expectSame({300, 200}, 1.0);
    expectSame({300, 200}, 2.0);
    expectSame({300, 90}, 1.5);
    view.timeSpanSeconds = 5.0;
    expectSame({300, 90}, 1.5);
    view.scrollState.rowOffset = 40;
    expectSame({300, 90}, 1.5);
    view.floorDB = 50.0;
    expectSame({300, 90}, 1.5);
    view.history = {};
    expectSame({300, 90}, 1.5);
    view = spectrogramOf(history);
    expectSame({300, 90}, 1.5);
}

TEST(SpectrogramRaster, aSizeWithoutPixelsGivesNoPicture) {
    const SpectrogramHistory history = spectrogramHistory(10);
    EXPECT_TRUE(fast(spectrogramOf(history), {0, 10}, 1.0).isNull());
    EXPECT_EQ(fast(spectrogramOf(history), {1, 1}, 1.0).size(), QSize(1, 1));
}

TEST(SpectrogramRaster, everySmallSizeIsDrawnAtEveryScale) {
    const SpectrogramHistory history = spectrogramHistory(40);
    SpectrogramRaster raster;
    const SpectrogramView view = spectrogramOf(history);
    TarvaneTests::expectPicturesOfAllSmallSizes(raster, view);
}

}  // namespace SpectrogramRasterTests
}  // namespace TarvaneApp
