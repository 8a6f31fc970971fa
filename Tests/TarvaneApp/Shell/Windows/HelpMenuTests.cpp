// The help in the whole application: its menu and its windows.

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenuBar>

#include "Build/Maker.h"
#include "Build/Version.h"
#include "Shell/Help/AboutWindowView.h"
#include "Shell/Help/HelpWindowView.h"
#include "Shell/Help/ReleaseNotesWindowView.h"
#include "TarvaneApp/Shell/Help/ReadTexts.h"
#include "TarvaneApp/Shell/Windows/ApplicationFixture.h"

namespace TarvaneApp {
namespace HelpMenuTests {

class HelpMenuTests : public TarvaneTests::ApplicationFixture {
  protected:
    HelpMenuTests() : ApplicationFixture({.id = 41, .uid = "desk", .name = "Desk"}) {}

    static QMenu& helpMenu() {
        QMenu* last = theMainWindow().menuBar()->actions().back()->menu();
        EXPECT_EQ(last->title(), "&Help");
        return *last;
    }
    static QAction& item(const QString& text) {
        for (QAction* action : helpMenu().actions()) {
            if (action->text() == text) {
                return *action;
            }
        }
        throw std::logic_error(text.toStdString());
    }
    /// Opened twice there is one, where it was; closed, it can be opened anew.
    template <class Window>
    void opensOneWindow(const QString& text) {
        item(text).trigger();
        item(text).trigger();
        settle();
        ASSERT_EQ(windows<Window>().size(), 1) << text.toStdString();
        Window* window = windows<Window>()[0];
        EXPECT_TRUE(window->isActiveWindow());
        window->setWindowState(Qt::WindowMinimized);
        item(text).trigger();
        EXPECT_FALSE(window->isMinimized());
        window->close();
        item(text).trigger();
        settle();
        ASSERT_EQ(windows<Window>().size(), 1) << text.toStdString();
        EXPECT_TRUE(windows<Window>()[0]->isVisible());
        windows<Window>()[0]->close();
        settle();
    }
};

TEST_F(HelpMenuTests, theMenuOpensOneWindowOfEach) {
    opensOneWindow<HelpWindowView>("Tarvane Help");
    opensOneWindow<ReleaseNotesWindowView>("What's New in Tarvane");
    opensOneWindow<AboutWindowView>("About Tarvane");
}

TEST_F(HelpMenuTests, helpHasTheKeysThatUsersKnow) {
    EXPECT_EQ(item("Tarvane Help").shortcuts(),
              (QList<QKeySequence>{QKeySequence("Ctrl+?"), QKeySequence(Qt::Key_F1)}));
}

TEST_F(HelpMenuTests, aboutTellsTheVersionThatIsBuiltAndItsTerms) {
    item("About Tarvane").trigger();
    const QStringList texts = TarvaneTests::readTexts(*windows<AboutWindowView>()[0]);
    EXPECT_TRUE(texts.contains(QString("Version ") + Build::version));
    EXPECT_TRUE(texts.join(u'\n').contains("GPL-3.0-or-later"));
    EXPECT_TRUE(texts.join(u'\n').contains(Build::maker));
}

TEST_F(HelpMenuTests, theHelpComesBackWhereItWas) {
    item("Tarvane Help").trigger();
    settle();
    windows<HelpWindowView>()[0]->setGeometry(30, 40, 700, 500);
    windows<HelpWindowView>()[0]->navigation().selection.set("Troubleshooting");
    windows<HelpWindowView>()[0]->close();
    settle();
    quit();
    launch();
    item("Tarvane Help").trigger();
    settle();
    EXPECT_EQ(windows<HelpWindowView>()[0]->geometry(), QRect(30, 40, 700, 500));
    EXPECT_EQ(windows<HelpWindowView>()[0]->navigation().selection(), "Troubleshooting");
}

}  // namespace HelpMenuTests
}  // namespace TarvaneApp
