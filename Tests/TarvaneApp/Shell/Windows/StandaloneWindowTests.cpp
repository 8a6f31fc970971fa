// Modules in windows of their own, in the whole application: how placements become windows, what
// closing and quitting mean, and where windows are after a relaunch.

#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <algorithm>

#include "Shell/Panels/LevelHistoryPanelView.h"
#include "Shell/Panels/ModuleLayoutView.h"
#include "Shell/Panels/PanelMaximizeToggleButton.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SPLMeterPanelView.h"
#include "Shell/Panels/SpectrogramPanelView.h"
#include "Shell/Windows/StandaloneModuleWindow.h"
#include "Shell/Windows/StandaloneWindowGuard.h"
#include "Shell/Windows/WindowFrame.h"
#include "TarvaneApp/Shell/Windows/ApplicationFixture.h"

namespace TarvaneApp {
namespace StandaloneWindowTests {

using enum ModulePlacement;

class StandaloneWindowTests : public TarvaneTests::ApplicationFixture {
  protected:
    StandaloneWindowTests()
        : ApplicationFixture(
              {.id = 40, .uid = "mic", .name = "Measurement Mic", .channelCount = 1}) {}

    static QWidget* window(StandaloneModule module) { return visibleStandaloneWindow(module); }
    static auto windowCount(StandaloneModule module) {
        const auto all = QApplication::topLevelWidgets();
        return std::ranges::count_if(all, [&](const QWidget* widget) {
            return widget->isVisible() && widget->windowTitle() == windowTitle(module);
        });
    }
    // A window beside the application's own.
    QPointer<StandaloneModuleWindow> openAnother(StandaloneModule module) {
        QPointer<StandaloneModuleWindow> another = new StandaloneModuleWindow(module, engine());
        another->show();
        settle();
        return another;
    }
};

TEST_F(StandaloneWindowTests, eachModuleHasItsWindowWithItsPanelAndNoExpandButton) {
    for (const StandaloneModule module : standaloneModules) {
        EXPECT_EQ(window(module), nullptr);
    }
    engine().levelHistoryPlacement.set(separateWindow);
    engine().rtaPlacement.set(separateWindow);
    engine().spectrogramPlacement.set(separateWindow);
    ASSERT_NE(window(StandaloneModule::rta), nullptr);
    EXPECT_NE(window(StandaloneModule::rta)->findChild<RTAPanelView*>(), nullptr);
    EXPECT_EQ(window(StandaloneModule::rta)->findChild<PanelMaximizeToggleButton*>(), nullptr);
    EXPECT_NE(window(StandaloneModule::spectrogram)->findChild<SpectrogramPanelView*>(), nullptr);
    EXPECT_NE(window(StandaloneModule::levelHistory)->findChild<LevelHistoryPanelView*>(), nullptr);
    engine().rtaPlacement.set(mainWindow);
    engine().splMeterPlacement.set(separateWindow);
    EXPECT_NE(window(StandaloneModule::splMeter)->findChild<SPLMeterPanelView*>(), nullptr);
    EXPECT_EQ(window(StandaloneModule::splMeter)->windowTitle(),
              QStringLiteral("Tarvane — SPL Meter"));
    EXPECT_EQ(window(StandaloneModule::splMeter)->minimumSize(), QSize(320, 200));
    EXPECT_EQ(window(StandaloneModule::spectrogram)->minimumSize(), QSize(480, 260));
    EXPECT_EQ(window(StandaloneModule::levelHistory)->minimumSize(), QSize(480, 200));
}

TEST_F(StandaloneWindowTests, aPlacementOpensAndClosesTheWindow) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    EXPECT_EQ(windowCount(StandaloneModule::rta), 1);
    EXPECT_FALSE(theMainWindow().findChild<RTAPanelView*>()->isVisible());
    engine().rtaPlacement.set(hidden);
    settle();
    EXPECT_EQ(window(StandaloneModule::rta), nullptr);
    EXPECT_EQ(engine().rtaPlacement(), hidden);
    engine().applyLayoutPreset(LayoutPreset::spectrogramInSeparateWindow);
    settle();
    EXPECT_EQ(windowCount(StandaloneModule::spectrogram), 1);
    EXPECT_EQ(windowCount(StandaloneModule::rta), 0);
    engine().applyLayoutPreset(LayoutPreset::allInMainWindow);
    settle();
    EXPECT_EQ(window(StandaloneModule::spectrogram), nullptr);
}

TEST_F(StandaloneWindowTests, closingTheWindowReturnsTheModuleToTheMainWindow) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    window(StandaloneModule::rta)->close();
    // The window is gone altogether before the placement changes.
    EXPECT_EQ(engine().rtaPlacement(), separateWindow);
    settle();
    EXPECT_EQ(engine().rtaPlacement(), mainWindow);
    EXPECT_EQ(window(StandaloneModule::rta), nullptr);
    EXPECT_TRUE(theMainWindow().findChild<RTAPanelView*>()->isVisible());
}

TEST_F(StandaloneWindowTests, quittingKeepsTheModuleInItsWindowForTheNextLaunch) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    quit();
    launch();
    EXPECT_EQ(engine().rtaPlacement(), separateWindow);
    EXPECT_EQ(windowCount(StandaloneModule::rta), 1);
    EXPECT_FALSE(theMainWindow().findChild<RTAPanelView*>()->isVisible());
}

TEST_F(StandaloneWindowTests, aWindowForAModuleThatIsInTheMainWindowClosesItself) {
    const auto restored = openAnother(StandaloneModule::rta);
    EXPECT_TRUE(restored.isNull());
    EXPECT_EQ(engine().rtaPlacement(), mainWindow);
}

TEST_F(StandaloneWindowTests, ofTwoWindowsForAModuleTheLaterClosesAndThePlacementStays) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    const QPointer<QWidget> first = window(StandaloneModule::rta);
    const auto second = openAnother(StandaloneModule::rta);
    EXPECT_TRUE(second.isNull());
    EXPECT_FALSE(first.isNull());
    EXPECT_EQ(windowCount(StandaloneModule::rta), 1);
    EXPECT_EQ(engine().rtaPlacement(), separateWindow);
}

TEST_F(StandaloneWindowTests, aChannelThatIsCalledLikeAModuleTakesNoWindowAway) {
    QWidget other(nullptr, Qt::Window);
    other.setWindowTitle(windowTitle(StandaloneModule::rta));
    other.show();
    engine().rtaPlacement.set(separateWindow);
    settle();
    EXPECT_NE(window(StandaloneModule::rta), nullptr);
    EXPECT_TRUE(other.isVisible());
}

TEST_F(StandaloneWindowTests, closingTheMainWindowChangesNoPlacement) {
    engine().rtaPlacement.set(separateWindow);
    engine().spectrogramPlacement.set(separateWindow);
    settle();
    theMainWindow().close();
    settle();
    EXPECT_EQ(engine().rtaPlacement(), separateWindow);
    EXPECT_EQ(engine().splMeterPlacement(), mainWindow);
    EXPECT_NE(window(StandaloneModule::rta), nullptr);
    EXPECT_NE(window(StandaloneModule::spectrogram), nullptr);
}

TEST_F(StandaloneWindowTests, theModulesWindowsComeBackWithTheMainWindow) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    theMainWindow().close();
    delete window(StandaloneModule::rta);
    application->showMainWindow();
    settle();
    EXPECT_EQ(windowCount(StandaloneModule::rta), 1);
}

TEST_F(StandaloneWindowTests, aModuleInItsWindowIsAskedForAndNotInTheMainWindow) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    EXPECT_TRUE(engine().isDemanded(ChannelDemand::rta, TarvaneKit::UUID::main()));
    theMainWindow().close();
    EXPECT_TRUE(engine().isDemanded(ChannelDemand::rta, TarvaneKit::UUID::main()));
    window(StandaloneModule::rta)->close();
    settle();
    EXPECT_FALSE(engine().isDemanded(ChannelDemand::rta, TarvaneKit::UUID::main()));
}

// --- keys

class StandaloneWindowKeyTests : public StandaloneWindowTests {
  protected:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* rta = window(StandaloneModule::rta);
        rta->activateWindow();
        while (!rta->isActiveWindow()) {
            settle();
        }
        QTest::keyClick(rta, key, modifiers);
        settle();
    }
};

TEST_F(StandaloneWindowKeyTests, startStopAndPauseWorkInAModulesWindow) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    press(Qt::Key_Space);
    while (engine().isStarting()) {
        settle();
    }
    EXPECT_TRUE(engine().isRunning());
    press(Qt::Key_P);
    EXPECT_TRUE(engine().isPaused());
    press(Qt::Key_P);
    EXPECT_FALSE(engine().isPaused());
    press(Qt::Key_Space);
    EXPECT_FALSE(engine().isRunning());
}

TEST_F(StandaloneWindowKeyTests, theMenusKeysWorkWithTheMainWindowClosed) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    theMainWindow().close();
    press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_TRUE(theMainWindow().isVisible());
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(window(StandaloneModule::rta), nullptr);
    EXPECT_EQ(engine().rtaPlacement(), mainWindow);
}

// --- frames

TEST_F(StandaloneWindowTests, aWindowIsWhereItWasAfterARelaunch) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    window(StandaloneModule::rta)->setGeometry(60, 80, 520, 300);
    settle();
    const QRect frame = window(StandaloneModule::rta)->geometry();
    quit();
    launch();
    EXPECT_EQ(window(StandaloneModule::rta)->geometry(), frame);
    EXPECT_TRUE(store.contains("WindowFrame.main"));
    // Also when it is opened anew in the same run.
    engine().rtaPlacement.set(mainWindow);
    settle();
    engine().rtaPlacement.set(separateWindow);
    EXPECT_EQ(window(StandaloneModule::rta)->geometry(), frame);
}

TEST_F(StandaloneWindowTests, theMetersHeightIsAsItWasAfterARelaunch) {
    const auto modules = [] { return theMainWindow().findChild<ModuleLayoutView*>(); };
    const auto meterHeight = [&] { return modules()->findChild<SPLMeterPanelView*>()->height(); };
    const int byItself = meterHeight();
    modules()->setMeterShare(0.4);
    settle();
    const int dragged = meterHeight();
    EXPECT_GT(dragged, byItself);
    quit();
    launch();
    EXPECT_EQ(meterHeight(), dragged);
    modules()->setMeterShare(std::nullopt);
    quit();
    EXPECT_FALSE(store.contains("WindowMeterShare.main"));
    store.setNumber("WindowMeterShare.main", -3.0);
    launch();
    EXPECT_EQ(meterHeight(), byItself);
}

TEST_F(StandaloneWindowTests, aFrameOnAScreenThatIsGoneIsBroughtBack) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    window(StandaloneModule::rta)->setGeometry(6000, 4000, 520, 300);
    quit();
    launch();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(screen.contains(window(StandaloneModule::rta)->geometry()));
}

TEST_F(StandaloneWindowTests, aFrameIsStoredWhenTheWindowRests) {
    engine().rtaPlacement.set(separateWindow);
    settle();
    window(StandaloneModule::rta)->setGeometry(60, 80, 520, 300);
    while (!store.contains("WindowFrame.rta")) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QWidget restored;
    const WindowFrame frame(store, "rta", restored);
    EXPECT_EQ(restored.geometry(), window(StandaloneModule::rta)->geometry());
}

TEST_F(StandaloneWindowTests, aStoredFrameThatMeansNothingIsPassedOver) {
    store.setData("WindowFrame.main", "no frame");
    QWidget fresh;
    const QRect before = fresh.geometry();
    const WindowFrame frame(store, "main", fresh);
    EXPECT_EQ(fresh.geometry(), before);
}

}  // namespace StandaloneWindowTests
}  // namespace TarvaneApp
