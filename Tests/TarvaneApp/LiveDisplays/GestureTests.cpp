// What pointer, wheel, touchpad and keys do to the three graphs.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QTest>
#include <QWheelEvent>
#include <cmath>

#include "Displays/Spectrogram/SpectrogramStatusBadge.h"
#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "LiveDisplays/LiveSpectrogramView.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "Shell/Panels/LevelHistoryExtremesSummary.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace GestureTests {

using TarvaneKit::UUID;
using TarvaneTests::sine;

class GestureTests : public TarvaneTests::EngineFixture {
  protected:
    template <class Display>
    void open(Display& display, const QSize& size) {
        display.setFixedSize(size);
        display.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&display));
        settle();
    }

    static void move(QWidget& widget, const QPointF& to, Qt::MouseButtons buttons) {
        QMouseEvent event(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
    static void drag(QWidget& widget, const QPoint& from, const QPoint& way) {
        QTest::mousePress(&widget, Qt::LeftButton, {}, from);
        move(widget, from + way, Qt::LeftButton);
        QTest::mouseRelease(&widget, Qt::LeftButton, {}, from + way);
    }

    /// `seconds` of the session, published once each, of which a fifth is fed: that settles Fast.
    void play(int seconds, double amplitude = 0.1) {
        if (!engine->isRunning()) {
            start();
        }
        for (int i = 0; i < seconds; ++i) {
            audio.feed("", {sine(1000.0, amplitude, 9600)});
            clock.advance(1.0);
            tick();
        }
        settle();
    }
};

// --- the level history: its plot is 1000 pixels wide, from 40 on

class HistoryGestureTests : public GestureTests {
  protected:
    HistoryGestureTests() { open(graph, {1048, 220}); }

    LevelHistoryViewport::Range range() const { return graph.view().range(); }
    double duration() const { return graph.view().session().duration; }
    void show(double from, double span) {
        graph.showMoment(from + span / 2.0);
        ASSERT_NEAR(range().from, from, 1e-6);
        ASSERT_NEAR(range().span(), span, 1e-6);
    }
    struct Wheel {
        QPoint pixels;
        QPoint notches;
        Qt::ScrollPhase phase = Qt::NoScrollPhase;
    };
    void scroll(const Wheel& wheel, double x = 540.0) {
        const QPointF at(x, 100.0);
        QWheelEvent event(at, graph.mapToGlobal(at), wheel.pixels, wheel.notches * 120,
                          Qt::NoButton, Qt::NoModifier, wheel.phase, false);
        QApplication::sendEvent(&graph, &event);
        EXPECT_TRUE(event.isAccepted()) << "nothing around the graph scrolls";
    }
    void pinch(double magnification, double x) {
        const QPointF at(x, 100.0);
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(),
                                  2, at, at, graph.mapToGlobal(at), magnification, {});
        QApplication::sendEvent(&graph, &event);
    }

    LiveLevelHistoryGraph graph{*engine, UUID::main()};
};

TEST_F(HistoryGestureTests, theHelpNamesTheGestures) {
    EXPECT_EQ(graph.toolTip(),
              QStringLiteral("Scroll or pinch to zoom, drag to pan, double-click to reset"));
}

TEST_F(HistoryGestureTests, aDragPansByItsShareOfThePlot) {
    play(200);
    show(100.0, 60.0);
    drag(graph, {500, 100}, {250, 0});  // a quarter of the plot: of 60 s
    EXPECT_NEAR(range().from, 85.0, 1e-6);
    EXPECT_NEAR(range().span(), 60.0, 1e-6);
    drag(graph, {500, 100}, {-100, 0});
    EXPECT_NEAR(range().from, 91.0, 1e-6);
}

TEST_F(HistoryGestureTests, aClickThatTrembledIsNoDrag) {
    play(200);
    show(100.0, 60.0);
    drag(graph, {500, 100}, {2, 2});
    EXPECT_NEAR(range().from, 100.0, 1e-6);
    drag(graph, {500, 100}, {0, 3});
    EXPECT_NEAR(range().from, 100.0, 1e-6);
}

TEST_F(HistoryGestureTests, aDragNearTheLiveEdgeFollowsItAgain) {
    play(200);
    show(100.0, 60.0);
    // To 1 s before the edge: within 2 % of 60 s.
    drag(graph, {500, 100}, {-static_cast<int>(1000.0 * (duration() - 161.0) / 60.0), 0});
    play(10);
    EXPECT_NEAR(range().to, duration(), 1e-6);
    EXPECT_NEAR(range().span(), 60.0, 1e-6);
}

TEST_F(HistoryGestureTests, aDoubleClickResetsAndItsSecondPressMayDrag) {
    play(200);
    engine->levelHistoryZoom.set(LevelHistoryZoom::last1Min);
    settle();
    show(20.0, 60.0);
    QTest::mouseDClick(&graph, Qt::LeftButton, {}, QPoint(500, 100));
    EXPECT_FALSE(graph.hasOwnRange());
    EXPECT_NEAR(range().to, duration(), 1e-6);
    QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(500, 100),
                       graph.mapToGlobal(QPointF(500, 100)), Qt::LeftButton, Qt::LeftButton,
                       Qt::NoModifier);
    QApplication::sendEvent(&graph, &second);
    move(graph, {600, 100}, Qt::LeftButton);
    EXPECT_NEAR(range().to, duration() - 6.0, 1e-6);
    QTest::mouseRelease(&graph, Qt::LeftButton, {}, QPoint(600, 100));
}

TEST_F(HistoryGestureTests, aPinchZoomsAtThePointer) {
    play(200);
    show(100.0, 60.0);
    pinch(1.0, 290.0);  // twice as large, at a quarter of the plot
    EXPECT_NEAR(range().span(), 30.0, 1e-6);
    EXPECT_NEAR(range().from + 0.25 * range().span(), 115.0, 1e-6);
    // Out to the session, which is the preset too.
    engine->levelHistoryZoom.set(LevelHistoryZoom::last5Min);
    for (int i = 0; i < 10; ++i) {
        pinch(-0.5, 290.0);
    }
    EXPECT_FALSE(graph.hasOwnRange());
    EXPECT_EQ(engine->levelHistoryZoom(), LevelHistoryZoom::session);
}

TEST_F(HistoryGestureTests, thirtyPixelsOfATouchpadAreANotchOfAWheel) {
    play(200);
    show(100.0, 60.0);
    scroll({.pixels = {0, 30}, .notches = {0, 1}, .phase = Qt::ScrollUpdate});
    EXPECT_NEAR(range().span(), 60.0 * 0.87, 1e-6);
    show(100.0, range().span());
    scroll({.pixels = {}, .notches = {0, 1}});
    EXPECT_NEAR(range().span(), 60.0 * 0.87 * 0.87, 1e-6);
}

// X11 tells pixels with a wheel, in whatever unit its driver has.
TEST_F(HistoryGestureTests, pixelsOfAWheelDontCount) {
    play(200);
    show(100.0, 60.0);
    scroll({.pixels = {0, 120}, .notches = {0, 1}});
    EXPECT_NEAR(range().span(), 60.0 * 0.87, 1e-6);
}

TEST_F(HistoryGestureTests, whatGoesMostlySidewaysPans) {
    play(200);
    show(100.0, 60.0);
    scroll({.pixels = {100, 40}, .notches = {1, 0}, .phase = Qt::ScrollUpdate});
    EXPECT_NEAR(range().from, 94.0, 1e-6);
    EXPECT_NEAR(range().span(), 60.0, 1e-6);
    scroll({.pixels = {}, .notches = {-1, 0}});  // ten pixels a notch
    EXPECT_NEAR(range().from, 94.6, 1e-6);
}

TEST_F(HistoryGestureTests, anEmptyHistoryIgnoresEveryGesture) {
    engine->levelHistoryZoom.set(LevelHistoryZoom::last5Min);
    settle();
    drag(graph, {500, 100}, {100, 0});
    scroll({.pixels = {}, .notches = {0, -50}});
    pinch(-0.9, 500.0);
    QTest::keyClick(&graph, Qt::Key_Up);
    EXPECT_FALSE(graph.hasOwnRange());
    EXPECT_EQ(engine->levelHistoryZoom(), LevelHistoryZoom::last5Min);
}

TEST_F(HistoryGestureTests, keysPanZoomAndReset) {
    EXPECT_EQ(graph.focusPolicy(), Qt::TabFocus);
    play(200);
    show(100.0, 60.0);
    QTest::keyClick(&graph, Qt::Key_Left);
    EXPECT_NEAR(range().from, 94.0, 1e-6) << "a tenth of it";
    QTest::keyClick(&graph, Qt::Key_Right);
    EXPECT_NEAR(range().from, 100.0, 1e-6);
    QTest::keyClick(&graph, Qt::Key_Up);
    EXPECT_NEAR(range().span(), 60.0 * 0.87, 1e-6);
    EXPECT_NEAR(range().from + range().span() / 2.0, 130.0, 1e-6) << "about the middle";
    QTest::keyClick(&graph, Qt::Key_Minus);
    EXPECT_NEAR(range().span(), 60.0, 1e-6);
    QTest::keyClick(&graph, Qt::Key_Escape);
    EXPECT_FALSE(graph.hasOwnRange());
}

TEST_F(HistoryGestureTests, theReadoutFollowsThePointerUntilItLeaves) {
    play(100);
    move(graph, {540.0, 100.0}, Qt::NoButton);
    graph.grab();
    const QString text = graph.spokenParts()[3].value;
    // Half of 100 s, and -23 dBFS: a sine of 0.1 has an RMS of 0.1 / sqrt 2.
    EXPECT_TRUE(text.startsWith(QStringLiteral("0:"))) << text.toStdString();
    EXPECT_TRUE(text.endsWith(QStringLiteral("-23.0 dBFS"))) << text.toStdString();
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&graph, &leave);
    EXPECT_TRUE(graph.spokenParts()[3].value.isEmpty());
}

TEST_F(HistoryGestureTests, aSettingIsSeenAtOnceWhileNothingIsMeasured) {
    play(10);
    engine->stop();
    settle();
    graph.grab();
    const int drawn = graph.picturesDrawn();
    engine->levelHistoryZoom.set(LevelHistoryZoom::last1Min);
    int paints = 0;
    struct Counter : QObject {
        explicit Counter(int& count) : count_(count) {}
        bool eventFilter(QObject*, QEvent* event) override {
            count_ += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
        int& count_;
    } counter(paints);
    graph.installEventFilter(&counter);
    waitUntil([&] { return paints > 0; });
    EXPECT_EQ(graph.picturesDrawn(), drawn + 1);
}

TEST_F(HistoryGestureTests, theExtremesButtonsShowTheirMoments) {
    LevelHistoryExtremesSummary summary(graph);
    summary.show();
    const auto buttons = summary.findChildren<QAbstractButton*>();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[0]->text(), QStringLiteral("MAX"));
    EXPECT_EQ(buttons[1]->text(), QStringLiteral("MIN"));
    for (const auto* button : buttons) {
        EXPECT_FALSE(button->isEnabled());
        EXPECT_EQ(button->toolTip(), QStringLiteral("Show this moment"));
    }
    play(90, 0.1);
    play(5, 0.4);
    play(65, 0.1);
    play(5, 0.02);
    play(65, 0.1);
    // The loud sine reads 20 log10(0.4 / sqrt 2).
    EXPECT_TRUE(buttons[0]->text().startsWith(QStringLiteral("MAX -11.0 dBFS 1:3")))
        << buttons[0]->text().toStdString();
    buttons[0]->click();
    EXPECT_NEAR(range().span(), 60.0, 1e-6);
    EXPECT_NEAR((range().from + range().to) / 2.0, 92.5, 3.5) << "between 1:30 and 1:35";
    buttons[1]->click();
    EXPECT_NEAR((range().from + range().to) / 2.0, 162.5, 3.5) << "between 2:40 and 2:45";
    // A range that is shorter already stays as long as it is.
    scroll({.pixels = {}, .notches = {0, 5}});
    const double span = range().span();
    buttons[0]->click();
    EXPECT_NEAR(range().span(), span, 1e-6);
}

// --- the spectrum

class SpectrumGestureTests : public GestureTests {
  protected:
    SpectrumGestureTests() { open(graph, {900, 240}); }

    QString readOut() { return graph.spokenParts()[1].value; }

    LiveSpectrumView graph{*engine, UUID::main()};
};

TEST_F(SpectrumGestureTests, thePointerReadsFromEndToEndUntilItLeaves) {
    move(graph, {0.0, 50.0}, Qt::NoButton);
    EXPECT_EQ(readOut(), QStringLiteral("20 Hz"));
    move(graph, {900.0, 50.0}, Qt::NoButton);
    EXPECT_EQ(readOut(), QStringLiteral("20.00 kHz"));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&graph, &leave);
    EXPECT_TRUE(readOut().isEmpty());
}

TEST_F(SpectrumGestureTests, pausedTheReadoutStillFollowsThePointer) {
    play(1);
    engine->pause();
    settle();
    move(graph, {300.0, 50.0}, Qt::NoButton);  // a third of three decades
    EXPECT_TRUE(readOut().startsWith(QStringLiteral("200 Hz  "))) << readOut().toStdString();
}

TEST_F(SpectrumGestureTests, arrowKeysMoveTheReadoutAndEscapeTakesItAway) {
    EXPECT_EQ(graph.focusPolicy(), Qt::TabFocus);
    QTest::keyClick(&graph, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(*graph.view().hover.xPosition, 458.0) << "from the middle";
    QTest::keyClick(&graph, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(*graph.view().hover.xPosition, 457.0);
    for (int i = 0; i < 80; ++i) {
        QTest::keyClick(&graph, Qt::Key_Left);
    }
    EXPECT_EQ(readOut(), QStringLiteral("20 Hz"));
    QTest::keyClick(&graph, Qt::Key_Escape);
    EXPECT_TRUE(readOut().isEmpty());
}

// --- the spectrogram

class SpectrogramGestureTests : public GestureTests {
  protected:
    SpectrogramGestureTests() {
        open(picture, {600, 240});
        start();
        for (int i = 0; i < 300; ++i) {
            audio.feed("", {sine(1000.0, 0.1, 8192)});
            clock.advance(1.0 / 60.0);
            tick();
        }
        settle();
        rows = static_cast<int>(live().spectrogramHistory.size());
    }

    int offset() const { return picture.view().scrollState.rowOffset; }
    QString badge() { return picture.spokenParts()[1].value; }

    LiveSpectrogramView picture{*engine, UUID::main()};
    int rows = 0;
};

TEST_F(SpectrogramGestureTests, aDragGoesBackByItsShareOfTheHeightAndStopsAtTheOldestRow) {
    drag(picture, {300, 20}, {0, 120});
    EXPECT_EQ(offset(), 60) << "half of the 120 rows that two seconds have";
    drag(picture, {300, 20}, {0, 24});
    EXPECT_EQ(offset(), 72) << "from where it was";
    drag(picture, {300, 20}, {0, 5000});
    EXPECT_EQ(offset(), rows - 120);
    drag(picture, {300, 200}, {0, -5000});
    EXPECT_EQ(badge(), QStringLiteral("LIVE"));
}

TEST_F(SpectrogramGestureTests, aClickThatTrembledIsNoDrag) {
    drag(picture, {300, 100}, {1, 1});
    EXPECT_EQ(offset(), 0);
    drag(picture, {300, 100}, {0, 2});
    EXPECT_EQ(offset(), 1);
}

TEST_F(SpectrogramGestureTests, aClickOnTheBadgeResumes) {
    drag(picture, {300, 20}, {0, 120});
    EXPECT_EQ(badge(), QStringLiteral("HISTORY · double-click to resume"));
    const QRectF plate = SpectrogramStatusBadge{false}.rect(picture.size());
    QTest::mouseClick(&picture, Qt::LeftButton, {}, plate.center().toPoint());
    EXPECT_EQ(badge(), QStringLiteral("LIVE"));
}

TEST_F(SpectrogramGestureTests, theBadgeActsOnceItIsLetGoAndNotBeside) {
    drag(picture, {300, 20}, {0, 120});
    const QPoint plate = SpectrogramStatusBadge{false}.rect(picture.size()).center().toPoint();
    QTest::mousePress(&picture, Qt::LeftButton, {}, plate);
    EXPECT_EQ(offset(), 60);
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, plate + QPoint(0, 80));
    EXPECT_EQ(offset(), 60);
    QTest::mousePress(&picture, Qt::LeftButton, {}, plate);
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, plate + QPoint(2, 1));
    EXPECT_EQ(offset(), 0);
}

TEST_F(SpectrogramGestureTests, aHistoryThatFitsCantBeScrolled) {
    engine->spectrogramTimeSpanSeconds.set(6.0);  // 360 rows
    settle();
    drag(picture, {300, 20}, {0, 200});
    EXPECT_EQ(offset(), 0);
    EXPECT_EQ(badge(), QStringLiteral("LIVE"));
}

TEST_F(SpectrogramGestureTests, keysScrollBackAndResume) {
    EXPECT_EQ(picture.focusPolicy(), Qt::TabFocus);
    QTest::keyClick(&picture, Qt::Key_Up);
    EXPECT_EQ(offset(), 12) << "a tenth of 120 rows";
    QTest::keyClick(&picture, Qt::Key_PageUp);
    EXPECT_EQ(offset(), 132);
    QTest::keyClick(&picture, Qt::Key_Down);
    EXPECT_EQ(offset(), 120);
    QTest::keyClick(&picture, Qt::Key_Escape);
    EXPECT_EQ(offset(), 0);
}

}  // namespace GestureTests
}  // namespace TarvaneApp
