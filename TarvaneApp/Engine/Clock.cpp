#include "Engine/Clock.h"

namespace TarvaneApp {

SystemClock::SystemClock()
    : began_(std::chrono::system_clock::now()), steadyBegan_(std::chrono::steady_clock::now()) {}

TarvaneKit::Date SystemClock::now() const {
    return std::chrono::system_clock::now();
}

TarvaneKit::Date SystemClock::steadyNow() const {
    return began_ + std::chrono::duration_cast<TarvaneKit::Date::duration>(
                        std::chrono::steady_clock::now() - steadyBegan_);
}

}  // namespace TarvaneApp
