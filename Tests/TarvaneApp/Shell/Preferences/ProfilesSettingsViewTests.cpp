#include "Shell/Preferences/ProfilesSettingsView.h"

#include <gmock/gmock.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <algorithm>

#include "Shell/Controls/IconMenuButton.h"
#include "Shell/Preferences/ProfileRow.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace ProfilesSettingsViewTests {

class ProfilesSettingsViewTests : public TarvaneTests::EngineFixture {
  protected:
    ProfilesSettingsViewTests() {
        form.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&form));
    }

    QStringList texts() {
        QStringList texts;
        for (const QLabel* label : form.findChildren<QLabel*>()) {
            if (label->isVisible()) {
                texts.append(label->text());
            }
        }
        return texts;
    }
    static QPushButton& button(QWidget& in, const char* text) {
        for (auto* button : in.findChildren<QPushButton*>()) {
            if (button->text() == QString::fromUtf8(text)) {
                return *button;
            }
        }
        throw std::logic_error(text);
    }
    std::vector<ProfileRow*> rows() {
        std::vector<ProfileRow*> rows;
        for (auto* row : form.findChildren<ProfileRow*>()) {
            if (row->isVisible()) {
                rows.push_back(row);
            }
        }
        return rows;
    }
    static void choose(ProfileRow& row, const char* item) {
        auto& menu = row.findChild<IconMenuButton*>()->menu();
        Q_EMIT menu.aboutToShow();
        for (QAction* action : menu.actions()) {
            if (action->text() == QString::fromUtf8(item)) {
                action->trigger();
                return;
            }
        }
        throw std::logic_error(item);
    }
    void save(const char* name) {
        auto& field = *form.findChild<QLineEdit*>();
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, QLatin1String(name));
        button(form, "Save").click();
        settle();
    }
    static QMessageBox& question() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(widget); box && box->isVisible()) {
                return *box;
            }
        }
        throw std::logic_error("nothing is asked");
    }

    TarvaneTests::TestProfiles profiles{store, clock};
    ProfilesSettingsView form{*engine, profiles.store};
};

TEST_F(ProfilesSettingsViewTests, withoutProfilesItSaysWhatToDo) {
    EXPECT_TRUE(texts().contains(
        QStringLiteral("No saved profiles yet. Set the app up the way you like it, then save it "
                       "below.")));
    EXPECT_TRUE(rows().empty());
    save("Show");
    EXPECT_EQ(rows().size(), 1U);
    EXPECT_TRUE(texts().filter(QStringLiteral("No saved profiles")).isEmpty());
}

TEST_F(ProfilesSettingsViewTests, aNameOfSpacesCannotBeSaved) {
    EXPECT_FALSE(button(form, "Save").isEnabled());
    QTest::keyClicks(form.findChild<QLineEdit*>(), QStringLiteral("   "));
    EXPECT_FALSE(button(form, "Save").isEnabled());
    QTest::keyClicks(form.findChild<QLineEdit*>(), QStringLiteral("x"));
    EXPECT_TRUE(button(form, "Save").isEnabled());
}

TEST_F(ProfilesSettingsViewTests, theCurrentOneIsMarkedAndLoadingAnotherMovesTheMark) {
    engine->viewMode.set(SpectrumViewMode::line);
    save("A");
    engine->viewMode.set(SpectrumViewMode::both);
    save("B");
    const auto isMarked = [](ProfileRow& row) {
        return std::ranges::any_of(row.findChildren<QLabel*>(), [](const QLabel* label) {
            return label->toolTip() == QStringLiteral("Current profile") && label->isVisible();
        });
    };
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_FALSE(isMarked(*rows()[0]));
    EXPECT_TRUE(isMarked(*rows()[1]));
    button(*rows()[0], "Load").click();
    EXPECT_EQ(engine->viewMode(), SpectrumViewMode::line);
    EXPECT_TRUE(isMarked(*rows()[0]));
    EXPECT_FALSE(isMarked(*rows()[1]));
}

TEST_F(ProfilesSettingsViewTests, overwritingKeepsTheNameAndTakesTheSettings) {
    save("A");
    engine->viewMode.set(SpectrumViewMode::both);
    choose(*rows()[0], "Overwrite with Current Settings");
    ASSERT_EQ(profiles.store.profiles().size(), 1U);
    EXPECT_EQ(profiles.store.profiles()[0].settings.viewMode, SpectrumViewMode::both);
}

TEST_F(ProfilesSettingsViewTests, deletingAsksAndCancelKeeps) {
    save("A \"quoted\"");
    choose(*rows()[0], "Delete…");
    EXPECT_EQ(question().text(), QStringLiteral("Delete \"A \"quoted\"\"?"));
    EXPECT_EQ(question().informativeText(), QStringLiteral("This can't be undone."));
    button(question(), "Cancel").click();
    settle();
    EXPECT_EQ(rows().size(), 1U);
    choose(*rows()[0], "Delete…");
    button(question(), "Delete").click();
    settle();
    EXPECT_TRUE(rows().empty());
    EXPECT_TRUE(profiles.store.profiles().empty());
}

TEST_F(ProfilesSettingsViewTests, whatWasAskedAboutIsDeletedWhateverTheListIsThen) {
    save("B");
    choose(*rows()[0], "Delete…");
    profiles.store.saveCurrent(*engine, "A");  // now ahead of it
    button(question(), "Delete").click();
    settle();
    ASSERT_EQ(profiles.store.profiles().size(), 1U);
    EXPECT_EQ(profiles.store.profiles()[0].name, "A");
}

TEST_F(ProfilesSettingsViewTests, exportAndImportAskForFiles) {
    save("A");
    profiles.panels.chosen = {profiles.temporary.path() / "carried.json"};
    choose(*rows()[0], "Export…");
    EXPECT_TRUE(std::filesystem::exists(profiles.panels.chosen[0]));
    button(form, "Import…").click();
    settle();
    EXPECT_EQ(rows().size(), 2U);
    EXPECT_EQ(profiles.store.profiles()[1].name, "A (2)");
    EXPECT_THAT(profiles.panels.titles, testing::ElementsAre("Export Profile", "Import Profiles"));
}

TEST_F(ProfilesSettingsViewTests, inputsAndCalibrationsCanBeLeftOut) {
    auto& toggle = *form.findChild<QCheckBox*>();
    EXPECT_EQ(toggle.text(), QStringLiteral("Loading also switches input device && calibration"));
    EXPECT_TRUE(toggle.isChecked());
    toggle.click();
    EXPECT_FALSE(profiles.store.includeAudioAndCalibration());
}

}  // namespace ProfilesSettingsViewTests
}  // namespace TarvaneApp
