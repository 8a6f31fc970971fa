#include "Shell/Updates/UpdateController.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <functional>
#include <vector>

#include "Shell/Controls/NoteBar.h"
#include "Shell/Updates/UpdateFetch.h"

namespace TarvaneApp {
namespace UpdateControllerTests {

// Answers when the test does.
class FakeFetch final : public UpdateFetch {
  public:
    void fetch(const QUrl& address, std::function<void(const Answer&)> done) override {
        asked.push_back(address);
        done_ = std::move(done);
    }
    void answer(const char* content) { done_({.content = content, .failure = {}}); }
    void fail(const char* why) { done_({.content = {}, .failure = QString::fromLatin1(why)}); }

    std::vector<QUrl> asked;

  private:
    std::function<void(const Answer&)> done_;
};

class UpdateControllerTests : public testing::Test {
  protected:
    QString said() const { return note.isHidden() ? QString() : note.findChild<QLabel*>()->text(); }
    /// The button of the note that isn't its dismissal; null for none.
    QPushButton* offered() const {
        for (auto* button : note.findChildren<QPushButton*>()) {
            if (button->text() != QStringLiteral("Dismiss") && !button->isHidden()) {
                return button;
            }
        }
        return nullptr;
    }

    FakeFetch fetch;
    NoteBar note;
    std::vector<QUrl> opened;
    UpdateController updates{{.feed = QUrl(QStringLiteral("https://example.org/feed")),
                              .runningVersion = "1.0.0",
                              .fetch = fetch,
                              .note = note,
                              .openPage = [this](const QUrl& page) { opened.push_back(page); }}};
};

TEST_F(UpdateControllerTests, aLaunchTellsANewerVersionAndOffersItsPage) {
    updates.checkAtLaunch();
    ASSERT_EQ(fetch.asked, std::vector{QUrl(QStringLiteral("https://example.org/feed"))});
    EXPECT_EQ(said(), QString());
    fetch.answer(R"({"version": "1.1.0", "page": "https://get.example.org/1.1"})");
    EXPECT_EQ(said(), QStringLiteral("Tarvane 1.1.0 is available. This is 1.0.0."));
    ASSERT_NE(offered(), nullptr);
    EXPECT_EQ(offered()->text(), QStringLiteral("Open get.example.org"));
    EXPECT_TRUE(opened.empty());
    offered()->click();
    EXPECT_EQ(opened, std::vector{QUrl(QStringLiteral("https://get.example.org/1.1"))});
}

TEST_F(UpdateControllerTests, aLaunchSaysNothingOfAnythingElse) {
    updates.checkAtLaunch();
    fetch.answer(R"({"version": "1.0.0", "page": "https://example.org"})");
    EXPECT_EQ(said(), QString());
    updates.checkAtLaunch();
    fetch.answer("no feed");
    EXPECT_EQ(said(), QString());
    updates.checkAtLaunch();
    fetch.fail("no network");
    EXPECT_EQ(said(), QString());
}

TEST_F(UpdateControllerTests, whoAsksGetsAnAnswer) {
    updates.checkForUpdates();
    EXPECT_EQ(said(), QStringLiteral("Looking for updates…"));
    fetch.answer(R"({"version": "0.9.0", "page": "https://example.org"})");
    EXPECT_EQ(said(), QStringLiteral("Tarvane 1.0.0 is the newest version."));
    EXPECT_EQ(offered(), nullptr);
    updates.checkForUpdates();
    fetch.answer(R"({"version": "2.0.0", "page": "http://example.org"})");
    EXPECT_EQ(said(), QStringLiteral("Couldn't look for updates: the feed's answer is none"));
    EXPECT_EQ(offered(), nullptr);
    updates.checkForUpdates();
    fetch.fail("no network");
    EXPECT_EQ(said(), QStringLiteral("Couldn't look for updates: no network"));
}

TEST_F(UpdateControllerTests, whoAsksWhileALaunchIsLookingAsksNoSecondTime) {
    updates.checkAtLaunch();
    updates.checkForUpdates();
    EXPECT_EQ(fetch.asked.size(), 1U);
    fetch.answer(R"({"version": "1.0.0", "page": "https://example.org"})");
    EXPECT_EQ(said(), QStringLiteral("Tarvane 1.0.0 is the newest version."));
    // The next launch's look is a quiet one again.
    note.hide();
    updates.checkAtLaunch();
    fetch.fail("no network");
    EXPECT_EQ(said(), QString());
}

TEST_F(UpdateControllerTests, aLaunchTakesNoOtherNotesPlace) {
    updates.checkAtLaunch();
    note.say(QStringLiteral("Exported"), {});
    fetch.answer(R"({"version": "2.0.0", "page": "https://example.org"})");
    EXPECT_EQ(said(), QStringLiteral("Exported"));
    updates.checkForUpdates();
    fetch.answer(R"({"version": "2.0.0", "page": "https://example.org"})");
    EXPECT_EQ(said(), QStringLiteral("Tarvane 2.0.0 is available. This is 1.0.0."));
}

// A name that looks like another one shows itself.
TEST_F(UpdateControllerTests, theHostIsShownInLettersThatCantPassForOthers) {
    updates.checkAtLaunch();
    fetch.answer("{\"version\": \"2.0.0\", \"page\": \"https://ex\xD0\xB0mple.org\"}");
    ASSERT_NE(offered(), nullptr);
    EXPECT_TRUE(offered()->text().startsWith(QStringLiteral("Open xn--")));
}

}  // namespace UpdateControllerTests
}  // namespace TarvaneApp
