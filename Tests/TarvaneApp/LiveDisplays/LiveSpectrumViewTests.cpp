#include "LiveDisplays/LiveSpectrumView.h"

#include <gtest/gtest.h>

#include <QMouseEvent>
#include <QPaintEvent>
#include <QTest>

#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace LiveSpectrumViewTests {

using TarvaneKit::UUID;

// What of a widget was painted since it was last asked.
class Painted : public QObject {
  public:
    explicit Painted(QWidget& widget) { widget.installEventFilter(this); }
    QRect take() { return std::exchange(area_, {}); }

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            area_ |= static_cast<QPaintEvent*>(event)->rect();
        }
        return false;
    }

  private:
    QRect area_;
};

class LiveSpectrumViewTests : public TarvaneTests::EngineFixture {
  protected:
    LiveSpectrumViewTests() {
        graph.setFixedSize(400, 200);
        graph.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&graph));
        start();
        play(0.1);
        play(0.1);
    }

    void play(double amplitude) {
        audio.feed("", {TarvaneTests::sine(1000.0, amplitude, 9600)});
        clock.advance(0.2);
        tick();
        settle();
    }
    QRect paintedBy(double amplitude) {
        Painted painted(graph);
        play(amplitude);
        QRect area;
        waitUntil([&] { return !(area |= painted.take()).isEmpty(); });
        return area;
    }
    // What a window's pixels are that is painted in parts.
    void paintInto(QImage& pixels, const QRect& area) {
        graph.render(&pixels, area.topLeft(), area, QWidget::DrawChildren);
    }
    QImage wholePicture() {
        QImage pixels(graph.size(), QImage::Format_RGB32);
        paintInto(pixels, graph.rect());
        return pixels;
    }

    LiveSpectrumView graph{*engine, UUID::main()};
};

TEST_F(LiveSpectrumViewTests, newLevelsPaintOnlyTheRowsThatTheyReach) {
    QImage pixels = wholePicture();
    for (const double amplitude : {0.1, 0.12, 0.05, 0.4, 0.02}) {
        const QRect area = paintedBy(amplitude);
        EXPECT_LT(area.height(), graph.height()) << amplitude;
        paintInto(pixels, area);
        EXPECT_EQ(pixels, wholePicture()) << amplitude;
    }
}

TEST_F(LiveSpectrumViewTests, whatThePointerReadsIsPaintedToo) {
    const QPointF place(200.0, 100.0);
    QMouseEvent move(QEvent::MouseMove, place, graph.mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&graph, &move);
    settle();
    EXPECT_EQ(paintedBy(0.12), graph.rect());
}

TEST_F(LiveSpectrumViewTests, whatChangedWhileItWasHiddenIsSeenWhenItIsShown) {
    const QRect withoutFocusRing = graph.rect().adjusted(10, 10, -10, -10);
    const QImage before = wholePicture().copy(withoutFocusRing);
    graph.hide();
    engine->updateDisplay(UUID::main(),
                          [](auto& display) { display.viewMode = SpectrumViewMode::banded; });
    settle();
    graph.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&graph));
    EXPECT_NE(wholePicture().copy(withoutFocusRing), before);
}

TEST_F(LiveSpectrumViewTests, aNewSizeIsPaintedWhole) {
    const QImage before = wholePicture();
    graph.setFixedSize(300, 150);
    settle();
    EXPECT_EQ(wholePicture().size(), QSize(300, 150));
    graph.setFixedSize(400, 200);
    settle();
    EXPECT_EQ(wholePicture(), before);
}

}  // namespace LiveSpectrumViewTests
}  // namespace TarvaneApp
