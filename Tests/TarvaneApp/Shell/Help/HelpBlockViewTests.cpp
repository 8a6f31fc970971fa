#include "Shell/Help/HelpBlockView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>

#include "Displays/Theme.h"
#include "TarvaneApp/Shell/Help/ReadTexts.h"

namespace TarvaneApp {
namespace HelpBlockViewTests {

using TarvaneTests::readTexts;

QList<QRect> places(HelpBlockView& view) {
    view.resize(500, view.heightForWidth(500));
    view.show();
    QList<QRect> rects;
    for (const QLabel* label : view.findChildren<QLabel*>()) {
        rects << QRect(label->mapTo(&view, QPoint()), label->size());
    }
    return rects;
}

TEST(HelpBlockViewTests, aParagraphIsItsTextWithBoldWordsThatStandOut) {
    const HelpBlockView view(HelpBlocks::Paragraph{"Press **Space** & wait <a moment>."});
    EXPECT_EQ(readTexts(view), QStringList{"Press Space & wait <a moment>."});
    const auto* label = view.findChild<QLabel*>();
    EXPECT_TRUE(label->text().contains(Theme::primaryText.name()));
    EXPECT_NE(label->palette().color(QPalette::WindowText), Theme::primaryText);
    EXPECT_EQ(label->font().pixelSize(), 13);
    EXPECT_TRUE(label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
}

TEST(HelpBlockViewTests, aHeadingIsOneForAScreenReaderToo) {
    const HelpBlockView view(HelpBlocks::Heading{"Gain & clipping"});
    auto* label = view.findChild<QLabel*>();
    EXPECT_EQ(label->font().pixelSize(), 14);
    EXPECT_EQ(label->font().weight(), QFont::DemiBold);
    const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(label);
    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->role(), QAccessible::Heading);
    EXPECT_EQ(spoken->text(QAccessible::Name), "Gain & clipping");
}

TEST(HelpBlockViewTests, stepsAreNumberedAndTheirTextsStandInOneColumn) {
    HelpBlockView view(HelpBlocks::Steps{{"First **this**.", "Then that."}});
    EXPECT_EQ(readTexts(view), (QStringList{"1", "First this.", "2", "Then that."}));
    const auto rects = places(view);
    EXPECT_EQ(rects[1].left(), rects[3].left());
    EXPECT_GT(rects[1].left(), rects[0].right());
    EXPECT_EQ(rects[0].top(), rects[1].top());  // of the same size: one base line
    EXPECT_EQ(rects[3].top() - rects[1].bottom() - 1, 6);
    EXPECT_TRUE(view.findChildren<QLabel*>()[0]->font().bold());
}

TEST(HelpBlockViewTests, bulletsStandWhereNumbersWould) {
    HelpBlockView bullets(HelpBlocks::Bullets{{"One", "Two"}});
    EXPECT_EQ(readTexts(bullets), (QStringList{"•", "One", "•", "Two"}));
    HelpBlockView steps(HelpBlocks::Steps{{"One", "Two"}});
    EXPECT_EQ(places(bullets)[1].left(), places(steps)[1].left());
}

TEST(HelpBlockViewTests, aTipIsSetApartFromTheText) {
    HelpBlockView view(HelpBlocks::Tip{"Mind the **gap**."});
    EXPECT_TRUE(readTexts(view).contains("Mind the gap."));
    const auto rects = places(view);
    EXPECT_GE(rects.back().left(), 12);
    EXPECT_EQ(rects.back().right(), 500 - 12 - 1);
    const QColor ground = view.grab().toImage().pixelColor(250, 4);
    const QColor around = QWidget().grab().toImage().pixelColor(0, 0);
    EXPECT_NE(ground, around);
}

TEST(HelpBlockViewTests, shortcutsKeepTheirOrderInTwoColumns) {
    HelpBlockView view(HelpBlocks::Shortcuts{{{"Space", "Start"}, {"Ctrl+Shift+E", "Export"}}});
    EXPECT_EQ(readTexts(view), (QStringList{"Space", "Start", "Ctrl+Shift+E", "Export"}));
    const auto rects = places(view);
    EXPECT_EQ(rects[0].width(), rects[2].width());
    EXPECT_EQ(rects[1].left(), rects[3].left());
    EXPECT_EQ(view.findChildren<QLabel*>()[0]->font().weight(), QFont::Medium);
}

}  // namespace HelpBlockViewTests
}  // namespace TarvaneApp
