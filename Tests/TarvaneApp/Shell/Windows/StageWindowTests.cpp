// The sound level meter over a whole screen, in the whole application.

#include "Shell/Windows/StageWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <QWindow>

#include "Displays/Readouts/ReadoutText.h"
#include "LiveDisplays/LiveClockReadoutView.h"
#include "LiveDisplays/LiveStageReadoutView.h"
#include "Shell/Windows/ChannelWindowView.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Shell/Windows/ApplicationFixture.h"

namespace TarvaneApp {
namespace StageWindowTests {

class StageWindowTests : public TarvaneTests::ApplicationFixture {
  protected:
    StageWindowTests()
        : ApplicationFixture({.id = 41, .uid = "desk", .name = "Desk", .channelCount = 2}) {}

    template <class Window>
    static QList<Window*> openWindows() {
        QList<Window*> found = windows<Window>();
        found.removeIf([](const Window* window) { return !window->isVisible(); });
        return found;
    }
    static StageWindow& theStage() { return *openWindows<StageWindow>().at(0); }
    static const StageReadoutView& shown() {
        return theStage().findChild<LiveStageReadoutView*>()->view();
    }

    static void press(QWidget& window, Qt::Key key,
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        window.activateWindow();
        while (QApplication::activeWindow() != &window) {
            settle();
        }
        QTest::keyClick(&window, key, modifiers);
        settle();
    }
    void start() {
        engine().start();
        while (engine().isStarting()) {
            settle();
        }
        settle();
    }
};

TEST_F(StageWindowTests, f11CoversTheWindowsScreenAndEscapeOrF11EndIt) {
    for (const Qt::Key end : {Qt::Key_Escape, Qt::Key_F11}) {
        press(theMainWindow(), Qt::Key_F11);
        ASSERT_EQ(openWindows<StageWindow>().size(), 1);
        EXPECT_TRUE(theStage().isFullScreen());
        EXPECT_EQ(theStage().screen(), theMainWindow().screen());
        EXPECT_EQ(theStage().size(), theMainWindow().screen()->size());
        press(theStage(), end);
        EXPECT_TRUE(openWindows<StageWindow>().isEmpty());
    }
    EXPECT_TRUE(theMainWindow().isVisible());
}

TEST_F(StageWindowTests, aSecondF11InTheSameWindowEndsItToo) {
    press(theMainWindow(), Qt::Key_F11);
    press(theMainWindow(), Qt::Key_F11);
    EXPECT_TRUE(openWindows<StageWindow>().isEmpty());
}

TEST_F(StageWindowTests, itStandsOnTheScreenOfTheWindowThatItIsOf) {
    const QRect stage = QGuiApplication::screens()[1]->geometry();
    theMainWindow().setGeometry(QRect(stage.topLeft() + QPoint(20, 20), QSize(900, 600)));
    settle();
    press(theMainWindow(), Qt::Key_F11);
    EXPECT_EQ(theStage().screen(), QGuiApplication::screens()[1]);
    EXPECT_EQ(theStage().geometry(), stage);
}

TEST_F(StageWindowTests, itShowsTheMetersChannelWithItsNumberLabelAndColour) {
    audio.behaviour("").channelCount = 2;
    press(theMainWindow(), Qt::Key_F11);
    EXPECT_EQ(shown().label, QStringLiteral("SPL A Fast  (dBFS, uncalibrated) · not metering"));
    start();
    EXPECT_EQ(shown().label, QStringLiteral("SPL A Fast  (dBFS, uncalibrated)"));
    press(theStage(), Qt::Key_P);
    EXPECT_TRUE(engine().isPaused());
    EXPECT_EQ(shown().label, QStringLiteral("SPL A Fast  (dBFS, uncalibrated) · paused"));
    // While it pauses nothing is published over it.
    LiveMeterData& live =
        TarvaneTests::EngineInsides::channel(engine(), TarvaneKit::UUID::main()).live;
    Q_EMIT live.willChange();
    live.currentSPLValueDB = -12.34;
    live.trafficLightColor = TarvaneKit::SignalColors::red;
    settle();
    EXPECT_EQ(levelText(shown().valueDB), QStringLiteral("-12.3"));
    EXPECT_EQ(shown().color, TarvaneKit::SignalColors::red);
    engine().setMeasuresLoudness(true, TarvaneKit::UUID::main());
    settle();
    EXPECT_EQ(shown().label, QStringLiteral("Short-Term  (LUFS) · paused"));
    engine().stop();
}

TEST_F(StageWindowTests, inAChannelWindowItShowsThatChannelBesideTheMainOne) {
    engine().addChannel();
    const auto id = engine().extraChannels().back().id;
    engine().updateChannel(id, [](ChannelConfig& channel) { channel.name = "Balcony"; });
    application->showMainWindow();
    ChannelWindowView channel(engine(), id);
    channel.addActions(theMainWindow().keyedActions());
    channel.show();
    settle();
    press(channel, Qt::Key_F11);
    ASSERT_EQ(openWindows<StageWindow>().size(), 1);
    EXPECT_EQ(theStage().fixedChannelID(), id);
    EXPECT_TRUE(shown().label.startsWith(QStringLiteral("Balcony · SPL A Fast")));
    press(theMainWindow(), Qt::Key_F11);
    EXPECT_EQ(openWindows<StageWindow>().size(), 2);
    engine().removeChannel(id);
    settle();
    EXPECT_FALSE(shown().label.contains(QStringLiteral("Balcony")));
}

TEST_F(StageWindowTests, aLongLabelMakesTheNumberNoSmaller) {
    const StageReadoutView brief{.valueDB = -12.3,
                                 .color = {},
                                 .label = QStringLiteral("SPL"),
                                 .widthTemplate = QStringLiteral("-00.0"),
                                 .ordinaryValue = QStringLiteral("-00.0")};
    StageReadoutView wordy = brief;
    wordy.label = QString(200, u'W');
    for (const QSizeF size :
         {QSizeF(1920.0, 1080.0), QSizeF(1080.0, 1920.0), QSizeF(800.0, 600.0)}) {
        EXPECT_EQ(layout(wordy, size).value, layout(brief, size).value);
        EXPECT_TRUE(QRectF(QPointF(), size).contains(layout(wordy, size).label));
    }
}

TEST_F(StageWindowTests, theClockTakesTheMetersPlace) {
    press(theMainWindow(), Qt::Key_F11);
    press(theStage(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(engine().splReadoutShowsClock());
    EXPECT_TRUE(theStage().findChild<LiveClockReadoutView*>()->isVisible());
    EXPECT_FALSE(theStage().findChild<LiveStageReadoutView*>()->isVisible());
}

}  // namespace StageWindowTests
}  // namespace TarvaneApp
