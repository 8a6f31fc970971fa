#include "Shell/Windows/UnseenWindows.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QVBoxLayout>
#include <QWindow>
#include <memory>

#include "LiveDisplays/LiveSPLReadoutView.h"
#include "LiveDisplays/LiveSpectrogramView.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace UnseenWindowsTests {

using TarvaneKit::UUID;

struct PaintCounter final : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int paints = 0;
};

// A window with a graph of each kind and the number.
struct Window : QWidget {
    explicit Window(MeterEngine& engine) {
        auto* column = new QVBoxLayout(this);
        column->addWidget(readout = new LiveSPLReadoutView(engine, UUID::main()));
        column->addWidget(new LiveSpectrumView(engine, UUID::main()));
        column->addWidget(new LiveSpectrogramView(engine, UUID::main()));
        resize(800, 600);
        show();
        for (QWidget* widget : findChildren<QWidget*>()) {
            widget->installEventFilter(&counter);
        }
    }

    LiveSPLReadoutView* readout;
    PaintCounter counter;
};

class UnseenWindowsTests : public TarvaneTests::EngineFixture {
  protected:
    UnseenWindowsTests() : window(*engine) { start(); }

    void play(float amplitude = 0.1F) {
        ASSERT_TRUE(audio.feed("", {TarvaneTests::sine(1000.0, amplitude, 4800)}));
        clock.advance(0.1);
        tick();
        settle();
    }
    /// What an X server sends.
    void tell(QWidget& of, std::uint8_t state, std::uint8_t type = XCB_VISIBILITY_NOTIFY) {
        xcb_visibility_notify_event_t event = {};
        event.response_type = type;
        event.window = static_cast<xcb_window_t>(of.windowHandle()->winId());
        event.state = state;
        EXPECT_FALSE(unseen.nativeEventFilter("xcb_generic_event_t", &event, nullptr))
            << "Qt may want it, too";
        play();
    }
    bool isDemanded(ChannelDemand demand) { return engine->isDemanded(demand, UUID::main()); }

    UnseenWindows unseen;
    Window window;
};

TEST_F(UnseenWindowsTests, aCoveredWindowPaintsAndAsksForNothingAndIsWholeWhenSeenAgain) {
    play();
    ASSERT_TRUE(isDemanded(ChannelDemand::rta));
    ASSERT_TRUE(isDemanded(ChannelDemand::spectrogram));
    tell(window, XCB_VISIBILITY_FULLY_OBSCURED);
    EXPECT_FALSE(isDemanded(ChannelDemand::rta));
    EXPECT_FALSE(isDemanded(ChannelDemand::spectrogram));
    window.counter.paints = 0;
    play();
    play(0.5F);
    EXPECT_EQ(window.counter.paints, 0);
    tell(window, XCB_VISIBILITY_PARTIALLY_OBSCURED);
    EXPECT_GE(window.counter.paints, 3);
    EXPECT_TRUE(isDemanded(ChannelDemand::rta));
    EXPECT_TRUE(isDemanded(ChannelDemand::spectrogram));
}

TEST_F(UnseenWindowsTests, aSettingThatChangesMeanwhileAsksForNothing) {
    tell(window, XCB_VISIBILITY_FULLY_OBSCURED);
    engine->octaveFraction.set(TarvaneKit::OctaveFraction::oneOctave);
    settle();
    EXPECT_FALSE(isDemanded(ChannelDemand::rta));
}

TEST_F(UnseenWindowsTests, theLevelOfACoveredWindowIsOfNow) {
    tell(window, XCB_VISIBILITY_FULLY_OBSCURED);
    const QString before = window.readout->readout().spokenValue();
    play(0.9F);
    EXPECT_NE(window.readout->readout().spokenValue(), before);
}

TEST_F(UnseenWindowsTests, eachWindowIsItsOwn) {
    Window other(*engine);
    tell(window, XCB_VISIBILITY_FULLY_OBSCURED);
    EXPECT_FALSE(window.updatesEnabled());
    EXPECT_TRUE(other.updatesEnabled());
    EXPECT_TRUE(isDemanded(ChannelDemand::rta));
    tell(other, XCB_VISIBILITY_FULLY_OBSCURED);
    EXPECT_FALSE(isDemanded(ChannelDemand::rta));
    tell(window, XCB_VISIBILITY_UNOBSCURED);
    EXPECT_TRUE(window.updatesEnabled());
    EXPECT_FALSE(other.updatesEnabled());
}

TEST_F(UnseenWindowsTests, aWindowThatWasHiddenWhileCoveredIsSeenWhenItIsShown) {
    tell(window, XCB_VISIBILITY_FULLY_OBSCURED);
    window.hide();
    settle();
    window.show();
    settle();
    // The server tells of each window that it maps.
    tell(window, XCB_VISIBILITY_UNOBSCURED);
    EXPECT_TRUE(isDemanded(ChannelDemand::rta));
}

TEST_F(UnseenWindowsTests, whatElseTheServerTellsChangesNothing) {
    tell(window, XCB_VISIBILITY_FULLY_OBSCURED, XCB_PROPERTY_NOTIFY);
    EXPECT_TRUE(window.updatesEnabled());
    EXPECT_TRUE(isDemanded(ChannelDemand::rta));
}

}  // namespace UnseenWindowsTests
}  // namespace TarvaneApp
