#include "Displays/Spectrum/SpectrumRaster.h"

#include <gtest/gtest.h>

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
