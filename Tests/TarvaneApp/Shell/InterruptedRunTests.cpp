#include "Shell/InterruptedRun.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDateTime>
#include <QLabel>
#include <QLocale>

#include "Shell/Controls/NoteBar.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace InterruptedRunTests {

class InterruptedRunTests : public TarvaneTests::EngineFixture {
  protected:
    InterruptedRun::Environment environment() {
        return {.engine = *engine, .store = store, .clock = clock};
    }
    /// What the next launch says; empty for nothing.
    QString told() {
        makeEngine();
        InterruptedRun next(environment());
        NoteBar note;
        next.tell(note);
        return note.isHidden() ? QString() : note.findChild<QLabel*>()->text();
    }
};

TEST_F(InterruptedRunTests, aRunThatWasCutShortIsToldOnceAtTheNextLaunch) {
    start();
    InterruptedRun(environment()).programEnds();
    EXPECT_TRUE(store.isFlushed());
    const auto ended =
        QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(clock.now()));
    EXPECT_EQ(told(),
              QStringLiteral("The last measurement was cut short on %1: the system ended Tarvane.")
                  .arg(QLocale().toString(ended, QLocale::ShortFormat)));
    EXPECT_EQ(told(), QString());
}

TEST_F(InterruptedRunTests, withoutARunNothingIsTold) {
    InterruptedRun(environment()).programEnds();
    EXPECT_EQ(told(), QString());
}

// A session's end that the user called off.
TEST_F(InterruptedRunTests, aRunThatWentOnAfterAllIsForgotten) {
    InterruptedRun run(environment());
    start();
    run.programEnds();
    engine->stop();
    EXPECT_EQ(told(), QString());
}

// By a crash, or a display that takes the program with it: nothing of it ends.
TEST_F(InterruptedRunTests, aRunThatWasBrokenOffIsToldOnceWithItsBeginning) {
    const auto began =
        QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(clock.now()));
    std::optional<double> left;
    {
        InterruptedRun run(environment());
        start();
        clock.advance(600.0);
        left = store.number("InterruptedRun.began");
    }
    ASSERT_TRUE(left);
    store.setNumber("InterruptedRun.began", *left);
    EXPECT_EQ(told(), QStringLiteral("The last measurement was cut short. It began on %1, and "
                                     "Tarvane was broken off.")
                          .arg(QLocale().toString(began, QLocale::ShortFormat)));
    EXPECT_EQ(told(), QString());
}

TEST_F(InterruptedRunTests, aRunThatTheUserEndsLeavesNothing) {
    {
        InterruptedRun run(environment());
        start();
        engine->stop();
        EXPECT_FALSE(store.contains("InterruptedRun.began"));
        start();
    }
    EXPECT_FALSE(store.contains("InterruptedRun.began"));
    EXPECT_EQ(told(), QString());
}

TEST_F(InterruptedRunTests, aDateThatNoneIsSaysNothing) {
    store.setNumber("InterruptedRun.ended", 1e300);
    EXPECT_EQ(told(), QString());
    EXPECT_FALSE(store.contains("InterruptedRun.ended"));
}

}  // namespace InterruptedRunTests
}  // namespace TarvaneApp
