#include "Displays/LevelHistory/LevelHistoryRaster.h"

#include <gtest/gtest.h>

#include "Displays/LevelHistory/LevelHistoryDrawing.h"
#include "Support/GraphPictures.h"
#include "Support/ImageSimilarity.h"
#include "Support/LevelHistoryScenes.h"
#include "Support/PinnedTypeface.h"

namespace TarvaneApp {
namespace LevelHistoryRasterTests {

using TarvaneTests::concert;
using TarvaneTests::graphPicture;
using TarvaneTests::historyOf;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

QImage fast(const LevelHistoryView& view, const QSize& size, double scale) {
    LevelHistoryRaster raster(Theme::panelBackground, pinned);
    return raster.image(view, QSizeF(size), scale);
}

LevelHistoryView withLines(const TarvaneTests::Recorder& recorder,
                           const TarvaneTests::Recorder& other) {
    LevelHistoryView view = historyOf(recorder);
    view.secondaryMetricIndex = 1;
    view.overlays = {{.id = TarvaneKit::UUID::main(),
                      .recorder = &other,
                      .revision = 1,
                      .metricIndex = 0,
                      .color = {0.35, 0.65, 1.0, 1.0},
                      .displayOffsetDB = 0.0}};
    return view;
}

TEST(LevelHistoryRaster, looksLikeThePlainDrawing) {
    const auto none = TarvaneTests::newSession();
    const auto recorder = concert(300.0);
    const auto other = concert(300.0, 90.0);
    const auto started = concert(4.0);
    for (const QSize size : {QSize(900, 300), QSize(241, 121)}) {
        for (const double scale : {1.0, 1.5, 2.0}) {
            for (const LevelHistoryView& view :
                 {historyOf(*none), historyOf(*recorder), historyOf(*started),
                  withLines(*recorder, *other)}) {
                EXPECT_GT(TarvaneTests::peakSignalToNoiseDB(graphPicture(view, size, scale),
                                                            fast(view, size, scale)),
                          36.0)
                    << size.width() << '@' << scale;
            }
        }
    }
}

TEST(LevelHistoryRaster, theComparisonSeesAMissingLine) {
    const auto recorder = concert(300.0);
    const auto other = concert(300.0, 90.0);
    LevelHistoryView view = withLines(*recorder, *other);
    view.fixedDBRange = {.lowest = 40.0, .highest = 120.0};
    LevelHistoryView without = view;
    without.overlays.clear();
    EXPECT_LT(TarvaneTests::peakSignalToNoiseDB(graphPicture(view, {900, 300}, 1.0),
                                                fast(without, {900, 300}, 1.0)),
              34.0);
}

TEST(LevelHistoryRaster, aPictureIsDrawnAnewOnlyForAChange) {
    const auto recorder = concert(60.0);
    LevelHistoryRaster raster(Theme::panelBackground, pinned);
    LevelHistoryView view = historyOf(*recorder);
    raster.image(view, {480.0, 200.0}, 1.0);
    raster.image(view, {480.0, 200.0}, 1.0);
    view.hover.xPosition = 100.0;  // drawn over it
    raster.image(view, {480.0, 200.0}, 1.0);
    EXPECT_EQ(raster.picturesDrawn(), 1);
    ++view.revision;
    raster.image(view, {480.0, 200.0}, 1.0);
    EXPECT_EQ(raster.picturesDrawn(), 2);
    raster.image(view, {480.0, 201.0}, 1.0);
    EXPECT_EQ(raster.picturesDrawn(), 3);
    view.viewport.custom = {.span = 20.0, .end = std::nullopt};
    raster.image(view, {480.0, 201.0}, 1.0);
    EXPECT_EQ(raster.picturesDrawn(), 4);
}

TEST(LevelHistoryRaster, aRasterInUseDrawsWhatANewOneDraws) {
    const auto recorder = concert(60.0);
    const auto other = concert(60.0, 80.0);
    LevelHistoryRaster raster(Theme::panelBackground, pinned);
    for (const LevelHistoryView& view : {withLines(*recorder, *other), historyOf(*recorder)}) {
        for (const QSize size : {QSize(480, 200), QSize(300, 120)}) {
            EXPECT_EQ(raster.image(view, QSizeF(size), 1.0), fast(view, size, 1.0));
        }
    }
}

TEST(LevelHistoryRaster, everySmallSizeIsDrawnAtEveryScale) {
    const auto recorder = concert(20.0);
    const auto other = concert(20.0, 80.0);
    const LevelHistoryView view = withLines(*recorder, *other);
    EXPECT_TRUE(fast(view, {0, 200}, 1.0).isNull());
    LevelHistoryRaster raster(Theme::panelBackground, pinned);
    TarvaneTests::expectPicturesOfAllSmallSizes(raster, view);
}

}  // namespace LevelHistoryRasterTests
}  // namespace TarvaneApp
