#include "Engine/Clock.h"

#include <time.h>

namespace TarvaneApp {

namespace {

// std::chrono's steady clock stands still while the machine sleeps, and so every later time of a
// session would be early.
std::chrono::nanoseconds bootTime() {
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace

SystemClock::SystemClock() : began_(std::chrono::system_clock::now()), bootTimeBegan_(bootTime()) {}

TarvaneKit::Date SystemClock::now() const {
    return std::chrono::system_clock::now();
}

TarvaneKit::Date SystemClock::steadyNow() const {
    return began_ +
           std::chrono::duration_cast<TarvaneKit::Date::duration>(bootTime() - bootTimeBegan_);
}

}  // namespace TarvaneApp
