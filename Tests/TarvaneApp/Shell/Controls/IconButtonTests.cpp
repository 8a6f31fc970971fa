#include "Shell/Controls/IconButton.h"

#include <gtest/gtest.h>

#include <QImage>

#include "Displays/Theme.h"

namespace TarvaneApp {
namespace IconButtonTests {

QRgb plate(IconButton& button) {
    QImage image(button.size(), QImage::Format_RGB32);
    image.fill(Theme::background);
    button.render(&image, {}, {}, QWidget::RenderFlags());
    return image.pixel(button.width() / 2, 2);
}

TEST(IconButtonTests, whateverItsSymbolItIsAsLargeAsItsPlate) {
    for (const int symbol : {Theme::Symbol::header, Theme::Symbol::toolbar}) {
        EXPECT_EQ(IconButton(symbol).sizeHint(), QSize(28, 28));
    }
}

TEST(IconButtonTests, aPlateShowsUnderThePointer) {
    IconButton button(Theme::Symbol::options);
    button.resize(button.sizeHint());
    button.setSymbol(QStringLiteral("ellipsis"), Theme::axisText);
    EXPECT_EQ(plate(button), Theme::background.rgb());
    button.setAttribute(Qt::WA_UnderMouse);
    EXPECT_EQ(plate(button), Theme::gridLine.rgb());
    button.setDown(true);
    EXPECT_EQ(plate(button), Theme::controlBackground.rgb());
    button.setDown(false);
    button.setEnabled(false);
    EXPECT_EQ(plate(button), Theme::background.rgb()) << "nothing to press";
}

}  // namespace IconButtonTests
}  // namespace TarvaneApp
