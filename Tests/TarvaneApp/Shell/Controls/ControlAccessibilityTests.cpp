// The tree of a window as a screen reader walks it: what is open, and what each thing is.

#include "Shell/Controls/ControlAccessibility.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QStringList>
#include <QTest>
#include <functional>
#include <optional>
#include <set>

#include "Shell/Windows/MainWindow.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace ControlAccessibilityTests {

class ControlAccessibilityTests : public TarvaneTests::EngineFixture {
  protected:
    ControlAccessibilityTests() {
        window.resize(1600, 1000);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        settle();
    }

    using Visit = std::function<void(QAccessibleInterface&)>;
    /// All that is shown, from the window down, each once, and with the way back to its parent.
    void walk(const Visit& visit) { walk(*QAccessible::queryAccessibleInterface(&window), visit); }
    static void walk(QAccessibleInterface& from, const Visit& visit) {
        for (int i = 0; i < from.childCount(); ++i) {
            QAccessibleInterface* child = from.child(i);
            if (child == nullptr || child->state().invisible) {
                continue;
            }
            EXPECT_EQ(from.indexOfChild(child), i) << name(*child);
            visit(*child);
            walk(*child, visit);
        }
    }
    static std::string name(const QAccessibleInterface& element) {
        return element.text(QAccessible::Name).toStdString();
    }
    QAccessibleInterface* find(const char* called, std::optional<QAccessible::Role> role = {}) {
        QAccessibleInterface* found = nullptr;
        walk([&](QAccessibleInterface& element) {
            if (found == nullptr && name(element) == called &&
                element.role() == role.value_or(element.role())) {
                found = &element;
            }
        });
        return found;
    }
    QAccessibleInterface& at(const char* called, std::optional<QAccessible::Role> role = {}) {
        if (QAccessibleInterface* found = find(called, role)) {
            return *found;
        }
        throw std::logic_error(called);
    }
    static void press(QAccessibleInterface& element) {
        element.actionInterface()->doAction(element.actionInterface()->actionNames().front());
        settle();
    }

    TarvaneTests::TestProfiles profiles{store, clock};
    MainWindow window{*engine, profiles.store, AppCommands{}};
};

TEST_F(ControlAccessibilityTests, allThatTakesTheFocusHasANameOfItsOwn) {
    addChannel("Stage", "desk", 2);
    start();
    settle();
    std::set<std::string> names;
    walk([&](QAccessibleInterface& element) {
        if (element.state().focusable) {
            EXPECT_FALSE(name(element).empty());
            EXPECT_TRUE(names.insert(name(element)).second) << name(element);
        }
    });
    EXPECT_GE(names.size(), 20U);
}

TEST_F(ControlAccessibilityTests, titlesAreNotShouted) {
    EXPECT_NE(find("Real-Time Analyzer"), nullptr);
    EXPECT_NE(find("Level History"), nullptr);
    EXPECT_EQ(find("REAL-TIME ANALYZER"), nullptr);
    EXPECT_EQ(find("LEVEL HISTORY"), nullptr);
    start();
    engine->pause();
    EXPECT_EQ(find("PAUSED"), nullptr);
    EXPECT_EQ(find("PEAK dBFS"), nullptr);
    EXPECT_NE(find("Peak dBFS"), nullptr);
}

TEST_F(ControlAccessibilityTests, oneOfARowIsARadioButton) {
    for (const char* called : {"SPL", "Peak", "Leq", "A weighting", "Slow time weighting"}) {
        EXPECT_EQ(at(called).role(), QAccessible::RadioButton) << called;
    }
    EXPECT_EQ(at("Metric").role(), QAccessible::Grouping);
    EXPECT_TRUE(at("SPL").state().checked);
    EXPECT_FALSE(at("Peak").state().checked);
    press(at("Peak"));
    EXPECT_EQ(engine->metricMode(), MetricMode::peak);
    EXPECT_TRUE(at("Peak").state().checked);
}

TEST_F(ControlAccessibilityTests, aMenuIsUnderItsButtonWhileItIsOpen) {
    EXPECT_EQ(find("Modules"), nullptr);
    EXPECT_EQ(find("Quick Layouts"), nullptr);
    EXPECT_TRUE(at("Layout").state().hasPopup);
    press(at("Layout"));
    QAccessibleInterface& preset = at("SPL Meter Only");
    EXPECT_EQ(preset.role(), QAccessible::MenuItem);
    EXPECT_EQ(preset.parent()->role(), QAccessible::PopupMenu);
    EXPECT_EQ(preset.parent()->parent(), &at("Layout"));
    press(preset);
    EXPECT_EQ(engine->rtaPlacement(), ModulePlacement::hidden);
    EXPECT_EQ(find("SPL Meter Only"), nullptr);
}

TEST_F(ControlAccessibilityTests, whatExcludesEachOtherInAMenuIsRadioButtons) {
    press(at("Layout"));
    press(at("Spectrogram", QAccessible::MenuItem));
    QAccessibleInterface& shown = at("Main Window");
    QAccessibleInterface& hidden = at("Hidden");
    EXPECT_EQ(shown.role(), QAccessible::RadioButton);
    EXPECT_TRUE(shown.state().checked);
    EXPECT_FALSE(hidden.state().checked);
    press(hidden);
    EXPECT_EQ(engine->spectrogramPlacement(), ModulePlacement::hidden);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(ControlAccessibilityTests, aSwitchInTheMenuBarIsACheckBoxWithItsKey) {
    QMenu* view = window.menuBar()->actions()[1]->menu();
    view->popup(QPoint(10, 10));
    QAccessibleInterface& clockSwitch = at("Show Clock Instead of SPL Meter");
    EXPECT_EQ(clockSwitch.role(), QAccessible::CheckBox);
    EXPECT_FALSE(clockSwitch.state().checked);
    EXPECT_EQ(clockSwitch.text(QAccessible::Accelerator), QStringLiteral("Ctrl+Shift+C"));
    press(clockSwitch);
    EXPECT_TRUE(engine->splReadoutShowsClock());
    EXPECT_FALSE(view->isVisible());
}

TEST_F(ControlAccessibilityTests, aPopoverIsUnderItsButtonWhileItIsOpen) {
    EXPECT_EQ(find("Octave-normalized display"), nullptr);
    EXPECT_TRUE(at("RTA options").state().hasPopup) << "it tells so ahead of the press";
    EXPECT_FALSE(at("Start").state().hasPopup);
    press(at("RTA options"));
    QAccessibleInterface* inside = find("Octave-normalized display");
    ASSERT_NE(inside, nullptr);
    bool isUnderButton = false;
    for (QAccessibleInterface* up = inside->parent(); up != nullptr; up = up->parent()) {
        isUnderButton = isUnderButton || up == find("RTA options");
    }
    EXPECT_TRUE(isUnderButton);
    EXPECT_EQ(at("Peak hold color").role(), QAccessible::Grouping);
    for (const char* choice : {"Violet", "Line"}) {
        EXPECT_EQ(at(choice).role(), QAccessible::RadioButton) << choice;
    }
    QApplication::activePopupWidget()->close();
}

TEST_F(ControlAccessibilityTests, slidersSayTheirValuesInUnits) {
    const auto said = [&](const char* slider) {
        return at(slider, QAccessible::Slider).text(QAccessible::Description);
    };
    engine->spectrogramTimeSpanSeconds.set(2.0);
    engine->spectrogramSliceHeightMultiplier.set(1.5);
    EXPECT_EQ(said("Speed"), QStringLiteral("2.0 s"));
    EXPECT_EQ(said("Slice Height"), QStringLiteral("1.5 x"));
    EXPECT_EQ(said("Floor"), QStringLiteral("-100 dBFS"));
    EXPECT_EQ(at("Spectrogram").text(QAccessible::Value), QStringLiteral("-100 to -20 dBFS"));
}

// As a screen reader reads the number itself, and sets it.
TEST_F(ControlAccessibilityTests, slidersCountInTheirUnits) {
    const auto value = [&](const char* slider) {
        return at(slider, QAccessible::Slider).valueInterface();
    };
    engine->spectrogramTimeSpanSeconds.set(2.0);
    engine->spectrogramSliceHeightMultiplier.set(1.5);
    EXPECT_DOUBLE_EQ(value("Speed")->currentValue().toDouble(), 2.0);
    EXPECT_DOUBLE_EQ(value("Speed")->minimumValue().toDouble(), 0.5);
    EXPECT_DOUBLE_EQ(value("Speed")->maximumValue().toDouble(), 6.0);
    EXPECT_DOUBLE_EQ(value("Slice Height")->currentValue().toDouble(), 1.5);
    value("Speed")->setCurrentValue(4.5);
    EXPECT_DOUBLE_EQ(engine->spectrogramTimeSpanSeconds(), 4.5);
    value("Slice Height")->setCurrentValue(0.5);
    EXPECT_DOUBLE_EQ(engine->spectrogramSliceHeightMultiplier(), 0.5);
}

// A bar that was too narrow for a moment keeps the titles that it left out in a menu of its own.
TEST_F(ControlAccessibilityTests, allTitlesOfTheMenuBarAreInIt) {
    window.menuBar()->resize(60, window.menuBar()->height());
    settle();
    QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(window.menuBar());
    window.menuBar()->resize(window.width(), window.menuBar()->height());
    settle();
    ASSERT_EQ(bar->childCount(), 5);
    for (int i = 0; i < bar->childCount(); ++i) {
        EXPECT_FALSE(bar->child(i)->state().invisible) << name(*bar->child(i));
        EXPECT_EQ(bar->child(i)->parent(), bar) << name(*bar->child(i));
    }
}

TEST_F(ControlAccessibilityTests, graphsAndDividersAreWhatTheyAre) {
    for (const char* graph : {"Real-Time Analyzer", "Spectrogram", "Level History"}) {
        EXPECT_NE(find(graph, QAccessible::Chart), nullptr) << graph;
    }
    EXPECT_EQ(at("Divider between the graphs").role(), QAccessible::Separator);
    EXPECT_EQ(at("Not metering").role(), QAccessible::StaticText);
}

}  // namespace ControlAccessibilityTests
}  // namespace TarvaneApp
