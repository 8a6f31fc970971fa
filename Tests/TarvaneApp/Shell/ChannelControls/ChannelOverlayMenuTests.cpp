#include "Shell/ChannelControls/ChannelOverlayMenu.h"

#include <gtest/gtest.h>

#include <QMenu>

#include "Displays/Theme.h"
#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Panels/LevelHistoryOverlayMenu.h"
#include "Shell/Panels/RTAOverlayMenu.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace ChannelOverlayMenuTests {

using TarvaneKit::UUID;
using IDs = std::vector<UUID>;

class ChannelOverlayMenuTests : public TarvaneTests::EngineFixture {
  protected:
    ChannelOverlayMenuTests() {
        rta = new RTAOverlayMenu(*engine, UUID::main(), &panel);
        history = new LevelHistoryOverlayMenu(*engine, UUID::main(), &panel);
        panel.show();
    }

    // What the menu offers when it is opened now.
    static QList<QAction*> items(IconMenuButton& button) {
        Q_EMIT button.menu().aboutToShow();
        return button.menu().actions();
    }
    static QStringList texts(IconMenuButton& button) {
        QStringList texts;
        for (const QAction* item : items(button)) {
            texts.append(item->isSeparator() ? QStringLiteral("-") : item->text());
        }
        return texts;
    }

    QWidget panel;
    RTAOverlayMenu* rta;
    LevelHistoryOverlayMenu* history;
};

TEST_F(ChannelOverlayMenuTests, withoutOtherChannelsItIsNotThere) {
    EXPECT_FALSE(rta->isVisible());
    EXPECT_FALSE(history->isVisible());
    addChannel("Stage", "desk", 2);
    EXPECT_TRUE(rta->isVisible());
    EXPECT_TRUE(history->isVisible());
    engine->extraChannels.set({});
    EXPECT_FALSE(rta->isVisible());
}

TEST_F(ChannelOverlayMenuTests, theButtonsSayWhatTheyOverlay) {
    EXPECT_EQ(rta->toolTip(), QStringLiteral("Overlay other channels on this RTA"));
    EXPECT_EQ(history->toolTip(), QStringLiteral("Overlay other channels' history"));
    EXPECT_EQ(rta->accessibleName(), rta->toolTip());
    EXPECT_EQ(rta->symbol(), QStringLiteral("square.3.layers.3d"));
}

TEST_F(ChannelOverlayMenuTests, everyChannelButTheBaseIsOfferedAndTheAnalyzersCanBeCleared) {
    const auto stage = addChannel("Stage", "desk", 2);
    addChannel("Balcony", "desk", 3);
    EXPECT_EQ(texts(*rta), (QStringList{"Stage", "Balcony", "-", "Clear Overlays"}));
    EXPECT_EQ(texts(*history), (QStringList{"Stage", "Balcony"}));
    rta->setBaseChannelID(stage.id);
    EXPECT_EQ(texts(*rta), (QStringList{"Main Input", "Balcony", "-", "Clear Overlays"}));
}

TEST_F(ChannelOverlayMenuTests, anItemAddsItsChannelAndTakesItAwayAgainAndBothAreSaved) {
    const auto stage = addChannel("Stage", "desk", 2);
    const auto balcony = addChannel("Balcony", "desk", 3);
    items(*rta)[1]->trigger();
    items(*rta)[0]->trigger();
    EXPECT_EQ(engine->rtaOverlayChannelIDs(), (IDs{balcony.id, stage.id}));
    EXPECT_TRUE(engine->levelHistoryOverlayChannelIDs().empty());
    EXPECT_TRUE(items(*rta)[0]->isChecked());
    items(*rta)[1]->trigger();
    items(*history)[0]->trigger();
    EXPECT_EQ(engine->rtaOverlayChannelIDs(), IDs{stage.id});
    panel.hide();
    delete rta;
    delete history;
    makeEngine();
    EXPECT_EQ(engine->rtaOverlayChannelIDs(), IDs{stage.id});
    EXPECT_EQ(engine->levelHistoryOverlayChannelIDs(), IDs{stage.id});
}

TEST_F(ChannelOverlayMenuTests, clearTakesAllOverlaysAway) {
    const auto stage = addChannel("Stage", "desk", 2);
    QAction* clear = items(*rta).last();
    EXPECT_FALSE(clear->isEnabled());
    engine->rtaOverlayChannelIDs.set({stage.id, UUID::main()});
    clear = items(*rta).last();
    EXPECT_TRUE(clear->isEnabled());
    clear->trigger();
    EXPECT_TRUE(engine->rtaOverlayChannelIDs().empty());
}

// In a menu's text one ampersand underlines a letter, and two show one.
TEST_F(ChannelOverlayMenuTests, anAmpersandInANameIsShown) {
    addChannel("Pit & Stage", "desk", 2);
    EXPECT_EQ(texts(*history), QStringList{"Pit && Stage"});
    MenuButton button(QStringLiteral("Channel"));
    button.setItems({{.text = QStringLiteral("Pit & Stage"), .isCurrent = true, .action = [] {}}});
    EXPECT_EQ(button.menu()->actions()[0]->text(), QStringLiteral("Pit && Stage"));
    EXPECT_EQ(button.text(), QStringLiteral("Pit & Stage"));
}

TEST_F(ChannelOverlayMenuTests, aChannelThatWasSwitchedOffCanStillBeTakenAway) {
    const auto stage = addChannel("Stage", "desk", 2);
    engine->levelHistoryOverlayChannelIDs.set({stage.id});
    engine->updateChannel(stage.id, [](ChannelConfig& channel) { channel.isEnabled = false; });
    ASSERT_EQ(texts(*history), QStringList{"Stage"});
    items(*history)[0]->trigger();
    EXPECT_TRUE(engine->levelHistoryOverlayChannelIDs().empty());
    EXPECT_FALSE(history->isVisible());
}

// A line in dB over an axis in dBFS or LUFS would lie at a level that it doesn't have.
TEST_F(ChannelOverlayMenuTests, aChannelThatTheAxisCantShowIsNotDrawnAndTheMenuSaysWhy) {
    const ChannelConfig stage = addChannel("Stage", "desk", 2);
    engine->levelHistoryOverlayChannelIDs.set({stage.id});
    engine->rtaOverlayChannelIDs.set({stage.id});
    LiveLevelHistoryGraph historyGraph(*engine, UUID::main());
    LiveSpectrumView rtaGraph(*engine, UUID::main());
    const auto drawn = [&] {
        historyGraph.setOverlayIDs(engine->levelHistoryOverlayChannelIDs());
        rtaGraph.setOverlayIDs(engine->rtaOverlayChannelIDs());
        settle();
        return std::pair(historyGraph.view().overlays.size(), rtaGraph.view().overlays.size());
    };
    EXPECT_EQ(drawn(), std::pair(std::size_t{1}, std::size_t{1}));
    EXPECT_EQ(texts(*history).first(), QStringLiteral("Stage"));
    EXPECT_EQ(texts(*rta).first(), QStringLiteral("Stage"));

    engine->setMeasuresLoudness(true, stage.id);
    EXPECT_EQ(drawn(), std::pair(std::size_t{0}, std::size_t{1}));
    EXPECT_EQ(texts(*history).first(),
              QStringLiteral("Stage  (reads in LUFS, this history in dBFS)"));
    EXPECT_TRUE(items(*history).first()->isChecked()) << "it can still be removed";

    engine->setMeasuresLoudness(false, stage.id);
    TarvaneKit::CalibrationProfile profile;
    profile.reference = TarvaneKit::ReferenceCalibration{};
    profile.reference->offsetDB = 120.0;
    engine->calibration.set(profile);
    EXPECT_EQ(drawn(), std::pair(std::size_t{0}, std::size_t{0}));
    EXPECT_EQ(texts(*history).first(),
              QStringLiteral("Stage  (reads in dBFS, this history in dB)"));
    EXPECT_EQ(texts(*rta).first(),
              QStringLiteral("Stage  (not calibrated, this analyzer is in dB SPL)"));

    engine->splReadoutShowsDBFS.set(true);
    EXPECT_EQ(drawn(), std::pair(std::size_t{1}, std::size_t{1}));
}

}  // namespace ChannelOverlayMenuTests
}  // namespace TarvaneApp
