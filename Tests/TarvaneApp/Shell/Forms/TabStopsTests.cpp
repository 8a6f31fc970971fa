#include "Shell/Forms/TabStops.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace TarvaneApp {
namespace TabStopsTests {

class TabStopsTests : public testing::Test {
  protected:
    // Where the focus is after each of so many turns.
    QStringList turns(int count, bool forwards) {
        QStringList stops;
        for (int turn = 0; turn < count; ++turn) {
            EXPECT_TRUE(focusNextTabStop(window, forwards));
            stops.append(static_cast<QPushButton*>(window.focusWidget())->text());
        }
        return stops;
    }

    static QPushButton* button(const char* text, QWidget* parent, const QRect& place = {}) {
        auto* made = new QPushButton(QString::fromLatin1(text), parent);
        made->setGeometry(place);
        return made;
    }

    QWidget window;
};

TEST_F(TabStopsTests, goThroughLinesFromTheTopAndTheLeftWhenTheyWereMadeOtherwise) {
    button("bottom", &window, QRect(0, 100, 50, 20));
    button("right", &window, QRect(200, 0, 50, 20));
    button("middle, lower", &window, QRect(100, 8, 50, 20));
    button("left, higher", &window, QRect(0, 2, 50, 40));
    window.show();
    EXPECT_EQ(turns(5, true),
              (QStringList{"left, higher", "middle, lower", "right", "bottom", "left, higher"}));
    EXPECT_EQ(turns(4, false), (QStringList{"bottom", "right", "middle, lower", "left, higher"}));
}

TEST_F(TabStopsTests, areWhatCanBeSeenAndUsed) {
    button("disabled", &window, QRect(0, 0, 50, 20))->setEnabled(false);
    button("for the mouse", &window, QRect(0, 30, 50, 20))->setFocusPolicy(Qt::ClickFocus);
    QPushButton* hidden = button("hidden", &window, QRect(0, 60, 50, 20));
    window.show();
    hidden->hide();
    EXPECT_TRUE(tabStopsIn(window).isEmpty());
    EXPECT_FALSE(focusNextTabStop(window, true));
    button("first", &window, QRect(0, 90, 50, 20))->show();
    hidden->show();
    EXPECT_EQ(turns(2, true), (QStringList{"hidden", "first"}));
}

TEST_F(TabStopsTests, ofTabsAreTheirBarAndThePageInFront) {
    auto* column = new QVBoxLayout(&window);
    auto* tabs = new QTabWidget;
    column->addWidget(tabs);
    tabs->addTab(new QPushButton("front"), "Front");
    tabs->addTab(new QPushButton("behind"), "Behind");
    window.show();
    const auto stops = tabStopsIn(window);
    ASSERT_EQ(stops.size(), 2);
    EXPECT_EQ(static_cast<QWidget*>(tabs->tabBar()), stops[0]);
    EXPECT_EQ(tabs->widget(0), stops[1]);
}

TEST_F(TabStopsTests, comeIntoSight) {
    auto* column = new QVBoxLayout(&window);
    auto* scroll = new QScrollArea;
    scroll->setFocusPolicy(Qt::NoFocus);
    column->addWidget(scroll);
    auto* form = new QWidget;
    form->resize(100, 2000);
    button("top", form, QRect(0, 0, 50, 20));
    button("far", form, QRect(0, 1900, 50, 20));
    scroll->setWidget(form);
    window.resize(200, 200);
    window.show();
    turns(2, true);
    EXPECT_GT(scroll->verticalScrollBar()->value(), 1500);
    turns(1, true);
    EXPECT_EQ(scroll->verticalScrollBar()->value(), 0);
}

}  // namespace TabStopsTests
}  // namespace TarvaneApp
