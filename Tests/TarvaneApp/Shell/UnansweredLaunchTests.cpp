#include "Shell/UnansweredLaunch.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace TarvaneApp {
namespace UnansweredLaunchTests {

// Does something to the box once it is there.
template <class Action>
bool answerTo(Action action) {
    QTimer::singleShot(0, [action] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->text(), "Tarvane is already running but doesn't answer.");
        action(*box);
    });
    return askWhetherToStartAnyway();
}

void press(const QMessageBox& box, const QString& text) {
    for (QAbstractButton* button : box.buttons()) {
        if (button->text() == text) {
            button->click();
            return;
        }
    }
    FAIL() << "there is no button " << text.toStdString();
}

TEST(UnansweredLaunchTests, startsAnywayOnlyWhenTheUserSaysSo) {
    EXPECT_TRUE(answerTo([](QMessageBox& box) { press(box, QStringLiteral("Start Anyway")); }));
    EXPECT_FALSE(answerTo([](QMessageBox& box) { press(box, QStringLiteral("Quit")); }));
    EXPECT_FALSE(answerTo([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }));
    EXPECT_FALSE(answerTo([](QMessageBox& box) { box.close(); }));
}

}  // namespace UnansweredLaunchTests
}  // namespace TarvaneApp
