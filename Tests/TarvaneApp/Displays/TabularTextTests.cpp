#include "Displays/TabularText.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QImage>
#include <QPainter>

#include "Displays/Theme.h"

namespace TarvaneApp {
namespace TabularTextTests {

QFont boldFont(const QString& family) {
    QFont font(family);
    font.setPixelSize(56);
    font.setBold(true);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

TEST(TabularText, numbersOfAsManyDigitsAreEquallyWideInEveryInstalledFace) {
    ASSERT_FALSE(QFontDatabase::families().isEmpty());
    for (const QString& family : QFontDatabase::families()) {
        const QFont font = boldFont(family);
        const double width = TabularText::width(QStringLiteral("000.0"), font);
        for (const char* text : {"111.1", "444.4", "888.8", "170.9"}) {
            EXPECT_DOUBLE_EQ(TabularText::width(QString::fromLatin1(text), font), width)
                << family.toStdString() << ' ' << text;
        }
    }
}

// The columns of the picture in which anything is drawn.
std::vector<bool> inkedColumns(const QString& text, const QFont& font) {
    QImage image(400, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(Qt::white);
    TabularText::draw(painter, QPointF(20.0, 80.0), text, font);
    painter.end();
    std::vector<bool> columns(static_cast<std::size_t>(image.width()));
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (qAlpha(image.pixel(x, y)) > 0) {
                columns[static_cast<std::size_t>(x)] = true;
            }
        }
    }
    return columns;
}

TEST(TabularText, aChangedDigitLeavesTheOthersWhereTheyAre) {
    for (const QString& family : {QStringLiteral("DejaVu Sans"), Typeface::installed().rounded}) {
        const QFont font = boldFont(family);
        const double unchanged = 20.0 + TabularText::width(QStringLiteral("00"), font) + 4.0;
        const auto before = inkedColumns(QStringLiteral("110.5"), font);
        const auto after = inkedColumns(QStringLiteral("480.5"), font);
        for (std::size_t x = static_cast<std::size_t>(unchanged); x < before.size(); ++x) {
            EXPECT_EQ(before[x], after[x]) << family.toStdString() << " column " << x;
        }
    }
}

TEST(TabularText, neighbouringDigitsDontTouch) {
    for (const QString& family : {QStringLiteral("DejaVu Sans"), Typeface::installed().rounded}) {
        const QFont font = boldFont(family);
        const auto columns = inkedColumns(QStringLiteral("8888"), font);
        int runs = 0;
        for (std::size_t x = 1; x < columns.size(); ++x) {
            runs += columns[x] && !columns[x - 1] ? 1 : 0;
        }
        EXPECT_EQ(runs, 4) << family.toStdString();
    }
}

}  // namespace TabularTextTests
}  // namespace TarvaneApp
