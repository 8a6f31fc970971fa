#include "Shell/Help/ReleaseNotesWindowView.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

#include "Displays/Theme.h"
#include "Shell/Help/Prose.h"
#include "Shell/Help/ReleaseNote.h"
#include "TarvaneApp/Shell/Help/ReadTexts.h"

namespace TarvaneApp {
namespace ReleaseNotesWindowViewTests {

TEST(ReleaseNotesWindowViewTests, everyNoteStandsInOrderAndTheNewestHasTheBadge) {
    const ReleaseNotesWindowView window;
    QStringList expected;
    for (const ReleaseNote& note : releaseNotes()) {
        expected << "Version " + QString::fromStdString(note.version)
                 << QString::fromStdString(note.date);
        if (&note == &releaseNotes().front()) {
            expected << "LATEST";
        }
        for (const std::string& highlight : note.highlights) {
            expected << "•" << plainProse(highlight);
        }
    }
    EXPECT_EQ(TarvaneTests::readTexts(window), expected);
    // Where a date stands with the others.
    const qsizetype oldest = expected.indexOf("Version 1.0.0");
    EXPECT_EQ(expected[oldest + 1], "Initial release");
    EXPECT_EQ(expected.count("LATEST"), 1);
}

TEST(ReleaseNotesWindowViewTests, aLineStandsBetweenNotes) {
    const ReleaseNotesWindowView window;
    std::size_t lines = 0;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        lines += widget->maximumHeight() == 1 ? 1U : 0U;
    }
    EXPECT_EQ(lines, releaseNotes().size() - 1);
}

TEST(ReleaseNotesWindowViewTests, hasItsNameItsSmallestSizeAndClosesByEscape) {
    auto* window = new ReleaseNotesWindowView;
    EXPECT_EQ(window->windowTitle(), "What's New in Tarvane");
    EXPECT_EQ(window->minimumSize(), QSize(420, 360));
    EXPECT_LE(window->minimumSizeHint().width(), 420);
    window->show();
    window->activateWindow();
    while (!window->isActiveWindow()) {
        QCoreApplication::processEvents();
    }
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    QCoreApplication::sendPostedEvents(window, QEvent::DeferredDelete);
}

}  // namespace ReleaseNotesWindowViewTests
}  // namespace TarvaneApp
