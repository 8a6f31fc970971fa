#include "Displays/Spectrum/SpectrumRaster.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <cmath>

#include "Displays/Spectrum/SpectrumDrawing.h"
#include "Support/GraphPictures.h"
#include "Support/ImageSimilarity.h"
#include "Support/PinnedTypeface.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneApp {
namespace SpectrumRasterTests {

using TarvaneKit::OctaveFraction;
using TarvaneTests::fullSpectrum;
using TarvaneTests::graphPicture;
using TarvaneTests::ordinarySpectrum;
using TarvaneTests::peakSignalToNoiseDB;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

QImage fast(const SpectrumView& view, const QSize& size, double scale) {
    SpectrumRaster raster(Theme::panelBackground, pinned);
    return raster.image(view, QSizeF(size), scale);
}

// Most scenes agree to 40 dB and more. The least alike is a dense line on few pixels, where the
// two ways of antialiasing differ by some percent along every edge.
constexpr double sameLookDB = 33.0;

std::vector<std::pair<const char*, SpectrumView>> scenes() {
    SpectrumView line = ordinarySpectrum();
    line.viewMode = SpectrumViewMode::line;
    SpectrumView banded = fullSpectrum();
    banded.viewMode = SpectrumViewMode::banded;
    SpectrumView fine = ordinarySpectrum(OctaveFraction::fortyEighthOctave);
    SpectrumView fineBars = fine;
    fineBars.viewMode = SpectrumViewMode::banded;
    SpectrumView quiet = line;
    quiet.lineSpectrumDB = TarvaneTests::raisedBy(quiet.lineSpectrumDB, -200.0);
    SpectrumView loud = ordinarySpectrum();
    loud.levelOffsetDB = -150.0;
    SpectrumView short_ = line;
    short_.lineSpectrumDB.resize(300);
    short_.linePeakHoldDB.resize(300);
    return {{"empty", SpectrumView()},  {"both", ordinarySpectrum()}, {"line", line},
            {"full", fullSpectrum()},   {"banded", banded},           {"fine", fine},
            {"fine bars", fineBars},    {"under the axis", quiet},    {"over the axis", loud},
            {"that ends early", short_}};
}

TEST(SpectrumRaster, looksLikeThePlainDrawing) {
    for (const auto& [name, view] : scenes()) {
        for (const QSize size : {QSize(900, 300), QSize(333, 141)}) {
            for (const double scale : {1.0, 1.5, 2.0}) {
                EXPECT_GT(
                    peakSignalToNoiseDB(graphPicture(view, size, scale), fast(view, size, scale)),
                    sameLookDB)
                    << name << ' ' << size.width() << '@' << scale;
            }
        }
    }
}

TEST(SpectrumRaster, theComparisonSeesWhatIsMissing) {
    const QSize size(900, 300);
    const QImage whole = graphPicture(fullSpectrum(), size, 1.0);
    const auto without = [&](auto change) {
        SpectrumView view = fullSpectrum();
        change(view);
        return peakSignalToNoiseDB(whole, fast(view, size, 1.0));
    };
    EXPECT_LT(without([](SpectrumView& view) { view.showPeakHold = false; }), sameLookDB - 1.0);
    EXPECT_LT(without([](SpectrumView& view) { view.overlays.pop_back(); }), sameLookDB - 1.0);
    EXPECT_LT(without([](SpectrumView& view) { view.targetCurve.reset(); }), sameLookDB - 1.0);
    EXPECT_LT(without([](SpectrumView& view) { view.activeRingAlert.reset(); }), sameLookDB - 1.0);
}

// What stands still is exactly the plain drawing's.
TEST(SpectrumRaster, anEmptyGraphIsThePlainOneToThePixel) {
    SpectrumView view;
    view.spectrogramFloorDB = 30.0;
    view.spectrogramCeilingDB = 110.0;
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage a = graphPicture(view, {480, 200}, scale);
        const QImage b = fast(view, {480, 200}, scale);
        EXPECT_EQ(TarvaneTests::largestDifference(a, b) > 1, false) << scale;
    }
}

TEST(SpectrumRaster, aRasterInUseDrawsWhatANewOneDraws) {
    SpectrumRaster raster(Theme::panelBackground, pinned);
    for (const auto& [name, view] : scenes()) {
        for (const QSize size : {QSize(480, 200), QSize(300, 200)}) {
            EXPECT_EQ(raster.image(view, QSizeF(size), 1.0), fast(view, size, 1.0)) << name;
        }
    }
}

SpectrumView withLevelsMoved(SpectrumView view, std::uint32_t seed) {
    TarvaneTests::Roughness roughness(seed);
    const double rise = 60.0 * roughness.next();
    view.lineSpectrumDB =
        TarvaneTests::raisedBy(TarvaneTests::noiseSpectrum(55.0, seed), rise + roughness.next());
    view.bandLevelsDB = TarvaneTests::bandsOf(view.lineSpectrumDB, view.bands);
    view.linePeakHoldDB = TarvaneTests::raisedBy(view.linePeakHoldDB, 20.0 * roughness.next());
    view.bandPeakHoldDB = TarvaneTests::raisedBy(view.bandPeakHoldDB, 20.0 * roughness.next());
    for (SpectrumOverlay& overlay : view.overlays) {
        overlay.lineSpectrumDB =
            TarvaneTests::raisedBy(overlay.lineSpectrumDB, 30.0 * roughness.next());
        overlay.bandLevelsDB =
            TarvaneTests::raisedBy(overlay.bandLevelsDB, 30.0 * roughness.next());
    }
    // Now and then there is less to see.
    if (seed % 5 == 0) {
        view.overlays.pop_back();
    }
    if (seed % 7 == 0) {
        view.lineSpectrumDB.clear();
        view.linePeakHoldDB.clear();
    }
    if (seed % 11 == 0) {
        view.bandPeakHoldDB.clear();
    }
    view.activeRingAlert =
        seed % 6 == 0 ? std::optional(TarvaneTests::ringAt(800.0)) : std::nullopt;
    return view;
}

bool isSameOutside(const QRect& area, QImage before, QImage after) {
    for (QImage* picture : {&before, &after}) {
        picture->setDevicePixelRatio(1.0);
        QPainter(picture).fillRect(area, Qt::black);
    }
    return before == after;
}

TEST(SpectrumRaster, drawingOnlyWhatMovesGivesTheWholePicture) {
    for (const SpectrumViewMode mode :
         {SpectrumViewMode::both, SpectrumViewMode::line, SpectrumViewMode::banded}) {
        for (const double scale : {1.0, 1.5}) {
            SpectrumRaster raster(Theme::panelBackground, pinned);
            SpectrumView view = fullSpectrum();
            view.viewMode = mode;
            view.activeRingAlert.reset();  // with one all is drawn anew
            const QImage before = raster.image(view, {480.0, 200.0}, scale).copy();
            for (std::uint32_t frame = 1; frame <= 40; ++frame) {
                const SpectrumView moved = withLevelsMoved(view, frame);
                ASSERT_EQ(raster.image(moved, {480.0, 200.0}, scale),
                          fast(moved, {480, 200}, scale))
                    << frame << '@' << scale;
                ASSERT_EQ(raster.image(), raster.image(moved, {480.0, 200.0}, scale));
                raster.image(view, {480.0, 200.0}, scale);
                ASSERT_TRUE(
                    isSameOutside(raster.renewed(), fast(moved, {480, 200}, scale), raster.image()))
                    << frame << '@' << scale;
            }
            EXPECT_EQ(raster.image(), before);
            for (std::uint32_t frame = 1; frame <= 3; ++frame) {
                SpectrumView ringing = withLevelsMoved(view, frame);
                ringing.activeRingAlert = TarvaneTests::ringAt(800.0 * frame);
                ASSERT_EQ(raster.image(ringing, {480.0, 200.0}, scale),
                          fast(ringing, {480, 200}, scale))
                    << frame << '@' << scale;
            }
        }
    }
}

TEST(SpectrumRaster, whatLevelsDontReachStays) {
    SpectrumRaster raster(Theme::panelBackground, pinned);
    SpectrumView view = ordinarySpectrum();
    const QRect whole(0, 0, 480, 200);
    raster.image(view, whole.size(), 1.0);
    EXPECT_EQ(raster.renewed(), whole);
    view.lineSpectrumDB = TarvaneTests::raisedBy(view.lineSpectrumDB, 1.0);
    raster.image(view, whole.size(), 1.0);
    EXPECT_EQ(raster.renewed().width(), whole.width());
    EXPECT_LT(raster.renewed().height(), 0.8 * whole.height());
    view.traceColor = Qt::red;
    raster.image(view, whole.size(), 1.0);
    EXPECT_EQ(raster.renewed(), whole);
    view.activeRingAlert = TarvaneTests::ringAt(800.0);
    raster.image(view, whole.size(), 1.0);
    EXPECT_EQ(raster.renewed(), whole);
    raster.image(SpectrumView(), whole.size(), 1.0);
    raster.image(SpectrumView(), whole.size(), 1.0);
    EXPECT_TRUE(raster.renewed().isEmpty()) << "nothing moves in an empty graph";
}

TEST(SpectrumRaster, aSizeThatComesBackIsDrawnWhole) {
    SpectrumRaster raster(Theme::panelBackground, pinned);
    const QSize size(480, 200);
    raster.image(fullSpectrum(), QSizeF(size), 1.0);
    EXPECT_TRUE(raster.image(fullSpectrum(), {480.0, 0.0}, 1.0).isNull());
    EXPECT_TRUE(raster.renewed().isEmpty());
    EXPECT_EQ(raster.image(fullSpectrum(), QSizeF(size), 1.0), fast(fullSpectrum(), size, 1.0));
}

TEST(SpectrumRaster, newLevelsDrawNoLayerAnew) {
    SpectrumRaster raster(Theme::panelBackground, pinned);
    SpectrumView view = fullSpectrum();
    raster.image(view, {480.0, 200.0}, 1.0);
    const int drawn = raster.layersDrawn();
    view.lineSpectrumDB = TarvaneTests::noiseSpectrum(60.0, 5);
    view.bandLevelsDB = TarvaneTests::bandsOf(view.lineSpectrumDB, view.bands);
    raster.image(view, {480.0, 200.0}, 1.0);
    EXPECT_EQ(raster.layersDrawn(), drawn);
    view.targetCurveReferenceDB += 1.0;
    raster.image(view, {480.0, 200.0}, 1.0);
    EXPECT_EQ(raster.layersDrawn(), drawn + 1);
    view.scale = RTAScale::dbfs;
    raster.image(view, {480.0, 200.0}, 1.0);
    EXPECT_GT(raster.layersDrawn(), drawn + 1);
}

TEST(SpectrumRaster, labelsLeaveUnderABannerAndComeBack) {
    SpectrumRaster raster(Theme::panelBackground, pinned);
    SpectrumView view = fullSpectrum();
    const QSize size(900, 300);
    const QImage before = raster.image(view, QSizeF(size), 1.0).copy();
    const int drawn = raster.layersDrawn();
    view.covered = QRectF(640.0, 0.0, 260.0, 300.0);
    EXPECT_EQ(raster.image(view, QSizeF(size), 1.0), fast(view, size, 1.0));
    EXPECT_NE(raster.image(view, QSizeF(size), 1.0), before);
    view.targetCurve.reset();
    EXPECT_EQ(raster.image(view, QSizeF(size), 1.0), fast(view, size, 1.0));
    view.targetCurve = fullSpectrum().targetCurve;
    view.covered = {};
    EXPECT_EQ(raster.image(view, QSizeF(size), 1.0), before);
    EXPECT_EQ(raster.layersDrawn(), drawn + 2) << "the curve, and no grid";
}

TEST(SpectrumRaster, aSizeWithoutPixelsGivesNoPicture) {
    EXPECT_TRUE(fast(fullSpectrum(), {0, 200}, 1.0).isNull());
    EXPECT_TRUE(fast(fullSpectrum(), {200, 0}, 1.0).isNull());
    EXPECT_EQ(fast(fullSpectrum(), {1, 1}, 1.0).size(), QSize(1, 1));
}

TEST(SpectrumRaster, everySmallSizeIsDrawnAtEveryScale) {
    SpectrumRaster raster(Theme::panelBackground, pinned);
    const SpectrumView view = fullSpectrum();
    TarvaneTests::expectPicturesOfAllSmallSizes(raster, view);
}

}  // namespace SpectrumRasterTests
}  // namespace TarvaneApp
