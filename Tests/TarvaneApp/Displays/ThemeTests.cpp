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

// WCAG 2.1, 1.4.3: 4.5 to 1 for text of ordinary size.
double contrast(const QColor& a, const QColor& b) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double c) {
            return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const double bright = std::max(luminance(a), luminance(b));
    const double dark = std::min(luminance(a), luminance(b));
    return (bright + 0.05) / (dark + 0.05);
}

TEST(Theme, textsStandOutFromTheirGrounds) {
    for (const QColor& ground :
         {Theme::background, Theme::panelBackground, Theme::controlBackground}) {
        EXPECT_GE(contrast(Theme::axisText, ground), 4.5);
        EXPECT_GE(contrast(Theme::primaryText, ground), 4.5);
    }
}

TEST(Theme, aStoredColourOutOfRangeIsLimitedAndOneThatIsNoNumberIsBlack) {
    EXPECT_EQ(Theme::color({2.0, -1.0, 0.5, 1.0}), QColor::fromRgbF(1.0F, 0.0F, 0.5F));
    EXPECT_EQ(Theme::color({std::nan(""), 0.0, 0.0, 1.0}), QColor::fromRgbF(0.0F, 0.0F, 0.0F));
}

}  // namespace ThemeTests
}  // namespace TarvaneApp
