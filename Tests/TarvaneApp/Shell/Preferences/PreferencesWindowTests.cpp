#include "Shell/Preferences/PreferencesWindow.h"

#include <gtest/gtest.h>

#include <QScrollArea>
#include <QSlider>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include "TarvaneApp/Shell/Windows/ApplicationFixture.h"

namespace TarvaneApp {
namespace PreferencesWindowTests {

class PreferencesWindowTests : public TarvaneTests::ApplicationFixture {
  protected:
    PreferencesWindowTests() : ApplicationFixture({.id = 1, .uid = "mic", .name = "Mic"}) {
        open();
    }
    ~PreferencesWindowTests() override { application.reset(); }

    void open() {
        application->showSettings();
        settle();
    }
    void relaunch() {
        window().close();
        application.reset();
        launch();
        open();
    }
    static PreferencesWindow& window() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<PreferencesWindow*>(widget)) {
                return *found;
            }
        }
        throw std::logic_error("there is no settings window");
    }
    static QTabWidget& tabs() { return *window().findChild<QTabWidget*>(); }
    static QString tab() { return tabs().tabText(tabs().currentIndex()); }
};

TEST_F(PreferencesWindowTests, theTabsStandInTheirOrder) {
    QStringList titles;
    for (int i = 0; i < tabs().count(); ++i) {
        titles.append(tabs().tabText(i));
        EXPECT_FALSE(tabs().tabIcon(i).isNull()) << i;
    }
    EXPECT_EQ(titles,
              (QStringList{"Audio", "Display", "Leq", "Loudness", "Traffic Light", "Profiles"}));
    EXPECT_EQ(tab(), "Audio");
}

TEST_F(PreferencesWindowTests, sizeAndTabSurviveARelaunch) {
    window().resize(700, 610);
    tabs().setCurrentIndex(3);
    relaunch();
    EXPECT_EQ(tab(), "Loudness");
    EXPECT_EQ(window().size(), QSize(700, 610));
}

TEST_F(PreferencesWindowTests, aTabThatThereIsNoMoreLeavesTheFirst) {
    store.setText("SettingsWindow.tab", "Cheese");
    relaunch();
    EXPECT_EQ(tab(), "Audio");
}

TEST_F(PreferencesWindowTests, keysTurnTheTabsFromWhereverTheFocusIs) {
    window().activateWindow();
    while (!window().isActiveWindow()) {
        settle();
    }
    tabs().setCurrentIndex(4);
    auto& slider = *tabs().currentWidget()->findChild<QSlider*>();
    slider.setFocus();
    ASSERT_TRUE(slider.hasFocus());
    const int value = slider.value();
    QTest::keyClick(&slider, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(tab(), "Profiles");
    EXPECT_EQ(slider.value(), value);
    QTest::keyClick(&window(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(tab(), "Audio") << "the tabs are a ring";
    QTest::keyClick(&window(), Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(tab(), "Profiles");
    tabs().setCurrentIndex(4);
    slider.setFocus();
    QTest::keyClick(&slider, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tab(), "Profiles");
    QTest::keyClick(&window(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(tab(), "Traffic Light");
}

// Tab leads through every form from its top to its bottom.
TEST_F(PreferencesWindowTests, tabGoesDownTheForm) {
    window().activateWindow();
    while (!window().isActiveWindow()) {
        settle();
    }
    for (int place = 0; place < tabs().count(); ++place) {
        tabs().setCurrentIndex(place);
        settle();
        QWidget* form = tabs().currentWidget()->findChild<QScrollArea*>()->widget();
        tabs().tabBar()->setFocus();
        int stops = 0;
        QPoint last(0, -1);
        for (QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
             form->isAncestorOf(window().focusWidget()) && stops < 100;
             QTest::keyClick(window().focusWidget(), Qt::Key_Tab)) {
            QWidget* focused = window().focusWidget();
            const QPoint at = focused->mapTo(form, focused->rect().center());
            EXPECT_TRUE(at.y() > last.y() + 2 || (at.y() > last.y() - 10 && at.x() > last.x()))
                << tab().toStdString() << ", " << focused->accessibleName().toStdString() << " of "
                << focused->metaObject()->className() << " at " << at.y() << " behind " << last.y();
            last = at;
            ++stops;
        }
        EXPECT_GE(stops, 3) << tab().toStdString();
        EXPECT_LT(stops, 100) << "no way out of " << tab().toStdString();
    }
}

TEST_F(PreferencesWindowTests, aFormIsNeverWiderThanItReads) {
    window().resize(1600, 600);
    settle();
    for (int place = 0; place < tabs().count(); ++place) {
        tabs().setCurrentIndex(place);
        settle();
        auto* scroll = tabs().currentWidget()->findChild<QScrollArea*>();
        EXPECT_LE(scroll->widget()->width(), 760);
        EXPECT_NEAR(scroll->widget()->geometry().center().x(), scroll->viewport()->width() / 2, 2);
    }
}

// No form is cut at the sides, at any size.
TEST_F(PreferencesWindowTests, everyFormFitsTheSmallestWindow) {
    window().resize(window().minimumSize());
    for (int place = 1; place < tabs().count(); ++place) {
        tabs().setCurrentIndex(place);
        settle();
        auto* scroll = tabs().currentWidget()->findChild<QScrollArea*>();
        EXPECT_LE(scroll->widget()->width(), scroll->viewport()->width()) << tab().toStdString();
    }
}

TEST_F(PreferencesWindowTests, escapeClosesTheWindow) {
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_FALSE(window().isVisible());
}

}  // namespace PreferencesWindowTests
}  // namespace TarvaneApp
