// Every window as a screen reader walks it: each is known for a window, and each control in it has
// a name that no other one beside it has.

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <set>
#include <string>

#include "Shell/Forms/FoldingGroup.h"
#include "Shell/Preferences/PreferencesWindow.h"
#include "Shell/Preferences/ProfilesSettingsView.h"
#include "Shell/Windows/ChannelWindowView.h"
#include "Shell/Windows/StandaloneModule.h"
#include "TarvaneApp/Shell/Windows/ApplicationFixture.h"

namespace TarvaneApp {
namespace SpokenWindowsTests {

QString nameOf(const QAccessibleInterface& element) {
    return element.text(QAccessible::Name);
}

// What a user can work, and what shows a reading as a whole.
bool isControl(const QAccessibleInterface& element) {
    switch (element.role()) {
        case QAccessible::Button:
        case QAccessible::CheckBox:
        case QAccessible::Chart:
        case QAccessible::ComboBox:
        case QAccessible::EditableText:
        case QAccessible::Graphic:
        case QAccessible::MenuItem:
        case QAccessible::PageTab:
        case QAccessible::RadioButton:
        case QAccessible::Separator:
        case QAccessible::Slider:
        case QAccessible::SpinBox:
        case QAccessible::TreeItem:
            return true;
        default:
            return false;
    }
}

// A combo box says what is chosen, and has its name from the label beside it.
QString nameFromLabels(QAccessibleInterface& element) {
    QString names;
    for (const auto& [label, relation] : element.relations(QAccessible::Label)) {
        names += nameOf(*label) + u'/';
    }
    return names;
}

// Its windows are read one at a time; what is in a named group is told with the group.
class Reader {
  public:
    void read(QAccessibleInterface& from, const QString& group) {
        for (int i = 0; i < from.childCount(); ++i) {
            QAccessibleInterface* child = from.child(i);
            if (child == nullptr || child->state().invisible) {
                continue;
            }
            if (child->role() == QAccessible::StaticText) {
                EXPECT_FALSE(nameOf(*child).isEmpty()) << "a label in " << group.toStdString();
            }
            if (child->state().focusable) {
                EXPECT_FALSE(nameOf(*child).isEmpty())
                    << child->object()->metaObject()->className() << " takes the focus in "
                    << group.toStdString();
            }
            if (isControl(*child)) {
                readControl(*child, group);
            }
            const bool isGroup = child->role() == QAccessible::Grouping;
            read(*child, isGroup ? group + nameOf(*child) + u'>' : group);
        }
    }
    std::size_t count() const { return said_.size(); }

  private:
    void readControl(QAccessibleInterface& control, const QString& group) {
        const bool isNamedByLabel = control.role() == QAccessible::ComboBox;
        const QString name = isNamedByLabel ? nameFromLabels(control) : nameOf(control);
        const std::string said =
            (group + name).toStdString() + " (role " + std::to_string(control.role()) + ')';
        EXPECT_FALSE(name.isEmpty()) << said;
        EXPECT_TRUE(said_.insert(said).second) << said << " is there twice";
    }

    std::set<std::string> said_;
};

class SpokenWindowsTests : public TarvaneTests::ApplicationFixture {
  protected:
    SpokenWindowsTests() : ApplicationFixture({.id = 41, .uid = "desk", .name = "Desk"}) {
        engine().addChannel();
        engine().start();
        while (engine().isStarting()) {
            settle();
        }
    }
    ~SpokenWindowsTests() override { application.reset(); }

    template <class Window>
    static Window& the() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<Window*>(widget)) {
                return *window;
            }
        }
        throw std::logic_error("there is no such window");
    }
    /// How many controls it has.
    static std::size_t read(QWidget& window) {
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&window);
        EXPECT_EQ(spoken->role(), QAccessible::Window) << window.windowTitle().toStdString();
        EXPECT_EQ(nameOf(*spoken), window.windowTitle());
        Reader reader;
        reader.read(*spoken, window.windowTitle() + u'>');
        return reader.count();
    }
    void trigger(const char* command) {
        for (QMenu* menu : theMainWindow().findChildren<QMenu*>()) {
            for (QAction* action : menu->actions()) {
                if (action->text() == QLatin1String(command)) {
                    action->trigger();
                    settle();
                    return;
                }
            }
        }
        FAIL() << "there is no " << command;
    }
    void saveProfile(const char* name) {
        auto& form = *the<PreferencesWindow>().findChild<ProfilesSettingsView*>();
        auto& field = *form.findChild<QLineEdit*>();
        field.selectAll();
        QTest::keyClicks(&field, QLatin1String(name));
        for (auto* button : form.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("Save")) {
                button->click();
            }
        }
        settle();
    }
    static QWidget& titled(const char* title) {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->windowTitle() == QString::fromUtf8(title)) {
                return *widget;
            }
        }
        throw std::logic_error(title);
    }
};

TEST_F(SpokenWindowsTests, theMainWindow) {
    EXPECT_GE(read(theMainWindow()), 40U);
}

TEST_F(SpokenWindowsTests, everyTabOfTheSettingsWithAllChannelsUnfolded) {
    application->showProfiles();
    settle();
    saveProfile("Matinee");
    saveProfile("Night");
    auto& window = the<PreferencesWindow>();
    auto& tabs = *window.findChild<QTabWidget*>();
    for (FoldingGroup* group : window.findChildren<FoldingGroup*>()) {
        group->setExpanded(true);
    }
    for (int place = 0; place < tabs.count(); ++place) {
        tabs.setCurrentIndex(place);
        settle();
        EXPECT_GT(read(window), static_cast<std::size_t>(tabs.count())) << place;
    }
}

TEST_F(SpokenWindowsTests, aChannelsWindow) {
    ChannelWindowView window(engine(), engine().extraChannels().back().id);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    settle();
    EXPECT_GE(read(window), 20U);
}

TEST_F(SpokenWindowsTests, modulesInWindowsOfTheirOwn) {
    for (const StandaloneModule module : standaloneModules) {
        const std::string title = windowTitle(module).toStdString();
        SCOPED_TRACE(title);
        placement(engine(), module).set(ModulePlacement::separateWindow);
        settle();
        EXPECT_GE(read(titled(title.c_str())), 2U);
        placement(engine(), module).set(ModulePlacement::mainWindow);
        settle();
    }
}

TEST_F(SpokenWindowsTests, helpReleaseNotesAboutAndTheLevelAlone) {
    for (const auto& [command, title] : std::initializer_list<std::pair<const char*, const char*>>{
             {"Tarvane Help", "Tarvane Help"},
             {"What's New in Tarvane", "What's New in Tarvane"},
             {"About Tarvane", "About Tarvane"},
             {"Full-Screen SPL Meter", "Tarvane — Full-Screen SPL Meter"}}) {
        SCOPED_TRACE(command);
        trigger(command);
        read(titled(title));
    }
}

}  // namespace SpokenWindowsTests
}  // namespace TarvaneApp
