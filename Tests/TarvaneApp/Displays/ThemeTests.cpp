#include "Displays/Theme.h"

#include <gtest/gtest.h>

#include <cmath>

namespace TarvaneApp {
namespace ThemeTests {

// QColor keeps 16 bits a component.
void expectColor(const QColor& color, double red, double green, double blue) {
    EXPECT_NEAR(color.redF(), red, 1e-4);
    EXPECT_NEAR(color.greenF(), green, 1e-4);
    EXPECT_NEAR(color.blueF(), blue, 1e-4);
    EXPECT_EQ(color.alpha(), 255);
}

TEST(Theme, hasTheToldColours) {
    expectColor(Theme::background, 0.039, 0.043, 0.058);
    expectColor(Theme::panelBackground, 0.055, 0.062, 0.082);
    expectColor(Theme::controlBackground, 0.09, 0.10, 0.13);
    expectColor(Theme::gridLine, 0.14, 0.16, 0.20);
    expectColor(Theme::gridLineStrong, 0.24, 0.27, 0.33);
    expectColor(Theme::axisText, 0.52, 0.56, 0.63);
    expectColor(Theme::primaryText, 0.93, 0.94, 0.96);
    expectColor(Theme::accent, 0.20, 0.55, 1.00);
    expectColor(Theme::peakHold, 1.00, 0.60, 0.20);
    expectColor(Theme::targetCurve, 1.00, 0.35, 0.55);
    expectColor(Theme::ringAlert, 1.00, 0.25, 0.20);
}

TEST(Theme, hasTheToldFonts) {
    EXPECT_EQ(Theme::sectionLabelFont().pixelSize(), 11);
    EXPECT_EQ(Theme::sectionLabelFont().weight(), QFont::DemiBold);
    EXPECT_EQ(Theme::readoutFont().pixelSize(), 56);
    EXPECT_EQ(Theme::readoutFont().weight(), QFont::Bold);
}

TEST(Theme, aStoredColourOutOfRangeIsLimitedAndOneThatIsNoNumberIsBlack) {
    EXPECT_EQ(Theme::color({2.0, -1.0, 0.5, 1.0}), QColor::fromRgbF(1.0F, 0.0F, 0.5F));
    EXPECT_EQ(Theme::color({std::nan(""), 0.0, 0.0, 1.0}), QColor::fromRgbF(0.0F, 0.0F, 0.0F));
}

}  // namespace ThemeTests
}  // namespace TarvaneApp
