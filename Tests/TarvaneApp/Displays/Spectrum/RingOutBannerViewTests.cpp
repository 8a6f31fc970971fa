#include "Displays/Spectrum/RingOutBannerView.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>

namespace TarvaneApp {
namespace RingOutBannerViewTests {

RingOutBannerView bannerAt(double frequencyHz, double cents = 0.0) {
    return {.alert = TarvaneKit::RingAlert{.id = TarvaneKit::UUID::random(),
                                           .frequencyHz = frequencyHz,
                                           .note = {.name = "A4", .centsOffset = cents},
                                           .suggestedCutDB = -6.0,
                                           .suggestedQ = 10.0,
                                           .bandwidthHz = 40.0,
                                           .date = {}},
            .isLive = true};
}

TEST(RingOutBannerViewTests, theSwitchToKilohertzGoesByTheValueAndNotByItsRounding) {
    EXPECT_EQ(bannerAt(440.0).frequencyText(), QStringLiteral("440Hz"));
    EXPECT_EQ(bannerAt(999.6).frequencyText(), QStringLiteral("1000Hz"));
    EXPECT_EQ(bannerAt(1000.0).frequencyText(), QStringLiteral("1.00kHz"));
    EXPECT_EQ(bannerAt(2512.0).frequencyText(), QStringLiteral("2.51kHz"));
}

TEST(RingOutBannerViewTests, centsCarryTheirSign) {
    EXPECT_EQ(bannerAt(440.0, 0.0).centsText(), QStringLiteral("+0¢"));
    EXPECT_EQ(bannerAt(440.0, 6.4).centsText(), QStringLiteral("+6¢"));
    EXPECT_EQ(bannerAt(440.0, -12.0).centsText(), QStringLiteral("-12¢"));
    EXPECT_EQ(bannerAt(440.0, 6.4).spokenText(), QStringLiteral("440Hz A4 +6¢"));
}

TEST(RingOutBannerViewTests, anotherNumberOfAsManyDigitsIsAsWide) {
    for (const Typeface& typeface :
         {Typeface::installed(),
          Typeface{.system = "Quicksand", .rounded = "Quicksand", .monospaced = {}}}) {
        EXPECT_EQ(bannerAt(1110.0, 11.0).rect({800.0, 300.0}, typeface).size(),
                  bannerAt(8880.0, 44.0).rect({800.0, 300.0}, typeface).size());
    }
}

TEST(RingOutBannerViewTests, withoutAnAlertThereIsNothing) {
    const RingOutBannerView none;
    EXPECT_TRUE(none.rect({800.0, 300.0}).isEmpty());
    EXPECT_TRUE(none.spokenText().isEmpty());
    QImage image(800, 300, QImage::Format_RGB32);
    image.fill(Qt::black);
    const QImage before = image.copy();
    QPainter painter(&image);
    none.paint(painter, image.size());
    painter.end();
    EXPECT_EQ(image, before);
}

QImage drawnOn(const RingOutBannerView& banner, const QColor& ground) {
    QImage image(800, 300, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    banner.paint(painter, image.size());
    return image;
}

TEST(RingOutBannerViewTests, standsInTheCornerAndFades) {
    RingOutBannerView banner = bannerAt(250.0);
    const QRectF rect = banner.rect({800.0, 300.0});
    EXPECT_DOUBLE_EQ(rect.right(), 790.0);
    EXPECT_DOUBLE_EQ(rect.top(), 10.0);
    const QPoint plate = QPointF(rect.left() + 6.0, rect.center().y()).toPoint();
    const int whole = qGray(drawnOn(banner, Qt::white).pixel(plate));
    banner.presence = 0.5;
    EXPECT_GT(qGray(drawnOn(banner, Qt::white).pixel(plate)), whole + 50);
    banner.presence = 0.0;
    EXPECT_EQ(qGray(drawnOn(banner, Qt::white).pixel(plate)), 255);
}

TEST(RingOutBannerViewTests, onceTheRingHasStoppedItsTextsAreDimmedAndNothingShowsThrough) {
    RingOutBannerView banner = bannerAt(250.0);
    const QRect rect = banner.rect({800.0, 300.0}).toRect();
    const auto brightest = [&] {
        const QImage image = drawnOn(banner, Qt::black);
        int red = 0;
        for (int y = rect.top() + 4; y < rect.bottom() - 4; ++y) {
            for (int x = rect.left() + 4; x < rect.right() - 4; ++x) {
                red = std::max(red, qRed(image.pixel(x, y)));
            }
        }
        return red;
    };
    const int live = brightest();
    banner.isLive = false;
    EXPECT_LT(brightest(), 0.9 * live);
    const QPoint plate(rect.left() + 6, rect.center().y());
    // White behind it is no more than a tenth of white.
    EXPECT_LT(qGray(drawnOn(banner, Qt::white).pixel(plate)) -
                  qGray(drawnOn(banner, Qt::black).pixel(plate)),
              26);
}

TEST(RingOutBannerViewTests, aHairlineInTheRingsColourGoesAroundIt) {
    const RingOutBannerView banner = bannerAt(250.0);
    const QRect rect = banner.rect({800.0, 300.0}).toRect();
    const QColor edge = drawnOn(banner, Qt::black).pixelColor(rect.center().x(), rect.top());
    EXPECT_NEAR(edge.red(), Theme::ringAlert.red(), 12);
    EXPECT_NEAR(edge.green(), Theme::ringAlert.green(), 12);
}

TEST(RingOutBannerViewTests, itLeavesTheRingItselfInSight) {
    const QSizeF graph(800.0, 300.0);
    const FrequencyAxis axis{20.0, 20000.0};
    for (const double frequencyHz : {25.0, 60.0, 440.0, 1000.0, 3000.0, 6000.0, 12000.0, 19500.0}) {
        const QRectF rect = bannerAt(frequencyHz).rect(graph);
        const double ring = axis.x(frequencyHz, graph.width());
        EXPECT_FALSE(rect.left() <= ring && ring <= rect.right()) << frequencyHz;
    }
    EXPECT_DOUBLE_EQ(bannerAt(12000.0).rect(graph).left(), 10.0);
    EXPECT_DOUBLE_EQ(bannerAt(60.0).rect(graph).right(), 790.0);
}

}  // namespace RingOutBannerViewTests
}  // namespace TarvaneApp
