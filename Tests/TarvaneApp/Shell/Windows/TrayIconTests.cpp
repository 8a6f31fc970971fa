#include "Shell/Windows/TrayIcon.h"

#include <gtest/gtest.h>

#include <QImage>
#include <set>

#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace TrayIconTests {

using Kind = TrayState::Kind;

class TrayIconTests : public TarvaneTests::EngineFixture {
  protected:
    TrayIconTests()
        : tray(*engine,
               {.showMainWindow = [this] { ++mainWindowShown; }, .quit = [this] { ++quits; }}) {}

    QAction& item(const char* text) {
        for (QAction* action : tray.menu().actions()) {
            if (action->text() == QLatin1String(text)) {
                return *action;
            }
        }
        throw std::logic_error(text);
    }

    int mainWindowShown = 0;
    int quits = 0;
    TrayIcon tray;
};

TEST_F(TrayIconTests, itsMenuStartsPausesAndStops) {
    EXPECT_FALSE(item("Pause").isEnabled());
    item("Start").trigger();
    EXPECT_EQ(item("Cancel Start").text(), QStringLiteral("Cancel Start"));
    waitUntil([&] { return engine->isRunning(); });
    item("Pause").trigger();
    EXPECT_TRUE(engine->isPaused());
    item("Resume").trigger();
    EXPECT_FALSE(engine->isPaused());
    item("Stop").trigger();
    EXPECT_FALSE(engine->isRunning());
    EXPECT_EQ(item("Start").text(), QStringLiteral("Start"));
}

TEST_F(TrayIconTests, itsMenuShowsTheMainWindowAndQuits) {
    item("Show Main Window").trigger();
    EXPECT_EQ(mainWindowShown, 1);
    item("Quit").trigger();
    EXPECT_EQ(quits, 1);
}

TEST_F(TrayIconTests, theToolTipSaysTheStateAndWhatIsMetered) {
    EXPECT_EQ(tray.state().toolTip, QStringLiteral("Tarvane: not metering"));
    start();
    EXPECT_EQ(tray.state().toolTip, QStringLiteral("Tarvane: metering Measurement Mic (default)"));
    engine->pause();
    EXPECT_EQ(tray.state().toolTip, QStringLiteral("Tarvane: paused"));
    engine->resume();
    engine->stop();
    EXPECT_EQ(tray.state().toolTip, QStringLiteral("Tarvane: not metering"));
}

TEST_F(TrayIconTests, aClipShowsWhileItLastsWithItsChannel) {
    addChannel("Stage & Wings", "desk", 0);
    start();
    std::vector<std::vector<float>> inputs(8, std::vector<float>(480, 0.0F));
    inputs[0][100] = 1.0F;
    audio.feed("desk", inputs);
    tick();
    EXPECT_EQ(tray.state().kind, Kind::clip);
    EXPECT_EQ(tray.state().toolTip, QStringLiteral("Tarvane: clipping, Stage & Wings"));
    clock.advance(2.0);  // a badge holds for 1.5 seconds
    tick();
    EXPECT_EQ(tray.state().kind, Kind::running);
}

TEST_F(TrayIconTests, aRingGoesAheadOfAClip) {
    start();
    Q_EMIT live().willChange();
    live().inputClipState = TarvaneKit::InputClipState::active;
    live().heldRingAlert = TarvaneKit::RingAlert{
        .id = TarvaneKit::UUID::main(),
        .frequencyHz = 1000.0,
        .note = {},
        .suggestedCutDB = -6.0,
        .suggestedQ = 10.0,
        .bandwidthHz = 20.0,
        .date = {},
    };
    settle();
    EXPECT_EQ(tray.state().kind, Kind::ring);
    EXPECT_EQ(tray.state().toolTip, QStringLiteral("Tarvane: ring-out, Main Input"));
    engine->pause();
    EXPECT_EQ(tray.state().kind, Kind::paused);
}

TEST_F(TrayIconTests, eachStateHasASignOfItsOwnAtEverySize) {
    for (const int size : {16, 22, 48}) {
        std::set<QByteArray> seen;
        for (const Kind kind : {Kind::idle, Kind::running, Kind::paused, Kind::clip, Kind::ring}) {
            const QImage image = TrayIcon::iconOf(kind).pixmap(size).toImage().convertToFormat(
                QImage::Format_ARGB32);
            EXPECT_EQ(image.size(), QSize(size, size));
            seen.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()),
                                   static_cast<qsizetype>(image.sizeInBytes())));
        }
        EXPECT_EQ(seen.size(), 5U);
    }
}

}  // namespace TrayIconTests
}  // namespace TarvaneApp
