// The toolbar's menus and what it does where it has little room.

#include "Shell/Windows/MainToolbar.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <optional>

#include "Shell/Windows/ExtraChannelsMenu.h"
#include "Shell/Windows/MainWindow.h"
#include "Shell/Windows/MainWindowLayoutMenu.h"
#include "Shell/Windows/ProfileMenu.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace MainToolbarTests {

using TarvaneKit::UUID;

class MainToolbarTests : public TarvaneTests::EngineFixture {
  protected:
    MainToolbarTests()
        : window(*engine, profiles.store,
                 {.showSettings = [this] { ++settingsShown; },
                  .showProfiles = [this] { ++profilesShown; },
                  .openChannelWindow = [this](const UUID& id) { openedChannel = id; }}) {
        window.resize(1000, 800);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        settle();
    }

    // As it is when it opens.
    static QMenu& opened(IconMenuButton& button) {
        Q_EMIT button.menu().aboutToShow();
        return button.menu();
    }
    static QAction* item(const QMenu& menu, const QString& text) {
        for (QAction* action : menu.actions()) {
            if (action->text() == text) {
                return action;
            }
        }
        throw std::logic_error(text.toStdString());
    }
    void choose(const char* picker, const char* value) {
        const QMenu& menu = opened(layoutMenu());
        item(*item(menu, QLatin1String(picker))->menu(), QLatin1String(value))->trigger();
    }

    MainWindowLayoutMenu& layoutMenu() { return *window.findChild<MainWindowLayoutMenu*>(); }
    ExtraChannelsMenu& channelsMenu() { return *window.findChild<ExtraChannelsMenu*>(); }
    IconMenuButton& more() {
        for (auto* button : window.findChildren<IconMenuButton*>()) {
            if (button->symbol() == QStringLiteral("ellipsis")) {
                return *button;
            }
        }
        throw std::logic_error("ellipsis");
    }
    QPushButton& resetPeakHold() {
        for (auto* button : window.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("Reset Peak Hold")) {
                return *button;
            }
        }
        throw std::logic_error("Reset Peak Hold");
    }

    int settingsShown = 0;
    int profilesShown = 0;
    std::optional<UUID> openedChannel;
    TarvaneTests::TestProfiles profiles{store, clock};
    MainWindow window;
};

TEST_F(MainToolbarTests, theLayoutMenuPlacesEachModule) {
    EXPECT_EQ(layoutMenu().toolTip(),
              QStringLiteral("Choose where each module goes and how the main window is arranged"));
    choose("Real-Time Analyzer", "Hidden");
    EXPECT_EQ(engine->rtaPlacement(), ModulePlacement::hidden);
    choose("Spectrogram", "Separate Window");
    EXPECT_EQ(engine->spectrogramPlacement(), ModulePlacement::separateWindow);
    choose("Level History", "Hidden");
    EXPECT_EQ(engine->levelHistoryPlacement(), ModulePlacement::hidden);
    // Something stays in the main window.
    choose("SPL Meter", "Hidden");
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);
    const QMenu& placements = *item(opened(layoutMenu()), QStringLiteral("Spectrogram"))->menu();
    EXPECT_TRUE(item(placements, QStringLiteral("Separate Window"))->isChecked());
    EXPECT_FALSE(item(placements, QStringLiteral("Main Window"))->isChecked());
}

TEST_F(MainToolbarTests, theLayoutMenuArrangesTheMainWindow) {
    choose("RTA && Spectrogram", "Side by Side");
    EXPECT_EQ(engine->graphOrientation(), GraphOrientation::sideBySide);
    choose("Graph Order", "Spectrogram First");
    EXPECT_EQ(engine->graphOrder(), GraphOrder::spectrogramFirst);
    choose("Level History Position", "Below Graphs");
    EXPECT_EQ(engine->levelHistoryPosition(), LevelHistoryPosition::belowGraphs);
}

TEST_F(MainToolbarTests, theQuickLayoutsPlaceAllModulesAtOnce) {
    const auto quick = [&](const char* name) {
        item(opened(layoutMenu()), QLatin1String(name))->trigger();
    };
    quick("SPL Meter Only");
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);
    EXPECT_EQ(engine->rtaPlacement(), ModulePlacement::hidden);
    EXPECT_EQ(engine->spectrogramPlacement(), ModulePlacement::hidden);
    EXPECT_EQ(engine->levelHistoryPlacement(), ModulePlacement::hidden);
    quick("Level History Only");
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::hidden);
    EXPECT_EQ(engine->levelHistoryPlacement(), ModulePlacement::mainWindow);
    quick("SPL Meter in Its Own Window");
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::separateWindow);
    EXPECT_EQ(engine->rtaPlacement(), ModulePlacement::mainWindow);
    quick("All in Main Window");
    EXPECT_EQ(engine->splMeterPlacement(), ModulePlacement::mainWindow);
}

TEST_F(MainToolbarTests, openingAMenuAgainLeavesNoOldSubmenus) {
    opened(layoutMenu());
    const auto submenus = layoutMenu().menu().findChildren<QMenu*>().size();
    opened(layoutMenu());
    EXPECT_EQ(layoutMenu().menu().findChildren<QMenu*>().size(), submenus);
}

TEST_F(MainToolbarTests, theChannelsMenuIsThereWithExtraChannelsAndOpensTheirWindows) {
    EXPECT_FALSE(channelsMenu().isVisible());
    const ChannelConfig stage = addChannel("Stage", "desk", 2);
    ChannelConfig off = addChannel("Off", "desk", 3);
    engine->updateChannel(off.id, [](ChannelConfig& channel) { channel.isEnabled = false; });
    EXPECT_TRUE(channelsMenu().isVisible());
    EXPECT_EQ(channelsMenu().toolTip(),
              QStringLiteral("Extra channels — open one in its own window"));
    const QMenu& menu = opened(channelsMenu());
    EXPECT_EQ(menu.actions().front()->text(), QStringLiteral("Open in Window"));
    item(menu, QStringLiteral("Stage"))->trigger();
    EXPECT_EQ(openedChannel, stage.id);
    EXPECT_THROW(item(menu, QStringLiteral("Off")), std::logic_error);
    item(menu, QStringLiteral("Channel Settings…"))->trigger();
    EXPECT_EQ(settingsShown, 1);
}

TEST_F(MainToolbarTests, tabGoesFromLeftToRight) {
    addChannel("Stage", "desk", 2);
    start();
    settle();
    QWidget& toolbar = *window.findChild<MainToolbar*>();
    int reached = 0;
    int right = -1;
    QWidget* stop = &toolbar;
    do {
        stop = stop->nextInFocusChain();
        if (toolbar.isAncestorOf(stop) && stop->isVisible() &&
            (stop->focusPolicy() & Qt::TabFocus) != 0) {
            ++reached;
            EXPECT_GT(stop->mapTo(&toolbar, QPoint()).x(), right)
                << stop->accessibleName().toStdString();
            right = stop->mapTo(&toolbar, QPoint()).x();
        }
    } while (stop != &toolbar);
    EXPECT_EQ(reached, 6);  // stop, pause, profile, channels, layout, Reset Peak Hold
}

TEST_F(MainToolbarTests, theHeldPeaksAreResetWhereTheShownChannelHoldsThem) {
    EXPECT_TRUE(resetPeakHold().isVisible());
    engine->showPeakHold.set(false);
    EXPECT_FALSE(resetPeakHold().isVisible());
    EXPECT_FALSE(more().isVisible());
    const ChannelConfig stage = addChannel("Stage", "desk", 2);
    engine->updateDisplay(stage.id, [](auto& display) { display.showsPeakHold = true; });
    engine->rtaChannelID.set(stage.id);
    EXPECT_TRUE(resetPeakHold().isVisible());
}

TEST_F(MainToolbarTests, withoutRoomTheHeldPeaksResetIsInAMenu) {
    audio.plugIn({.id = 50, .uid = "long", .name = std::string(140, 'W'), .channelCount = 1});
    engine->refreshDevices();
    engine->selectedDeviceUID.set("long");
    window.resize(900, 800);
    settle();
    EXPECT_FALSE(resetPeakHold().isVisible());
    EXPECT_TRUE(more().isVisible());
    EXPECT_LE(more().mapTo(&window, QPoint(more().width(), 0)).x(), 900);
    EXPECT_EQ(opened(more()).actions().front()->text(), QStringLiteral("Reset Peak Hold"));
    engine->selectedDeviceUID.set("mic");
    settle();
    EXPECT_TRUE(resetPeakHold().isVisible());
    EXPECT_FALSE(more().isVisible());
}

TEST_F(MainToolbarTests, bothResetsStartTheHeldPeaksOver) {
    const auto heldPeak = [&] {
        double highest = -300.0;
        for (const double level : live().linePeakHoldDB) {
            highest = std::max(highest, level);
        }
        return highest;
    };
    const auto play = [&](double amplitude) {
        for (int i = 0; i < 20; ++i) {
            audio.feed("", {TarvaneTests::sine(1000.0, amplitude, 8192)});
            clock.advance(0.5);
            tick();
        }
    };
    start();
    play(0.5);
    EXPECT_GT(heldPeak(), -15.0);
    resetPeakHold().click();
    play(0.01);
    EXPECT_LT(heldPeak(), -30.0);
    play(0.5);
    opened(more()).actions().front()->trigger();
    play(0.01);
    EXPECT_LT(heldPeak(), -30.0);
}

TEST_F(MainToolbarTests, theProfileMenuNamesTheCurrentProfileAndSwitches) {
    auto& button = *window.findChild<ProfileMenu*>();
    EXPECT_EQ(button.text(), QStringLiteral("No Profile"));
    EXPECT_FALSE(item(opened(button), QStringLiteral("No Saved Profiles"))->isEnabled());
    engine->viewMode.set(SpectrumViewMode::line);
    profiles.store.saveCurrent(*engine, "Rock & Roll");
    EXPECT_EQ(button.text(), QStringLiteral("Rock & Roll"));
    engine->viewMode.set(SpectrumViewMode::both);
    profiles.store.saveCurrent(*engine, "Talk");
    EXPECT_TRUE(item(opened(button), QStringLiteral("Talk"))->isChecked());
    item(opened(button), QStringLiteral("Rock && Roll"))->trigger();
    EXPECT_EQ(engine->viewMode(), SpectrumViewMode::line);
    EXPECT_EQ(button.text(), QStringLiteral("Rock & Roll"));
    item(opened(button), QStringLiteral("Manage Profiles…"))->trigger();
    EXPECT_EQ(profilesShown, 1);
}

TEST_F(MainToolbarTests, theProfilesMenuSavesToTheCurrentOne) {
    const auto menu = [this]() -> const QMenu& {
        for (const QAction* title : window.menuBar()->actions()) {
            if (title->text() == QStringLiteral("&Profiles")) {
                return *title->menu();
            }
        }
        throw std::logic_error("Profiles");
    };
    EXPECT_FALSE(item(menu(), QStringLiteral("No Saved Profiles"))->isEnabled());
    EXPECT_FALSE(item(menu(), QStringLiteral("Save to Current Profile"))->isEnabled());
    profiles.store.saveCurrent(*engine, "Talk");
    engine->viewMode.set(SpectrumViewMode::both);
    item(menu(), QStringLiteral("Save to \"Talk\""))->trigger();
    EXPECT_EQ(profiles.store.profiles()[0].settings.viewMode, SpectrumViewMode::both);
    engine->viewMode.set(SpectrumViewMode::line);
    item(menu(), QStringLiteral("Talk"))->trigger();
    EXPECT_EQ(engine->viewMode(), SpectrumViewMode::both);
    item(menu(), QStringLiteral("Manage Profiles…"))->trigger();
    EXPECT_EQ(profilesShown, 1);
}

TEST_F(MainToolbarTests, whatGoesWrongWithProfilesIsTold) {
    profiles.panels.chosen = {profiles.temporary.write("x.json", "{}")};
    profiles.store.importProfiles();
    const auto* alert = window.findChild<QMessageBox*>();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->text(), QStringLiteral("Not a valid Tarvane profile: x.json"));
    window.findChild<QMessageBox*>()->button(QMessageBox::Ok)->click();
    settle();
    EXPECT_EQ(profiles.store.errorMessage(), std::nullopt);
}

}  // namespace MainToolbarTests
}  // namespace TarvaneApp
