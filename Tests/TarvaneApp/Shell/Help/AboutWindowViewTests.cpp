#include "Shell/Help/AboutWindowView.h"

#include <gtest/gtest.h>

#include <QLabel>

#include "TarvaneApp/Shell/Help/ReadTexts.h"

namespace TarvaneApp {
namespace AboutWindowViewTests {

TEST(AboutWindowViewTests, nameVersionAndLegalLineStandUnderTheIcon) {
    AboutWindowView window({.version = "2.4.6",
                            .legalLine = "© Somebody & Sons. GPL-3.0-or-later.",
                            .makerSite = "https://example.org"});
    QStringList texts = TarvaneTests::readTexts(window);
    EXPECT_EQ(texts, (QStringList{"", "Tarvane", "Version 2.4.6",
                                  "© Somebody & Sons. GPL-3.0-or-later.", "example.org"}));
    EXPECT_FALSE(window.findChild<QLabel*>()->pixmap().isNull());
    EXPECT_EQ(window.windowTitle(), "About Tarvane");
}

TEST(AboutWindowViewTests, withoutASiteThereIsNoLink) {
    const AboutWindowView window({.version = "2.4.6", .legalLine = "Free.", .makerSite = {}});
    EXPECT_EQ(TarvaneTests::readTexts(window).back(), "Free.");
}

TEST(AboutWindowViewTests, isAsLargeAsItsContentAndStaysSo) {
    AboutWindowView window({.version = "2.4.6", .legalLine = "Free.", .makerSite = {}});
    window.show();
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    EXPECT_EQ(window.size(), window.minimumSize());
}

}  // namespace AboutWindowViewTests
}  // namespace TarvaneApp
