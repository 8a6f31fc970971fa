#include "Displays/Readouts/LoudnessReadoutView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "Displays/Readouts/LevelBarView.h"
#include "Displays/Readouts/ReadoutText.h"
#include "Support/GoldenImage.h"
#include "Support/ReadoutPictures.h"

namespace TarvaneApp {
namespace LoudnessReadoutViewTests {

using TarvaneKit::InputClipState;
using TarvaneKit::LoudnessMetric;
using TarvaneKit::LoudnessReadings;
using TarvaneKit::RGBAColor;
using TarvaneKit::SignalColors::green;
using TarvaneKit::SignalColors::red;
using TarvaneKit::SignalColors::yellow;
using TarvaneTests::GoldenImage;
using TarvaneTests::readoutPicture;
using TarvaneTests::readoutSizes;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

LoudnessReadoutView programme() {
    LoudnessReadoutView view{.readings = {.momentary = -21.7,
                                          .shortTerm = -22.4,
                                          .integrated = -23.1,
                                          .range = 6.2,
                                          .truePeakMax = -3.4,
                                          .momentaryMax = -15.0,
                                          .shortTermMax = -18.2},
                             .headline = LoudnessMetric::shortTerm,
                             .target = LoudnessTarget::presets().front(),
                             .colors = {},
                             .color = {},
                             .clipState = InputClipState::none,
                             .offersReset = true};
    view.color = view.judgement(view.headline);
    return view;
}

LoudnessReadoutView empty() {
    LoudnessReadoutView view = programme();
    view.readings = LoudnessReadings{};
    return view;
}

LoudnessReadoutView extreme() {
    LoudnessReadoutView view = programme();
    view.readings = {.momentary = -240.0,
                     .shortTerm = -103.4,
                     .integrated = -70.0,
                     .range = 100.3,
                     .truePeakMax = 12.6,
                     .momentaryMax = 3.0,
                     .shortTermMax = 1.0};
    view.headline = LoudnessMetric::momentary;
    view.color = view.judgement(view.headline);
    view.clipState = InputClipState::active;
    return view;
}

TarvaneTests::ReadoutPartRects parts(const LoudnessReadoutGeometry& geometry) {
    return {{"value", geometry.value},         {"target", geometry.target},
            {"truePeak", geometry.truePeak},   {"label", geometry.label},
            {"M", geometry.readings[0]},       {"S", geometry.readings[1]},
            {"I", geometry.readings[2]},       {"LRA", geometry.readings[3]},
            {"clipBadge", geometry.clipBadge}, {"resetButton", geometry.resetButton},
            {"levelBar", geometry.levelBar}};
}

TEST(LoudnessReadoutView, noPartTouchesAnotherOrLeavesTheViewAtAnySize) {
    LoudnessReadoutView plain = programme();
    plain.offersReset = false;
    LoudnessReadoutView barred = extreme();
    barred.hasLevelBar = true;
    for (const LoudnessReadoutView& view : {programme(), plain, barred}) {
        for (const QSize& size : TarvaneTests::readoutGrid()) {
            TarvaneTests::expectPartsApart(parts(layout(view, size, pinned)), size);
        }
        for (const QSize& size : readoutSizes()) {
            TarvaneTests::expectPartsApart(parts(layout(view, size, Typeface::installed())), size);
        }
    }
}

// The level bar's scale first, the bar itself last.
TEST(LoudnessReadoutView, whatDoesNotFitLeavesInItsOrder) {
    LoudnessReadoutView view = programme();
    view.hasLevelBar = true;
    int most = 0;
    for (const QSize& size : TarvaneTests::readoutGrid()) {
        const LoudnessReadoutGeometry geometry = layout(view, size, pinned);
        const std::array there{geometry.levelBar.height() > LevelBarGeometry::bareHeight,
                               !geometry.resetButton.isEmpty(), !geometry.readings[0].isEmpty(),
                               !geometry.levelBar.isEmpty()};
        EXPECT_TRUE(std::is_sorted(there.begin(), there.end()))
            << size.width() << 'x' << size.height();
        most = std::max(most, static_cast<int>(std::count(there.begin(), there.end(), false)));
    }
    EXPECT_GE(most, 3) << "the grid goes down to where parts leave";
}

TEST(LoudnessReadoutView, whatIsDrawnLiesInItsPart) {
    for (const LoudnessReadoutView& view : {programme(), empty(), extreme()}) {
        for (const QSize& size : readoutSizes()) {
            if (size.width() > 2000) {
                continue;  // the same proportions as 1920
            }
            const LoudnessReadoutGeometry geometry = layout(view, size, pinned);
            EXPECT_EQ(TarvaneTests::inkOutside(readoutPicture(view, size, 1.0, Qt::transparent),
                                               parts(geometry), geometry.valuePixelSize),
                      0)
                << size.width() << 'x' << size.height();
        }
    }
}

TEST(LoudnessReadoutView, noReadingMovesAnything) {
    const auto before = parts(layout(programme(), QSizeF(900, 300), pinned));
    EXPECT_EQ(parts(layout(extreme(), QSizeF(900, 300), pinned))[0], before[0]);
    LoudnessReadoutView view = extreme();
    view.headline = programme().headline;
    EXPECT_EQ(parts(layout(view, QSizeF(900, 300), pinned)), before);
}

TEST(LoudnessReadoutView, aValueWiderThanTheTemplateShrinksIntoItsColumn) {
    const LoudnessReadoutView view = extreme();  // -240.0
    for (const QSize& size : readoutSizes()) {
        const QRectF column = layout(view, size, pinned).value;
        const auto [left, right] = TarvaneTests::inkSpan(readoutPicture(view, size, 1.0, Qt::black),
                                                         column, Theme::color(view.color).rgb());
        EXPECT_GE(left, std::floor(column.left()));
        EXPECT_LE(right, std::ceil(column.right()));
    }
}

TEST(LoudnessReadoutView, theReadingsStandFourPointsApart) {
    const LoudnessReadoutGeometry geometry = layout(programme(), QSizeF(340, 104), pinned);
    EXPECT_DOUBLE_EQ(geometry.readingsScale, 1.0);
    for (std::size_t i = 1; i < geometry.readings.size(); ++i) {
        EXPECT_NEAR(geometry.readings[i].left() - geometry.readings[i - 1].right(), 4.0, 1e-9);
    }
}

// 5 arc minutes are what 20/20 vision needs to read a digit: 4.4 mm at three metres. The smallest
// main window leaves the readout 868 by 92; a pixel of a common screen (24 inches, 1920 by 1080)
// is 0.277 mm.
TEST(LoudnessReadoutView, theValueReadsFromThreeMetresInTheSmallestMainWindow) {
    for (const Typeface& typeface : {pinned, Typeface::installed()}) {
        EXPECT_GE(layout(programme(), QSizeF(868, 92), typeface).value.height() * 0.277, 4.4);
    }
    EXPECT_GE(layout(programme(), QSizeF(1888, 900), pinned).value.height(), 300.0);
}

TEST(LoudnessReadoutView, theHeadlineIsTheChosenReadingWithItsNameAndUnit) {
    LoudnessReadoutView view = programme();
    EXPECT_EQ(view.labelText(), QStringLiteral("Short-Term  (LUFS)"));
    EXPECT_EQ(view.spokenValue(), QStringLiteral("-22.4 LUFS"));
    view.headline = LoudnessMetric::momentaryMax;
    EXPECT_EQ(view.labelText(), QStringLiteral("Momentary Max  (LUFS)"));
    EXPECT_EQ(view.spokenValue(), QStringLiteral("-15.0 LUFS"));
    view.headline = LoudnessMetric::range;
    EXPECT_EQ(view.labelText(), QStringLiteral("Loudness Range  (LU)"));
    view.headline = LoudnessMetric::truePeakMax;
    EXPECT_EQ(view.labelText(), QStringLiteral("True Peak Max  (dBTP)"));
    EXPECT_EQ(empty().spokenValue(), QStringLiteral("—"));
}

TEST(LoudnessReadoutView, theTargetSaysWhatItIs) {
    const SideLabel label = programme().targetLabel();
    EXPECT_EQ(label.title, QStringLiteral("TARGET"));
    EXPECT_EQ(label.value, QStringLiteral("-23.0"));
    EXPECT_EQ(label.unit, QStringLiteral("LUFS"));
    EXPECT_EQ(programme().targetHelp(),
              QStringLiteral("EBU R128 (−23 LUFS): on target within ±1 LU"));
    LoudnessReadoutView view = programme();
    view.target.toleranceLU = 1.5;
    EXPECT_EQ(view.targetHelp(), QStringLiteral("Custom: on target within ±1.5 LU"));
}

TEST(LoudnessReadoutView, theTruePeakTakesItsColourByTheCeiling) {
    LoudnessReadoutView view = programme();
    view.readings.truePeakMax = -1.0;  // exactly at the ceiling of EBU R128
    const SideLabel within = view.truePeakLabel();
    EXPECT_EQ(within.title, QStringLiteral("TRUE PEAK"));
    EXPECT_EQ(within.value, QStringLiteral("-1.0"));
    EXPECT_EQ(within.unit, QStringLiteral("dBTP"));
    EXPECT_EQ(within.color, Theme::color(green));
    view.readings.truePeakMax = -0.9;
    EXPECT_EQ(view.truePeakLabel().color, Theme::color(red));
    EXPECT_EQ(view.truePeakHelp(),
              QStringLiteral("Highest true peak since the last reset (ceiling -1.0 dBTP)"));
    view.target = LoudnessTarget::presets()[1];
    EXPECT_EQ(view.truePeakHelp(),
              QStringLiteral("Highest true peak since the last reset (ceiling -2.0 dBTP)"));
}

TEST(LoudnessReadoutView, theRowHasShortTitlesFullNamesAndOneDecimal) {
    const LoudnessReadoutView view = programme();
    const std::vector<std::array<const char*, 4>> expected{{"M", "-21.7", "", "Momentary"},
                                                           {"S", "-22.4", "", "Short-Term"},
                                                           {"I", "-23.1", "", "Integrated"},
                                                           {"LRA", "6.2", "LU", "Loudness Range"}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto reading = view.reading(LoudnessReadoutView::rowMetrics.at(i));
        EXPECT_EQ(reading.title, QLatin1String(expected[i][0]));
        EXPECT_EQ(reading.value, QLatin1String(expected[i][1]));
        EXPECT_EQ(reading.unit, QLatin1String(expected[i][2]));
        EXPECT_EQ(reading.help, QLatin1String(expected[i][3]));
    }
    EXPECT_EQ(view.reading(LoudnessMetric::truePeakMax).title, QStringLiteral("TP"));
    EXPECT_EQ(view.reading(LoudnessMetric::momentaryMax).title, QStringLiteral("M Max"));
    EXPECT_EQ(view.reading(LoudnessMetric::shortTermMax).title, QStringLiteral("S Max"));
}

TEST(LoudnessReadoutView, aReadingThatDoesNotExistYetIsADash) {
    for (const LoudnessMetric metric : TarvaneKit::allCases<LoudnessMetric>()) {
        EXPECT_EQ(empty().reading(metric).value, QStringLiteral("—"));
        EXPECT_EQ(empty().reading(metric).color, Theme::axisText);
    }
    EXPECT_EQ(empty().truePeakLabel().value, QStringLiteral("—"));
}

TEST(LoudnessReadoutView, integratedIsColouredByTheTarget) {
    LoudnessReadoutView view = programme();
    // −23 ± 1 LUFS: below −24 yellow, up to −22 green, from −22 on red.
    for (const auto& [integrated, color] : std::vector<std::pair<double, RGBAColor>>{
             {-24.01, yellow}, {-24.0, green}, {-22.01, green}, {-22.0, red}}) {
        view.readings.integrated = integrated;
        EXPECT_EQ(view.reading(LoudnessMetric::integrated).color, Theme::color(color));
        EXPECT_EQ(view.judgement(LoudnessMetric::integrated), color);
    }
    EXPECT_EQ(view.reading(LoudnessMetric::momentary).color, Theme::primaryText);
}

TEST(LoudnessReadoutView, aRangeIsNeverJudgedByALoudnessTarget) {
    LoudnessReadoutView view = programme();
    view.readings.range = 6.0;  // as LUFS it would be far above the target
    EXPECT_EQ(Theme::color(view.judgement(LoudnessMetric::range)), Theme::primaryText);
}

TEST(LoudnessReadoutView, onlyWhatLooksDifferentIsDrawnAnew) {
    const LoudnessReadoutView before = programme();
    const LoudnessReadoutGeometry geometry = layout(before, QSizeF(900, 400), pinned);
    LoudnessReadoutView after = before;
    EXPECT_TRUE(changedArea(before, after, geometry).isEmpty());
    after.readings.momentary += 0.01;  // the shown decimal stays
    EXPECT_TRUE(changedArea(before, after, geometry).isEmpty());
    after.readings.momentary += 1.0;
    EXPECT_EQ(changedArea(before, after, geometry).boundingRect(),
              geometry.readings[0].adjusted(-2, -2, 2, 2).toAlignedRect());
    after = before;
    after.readings.truePeakMax = 0.0;
    EXPECT_EQ(changedArea(before, after, geometry).boundingRect(),
              geometry.truePeak.adjusted(-2, -2, 2, 2).toAlignedRect());
    after = before;
    after.readings.shortTerm -= 1.0;  // the headline, and its place in the row
    EXPECT_TRUE(changedArea(before, after, geometry).contains(geometry.value.toRect()));
    EXPECT_TRUE(changedArea(before, after, geometry).intersects(geometry.readings[1].toRect()));
    EXPECT_FALSE(changedArea(before, after, geometry).intersects(geometry.target.toRect()));
    after = before;
    after.target = LoudnessTarget::presets()[2];
    EXPECT_TRUE(changedArea(before, after, geometry).intersects(geometry.target.toRect()));
}

TEST(LoudnessReadoutView, drawingOnlyTheChangedPartsGivesTheWholePicture) {
    const QSize size(900, 400);
    const LoudnessReadoutView before = programme();
    LoudnessReadoutView after = extreme();
    after.headline = before.headline;
    ASSERT_TRUE(sameShape(before, after));
    const LoudnessReadoutGeometry geometry = layout(before, size, pinned);
    const QRegion changed = changedArea(before, after, geometry);
    QImage image = readoutPicture(before, size);
    QPainter painter(&image);
    painter.setClipRegion(changed);
    painter.fillRect(image.rect(), Theme::panelBackground);
    paint(painter, after, geometry, changed, pinned);
    painter.end();
    EXPECT_EQ(GoldenImage::differingPixels(image, readoutPicture(after, size)), 0);
}

// --- golden images

TEST(LoudnessReadoutView, looksAsItsGoldenImages) {
    LoudnessReadoutView over = programme();
    over.readings.shortTerm = -19.8;
    over.readings.truePeakMax = 0.3;
    over.color = over.judgement(over.headline);
    over.clipState = InputClipState::latched;
    LoudnessReadoutView range = programme();
    range.headline = LoudnessMetric::range;
    range.color = range.judgement(range.headline);
    struct Golden {
        const char* name;
        LoudnessReadoutView view;
        QSize size;
    };
    const QSize ordinary(600, 220);
    for (const Golden& golden : std::vector<Golden>{{"empty", empty(), ordinary},
                                                    {"ordinary", programme(), ordinary},
                                                    {"over", over, ordinary},
                                                    {"range", range, ordinary},
                                                    {"extreme", extreme(), ordinary},
                                                    {"narrow", programme(), {290, 150}},
                                                    {"short", extreme(), {868, 92}},
                                                    {"huge", programme(), {1600, 800}}}) {
        for (const int scale : {1, 2}) {
            EXPECT_TRUE(GoldenImage::matches(
                QStringLiteral("loudness-%1@%2x").arg(QLatin1String(golden.name)).arg(scale),
                readoutPicture(golden.view, golden.size, scale)
                    .convertToFormat(QImage::Format_RGB32)));
        }
    }
}

TEST(LoudnessReadoutView, anotherDigitIsMoreThanAGoldenImageTolerates) {
    const QSize size(290, 150);
    const QImage whole = readoutPicture(programme(), size);
    LoudnessReadoutView other = programme();
    other.readings.range += 0.1;
    EXPECT_GT(GoldenImage::differingPixels(whole, readoutPicture(other, size)),
              GoldenImage::tolerance);
    other = programme();
    other.readings.truePeakMax += 0.1;
    EXPECT_GT(GoldenImage::differingPixels(whole, readoutPicture(other, size)),
              GoldenImage::tolerance);
}

}  // namespace LoudnessReadoutViewTests
}  // namespace TarvaneApp
