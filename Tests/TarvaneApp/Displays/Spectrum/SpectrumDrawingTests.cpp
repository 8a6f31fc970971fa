#include "Displays/Spectrum/SpectrumDrawing.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>

#include "Displays/Spectrum/SpectrumHover.h"
#include "Support/GoldenImage.h"
#include "Support/GraphPictures.h"
#include "Support/PinnedTypeface.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneApp {
namespace SpectrumDrawingTests {

using TarvaneTests::GoldenImage;
using TarvaneTests::spectrumInDBFS;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

QImage drawn(const SpectrumView& view, const QSize& size, double scale = 1.0) {
    QImage image = TarvaneTests::graphPicture(view, size, scale);
    QPainter painter(&image);
    paintHover(painter, view, QSizeF(size), pinned);
    return image;
}

TEST(SpectrumDrawing, rulesAreSharpAtEveryScale) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage image = drawn(SpectrumView(), {900, 300}, scale);
        const int y = static_cast<int>(20.0 * scale);  // between rules and labels
        const int hairline = static_cast<int>(std::max(std::round(scale), 1.0));
        int onRules = 0;
        for (int x = 0; x < image.width(); ++x) {
            const QColor color(image.pixel(x, y));
            EXPECT_TRUE(color == QColor(Theme::panelBackground.rgb()) ||
                        color == QColor(Theme::gridLine.rgb()))
                << x << " at scale " << scale;
            onRules += color == QColor(Theme::gridLine.rgb()) ? 1 : 0;
        }
        EXPECT_EQ(onRules, 10 * hairline);
    }
}

TEST(SpectrumDrawing, theStrongRuleIsZeroAtTheBottomInSPLAndAtTheTopInDBFS) {
    const QImage spl = drawn(SpectrumView(), {900, 300});
    EXPECT_EQ(QColor(spl.pixel(450, 299)), QColor(Theme::gridLineStrong.rgb()));
    EXPECT_EQ(QColor(spl.pixel(450, 0)), QColor(Theme::gridLine.rgb()));
    const QImage dbfs = drawn(spectrumInDBFS(), {900, 300});
    EXPECT_EQ(QColor(dbfs.pixel(450, 0)), QColor(Theme::gridLineStrong.rgb()));
    EXPECT_EQ(QColor(dbfs.pixel(450, 299)), QColor(Theme::gridLine.rgb()));
}

TEST(SpectrumDrawing, piecesWhoseArraysDontMatchAreLeftOut) {
    SpectrumView view = TarvaneTests::ordinarySpectrum();
    view.bandLevelsDB.pop_back();
    view.bandPeakHoldDB.pop_back();
    view.linePeakHoldDB.pop_back();
    SpectrumView lineAlone = view;
    lineAlone.viewMode = SpectrumViewMode::line;
    lineAlone.showPeakHold = false;
    EXPECT_EQ(drawn(view, {900, 300}), drawn(lineAlone, {900, 300}));
    view.lineSpectrumDB.clear();
    SpectrumView empty;
    empty.spectrogramFloorDB = view.spectrogramFloorDB;
    empty.spectrogramCeilingDB = view.spectrogramCeilingDB;
    EXPECT_EQ(drawn(view, {900, 300}), drawn(empty, {900, 300}));
}

TEST(SpectrumDrawing, floorAndCeilingAreDashesOfFiveAndFour) {
    SpectrumView view;
    view.spectrogramFloorDB = 70.0;
    const QImage image = drawn(view, {900, 280});  // rules every 40 pixels, the floor at 140
    for (int x = 100; x < 190; ++x) {
        const bool isOn = x % 9 < 5;
        const bool isLit = qGreen(image.pixel(x, 140)) > 100 || qGreen(image.pixel(x, 139)) > 100;
        EXPECT_EQ(isLit, isOn) << x;
    }
}

struct Golden {
    const char* name;
    SpectrumView view;
    QSize size;
};

std::vector<Golden> goldens() {
    SpectrumView empty = SpectrumView();
    empty.spectrogramFloorDB = 30.0;
    empty.spectrogramCeilingDB = 110.0;
    SpectrumView banded = TarvaneTests::ordinarySpectrum();
    banded.viewMode = SpectrumViewMode::banded;
    SpectrumView line = TarvaneTests::ordinarySpectrum();
    line.viewMode = SpectrumViewMode::line;
    line.hover = SpectrumHoverState::at(360.0, 600.0, line.frequencyAxis());
    SpectrumView extreme = TarvaneTests::ordinarySpectrum();
    extreme.scale = RTAScale::dbfs;
    for (std::size_t i = 0; i < extreme.lineSpectrumDB.size(); ++i) {
        extreme.lineSpectrumDB[i] = i / 100 % 2 == 0 ? 90.0 : -240.0;
    }
    extreme.bandLevelsDB = TarvaneTests::bandsOf(extreme.lineSpectrumDB, extreme.bands);
    extreme.spectrogramFloorDB = -139.0;
    extreme.spectrogramCeilingDB = -1.0;
    SpectrumView overlays = TarvaneTests::fullSpectrum();
    overlays.activeRingAlert.reset();
    SpectrumView bandedOverlays = overlays;
    bandedOverlays.viewMode = SpectrumViewMode::banded;
    const QSize ordinary(600, 220);
    return {{"empty", empty, ordinary},
            {"banded", banded, ordinary},
            {"line", line, ordinary},
            {"both", TarvaneTests::ordinarySpectrum(), ordinary},
            {"extreme", extreme, ordinary},
            {"overlays", overlays, ordinary},
            {"banded-overlays", bandedOverlays, ordinary},
            {"ring", TarvaneTests::fullSpectrum(), ordinary},
            {"narrow", TarvaneTests::fullSpectrum(), {240, 120}},
            {"huge", TarvaneTests::fullSpectrum(), {1900, 600}}};
}

TEST(SpectrumDrawing, looksAsItsGoldenImages) {
    for (const Golden& golden : goldens()) {
        for (const int scale : {1, 2}) {
            const QString name =
                QStringLiteral("spectrum-%1@%2x").arg(QLatin1String(golden.name)).arg(scale);
            EXPECT_TRUE(GoldenImage::matches(name, drawn(golden.view, golden.size, scale)));
        }
    }
}

TEST(SpectrumDrawing, aMissingLabelOrTraceIsMoreThanAGoldenImageTolerates) {
    const QSize size(240, 120);
    const QImage whole = drawn(TarvaneTests::fullSpectrum(), size);
    const auto changes = [&](auto change) {
        SpectrumView other = TarvaneTests::fullSpectrum();
        change(other);
        return GoldenImage::differingPixels(whole, drawn(other, size));
    };
    EXPECT_GT(changes([](SpectrumView& view) { view.spectrogramFloorDB.reset(); }),
              GoldenImage::tolerance);
    EXPECT_GT(changes([](SpectrumView& view) { view.activeRingAlert.reset(); }),
              GoldenImage::tolerance);
    EXPECT_GT(changes([](SpectrumView& view) { view.targetCurve.reset(); }),
              GoldenImage::tolerance);
    EXPECT_GT(changes([](SpectrumView& view) { view.overlays.pop_back(); }),
              GoldenImage::tolerance);
    EXPECT_GT(changes([](SpectrumView& view) { view.showPeakHold = false; }),
              GoldenImage::tolerance);
}

}  // namespace SpectrumDrawingTests
}  // namespace TarvaneApp
