// The graphs of the main window: how they share its room, what they ask the engine for, what the
// pointer does to them.

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QSlider>
#include <QTest>
#include <QWheelEvent>
#include <cmath>

#include "Displays/Theme.h"
#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "LiveDisplays/LiveSPLReadoutView.h"
#include "LiveDisplays/LiveSpectrogramView.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Panels/GraphArea.h"
#include "Shell/Panels/LevelHistoryPanelView.h"
#include "Shell/Panels/ModuleLayoutView.h"
#include "Shell/Panels/PanelMaximizeToggleButton.h"
#include "Shell/Panels/PanelResizeHandle.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SPLMeterPanelView.h"
#include "Shell/Panels/SpectrogramControls.h"
#include "Shell/Panels/SpectrogramPanelView.h"
#include "Shell/Windows/MainWindow.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace PanelTests {

using TarvaneKit::UUID;
using TarvaneTests::sine;

TEST(SplitGeometryTests, theFirstPanelTakesItsShareAndTheSecondTheRest) {
    const auto stacked = SplitGeometry::make({1000, 600}, GraphOrientation::stacked, 0.5);
    EXPECT_EQ(stacked.first, QRect(0, 0, 1000, 300));
    EXPECT_EQ(stacked.handle, QRect(0, 300, 1000, 9));
    EXPECT_EQ(stacked.second, QRect(0, 309, 1000, 291));
    const auto beside = SplitGeometry::make({1000, 600}, GraphOrientation::sideBySide, 0.3);
    EXPECT_EQ(beside.first, QRect(0, 0, 300, 600));
    EXPECT_EQ(beside.second, QRect(309, 0, 691, 600));
}

TEST(SplitGeometryTests, aSmallWindowKeepsTheFirstPanelsLeastSize) {
    EXPECT_EQ(SplitGeometry::make({400, 200}, GraphOrientation::stacked, 0.15).first.height(), 60);
    EXPECT_EQ(SplitGeometry::make({400, 200}, GraphOrientation::sideBySide, 0.15).first.width(),
              80);
    EXPECT_EQ(SplitGeometry::make({400, 40}, GraphOrientation::stacked, 0.5).second.height(), 0);
}

TEST(SplitGeometryTests, withTheSpectrogramFirstTheStoredShareIsStillTheAnalyzers) {
    EXPECT_DOUBLE_EQ(swappedForOrder(0.7, GraphOrder::spectrogramFirst), 0.3);
    EXPECT_DOUBLE_EQ(swappedForOrder(0.7, GraphOrder::rtaFirst), 0.7);
}

class PanelTests : public TarvaneTests::EngineFixture {
  protected:
    PanelTests() { open(); }
    ~PanelTests() override { window.reset(); }

    void open() {
        window = std::make_unique<MainWindow>(*engine, profiles.store,
                                              AppCommands{.showSettings = [] {}, .quit = [] {}});
        window->resize(1400, 900);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        settle();
    }
    template <class Widget>
    Widget& the() {
        return *window->findChild<Widget*>();
    }
    bool isDemanded(ChannelDemand demand, const UUID& id = UUID::main()) {
        return engine->isDemanded(demand, id);
    }
    void meter(double frequencyHz, double amplitude) {
        if (!engine->isRunning()) {
            start();
        }
        audio.feed("", {sine(frequencyHz, amplitude, 8192)});
        clock.advance(1.0 / 60.0);
        tick();
        settle();
    }

    void dragHandle(PanelResizeHandle& handle, int pixels) {
        const QPoint from = handle.rect().center();
        QTest::mousePress(&handle, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, from + QPoint(0, pixels),
                         handle.mapToGlobal(from + QPoint(0, pixels)), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&handle, &move);
        QTest::mouseRelease(&handle, Qt::LeftButton, {}, from);
        settle();
    }
    PanelResizeHandle& meterHandle() {
        return *the<ModuleLayoutView>().findChild<PanelResizeHandle*>({},
                                                                      Qt::FindDirectChildrenOnly);
    }
    double digitHeight() { return the<LiveSPLReadoutView>().frame().value.height(); }

    TarvaneTests::TestProfiles profiles{store, clock};
    std::unique_ptr<MainWindow> window;
};

TEST_F(PanelTests, theWindowAsksForWhatItShowsAndNothingElse) {
    EXPECT_TRUE(isDemanded(ChannelDemand::rta));
    EXPECT_TRUE(isDemanded(ChannelDemand::spectrogram));
    engine->spectrogramPlacement.set(ModulePlacement::hidden);
    EXPECT_TRUE(isDemanded(ChannelDemand::rta));
    EXPECT_FALSE(isDemanded(ChannelDemand::spectrogram));
    engine->spectrogramPlacement.set(ModulePlacement::mainWindow);
    engine->panelLayout.set(PanelLayout::spectrogramOnly);
    EXPECT_FALSE(isDemanded(ChannelDemand::rta));
    EXPECT_TRUE(isDemanded(ChannelDemand::spectrogram));
    window->hide();
    EXPECT_FALSE(isDemanded(ChannelDemand::spectrogram));
    window->show();
    EXPECT_TRUE(isDemanded(ChannelDemand::spectrogram));
    window.reset();
    EXPECT_FALSE(isDemanded(ChannelDemand::spectrogram));
}

TEST_F(PanelTests, anOverlaidChannelIsAskedForToo) {
    const auto stage = addChannel("Stage", "desk", 2);
    engine->rtaOverlayChannelIDs.set({stage.id, UUID::main()});
    EXPECT_TRUE(isDemanded(ChannelDemand::rta, stage.id));
    const SpectrumView& view = the<LiveSpectrumView>().view();
    ASSERT_EQ(view.overlays.size(), 1U) << "its own channel is no overlay";
    EXPECT_EQ(view.overlays[0].id, stage.id);
    engine->extraChannels.set({});
    EXPECT_TRUE(the<LiveSpectrumView>().view().overlays.empty());
    EXPECT_FALSE(isDemanded(ChannelDemand::rta, stage.id));
}

TEST_F(PanelTests, aRemovedChannelGivesItsPanelsToTheMainInput) {
    const auto stage = addChannel("Stage", "desk", 2);
    engine->rtaChannelID.set(stage.id);
    engine->spectrogramChannelID.set(stage.id);
    EXPECT_TRUE(isDemanded(ChannelDemand::rta, stage.id));
    EXPECT_TRUE(isDemanded(ChannelDemand::spectrogram, stage.id));
    EXPECT_FALSE(isDemanded(ChannelDemand::rta));
    engine->extraChannels.set({});
    EXPECT_TRUE(isDemanded(ChannelDemand::rta));
    EXPECT_TRUE(isDemanded(ChannelDemand::spectrogram));
    EXPECT_FALSE(isDemanded(ChannelDemand::rta, stage.id));
}

TEST_F(PanelTests, aToneStandsUnderThePointer) {
    meter(1500.0, 0.1);
    auto& graph = the<LiveSpectrumView>();
    const double x = graph.view().frequencyAxis().x(1500.0, graph.width());
    const QPointF at(std::round(x), 40.0);
    QMouseEvent move(QEvent::MouseMove, at, graph.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&graph, &move);
    const QString hover = graph.spokenParts()[1].value;
    EXPECT_TRUE(hover.startsWith(QStringLiteral("1.5"))) << hover.toStdString();
    // -20 dB, and 10 log10(1.5) for the display as energy per octave.
    EXPECT_TRUE(hover.endsWith(QStringLiteral("-18.2 dBFS"))) << hover.toStdString();
    // The loudest band, for who can't see it.
    EXPECT_TRUE(graph.spokenParts()[0].value.startsWith(QStringLiteral("1.6k: -18.2")))
        << graph.spokenParts()[0].value.toStdString();
}

TEST_F(PanelTests, thePictureGetsOneRowAPublicationAndColoursNoOtherAgain) {
    meter(1000.0, 0.1);
    auto& picture = the<LiveSpectrogramView>();
    for (int i = 0; i < 150; ++i) {
        meter(1000.0, 0.1);
        picture.grab();
    }
    // Two seconds fill the picture; from then on only new rows are coloured.
    const auto before = picture.rowsPainted();
    for (int i = 0; i < 20; ++i) {
        meter(1000.0, 0.1);
        picture.grab();
    }
    EXPECT_EQ(picture.rowsPainted() - before, 20);
}

TEST_F(PanelTests, aDragScrollsBackAndADoubleClickResumes) {
    for (int i = 0; i < 200; ++i) {
        meter(1000.0, 0.1);
    }
    auto& picture = the<LiveSpectrogramView>();
    const auto position = [&] { return picture.spokenParts()[1].value; };
    EXPECT_EQ(position(), QStringLiteral("LIVE"));
    const QPoint from(picture.width() / 2, 20);
    QTest::mousePress(&picture, Qt::LeftButton, {}, from);
    QTest::mouseMove(&picture, from + QPoint(0, picture.height() / 4));
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, from + QPoint(0, picture.height() / 4));
    // A quarter of the 120 rows that the picture shows.
    EXPECT_NEAR(picture.view().scrollState.rowOffset, 30, 1);
    EXPECT_TRUE(position().startsWith(QStringLiteral("HISTORY")));
    QTest::mouseDClick(&picture, Qt::LeftButton, {}, from);
    EXPECT_EQ(position(), QStringLiteral("LIVE"));
}

TEST_F(PanelTests, aNewSessionIsLiveAgain) {
    for (int i = 0; i < 200; ++i) {
        meter(1000.0, 0.1);
    }
    auto& picture = the<LiveSpectrogramView>();
    const QPoint from(picture.width() / 2, 20);
    QTest::mousePress(&picture, Qt::LeftButton, {}, from);
    QTest::mouseMove(&picture, from + QPoint(0, 60));
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, from + QPoint(0, 60));
    ASSERT_GT(picture.view().scrollState.rowOffset, 0);
    engine->stop();
    start();
    settle();
    EXPECT_EQ(picture.view().scrollState.rowOffset, 0);
}

TEST_F(PanelTests, eachGraphsButtonExpandsItAndBringsTheSplitBack) {
    auto* expand = the<RTAPanelView>().findChild<PanelMaximizeToggleButton*>();
    EXPECT_EQ(expand->toolTip(), QStringLiteral("Expand to fill this area"));
    expand->click();
    EXPECT_EQ(engine->panelLayout(), PanelLayout::rtaOnly);
    EXPECT_FALSE(the<SpectrogramPanelView>().isVisible());
    EXPECT_FALSE(the<GraphArea>().findChild<PanelResizeHandle*>()->isVisible());
    EXPECT_EQ(the<RTAPanelView>().size(), the<GraphArea>().size());
    EXPECT_EQ(expand->toolTip(), QStringLiteral("Restore split view"));
    expand->click();
    EXPECT_EQ(engine->panelLayout(), PanelLayout::both);
    EXPECT_TRUE(the<SpectrogramPanelView>().isVisible());
    engine->spectrogramPlacement.set(ModulePlacement::hidden);
    EXPECT_FALSE(expand->isVisible());
}

TEST_F(PanelTests, theHandleMovesTheSplitWithinItsLimits) {
    auto& handle = *the<GraphArea>().findChild<PanelResizeHandle*>();
    const auto drag = [&](int pixels) { dragHandle(handle, pixels); };
    const double extent = the<GraphArea>().height();
    drag(50);
    EXPECT_NEAR(engine->panelSplitFraction(), 0.5 + 50.0 / extent, 0.002);
    drag(5000);
    EXPECT_DOUBLE_EQ(engine->panelSplitFraction(), 0.85);
    drag(-5000);
    EXPECT_DOUBLE_EQ(engine->panelSplitFraction(), 0.15);
    QTest::mouseDClick(&handle, Qt::LeftButton);
    EXPECT_DOUBLE_EQ(engine->panelSplitFraction(), 0.5);
    QTest::keyClick(&handle, Qt::Key_Down);
    EXPECT_NEAR(engine->panelSplitFraction(), 0.5 + 16.0 / extent, 0.002);

    engine->graphOrder.set(GraphOrder::spectrogramFirst);
    engine->panelSplitFraction.set(0.5);
    drag(50);
    EXPECT_NEAR(engine->panelSplitFraction(), 0.5 - 50.0 / extent, 0.002);
    EXPECT_LT(the<SpectrogramPanelView>().y(), the<RTAPanelView>().y());
}

TEST_F(PanelTests, theHandleUnderTheMeterGivesItMoreOfTheWindowOrLess) {
    auto& meter = the<SPLMeterPanelView>();
    const int byItself = meter.height();
    EXPECT_EQ(byItself, SPLMeterPanelView::heightAboveOthers(the<ModuleLayoutView>().height()));
    dragHandle(meterHandle(), 60);
    EXPECT_NEAR(meter.height(), byItself + 60, 1);
    EXPECT_EQ(meterHandle().y(), meter.geometry().bottom() + 1);
    // What was dragged is a share of the window.
    const int before = the<ModuleLayoutView>().height();
    window->resize(1400, 1200);
    settle();
    EXPECT_NEAR(meter.height(), (byItself + 60.0) * the<ModuleLayoutView>().height() / before, 1);
    dragHandle(meterHandle(), 5000);
    EXPECT_GE(the<GraphArea>().height(), the<GraphArea>().minimumSizeHint().height());
    EXPECT_TRUE(the<LevelHistoryPanelView>().isVisible());
    dragHandle(meterHandle(), -5000);
    EXPECT_EQ(meter.height(), meter.minimumSizeHint().height());
    QTest::keyClick(&meterHandle(), Qt::Key_Down);
    settle();
    EXPECT_NEAR(meter.height(), meter.minimumSizeHint().height() + 16, 1);
    QTest::mouseDClick(&meterHandle(), Qt::LeftButton);
    settle();
    EXPECT_EQ(meter.height(),
              SPLMeterPanelView::heightAboveOthers(the<ModuleLayoutView>().height()));
    engine->applyLayoutPreset(LayoutPreset::splMeterOnly);
    settle();
    EXPECT_FALSE(meterHandle().isVisible());
}

// A screen's pixel pitch in millimetres: its diagonal by the pixels along it.
double pixelPitch(double inches, const QSize& pixels) {
    return 25.4 * inches / std::hypot(pixels.width(), pixels.height());
}

// ISO 9241-303: a character is easily read from 16 minutes of arc on, 14 mm at three metres.
TEST_F(PanelTests, theNumberIsReadFromThreeMetresInEveryWindow) {
    const auto digits = [this](const QSize& size) {
        window->resize(size);
        settle();
        return digitHeight();
    };
    const double fullHD = pixelPitch(24.0, {1920, 1080});
    EXPECT_NEAR(fullHD, 0.277, 0.001);
    for (const bool isLoudness : {false, true}) {
        engine->mainInputMeasuresLoudness.set(isLoudness);
        // The smallest window and the first one, among all modules.
        EXPECT_GE(digits({900, 770}) * fullHD, isLoudness ? 10.0 : 15.0);
        EXPECT_GE(digits({1200, 920}) * fullHD, 15.0);
        EXPECT_GE(digits({1920, 1050}) * fullHD, 20.0);
    }
    engine->mainInputMeasuresLoudness.set(false);
    EXPECT_GE(digits({1200, 920}), 90.0);
    EXPECT_GE(digits({3840, 2160}) * pixelPitch(27.0, {3840, 2160}), 40.0);
    // On a laptop of 14 inches in full HD.
    EXPECT_GE(digits({1920, 1050}) * pixelPitch(14.0, {1920, 1080}), 15.0);
    engine->applyLayoutPreset(LayoutPreset::splMeterOnly);
    EXPECT_GE(digits({900, 260}) * fullHD, 15.0);
    EXPECT_GE(digits({1920, 1050}) * fullHD, 80.0);
}

TEST_F(PanelTests, theNumberStandsInTheWindowsMiddle) {
    const auto& readout = the<LiveSPLReadoutView>();
    for (const int width : {900, 1200, 1920}) {
        window->resize(width, 920);
        settle();
        const QPointF middle = readout.frame().value.center() + QPointF(Theme::Space::panel, 0.0);
        EXPECT_NEAR(readout.mapTo(window.get(), middle).x(), width / 2.0, 1e-9);
    }
}

TEST_F(PanelTests, besideEachOtherBothPlotsHaveOneHeight) {
    const auto ends = [this](QWidget& plot) {
        return plot.mapTo(window.get(), QPoint(0, plot.height())).y();
    };
    EXPECT_EQ(
        the<RTAPanelView>().geometry().bottom() + 1,
        the<RTAPanelView>().mapFrom(window.get(), QPoint(0, ends(the<LiveSpectrumView>()))).y() +
            the<RTAPanelView>().y() + Theme::Space::row);
    engine->graphOrientation.set(GraphOrientation::sideBySide);
    settle();
    EXPECT_EQ(ends(the<LiveSpectrumView>()), ends(the<LiveSpectrogramView>()));
    EXPECT_EQ(the<LiveSpectrumView>().height(), the<LiveSpectrogramView>().height());
}

TEST_F(PanelTests, hiddenModulesLeaveTheirRoomToTheOthers) {
    EXPECT_EQ(window->minimumHeight(), 770);
    engine->levelHistoryPlacement.set(ModulePlacement::hidden);
    EXPECT_EQ(window->minimumHeight(), 600);
    engine->rtaPlacement.set(ModulePlacement::hidden);
    engine->spectrogramPlacement.set(ModulePlacement::hidden);
    settle();
    EXPECT_EQ(window->minimumHeight(), 260);
    EXPECT_FALSE(the<GraphArea>().isVisible());
    EXPECT_GT(the<SPLMeterPanelView>().height(), 500);
    engine->applyLayoutPreset(LayoutPreset::allInMainWindow);
    settle();
    EXPECT_TRUE(the<GraphArea>().isVisible());
    EXPECT_LT(the<SPLMeterPanelView>().height(), 300);
    engine->splMeterPlacement.set(ModulePlacement::hidden);
    settle();
    EXPECT_FALSE(the<SPLMeterPanelView>().isVisible());
    EXPECT_GT(the<GraphArea>().height(), 600);
}

TEST_F(PanelTests, theHistoryIsAStripAboveOrBelowTheGraphsOrTakesTheirRoom) {
    auto& history = the<LevelHistoryPanelView>();
    EXPECT_EQ(history.height(), 170);
    EXPECT_LT(history.y(), the<GraphArea>().y());
    engine->levelHistoryPosition.set(LevelHistoryPosition::belowGraphs);
    settle();
    EXPECT_GT(history.y(), the<GraphArea>().y());
    EXPECT_EQ(history.height(), 170);
    engine->applyLayoutPreset(LayoutPreset::levelHistoryOnly);
    settle();
    EXPECT_GT(history.height(), 700);
}

TEST_F(PanelTests, theHistoryIsDrawnForItsPointsAndNotForEveryTick) {
    start();
    auto& graph = the<LiveLevelHistoryGraph>();
    int before = 0;
    for (int i = 0; i < 180; ++i) {
        if (i == 60) {
            before = graph.picturesDrawn();
        }
        audio.feed("", {sine(1000.0, 0.1, 800, 800 * i)});
        clock.advance(1.0 / 60.0);
        tick();
        settle();
        graph.grab();
    }
    // Two seconds of ten points each, among 120 ticks.
    EXPECT_NEAR(graph.picturesDrawn() - before, 20, 2);
    EXPECT_TRUE(graph.spokenParts()[1].value.contains(QStringLiteral("dB")));
}

TEST_F(PanelTests, theWheelZoomsTheHistoryAndADoubleClickResets) {
    start();
    for (int i = 0; i < 120; ++i) {
        audio.feed("", {sine(1000.0, 0.1, 48000)});
        clock.advance(1.0);
        tick();
    }
    settle();
    auto& graph = the<LiveLevelHistoryGraph>();
    const auto span = [&] { return graph.view().range().span(); };
    EXPECT_NEAR(span(), 120.0, 1.0);
    const auto wheel = [&](int notches) {
        QWheelEvent event(QPointF(400.0, 50.0), graph.mapToGlobal(QPointF(400.0, 50.0)), {},
                          QPoint(0, notches * 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&graph, &event);
    };
    wheel(3);
    EXPECT_NEAR(span(), 120.0 * std::pow(0.87, 3.0), 1.0);
    EXPECT_TRUE(graph.hasOwnRange());
    wheel(100);
    EXPECT_DOUBLE_EQ(span(), 10.0);
    QTest::mouseDClick(&graph, Qt::LeftButton);
    EXPECT_FALSE(graph.hasOwnRange());
    engine->levelHistoryZoom.set(LevelHistoryZoom::last1Min);
    EXPECT_NEAR(span(), 60.0, 1e-9);
    wheel(2);
    wheel(-100);
    EXPECT_EQ(engine->levelHistoryZoom(), LevelHistoryZoom::session);
    EXPECT_FALSE(graph.hasOwnRange());
}

TEST_F(PanelTests, averagingIsChosenFromItsMenu) {
    MenuButton* averaging = nullptr;
    for (auto* button : the<RTAPanelView>().findChildren<MenuButton*>()) {
        averaging =
            button->accessibleName().startsWith(QStringLiteral("Averaging")) ? button : averaging;
    }
    ASSERT_NE(averaging, nullptr);
    EXPECT_EQ(averaging->text(), QStringLiteral("None"));
    averaging->menu()->actions().at(1)->trigger();
    EXPECT_EQ(engine->rtaTimeWeighting(), TarvaneKit::TimeWeighting::slow);
    EXPECT_EQ(averaging->text(), QStringLiteral("Slow"));
}

TEST_F(PanelTests, theSpectrogramsSlidersWriteWhatTheySay) {
    auto& controls = the<SpectrogramControls>();
    const auto slider = [&](const char* name) -> QSlider& {
        for (auto* each : controls.findChildren<QSlider*>()) {
            if (each->accessibleName() == QLatin1String(name)) {
                return *each;
            }
        }
        throw std::logic_error(name);
    };
    slider("Floor").setValue(-90);
    slider("Ceiling").setValue(-10);
    EXPECT_EQ(engine->spectrogramRanges().dbfs, (SpectrogramRange{-90.0, -10.0}));
    // Three dB stay between them.
    slider("Floor").setValue(0);
    EXPECT_EQ(engine->spectrogramRanges().dbfs.floorDB, -13.0);
    EXPECT_EQ(slider("Floor").value(), -13);
    // To the right is faster.
    auto& speed = slider("Speed");
    speed.setValue(speed.maximum());
    EXPECT_DOUBLE_EQ(engine->spectrogramTimeSpanSeconds(), 0.5);
    speed.setValue(speed.minimum());
    EXPECT_DOUBLE_EQ(engine->spectrogramTimeSpanSeconds(), 6.0);
    slider("Slice Height").setValue(slider("Slice Height").maximum());
    EXPECT_DOUBLE_EQ(engine->spectrogramSliceHeightMultiplier(), 4.0);
}

TEST_F(PanelTests, aNarrowHeaderKeepsTheSlidersBehindAButton) {
    auto& controls = the<SpectrogramControls>();
    EXPECT_TRUE(controls.isVisible());
    window->resize(900, 700);
    settle();
    EXPECT_FALSE(controls.isVisible());
    window->resize(1400, 700);
    settle();
    EXPECT_TRUE(controls.isVisible());
}

}  // namespace PanelTests
}  // namespace TarvaneApp
