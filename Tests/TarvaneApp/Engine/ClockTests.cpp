#include "Engine/Clock.h"

#include <gtest/gtest.h>
#include <time.h>

#include <atomic>

// Linked in place of clock_gettime in what the test program is made of: a machine that has slept.
namespace TarvaneApp::ClockTests {

std::atomic<int> secondsAsleep{0};

}  // namespace TarvaneApp::ClockTests

extern "C" {
int __real_clock_gettime(clockid_t clock, timespec* time);
int __wrap_clock_gettime(clockid_t clock, timespec* time);

int __wrap_clock_gettime(clockid_t clock, timespec* time) {
    const int result = __real_clock_gettime(clock, time);
    if (clock == CLOCK_BOOTTIME) {
        time->tv_sec += TarvaneApp::ClockTests::secondsAsleep;
    }
    return result;
}
}

namespace TarvaneApp {
namespace ClockTests {

TEST(ClockTests, theTimeAsleepCounts) {
    const SystemClock clock;
    const auto before = clock.steadyNow();
    secondsAsleep = 3600;
    const auto after = clock.steadyNow();
    secondsAsleep = 0;
    EXPECT_GE(after - before, std::chrono::hours(1));
}

TEST(ClockTests, elapsedTimeBeginsAtTheWallClockAndNeverGoesBack) {
    const auto before = std::chrono::system_clock::now();
    const SystemClock clock;
    const auto first = clock.steadyNow();
    EXPECT_GE(first, before);
    EXPECT_GE(clock.steadyNow(), first);
}

}  // namespace ClockTests
}  // namespace TarvaneApp
