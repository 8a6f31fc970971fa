#include "Shell/Windows/ErrorAlert.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMessageBox>

#include "Engine/ErrorMessage.h"

namespace TarvaneApp {
namespace ErrorAlertTests {

class ErrorAlertTests : public testing::Test {
  protected:
    QStringList alerts() {
        QCoreApplication::processEvents();
        QStringList texts;
        for (const QMessageBox* box : window.findChildren<QMessageBox*>()) {
            if (box->isVisible()) {
                texts.append(box->text());
            }
        }
        return texts;
    }

    ErrorMessage message;
    QWidget window;
};

TEST_F(ErrorAlertTests, whatIsToldBeforeTheWindowAppearsWaitsForIt) {
    message.tell("The settings can't be read.");
    new ErrorAlert(
        "Error", message.text(), [this] { message.dismiss(); }, &window);
    message.tell("No server.");
    EXPECT_EQ(alerts(), QStringList());
    window.show();
    EXPECT_EQ(alerts(), QStringList("The settings can't be read."));
    window.findChild<QMessageBox*>()->accept();
    EXPECT_EQ(alerts(), QStringList("No server."));
}

TEST_F(ErrorAlertTests, aWindowThatWasClosedHoldsNothingBack) {
    new ErrorAlert(
        "Error", message.text(), [this] { message.dismiss(); }, &window);
    window.show();
    window.close();
    message.tell("No server.");
    EXPECT_EQ(alerts(), QStringList("No server."));
}

}  // namespace ErrorAlertTests
}  // namespace TarvaneApp
