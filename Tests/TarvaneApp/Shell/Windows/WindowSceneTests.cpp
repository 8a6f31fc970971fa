// The windows of channels in the whole application: who opens them, how many there are, which come
// back, and what the main window's coming and going means to them.

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <algorithm>

#include "Shell/Windows/ChannelWindowView.h"
#include "TarvaneApp/Shell/Windows/ApplicationFixture.h"

namespace TarvaneApp {
namespace WindowSceneTests {

using TarvaneKit::UUID;

class WindowSceneTests : public TarvaneTests::ApplicationFixture {
  protected:
    WindowSceneTests()
        : ApplicationFixture({.id = 41, .uid = "desk", .name = "Desk", .channelCount = 8}) {}

    UUID addChannel(const std::string& name) {
        engine().addChannel();
        const UUID id = engine().extraChannels().back().id;
        engine().updateChannel(id, [&name](ChannelConfig& channel) { channel.name = name; });
        return id;
    }

    static QAction* item(const QString& text) {
        for (QAction* action : theMainWindow().findChildren<QAction*>()) {
            if (action->text() == text) {
                return action;
            }
        }
        throw std::logic_error(text.toStdString());
    }
    void openFromMenu(const QString& channel) {
        for (QAction* action : item(QStringLiteral("Channel Windows"))->menu()->actions()) {
            if (action->text() == channel) {
                action->trigger();
            }
        }
        settle();
    }
};

TEST_F(WindowSceneTests, theMenuOfChannelWindowsIsEmptyWithoutExtraChannels) {
    const QAction* channels = item(QStringLiteral("Channel Windows"));
    EXPECT_TRUE(channels->menu()->actions().isEmpty());
    EXPECT_FALSE(channels->isEnabled());
    addChannel("R&B Stage");
    ASSERT_EQ(channels->menu()->actions().size(), 2);
    EXPECT_EQ(channels->menu()->actions()[1]->text(), QStringLiteral("R&&B Stage"));
    EXPECT_TRUE(channels->isEnabled());
    engine().extraChannels.set({});
    EXPECT_TRUE(channels->menu()->actions().isEmpty());
}

TEST_F(WindowSceneTests, aChannelHasOneWindow) {
    const UUID stage = addChannel("Stage");
    addChannel("Balcony");
    openFromMenu(QStringLiteral("Stage"));
    ASSERT_EQ(windows<ChannelWindowView>().size(), 1);
    EXPECT_EQ(windows<ChannelWindowView>()[0]->channelID(), stage);
    openFromMenu(QStringLiteral("Stage"));
    EXPECT_EQ(windows<ChannelWindowView>().size(), 1);
    openFromMenu(QStringLiteral("Balcony"));
    EXPECT_EQ(windows<ChannelWindowView>().size(), 2);
    for (ChannelWindowView* window : windows<ChannelWindowView>()) {
        window->close();
    }
    settle();
    EXPECT_TRUE(windows<ChannelWindowView>().isEmpty());
    openFromMenu(QStringLiteral("Stage"));
    EXPECT_EQ(windows<ChannelWindowView>().size(), 1);
}

TEST_F(WindowSceneTests, meteringGoesOnWithoutTheMainWindowWhichComesBackAsItWas) {
    const UUID stage = addChannel("Stage");
    openFromMenu(QStringLiteral("Stage"));
    engine().start();
    while (engine().isStarting()) {
        settle();
    }
    theMainWindow().close();
    settle();
    EXPECT_TRUE(engine().isRunning());
    EXPECT_TRUE(engine().isDemanded(ChannelDemand::rta, stage));
    item(QStringLiteral("Show Main Window"))->trigger();
    settle();
    EXPECT_TRUE(theMainWindow().isVisible());
    EXPECT_TRUE(engine().isRunning());
    engine().stop();
}

TEST_F(WindowSceneTests, showMainWindowBringsBackAMinimisedOneAndMakesNoSecond) {
    theMainWindow().setWindowState(Qt::WindowMinimized);
    settle();
    QAction* show = item(QStringLiteral("Show Main Window"));
    EXPECT_EQ(show->shortcut(), QKeySequence(QStringLiteral("Ctrl+0")));
    show->trigger();
    EXPECT_FALSE(theMainWindow().isMinimized());
    EXPECT_TRUE(theMainWindow().isVisible());
    show->trigger();
    EXPECT_EQ(windows<MainWindow>().size(), 1);
}

TEST_F(WindowSceneTests, openChannelWindowsComeBackWhereTheyWereAndClosedOnesDoNot) {
    const UUID stage = addChannel("Stage");
    addChannel("Balcony");
    openFromMenu(QStringLiteral("Stage"));
    openFromMenu(QStringLiteral("Balcony"));
    for (ChannelWindowView* window : windows<ChannelWindowView>()) {
        if (window->channelID() == stage) {
            window->setGeometry(30, 40, 640, 480);
        } else {
            window->close();
        }
    }
    settle();
    quit();
    launch();
    ASSERT_EQ(windows<ChannelWindowView>().size(), 1);
    EXPECT_EQ(windows<ChannelWindowView>()[0]->channelID(), stage);
    EXPECT_EQ(windows<ChannelWindowView>()[0]->geometry(), QRect(30, 40, 640, 480));
    // A channel that is gone leaves no empty window behind.
    engine().extraChannels.set({});
    quit();
    launch();
    EXPECT_TRUE(windows<ChannelWindowView>().isEmpty());
}

}  // namespace WindowSceneTests
}  // namespace TarvaneApp
