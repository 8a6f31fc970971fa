#include "Shell/RunningInstance.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

namespace TarvaneApp {
namespace {

class RunningInstanceTests : public testing::Test {
  protected:
    QString path() const { return folder.filePath(QStringLiteral("tarvane.socket")); }

    QTemporaryDir folder;
};

TEST_F(RunningInstanceTests, aSecondLaunchAsksTheFirstAndGoes) {
    RunningInstance first(path());
    EXPECT_FALSE(first.hasHandedOver());
    EXPECT_TRUE(first.isListening());
    int asked = 0;
    QObject::connect(&first, &RunningInstance::launchedAgain, [&asked] { ++asked; });
    for (int launches = 1; launches <= 2; ++launches) {
        const RunningInstance next(path());
        EXPECT_TRUE(next.hasHandedOver());
        EXPECT_FALSE(next.isListening());
        while (asked < launches) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
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

TEST_F(RunningInstanceTests, withoutAPlaceToListenTheProgramRunsAllTheSame) {
    const RunningInstance alone(folder.filePath(QStringLiteral("no such folder/tarvane.socket")));
    EXPECT_FALSE(alone.hasHandedOver());
    EXPECT_FALSE(alone.isListening());
}

}  // namespace
}  // namespace TarvaneApp
