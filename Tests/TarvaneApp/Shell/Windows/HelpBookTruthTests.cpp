// What the help says of keys, menus and controls is what the program has.

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <optional>
#include <vector>

#include "Shell/ChannelControls/RTAOptionsView.h"
#include "Shell/Forms/FoldingGroup.h"
#include "Shell/Help/HelpBook.h"
#include "Shell/Help/Prose.h"
#include "Shell/Help/ReleaseNote.h"
#include "Shell/Panels/SpectrogramControls.h"
#include "Shell/Preferences/PreferencesWindow.h"
#include "Shell/Windows/ChannelWindowLayoutControls.h"
#include "Shell/Windows/ChannelWindowView.h"
#include "Shell/Windows/ExportOptions.h"
#include "Shell/Windows/MainToolbar.h"
#include "TarvaneApp/Shell/Help/ProgramLabels.h"
#include "TarvaneApp/Shell/Windows/ApplicationFixture.h"

namespace TarvaneApp {
namespace HelpBookTruthTests {

using TarvaneKit::UUID;

class HelpBookTruthTests : public TarvaneTests::ApplicationFixture {
  protected:
    HelpBookTruthTests() : ApplicationFixture({.id = 41, .uid = "desk", .name = "Desk"}) {}

    static PreferencesWindow& settingsWindow() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<PreferencesWindow*>(widget)) {
                return *window;
            }
        }
        throw std::logic_error("there is no settings window");
    }
    static QStringList boldWords(const std::vector<std::string>& texts) {
        QStringList words;
        for (const std::string& text : texts) {
            for (const ProseRun& run : prose(text)) {
                if (run.isBold) {
                    words << run.text;
                }
            }
        }
        return words;
    }
    /// The keys that the topic of shortcuts names, one by one.
    static QStringList keysInTheBook() {
        QStringList keys;
        for (const HelpBlock& block : helpTopic("Keyboard Shortcuts")->blocks) {
            if (const auto* table = std::get_if<HelpBlocks::Shortcuts>(&block)) {
                for (const HelpBlocks::Shortcut& row : table->rows) {
                    const QString both = QString::fromStdString(row.keys).replace(" or ", ", ");
                    keys << both.split(", ");
                }
            }
        }
        return keys;
    }
    static void saveProfile() {
        for (auto* field : settingsWindow().findChildren<QLineEdit*>()) {
            if (field->accessibleName() == "Profile name") {
                QTest::keyClicks(field, "Hall");
            }
        }
        for (auto* button : settingsWindow().findChildren<QPushButton*>()) {
            if (button->text() == "Save") {
                button->click();
            }
        }
        settle();
    }
    /// Everything that can be seen in the present state.
    void readAll() {
        const UUID channel = engine().extraChannels().back().id;
        for (FoldingGroup* group : settingsWindow().findChildren<FoldingGroup*>()) {
            group->setExpanded(true);
        }
        ChannelWindowView channelWindow(engine(), channel);
        ChannelWindowLayoutControls layout(engine(), channel);
        RTAOptionsView options(engine(), channel);
        SpectrogramControls spectrogram(engine(), channel, Qt::Vertical);
        QFileDialog panel;
        ExportOptions exportOptions(panel, engine().channelInfos(), {channel}, nullptr);
        settle();
        for (QWidget* window :
             std::initializer_list<QWidget*>{&channelWindow, &layout, &options, &spectrogram,
                                             &exportOptions, &theMainWindow(), &settingsWindow()}) {
            program.read(*window);
        }
    }

    /// Where a button of the toolbar begins; absent for none, or one that isn't shown.
    static std::optional<int> placeInToolbar(const QString& label) {
        const auto* toolbar = theMainWindow().findChild<MainToolbar*>();
        for (const auto* button : toolbar->findChildren<QAbstractButton*>()) {
            if (button->isVisible() &&
                (button->text() == label || button->accessibleName() == label)) {
                return button->mapTo(toolbar, QPoint()).x();
            }
        }
        return std::nullopt;
    }

    TarvaneTests::ProgramLabels program;
};

TEST_F(HelpBookTruthTests, theBookHasEveryShortcutOfTheMenus) {
    const QStringList keys = keysInTheBook();
    ASSERT_FALSE(theMainWindow().keyedActions().isEmpty());
    for (const QAction* action : theMainWindow().keyedActions()) {
        for (const QKeySequence& shortcut : action->shortcuts()) {
            EXPECT_TRUE(keys.contains(shortcut.toString())) << shortcut.toString().toStdString();
        }
    }
}

TEST_F(HelpBookTruthTests, theBookHasTheLetterOfEveryMenu) {
    const QStringList keys = keysInTheBook();
    for (const QAction* menu : theMainWindow().menuBar()->actions()) {
        const QString key = QKeySequence::mnemonic(menu->text()).toString();
        EXPECT_TRUE(keys.contains(key)) << key.toStdString();
    }
}

TEST_F(HelpBookTruthTests, theToolbarIsToldFromLeftToRight) {
    engine().addChannel();
    settle();
    const auto& blocks = helpTopic("The Main Window")->blocks;
    const auto* told = std::get_if<HelpBlocks::Bullets>(&blocks.at(1));
    ASSERT_NE(told, nullptr);
    std::vector<int> places;
    for (const std::string& item : told->items) {
        const QStringList words = boldWords({item});
        if (const auto place = words.isEmpty() ? std::nullopt : placeInToolbar(words.front())) {
            places.push_back(*place);
        }
    }
    EXPECT_EQ(places.size(), 5U);  // all but the pause, and the device, which is no button
    EXPECT_TRUE(std::ranges::is_sorted(places));
}

TEST_F(HelpBookTruthTests, whatTheBookPrintsBoldIsATopicAKeyOrOnTheScreen) {
    application->showSettings();
    engine().addChannel();
    engine().selectedDeviceUID.set("gone");
    readAll();
    application->showProfiles();
    saveProfile();
    readAll();
    engine().selectedDeviceUID.set(std::nullopt);
    engine().start();
    while (engine().isStarting()) {
        settle();
    }
    engine().mainInputMeasuresLoudness.set(true);
    readAll();
    engine().pause();
    readAll();
    engine().stop();
    program.readMenus(*theMainWindow().menuBar());
    const QStringList keys = keysInTheBook();
    const auto lookUp = [&](const std::string& where, const std::vector<std::string>& texts) {
        for (const QString& words : boldWords(texts)) {
            EXPECT_TRUE(helpTopic(words.toStdString()) != nullptr || keys.contains(words) ||
                        program.has(words))
                << where << ": " << words.toStdString();
        }
    };
    for (const HelpTopic& topic : allHelpTopics()) {
        for (const HelpBlock& block : topic.blocks) {
            lookUp(topic.title, textsOf(block));
        }
    }
    for (const ReleaseNote& note : releaseNotes()) {
        lookUp(note.version, note.highlights);
    }
}

}  // namespace HelpBookTruthTests
}  // namespace TarvaneApp
