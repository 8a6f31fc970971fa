#include "Shell/Panels/LevelHistoryPanelView.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QTest>

#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Panels/LevelHistoryChannelMenu.h"
#include "Shell/Panels/LevelHistoryExtremesSummary.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace LevelHistoryPanelViewTests {

using TarvaneKit::UUID;
using TarvaneTests::sine;

class LevelHistoryPanelViewTests : public TarvaneTests::EngineFixture {
  protected:
    LevelHistoryPanelViewTests() {
        panel.resize(1200, 200);
        panel.show();
        settle();
    }

    template <class Widget>
    Widget& the() {
        return *panel.findChild<Widget*>();
    }
    LiveLevelHistoryGraph& graph() { return the<LiveLevelHistoryGraph>(); }
    QLabel* label(const QString& text) {
        for (auto* label : panel.findChildren<QLabel*>()) {
            if (label->text() == text) {
                return label;
            }
        }
        return nullptr;
    }
    MenuButton& zoomMenu() {
        for (auto* menu : panel.findChildren<MenuButton*>()) {
            if (menu->accessibleName().startsWith(QStringLiteral("Time range"))) {
                return *menu;
            }
        }
        throw std::logic_error("no zoom menu");
    }
    IconButton& resetButton() {
        for (auto* button : panel.findChildren<IconButton*>()) {
            if (button->symbol() == QStringLiteral("arrow.uturn.backward")) {
                return *button;
            }
        }
        throw std::logic_error("no reset button");
    }
    void play(int seconds) {
        start();
        for (int i = 0; i < seconds; ++i) {
            audio.feed("", {sine(1000.0, 0.1, 48000)});
            clock.advance(1.0);
            tick();
        }
        settle();
    }

    LevelHistoryPanelView panel{*engine, std::nullopt};
};

TEST_F(LevelHistoryPanelViewTests, itFollowsTheMeterOrShowsAChannelOfItsOwn) {
    auto& menu = the<LevelHistoryChannelMenu>();
    EXPECT_FALSE(menu.isVisible()) << "there is only one channel";
    const auto stage = addChannel("Stage", "desk", 2);
    EXPECT_TRUE(menu.isVisible());
    EXPECT_EQ(menu.toolTip(), QStringLiteral("Channel shown here"));
    const auto items = [&] { return menu.menu()->actions(); };
    ASSERT_EQ(items().size(), 3);
    EXPECT_EQ(items()[0]->text(), QStringLiteral("Follow SPL Meter"));
    EXPECT_EQ(items()[1]->text(), QStringLiteral("Main Input"));
    EXPECT_EQ(items()[2]->text(), QStringLiteral("Stage"));
    EXPECT_TRUE(items()[0]->isChecked());
    EXPECT_EQ(menu.text(), QStringLiteral("Main Input")) << "whose history it is";
    engine->splMeterChannelID.set(stage.id);
    EXPECT_EQ(menu.text(), QStringLiteral("Stage"));
    EXPECT_EQ(graph().view().recorder, &engine->meterChannel(stage.id).levelHistory());
    items()[1]->trigger();
    EXPECT_EQ(engine->levelHistoryChannelID(), UUID::main());
    EXPECT_EQ(menu.text(), QStringLiteral("Main Input"));
    EXPECT_TRUE(items()[1]->isChecked());
    EXPECT_EQ(graph().view().recorder, &engine->meterChannel(UUID::main()).levelHistory());
    items()[0]->trigger();
    EXPECT_EQ(engine->levelHistoryChannelID(), std::nullopt);
}

TEST_F(LevelHistoryPanelViewTests, aFixedChannelCantBeChanged) {
    const auto stage = addChannel("Stage", "desk", 2);
    LevelHistoryPanelView fixed(*engine, stage.id);
    EXPECT_EQ(fixed.findChild<LevelHistoryChannelMenu*>(), nullptr);
    EXPECT_EQ(fixed.findChild<LiveLevelHistoryGraph*>()->view().recorder,
              &engine->meterChannel(stage.id).levelHistory());
}

TEST_F(LevelHistoryPanelViewTests, theChannelShownIsNoOverlay) {
    const auto stage = addChannel("Stage", "desk", 2);
    engine->levelHistoryOverlayChannelIDs.set({stage.id, UUID::main()});
    ASSERT_EQ(graph().view().overlays.size(), 1U);
    EXPECT_EQ(graph().view().overlays[0].id, stage.id);
    engine->levelHistoryChannelID.set(stage.id);
    ASSERT_EQ(graph().view().overlays.size(), 1U);
    EXPECT_EQ(graph().view().overlays[0].id, UUID::main());
}

TEST_F(LevelHistoryPanelViewTests, momentaryLiesOverTheHistoryOfALoudnessChannel) {
    auto& momentary = the<QCheckBox>();
    EXPECT_EQ(momentary.text(), QStringLiteral("Momentary"));
    EXPECT_EQ(momentary.toolTip(),
              QStringLiteral("Draw Momentary loudness (400 ms) over the Short-Term history"));
    EXPECT_FALSE(momentary.isVisible());
    engine->setMeasuresLoudness(true, UUID::main());
    EXPECT_TRUE(momentary.isVisible());
    EXPECT_FALSE(graph().view().secondaryMetricIndex.has_value());
    momentary.click();
    EXPECT_TRUE(engine->levelHistoryShowsMomentary());
    EXPECT_TRUE(graph().view().secondaryMetricIndex.has_value());
    EXPECT_NE(label(QStringLiteral("Short-Term + Momentary")), nullptr);
    engine->setMeasuresLoudness(false, UUID::main());
    EXPECT_FALSE(momentary.isVisible());
    EXPECT_FALSE(graph().view().secondaryMetricIndex.has_value());
    EXPECT_EQ(label(QStringLiteral("Short-Term + Momentary")), nullptr);
}

TEST_F(LevelHistoryPanelViewTests, aPresetGivesUpTheUsersRangeAndTheResetButtonGoesBackToIt) {
    play(200);
    EXPECT_FALSE(resetButton().isVisible());
    graph().showMoment(100.0);
    EXPECT_TRUE(resetButton().isVisible());
    EXPECT_EQ(resetButton().toolTip(),
              QStringLiteral("Back to Session (or double-click the graph)"));
    QStringList labels;
    for (const QAction* item : zoomMenu().menu()->actions()) {
        labels.append(item->text());
    }
    EXPECT_EQ(labels, (QStringList{"Session", "Last 1 min", "Last 5 min", "Last 15 min"}));
    zoomMenu().menu()->actions()[1]->trigger();
    EXPECT_EQ(engine->levelHistoryZoom(), LevelHistoryZoom::last1Min);
    EXPECT_FALSE(graph().hasOwnRange());
    EXPECT_FALSE(resetButton().isVisible());
    graph().showMoment(50.0);
    EXPECT_EQ(resetButton().toolTip(),
              QStringLiteral("Back to Last 1 min (or double-click the graph)"));
    resetButton().click();
    EXPECT_FALSE(graph().hasOwnRange());
    EXPECT_NEAR(graph().view().range().span(), 60.0, 1e-6);
}

TEST_F(LevelHistoryPanelViewTests, aNarrowHeaderLeavesOutTheCaptionThenTheExtremesThenTheTitle) {
    addChannel("Stage", "desk", 2);
    engine->setMeasuresLoudness(true, UUID::main());
    play(10);
    QLabel* title = label(QStringLiteral("LEVEL HISTORY"));
    QLabel* caption = label(QStringLiteral("Short-Term"));
    auto* extremes = &the<LevelHistoryExtremesSummary>();
    ASSERT_NE(title, nullptr);
    ASSERT_NE(caption, nullptr);
    QList<int> leftAt;
    const QList<QWidget*> inOrder{caption, extremes, title};
    for (QWidget* widget : inOrder) {
        EXPECT_TRUE(widget->isVisible());
        leftAt.append(0);
    }
    for (int width = 1200; width >= 200; width -= 10) {
        panel.resize(width, 200);
        settle();
        for (int i = 0; i < 3; ++i) {
            if (leftAt[i] == 0 && !inOrder[i]->isVisible()) {
                leftAt[i] = width;
            }
        }
        // What remains shows itself whole, as long as anything could have left.
        if (title->isVisible()) {
            EXPECT_GE(zoomMenu().width(), zoomMenu().sizeHint().width()) << width;
            EXPECT_LE(zoomMenu().geometry().right(), width) << width;
        }
    }
    EXPECT_GT(leftAt[0], leftAt[1]);
    EXPECT_GT(leftAt[1], leftAt[2]);
    EXPECT_GT(leftAt[2], 0);
    EXPECT_LE(leftAt[1], 900) << "the smallest main window has room for the extremes";
    panel.resize(1200, 200);
    settle();
    EXPECT_TRUE(caption->isVisible() && extremes->isVisible() && title->isVisible());
}

}  // namespace LevelHistoryPanelViewTests
}  // namespace TarvaneApp
