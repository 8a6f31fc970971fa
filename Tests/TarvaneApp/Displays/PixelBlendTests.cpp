#include "Displays/PixelBlend.h"

#include <gtest/gtest.h>

namespace TarvaneApp {
namespace PixelBlendTests {

using PixelBlend::fullWeight;

TEST(PixelBlend, noWeightKeepsAndFullWeightReplaces) {
    EXPECT_EQ(PixelBlend::over(qRgb(1, 2, 3), qRgb(200, 100, 50), 0), qRgb(1, 2, 3));
    EXPECT_EQ(PixelBlend::over(qRgb(1, 2, 3), qRgb(200, 100, 50), fullWeight), qRgb(200, 100, 50));
    EXPECT_EQ(PixelBlend::mixed(qRgb(1, 2, 3), qRgb(200, 100, 50), 0), qRgb(1, 2, 3));
    EXPECT_EQ(PixelBlend::mixed(qRgb(1, 2, 3), qRgb(200, 100, 50), fullWeight), qRgb(200, 100, 50));
    EXPECT_EQ(PixelBlend::weight(0.5), fullWeight / 2);
}

// Source over: source · coverage + below · (1 - alpha · coverage).
TEST(PixelBlend, blendingIsWithinOneStepOfTheFormulaAndStaysOpaque) {
    for (int alpha = 0; alpha <= 255; alpha += 5) {
        for (std::uint32_t coverage = 0; coverage <= fullWeight; coverage += 16) {
            for (const int below : {0, 1, 127, 128, 254, 255}) {
                const QRgb source = qPremultiply(qRgba(255, 128, 0, alpha));
                const QRgb blended = PixelBlend::over(qRgb(below, below, below), source, coverage);
                const double share = coverage / 256.0;
                const double kept = below * (1.0 - alpha / 255.0 * share);
                EXPECT_NEAR(qRed(blended), qRed(source) * share + kept, 1.6);
                EXPECT_NEAR(qGreen(blended), qGreen(source) * share + kept, 1.6);
                EXPECT_NEAR(qBlue(blended), kept, 1.6);
                EXPECT_EQ(qAlpha(blended), 255);
            }
        }
    }
}

TEST(PixelBlend, mixingIsWithinHalfAStepOfTheFormula) {
    for (std::uint32_t weight = 0; weight <= fullWeight; ++weight) {
        const QRgb mixed = PixelBlend::mixed(qRgb(255, 0, 17), qRgb(255, 255, 200), weight);
        const double share = weight / 256.0;
        EXPECT_EQ(qRed(mixed), 255);
        EXPECT_NEAR(qGreen(mixed), 255.0 * share, 0.51);
        EXPECT_NEAR(qBlue(mixed), 17.0 + 183.0 * share, 0.51);
        EXPECT_EQ(qAlpha(mixed), 255);
    }
}

}  // namespace PixelBlendTests
}  // namespace TarvaneApp
