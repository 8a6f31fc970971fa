#include "Shell/TerminationSignals.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <csignal>

namespace TarvaneApp {
namespace TerminationSignalsTests {

// The handlers as this process has them without ours, and again once a test is over.
class TerminationSignalsTests : public testing::Test {
  protected:
    ~TerminationSignalsTests() override { std::signal(SIGHUP, SIG_DFL); }

    static bool isDefault(int number) {
        struct sigaction now {};
        sigaction(number, nullptr, &now);
        return now.sa_handler == SIG_DFL;
    }
};

TEST_F(TerminationSignalsTests, eachIsAskedForOnceFromTheEventLoop) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        TerminationSignals signals;
        int asked = 0;
        QObject::connect(&signals, &TerminationSignals::endAsked, [&asked] { ++asked; });
        std::raise(number);
        EXPECT_EQ(asked, 0);
        while (asked == 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        EXPECT_EQ(asked, 1);
        // The same one again would end the program.
        EXPECT_TRUE(isDefault(number));
    }
}

TEST_F(TerminationSignalsTests, oneThatIsIgnoredStaysIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    TerminationSignals signals;
    int asked = 0;
    QObject::connect(&signals, &TerminationSignals::endAsked, [&asked] { ++asked; });
    std::raise(SIGHUP);
    QCoreApplication::processEvents();
    EXPECT_EQ(asked, 0);
}

TEST_F(TerminationSignalsTests, afterwardsTheyDoWhatTheyDidBefore) {
    { const TerminationSignals signals; }
    EXPECT_TRUE(isDefault(SIGTERM));
    EXPECT_TRUE(isDefault(SIGINT));
    EXPECT_TRUE(isDefault(SIGHUP));
}

}  // namespace TerminationSignalsTests
}  // namespace TarvaneApp
