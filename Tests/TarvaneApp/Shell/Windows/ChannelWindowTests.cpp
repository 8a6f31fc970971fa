// A channel in a window of its own: what its header says, how it arranges its modules, and what
// its layout's controls write.

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <array>

#include "Displays/Theme.h"
#include "LiveDisplays/LiveSPLReadoutView.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "Shell/ChannelControls/ChannelPickerMenu.h"
#include "Shell/Controls/ChannelColorDot.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/PopoverPresentationState.h"
#include "Shell/Panels/GraphArea.h"
#include "Shell/Panels/LevelHistoryPanelView.h"
#include "Shell/Panels/PanelMaximizeToggleButton.h"
#include "Shell/Panels/PanelResizeHandle.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SPLMeterPanelView.h"
#include "Shell/Panels/SpectrogramPanelView.h"
#include "Shell/Windows/ChannelWindowLayoutControls.h"
#include "Shell/Windows/ChannelWindowLayoutMenu.h"
#include "Shell/Windows/ChannelWindowView.h"
#include "Shell/Windows/MainWindow.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace ChannelWindowTests {

using TarvaneKit::UUID;

class ChannelWindowTests : public TarvaneTests::EngineFixture {
  protected:
    ChannelWindowTests() : stage(addChannel("Stage", "desk", 2)) { open(stage.id); }
    ~ChannelWindowTests() override { delete window.data(); }

    void open(const std::optional<UUID>& id) {
        delete window.data();
        window = new ChannelWindowView(*engine, id);
        window->resize(1000, 900);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
        settle();
    }
    PanelResizeHandle& graphHandle() { return *the<GraphArea>().findChild<PanelResizeHandle*>(); }
    template <class Widget>
    Widget& the() {
        return *window->findChild<Widget*>();
    }
    bool says(const QString& text) {
        const auto labels = window->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* label) {
            return label->isVisible() && label->text() == text;
        });
    }
    ChannelWindowLayout layout() { return engine->windowLayout(stage.id); }

    const ChannelConfig stage;
    QPointer<ChannelWindowView> window;
};

TEST_F(ChannelWindowTests, theHeaderSaysWhichChannelItIsAndWhetherItRuns) {
    EXPECT_TRUE(says(QStringLiteral("Stage")));
    EXPECT_TRUE(says(QStringLiteral("Desk (channel 3)")));
    EXPECT_EQ(the<ChannelColorDot>().color(), Theme::color(stage.color));
    EXPECT_TRUE(says(QStringLiteral("Press Start in the main window")));
    start();
    EXPECT_FALSE(says(QStringLiteral("Press Start in the main window")));
    engine->updateChannel(stage.id, [](ChannelConfig& channel) { channel.isEnabled = false; });
    EXPECT_TRUE(says(QStringLiteral("Turned off in Preferences > Audio")));
    engine->stop();
    EXPECT_TRUE(says(QStringLiteral("Turned off in Preferences > Audio")));
    engine->setChannelColor({0.0, 0.5, 1.0, 1.0}, stage.id);
    EXPECT_EQ(the<ChannelColorDot>().color(), Theme::color({0.0, 0.5, 1.0, 1.0}));
}

TEST_F(ChannelWindowTests, theTitleFollowsTheChannelsName) {
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tarvane — Stage"));
    engine->updateChannel(stage.id, [](ChannelConfig& channel) { channel.name = "Balcony"; });
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tarvane — Balcony"));
    EXPECT_TRUE(says(QStringLiteral("Balcony")));
}

TEST_F(ChannelWindowTests, aRemovedChannelsWindowStaysAndSaysSo) {
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, stage.id));
    engine->removeChannel(stage.id);
    settle();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(says(QStringLiteral("This channel has been removed.")));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tarvane — Channel"));
    EXPECT_FALSE(the<RTAPanelView>().isVisible());
    // It doesn't show the main input instead.
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, stage.id));
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
    open(std::nullopt);
    EXPECT_TRUE(says(QStringLiteral("This channel has been removed.")));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tarvane — Channel"));
}

TEST_F(ChannelWindowTests, allModulesShowTheChannelWhateverTheMainWindowShows) {
    EXPECT_EQ(window->findChild<ChannelPickerMenu*>(), nullptr);
    for (const MenuButton* menu : window->findChildren<MenuButton*>()) {
        EXPECT_FALSE(menu->isVisible() && menu->toolTip() == QStringLiteral("Channel shown here"));
    }
    engine->updateDisplay(stage.id, [](auto& display) { display.metricMode = MetricMode::peak; });
    settle();
    EXPECT_EQ(the<LiveSPLReadoutView>().readout().metricLabel, QStringLiteral("Peak C"));
    EXPECT_EQ(the<LiveSpectrumView>().view().traceColor, Theme::color(stage.color));
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, stage.id));
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::spectrogram, stage.id));
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, UUID::main()));
    engine->rtaChannelID.set(UUID::main());
    engine->splMeterChannelID.set(UUID::main());
    settle();
    EXPECT_EQ(the<LiveSPLReadoutView>().readout().metricLabel, QStringLiteral("Peak C"));
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, stage.id));
}

TEST_F(ChannelWindowTests, ofTwoWindowsThatShowAChannelClosingOneLeavesItsAnalysisRunning) {
    engine->rtaChannelID.set(stage.id);
    TarvaneTests::TestProfiles profiles(store, clock);
    MainWindow mainWindow(*engine, profiles.store, {});
    mainWindow.show();
    settle();
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, stage.id));
    window->close();
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, stage.id));
    mainWindow.close();
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, stage.id));
    settle();
    open(stage.id);
    mainWindow.show();
    mainWindow.close();
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, stage.id));
}

TEST_F(ChannelWindowTests, theExpandButtonAndTheHandleWriteTheWindowsOwnLayout) {
    the<RTAPanelView>().findChild<PanelMaximizeToggleButton*>()->click();
    EXPECT_EQ(layout().panelLayout, PanelLayout::rtaOnly);
    EXPECT_EQ(engine->panelLayout(), PanelLayout::both);
    EXPECT_FALSE(the<SpectrogramPanelView>().isVisible());
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::spectrogram, stage.id));
    the<RTAPanelView>().findChild<PanelMaximizeToggleButton*>()->click();
    EXPECT_EQ(layout().panelLayout, PanelLayout::both);

    auto& handle = graphHandle();
    const double extent = the<GraphArea>().height();
    QTest::keyClick(&handle, Qt::Key_Down);
    EXPECT_NEAR(layout().splitFraction, 0.5 + 16.0 / extent, 1e-9);
    EXPECT_DOUBLE_EQ(engine->panelSplitFraction(), 0.5);
}

TEST_F(ChannelWindowTests, aStoredSplitBeyondTheLimitsIsMendedByTheFirstDrag) {
    engine->updateWindowLayout(stage.id, [](auto& layout) { layout.splitFraction = 0.97; });
    EXPECT_DOUBLE_EQ(layout().splitFraction, 0.97);
    QTest::keyClick(&graphHandle(), Qt::Key_Down);
    EXPECT_DOUBLE_EQ(layout().splitFraction, 0.85);
}

TEST_F(ChannelWindowTests, theArrangementIsTheMainWindowsUnlessTheLayoutHasItsOwn) {
    auto& rta = the<RTAPanelView>();
    auto& spectrogram = the<SpectrogramPanelView>();
    const auto isStacked = [&] { return rta.x() == spectrogram.x(); };
    EXPECT_TRUE(isStacked());
    engine->graphOrientation.set(GraphOrientation::sideBySide);
    EXPECT_FALSE(isStacked());
    EXPECT_LT(rta.x(), spectrogram.x());
    engine->graphOrder.set(GraphOrder::spectrogramFirst);
    EXPECT_GT(rta.x(), spectrogram.x());
    engine->updateWindowLayout(stage.id, [](ChannelWindowLayout& layout) {
        layout.graphOrientation = GraphOrientation::stacked;
        layout.graphOrder = GraphOrder::rtaFirst;
        layout.levelHistoryPosition = LevelHistoryPosition::belowGraphs;
    });
    settle();
    EXPECT_TRUE(isStacked());
    EXPECT_LT(rta.y(), spectrogram.y());
    EXPECT_GT(the<LevelHistoryPanelView>().y(), the<GraphArea>().y());
    engine->levelHistoryPosition.set(LevelHistoryPosition::aboveGraphs);
    settle();
    EXPECT_GT(the<LevelHistoryPanelView>().y(), the<GraphArea>().y());
}

TEST_F(ChannelWindowTests, theHistoryStandsWhereTheMainWindowHasItUnlessTheLayoutSaysSo) {
    const auto isBelow = [&] {
        settle();
        return the<LevelHistoryPanelView>().y() > the<GraphArea>().y();
    };
    EXPECT_FALSE(isBelow());
    engine->levelHistoryPosition.set(LevelHistoryPosition::belowGraphs);
    EXPECT_TRUE(isBelow());
    engine->levelHistoryPosition.set(LevelHistoryPosition::aboveGraphs);
    EXPECT_FALSE(isBelow());
    engine->levelHistoryPosition.set(LevelHistoryPosition::belowGraphs);
    open(stage.id);
    EXPECT_TRUE(isBelow());
    engine->updateWindowLayout(stage.id, [](ChannelWindowLayout& layout) {
        layout.levelHistoryPosition = LevelHistoryPosition::aboveGraphs;
    });
    EXPECT_FALSE(isBelow());
}

TEST_F(ChannelWindowTests, withTheSpectrogramFirstItHasTheRestOfTheAnalyzersShare) {
    engine->updateWindowLayout(stage.id, [](ChannelWindowLayout& layout) {
        layout.graphOrder = GraphOrder::spectrogramFirst;
        layout.splitFraction = 0.7;
    });
    settle();
    EXPECT_EQ(the<SpectrogramPanelView>().y(), 0);
    EXPECT_NEAR(the<SpectrogramPanelView>().height(), 0.3 * the<GraphArea>().height(), 1.0);
}

TEST_F(ChannelWindowTests, aLowWindowShowsTheMeterAheadOfTheHistoryAheadOfTheGraphs) {
    const auto shown = [&](int height) {
        window->resize(700, height);
        settle();
        return std::array{the<SPLMeterPanelView>().isVisible(),
                          the<LevelHistoryPanelView>().isVisible(), the<GraphArea>().isVisible()};
    };
    EXPECT_EQ(window->minimumSize(), QSize(360, 200));
    EXPECT_EQ(shown(200), (std::array{true, false, false}));
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::rta, stage.id));
    EXPECT_EQ(shown(450), (std::array{true, true, false}));
    EXPECT_EQ(shown(900), (std::array{true, true, true}));
    EXPECT_TRUE(engine->isDemanded(ChannelDemand::rta, stage.id));
    EXPECT_EQ(the<LevelHistoryPanelView>().height(), 170);
    // One module alone has the window at any size.
    engine->updateWindowLayout(stage.id, [](ChannelWindowLayout& layout) {
        layout.showsSPLMeter = layout.showsLevelHistory = false;
    });
    EXPECT_EQ(shown(200), (std::array{false, false, true}));
}

TEST_F(ChannelWindowTests, aLowWindowShowsOneGraphAndSaysWhich) {
    engine->updateWindowLayout(stage.id, [](ChannelWindowLayout& layout) {
        layout.showsSPLMeter = layout.showsLevelHistory = false;
    });
    const auto shown = [&](int height) {
        window->resize(700, height);
        settle();
        return std::pair(the<RTAPanelView>().isVisible(), the<SpectrogramPanelView>().isVisible());
    };
    const auto note = [&] {
        const auto* label =
            the<GraphArea>().findChild<ElidedLabel*>({}, Qt::FindDirectChildrenOnly);
        return label->isVisible() ? label->text() : QString();
    };
    EXPECT_EQ(shown(500), std::pair(true, true));
    EXPECT_EQ(note(), QString());
    EXPECT_EQ(shown(300), std::pair(true, false));
    EXPECT_EQ(note(), QStringLiteral("Real-Time Analyzer · the spectrogram needs a taller window"));
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::spectrogram, stage.id));
    engine->graphOrder.set(GraphOrder::spectrogramFirst);
    EXPECT_EQ(shown(300), std::pair(false, true));
    EXPECT_EQ(note(), QStringLiteral("Spectrogram · the real-time analyzer needs a taller window"));
    // Beside each other both have the height.
    engine->graphOrientation.set(GraphOrientation::sideBySide);
    EXPECT_EQ(shown(300), std::pair(true, true));
    EXPECT_EQ(note(), QString());
    window->resize(500, 700);
    settle();
    EXPECT_FALSE(the<RTAPanelView>().isVisible());
    EXPECT_EQ(note(), QStringLiteral("Spectrogram · the real-time analyzer needs a wider window"));
}

// --- the layout's controls

class ChannelWindowLayoutTests : public ChannelWindowTests {
  protected:
    ChannelWindowLayoutTests() : controls(*engine, stage.id) { controls.show(); }

    QCheckBox& toggle(const char* name) {
        for (auto* box : controls.findChildren<QCheckBox*>()) {
            if (box->text() == QLatin1String(name)) {
                return *box;
            }
        }
        throw std::logic_error(name);
    }
    QComboBox& picker(const char* name) {
        for (auto* combo : controls.findChildren<QComboBox*>()) {
            if (combo->accessibleName() == QLatin1String(name)) {
                return *combo;
            }
        }
        throw std::logic_error(name);
    }
    void pick(const char* name, const char* item) {
        QComboBox& combo = picker(name);
        const int index = combo.findText(QLatin1String(item));
        ASSERT_GE(index, 0);
        combo.setCurrentIndex(index);
        Q_EMIT combo.activated(index);
    }

    ChannelWindowLayoutControls controls;
};

TEST_F(ChannelWindowLayoutTests, aToggleShowsAndHidesAModule) {
    toggle("Spectrogram").click();
    EXPECT_FALSE(layout().showsSpectrogram);
    EXPECT_FALSE(the<SpectrogramPanelView>().isVisible());
    EXPECT_FALSE(the<RTAPanelView>().findChild<PanelMaximizeToggleButton*>()->isVisible());
    EXPECT_FALSE(engine->isDemanded(ChannelDemand::spectrogram, stage.id));
    // What the main window shows is its own affair.
    EXPECT_EQ(engine->spectrogramPlacement(), ModulePlacement::mainWindow);
    toggle("Spectrogram").click();
    EXPECT_TRUE(the<SpectrogramPanelView>().isVisible());
}

TEST_F(ChannelWindowLayoutTests, theLastVisibleModulesToggleDoesNothing) {
    toggle("SPL Meter").click();
    toggle("Spectrogram").click();
    toggle("Level History").click();
    EXPECT_EQ(layout().visibleModuleCount(), 1);
    toggle("Real-Time Analyzer").click();
    EXPECT_EQ(layout().visibleModuleCount(), 1);
    EXPECT_TRUE(toggle("Real-Time Analyzer").isChecked());
    EXPECT_TRUE(the<RTAPanelView>().isVisible());
}

TEST_F(ChannelWindowLayoutTests, thePickersOverrideTheMainWindowAndFollowItAgain) {
    EXPECT_EQ(picker("RTA & Spectrogram").currentText(), QStringLiteral("Same as Main Window"));
    pick("RTA & Spectrogram", "Side by Side");
    pick("Graph Order", "Spectrogram First");
    pick("Level History Position", "Below Graphs");
    EXPECT_EQ(layout().graphOrientation, GraphOrientation::sideBySide);
    EXPECT_EQ(layout().graphOrder, GraphOrder::spectrogramFirst);
    EXPECT_EQ(layout().levelHistoryPosition, LevelHistoryPosition::belowGraphs);
    EXPECT_EQ(engine->graphOrientation(), GraphOrientation::stacked);
    for (const char* name : {"RTA & Spectrogram", "Graph Order", "Level History Position"}) {
        pick(name, "Same as Main Window");
    }
    EXPECT_EQ(layout(), ChannelWindowLayout{});
}

TEST_F(ChannelWindowLayoutTests, aResetRemovesTheWindowsLayout) {
    toggle("SPL Meter").click();
    pick("Graph Order", "Spectrogram First");
    EXPECT_TRUE(engine->channelWindowLayouts().contains(stage.id));
    auto* reset = controls.findChild<QPushButton*>();
    EXPECT_EQ(reset->text(), QStringLiteral("Reset to Main Window Layout"));
    reset->click();
    EXPECT_FALSE(engine->channelWindowLayouts().contains(stage.id));
    EXPECT_TRUE(toggle("SPL Meter").isChecked());
    EXPECT_EQ(picker("Graph Order").currentIndex(), 0);
    EXPECT_TRUE(the<SPLMeterPanelView>().isVisible());
}

TEST_F(ChannelWindowLayoutTests, theHeadersMenuOpensTheControls) {
    auto& menu = the<ChannelWindowLayoutMenu>();
    EXPECT_EQ(menu.toolTip(),
              QStringLiteral("Choose which modules this window shows and how they're arranged"));
    menu.click();
    EXPECT_TRUE(menu.popover().isPresented());
    EXPECT_NE(menu.findChild<ChannelWindowLayoutControls*>(), nullptr);
    menu.popover().setPresented(false);
}

}  // namespace ChannelWindowTests
}  // namespace TarvaneApp
