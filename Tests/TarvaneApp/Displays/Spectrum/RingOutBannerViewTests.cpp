#include "Displays/Spectrum/RingOutBannerView.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

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
        EXPECT_EQ(bannerAt(1110.0, 11.0).rect({800.0, 300.0}, typeface),
                  bannerAt(8880.0, 44.0).rect({800.0, 300.0}, typeface));
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

TEST(RingOutBannerViewTests, standsInTheCornerAndIsDimmedOnceTheRingHasStopped) {
    RingOutBannerView banner = bannerAt(1250.0);
    const QRectF rect = banner.rect({800.0, 300.0});
    EXPECT_DOUBLE_EQ(rect.right(), 790.0);
    EXPECT_DOUBLE_EQ(rect.top(), 10.0);
    const auto drawn = [&] {
        QImage image(800, 300, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        banner.paint(painter, image.size());
        painter.end();
        return image;
    };
    const QPoint plate = QPointF(rect.left() + 6.0, rect.center().y()).toPoint();
    const int live = qGray(drawn().pixel(plate));
    banner.isLive = false;
    const int held = qGray(drawn().pixel(plate));
    EXPECT_GT(held, live + 50);
    banner.presence = 0.5;
    EXPECT_GT(qGray(drawn().pixel(plate)), held + 50);
    banner.presence = 0.0;
    EXPECT_EQ(qGray(drawn().pixel(plate)), 255);
}

}  // namespace RingOutBannerViewTests
}  // namespace TarvaneApp
