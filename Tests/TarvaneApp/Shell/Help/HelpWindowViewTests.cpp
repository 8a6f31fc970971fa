#include "Shell/Help/HelpWindowView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QTest>

#include "Shell/Help/HelpBook.h"
#include "Shell/Help/HelpPageButton.h"
#include "Shell/Help/HelpTopicView.h"
#include "Shell/Help/ReadingPage.h"
#include "Support/MemoryStore.h"
#include "TarvaneApp/Shell/Help/ReadTexts.h"

namespace TarvaneApp {
namespace HelpWindowViewTests {

class HelpWindowViewTests : public testing::Test {
  protected:
    HelpWindowViewTests() { open(); }

    void open() {
        window = std::make_unique<HelpWindowView>(store, QString());
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        window->activateWindow();
        while (!window->isActiveWindow()) {
            settle();
        }
    }
    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void choose(const char* title) { window->navigation().selection.set(title); }
    void type(const char* text) {
        QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(&search(), text);
    }

    QListWidget& list() { return *window->findChild<QListWidget*>(); }
    QLineEdit& search() { return *window->findChild<QLineEdit*>(); }
    QString shownTopic() {
        settle();
        const auto* view = window->findChild<HelpTopicView*>();
        return view != nullptr ? TarvaneTests::readTexts(*view).front() : QString();
    }
    QStringList listed() {
        QStringList texts;
        for (int row = 0; row < list().count(); ++row) {
            texts << list().item(row)->text();
        }
        return texts;
    }

    TarvaneTests::MemoryStore store;
    std::unique_ptr<HelpWindowView> window;
};

TEST_F(HelpWindowViewTests, hasItsNameAndItsSizes) {
    EXPECT_EQ(window->windowTitle(), "Tarvane Help");
    EXPECT_EQ(window->size(), QSize(920, 680));
    EXPECT_EQ(window->minimumSize(), QSize(640, 420));
    EXPECT_LE(window->minimumSizeHint().width(), 640);
    EXPECT_LE(window->minimumSizeHint().height(), 420);
}

TEST_F(HelpWindowViewTests, topicsStandUnderTheirGroups) {
    QStringList expected;
    for (const HelpGroup& group : helpGroups()) {
        expected << QString::fromStdString(group.title);
        for (const HelpTopic& topic : group.topics) {
            expected << QString::fromStdString(topic.title);
        }
    }
    EXPECT_EQ(listed(), expected);
    EXPECT_EQ(list().item(0)->flags(), Qt::NoItemFlags);
    EXPECT_TRUE(list().item(0)->icon().isNull());
    EXPECT_FALSE(list().item(1)->icon().isNull());
}

TEST_F(HelpWindowViewTests, opensAtTheTopicThatWasReadLast) {
    EXPECT_EQ(shownTopic(), "Getting Started");
    choose("Keyboard Shortcuts");
    open();
    EXPECT_EQ(shownTopic(), "Keyboard Shortcuts");
    EXPECT_EQ(list().currentItem()->text(), "Keyboard Shortcuts");
    store.setText("HelpWindow.topic", "Cheese");
    open();
    EXPECT_EQ(shownTopic(), "Getting Started");
}

TEST_F(HelpWindowViewTests, withoutASelectionItAsksForOne) {
    window->navigation().selection.set(std::nullopt);
    EXPECT_EQ(shownTopic(), QString());
    EXPECT_TRUE(TarvaneTests::readTexts(*window).contains("Choose a topic"));
    EXPECT_TRUE(list().selectedItems().isEmpty());
    choose("Troubleshooting");
    EXPECT_EQ(shownTopic(), "Troubleshooting");
    EXPECT_FALSE(TarvaneTests::readTexts(*window).contains("Choose a topic"));
}

TEST_F(HelpWindowViewTests, arrowsGoFromTopicToTopicAndNeverToAHeading) {
    list().setFocus();
    for (std::size_t i = 1; i < allHelpTopics().size(); ++i) {
        QTest::keyClick(&list(), Qt::Key_Down);
        EXPECT_EQ(shownTopic(), QString::fromStdString(allHelpTopics()[i].title));
        EXPECT_TRUE(list().hasFocus());
    }
    QTest::keyClick(&list(), Qt::Key_Up);
    EXPECT_EQ(shownTopic(), "Keyboard Shortcuts");
}

TEST_F(HelpWindowViewTests, aNewTopicStartsAtItsTop) {
    choose("Troubleshooting");
    settle();
    auto* page = window->findChild<ReadingPage*>();
    page->verticalScrollBar()->setValue(page->verticalScrollBar()->maximum());
    ASSERT_GT(page->verticalScrollBar()->value(), 0);
    page->setFocus();
    window->findChild<HelpPageButton*>()->click();
    EXPECT_EQ(shownTopic(), "Keyboard Shortcuts");
    EXPECT_EQ(list().currentItem()->text(), "Keyboard Shortcuts");
    page = window->findChild<ReadingPage*>();
    EXPECT_EQ(page->verticalScrollBar()->value(), 0);
    EXPECT_TRUE(page->hasFocus());
}

TEST_F(HelpWindowViewTests, searchingLeavesWhatIsFoundAndEscapeBringsAllBack) {
    const QStringList all = listed();
    type("shortcuts");
    EXPECT_EQ(listed().front(), "Keyboard Shortcuts");
    EXPECT_LT(listed().size(), all.size());
    EXPECT_EQ(shownTopic(), "Getting Started");
    QTest::keyClick(&search(), Qt::Key_Return);
    EXPECT_EQ(shownTopic(), "Keyboard Shortcuts");
    EXPECT_TRUE(list().hasFocus());
    type("x");  // Ctrl+F selects what was searched for
    EXPECT_EQ(search().text(), "x");
    QTest::keyClick(&search(), Qt::Key_Escape);
    EXPECT_EQ(search().text(), "");
    EXPECT_EQ(listed(), all);
    EXPECT_EQ(list().currentItem()->text(), "Keyboard Shortcuts");
}

TEST_F(HelpWindowViewTests, aSearchInVainIsTold) {
    const auto note = [this] {
        for (const QLabel* label : window->findChildren<QLabel*>()) {
            if (label->text() == "No topic has these words.") {
                return label->isVisible();
            }
        }
        return false;
    };
    EXPECT_FALSE(note());
    type("cheese");
    EXPECT_TRUE(listed().isEmpty());
    EXPECT_TRUE(note());
    QTest::keyClick(&search(), Qt::Key_Down);
    EXPECT_TRUE(search().hasFocus());
    EXPECT_EQ(shownTopic(), "Getting Started");
    search().clear();
    EXPECT_FALSE(note());
}

TEST_F(HelpWindowViewTests, tabGoesFromTheSearchOverTheTopicsToThePage) {
    search().setFocus();
    QTest::keyClick(&search(), Qt::Key_Tab);
    EXPECT_TRUE(list().hasFocus());
    QTest::keyClick(&list(), Qt::Key_Tab);
    EXPECT_TRUE(window->findChild<ReadingPage*>()->hasFocus());
    choose("Troubleshooting");
    settle();
    list().setFocus();
    QTest::keyClick(&list(), Qt::Key_Tab);
    EXPECT_TRUE(window->findChild<ReadingPage*>()->hasFocus());
}

TEST_F(HelpWindowViewTests, fieldAndListHaveNamesForAScreenReader) {
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&search())->text(QAccessible::Name),
              "Search the help");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&list())->text(QAccessible::Name), "Topics");
}

}  // namespace HelpWindowViewTests
}  // namespace TarvaneApp
