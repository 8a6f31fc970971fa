#include "Shell/Controls/PopoverPresentationState.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include "Displays/Theme.h"

namespace TarvaneApp {
namespace PopoverPresentationStateTests {

class PopoverPresentationStateTests : public testing::Test {
  protected:
    PopoverPresentationStateTests() {
        window.resize(400, 300);
        button.setGeometry(300, 20, 60, 24);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    ~PopoverPresentationStateTests() override { state.setPresented(false); }

    QWidget* popover() { return QApplication::activePopupWidget(); }
    QPushButton* content() { return popover()->findChild<QPushButton*>(); }

    QWidget window;
    QPushButton button{&window};
    int made = 0;
    PopoverPresentationState state{button, [this](QWidget* popover) {
                                       ++made;
                                       auto* content = new QPushButton(popover);
                                       content->setFixedSize(200, 80);
                                       return content;
                                   }};
};

TEST_F(PopoverPresentationStateTests, theButtonOpensItAndClosesItAgain) {
    EXPECT_FALSE(state.isPresented());
    button.click();
    EXPECT_TRUE(state.isPresented());
    ASSERT_NE(popover(), nullptr);
    button.click();
    EXPECT_FALSE(state.isPresented());
    EXPECT_EQ(popover(), nullptr);
    button.click();
    EXPECT_EQ(made, 2) << "its content is made each time it opens";
}

TEST_F(PopoverPresentationStateTests, escapeAndAClickBesideItCloseIt) {
    state.setPresented(true);
    QTest::keyClick(popover(), Qt::Key_Escape);
    EXPECT_FALSE(state.isPresented());
    state.setPresented(true);
    QTest::mouseClick(popover(), Qt::LeftButton, {}, QPoint(-20, 10));
    EXPECT_FALSE(state.isPresented());
}

TEST_F(PopoverPresentationStateTests, itsCornersAreRoundWithAHairlineAroundIt) {
    state.setPresented(true);
    const QImage picture = popover()->grab().toImage();
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(picture.pixel(picture.width() / 2, 0), Theme::gridLineStrong.rgb());
    EXPECT_EQ(picture.pixel(picture.width() / 2, 2), Theme::panelBackground.rgb());
}

TEST_F(PopoverPresentationStateTests, itStandsUnderItsButtonAroundItsContent) {
    state.setPresented(true);
    EXPECT_EQ(popover()->size(), QSize(232, 112)) << "16 pixels about the content";
    const QPoint corner = button.mapToGlobal(QPoint(button.width(), button.height()));
    EXPECT_GE(popover()->y(), corner.y());
    EXPECT_EQ(popover()->x() + popover()->width(),
              std::max(corner.x(), window.screen()->availableGeometry().left() + 232));
}

TEST_F(PopoverPresentationStateTests, itGrowsWithItsContent) {
    state.setPresented(true);
    content()->setFixedHeight(120);
    while (popover()->height() != 152) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    EXPECT_EQ(popover()->width(), 232);
}

TEST_F(PopoverPresentationStateTests, atTheEndOfTheScreenItStaysOnIt) {
    const QRect screen = window.screen()->availableGeometry();
    window.move(screen.left(), screen.bottom() - 100);
    button.setGeometry(0, 60, 60, 24);
    QApplication::processEvents();
    state.setPresented(true);
    EXPECT_TRUE(screen.contains(popover()->geometry()));
    EXPECT_FALSE(
        popover()->geometry().intersects(QRect(button.mapToGlobal(QPoint()), button.size())));
}

TEST_F(PopoverPresentationStateTests, openedByTheKeyboardItsFirstControlHasTheFocus) {
    window.activateWindow();
    while (!window.isActiveWindow()) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    button.setFocus();
    button.click();
    EXPECT_EQ(popover()->focusWidget(), content());
}

}  // namespace PopoverPresentationStateTests
}  // namespace TarvaneApp
