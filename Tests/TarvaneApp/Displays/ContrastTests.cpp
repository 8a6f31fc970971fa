// What is drawn is legible, by numbers: WCAG 2.1 asks for 4.5 to 1 for text, 3 to 1 for large text
// (a bold one from 18.66 pixels on) and marks.

#include "Displays/Contrast.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "Core/RGBAColor.h"
#include "Displays/Readouts/ClipBadge.h"
#include "Displays/Readouts/LoudnessReadoutView.h"
#include "Displays/Readouts/SPLReadoutView.h"
#include "Displays/Spectrum/RingOutBannerView.h"
#include "Displays/Theme.h"
#include "Support/DrawnContrast.h"
#include "Support/PinnedTypeface.h"

namespace TarvaneApp {
namespace ContrastTests {

using TarvaneKit::InputClipState;

using TarvaneTests::drawnContrast;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

TEST(Contrast, theRatioIsThatOfTheStandard) {
    EXPECT_DOUBLE_EQ(Contrast::ratio(Qt::white, Qt::black), 21.0);
    EXPECT_DOUBLE_EQ(Contrast::ratio(Qt::red, Qt::red), 1.0);
    // 0.2126 of red and 0.0722 of blue light.
    EXPECT_NEAR(Contrast::ratio(QColor(255, 0, 0), Qt::black), (0.2126 + 0.05) / 0.05, 1e-9);
    EXPECT_NEAR(Contrast::ratio(Qt::white, QColor(0, 0, 255)), 1.05 / (0.0722 + 0.05), 1e-9);
}

TEST(Contrast, textsOfTheThemeAreLegibleOnItsGrounds) {
    for (const QColor& ground :
         {Theme::background, Theme::panelBackground, Theme::controlBackground}) {
        for (const QColor& color : {Theme::primaryText, Theme::axisText, Theme::peakHold,
                                    Theme::targetCurve, Theme::ringAlert}) {
            EXPECT_GE(Contrast::ratio(color, ground), Contrast::text)
                << color.name().toStdString() << " on " << ground.name().toStdString();
        }
        EXPECT_GE(Contrast::ratio(Theme::accent, ground), Contrast::mark);
        EXPECT_GE(Contrast::ratio(Theme::dimmed, ground), Contrast::mark);
    }
    for (const TarvaneKit::RGBAColor& signal :
         {TarvaneKit::SignalColors::green, TarvaneKit::SignalColors::yellow,
          TarvaneKit::SignalColors::red}) {
        EXPECT_GE(Contrast::ratio(Theme::color(signal), Theme::panelBackground), Contrast::mark)
            << "the large number";
        EXPECT_GE(Contrast::ratio(Theme::color(signal), Theme::gridLine), Contrast::mark)
            << "the bar in its track";
    }
}

TEST(Contrast, textOnAColouredPlateIsTheLightOrTheDarkOne) {
    for (const QColor& ground :
         {Theme::accent, Theme::color(TarvaneKit::SignalColors::red), Theme::controlBackground}) {
        EXPECT_GE(Contrast::ratio(Contrast::textOn(ground), ground), Contrast::text);
    }
}

TEST(Contrast, aDarkColourIsLightenedAsFarAsItNeedsAndNoFurther) {
    const QColor red = Theme::color(TarvaneKit::SignalColors::red);
    const double ratio =
        Contrast::ratio(Contrast::legible(red, Theme::controlBackground), Theme::controlBackground);
    EXPECT_GE(ratio, 4.5);
    EXPECT_LT(ratio, 4.8);
    EXPECT_EQ(Contrast::legible(Theme::primaryText, Theme::panelBackground), Theme::primaryText);
    EXPECT_GE(Contrast::ratio(Contrast::legible(Qt::black, Theme::background), Theme::background),
              4.5);
}

TEST(Contrast, theBadgeIsLegibleInEveryState) {
    const QRectF rect(QPointF(), ClipBadge::size(1.0, pinned));
    // Within the plate's rounded corners; that of a shorter text is narrower.
    const QRectF inside(rect.center().x() - 10.0, rect.top() + 1.5, 20.0, rect.height() - 3.0);
    for (const ClipBadge& badge :
         {ClipBadge{InputClipState::active}, ClipBadge{InputClipState::latched},
          ClipBadge{.lost = {.count = 3}}}) {
        EXPECT_GE(drawnContrast(
                      inside, [&](QPainter& painter) { badge.paint(painter, rect, 1.0, pinned); }),
                  Contrast::text)
            << badge.text().toStdString();
    }
}

TEST(Contrast, theBannerIsLegibleAlsoWhenTheRingHasStopped) {
    RingOutBannerView banner{.alert =
                                 TarvaneKit::RingAlert{.id = TarvaneKit::UUID::random(),
                                                       .frequencyHz = 250.0,
                                                       .note = {.name = "B3", .centsOffset = 22.0},
                                                       .suggestedCutDB = -6.0,
                                                       .suggestedQ = 10.0,
                                                       .bandwidthHz = 40.0,
                                                       .date = {}}};
    const QSizeF graph(800.0, 300.0);
    const QRectF plate = banner.rect(graph, pinned);
    const double cents = 30.0;
    for (const bool isLive : {true, false}) {
        banner.isLive = isLive;
        const auto contrastIn = [&](const QRectF& rect) {
            return drawnContrast(rect.adjusted(0.0, 4.0, 0.0, -4.0),
                                 [&](QPainter& painter) { banner.paint(painter, graph, pinned); });
        };
        // The frequency at the left, large; the note; the cents at the right.
        EXPECT_GE(contrastIn(plate.adjusted(4.0, 0.0, -plate.width() * 0.6, 0.0)), Contrast::mark);
        EXPECT_GE(
            contrastIn(QRectF(plate.right() - cents - 10.0, plate.top(), cents, plate.height())),
            Contrast::text);
    }
}

TEST(Contrast, everySmallTextOfTheReadoutsIsLegible) {
    LoudnessReadoutView loudness;
    loudness.readings.shortTerm = -8.0;
    loudness.readings.integrated = -8.0;  // red, as the true peak
    loudness.readings.truePeakMax = 1.0;
    loudness.target = LoudnessTarget::presets().front();
    loudness.color = loudness.judgement(loudness.headline);
    const QSizeF size(600.0, 220.0);
    const LoudnessReadoutGeometry geometry = layout(loudness, size, pinned);
    const auto contrastIn = [&](const QRectF& rect) {
        return drawnContrast(rect,
                             [&](QPainter& painter) { paint(painter, loudness, size, pinned); });
    };
    EXPECT_GE(contrastIn(geometry.label), Contrast::text);
    EXPECT_GE(contrastIn(geometry.target), Contrast::text);
    // Only what is coloured: the number, under its title.
    EXPECT_GE(contrastIn(geometry.truePeak.adjusted(0.0, 14.0, 0.0, -16.0)), Contrast::text);
    EXPECT_GE(contrastIn(geometry.readings[2].adjusted(24.0, 0.0, 0.0, 0.0)), Contrast::text);
    EXPECT_GE(contrastIn(geometry.value), Contrast::mark);
}

}  // namespace ContrastTests
}  // namespace TarvaneApp
