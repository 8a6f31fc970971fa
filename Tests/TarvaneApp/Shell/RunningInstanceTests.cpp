#include "Shell/RunningInstance.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <functional>
#include <memory>

#include <unistd.h>

namespace TarvaneApp {
namespace RunningInstanceTests {

// Of a launch that nobody answers; what is answered at all is answered by then.
constexpr std::chrono::milliseconds shortPatience{50};

class RunningInstanceTests : public testing::Test {
  protected:
    QString path() const { return folder.filePath(QStringLiteral("tarvane.socket")); }

    /// Another launch, in a thread of its own as it would be in a process; `look` sees it there.
    std::unique_ptr<QThread> launch(std::function<void(const RunningInstance&)> look) const {
        std::unique_ptr<QThread> thread(QThread::create(
            [path = path(), look = std::move(look)] { look(RunningInstance(path)); }));
        thread->start();
        return thread;
    }

    QTemporaryDir folder;
};

TEST_F(RunningInstanceTests, aSecondLaunchAsksTheFirstAndGoes) {
    RunningInstance first(path());
    EXPECT_FALSE(first.hasHandedOver());
    EXPECT_TRUE(first.isListening());
    int asked = 0;
    QObject::connect(&first, &RunningInstance::launchedAgain, [&asked] { ++asked; });
    for (int launches = 1; launches <= 2; ++launches) {
        const auto next = launch([](const RunningInstance& instance) {
            EXPECT_TRUE(instance.hasHandedOver());
            EXPECT_FALSE(instance.isUnanswered());
            EXPECT_FALSE(instance.isListening());
        });
        while (asked < launches) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        next->wait();
    }
    EXPECT_EQ(asked, 2);
}

TEST_F(RunningInstanceTests, afterTheFirstHasEndedTheNextOneRuns) {
    { const RunningInstance first(path()); }
    const RunningInstance next(path());
    EXPECT_FALSE(next.hasHandedOver());
    EXPECT_TRUE(next.isListening());
}

TEST_F(RunningInstanceTests, whatACrashLeftBehindIsNoRunningProgram) {
    QFile left(path());
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    left.close();
    const RunningInstance next(path());
    EXPECT_FALSE(next.hasHandedOver());
    EXPECT_TRUE(next.isListening());
}

// Its event loop doesn't run here.
TEST_F(RunningInstanceTests, aProgramThatDoesNotAnswerIsFoundOutAndCanBeReplaced) {
    const RunningInstance stuck(path());
    RunningInstance next(path(), shortPatience);
    EXPECT_FALSE(next.hasHandedOver());
    EXPECT_TRUE(next.isUnanswered());
    EXPECT_FALSE(next.isListening());

    next.takeOver();
    EXPECT_TRUE(next.isListening());
    int asked = 0;
    QObject::connect(&next, &RunningInstance::launchedAgain, [&asked] { ++asked; });
    const auto third =
        launch([](const RunningInstance& instance) { EXPECT_TRUE(instance.hasHandedOver()); });
    while (asked < 1) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    third->wait();
}

// Launches that went away unanswered stand in the line of those that wait.
TEST_F(RunningInstanceTests, manyLaunchesAtAStuckProgramAllFindItOut) {
    const RunningInstance stuck(path());
    for (int launches = 0; launches < 60; ++launches) {
        EXPECT_TRUE(RunningInstance(path(), std::chrono::milliseconds(1)).isUnanswered());
    }
}

TEST_F(RunningInstanceTests, withoutAPlaceToListenTheProgramRunsAllTheSame) {
    for (const QString& nowhere :
         {folder.filePath(QStringLiteral("no such folder/tarvane.socket")), QString()}) {
        RunningInstance alone(nowhere);
        EXPECT_FALSE(alone.hasHandedOver());
        EXPECT_FALSE(alone.isUnanswered());
        EXPECT_FALSE(alone.isListening());
    }
}

/// An environment variable that has another value for a while.
class Variable {
  public:
    Variable(const char* name, const QByteArray& value)
        : name_(name), wasSet_(qEnvironmentVariableIsSet(name)), before_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~Variable() {
        if (wasSet_) {
            qputenv(name_, before_);
        } else {
            qunsetenv(name_);
        }
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    const char* name_;
    bool wasSet_;
    QByteArray before_;
};

TEST_F(RunningInstanceTests, theLaunchesOfASandboxMeetInItsCommonFolder) {
    const Variable runtime("XDG_RUNTIME_DIR", QFile::encodeName(folder.path()));
    const Variable sandbox("FLATPAK_ID", "org.brenlow.tarvane");
    EXPECT_EQ(RunningInstance::userSocketPath(), QString());
    const QString common = folder.filePath(QStringLiteral("app/org.brenlow.tarvane"));
    ASSERT_TRUE(QDir().mkpath(common));
    ASSERT_TRUE(QFile::setPermissions(
        common, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
    EXPECT_EQ(RunningInstance::userSocketPath(), common + QStringLiteral("/tarvane.socket"));
    qputenv("FLATPAK_ID", "");
    EXPECT_EQ(RunningInstance::userSocketPath(), path());
}

TEST_F(RunningInstanceTests, onlyAFolderOfTheUsersOwnHoldsTheSocket) {
    constexpr auto owner = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
    ASSERT_TRUE(QFile::setPermissions(folder.path(), owner));
    EXPECT_EQ(RunningInstance::socketPathIn(folder.path()), path());
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(folder.path(), link));
    const QString file = folder.filePath(QStringLiteral("file"));
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    for (const QString& other :
         {link, file, QString(), folder.filePath(QStringLiteral("absent"))}) {
        EXPECT_EQ(RunningInstance::socketPathIn(other), QString()) << other.toStdString();
    }
    for (const auto more : {QFileDevice::ReadGroup, QFileDevice::WriteOther}) {
        ASSERT_TRUE(QFile::setPermissions(folder.path(), owner | more));
        EXPECT_EQ(RunningInstance::socketPathIn(folder.path()), QString());
    }
    ASSERT_TRUE(QFile::setPermissions(folder.path(), owner));
    if (chown(QFile::encodeName(folder.path()).constData(), 12345, static_cast<gid_t>(-1)) == 0) {
        EXPECT_EQ(RunningInstance::socketPathIn(folder.path()), QString());
    }
}

}  // namespace RunningInstanceTests
}  // namespace TarvaneApp
