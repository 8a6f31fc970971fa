#include "Shell/Help/HelpTopicView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QScrollBar>
#include <QTest>

#include "Shell/Help/HelpBook.h"
#include "Shell/Help/HelpNavigation.h"
#include "Shell/Help/HelpPageButton.h"
#include "Shell/Help/Prose.h"
#include "Shell/Help/ReadingPage.h"
#include "TarvaneApp/Shell/Help/ReadTexts.h"

namespace TarvaneApp {
namespace HelpTopicViewTests {

using TarvaneTests::readTexts;

QStringList pages(const HelpTopicView& view) {
    QStringList names;
    for (const HelpPageButton* button : view.findChildren<HelpPageButton*>()) {
        names << button->accessibleName();
    }
    return names;
}

class HelpTopicViewTests : public testing::Test {
  protected:
    QStringList pagesOf(const char* title) {
        return pages(HelpTopicView(*helpTopic(title), navigation, {}));
    }

    HelpNavigation navigation;
};

TEST_F(HelpTopicViewTests, titleSummaryAndEveryTextStandInOrder) {
    for (const HelpTopic& topic : allHelpTopics()) {
        const HelpTopicView view(topic, navigation, {});
        QStringList expected{QString::fromStdString(topic.title),
                             QString::fromStdString(topic.summary)};
        for (const HelpBlock& block : topic.blocks) {
            for (const std::string& text : textsOf(block)) {
                expected << plainProse(text);
            }
        }
        QStringList shown = readTexts(view);
        shown.removeIf([](const QString& text) {
            bool isNumber = false;
            text.toInt(&isNumber);
            return text.isEmpty() || text == "•" || isNumber;
        });
        EXPECT_EQ(shown, expected) << topic.title;
    }
}

TEST_F(HelpTopicViewTests, thePagesLeadToTheNeighbors) {
    EXPECT_EQ(pagesOf("The Main Window"),
              (QStringList{"Previous: Getting Started", "Next: Microphone Permissions"}));
    const HelpTopicView view(*helpTopic("The Main Window"), navigation, {});
    const auto buttons = view.findChildren<HelpPageButton*>();
    buttons[0]->click();
    EXPECT_EQ(navigation.selection(), "Getting Started");
    buttons[1]->click();
    EXPECT_EQ(navigation.selection(), "Microphone Permissions");
}

TEST_F(HelpTopicViewTests, theFirstTopicHasNoPreviousAndTheLastNoNext) {
    EXPECT_EQ(pagesOf("Getting Started"), QStringList{"Next: The Main Window"});
    EXPECT_EQ(pagesOf("Troubleshooting"), QStringList{"Previous: Keyboard Shortcuts"});
}

TEST_F(HelpTopicViewTests, aTopicThatIsNotInTheBookHasNoPages) {
    const HelpTopicView view({"Cheese", "sum", "Not ours.", {}}, navigation, {});
    EXPECT_TRUE(pages(view).isEmpty());
    EXPECT_EQ(readTexts(view), (QStringList{"Cheese", "Not ours."}));
}

TEST_F(HelpTopicViewTests, theMakersSiteIsNamedWhereThereIsOne) {
    const HelpTopicView view(*helpTopic("Getting Started"), navigation, "https://example.org/a&b");
    EXPECT_EQ(readTexts(view).back(), "Need more help? Visit example.org/a&b");
    EXPECT_TRUE(view.findChildren<QLabel*>().back()->text().contains(
        "href=\"https://example.org/a&amp;b\""));
    const HelpTopicView without(*helpTopic("Getting Started"), navigation, {});
    EXPECT_FALSE(readTexts(without).join(u'\n').contains("Need more help?"));
}

TEST_F(HelpTopicViewTests, keysScrollThePage) {
    HelpTopicView view(*helpTopic("Troubleshooting"), navigation, {});
    view.resize(460, 300);
    view.show();
    auto& page = *view.findChild<ReadingPage*>();
    const QScrollBar& bar = *page.verticalScrollBar();
    ASSERT_GT(bar.maximum(), 300);
    QTest::keyClick(&page, Qt::Key_PageDown);
    EXPECT_GT(bar.value(), 200);
    QTest::keyClick(&page, Qt::Key_PageUp);
    EXPECT_EQ(bar.value(), 0);
    QTest::keyClick(&page, Qt::Key_End);
    EXPECT_EQ(bar.value(), bar.maximum());
    QTest::keyClick(&page, Qt::Key_Home);
    EXPECT_EQ(bar.value(), 0);
    EXPECT_EQ(page.horizontalScrollBar()->maximum(), 0);
}

TEST_F(HelpTopicViewTests, linesAreNoLongerThanIsReadWell) {
    for (const HelpTopic& topic : allHelpTopics()) {
        HelpTopicView view(topic, navigation, {});
        view.resize(1600, 600);
        view.show();
        for (const QLabel* label : view.findChildren<QLabel*>()) {
            const QString text = TarvaneTests::readText(*label);
            const double width = label->fontMetrics().horizontalAdvance(text);
            if (width > label->width()) {
                EXPECT_LE(static_cast<double>(text.size()) * label->width() / width, 75.0)
                    << text.toStdString();
            }
        }
    }
}

}  // namespace HelpTopicViewTests
}  // namespace TarvaneApp
