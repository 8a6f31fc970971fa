#include "Displays/Readouts/ClockReadoutView.h"

#include <gtest/gtest.h>

#include "Support/GoldenImage.h"
#include "Support/ReadoutPictures.h"

namespace TarvaneApp {
namespace ClockReadoutViewTests {

using TarvaneTests::GoldenImage;
using TarvaneTests::readoutPicture;
using TarvaneTests::readoutSizes;

const Typeface& pinned = TarvaneTests::pinnedTypeface();
const QLocale british(QLocale::English, QLocale::UnitedKingdom);

ClockReadoutView at(int hour, int minute, int second) {
    return ClockReadoutView::at(QDateTime(QDate(2026, 11, 21), QTime(hour, minute, second)),
                                british);
}

TarvaneTests::ReadoutPartRects parts(const ReadoutFrame& frame) {
    return {{"value", frame.value}, {"label", frame.label}};
}

TEST(ClockReadoutView, tellsHoursOfTwentyFourMinutesAndSecondsInTwoDigitsEach) {
    EXPECT_EQ(at(9, 5, 7).timeText, QStringLiteral("09:05:07"));
    EXPECT_EQ(at(23, 59, 59).timeText, QStringLiteral("23:59:59"));
    EXPECT_EQ(at(0, 0, 0).timeText, QStringLiteral("00:00:00"));
}

// The long date formats of the Unicode CLDR.
TEST(ClockReadoutView, tellsTheDateInTheLongStyleOfTheLocale) {
    const QDateTime moment(QDate(2026, 11, 21), QTime(9, 5, 7));
    const auto dateIn = [&](QLocale::Language language) {
        return ClockReadoutView::at(moment, QLocale(language)).dateText;
    };
    EXPECT_TRUE(at(9, 5, 7).dateText.contains(QStringLiteral("21 November 2026")));
    EXPECT_TRUE(dateIn(QLocale::German).contains(QStringLiteral("21. November 2026")));
    EXPECT_TRUE(dateIn(QLocale::French).contains(QStringLiteral("21 novembre 2026")));
    EXPECT_FALSE(dateIn(QLocale::English).contains(u':'));
}

TEST(ClockReadoutView, timeAndDateStandApartAndInsideAtEverySize) {
    for (const Typeface& typeface : {pinned, Typeface::installed()}) {
        for (const QSize& size : readoutSizes()) {
            TarvaneTests::expectPartsApart(parts(layout(at(20, 48, 56), size, typeface)), size);
        }
    }
}

TEST(ClockReadoutView, whatIsDrawnLiesInItsPart) {
    for (const QSize& size : readoutSizes()) {
        if (size.width() > 2000) {
            continue;  // the same proportions as 1920
        }
        const ReadoutFrame frame = layout(at(20, 48, 56), size, pinned);
        EXPECT_EQ(
            TarvaneTests::inkOutside(readoutPicture(at(20, 48, 56), size, 1.0, Qt::transparent),
                                     parts(frame), frame.valuePixelSize),
            0)
            << size.width() << 'x' << size.height();
    }
}

TEST(ClockReadoutView, aSecondMovesNothing) {
    const ReadoutFrame before = layout(at(11, 11, 11), QSizeF(900, 300), pinned);
    const ReadoutFrame after = layout(at(20, 48, 56), QSizeF(900, 300), pinned);
    EXPECT_EQ(parts(after), parts(before));
}

TEST(ClockReadoutView, aSecondDrawsTheTimeAloneAndMidnightTheDateToo) {
    const ReadoutFrame frame = layout(at(11, 11, 11), QSizeF(900, 300), pinned);
    EXPECT_TRUE(changedArea(at(11, 11, 11), at(11, 11, 11), frame).isEmpty());
    const QRegion second = changedArea(at(11, 11, 11), at(11, 11, 12), frame);
    EXPECT_TRUE(second.contains(frame.value.toRect()));
    EXPECT_FALSE(second.intersects(frame.label.toRect()));
    ClockReadoutView tomorrow = at(0, 0, 0);
    tomorrow.dateText = QStringLiteral("Sunday, 22 November 2026");
    EXPECT_FALSE(sameShape(at(23, 59, 59), tomorrow));
    EXPECT_TRUE(changedArea(at(23, 59, 59), tomorrow, frame).intersects(frame.label.toRect()));
}

TEST(ClockReadoutView, looksAsItsGoldenImages) {
    struct Golden {
        const char* name;
        ClockReadoutView view;
        QSize size;
    };
    ClockReadoutView longDate = at(20, 48, 56);
    longDate.dateText = QStringLiteral("Wednesday, the twenty-third of September 2026");
    for (const Golden& golden : std::vector<Golden>{{"midnight", at(0, 0, 0), {600, 220}},
                                                    {"ordinary", at(20, 48, 56), {600, 220}},
                                                    {"extreme", longDate, {240, 60}},
                                                    {"narrow", at(20, 48, 56), {290, 150}},
                                                    {"huge", at(20, 48, 56), {1600, 800}}}) {
        for (const int scale : {1, 2}) {
            EXPECT_TRUE(GoldenImage::matches(
                QStringLiteral("clock-%1@%2x").arg(QLatin1String(golden.name)).arg(scale),
                readoutPicture(golden.view, golden.size, scale)
                    .convertToFormat(QImage::Format_RGB32)));
        }
    }
}

}  // namespace ClockReadoutViewTests
}  // namespace TarvaneApp
