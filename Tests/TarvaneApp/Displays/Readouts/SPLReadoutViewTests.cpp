#include "Displays/Readouts/SPLReadoutView.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "Displays/Readouts/LevelBarView.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Displays/TabularText.h"
#include "Support/GoldenImage.h"
#include "Support/ReadoutPictures.h"

namespace TarvaneApp {
namespace SPLReadoutViewTests {

using TarvaneKit::InputClipState;
using TarvaneTests::GoldenImage;

constexpr double infinity = std::numeric_limits<double>::infinity();

const Typeface& pinned = TarvaneTests::pinnedTypeface();

SPLReadoutView uncalibrated() {
    return {.valueDB = -23.0,
            .metricLabel = QStringLiteral("SPL A Fast"),
            .color = TarvaneKit::SignalColors::green,
            .isCalibrated = false,
            .showsDBFS = false,
            .leqElapsedFraction = std::nullopt,
            .minValueDB = -41.2,
            .maxValueDB = -20.4,
            .clipState = InputClipState::none,
            .sideValuesDB = {},
            .offersReset = true};
}

SPLReadoutView calibrated() {
    SPLReadoutView view = uncalibrated();
    view.isCalibrated = true;
    view.valueDB = 94.0;
    view.minValueDB = 61.3;
    view.maxValueDB = 102.8;
    view.color = TarvaneKit::SignalColors::yellow;
    return view;
}

SPLReadoutView everything() {
    SPLReadoutView view = uncalibrated();
    view.metricLabel = QStringLiteral("SPL A Infinite");
    view.clipState = InputClipState::latched;
    view.leqElapsedFraction = 0.4;
    view.sideValuesDB = {-24.1, -101.9};
    return view;
}

const std::vector<std::pair<const char*, SPLReadoutView>>& shapes() {
    static const std::vector<std::pair<const char*, SPLReadoutView>> all = [] {
        SPLReadoutView stereo = calibrated();
        stereo.sideValuesDB = {93.1, 94.7};
        SPLReadoutView leq = calibrated();
        leq.leqElapsedFraction = 0.3;
        SPLReadoutView plain = uncalibrated();
        plain.offersReset = false;
        SPLReadoutView barred = everything();
        barred.hasLevelBar = true;
        return std::vector<std::pair<const char*, SPLReadoutView>>{{"uncalibrated", uncalibrated()},
                                                                   {"calibrated", calibrated()},
                                                                   {"stereo", stereo},
                                                                   {"leq", leq},
                                                                   {"plain", plain},
                                                                   {"all", everything()},
                                                                   {"barred", barred}};
    }();
    return all;
}

const std::vector<QSize>& sizes = TarvaneTests::readoutSizes();

TarvaneTests::ReadoutPartRects parts(const SPLReadoutGeometry& geometry) {
    return {{"value", geometry.value},
            {"min", geometry.min},
            {"max", geometry.max},
            {"label", geometry.label},
            {"sides", geometry.sides},
            {"progress", geometry.progress},
            {"clipBadge", geometry.clipBadge},
            {"resetButton", geometry.resetButton},
            {"levelBar", geometry.levelBar}};
}

TEST(SPLReadoutView, noPartTouchesAnotherOrLeavesTheViewAtAnySize) {
    for (const auto& [shape, view] : shapes()) {
        SCOPED_TRACE(shape);
        for (const QSize& size : TarvaneTests::readoutGrid()) {
            TarvaneTests::expectPartsApart(parts(layout(view, size, pinned)), size);
        }
        for (const QSize& size : sizes) {
            TarvaneTests::expectPartsApart(parts(layout(view, size, Typeface::installed())), size);
        }
    }
}

TEST(SPLReadoutView, theValueStandsInTheMiddleAtEverySize) {
    for (const QSize& size : TarvaneTests::readoutGrid()) {
        const SPLReadoutGeometry geometry = layout(everything(), size, pinned);
        EXPECT_NEAR(geometry.value.center().x(), size.width() / 2.0, 1e-9);
        EXPECT_NEAR(geometry.label.center().x(), size.width() / 2.0, 1e-9);
        EXPECT_NEAR(geometry.min.center().x() + geometry.max.center().x(), size.width(), 1e-9);
    }
}

// The level bar's scale first, the bar itself last.
TEST(SPLReadoutView, whatDoesNotFitLeavesInItsOrder) {
    SPLReadoutView view = everything();
    view.hasLevelBar = true;
    int most = 0;
    for (const QSize& size : TarvaneTests::readoutGrid()) {
        const SPLReadoutGeometry geometry = layout(view, size, pinned);
        const std::array there{geometry.levelBar.height() > LevelBarGeometry::bareHeight,
                               !geometry.resetButton.isEmpty(), !geometry.progress.isEmpty(),
                               !geometry.sides.isEmpty(), !geometry.levelBar.isEmpty()};
        EXPECT_TRUE(std::is_sorted(there.begin(), there.end()))
            << size.width() << 'x' << size.height();
        most = std::max(most, static_cast<int>(std::count(there.begin(), there.end(), false)));
        EXPECT_FALSE(geometry.label.isEmpty() || geometry.min.isEmpty() ||
                     geometry.clipBadge.isEmpty());
    }
    EXPECT_GE(most, 3) << "the grid goes down to where parts leave";
}

TEST(SPLReadoutView, inATallAndNarrowPanelMinAndMaxAreUnderTheValue) {
    const SPLReadoutGeometry tall = layout(calibrated(), QSizeF(320, 600), pinned);
    EXPECT_GT(tall.min.top(), tall.label.bottom());
    EXPECT_EQ(tall.min.top(), tall.max.top());
    EXPECT_GT(tall.value.width(), 0.85 * 320);
    const SPLReadoutGeometry wide = layout(calibrated(), QSizeF(1168, 140), pinned);
    EXPECT_LT(wide.min.right(), wide.value.left());
    EXPECT_NEAR(wide.resetButton.center().x(), wide.max.center().x(), 1.0);
    EXPECT_GT(wide.resetButton.top(), wide.max.bottom());
    EXPECT_NEAR(wide.clipBadge.center().y(), wide.label.center().y(), 1.0);
}

QImage drawn(const SPLReadoutView& view, const QSize& size, double scale = 1.0,
             const QColor& ground = Theme::panelBackground) {
    return TarvaneTests::readoutPicture(view, size, scale, ground);
}

TEST(SPLReadoutView, whatIsDrawnLiesInItsPart) {
    for (const auto& [shape, view] : shapes()) {
        for (const QSize& size : sizes) {
            if (size.width() > 2000) {
                continue;  // the same proportions as 1920
            }
            const SPLReadoutGeometry geometry = layout(view, size, pinned);
            EXPECT_EQ(TarvaneTests::inkOutside(drawn(view, size, 1.0, Qt::transparent),
                                               parts(geometry), geometry.valuePixelSize),
                      0)
                << shape << " at " << size.width() << 'x' << size.height();
        }
    }
}

// The leftmost and rightmost pixel of the value's colour in the value's row.
std::pair<int, int> valueInk(const SPLReadoutView& view, const QSize& size) {
    return TarvaneTests::inkSpan(drawn(view, size, 1.0, Qt::black),
                                 layout(view, size, pinned).value, Theme::color(view.color).rgb());
}

TEST(SPLReadoutView, aValueWiderThanTheTemplateShrinksIntoItsColumn) {
    for (const double valueDB : {-100.0, -240.0}) {
        SPLReadoutView view = uncalibrated();
        view.valueDB = valueDB;
        for (const QSize& size : sizes) {
            const SPLReadoutGeometry geometry = layout(view, size, pinned);
            const auto [left, right] = valueInk(view, size);
            EXPECT_GE(left, std::floor(geometry.value.left()));
            EXPECT_LE(right, std::ceil(geometry.value.right()));
        }
    }
}

TEST(SPLReadoutView, theValueNeverMovesItsNeighbours) {
    SPLReadoutView view = uncalibrated();
    const SPLReadoutGeometry before = layout(view, QSizeF(900, 300), pinned);
    for (const double valueDB : {0.0, -9.9, -100.0, -240.0, infinity}) {
        view.valueDB = valueDB;
        view.minValueDB = valueDB;
        const SPLReadoutGeometry after = layout(view, QSizeF(900, 300), pinned);
        EXPECT_EQ(after.value, before.value);
        EXPECT_EQ(after.min, before.min);
        EXPECT_EQ(after.max, before.max);
    }
}

// The middle of what is drawn: the same digits at both ends, so that their shapes don't count.
TEST(SPLReadoutView, theNumberChangesItsPlaceOnlyBetweenTwoDigitsAndThree) {
    const QSize size(900, 300);
    SPLReadoutView view = calibrated();
    const auto span = [&](double valueDB) {
        view.valueDB = valueDB;
        return valueInk(view, size);
    };
    const auto [left, right] = span(88.8);
    EXPECT_NEAR((left + right) / 2.0, size.width() / 2.0, 1.5);
    EXPECT_EQ(span(8.8).second, right) << "the decimal stays";
    EXPECT_EQ(span(18.8).second, right);
    const auto [widerLeft, widerRight] = span(888.8);
    EXPECT_NEAR((widerLeft + widerRight) / 2.0, size.width() / 2.0, 1.5);
    EXPECT_GT(widerRight, right);
}

TEST(SPLReadoutView, aNumberInDBFSStandsInTheMiddleWithItsSign) {
    SPLReadoutView view = uncalibrated();
    view.valueDB = -88.8;
    const QSize size(900, 300);
    const QRectF value = layout(view, size, pinned).value;
    EXPECT_NEAR(TabularText::width(QStringLiteral("-88.8"),
                                   pinned.roundedFont(layout(view, size, pinned).valuePixelSize)),
                value.width(), 4.0)
        << "as wide as its column";
    const int right = valueInk(view, size).second;
    view.valueDB = -8.8;
    EXPECT_EQ(valueInk(view, size).second, right);
}

TEST(SPLReadoutView, theValueIsAtItsOrdinarySizeOrMoreInTheSmallestMainWindow) {
    // 900 by 260 less menu, toolbar, control bar and margins.
    SPLReadoutView view = calibrated();
    view.hasLevelBar = true;
    for (const Typeface& typeface : {pinned, Typeface::installed()}) {
        EXPECT_GE(layout(view, QSizeF(868, 142), typeface).valuePixelSize, Theme::Text::readout);
    }
}

TEST(SPLReadoutView, theValueGrowsWithTheView) {
    double previous = 0.0;
    for (const double scale : {1.0, 1.5, 2.0, 3.0, 4.0, 6.0, 8.0}) {
        const double size = layout(calibrated(), QSizeF(480, 270) * scale, pinned).valuePixelSize;
        EXPECT_GT(size, previous);
        previous = size;
    }
    // On a full screen the digits take at least a third of the height.
    EXPECT_GE(layout(calibrated(), QSizeF(1888, 900), pinned).value.height(), 300.0);
}

// A drawing at any size has a number to show.
TEST(SPLReadoutView, asSmallAsAStampTheNumberAloneIsLeft) {
    for (const QSize& size : {QSize(100, 40), QSize(60, 24), QSize(40, 300)}) {
        const SPLReadoutGeometry geometry = layout(everything(), size, pinned);
        EXPECT_FALSE(geometry.value.isEmpty());
        EXPECT_TRUE(geometry.min.isEmpty());
        TarvaneTests::expectPartsApart(parts(geometry), size);
    }
    EXPECT_GE(layout(everything(), QSizeF(100, 80), pinned).valuePixelSize,
              std::floor(0.4 * Theme::Text::readout))
        << "before the name leaves it has its smallest size";
}

TEST(SPLReadoutView, theMetricCarriesItsSuffix) {
    EXPECT_EQ(uncalibrated().labelText(), QStringLiteral("SPL A Fast  (dBFS, uncalibrated)"));
    EXPECT_EQ(calibrated().labelText(), QStringLiteral("SPL A Fast"));
    SPLReadoutView view = calibrated();
    view.showsDBFS = true;
    EXPECT_EQ(view.labelText(), QStringLiteral("SPL A Fast  (dBFS)"));
}

TEST(SPLReadoutView, aScreenReaderHearsValueAndUnit) {
    EXPECT_EQ(uncalibrated().spokenValue(), QStringLiteral("-23.0 dBFS"));
    EXPECT_EQ(calibrated().spokenValue(), QStringLiteral("94.0 dB SPL"));
    SPLReadoutView view = calibrated();
    view.valueDB = -infinity;
    EXPECT_EQ(view.spokenValue(), QStringLiteral("—"));
}

TEST(SPLReadoutView, onlyWhatLooksDifferentIsDrawnAnew) {
    const SPLReadoutView before = everything();
    const SPLReadoutGeometry geometry = layout(before, QSizeF(900, 400), pinned);
    SPLReadoutView after = before;
    EXPECT_TRUE(changedArea(before, after, geometry).isEmpty());
    after.valueDB += 0.01;  // the shown decimal stays
    EXPECT_TRUE(changedArea(before, after, geometry).isEmpty());
    after.valueDB += 1.0;
    const QRegion value = changedArea(before, after, geometry);
    EXPECT_TRUE(value.contains(geometry.value.toRect()));
    EXPECT_FALSE(value.intersects(geometry.min.toRect()));
    EXPECT_FALSE(value.intersects(geometry.label.toRect()));
    after = before;
    after.clipState = InputClipState::active;
    EXPECT_TRUE(changedArea(before, after, geometry).intersects(geometry.clipBadge.toRect()));
    after = before;
    after.maxValueDB = 0.0;
    EXPECT_EQ(changedArea(before, after, geometry).boundingRect(),
              geometry.max.adjusted(-2, -2, 2, 2).toAlignedRect());
}

TEST(SPLReadoutView, drawingOnlyTheChangedPartsGivesTheWholePicture) {
    const QSize size(900, 400);
    const SPLReadoutView before = everything();
    SPLReadoutView after = before;
    after.valueDB = -100.0;
    after.minValueDB = -infinity;
    after.sideValuesDB = {-10.0, -9.0};
    after.leqElapsedFraction = 0.9;
    after.clipState = InputClipState::active;
    const SPLReadoutGeometry geometry = layout(before, size, pinned);
    const QRegion changed = changedArea(before, after, geometry);
    QImage image = drawn(before, size);
    QPainter painter(&image);
    painter.setClipRegion(changed);
    painter.fillRect(image.rect(), Theme::panelBackground);
    paint(painter, after, geometry, changed, pinned);
    painter.end();
    EXPECT_EQ(GoldenImage::differingPixels(image, drawn(after, size)), 0);
}

// --- golden images

struct Golden {
    const char* name;
    SPLReadoutView view;
    QSize size;
};

std::vector<Golden> goldens() {
    SPLReadoutView idle = uncalibrated();
    idle.valueDB = -infinity;
    idle.minValueDB = infinity;
    idle.maxValueDB = -infinity;
    SPLReadoutView dbfs = calibrated();
    dbfs.showsDBFS = true;
    dbfs.valueDB = -23.0;
    dbfs.minValueDB = -33.0;
    dbfs.maxValueDB = -12.5;
    SPLReadoutView stereo = calibrated();
    stereo.metricLabel = QStringLiteral("Peak C");
    stereo.sideValuesDB = {93.1, -infinity};
    SPLReadoutView leq = calibrated();
    leq.metricLabel = QStringLiteral("Leq");
    leq.leqElapsedFraction = 0.35;
    SPLReadoutView clip = calibrated();
    clip.valueDB = 124.3;
    clip.color = TarvaneKit::SignalColors::red;
    clip.clipState = InputClipState::active;
    SPLReadoutView latched = calibrated();
    latched.clipState = InputClipState::latched;
    SPLReadoutView extreme = uncalibrated();
    extreme.valueDB = -100.0;
    extreme.minValueDB = -240.0;
    const QSize ordinary(600, 220);
    return {{"idle", idle, ordinary},
            {"calibrated", calibrated(), ordinary},
            {"dbfs", dbfs, ordinary},
            {"stereo", stereo, ordinary},
            {"leq", leq, ordinary},
            {"clip", clip, ordinary},
            {"latched", latched, ordinary},
            {"extreme", extreme, ordinary},
            {"small", everything(), {420, 180}},
            {"short", clip, {868, 92}},
            {"huge", calibrated(), {1600, 800}}};
}

TEST(SPLReadoutView, looksAsItsGoldenImages) {
    for (const Golden& golden : goldens()) {
        for (const int scale : {1, 2}) {
            const QString name =
                QStringLiteral("readout-%1@%2x").arg(QLatin1String(golden.name)).arg(scale);
            EXPECT_TRUE(GoldenImage::matches(
                name,
                drawn(golden.view, golden.size, scale).convertToFormat(QImage::Format_RGB32)));
        }
    }
}

// What the golden images are there to notice, at the size where it is the fewest pixels.
TEST(SPLReadoutView, aMissingLabelOrAnotherDigitIsMoreThanAGoldenImageTolerates) {
    const QSize size(420, 180);
    const QImage whole = drawn(everything(), size);
    SPLReadoutView other = everything();
    other.metricLabel.clear();
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
    other = everything();
    other.maxValueDB += 0.1;
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
    other = everything();
    other.clipState = InputClipState::none;
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
    other = everything();
    other.sideValuesDB[0] += 0.1;
    EXPECT_GT(GoldenImage::differingPixels(whole, drawn(other, size)), GoldenImage::tolerance);
}

}  // namespace SPLReadoutViewTests
}  // namespace TarvaneApp
