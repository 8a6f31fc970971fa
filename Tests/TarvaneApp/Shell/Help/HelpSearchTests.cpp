#include "Shell/Help/HelpSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Shell/Help/HelpBook.h"

namespace TarvaneApp {
namespace HelpSearchTests {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string> found(const char* query) {
    std::vector<std::string> titles;
    for (const HelpTopic* topic : helpTopicsWith(query)) {
        titles.push_back(topic->title);
    }
    return titles;
}

TEST(HelpSearchTests, nothingToLookForFindsTheWholeBook) {
    EXPECT_EQ(found("").size(), allHelpTopics().size());
    EXPECT_EQ(found("  \t ").size(), allHelpTopics().size());
}

TEST(HelpSearchTests, aTopicWithTheWordInItsTitleComesFirst) {
    // It is the last but one in the book, and topics before it name it.
    EXPECT_EQ(found("shortcut").front(), "Keyboard Shortcuts");
    const auto troubles = found("troubleshooting");
    EXPECT_EQ(troubles.front(), "Troubleshooting");
    EXPECT_THAT(troubles, Contains("Getting Started"));
}

TEST(HelpSearchTests, textIsFoundWhateverTheCaseInEveryKindOfBlock) {
    EXPECT_THAT(found("PHANTOM"), Contains("Getting Started"));         // a step
    EXPECT_THAT(found("turning wheel"), Contains("The Main Window"));   // a bullet
    EXPECT_THAT(found("headset"), Contains("Getting Started"));         // a tip
    EXPECT_THAT(found("flatpak"), Contains("Microphone Permissions"));  // a heading
    EXPECT_THAT(found("Ctrl+Shift+E"), Contains("Keyboard Shortcuts"));
    EXPECT_THAT(found("in about a minute"), Contains("Getting Started"));  // the summary
}

TEST(HelpSearchTests, boldWordsAreFoundWithTheWordsAroundThem) {
    // "choose the **Device**, and": the marks are no part of the text.
    EXPECT_THAT(found("device, and"), Contains("Getting Started"));
    EXPECT_THAT(found("**"), IsEmpty());
}

TEST(HelpSearchTests, aWordIsFoundByItsBeginning) {
    EXPECT_EQ(found("troublesh").front(), "Troubleshooting");
    EXPECT_THAT(found("shooting"), Not(Contains("Troubleshooting")));
    EXPECT_THAT(found("indow"), IsEmpty());
    // "again" stands in this topic.
    EXPECT_THAT(found("gain"), Not(Contains("Keyboard Shortcuts")));
}

TEST(HelpSearchTests, allWordsMustBeThere) {
    EXPECT_THAT(found("phantom pinkish"), IsEmpty());
    EXPECT_THAT(found("noise phantom"), Contains("Getting Started"));
    EXPECT_THAT(found("cheese"), IsEmpty());
}

}  // namespace HelpSearchTests
}  // namespace TarvaneApp
